#include "explorer/properties/PropertiesTest.h"

using namespace discaro;
using namespace discaro::test;
using explorer::EXCDROM;

namespace {

// The properties of disc 2, "two", which stands between "one" and "three".
class DiscName : public PropertiesTest {
protected:
    db::Value disc(int number, std::string_view field) const {
        return catalogue.stored("Drive", "[id number] = " + std::to_string(number), field);
    }
    db::Value name() const { return disc(2, "prefered name"); }

    void expectRefusal() {
        script.expect("This Preferred name was used once before for CD-ROM number  '3' which has "
                      "'TRIO' as its "
                      "Volume label. Please choose another name.",
                      kit::Buttons::Ok, kit::Icon::Exclamation, "Duplicate Preferred Name");
    }

    // Changes the name to that of a later disc, which is refused.
    void refuse() {
        expectRefusal();
        retype(*form.Text3, "three");
        click(*form.Command1);
    }

    EXCDROM& form = open<EXCDROM>();
};

} // namespace

TEST_F(DiscName, AChangeInTheNameOrTheCommentsEnablesApply) {
    EXPECT_FALSE(form.Command1->isEnabled());
    type(*form.Text3, "!");
    EXPECT_TRUE(form.Command1->isEnabled());
    click(*form.Command1);
    EXPECT_FALSE(form.Command1->isEnabled());
    type(*form.Text2, "!");
    EXPECT_TRUE(form.Command1->isEnabled());
}

TEST_F(DiscName, AChangeInTheAutorunAloneEnablesNothingAndIsNotWritten) {
    type(*form.Text1, "open=B.EXE");
    EXPECT_FALSE(form.Command1->isEnabled());
    click(*form.Command2);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(disc(2, "autorun"), kNull);
}

TEST_F(DiscName, AChangeInTheAutorunIsWrittenWithSomethingElse) {
    type(*form.Text1, "open=B.EXE");
    type(*form.Text2, "!");
    click(*form.Command1);
    EXPECT_EQ(disc(2, "autorun"), text("open=B.EXE"));
    EXPECT_EQ(disc(2, "comments"), text("Lent to Anna!"));
}

TEST_F(DiscName, ANewNameIsWrittenAndShownAbove) {
    retype(*form.Text3, "deux");
    click(*form.Command1);
    EXPECT_EQ(name(), text("deux"));
    EXPECT_EQ(valueBeside(form, "Preferred Name :"), "deux");
    EXPECT_EQ(form.Text3->text(), "deux");
    EXPECT_EQ(form.ApplyResult, "exit");
    EXPECT_TRUE(isOpen());
}

TEST_F(DiscName, OkAppliesAndCloses) {
    retype(*form.Text3, "deux");
    click(*form.Command2);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(name(), text("deux"));
}

TEST_F(DiscName, EnterInTheNameBoxIsOk) {
    form.SSTab1->setCurrentIndex(2);
    retype(*form.Text3, "deux");
    QTest::keyClick(&form.Text3->editor(), Qt::Key_Return);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(name(), text("deux"));
}

TEST_F(DiscName, TheNameOfALaterDiscIsRefusedAndTheWindowStays) {
    expectRefusal();
    retype(*form.Text3, "three");
    click(*form.Command2);
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(form.Text3->text(), "two");
    EXPECT_EQ(form.ApplyResult, "not");
    EXPECT_EQ(name(), text("two"));
    EXPECT_FALSE(form.Command1->isEnabled());
}

TEST_F(DiscName, ARefusalBringsTheNameBoxIntoSightWithTheFocus) {
    form.SSTab1->setCurrentIndex(1);
    refuse();
    EXPECT_EQ(form.SSTab1->currentIndex(), 2);
    EXPECT_EQ(form.focusWidget(), &form.Text3->editor());
    EXPECT_TRUE(form.Text3->isVisible());
}

TEST_F(DiscName, TheMessageStandsInFrontOfTheWindow) {
    refuse();
    EXPECT_EQ(script.last().parent, &form);
}

TEST_F(DiscName, ACommentTypedWithARefusedNameIsWrittenWithTheOldName) {
    type(*form.Text2, ", back in June");
    type(*form.Text1, "open=B.EXE");
    refuse();
    EXPECT_EQ(disc(2, "comments"), text("Lent to Anna, back in June"));
    EXPECT_EQ(disc(2, "autorun"), text("open=B.EXE"));
    EXPECT_EQ(name(), text("two"));
    EXPECT_EQ(disc(3, "comments"), kNull);
    EXPECT_EQ(disc(3, "prefered name"), text("three"));
}

TEST_F(DiscName, OkWithNothingToApplyAfterARefusalKeepsTheWindow) {
    refuse();
    click(*form.Command2);
    EXPECT_TRUE(isOpen());
    QTest::keyClick(&form, Qt::Key_Return);
    EXPECT_TRUE(isOpen());
}

TEST_F(DiscName, ACommentAloneAfterARefusalKeepsTheWindowToo) {
    refuse();
    type(*form.Text2, "!");
    click(*form.Command2);
    EXPECT_EQ(disc(2, "comments"), text("Lent to Anna!"));
    EXPECT_TRUE(isOpen()) << "only an accepted name ends the refusal";
}

TEST_F(DiscName, ANameAcceptedAfterARefusalLetsTheWindowGo) {
    refuse();
    retype(*form.Text3, "deux");
    click(*form.Command2);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(name(), text("deux"));
}

TEST_F(DiscName, EscapeLeavesAfterARefusal) {
    refuse();
    QTest::keyClick(&form.Text3->editor(), Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
}

TEST_F(DiscName, TheNameOfAnEarlierDiscIsWrittenWithoutAMessage) {
    retype(*form.Text3, "one");
    click(*form.Command2);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(name(), text("one"));
    EXPECT_EQ(disc(1, "prefered name"), text("one"));
}

TEST_F(DiscName, ANameOfAnotherCaseIsWrittenUnlessALaterDiscHasThatSpelling) {
    retype(*form.Text3, "TWO");
    click(*form.Command1);
    EXPECT_EQ(name(), text("TWO"));
    retype(*form.Text3, "THREE");
    click(*form.Command1);
    EXPECT_EQ(name(), text("THREE"));
}

TEST_F(DiscName, TheOpeningNameStaysTheOneComparedWith) {
    retype(*form.Text3, "deux");
    click(*form.Command1);
    EXPECT_EQ(form.OpeningName, "two");
    type(*form.Text2, "!");
    click(*form.Command1);
    EXPECT_EQ(name(), text("deux"));
    EXPECT_EQ(disc(2, "comments"), text("Lent to Anna!"));
    refuse();
    EXPECT_EQ(form.Text3->text(), "two");
    EXPECT_EQ(name(), text("two"));
}

TEST_F(DiscName, AnEmptyNameIsWritten) {
    form.Text3->selectAll();
    QTest::keyClick(&form.Text3->editor(), Qt::Key_Delete);
    click(*form.Command1);
    EXPECT_EQ(name(), text(""));
}

TEST_F(DiscName, OnlyTheEditableFieldsChange) {
    const auto before = catalogue.everything();
    retype(*form.Text3, "deux");
    type(*form.Text2, "!");
    click(*form.Command1);
    auto after = catalogue.everything();
    ASSERT_EQ(after.size(), before.size());
    size_t changed = 0;
    for (size_t cell = 0; cell < after.size(); ++cell)
        changed += after[cell] != before[cell] ? 1 : 0;
    EXPECT_EQ(changed, 2U);
}
