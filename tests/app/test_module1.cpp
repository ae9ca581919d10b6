#include "app/AppTest.h"
#include "base/RuntimeError.h"
#include "db/Database.h"

#include <filesystem>
#include <fstream>

using namespace discaro;
using namespace discaro::test;
namespace Module1 = discaro::app::Module1;

namespace {

class SharedModule : public AppTest {
protected:
    std::filesystem::path path(const char* name) const { return Module1::ApplicationPath / name; }
};

} // namespace

TEST_F(SharedModule, AFileThatIsThereExists) {
    std::ofstream(path("a file")) << "x";
    EXPECT_TRUE(Module1::FileExists(path("a file")));
}

TEST_F(SharedModule, AFileThatIsMissingInAFolderThatIsThereDoesNotExist) {
    EXPECT_FALSE(Module1::FileExists(path("no file")));
}

TEST_F(SharedModule, APathWhoseFolderIsMissingCountsAsExisting) {
    EXPECT_TRUE(Module1::FileExists(path("no folder") / "no file"));
}

TEST_F(SharedModule, AFileThatCannotBeReadCountsAsExisting) {
    std::ofstream(path("locked")) << "x";
    std::filesystem::permissions(path("locked"), std::filesystem::perms::none);
    EXPECT_TRUE(Module1::FileExists(path("locked")));
}

TEST_F(SharedModule, ColourByteGivesOneChannel) {
    EXPECT_EQ(Module1::ColourByte(255, 1), 255);
    EXPECT_EQ(Module1::ColourByte(65280, 2), 255);
    EXPECT_EQ(Module1::ColourByte(16744576, 1), 128);
    EXPECT_EQ(Module1::ColourByte(16744576, 2), 128);
    EXPECT_EQ(Module1::ColourByte(16744576, 3), 255);
    EXPECT_EQ(Module1::ColourByte(16777215, 3), 255);
}

TEST_F(SharedModule, ColourByteRefusesOtherIndexesAndOtherColours) {
    EXPECT_EQ(Module1::ColourByte(16777216, 1), -1);
    EXPECT_EQ(Module1::ColourByte(-1, 1), -1);
    EXPECT_EQ(Module1::ColourByte(0, 4), -1);
    EXPECT_EQ(Module1::ColourByte(0, 0), -1);
    EXPECT_EQ(Module1::ColourByte(0, 1), 0);
}

TEST_F(SharedModule, OpenCatalogueOpensTheCatalogueOfTheApplicationFolder) {
    EXPECT_EQ(Module1::cataloguePath(), path("kvt.mde"));
    Module1::OpenCatalogue();
    ASSERT_TRUE(Module1::CatalogueDb);
    const auto before = Module1::CatalogueDb;
    Module1::OpenCatalogue();
    EXPECT_NE(Module1::CatalogueDb, before);
}

TEST_F(SharedModule, OpenCatalogueSaysWhenTheFileIsMissing) {
    std::filesystem::remove(Module1::cataloguePath());
    EXPECT_THROW(Module1::OpenCatalogue(), base::RuntimeError);
}
