// A window may be unloaded while one of its own handlers yields: the handler goes on with its
// members, and the window is destroyed only when nobody uses it any more.

#include "base/RuntimeError.h"
#include "kit/SampleTest.h"
#include "kit/program/Ground.h"
#include "kit/program/MsgBox.h"
#include "kit/program/Yield.h"

#include <QtCore/QTimer>
#include <QtWidgets/QMessageBox>

using namespace discaro;
using namespace discaro::test;
using ::testing::ElementsAre;

namespace {

class UnloadWhileYielding : public SampleTest {
protected:
    // Unloads the window by an event that the next yield hears.
    void unloadSoon() {
        QTimer::singleShot(0, form, [this] { form->Unload(); });
    }

    void yieldUntilUnloaded() {
        while (!form->isUnloaded())
            kit::yield();
        for (int more = 0; more < 20; ++more)
            kit::yield();
    }
};

} // namespace

TEST_F(UnloadWhileYielding, TheHandlerGoesOnWithItsMembers) {
    form->onCommand = [this] {
        unloadSoon();
        yieldUntilUnloaded();
        ASSERT_TRUE(form);
        form->Text1->setText("still here");
        EXPECT_EQ(form->Command1(0).text(), "&OK");
    };
    form->Show();
    click(form->Command1(0));
    ASSERT_TRUE(form);
    EXPECT_THAT(form->heard, ElementsAre("load", "click 0", "unload", "clicked 0"));
    EXPECT_TRUE(waitFor([this] { return form.isNull(); }));
}

TEST_F(UnloadWhileYielding, AHandlerInsideAHandlerGoesOnToo) {
    form->onCommand = [this] {
        if (form->heard.back() == "click 0") {
            QTimer::singleShot(0, form, [this] { form->Command1(3).click(); });
            yieldUntilUnloaded();
        } else {
            form->Unload();
            kit::yield();
        }
        ASSERT_TRUE(form);
    };
    form->Show();
    click(form->Command1(0));
    ASSERT_TRUE(form);
    EXPECT_THAT(form->heard, ElementsAre("load", "click 0", "click 3", "unload", "clicked 3", "clicked 0"));
}

TEST_F(UnloadWhileYielding, ATimerThatUnloadsItsWindowReturnsSafely) {
    form->onTimer = [this] {
        form->Unload();
        kit::yield();
        ASSERT_TRUE(form);
        form->heard.emplace_back("after");
    };
    form->Show();
    form->Timer1->setEnabled(true);
    EXPECT_TRUE(waitFor([this] { return form.isNull(); }));
}

TEST_F(UnloadWhileYielding, AHandlerWaitingForAnAnswerGoesOn) {
    form->onCommand = [this] {
        QTimer::singleShot(0, form, [this] {
            form->Unload();
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_TRUE(box);
            box->button(QMessageBox::Ok)->click();
        });
        kit::MsgBox("Go on?", kit::Buttons::OkCancel, kit::Icon::Question, "Question", form);
        ASSERT_TRUE(form);
        form->Text1->setText("still here");
    };
    form->Show();
    click(form->Command1(0));
    ASSERT_TRUE(form);
    EXPECT_EQ(form->Text1->text(), "still here");
}

TEST_F(UnloadWhileYielding, AWindowOpenedModallyDoesNotDestroyItsUnloadedOpener) {
    auto* modal = new SampleForm;
    form->onCommand = [&] {
        QTimer::singleShot(0, modal, [&] {
            form->Unload();
            QTimer::singleShot(0, modal, [&] { modal->Unload(); });
        });
        modal->Show(kit::Form::Modality::Modal);
        ASSERT_TRUE(form);
        form->Text1->setText("still here");
    };
    form->Show();
    click(form->Command1(0));
    ASSERT_TRUE(form);
    EXPECT_EQ(form->Text1->text(), "still here");
}

TEST_F(UnloadWhileYielding, AWaitingActionRunsOnlyWhenNoHandlerIsLeft) {
    bool ran = false;
    form->onCommand = [&] {
        kit::atGround([&] { ran = true; });
        for (int more = 0; more < 20; ++more)
            kit::yield();
        EXPECT_FALSE(ran);
    };
    form->Show();
    click(form->Command1(0));
    EXPECT_FALSE(ran);
    EXPECT_TRUE(waitFor([&] { return ran; }));
}

TEST(Yield, RunsWhatIsPendingAndReturns) {
    bool ran = false;
    QTimer::singleShot(0, [&] { ran = true; });
    kit::yield();
    EXPECT_TRUE(ran);
}
