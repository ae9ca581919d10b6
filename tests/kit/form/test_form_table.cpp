#include "kit/SampleTest.h"
#include "support/windows/GoldenForm.h"

#include <QtGui/QAccessible>
#include <QtWidgets/QLineEdit>

using namespace discaro;
using namespace discaro::test;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class FormTable : public SampleTest {};

QString spokenName(QWidget& widget) {
    return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
}

} // namespace

TEST_F(FormTable, MatchesItsGoldenFile) {
    expectGolden(*form, "kit");
}

TEST_F(FormTable, NamesControlsAndElementsOfControlArrays) {
    EXPECT_EQ(form->Text1->objectName(), "Text1");
    EXPECT_EQ(form->Command1(3).objectName(), "Command1(3)");
    EXPECT_EQ(form->Command1.count(), 2);
}

TEST_F(FormTable, PutsControlsIntoTheirContainers) {
    EXPECT_EQ(form->Label2->parentWidget(), form->Picture1);
    EXPECT_EQ(form->Label3->parentWidget(), &form->SSTab1->page(1));
    EXPECT_EQ(form->Text1->parentWidget(), form.data());
}

TEST_F(FormTable, FirstValuesRunNoHandler) {
    EXPECT_TRUE(form->Check1->value());
    EXPECT_EQ(form->Combo1->count(), 3);
    EXPECT_THAT(form->heard, IsEmpty());
}

TEST_F(FormTable, GivesTheIndexToTheHandlerOfAControlArray) {
    form->Show();
    click(form->Command1(3));
    EXPECT_THAT(form->heard, ElementsAre("load", "click 3", "clicked 3"));
}

TEST_F(FormTable, GivesArgumentsToHandlersThatTakeThem) {
    form->Show();
    QTest::mousePress(form->Image1, Qt::LeftButton, {}, QPoint(5, 7));
    EXPECT_THAT(form->heard, Contains("down 5,7"));
}

TEST_F(FormTable, HidesAndDisablesAsDeclared) {
    form->Show();
    EXPECT_FALSE(form->Frame1->isVisible());
    EXPECT_FALSE(form->Label2->isEnabled());
    EXPECT_TRUE(form->Label1->isVisible());
}

TEST_F(FormTable, TheTabKeyFollowsTheRows) {
    EXPECT_THAT(tabOrder(*form), ElementsAre("Text1", "Text2(4)", "Command1(0)", "Command1(3)", "Check1", "Option1",
                                             "Combo1", "SSTab1"));
}

TEST_F(FormTable, EveryReachableControlCanBeSaid) {
    EXPECT_THAT(speechless(*form), IsEmpty());
    EXPECT_EQ(spokenName(form->Text1->editor()), "Name");
    EXPECT_EQ(spokenName(form->Text2(4).editor()), "Remarks");
    EXPECT_EQ(spokenName(form->Command1(3)), "Minimize");
    EXPECT_EQ(spokenName(form->Command1(0)), "OK");
}

TEST_F(FormTable, TheAccessLetterOfALabelLeadsToItsControl) {
    form->Show();
    form->activateWindow();
    QTest::keyClick(form, Qt::Key_N, Qt::AltModifier);
    EXPECT_TRUE(waitFor([this] { return form->Text1->editor().hasFocus(); }));
}

TEST_F(FormTable, AToolTipIsShownAsItStands) {
    EXPECT_TRUE(form->Text1->toolTip().contains("&lt;b&gt;name"));
    EXPECT_EQ(form->Command1(3).toolTip(), "Minimize");
}

TEST_F(FormTable, NoTextIsCutAtAnyOfTheUsualFontSizes) {
    for (const double factor : {1.0, 1.25, 1.5, 2.0}) {
        const LargerFont larger(factor);
        auto* each = new SampleForm;
        EXPECT_THAT(cutTexts(*each), IsEmpty()) << factor;
        each->Unload();
    }
}
