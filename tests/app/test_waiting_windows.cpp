#include "app/AppTest.h"
#include "app/Loading.h"
#include "app/Searching.h"
#include "support/windows/GoldenForm.h"

using namespace discaro;
using namespace discaro::test;
using ::testing::IsEmpty;
namespace Windows = discaro::app::Windows;

namespace {

class WaitingWindows : public AppTest {
protected:
    template <typename Window>
    Window& open(const char* name) {
        Windows::Show(name);
        return dynamic_cast<Window&>(*Windows::Find(name));
    }
};

} // namespace

TEST_F(WaitingWindows, LoadingMatchesItsGoldenFile) {
    expectGolden(open<app::Loading>("Loading"), "app");
}

TEST_F(WaitingWindows, LoadingIsExactlyItsLabel) {
    auto& loading = open<app::Loading>("Loading");
    EXPECT_EQ(loading.Label1->pos(), QPoint(0, 0));
    EXPECT_EQ(loading.size(), loading.Label1->size());
    EXPECT_EQ(loading.caption(), "Discaro");
    EXPECT_EQ(loading.Label1->text(), "   Loading , Please Wait ...   ");
}

TEST_F(WaitingWindows, LoadingHoldsItsTextAtAnyFontSize) {
    for (const double factor : {1.0, 1.25, 1.5, 2.0}) {
        const LargerFont larger(factor);
        EXPECT_THAT(cutTexts(open<app::Loading>("Loading")), IsEmpty()) << factor;
        Windows::Unload("Loading");
    }
}

TEST_F(WaitingWindows, LoadingIsPaintedOnceItShows) {
    const auto& loading = open<app::Loading>("Loading");
    EXPECT_TRUE(QTest::qWaitFor([&] { return loading.isPainted(); }));
}

TEST_F(WaitingWindows, SearchingMatchesItsGoldenFile) {
    expectGolden(open<app::Searching>("Searching"), "app");
}

TEST_F(WaitingWindows, SearchingIsARoundPictureOf100Pixels) {
    auto& searching = open<app::Searching>("Searching");
    EXPECT_EQ(searching.caption(), "Searching");
    EXPECT_EQ(searching.mask().boundingRect(), QRect(0, 0, 100, 100));
    EXPECT_FALSE(searching.mask().contains(QPoint(2, 2)));
    const QImage shown = searching.Image1->grab().toImage();
    QImage empty = shown;
    empty.fill(shown.pixelColor(0, 0));
    EXPECT_NE(shown, empty);
    EXPECT_EQ(searching.Image1->geometry(), searching.rect());
}

TEST_F(WaitingWindows, UnloadingSearchingWhereThereIsNoneIsNoError) {
    Windows::Unload("Searching");
    EXPECT_FALSE(Windows::IsLoaded("Searching"));
}
