#include "support/catalogue/ScratchCatalogue.h"

#include "catalogue/EmptyCatalogue.h"
#include "db/DBEngine.h"

#include <stdexcept>

namespace discaro::test {

ScratchCatalogue::ScratchCatalogue() {
    db::DBEngine::SetFormat(catalogue::catalogueFormat());
    app::Module1::ApplicationPath = folder();
    catalogue::createEmptyCatalogue(path());
}

std::shared_ptr<db::Database> ScratchCatalogue::database() const {
    return db::DBEngine::OpenDatabase(path());
}

std::unique_ptr<db::Recordset> ScratchCatalogue::rows(const std::string& table, const std::string& condition) const {
    return database()->OpenRecordset("select * from [" + table + "]" +
                                     (condition.empty() ? "" : " where " + condition));
}

std::unique_ptr<db::Recordset> ScratchCatalogue::row(const std::string& table, const std::string& condition) const {
    auto found = rows(table, condition);
    if (found->Eof())
        throw std::logic_error("no row of " + table + " with " + condition);
    return found;
}

int64_t ScratchCatalogue::count(const std::string& table) const {
    return rows(table, {})->RecordCount();
}

std::string ScratchCatalogue::field(const std::string& table, const std::string& condition,
                                    std::string_view field) const {
    return row(table, condition)->Fields(field).Text();
}

bool ScratchCatalogue::isNull(const std::string& table, const std::string& condition, std::string_view field) const {
    return row(table, condition)->Fields(field).IsNull();
}

std::vector<std::string> ScratchCatalogue::column(const std::string& table, std::string_view field,
                                                  const std::string& condition) const {
    std::vector<std::string> texts;
    for (const auto found = rows(table, condition); !found->Eof(); found->MoveNext())
        texts.push_back(found->Fields(field).Text());
    return texts;
}

} // namespace discaro::test
