#include "base/RuntimeError.h"
#include "kit/SampleTest.h"
#include "kit/common/WindowScale.h"
#include "kit/program/Yield.h"

#include <QtCore/QTimer>
#include <QtGui/QCloseEvent>
#include <QtGui/QScreen>
#include <QtWidgets/QStyle>

using namespace discaro;
using namespace discaro::test;
using ::testing::ElementsAre;

namespace {

class Form : public SampleTest {};

void sendClose(QWidget& window) {
    QCloseEvent close;
    QCoreApplication::sendEvent(&window, &close);
}

// A window that the user may make larger, with one control.
class SizableForm : public kit::Form {
public:
    SizableForm()
        : Form({.name = "SizableForm", .caption = "", .size = {200, 100}, .border = Border::Sizable}) {
        addControl(*inner, QRect(10, 10, 50, 20));
    }

    QWidget* inner = new QWidget(this);
    std::vector<QSize> sizes; // at each call of the handler

protected:
    void Form_Resize() override { sizes.push_back(size()); }
};

class Sizable : public testing::Test {
protected:
    ~Sizable() override { form->Unload(); }

    const FreshWindows windows;
    SizableForm* form = new SizableForm;
};

} // namespace

TEST_F(Sizable, BeginsAtItsFirstSizeAndIsNeverSmaller) {
    form->Show();
    EXPECT_EQ(form->size(), QSize(200, 100));
    EXPECT_EQ(form->minimumSize(), QSize(200, 100));
    EXPECT_TRUE(form->windowFlags() & Qt::WindowMaximizeButtonHint);
    form->resize(50, 50);
    EXPECT_EQ(form->size(), QSize(200, 100));
}

TEST_F(Sizable, TellsItsNewSize) {
    form->Show();
    kit::yield();
    form->sizes.clear();
    form->resize(300, 150);
    kit::yield();
    ASSERT_FALSE(form->sizes.empty());
    EXPECT_EQ(form->sizes.back(), QSize(300, 150));
    EXPECT_EQ(form->tablePlace(*form->inner), QRect(10, 10, 50, 20));
}

TEST_F(Sizable, ASizeFromElsewhereIsFittedToTheScreen) {
    form->resizeTo(QSize(300, 150));
    EXPECT_EQ(form->size(), QSize(300, 150));
    form->resizeTo(QSize(10, 10));
    EXPECT_EQ(form->size(), QSize(200, 100));
    form->resizeTo(QSize(1000000, 1000000));
    EXPECT_EQ(form->width(), form->screen()->availableSize().width());
    EXPECT_LT(form->height(), form->screen()->availableSize().height());
}

TEST_F(Sizable, ASizeThatIsFittedToTheScreenLeavesItsFootInSight) {
    form->resizeTo(QSize(1000000, 1000000));
    form->Show();
    const QRect screen = form->screen()->availableGeometry();
    const int title = form->style()->pixelMetric(QStyle::PM_TitleBarHeight);
    EXPECT_EQ(form->pos(), screen.topLeft());
    EXPECT_LE(form->pos().y() + title + form->height(), screen.bottom() + 1);
}

TEST_F(Sizable, AWindowLargerThanTheScreenBeginsAtItsCorner) {
    form->setLogicalSize(form->screen()->availableSize() + QSize(200, 100));
    form->Show();
    EXPECT_EQ(form->pos(), form->screen()->availableGeometry().topLeft());
}

TEST_F(Sizable, GrowsWithTheFontAndLaysItselfOutAgain) {
    form->Show();
    kit::yield();
    const LargerFont larger(2.0);
    kit::yield();
    const double scale = form->scale();
    ASSERT_GT(scale, 1.5);
    EXPECT_EQ(form->size(), form->firstSize());
    EXPECT_EQ(form->inner->geometry(), form->tablePlace(*form->inner));
    EXPECT_EQ(form->sizes.back(), form->firstSize());
    form->resize(form->firstSize() + QSize(30, 30));
    EXPECT_EQ(form->logical(form->firstSize()), QSize(200, 100));
}

TEST_F(Form, HasItsNameAndCaption) {
    EXPECT_EQ(form->name(), "SampleForm");
    EXPECT_EQ(form->caption(), "A sample");
    form->setCaption("Disc [*] of two");
    EXPECT_EQ(form->caption(), "Disc [*] of two");
    EXPECT_TRUE(form->windowTitle().contains("[*][*]")) << "which the desktop shows as one";
    form->setCaption("Another");
    EXPECT_EQ(form->windowTitle(), "Another");
}

