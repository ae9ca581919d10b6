#include "kit/common/Colour.h"
#include "kit/controls/ValueBox.h"
#include "kit/display/BlendGround.h"
#include "kit/display/Plate.h"
#include "kit/form/FormTable.h"
#include "kit/program/Ground.h"
#include "support/windows/FormProbe.h"

#include <QtGui/QAccessible>
#include <QtGui/QHelpEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolTip>

#include <gtest/gtest.h>

using namespace discaro;
using namespace discaro::test;

namespace {

// A window with two values on a plate, over a blended ground.
class ValueForm : public kit::Form {
public:
    ValueForm()
        : Form({.name = "ValueForm", .caption = "", .size = {240, 256}}) {
        kTable.build(*this);
    }

    kit::Plate* Picture1 = nullptr;
    kit::Label* Label1 = nullptr;
    kit::ValueBox* Value1 = nullptr;
    kit::ValueBox* Value2 = nullptr;
    kit::BlendGround ground;

protected:
    void paintEvent(QPaintEvent*) override { ground.paint(*this); }

private:
    static const kit::FormTable<ValueForm> kTable;
};

using kit::control;

const kit::FormTable<ValueForm> ValueForm::kTable{
    control(&ValueForm::Picture1, "Picture1").at(20, 20, 200, 90),
    control(&ValueForm::Label1, "Label1")
        .at(10, 10, 60, 24)
        .in(&ValueForm::Picture1)
        .text("Path :")
        .labels(&ValueForm::Value1),
    control(&ValueForm::Value1, "Value1").at(80, 10, 100, 24).in(&ValueForm::Picture1),
    control(&ValueForm::Value2, "Value2").at(80, 40, 100, 24).in(&ValueForm::Picture1).says("Size"),
};

class ValueBox : public ::testing::Test {
protected:
    ValueBox() {
        form->Show();
        (void)QTest::qWaitForWindowActive(form);
    }
    ~ValueBox() override { form->Unload(); }

    kit::ValueBox& value() { return *form->Value1; }
    QLineEdit& line() { return static_cast<QLineEdit&>(value().editor()); }

    // Where the mouse rests on the box; returns the tip that shows.
    QString tip() {
        const QPoint middle = line().rect().center();
        QHelpEvent rest(QEvent::ToolTip, middle, line().mapToGlobal(middle));
        QToolTip::hideText();
        QCoreApplication::sendEvent(&line(), &rest);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    }

    ValueForm* form = new ValueForm;
};

const QString kLong = "D:\\A DIRECTORY WITH A NAME\\AND ONE MORE IN IT\\LAST";

} // namespace

TEST_F(ValueBox, ShowsAShortTextAsItIs) {
    value().setText("D:\\A");
    EXPECT_EQ(value().text(), "D:\\A");
    EXPECT_EQ(value().shownText(), "D:\\A");
    EXPECT_EQ(tip(), "");
}

TEST_F(ValueBox, CanBeReadSelectedAndCopiedButNotChanged) {
    value().setText("D:\\A");
    value().setFocus();
    QTest::keyClicks(&line(), "typed");
    EXPECT_EQ(value().text(), "D:\\A");
    value().selectAll();
    EXPECT_EQ(line().selectedText(), "D:\\A");
    QAccessibleInterface* voice = QAccessible::queryAccessibleInterface(&line());
    EXPECT_EQ(voice->text(QAccessible::Name), "Path");
    EXPECT_EQ(voice->text(QAccessible::Value), "D:\\A");
    EXPECT_TRUE(voice->state().readOnly);
}

TEST_F(ValueBox, ShortensALongTextUntilItHasTheFocus) {
    form->Value2->setFocus();
    value().setText(kLong);
    EXPECT_TRUE(value().shownText().endsWith(QChar(0x2026)));
    EXPECT_EQ(value().text(), kLong);
    value().setFocus();
    EXPECT_EQ(value().shownText(), kLong);
    form->Value2->setFocus();
    EXPECT_TRUE(value().shownText().endsWith(QChar(0x2026)));
}

TEST_F(ValueBox, CanLoseItsMiddleInsteadOfItsEnd) {
    value().setElideMode(Qt::ElideMiddle);
    form->Value2->setFocus();
    value().setText(kLong);
    EXPECT_TRUE(value().shownText().startsWith("D:\\"));
    EXPECT_TRUE(value().shownText().endsWith("LAST"));
}

TEST_F(ValueBox, TellsAShortenedTextWholeInItsToolTip) {
    form->Value2->setFocus();
    value().setText(kLong);
    EXPECT_EQ(tip(), kLong);
}

TEST_F(ValueBox, ShowsLineEndsTabsAndTurningMarksOnOneLine) {
    value().setText(QString("a\tb\nc") + QChar(0x202E) + "d");
    EXPECT_EQ(value().shownText(), "a b cd");
    EXPECT_EQ(value().text(), QString("a\tb\nc") + QChar(0x202E) + "d");
}

TEST_F(ValueBox, FollowsTheFontOfTheApplication) {
    form->Value2->setFocus();
    value().setText("D:\\ALMOST THE W");
    const QString before = value().shownText();
    const LargerFont larger(1.5);
    EXPECT_EQ(value().shownText(), before) << "the place has grown with the text";
}

TEST_F(ValueBox, ReadsOnAPlateWhateverTheGroundIs) {
    for (int turn = 0; turn < 8; ++turn) {
        form->ground.blendAnew(*form);
        const QImage shot = form->grab().toImage();
        const QColor plate = shot.pixelColor(QPoint(20 + 5, 20 + 80) * shot.devicePixelRatio());
        const QColor ink = form->Label1->palette().color(QPalette::WindowText);
        EXPECT_GE(kit::contrast(ink, plate), 7.0) << plate.name().toStdString();
    }
}

TEST(BlendGround, PaintsNothingBeforeItsFirstColours) {
    ValueForm form;
    EXPECT_FALSE(form.ground.bands().has_value());
    const QColor usual = form.palette().color(QPalette::Window);
    EXPECT_EQ(form.grab().toImage().pixelColor(2, 2), usual);
}

TEST(BlendGround, BlendsFromTheTopToTheBottomOfTheWindow) {
    ValueForm form;
    form.ground.blendAnew(form);
    ASSERT_TRUE(form.ground.bands().has_value());
    const auto& bands = *form.ground.bands();
    const QImage shot = form.grab().toImage();
    const auto colour = [](const kit::Channels& band) { return QColor(band.red, band.green, band.blue); };
    EXPECT_EQ(shot.pixelColor(0, shot.height() - 1), colour(bands.back()));
    EXPECT_EQ(shot.pixelColor(shot.width() - 1, shot.height() - 1), colour(bands.back()));
    EXPECT_EQ(shot.pixelColor(0, 100), colour(bands[100]));
}
