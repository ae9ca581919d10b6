#include "app/AppTest.h"
#include "base/RuntimeError.h"
#include "db/DBEngine.h"
#include "support/Files.h"
#include "support/catalogue/FreshProgram.h"

#include <filesystem>
#include <set>
#include <tuple>

using namespace discaro;
using namespace discaro::test;
namespace Module1 = discaro::app::Module1;

namespace {

class SharedModule : public AppTest {
protected:
    std::filesystem::path path(const char* name) const { return Module1::ApplicationPath / name; }
};

void change(std::string& text) {
    text = "left over";
}
void change(int16_t& number) {
    number = 1;
}
void change(std::filesystem::path& changed) {
    changed = "left over";
}
void change(std::vector<std::filesystem::path>& paths) {
    paths = {"left over"};
}
void change(std::shared_ptr<db::Database>& database) {
    database = db::DBEngine::OpenDatabase(Module1::cataloguePath());
}

void changeAll() {
    std::apply([](auto&... each) { (change(each), ...); }, sharedVariables());
}

template <typename... Variables>
void expectAsAtTheStart(const std::tuple<Variables&...>& variables) {
    EXPECT_EQ(variables, std::tuple<Variables...>());
}

// Those that the header declares.
size_t countDeclaredVariables() {
    const std::string header = readFile(std::filesystem::path(DISCARO_TESTS_FOLDER) / "../src/app/Module1.h");
    size_t count = 0;
    for (size_t at = 0; (at = header.find("\nextern ", at)) != std::string::npos; ++at)
        ++count;
    return count;
}

} // namespace

TEST_F(SharedModule, AFreshProgramHasAllItsVariables) {
    const std::set<const void*> different =
        std::apply([](const auto&... each) { return std::set<const void*>{&each...}; }, sharedVariables());
    EXPECT_EQ(different.size(), countDeclaredVariables()) << "one is missing in FreshProgram.h, or stands there twice";
}

TEST_F(SharedModule, AFreshProgramHasEveryVariableAsAtTheStart) {
    changeAll();
    const FreshProgram program;
    expectAsAtTheStart(sharedVariables());
}

TEST_F(SharedModule, AFreshProgramLeavesItsVariablesSo) {
    {
        const ScratchCatalogue other;
        changeAll();
    }
    expectAsAtTheStart(sharedVariables());
}

TEST_F(SharedModule, AFileThatIsThereExists) {
    writeFile(path("a file"));
    EXPECT_TRUE(Module1::FileExists(path("a file")));
}

TEST_F(SharedModule, AFileThatIsMissingInAFolderThatIsThereDoesNotExist) {
    EXPECT_FALSE(Module1::FileExists(path("no file")));
}

TEST_F(SharedModule, APathWhoseFolderIsMissingCountsAsExisting) {
    EXPECT_TRUE(Module1::FileExists(path("no folder") / "no file"));
}

TEST_F(SharedModule, AFileThatCannotBeReadCountsAsExisting) {
    writeFile(path("locked"));
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
