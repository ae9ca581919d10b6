#include "app/AppTest.h"
#include "app/Main.h"
#include "app/SingleInstance.h"
#include "kit/program/UnhandledErrors.h"
#include "support/Files.h"

#include <filesystem>

using namespace discaro;
using namespace discaro::test;
namespace Module1 = discaro::app::Module1;
namespace Windows = discaro::app::Windows;

namespace {

class Main : public AppTest {
protected:
    std::filesystem::path mark() const { return folder() / "mark"; }
};

// A box on the screen, whose event loop comes round before it is answered.
class BoxWithEventLoop {
public:
    BoxWithEventLoop()
        : m_before(kit::setAnswerer([this](const kit::Question& question) {
            texts.push_back(question.text.toStdString());
            QCoreApplication::processEvents();
            return kit::Answer::Ok;
        })) {}
    ~BoxWithEventLoop() { kit::setAnswerer(m_before); }
    BoxWithEventLoop(const BoxWithEventLoop&) = delete;
    BoxWithEventLoop& operator=(const BoxWithEventLoop&) = delete;

    std::vector<std::string> texts;

private:
    kit::Answerer m_before;
};

// The exit status of a program whose last window has just failed to come.
int statusOf(const std::function<void()>& step) {
    const ThrowingEnd end;
    Windows::setWhenNoneIsLeft([] { kit::EndProgram(); });
    try {
        kit::reportingErrors(step);
    } catch (const ProgramEnded& ended) {
        return ended.exitCode;
    }
    return -1;
}

} // namespace

TEST_F(Main, ShowsTheMenuAfterMakingTheFolderReady) {
    const app::SingleInstance instance(mark());
    bool menuWasUp = true;
    app::Main(instance, [&] { menuWasUp = Windows::IsLoaded("Switch"); });
    EXPECT_FALSE(menuWasUp);
    ASSERT_TRUE(Windows::IsLoaded("Switch"));
    EXPECT_TRUE(Windows::Find("Switch")->isVisible());
}

TEST_F(Main, ACatalogueThatCanNotBeOpenedIsReportedAndEndsTheProgramWithStatus1) {
    writeFile(Module1::cataloguePath(), std::string(5000, 'x'));
    const BoxWithEventLoop box;
    const app::SingleInstance instance(mark());
    EXPECT_EQ(statusOf([&] { app::Main(instance, [] {}); }), 1);
    ASSERT_EQ(box.texts.size(), 1U);
    EXPECT_THAT(box.texts[0], ::testing::StartsWith("Run-time error 3411:"));
}

TEST_F(Main, TheSameWhereTheMenuCanNotComeBack) {
    stub("Search");
    Windows::Show("Search");
    const BoxWithEventLoop box;
    EXPECT_EQ(statusOf([] {
                  std::filesystem::remove(Module1::cataloguePath());
                  Windows::Unload("Search");
                  Windows::Show("Switch");
              }),
              1);
    EXPECT_EQ(box.texts.size(), 1U);
}

TEST_F(Main, RefusesASecondInstance) {
    const app::SingleInstance first(mark());
    const app::SingleInstance second(mark());
    EXPECT_FALSE(first.prevInstance());
    ASSERT_TRUE(second.prevInstance());
    const ThrowingEnd end;
    ScriptedMsgBox script;
    script.expect("Another Instance of Tavo - Discaro is already running.", kit::Buttons::Ok, kit::Icon::Exclamation,
                  "Already Running");
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
    const app::SingleInstance first(mark(), folder());
    EXPECT_FALSE(first.prevInstance());
    const app::SingleInstance second(folder() / "another mark", folder());
    EXPECT_TRUE(second.prevInstance());
}

TEST_F(Main, TheMarkOnAFolderLeavesNothingInIt) {
    const auto own = folder() / "own";
    std::filesystem::create_directory(own);
    { const app::SingleInstance instance({}, own); }
    EXPECT_TRUE(std::filesystem::is_empty(own));
}

TEST_F(Main, WhereNoMarkCanBeMadeNobodyHasIt) {
    EXPECT_FALSE(app::SingleInstance(folder() / "none/mark").prevInstance());
}
