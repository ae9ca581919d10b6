#include "explorer/properties/PropertiesTest.h"
#include "kit/program/Ground.h"
#include "support/windows/GoldenForm.h"

#include <gmock/gmock.h>

using namespace discaro;
using namespace discaro::test;
using explorer::EXCDROM;
using explorer::EXDir;
using explorer::EXFile;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

template <typename Window>
class PropertiesForms : public PropertiesTest {};

using AllWindows = ::testing::Types<EXCDROM, EXDir, EXFile>;
TYPED_TEST_SUITE(PropertiesForms, AllWindows);

// The places of the controls that lie in their container but outside its bounds, by name.
std::vector<std::string> outside(const kit::Form& form) {
    std::vector<std::string> names;
    for (const auto& control : form.controls()) {
        const auto* widget = qobject_cast<const QWidget*>(control.object.data());
        if (widget && !widget->parentWidget()->rect().contains(widget->geometry()))
            names.push_back(widget->objectName().toStdString());
    }
    return names;
}

// The controls of one container that cover each other, as "A, B".
std::vector<std::string> overlaps(const kit::Form& form) {
    std::vector<std::string> pairs;
    std::vector<const QWidget*> seen;
    for (const auto& control : form.controls()) {
        const auto* widget = qobject_cast<const QWidget*>(control.object.data());
        for (const QWidget* other : seen)
            if (widget && widget->parentWidget() == other->parentWidget() &&
                widget->geometry().intersects(other->geometry()))
                pairs.push_back((other->objectName() + ", " + widget->objectName()).toStdString());
        if (widget)
            seen.push_back(widget);
    }
    return pairs;
}

} // namespace

TYPED_TEST(PropertiesForms, HasItsControls) {
    auto* form = new TypeParam;
    expectGolden(*form, "explorer");
    form->Unload();
    kit::runGroundActions();
}

TYPED_TEST(PropertiesForms, EveryControlHasItsRoomAtEachSizeOfFont) {
    auto& form = this->template open<TypeParam>();
    for (const double factor : {1.0, 1.25, 1.5, 2.0}) {
        const LargerFont larger(factor);
        for (int page = 0; page < form.SSTab1->count(); ++page) {
            form.SSTab1->setCurrentIndex(page);
            EXPECT_THAT(cutTexts(form), IsEmpty()) << factor << " page " << page;
            EXPECT_THAT(outside(form), IsEmpty()) << factor << " page " << page;
            EXPECT_THAT(overlaps(form), IsEmpty()) << factor << " page " << page;
        }
    }
}

TYPED_TEST(PropertiesForms, EveryControlOfTheKeyboardSaysWhatItIs) {
    EXPECT_THAT(speechless(this->template open<TypeParam>()), IsEmpty());
}

TYPED_TEST(PropertiesForms, EscapeClosesWhereNothingTypedIsLost) {
    auto& form = this->template open<TypeParam>();
    const auto before = this->catalogue.everything();
    auto* box = form.template findChild<kit::TextBox*>("Text1");
    const QString stored = box->text();
    this->type(*box, "typed");
    QTest::keyClick(&box->editor(), Qt::Key_Escape);
    EXPECT_TRUE(this->isOpen());
    EXPECT_TRUE(box->text().contains("typed"));
    box->setText(stored);
    QTest::keyClick(&box->editor(), Qt::Key_Escape);
    EXPECT_FALSE(this->isOpen());
    EXPECT_EQ(this->catalogue.everything(), before);
}

TYPED_TEST(PropertiesForms, TheCloseBoxWritesNothing) {
    auto& form = this->template open<TypeParam>();
    const auto before = this->catalogue.everything();
    this->type(*form.template findChild<kit::TextBox*>("Text1"), "typed");
    form.close();
    EXPECT_FALSE(this->isOpen());
    EXPECT_EQ(this->catalogue.everything(), before);
}

TYPED_TEST(PropertiesForms, OkAtOnceWritesNothingAndCloses) {
    auto& form = this->template open<TypeParam>();
    const auto before = this->catalogue.everything();
    EXPECT_FALSE(form.Command1->isEnabled());
    click(*form.Command2);
    EXPECT_FALSE(this->isOpen());
    EXPECT_EQ(this->catalogue.everything(), before);
}

