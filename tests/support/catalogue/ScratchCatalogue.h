#pragma once

#include "db/Database.h"
#include "support/ScratchFolder.h"
#include "support/catalogue/FreshProgram.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::test {

// A new catalogue, alone in an application folder of its own, in a program that has only just started.
class ScratchCatalogue {
public:
    ScratchCatalogue();

    const std::filesystem::path& folder() const { return m_folder.path(); }
    std::filesystem::path path() const { return folder() / "kvt.mde"; }
    std::shared_ptr<db::Database> database() const;

    // What a fresh handle on the file sees: rows of a table; a field of the first row that a condition of the dialect
    // meets, which fails the test when there is none; a field of all of them, in the table's order.
    int64_t count(const std::string& table) const;
    std::string field(const std::string& table, const std::string& condition, std::string_view field) const;
    bool isNull(const std::string& table, const std::string& condition, std::string_view field) const;
    std::vector<std::string> column(const std::string& table, std::string_view field,
                                    const std::string& condition = {}) const;

private:
    std::unique_ptr<db::Recordset> rows(const std::string& table, const std::string& condition) const;
    std::unique_ptr<db::Recordset> row(const std::string& table, const std::string& condition) const;

    // The folder goes last: the program lets go of its catalogue before.
    ScratchFolder m_folder{ScratchFolder::Place::Memory};
    FreshProgram m_program;
};

} // namespace discaro::test
