#include "app/AppTest.h"
#include "app/HandOver.h"

#include <QtCore/QTimer>

using namespace discaro;
using namespace discaro::test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
namespace Windows = discaro::app::Windows;
namespace Module1 = discaro::app::Module1;

namespace {

class HandOver : public AppTest {
protected:
    HandOver() {
        stub("Loading"); // so that the log has it, too
    }
};

} // namespace

TEST_F(HandOver, GoesThroughItsStepsInOrder) {
    Windows::Show("EXMain");
    log.clear();
    stub("Search", [this](kit::Form&) {
        log.push_back("painted " + std::to_string(Windows::Find("Loading")->isPainted()));
        log.push_back("returns to " + Module1::ReturnTo);
        log.push_back("jump " + Module1::JumpDisc);
    });
    app::handOver({.from = "EXMain", .to = "Search", .returnTo = "explore"}, [this] {
        log.push_back("variables after " + Module1::ReturnTo);
        Module1::JumpDisc = "7";
    });
    EXPECT_THAT(log, ElementsAre("Loading load", "EXMain unload", "variables after explore", "Search load", "painted 1",
                                 "returns to explore", "jump 7", "Loading unload"));
    EXPECT_TRUE(Windows::Find("Search")->isVisible());
}

TEST_F(HandOver, ShowsLoadingBeforeItUnloadsTheOldWindow) {
    bool loadingUp = false;
    Windows::Register("EXMain", [&] {
        auto* explorer = new StubForm("EXMain", log);
        QObject::connect(explorer, &kit::Form::Unloaded, [&] { loadingUp = Windows::Find("Loading")->isVisible(); });
        return explorer;
    });
    Windows::Show("EXMain");
    app::handOver({.from = "EXMain", .to = "Search", .returnTo = "explore"});
    EXPECT_TRUE(loadingUp);
}

TEST_F(HandOver, MayOnlyHideTheOldWindow) {
    Windows::Show("EXMain");
    auto* explorer = Windows::Find("EXMain");
    app::handOver({.from = "EXMain", .to = "Search", .returnTo = "explore", .keepFrom = true});
    EXPECT_EQ(Windows::Find("EXMain"), explorer);
    EXPECT_FALSE(explorer->isVisible());
    EXPECT_TRUE(Windows::Find("Search")->isVisible());
}

TEST_F(HandOver, ToAWindowThatIsNotKnownChangesNothing) {
    Windows::Show("EXMain");
    log.clear();
    app::handOver({.from = "EXMain", .to = "Nowhere", .returnTo = "explore"});
    EXPECT_THAT(log, IsEmpty());
    EXPECT_TRUE(Windows::Find("EXMain")->isVisible());
    EXPECT_EQ(Module1::ReturnTo, "");
}

TEST_F(HandOver, AClickThatIsHeardWhileLoadingPaintsRunsInItsMiddle) {
    Windows::Show("EXMain");
    log.clear();
    QTimer::singleShot(0, [this] { log.emplace_back("heard"); });
    app::handOver({.from = "EXMain", .to = "Search", .returnTo = "explore"});
    EXPECT_THAT(log, ElementsAre("Loading load", "EXMain unload", "heard", "Search load", "Loading unload"));
}

TEST_F(HandOver, TheReturnFollowsTheWord) {
    const std::pair<const char*, const char*> words[] = {{"switch", "Switch"}, {"explore", "EXMain"}};
    for (const auto& [word, name] : words) {
        Module1::ReturnTo = word;
        app::showReturnWindow();
        EXPECT_TRUE(Windows::IsLoaded(name)) << word;
        Windows::Unload(name);
    }
}

TEST_F(HandOver, AnyOtherWordReturnsToNothing) {
    for (const char* word : {"", "Switch", "EXPLORE", "search"}) {
        Module1::ReturnTo = word;
        app::showReturnWindow();
        EXPECT_THAT(log, IsEmpty()) << word;
        EXPECT_FALSE(Windows::IsLoaded("Switch")) << word;
    }
}

TEST_F(HandOver, AJumpOpensTheExplorerAndStartsItsDelayedLoad) {
    app::jumpToExplorer();
    ASSERT_TRUE(Windows::IsLoaded("EXMain"));
    EXPECT_TRUE(kit::timerOf(*Windows::Find("EXMain"), "Timer2")->isEnabled());
}

TEST_F(HandOver, AJumpReachesAnExplorerThatWasOnlyHidden) {
    Windows::Show("EXMain");
    auto* explorer = Windows::Find("EXMain");
    kit::timerOf(*explorer, "Timer2")->setEnabled(false);
    Windows::Hide("EXMain");
    log.clear();
    app::jumpToExplorer();
    EXPECT_EQ(Windows::Find("EXMain"), explorer);
    EXPECT_TRUE(explorer->isVisible());
    EXPECT_TRUE(kit::timerOf(*explorer, "Timer2")->isEnabled());
    EXPECT_THAT(log, ElementsAre("Loading load"));
}