TYPED_TEST(PropertiesForms, EnterIsOk) {
    auto& form = this->template open<TypeParam>();
    EXPECT_TRUE(form.SSTab1->hasFocus() || form.focusWidget()->parentWidget() == form.SSTab1);
    QTest::keyClick(form.focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(this->isOpen());
}

TYPED_TEST(PropertiesForms, EnterInABoxOfSeveralLinesIsALineEnd) {
    auto& form = this->template open<TypeParam>();
    auto* box = form.template findChild<kit::TextBox*>("Text1");
    this->type(*box, "one");
    QTest::keyClick(&box->editor(), Qt::Key_Return);
    this->type(*box, "two");
    EXPECT_EQ(box->text(), "one\r\ntwo");
    EXPECT_TRUE(this->isOpen());
}

TYPED_TEST(PropertiesForms, TheAccessLettersPressTheButtons) {
    auto& form = this->template open<TypeParam>();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    form.Command1->setEnabled(true);
    QTest::keyClick(&form, Qt::Key_A, Qt::AltModifier);
    EXPECT_TRUE(waitFor([&] { return !form.Command1->isEnabled(); }));
    QTest::keyClick(&form, Qt::Key_O, Qt::AltModifier);
    EXPECT_TRUE(waitFor([this] { return !this->isOpen(); }));
}

TYPED_TEST(PropertiesForms, ControlKeysTurnThePages) {
    auto& form = this->template open<TypeParam>();
    const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
        QTest::keyClick(form.focusWidget(), key, modifiers);
        return form.SSTab1->currentIndex();
    };
    form.Command2->setFocus();
    EXPECT_EQ(press(Qt::Key_Tab), 1);
    form.Command2->setFocus();
    EXPECT_EQ(press(Qt::Key_PageDown), 2);
    EXPECT_EQ(press(Qt::Key_PageDown), 0);
    EXPECT_EQ(press(Qt::Key_PageUp), 2);
    form.Command2->setFocus();
    EXPECT_EQ(press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier), 1);
}

TYPED_TEST(PropertiesForms, TheTimerBlendsTheBackgroundAndTheTextsStayReadable) {
    auto& form = this->template open<TypeParam>();
    EXPECT_EQ(form.Timer2->interval(), 1000);
    EXPECT_TRUE(form.Timer2->isEnabled());
    const auto corner = [&form] { return form.grab().toImage().pixelColor(1, form.height() - 2); };
    const QColor before = corner();
    emit form.Timer2->Tick();
    const QColor first = corner();
    EXPECT_NE(first, before);
    bool changes = false;
    for (int turn = 0; turn < 20 && !changes; ++turn) {
        emit form.Timer2->Tick();
        changes = corner() != first;
    }
    EXPECT_TRUE(changes);
}

TYPED_TEST(PropertiesForms, TheTimerThatFindsTheRowRunsOnce) {
    auto& form = this->template open<TypeParam>();
    EXPECT_EQ(form.Timer1->interval(), 1);
    EXPECT_FALSE(form.Timer1->isEnabled());
}

TYPED_TEST(PropertiesForms, ClosingGivesTheCatalogueBack) {
    this->template open<TypeParam>().Unload();
    EXPECT_NO_THROW(std::filesystem::remove(this->catalogue.path()));
    EXPECT_TRUE(std::filesystem::is_empty(this->catalogue.folder()));
}

using DiscForm = PropertiesTest;
using DirectoryForm = PropertiesTest;
using FileForm = PropertiesTest;

TEST_F(DiscForm, TabGoesFromTopToBottom) {
    auto& form = open<EXCDROM>();
    EXPECT_THAT(tabOrder(form),
                ElementsAre("lblFields(0)", "lblFields(1)", "SSTab1", "lblFields(2)", "lblFields(3)", "lblFields(4)",
                            "lblFields(5)", "lblFields(6)", "Text2", "Text1", "Text3", "Command1", "Command2"));
}

TEST_F(DirectoryForm, TabGoesFromTopToBottom) {
    auto& form = open<EXDir>();
    EXPECT_THAT(tabOrder(form), ElementsAre("lblFields(0)", "lblFields(1)", "lblFields(2)", "SSTab1", "lblFields(3)",
                                            "lblFields(4)", "lblFields(5)", "lblFields(6)", "lblFields(7)",
                                            "lblFields(8)", "Text1", "Command1", "Command2"));
}

TEST_F(FileForm, TabGoesFromTopToBottom) {
    auto& form = open<EXFile>();
    std::vector<std::string> order{"SSTab1"};
    for (int field = 0; field < 13; ++field)
        order.push_back("lblFields(" + std::to_string(field) + ")");
    order.insert(order.end(), {"Text1", "Command1", "Command2"});
    EXPECT_EQ(tabOrder(form), order);
}

