#include "catalogue/DiscDeletion.h"

#include "app/Module1.h"
#include "base/RuntimeError.h"
#include "base/Sentence.h"
#include "catalogue/Names.h"
#include "catalogue/Texts.h"
#include "catalogue/Totals.h"
#include "db/DBEngine.h"

namespace discaro::catalogue {

namespace {

int64_t rowsOf(const char* table) {
    const auto rows = app::Module1::CatalogueDb->OpenRecordset(table);
    const int64_t count = rows->RecordCount();
    rows->Close();
    return count;
}

} // namespace

std::string factValue(const DiscFact& fact, db::Recordset& discs) {
    std::string value;
    if (!fact.field.empty())
        base::skipErrors([&] { value = discs.Fields(fact.field).Text(); });
    return value.append(fact.unit);
}

std::string deletionQuestion(const std::string& preferredName) {
    return base::filledIn(kDeletionQuestion, {preferredName});
}

void deleteCurrentDisc(db::Recordset& discs) {
    db::DBEngine::BeginTrans();
    discs.Delete();
    discs.MoveNext();
    if (discs.Eof())
        discs.MoveFirst();
}

void deleteTagsOfDisc(int64_t discNumber) {
    app::Module1::OpenCatalogue();
    app::Module1::CatalogueDb->Execute("DELETE * FROM [Prog Tag] WHERE [CD number] like " + std::to_string(discNumber));
    app::Module1::CatalogueDb->Close();
}

void RefreshMasterTotals(db::DataSource& master) {
    app::Module1::OpenCatalogue();
    master.Recordset().Edit();
    const MasterTotals totals{.directories = rowsOf("directories"),
                              .files = rowsOf("files"),
                              .kilobytes = totalFileSize(*app::Module1::CatalogueDb),
                              .discs = rowsOf("drive")};
    writeMasterTotals(master.Recordset(), totals);
    master.UpdateRecord();
    app::Module1::CatalogueDb->Close();
}

} // namespace discaro::catalogue