TEST_F(Form, RunsItsLoadHandlerOnceBeforeItIsSeen) {
    bool seen = true;
    form->onLoad = [&] { seen = form->isVisible(); };
    EXPECT_FALSE(form->isLoaded());
    form->Show();
    form->Show();
    EXPECT_FALSE(seen);
    EXPECT_TRUE(form->isLoaded());
    EXPECT_TRUE(form->isVisible());
    EXPECT_THAT(form->heard, ElementsAre("load"));
}

TEST_F(Form, LoadsWithoutShowing) {
    form->Load();
    EXPECT_TRUE(form->isLoaded());
    EXPECT_FALSE(form->isVisible());
}

TEST_F(Form, HasAFixedSize) {
    form->Show();
    EXPECT_EQ(form->size(), QSize(400, 420));
    EXPECT_EQ(form->minimumSize(), form->maximumSize());
}

TEST_F(Form, UnloadRunsItsHandlerOnceWhileTheWindowIsStillSeen) {
    bool seen = false;
    int unloads = 0;
    QObject::connect(form, &kit::Form::Unloaded, [&] { ++unloads; });
    form->onUnload = [&] {
        seen = form->isVisible();
        form->Unload();
    };
    form->Show();
    form->Unload();
    form->Unload();
    EXPECT_TRUE(seen);
    EXPECT_FALSE(form->isVisible());
    EXPECT_TRUE(form->isUnloaded());
    EXPECT_EQ(unloads, 1);
    EXPECT_THAT(form->heard, ElementsAre("load", "unload"));
}

TEST_F(Form, IsDestroyedByTheEventLoopAfterItsUnload) {
    form->Show();
    form->Unload();
    ASSERT_TRUE(form);
    EXPECT_TRUE(waitFor([this] { return form.isNull(); }));
}

TEST_F(Form, ClosingByTheFrameUnloads) {
    form->Show();
    sendClose(*form);
    EXPECT_THAT(form->heard, ElementsAre("load", "unload"));
    EXPECT_TRUE(form->isUnloaded());
}

TEST_F(Form, EscapeClosesItFromWhateverHasTheFocus) {
    form->Show();
    QTest::keyClick(form->Combo1, Qt::Key_Escape);
    EXPECT_THAT(form->heard, ElementsAre("load", "unload"));
}

TEST_F(Form, EscapeThatWouldLoseSomethingTypedOnlyBeeps) {
    const CountedBeeps beeps;
    form->Show();
    form->holdsTyped = true;
    QTest::keyClick(&form->Text1->editor(), Qt::Key_Escape);
    EXPECT_FALSE(form->isUnloaded());
    EXPECT_EQ(beeps.count(), 1);
}

TEST_F(Form, AnEscapeKeyThatIsHeldClosesNothingMore) {
    form->Show();
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, {}, true);
    QCoreApplication::sendEvent(form, &held);
    EXPECT_FALSE(form->isUnloaded());
}

TEST_F(Form, OpensWhereItIsTold) {
    form->openAt({31, 42});
    form->Show();
    EXPECT_EQ(form->pos(), QPoint(31, 42));
}

TEST_F(Form, OpensInTheMiddleWhereThePlaceIsOnNoScreen) {
    form->openAt({100000, 100000});
    form->Show();
    EXPECT_TRUE(form->screen()->geometry().contains(form->geometry().center()));
}

TEST_F(Form, DoesNotShowWhenItsLoadHandlerUnloadsIt) {
    form->onLoad = [this] { form->Unload(); };
    form->Show();
    EXPECT_FALSE(form->isVisible());
    EXPECT_TRUE(form->isUnloaded());
}

TEST_F(Form, AFailingLoadHandlerLeavesNoWindowAndNoUnloadHandlerRuns) {
    int unloads = 0;
    QObject::connect(form, &kit::Form::Unloaded, [&] { ++unloads; });
    form->onLoad = [] { throw base::RuntimeError(base::ErrorNumber::FileMissing); };
    EXPECT_THROW(form->Show(), base::RuntimeError);
    EXPECT_TRUE(form->isUnloaded());
    EXPECT_EQ(unloads, 1);
    EXPECT_THAT(form->heard, ElementsAre("load"));
}

TEST_F(Form, AFailingUnloadHandlerStillEndsTheWindow) {
    form->onUnload = [] { throw base::RuntimeError(base::ErrorNumber::DiskFull); };
    form->Show();
    EXPECT_THROW(form->Unload(), base::RuntimeError);
    EXPECT_TRUE(form->isUnloaded());
    EXPECT_FALSE(form->isVisible());
}

TEST_F(Form, GivesBackWhatItWasLentInReverseOrderAfterItsUnloadHandler) {
    form->atUnload([this] { form->heard.emplace_back("first back"); });
    form->atUnload([this] { form->heard.emplace_back("second back"); });
    form->Load();
    form->Unload();
    EXPECT_THAT(form->heard, ElementsAre("load", "unload", "second back", "first back"));
}

