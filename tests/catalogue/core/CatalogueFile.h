#pragma once

#include "catalogue/EmptyCatalogue.h"
#include "db/DBEngine.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

namespace discaro::catalogue {

// A new catalogue, alone in a folder.
class CatalogueFile : public testing::Test {
protected:
    CatalogueFile() {
        db::DBEngine::SetFormat(catalogueFormat());
        createEmptyCatalogue(path());
    }
    ~CatalogueFile() override { db::DBEngine::SetFormat({}); }

    const std::filesystem::path& folder() const { return m_folder.path(); }
    std::filesystem::path path() const { return folder() / "kvt.mde"; }
    std::shared_ptr<db::Database> open() const { return db::DBEngine::OpenDatabase(path()); }

private:
    discaro::test::ScratchFolder m_folder;
};

} // namespace discaro::catalogue
