#include "catalogue/EmptyCatalogue.h"

#include "catalogue/Names.h"
#include "catalogue/Schema.h"
#include "db/DBEngine.h"

namespace discaro::catalogue {

void createEmptyCatalogue(const std::filesystem::path& path) {
    db::DBEngine::CreateDatabase(path, catalogueFormat(), schemaStatements());
}

db::FileFormat catalogueFormat() {
    return {kApplicationId, kFormatVersion, catalogueSchema(), catalogueParts(), std::string(kRowNumbers)};
}

} // namespace discaro::catalogue
