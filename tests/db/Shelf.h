#pragma once

#include "base/RuntimeError.h"
#include "db/DBEngine.h"
#include "db/DataSource.h"
#include "db/schema/FileFormat.h"
#include "support/FreshEngine.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::db::test {

// A folder with a small database in it, like a catalogue but for fewer fields: discs with a number of their own,
// directories, files that the database numbers, a table with every type of field, cascades from disc to file.
class Shelf : public testing::Test {
protected:
    Shelf();

    static FileFormat format();
    static std::vector<std::string> statements();

    const std::filesystem::path& folder() const { return m_folder.path(); }
    std::filesystem::path path() const { return folder() / "shelf.db"; }
    std::filesystem::path make(const std::string& name) const;
    // The names of what lies in the folder, sorted.
    std::vector<std::string> listing() const;

    std::shared_ptr<Database> open() const { return DBEngine::OpenDatabase(path()); }
    // Rows put in through recordsets.
    void addDisc(int number, std::string_view name) const;
    void addDirectories(const std::vector<std::string>& numbers) const;
    void addFiles(std::string_view directory, int count) const;

    // What a fresh handle on the file sees.
    int64_t count(std::string_view table) const;

private:
    using ScratchFolder = discaro::test::ScratchFolder;

    ScratchFolder m_folder{ScratchFolder::Place::Memory};
    discaro::test::FreshEngine m_engine;
};

// The number of the error that an action throws, 0 when it throws none.
int errorOf(const std::function<void()>& action);

// A field of every row from the current position to the end, as text.
std::vector<std::string> texts(Recordset& recordset, std::string_view field);
// The same from the first row on.
std::vector<std::string> allTexts(Recordset& recordset, std::string_view field);

constexpr int number(base::ErrorNumber error) {
    return static_cast<int>(error);
}

} // namespace discaro::db::test