TEST_F(DiscForm, TheDiscOfTheSelectedNumberShows) {
    catalogue.addDisc(7, text("seven"),
                      {{"file system", text("CDFS")},
                       {"serial number", text("1A2B-3C4D")},
                       {"volume name", text("SEVENTH")},
                       {"total size", 646.37109375},
                       {"free size", 0.0},
                       {"comments", text("first\r\nsecond")},
                       {"autorun", text("\r\n[autorun]\r\nopen=A.EXE")}});
    app::Module1::SelectedDisc = "7";
    auto& form = open<EXCDROM>();
    EXPECT_EQ(valueBeside(form, "Preferred Name :"), "seven");
    EXPECT_EQ(valueBeside(form, "CD-ROM Number :"), "7");
    EXPECT_EQ(valueBeside(form, "File System"), "CDFS");
    EXPECT_EQ(valueBeside(form, "Serial Number"), "1A2B-3C4D");
    EXPECT_EQ(valueBeside(form, "Volume Name"), "SEVENTH");
    EXPECT_EQ(valueBeside(form, "Total Size"), "646.37109375");
    EXPECT_EQ(valueBeside(form, "Free Size"), "0");
    EXPECT_EQ(form.Text2->text(), "first\r\nsecond");
    EXPECT_EQ(form.Text1->text(), "\r\n[autorun]\r\nopen=A.EXE");
    EXPECT_EQ(form.Text3->text(), "seven");
    EXPECT_EQ(form.OpeningName, "seven");
    EXPECT_EQ(form.ApplyResult, "");
}

TEST_F(DirectoryForm, TheDirectoryOfTheSelectedNumberShows) {
    catalogue.addDirectory("C1D1S10", "TENTH",
                           {{"number of files", int64_t{12}},
                            {"number of subdirectories", int64_t{3}},
                            {"size", 10.5},
                            {"total number of files", int64_t{70000}},
                            {"total number of subdirectories", int64_t{40000}},
                            {"total size", 5000000000.25},
                            {"comments", text("A note")}});
    app::Module1::SelectedDirectory = "C1D1S10";
    auto& form = open<EXDir>();
    EXPECT_EQ(valueBeside(form, "Directory Name :"), "TENTH");
    EXPECT_EQ(valueBeside(form, "CD-ROM Number :"), "1");
    EXPECT_EQ(valueBeside(form, "Directory Path :"), "D:\\TENTH");
    EXPECT_EQ(valueBeside(form, "Number of Files"), "12");
    EXPECT_EQ(valueBeside(form, "Number of Subdirectories"), "3");
    EXPECT_EQ(valueBeside(form, "Size (Kb)"), "10.5");
    EXPECT_EQ(valueBeside(form, "Total number of Files"), "70000");
    EXPECT_EQ(valueBeside(form, "Total number of Subdirectories"), "40000");
    EXPECT_EQ(valueBeside(form, "Total Size"), "5000000000.25");
    EXPECT_EQ(form.Text1->text(), "A note");
}

TEST_F(FileForm, TheFileOfTheSelectedNumberShowsWithItsDirectory) {
    const int64_t number = catalogue.addFile("C1D1S1", text("PLAYER.EXE"),
                                             {{"file extension", text(".EXE")},
                                              {"file size", 1234.5},
                                              {"file date", text("11/04/97")},
                                              {"file time", text("10:12:44 AM")},
                                              {"attributes", text("AR")},
                                              {"number of icons", int64_t{3}},
                                              {"company name", text("Company")},
                                              {"description", text("Plays")},
                                              {"copyright", text("1997")},
                                              {"product name", text("Birds")},
                                              {"product version", text("3.1")},
                                              {"internal name", text("PLAYER")},
                                              {"original file name", text("BIRD.EXE")},
                                              {"comments", text("Needs sound")}});
    app::Module1::SelectedFile = std::to_string(number);
    auto& form = open<EXFile>();
    const std::pair<const char*, const char*> shown[] = {
        {"Extension", ".EXE"},         {"Size", "1234.5"},         {"Date", "11/04/97"},
        {"Time", "10:12:44 AM"},       {"Attributes", "AR"},       {"Number of icons in file", "3"},
        {"Company Name", "Company"},   {"Description", "Plays"},   {"Copyright", "1997"},
        {"Product Name", "Birds"},     {"Product Version", "3.1"}, {"Internal Name", "PLAYER"},
        {"Original Name", "BIRD.EXE"},
    };
    for (const auto& [caption, value] : shown)
        EXPECT_EQ(valueBeside(form, caption), value) << caption;
    EXPECT_EQ(form.Text1->text(), "Needs sound");
    EXPECT_EQ(form.Data1_Caption, QString::number(number));
    EXPECT_EQ(form.Label1->text(), "File Name :  PLAYER.EXE");
    EXPECT_EQ(form.Label2->text(), "Path :  D:\\PICTURES");
    EXPECT_EQ(form.Label3->text(), "CD-ROM Number :  1");
}
