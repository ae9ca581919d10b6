#include "kit/SampleTest.h"
#include "kit/program/Ground.h"

#include <QtCore/QTimer>
#include <QtGui/QScreen>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMessageBox>

#include <gtest/gtest-spi.h>

using namespace discaro;
using namespace discaro::test;

namespace {

// Runs a check on the box that is open, then answers it.
void whenBoxIsUp(const std::function<void(QMessageBox&)>& step) {
    QTimer::singleShot(0, [step] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_TRUE(box);
        step(*box);
        if (box->isVisible())
            box->reject();
    });
}

void askOk(const QString& text) {
    kit::MsgBox(text, kit::Buttons::Ok, kit::Icon::Exclamation, "Error");
}

} // namespace

TEST(MsgBox, ShowsTextTitleIconAndButtons) {
    whenBoxIsUp([](QMessageBox& box) {
        EXPECT_EQ(box.text(), "You must enter a Preferred name.");
        EXPECT_EQ(box.windowTitle(), "Error");
        EXPECT_EQ(box.icon(), QMessageBox::Warning);
        EXPECT_EQ(box.buttons().size(), 1);
    });
    EXPECT_EQ(kit::MsgBox("You must enter a Preferred name.", kit::Buttons::Ok, kit::Icon::Exclamation, "Error"),
              kit::Answer::Ok);
}

TEST(MsgBox, ShowsEveryIcon) {
    const std::pair<kit::Icon, QMessageBox::Icon> icons[] = {{kit::Icon::None, QMessageBox::NoIcon},
                                                             {kit::Icon::Critical, QMessageBox::Critical},
                                                             {kit::Icon::Question, QMessageBox::Question},
                                                             {kit::Icon::Information, QMessageBox::Information}};
    for (const auto& [icon, shown] : icons) {
        whenBoxIsUp([expected = shown](QMessageBox& box) { EXPECT_EQ(box.icon(), expected); });
        kit::MsgBox("text", kit::Buttons::Ok, icon, "title");
    }
}

TEST(MsgBox, KeepsNamesWithMarkupAsTheyAre) {
    whenBoxIsUp([](QMessageBox& box) {
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.findChild<QLabel*>("qt_msgbox_label")->text(), "Delete '<b>R&B</b>' ?");
    });
    kit::MsgBox("Delete '<b>R&B</b>' ?", kit::Buttons::OkCancel, kit::Icon::Question, "Confirm");
}

TEST(MsgBox, ItsTextCanBeSelected) {
    whenBoxIsUp([](QMessageBox& box) {
        EXPECT_TRUE(box.textInteractionFlags() & Qt::TextSelectableByMouse);
        EXPECT_TRUE(box.textInteractionFlags() & Qt::TextSelectableByKeyboard);
    });
    askOk("text");
}

TEST(MsgBox, OkAndCancelAreTheAnswers) {
    for (const auto button : {QMessageBox::Ok, QMessageBox::Cancel}) {
        whenBoxIsUp([button](QMessageBox& box) { box.button(button)->click(); });
        const auto answer = kit::MsgBox("text", kit::Buttons::OkCancel, kit::Icon::Question, "title");
        EXPECT_EQ(answer, button == QMessageBox::Ok ? kit::Answer::Ok : kit::Answer::Cancel);
    }
}

TEST(MsgBox, EscapeIsCancelWhereThereIsOne) {
    whenBoxIsUp([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(kit::MsgBox("text", kit::Buttons::OkCancel, kit::Icon::Question, "title"), kit::Answer::Cancel);
    whenBoxIsUp([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(kit::MsgBox("text", kit::Buttons::Ok, kit::Icon::Question, "title"), kit::Answer::Ok);
}

TEST(MsgBox, StandsOverTheWindowThatAsks) {
    auto* form = new SampleForm;
    form->Show();
    whenBoxIsUp([form](QMessageBox& box) {
        EXPECT_LT((box.frameGeometry().center() - form->frameGeometry().center()).manhattanLength(), 40);
    });
    kit::MsgBox("text", kit::Buttons::Ok, kit::Icon::None, "title", form->Command1.begin()->second);
    form->Unload();
    kit::runGroundActions();
}

TEST(MsgBox, StandsCentredOnItsWindowAlsoWhenItsTextIsWrapped) {
    auto* form = new SampleForm;
    form->Show();
    form->move(250, 200);
    const QString longText = QString("The scan operation will be stopped. ").repeated(12);
    whenBoxIsUp([form](QMessageBox& box) {
        const QPoint off = box.frameGeometry().center() - form->frameGeometry().center();
        EXPECT_LE(std::abs(off.x()), 1);
        EXPECT_LE(std::abs(off.y()), 1);
        EXPECT_LT(box.width(), 700) << "the text is wrapped";
    });
    kit::MsgBox(longText, kit::Buttons::OkCancel, kit::Icon::Critical, "title", form);
    form->Unload();
    kit::runGroundActions();
}

TEST(MsgBox, StaysOnTheScreenOfAWindowAtItsEdge) {
    auto* form = new SampleForm;
    form->Show();
    const QRect screen = form->screen()->availableGeometry();
    form->move(screen.bottomRight() - QPoint(60, 60));
    whenBoxIsUp([screen](QMessageBox& box) { EXPECT_TRUE(screen.contains(box.frameGeometry())); });
    kit::MsgBox(QString("text ").repeated(40), kit::Buttons::Ok, kit::Icon::None, "title", form);
    form->Unload();
    kit::runGroundActions();
}

TEST(ScriptedMsgBox, AnswersInTheOrderTold) {
    ScriptedMsgBox script;
    script.expect("one", kit::Buttons::OkCancel, kit::Icon::Question, "t", kit::Answer::Cancel)
        .expect("two", kit::Buttons::OkCancel, kit::Icon::Question, "t", kit::Answer::Ok);
    EXPECT_EQ(kit::MsgBox("one", kit::Buttons::OkCancel, kit::Icon::Question, "t"), kit::Answer::Cancel);
    EXPECT_EQ(kit::MsgBox("two", kit::Buttons::OkCancel, kit::Icon::Question, "t"), kit::Answer::Ok);
    EXPECT_EQ(script.asked(), 2);
}

TEST(ScriptedMsgBox, AQuestionNotToldFailsTheTestAndIsCancelled) {
    static kit::Answer answer = kit::Answer::Ok;
    EXPECT_NONFATAL_FAILURE(
        {
            ScriptedMsgBox script;
            answer = kit::MsgBox("surprise", kit::Buttons::OkCancel, kit::Icon::None, "t");
        },
        "not expected");
    EXPECT_EQ(answer, kit::Answer::Cancel);
}

TEST(ScriptedMsgBox, AQuestionToldAndNotAskedFailsTheTest) {
    EXPECT_NONFATAL_FAILURE(
        {
            ScriptedMsgBox script;
            script.expect("never", kit::Buttons::Ok, kit::Icon::None, "t");
        },
        "never asked");
}

TEST(ScriptedMsgBox, AnotherIconFailsTheTest) {
    EXPECT_NONFATAL_FAILURE(
        {
            ScriptedMsgBox script;
            script.expect("text", kit::Buttons::Ok, kit::Icon::Critical, "t");
            kit::MsgBox("text", kit::Buttons::Ok, kit::Icon::None, "t");
        },
        "text");
}
