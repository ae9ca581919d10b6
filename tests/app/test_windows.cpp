#include "app/AppTest.h"
#include "app/Windows.h"
#include "base/RuntimeError.h"
#include "kit/program/Yield.h"

#include <QtCore/QTimer>

using namespace discaro;
using namespace discaro::test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
namespace Windows = discaro::app::Windows;

namespace {

class Registry : public AppTest {};

} // namespace

TEST_F(Registry, KnowsWindowsByTheirNames) {
    EXPECT_TRUE(Windows::Exists("Search"));
    EXPECT_FALSE(Windows::Exists("search"));
    EXPECT_FALSE(Windows::Exists(""));
}

TEST_F(Registry, MakesAWindowWhenItIsFirstShown) {
    EXPECT_FALSE(Windows::IsLoaded("Search"));
    Windows::Show("Search");
    auto* search = Windows::Find("Search");
    ASSERT_TRUE(search);
    EXPECT_TRUE(search->isVisible());
    Windows::Show("Search");
    EXPECT_EQ(Windows::Find("Search"), search);
    EXPECT_THAT(log, ElementsAre("Search load"));
}

TEST_F(Registry, LoadsWithoutShowing) {
    auto* search = Windows::Load("Search");
    ASSERT_TRUE(search);
    EXPECT_FALSE(search->isVisible());
    EXPECT_TRUE(Windows::IsLoaded("Search"));
}

TEST_F(Registry, AnUnknownNameShowsNothing) {
    Windows::Show("Nowhere");
    Windows::Unload("Nowhere");
    Windows::Hide("Nowhere");
    EXPECT_EQ(Windows::Load("Nowhere"), nullptr);
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(Registry, UnloadingWhatIsNotLoadedDoesNothing) {
    Windows::Unload("Search");
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(Registry, AWindowIsStillThereInItsUnloadHandlerAndGoneAfterIt) {
    Windows::Show("Search");
    auto* search = Windows::Find("Search");
    Windows::Unload("Search");
    EXPECT_FALSE(Windows::IsLoaded("Search"));
    EXPECT_TRUE(search->isUnloaded());
    EXPECT_THAT(log, ElementsAre("Search load", "Search unload"));
}

TEST_F(Registry, ShowingAfterAnUnloadMakesAnotherWindow) {
    Windows::Show("Search");
    auto* first = Windows::Find("Search");
    Windows::Unload("Search");
    kit::yield();
    Windows::Show("Search");
    EXPECT_NE(Windows::Find("Search"), first);
    EXPECT_THAT(log, ElementsAre("Search load", "Search unload", "Search load"));
}

TEST_F(Registry, AWindowClosedByItsFrameLeaves) {
    Windows::Show("Search");
    Windows::Find("Search")->close();
    EXPECT_FALSE(Windows::IsLoaded("Search"));
}

TEST_F(Registry, AWindowThatUnloadsItselfWhileLoadingIsNotShown) {
    stub("Search", [](kit::Form& search) { search.Unload(); });
    EXPECT_EQ(Windows::Load("Search"), nullptr);
    Windows::Show("Search");
    EXPECT_FALSE(Windows::IsLoaded("Search"));
}

TEST_F(Registry, AWindowThatFailsToLoadIsNotLoaded) {
    stub("Search", [](kit::Form&) { throw base::RuntimeError(base::ErrorNumber::FileMissing); });
    EXPECT_THROW(Windows::Show("Search"), base::RuntimeError);
    EXPECT_FALSE(Windows::IsLoaded("Search"));
}

TEST_F(Registry, AHiddenWindowKeepsItsPlace) {
    Windows::Show("Search");
    auto* search = Windows::Find("Search");
    Windows::Hide("Search");
    EXPECT_FALSE(search->isVisible());
    Windows::Show("Search");
    EXPECT_EQ(Windows::Find("Search"), search);
    EXPECT_THAT(log, ElementsAre("Search load"));
}

TEST_F(Registry, AModalShowReturnsWhenTheWindowIsGone) {
    stub("About", [](kit::Form& about) { QTimer::singleShot(0, &about, [&about] { about.Unload(); }); });
    Windows::Show("About", kit::Form::Modality::Modal);
    EXPECT_FALSE(Windows::IsLoaded("About"));
}

TEST_F(Registry, TellsWhenTheLastWindowHasGone) {
    int told = 0;
    Windows::setWhenNoneIsLeft([&] { ++told; });
    Windows::Show("Search");
    Windows::Show("Loading");
    Windows::Unload("Search");
    EXPECT_FALSE(QTest::qWaitFor([&] { return told > 0; }, 50));
    Windows::Unload("Loading");
    EXPECT_TRUE(waitFor([&] { return told == 1; }));
}

TEST_F(Registry, DoesNotTellWhileAHandlerIsBetweenOneWindowAndTheNext) {
    int told = 0;
    Windows::setWhenNoneIsLeft([&] { ++told; });
    Windows::Show("Scanform");
    QTimer::singleShot(0, [&] {
        Windows::Unload("Scanform");
        for (int more = 0; more < 20; ++more)
            kit::yield();
        Windows::Show("Scanform");
    });
    EXPECT_FALSE(QTest::qWaitFor([&] { return told > 0; }, 50));
    EXPECT_TRUE(Windows::IsLoaded("Scanform"));
}
