#include "base/RuntimeError.h"
#include "kit/SampleTest.h"
#include "kit/common/CellText.h"
#include "kit/common/Colour.h"

#include <QtGui/QAccessible>
#include <QtGui/QHelpEvent>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QToolTip>

using namespace discaro;
using namespace discaro::test;
using ::testing::ElementsAre;

namespace {

class Controls : public SampleTest {
protected:
    void SetUp() override {
        form->Show();
        form->heard.clear();
    }
};

class Entry : public ::testing::Test {
protected:
    Entry() {
        QObject::connect(&label, &kit::Label::Click, [this] { ++clicks; });
        QObject::connect(&label, &kit::Label::MouseMove, [this] { ++moves; });
        label.setText("Explore");
        label.resize(100, 20);
    }

    kit::Label label;
    int clicks = 0;
    int moves = 0;
};

bool hasColour(QWidget& widget, const QColor& colour) {
    const QImage image = widget.grab().toImage();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y) == colour)
                return true;
    return false;
}

} // namespace

TEST(LabelText, RaisesChangeWhenItIsAnotherOne) {
    kit::Label label;
    std::vector<QString> heard;
    QObject::connect(&label, &kit::Label::Change, [&] { heard.push_back(label.text()); });
    for (const char* text : {"", "one", "one", "two", ""})
        label.setText(text);
    EXPECT_THAT(heard, ElementsAre("one", "two", ""));
}

TEST_F(Controls, ACheckBoxClicksAtEveryChangeOfItsValueWhoeverMakesIt) {
    form->Check1->setValue(true);
    EXPECT_THAT(form->heard, ElementsAre());
    form->Check1->setValue(false);
    click(*form->Check1);
    EXPECT_THAT(form->heard, ElementsAre("unticked", "ticked"));
}

TEST_F(Controls, AnOptionButtonClicksWhenItIsChosenAndNotWhenItIsLeft) {
    form->Option2->setValue(true);
    form->Option1->setValue(true);
    EXPECT_FALSE(form->Option2->value());
    EXPECT_THAT(form->heard, ElementsAre("two"));
}

TEST_F(Controls, TheTabKeyLeadsToTheChosenOptionOfAGroup) {
    const auto reached = [this] {
        std::vector<std::string> options;
        for (const auto& name : tabOrder(*form))
            if (name.starts_with("Option"))
                options.push_back(name);
        return options;
    };
    EXPECT_THAT(reached(), ElementsAre("Option1"));
    form->Option2->setValue(true);
    EXPECT_THAT(reached(), ElementsAre("Option2"));
    form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    form->Option1->setFocus();
    EXPECT_THAT(reached(), ElementsAre("Option2")) << "also after the other had the focus";
}

TEST_F(Controls, AMenuButtonShowsAnArrow) {
    const auto pictureOf = [](kit::Button& button) {
        button.resize(120, 30);
        button.setText("Disc");
        return button.grab().toImage();
    };
    kit::Button plain;
    kit::MenuButton withMenu;
    EXPECT_NE(pictureOf(plain), pictureOf(withMenu));
}

TEST(DriveList, TheClosedBoxShowsTheDriveAloneAndTheListTheFileToo) {
    kit::DriveList list;
    list.resize(300, 30);
    list.addDrive("D: [SAME]", "one.iso", "/discs/one.iso");
    const QImage named = list.grab().toImage();
    EXPECT_EQ(list.text(), "D: [SAME]");
    kit::DriveList unnamed;
    unnamed.resize(300, 30);
    unnamed.addDrive("D: [SAME]");
    EXPECT_EQ(named, unnamed.grab().toImage());
    const auto opened = [](kit::DriveList& each) {
        each.show();
        each.showPopup();
        const QImage seen = each.view()->grab().toImage();
        each.hidePopup();
        return seen;
    };
    EXPECT_NE(opened(list), opened(unnamed));
}

