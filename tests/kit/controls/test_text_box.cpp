#include "kit/SampleTest.h"

#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>

using namespace discaro;
using namespace discaro::test;
using ::testing::ElementsAre;

namespace {

class TextBox : public SampleTest {
protected:
    void SetUp() override {
        form->Show();
        form->heard.clear();
    }
};

} // namespace

TEST_F(TextBox, GivesWhatWasSet) {
    form->Text1->setText(" <b>a</b> & 'b' ");
    EXPECT_EQ(form->Text1->text(), " <b>a</b> & 'b' ");
    EXPECT_THAT(form->heard, ElementsAre("text  <b>a</b> & 'b' "));
}

TEST_F(TextBox, WithOneLineEndsAtTheFirstLineEnd) {
    form->Text1->setText("one\r\ntwo");
    EXPECT_EQ(form->Text1->text(), "one");
}

TEST_F(TextBox, WithSeveralLinesKeepsThem) {
    form->Text2(4).setText("one\n\ntwo");
    EXPECT_TRUE(form->Text2(4).isMultiLine());
    EXPECT_EQ(form->Text2(4).text(), "one\n\ntwo");
}

TEST_F(TextBox, ChangesAtEveryTypedCharacter) {
    typeInto(*form->Text1, "ab");
    EXPECT_THAT(form->heard, ElementsAre("text a", "text ab"));
}

TEST_F(TextBox, TakesKeysThatAreSentToItself) {
    QTest::keyClicks(form->Text1, "x");
    EXPECT_EQ(form->Text1->text(), "x");
}

TEST_F(TextBox, TellsOfEnterWithOneLineAndWithSeveral) {
    int enters = 0;
    QObject::connect(&form->Text2(4), &kit::TextBox::Enter, [&] { ++enters; });
    QTest::keyClick(&form->Text1->editor(), Qt::Key_Return);
    QTest::keyClick(&form->Text2(4).editor(), Qt::Key_Enter);
    EXPECT_THAT(form->heard, ElementsAre("enter"));
    EXPECT_EQ(enters, 1);
}

TEST_F(TextBox, ShowsFastTextsAtItsOwnPaceAndGivesThemAtOnce) {
    for (int number = 0; number <= 1000; ++number)
        form->Text1->showText(QString::number(number));
    EXPECT_EQ(form->Text1->text(), "1000");
    EXPECT_LT(form->heard.size(), 500U);
    auto* line = form->Text1->findChild<QLineEdit*>();
    EXPECT_TRUE(waitFor([line] { return line->text() == "1000"; }));
}

TEST_F(TextBox, ATextSetAfterwardsIsNotOvertakenByAWaitingOne) {
    for (int number = 0; number <= 10; ++number)
        form->Text1->showText(QString::number(number));
    form->Text1->setText("final");
    EXPECT_FALSE(QTest::qWaitFor([this] { return form->Text1->text() != "final"; }, 100));
}

TEST_F(TextBox, IsReadOnlyWhenTold) {
    form->Text1->setReadOnly(true);
    form->Text2(4).setReadOnly(true);
    QTest::keyClicks(&form->Text1->editor(), "x");
    QTest::keyClicks(&form->Text2(4).editor(), "x");
    EXPECT_EQ(form->Text1->text(), "");
    EXPECT_EQ(form->Text2(4).text(), "");
}

TEST_F(TextBox, TheTabKeyLeavesABoxWithSeveralLines) {
    EXPECT_TRUE(form->Text2(4).findChild<QPlainTextEdit*>()->tabChangesFocus());
}
