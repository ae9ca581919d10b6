#include "explorer/properties/PropertiesTest.h"

using namespace discaro;
using namespace discaro::test;
using explorer::EXDir;
using explorer::EXFile;

namespace {

class Comments : public PropertiesTest {
protected:
    db::Value ofDirectory() const { return catalogue.stored("Directories", "[id number] like 'C1D1S1'", "comments"); }
    db::Value ofFile() const { return catalogue.stored("Files", "[id number] = 1", "comments"); }
};

} // namespace

TEST_F(Comments, OfADirectoryAreWrittenByApply) {
    auto& form = open<EXDir>();
    type(*form.Text1, "A note");
    EXPECT_TRUE(form.Command1->isEnabled());
    click(*form.Command1);
    EXPECT_FALSE(form.Command1->isEnabled());
    EXPECT_EQ(ofDirectory(), text("A note"));
    EXPECT_TRUE(isOpen());
}

TEST_F(Comments, OfADirectoryAreWrittenByOk) {
    auto& form = open<EXDir>();
    type(*form.Text1, "A note");
    click(*form.Command2);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(ofDirectory(), text("A note"));
}

TEST_F(Comments, OfAFileAreWrittenByApply) {
    auto& form = open<EXFile>();
    EXPECT_FALSE(form.Command1->isEnabled());
    type(*form.Text1, "A note");
    EXPECT_TRUE(form.Command1->isEnabled());
    click(*form.Command1);
    EXPECT_FALSE(form.Command1->isEnabled());
    EXPECT_EQ(ofFile(), text("A note"));
    EXPECT_TRUE(isOpen());
}

TEST_F(Comments, OfAFileAreWrittenByOk) {
    auto& form = open<EXFile>();
    type(*form.Text1, "A note");
    click(*form.Command2);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(ofFile(), text("A note"));
}

TEST_F(Comments, StayNullWhenNothingWasTyped) {
    auto& form = open<EXFile>();
    type(*form.Text1, "x");
    QTest::keyClick(&form.Text1->editor(), Qt::Key_Backspace);
    EXPECT_TRUE(form.Command1->isEnabled());
    click(*form.Command1);
    EXPECT_EQ(ofFile(), kNull);
}

TEST_F(Comments, CanBeTakenAway) {
    catalogue.addDirectory("C1D1S2", "SOUNDS", {{"comments", text("A note")}});
    app::Module1::SelectedDirectory = "C1D1S2";
    auto& form = open<EXDir>();
    form.Text1->selectAll();
    QTest::keyClick(&form.Text1->editor(), Qt::Key_Delete);
    click(*form.Command2);
    EXPECT_EQ(catalogue.stored("Directories", "[id number] like 'C1D1S2'", "comments"), text(""));
}

TEST_F(Comments, ApplyAgainWritesTheNextChange) {
    auto& form = open<EXDir>();
    for (const char* each : {"one", " two", " three"}) {
        type(*form.Text1, each);
        click(*form.Command1);
    }
    EXPECT_EQ(ofDirectory(), text("one two three"));
}

TEST_F(Comments, AreSeenByTheNextWindow) {
    auto& first = open<EXFile>();
    type(*first.Text1, "A note");
    click(*first.Command2);
    EXPECT_EQ(open<EXFile>().Text1->text(), "A note");
}