TEST(DriveList, ThePathIsTheToolTipOfItsItemAndOfTheClosedBox) {
    kit::DriveList list;
    list.resize(300, 30);
    list.addDrive("C:\\");
    list.addDrive("D: [SAME]", "one.iso", "/discs/<b>/one.iso");
    list.show();
    EXPECT_EQ(list.path(1), "/discs/<b>/one.iso");
    EXPECT_EQ(list.path(0), "");
    EXPECT_EQ(list.itemData(1, Qt::ToolTipRole), "<span>/discs/&lt;b&gt;/one.iso");
    EXPECT_EQ(list.itemData(1, Qt::AccessibleTextRole), "D: [SAME], one.iso");
    list.setListIndex(1);
    QHelpEvent hover(QEvent::ToolTip, QPoint(10, 10), list.mapToGlobal(QPoint(10, 10)));
    QCoreApplication::sendEvent(&list, &hover);
    EXPECT_EQ(QToolTip::text(), "<span>/discs/&lt;b&gt;/one.iso");
}

TEST_F(Controls, ACombosChoiceByTheProgramClicksAndChanges) {
    form->Combo1->setListIndex(1);
    EXPECT_THAT(form->heard, ElementsAre("chosen >", "shows >"));
}

TEST_F(Controls, ChoosingTheSameItemOfAComboAgainClicksOnly) {
    form->Combo1->showPopup();
    emit form->Combo1->activated(0);
    form->Combo1->hidePopup();
    EXPECT_THAT(form->heard, ElementsAre("chosen ="));
}

// Without that, a megabyte without a blank takes minutes to lay out.
TEST_F(Controls, AnEndlessWordIsBrokenAnywhere) {
    kit::TextBox box;
    box.setMultiLine();
    const auto wrapping = [&box] { return static_cast<const QPlainTextEdit&>(box.editor()).wordWrapMode(); };
    box.setText("a few words");
    EXPECT_EQ(wrapping(), QTextOption::WrapAtWordBoundaryOrAnywhere);
    box.setText(QString(1'000'000, u'x'));
    EXPECT_EQ(wrapping(), QTextOption::WrapAnywhere);
    EXPECT_EQ(box.text().size(), 1'000'000);
    box.setText("a few words");
    EXPECT_EQ(wrapping(), QTextOption::WrapAtWordBoundaryOrAnywhere);
}

TEST_F(Controls, AComboTakesOnlyItsOwnTexts) {
    EXPECT_TRUE(form->Combo1->setText("<"));
    EXPECT_EQ(form->Combo1->listIndex(), 2);
    EXPECT_FALSE(form->Combo1->setText("like"));
    EXPECT_EQ(form->Combo1->text(), "<");
}

TEST_F(Controls, AComboShowsALineAndKeepsItsWholeText) {
    form->Combo1->addLine("two\r\nlines", 7);
    const int line = form->Combo1->count() - 1;
    form->Combo1->setListIndex(line);
    EXPECT_EQ(form->Combo1->itemText(line), "two lines");
    EXPECT_EQ(form->Combo1->text(), "two\r\nlines");
    EXPECT_EQ(form->Combo1->itemData(line), 7);
}

