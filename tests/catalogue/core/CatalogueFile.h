#pragma once

#include "support/catalogue/ScratchCatalogue.h"

#include <gtest/gtest.h>

#include <memory>

namespace discaro::catalogue {

// A new catalogue.
class CatalogueFile : public testing::Test, protected test::ScratchCatalogue {
protected:
    std::shared_ptr<db::Database> open() const { return database(); }
};

} // namespace discaro::catalogue
