#include "app/AppTest.h"
#include "app/Main.h"
#include "app/SingleInstance.h"

using namespace discaro;
using namespace discaro::test;
namespace Windows = discaro::app::Windows;

namespace {

class Main : public AppTest {
protected:
    std::filesystem::path mark() const { return folder.filePath("mark").toStdString(); }
};

} // namespace

TEST_F(Main, ShowsTheMenuAfterMakingTheFolderReady) {
    const app::SingleInstance instance(mark());
    bool menuWasUp = true;
    app::Main(instance, [&] { menuWasUp = Windows::IsLoaded("Switch"); });
    EXPECT_FALSE(menuWasUp);
    ASSERT_TRUE(Windows::IsLoaded("Switch"));
    EXPECT_TRUE(Windows::Find("Switch")->isVisible());
}

TEST_F(Main, RefusesASecondInstance) {
    const app::SingleInstance first(mark());
    const app::SingleInstance second(mark());
    EXPECT_FALSE(first.prevInstance());
    ASSERT_TRUE(second.prevInstance());
    const ThrowingEnd end;
    ScriptedMsgBox script;
    script.expect("Another Instance of Tavo - Discaro is already running.", kit::Buttons::Ok,
                  kit::Icon::Exclamation, "Already Running");
    bool prepared = false;
    EXPECT_THROW(app::Main(second, [&] { prepared = true; }), ProgramEnded);
    EXPECT_FALSE(prepared);
    EXPECT_FALSE(Windows::IsLoaded("Switch"));
}

TEST_F(Main, TheMarkIsFreeAgainWhenTheInstanceHasGone) {
    { const app::SingleInstance first(mark()); }
    EXPECT_FALSE(app::SingleInstance(mark()).prevInstance());
}

TEST_F(Main, OneInstanceAFolderWhateverTheSurroundingsOfItsStart) {
    const std::filesystem::path shared = folder.path().toStdString();
    const app::SingleInstance first(mark(), shared);
    EXPECT_FALSE(first.prevInstance());
    const app::SingleInstance second(folder.filePath("another mark").toStdString(), shared);
    EXPECT_TRUE(second.prevInstance());
}

TEST_F(Main, TheMarkOnAFolderLeavesNothingInIt) {
    const auto own = std::filesystem::path(folder.path().toStdString()) / "own";
    std::filesystem::create_directory(own);
    { const app::SingleInstance instance({}, own); }
    EXPECT_TRUE(std::filesystem::is_empty(own));
}

TEST_F(Main, WhereNoMarkCanBeMadeNobodyHasIt) {
    EXPECT_FALSE(app::SingleInstance(folder.filePath("none/mark").toStdString()).prevInstance());
}