TEST_F(Controls, TheWheelTurnsAComboOnlyWithTheFocus) {
    const auto turn = [this] {
        const QPointF at(5, 5);
        QWheelEvent wheel(at, form->Combo1->mapToGlobal(at), QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(form->Combo1, &wheel);
        return form->Combo1->listIndex();
    };
    form->Combo1->setListIndex(0);
    form->Command1(0).setFocus();
    EXPECT_EQ(turn(), 0);
    EXPECT_NE(form->focusWidget(), form->Combo1) << "nor does it bring the focus";
    form->Combo1->setFocus();
    form->activateWindow();
    ASSERT_TRUE(waitFor([this] { return form->Combo1->hasFocus(); }));
    EXPECT_EQ(turn(), 1);
}

TEST_F(Controls, TheClosedBoxTellsItsWholeLineInAToolTip) {
    const auto tip = [this] {
        QToolTip::hideText();
        QHelpEvent hover(QEvent::ToolTip, QPoint(5, 5), form->Combo1->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(form->Combo1, &hover);
        return QToolTip::text();
    };
    form->Combo1->addLine("<b>R&D</b>  a\r\nb");
    form->Combo1->addLine("D:");
    form->Combo1->setItemData(form->Combo1->count() - 1, "/a/path", Qt::ToolTipRole);
    form->Combo1->setListIndex(form->Combo1->count() - 2);
    EXPECT_EQ(tip(), kit::tipText("<b>R&D</b>  a\r\nb"));
    form->Combo1->setListIndex(form->Combo1->count() - 1);
    EXPECT_EQ(tip(), "/a/path");
    form->Combo1->setListIndex(0);
    EXPECT_EQ(form->Combo1->toolTip(), "") << "a plain choice needs none";
}

TEST_F(Controls, AComboSaysItsNameAndWhatIsChosen) {
    form->Combo1->addLine("R&D  disc:");
    form->Combo1->setListIndex(form->Combo1->count() - 1);
    auto* voice = QAccessible::queryAccessibleInterface(form->Combo1);
    EXPECT_EQ(voice->role(), QAccessible::ComboBox);
    form->Combo1->setAccessibleName({});
    EXPECT_EQ(voice->text(QAccessible::Name), "R&D  disc:");
    form->Combo1->setAccessibleName("CD-ROM");
    EXPECT_EQ(voice->text(QAccessible::Name), "CD-ROM: R&D  disc:");
    EXPECT_EQ(voice->text(QAccessible::Value), "R&D  disc:");
    ASSERT_EQ(voice->childCount(), 1);
    EXPECT_EQ(voice->indexOfChild(voice->child(0)), 0);
    voice->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    EXPECT_TRUE(form->Combo1->view()->isVisible());
    voice->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_FALSE(form->Combo1->view()->isVisible());
    form->Combo1->setEditable(true);
    EXPECT_EQ(voice->childCount(), 2);
    EXPECT_EQ(voice->child(1)->object(), form->Combo1->lineEdit());
}

TEST_F(Controls, AnEditableComboTakesAnyText) {
    form->Combo1->setEditable(true);
    EXPECT_TRUE(form->Combo1->setText("<>"));
    EXPECT_EQ(form->Combo1->text(), "<>");
}

TEST_F(Controls, EnterPressesTheButtonThatHasTheFocus) {
    form->Command1(0).setFocus();
    QTest::keyClick(&form->Command1(0), Qt::Key_Return);
    EXPECT_THAT(form->heard, ElementsAre("click 0", "clicked 0"));
}

TEST_F(Controls, TabsChangeWhenAnotherPageShows) {
    form->SSTab1->setCurrentIndex(1);
    form->SSTab1->setCurrentIndex(1);
    EXPECT_THAT(form->heard, ElementsAre("page 1"));
    EXPECT_THROW(form->SSTab1->page(2), base::RuntimeError);
}

TEST_F(Entry, IsPlainTextWhateverItHolds) {
    label.setText("<b>A & B</b>");
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
    EXPECT_EQ(label.text(), "<b>A & B</b>");
}

TEST_F(Entry, ClicksWhenPressedAndReleasedInside) {
    QTest::mouseClick(&label, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
    QTest::mousePress(&label, Qt::LeftButton);
    QTest::mouseRelease(&label, Qt::LeftButton, {}, QPoint(300, 300));
    EXPECT_EQ(clicks, 1);
    QTest::mouseRelease(&label, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
}

TEST_F(Entry, DoesNothingWhileDisabled) {
    label.makeEntry(Qt::white);
    label.setEnabled(false);
    QTest::mouseClick(&label, Qt::LeftButton);
    QTest::keyClick(&label, Qt::Key_Return);
    hover(label);
    EXPECT_EQ(clicks, 0);
    EXPECT_EQ(moves, 0);
}

TEST_F(Entry, APlainLabelTakesNoKeys) {
    EXPECT_EQ(label.focusPolicy(), Qt::NoFocus);
    QTest::keyClick(&label, Qt::Key_Return);
    EXPECT_EQ(clicks, 0);
}

TEST_F(Entry, EnterAndSpaceChoose) {
    label.makeEntry(Qt::white);
    EXPECT_EQ(label.focusPolicy(), Qt::StrongFocus);
    QTest::keyClick(&label, Qt::Key_Return);
    QTest::keyClick(&label, Qt::Key_Enter);
    QTest::keyClick(&label, Qt::Key_Space);
    QTest::keyClick(&label, Qt::Key_A);
    EXPECT_EQ(clicks, 3);
}

TEST_F(Entry, IsAButtonToScreenReaders) {
    label.makeEntry(Qt::white);
    auto* voice = QAccessible::queryAccessibleInterface(&label);
    EXPECT_EQ(voice->role(), QAccessible::Button);
    EXPECT_EQ(voice->text(QAccessible::Name), "Explore");
    voice->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(clicks, 1);
    label.setEnabled(false);
    voice->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(clicks, 1);
}

TEST_F(Entry, ShowsItsFocus) {
    label.makeEntry(QColor(255, 0, 255));
    label.show();
    const QImage without = label.grab().toImage();
    label.activateWindow();
    label.setFocus();
    ASSERT_TRUE(waitFor([this] { return label.hasFocus(); }));
    EXPECT_NE(label.grab().toImage(), without);
}

TEST_F(Entry, KeepsItsColours) {
    label.setForeColour(kit::colourOf(16744576));
    EXPECT_EQ(kit::numberOf(label.foreColour()), 16744576);
    label.setEnabled(false);
    EXPECT_EQ(kit::numberOf(label.foreColour()), 16744576);
    label.setDisabledColour(QColor(1, 2, 3));
    EXPECT_EQ(label.palette().color(QPalette::Disabled, QPalette::WindowText), QColor(1, 2, 3));
}

TEST_F(Entry, IsPaintedInItsDisabledColourWhileDisabled) {
    label.makeEntry(Qt::white);
    QFont thick = label.font();
    thick.setPixelSize(60);
    label.setFont(thick);
    label.setText("I");
    label.resize(60, 90);
    label.setForeColour(QColor(255, 0, 0));
    label.setDisabledColour(QColor(0, 0, 255));
    EXPECT_TRUE(hasColour(label, QColor(255, 0, 0)));
    label.setEnabled(false);
    EXPECT_TRUE(hasColour(label, QColor(0, 0, 255)));
    EXPECT_FALSE(hasColour(label, QColor(255, 0, 0)));
}

TEST_F(Entry, PaintsThePillBehindItsText) {
    label.setGround(QColor(250, 240, 230));
    EXPECT_EQ(label.grab().toImage().pixelColor(30, 3), QColor(250, 240, 230));
    label.setGround({});
    EXPECT_NE(label.grab().toImage().pixelColor(30, 3), QColor(250, 240, 230));
}

TEST_F(Entry, SaysItsTextAsItIs) {
    auto* voice = QAccessible::queryAccessibleInterface(&label);
    for (const char* text : {"R&D", "two  blanks", "D:\\NOTES:", "&"}) {
        label.setText(text);
        EXPECT_EQ(voice->text(QAccessible::Name), text);
    }
}

TEST_F(Entry, ANameThatItWasGivenIsSaidInPlaceOfItsText) {
    auto* voice = QAccessible::queryAccessibleInterface(&label);
    label.setText("3");
    label.setAccessibleName("Three discs");
    EXPECT_EQ(voice->text(QAccessible::Name), "Three discs");
    EXPECT_EQ(voice->text(QAccessible::Description), "") << "its text is its name alone";
}

TEST_F(Entry, ACaptionIsSaidWithoutItsMarks) {
    QWidget window;
    kit::Label caption(&window);
    QWidget box(&window);
    caption.setBuddy(&box);
    caption.setText("&Preferred Name:");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&caption)->text(QAccessible::Name), "Preferred Name");
}

TEST_F(Entry, AShadowIsNotSaid) {
    label.show();
    auto* voice = QAccessible::queryAccessibleInterface(&label);
    EXPECT_FALSE(voice->state().invisible);
    label.makeShadow();
    EXPECT_TRUE(voice->state().invisible);
    EXPECT_EQ(voice->text(QAccessible::Name), "");
}