TEST_F(Form, NoDeclaredHandlerRunsAfterTheUnload) {
    form->Show();
    form->Unload();
    form->heard.clear();
    form->Command1(0).click();
    form->Text1->setText("late");
    emit form->TrayIcon1->Restore();
    EXPECT_THAT(form->heard, ElementsAre());
}

TEST_F(Form, ItsTimersStopAtTheUnloadAndStayStopped) {
    form->Show();
    form->Unload();
    form->heard.clear();
    form->Timer1->setEnabled(true);
    EXPECT_TRUE(waitFor([this] { return form.isNull() || !form->heard.empty(); }));
    EXPECT_TRUE(form.isNull());
}

TEST_F(Form, AModalShowReturnsWhenTheWindowIsUnloaded) {
    QTimer::singleShot(0, form, [this] {
        EXPECT_TRUE(form->isModal());
        form->Unload();
    });
    form->Show(kit::Form::Modality::Modal);
    ASSERT_TRUE(form);
    EXPECT_TRUE(form->isUnloaded());
}

TEST_F(Form, AModalShowReturnsWhenTheWindowIsHidden) {
    QTimer::singleShot(0, form, [this] { form->Hide(); });
    form->Show(kit::Form::Modality::Modal);
    EXPECT_FALSE(form->isVisible());
    EXPECT_FALSE(form->isUnloaded());
}

TEST_F(Form, AModalWindowThatUnloadsWhileLoadingDoesNotWait) {
    form->onLoad = [this] { form->Unload(); };
    form->Show(kit::Form::Modality::Modal);
    EXPECT_TRUE(form->isUnloaded());
}

TEST_F(Form, MinimisesAndRestores) {
    form->Show();
    form->setState(kit::Form::State::Minimised);
    EXPECT_EQ(form->state(), kit::Form::State::Minimised);
    EXPECT_FALSE(form->isUnloaded());
    form->setState(kit::Form::State::Normal);
    EXPECT_EQ(form->state(), kit::Form::State::Normal);
}

TEST_F(Form, FindsItsTimersByName) {
    EXPECT_EQ(kit::timerOf(*form, "Timer1"), form->Timer1);
    EXPECT_EQ(kit::timerOf(*form, "Timer2"), nullptr);
}

TEST_F(Form, KeepsItsPlacesAtTheReferenceFont) {
    EXPECT_EQ(form->scale(), 1.0);
    EXPECT_EQ(form->Command1(3).geometry(), QRect(110, 110, 90, 28));
}

TEST_F(Form, GrowsItsPlacesWithTheFont) {
    const LargerFont larger(1.5);
    auto* large = new SampleForm;
    EXPECT_NEAR(large->scale(), 1.5, 0.1);
    EXPECT_EQ(large->width(), large->scaled(400));
    EXPECT_EQ(large->Command1(3).x(), large->scaled(110));
    large->Unload();
}

TEST_F(Form, ArrangesItselfAnewWhenTheFontGrowsWhileItIsUp) {
    form->Show();
    {
        const LargerFont larger(1.25);
        EXPECT_TRUE(waitFor([this] { return form->scale() > 1.1; }));
        EXPECT_EQ(form->Command1(0).y(), form->scaled(110));
    }
    EXPECT_TRUE(waitFor([this] { return form->scale() == 1.0; }));
    EXPECT_EQ(form->size(), QSize(400, 420));
}

TEST_F(Form, NeverShrinksForASmallFont) {
    QFont small = form->font();
    small.setPixelSize(7);
    EXPECT_EQ(kit::fontScale(small), 1.0);
}

TEST_F(Form, ScaledPlacesThatTouchStillTouch) {
    const LargerFont larger(1.25);
    auto* large = new SampleForm;
    const QRect left = large->scaled(QRect(3, 0, 11, 5));
    const QRect right = large->scaled(QRect(14, 0, 9, 5));
    EXPECT_EQ(left.x() + left.width(), right.x());
    large->Unload();
}

TEST_F(Form, MovesAControlOfItsTable) {
    form->place(*form->Image1, QRect(310, 90, 32, 32));
    EXPECT_EQ(form->Image1->geometry(), QRect(310, 90, 32, 32));
    EXPECT_EQ(form->Image1->parentWidget(), form.data());
}

TEST_F(Form, WaitsForItsFirstPaintingAndOnlyWhileSeen) {
    form->awaitPainting();
    EXPECT_FALSE(form->isPainted());
    form->Show();
    form->awaitPainting();
    EXPECT_TRUE(form->isPainted());
}
