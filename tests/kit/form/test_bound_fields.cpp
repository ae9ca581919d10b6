#include "base/RuntimeError.h"
#include "db/DBEngine.h"
#include "db/schema/FileFormat.h"
#include "kit/common/Strings.h"
#include "kit/controls/Controls.h"
#include "kit/controls/TextBox.h"
#include "kit/form/BoundFields.h"
#include "support/ScratchFolder.h"

#include <QtGui/QTextOption>
#include <QtTest/QTest>
#include <QtWidgets/QPlainTextEdit>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

using namespace discaro;
using base::ErrorNumber;
using base::RuntimeError;
using discaro::test::ScratchFolder;
using kit::qt;
using kit::utf8;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

// A table with a field of every type, two rows of it, and controls bound to them.
class BoundFields : public ::testing::Test {
protected:
    BoundFields() {
        const db::FileFormat format{0, 1, {}};
        const std::vector<std::string> statements{
            R"(CREATE TABLE Things(whole INTEGER, fraction DOUBLE, "short text" TEXT,
               "long text" LONGTEXT, flag BOOLEAN, day DATE))"};
        db::DBEngine::CreateDatabase(path(), format, statements);
        m_area.setMultiLine();
        addRow("first", "one");
        addRow("second", "two");
        m_source.SetDatabaseName(path());
        m_source.SetRecordSource("Things");
        m_source.Refresh();
    }

    std::filesystem::path path() const { return m_folder.path() / "things.db"; }

    void addRow(const char* shortText, const std::string& longText) {
        const auto things = db::DBEngine::OpenDatabase(path())->OpenRecordset("Things");
        things->AddNew();
        (*things)("short text") = shortText;
        (*things)("long text") = longText;
        things->Update();
    }

    void attach() {
        m_fields.bind(m_line, "SHORT TEXT");
        m_fields.bind(m_area, "long text");
        m_fields.attach(m_source);
    }

    // Replaces a field of the first row behind the data source's back.
    void store(std::string_view field, const db::Value& value) {
        const auto things = db::DBEngine::OpenDatabase(path())->OpenRecordset("Things");
        things->Edit();
        things->Fields(field) = value;
        things->Update();
    }

    db::Value stored(std::string_view field, int row = 0) {
        const auto things = db::DBEngine::OpenDatabase(path())->OpenRecordset("Things");
        things->MoveTo(row);
        return things->Fields(field).Value();
    }

    db::Recordset& rows() { return m_source.Recordset(); }
    QPlainTextEdit& editor() { return static_cast<QPlainTextEdit&>(m_area.editor()); }

    static int errorOf(const std::function<void()>& action) {
        try {
            action();
        } catch (const RuntimeError& error) {
            return error.number();
        }
        return 0;
    }

    const ScratchFolder m_folder{ScratchFolder::Place::Memory};
    db::DataSource m_source;
    kit::TextBox m_line;
    kit::TextBox m_area;
    kit::Label m_label;
    kit::BoundFields m_fields;
};

const db::Value kNull;

db::Value text(const char* utf8Text) {
    return std::string(utf8Text);
}

} // namespace

// Showing

TEST_F(BoundFields, ShowTheCurrentRowWhenTheyAreAttached) {
    attach();
    EXPECT_EQ(m_line.text(), "first");
    EXPECT_EQ(m_area.text(), "one");
}

TEST_F(BoundFields, FollowTheSourceFromRowToRow) {
    attach();
    rows().MoveNext();
    EXPECT_EQ(m_line.text(), "second");
    rows().FindFirst("[short text] like 'first'");
    EXPECT_EQ(m_line.text(), "first");
}

TEST_F(BoundFields, ShowNullAsNoText) {
    attach();
    store("short text", kNull);
    rows().MoveFirst();
    EXPECT_EQ(m_line.text(), "");
}

TEST_F(BoundFields, ShowNumbersInGeneralFormAndYesAndNoAsNumbers) {
    store("fraction", 1234567.125);
    store("whole", int64_t{9000000000});
    store("flag", true);
    std::vector<std::string> shown;
    for (const char* field : {"fraction", "whole", "flag", "day"})
        m_fields.follow(field, [&shown](const QString& each) { shown.push_back(utf8(each)); });
    m_fields.attach(m_source);
    EXPECT_THAT(shown, ElementsAre("1234567.125", "9000000000", "-1", ""));
    store("flag", false);
    shown.clear();
    rows().MoveFirst();
    EXPECT_EQ(shown[2], "0");
}

TEST_F(BoundFields, AreEmptyWhereThereIsNoRow) {
    attach();
    rows().MoveLast();
    rows().MoveNext();
    EXPECT_TRUE(rows().Eof());
    EXPECT_EQ(m_line.text(), "");
    EXPECT_EQ(m_area.text(), "");
}

TEST_F(BoundFields, AreEmptyInANewRow) {
    attach();
    rows().AddNew();
    EXPECT_EQ(m_line.text(), "");
    rows().CancelUpdate();
    EXPECT_EQ(m_line.text(), "first");
}

TEST_F(BoundFields, TellOfTheMoveThenOfTheChangesThenThatAllIsShown) {
    std::vector<std::string> heard;
    attach();
    QObject::connect(&m_fields, &kit::BoundFields::Reposition,
                     [&] { heard.push_back("moved, still " + utf8(m_line.text())); });
    QObject::connect(&m_fields, &kit::BoundFields::RowShown, [&] { heard.emplace_back("shown"); });
    QObject::connect(&m_line, &kit::TextBox::Change, [&] { heard.push_back("line, beside " + utf8(m_area.text())); });
    QObject::connect(&m_area, &kit::TextBox::Change, [&] { heard.emplace_back("area"); });
    rows().MoveNext();
    EXPECT_THAT(heard, ElementsAre("moved, still first", "line, beside two", "area", "shown"));
    heard.clear();
    rows().MoveNext();
    EXPECT_THAT(heard, ElementsAre("line, beside ", "area", "shown"));
}

TEST_F(BoundFields, RaiseNoChangeWhereTheTextStaysTheSame) {
    int changes = 0;
    attach();
    QObject::connect(&m_line, &kit::TextBox::Change, [&] { ++changes; });
    rows().MoveFirst();
    EXPECT_EQ(changes, 0);
}

TEST_F(BoundFields, LeaveTheCaretWhereItIsWhenTheRowWasSaved) {
    store("long text", text("one\r\ntwo"));
    attach();
    editor().moveCursor(QTextCursor::End);
    QTest::keyClicks(&editor(), "!");
    m_source.UpdateRecord();
    EXPECT_EQ(editor().textCursor().position(), 8);
    EXPECT_TRUE(editor().document()->isUndoAvailable());
}

TEST_F(BoundFields, AnErrorWhileReadingLeavesTheControlsAsTheyWere) {
    m_fields.bind(m_line, "short text");
    m_fields.bind(m_area, "no such field");
    m_line.setText("before");
    EXPECT_EQ(errorOf([&] { m_fields.attach(m_source); }), static_cast<int>(ErrorNumber::UnknownField));
    EXPECT_EQ(m_line.text(), "before");
}

TEST_F(BoundFields, RestOnceDetached) {
    attach();
    m_fields.detach();
    rows().MoveNext();
    m_line.setText("typed");
    m_source.UpdateRecord();
    EXPECT_EQ(stored("short text", 1), text("second"));
}

TEST_F(BoundFields, ShowTheFirstRowAgainAfterARefresh) {
    attach();
    rows().MoveNext();
    m_source.Refresh();
    EXPECT_EQ(m_line.text(), "first");
}

// Writing

TEST_F(BoundFields, WriteWhatWasTypedWhenTheRecordIsSaved) {
    attach();
    m_line.setText("typed");
    EXPECT_TRUE(m_fields.isTouched(m_line));
    EXPECT_FALSE(m_fields.isTouched(m_area));
    m_source.UpdateRecord();
    EXPECT_EQ(stored("short text"), text("typed"));
    EXPECT_FALSE(m_fields.isTouched(m_line));
}

TEST_F(BoundFields, WriteNothingOnAMoveAndDropWhatWasTyped) {
    attach();
    m_line.setText("typed");
    rows().MoveNext();
    rows().MoveFirst();
    EXPECT_EQ(stored("short text"), text("first"));
    EXPECT_EQ(m_line.text(), "first");
}

TEST_F(BoundFields, WriteNothingFromUntouchedBoxes) {
    store("short text", kNull);
    store("long text", text("a\r\nb\rc d"));
    attach();
    m_source.UpdateRecord();
    EXPECT_EQ(stored("short text"), kNull);
    EXPECT_EQ(stored("long text"), text("a\r\nb\rc d"));
}

TEST_F(BoundFields, WriteNothingWhenTheOldTextWasTypedAgain) {
    store("short text", kNull);
    attach();
    m_line.setText("typed");
    m_line.setText("");
    m_source.UpdateRecord();
    EXPECT_EQ(stored("short text"), kNull);
}

TEST_F(BoundFields, AnEmptiedBoxWritesAnEmptyTextAndNullIntoANumber) {
    store("whole", int64_t{12});
    m_fields.bind(m_line, "whole");
    m_fields.bind(m_area, "long text");
    m_fields.attach(m_source);
    m_line.setText("");
    m_area.setText("");
    m_source.UpdateRecord();
    EXPECT_EQ(stored("whole"), kNull);
    EXPECT_EQ(stored("long text"), text(""));
}

TEST_F(BoundFields, ConvertAsTheFieldDoesAndShowWhatWasStored) {
    m_fields.bind(m_line, "whole");
    m_fields.attach(m_source);
    m_line.setText(" 012 ");
    m_source.UpdateRecord();
    EXPECT_EQ(stored("whole"), db::Value(int64_t{12}));
    EXPECT_EQ(m_line.text(), "12");
}

TEST_F(BoundFields, RefuseWhatTheFieldCannotHoldAndKeepIt) {
    m_fields.bind(m_line, "whole");
    m_fields.attach(m_source);
    m_line.setText("many");
    const int conversion = static_cast<int>(ErrorNumber::DataTypeConversion);
    EXPECT_EQ(errorOf([&] { m_source.UpdateRecord(); }), conversion);
    EXPECT_EQ(m_line.text(), "many");
    EXPECT_EQ(stored("whole"), kNull);
    m_line.setText("7");
    m_source.UpdateRecord();
    EXPECT_EQ(stored("whole"), db::Value(int64_t{7}));
}

TEST_F(BoundFields, AYesNoFieldTakesTheNumbersThatItShows) {
    store("flag", true);
    m_fields.bind(m_label, "flag");
    m_fields.attach(m_source);
    EXPECT_EQ(m_label.text(), "-1");
    m_label.setText("0");
    m_source.UpdateRecord();
    EXPECT_EQ(stored("flag"), db::Value(false));
    EXPECT_EQ(m_label.text(), "0");
}

TEST_F(BoundFields, ALabelThatTheProgramChangesIsWrittenToo) {
    m_fields.bind(m_label, "day");
    m_fields.attach(m_source);
    rows().Edit();
    m_label.setText("12/31/98");
    rows().Update();
    EXPECT_EQ(stored("day"), text("12/31/98"));
    EXPECT_EQ(m_label.text(), "12/31/98");
}

TEST_F(BoundFields, ALabelRaisesChangeWhenAnotherTextIsShown) {
    store("flag", false);
    std::vector<QString> heard;
    QObject::connect(&m_label, &kit::Label::Change, [&] { heard.push_back(m_label.text() + m_line.text()); });
    m_fields.bind(m_label, "flag");
    m_fields.bind(m_line, "short text");
    m_fields.attach(m_source);
    store("flag", true);
    m_source.Refresh();
    m_source.Refresh();
    EXPECT_THAT(heard, ElementsAre("0first", "-1first")) << "with all other controls told";
}

TEST_F(BoundFields, ANewRowTakesWhatWasPutIntoTheControls) {
    attach();
    rows().MoveNext();
    rows().AddNew();
    m_line.setText("third");
    rows().Update();
    EXPECT_EQ(stored("short text", 2), text("third"));
    EXPECT_EQ(stored("long text", 2), kNull);
    EXPECT_EQ(m_line.text(), "second") << "the row that was current before";
}

TEST_F(BoundFields, ANewRowOfAnEmptyTableTakesWhatWasPutIntoTheControls) {
    rows().Delete();
    rows().MoveNext();
    rows().Delete();
    m_source.Refresh();
    attach();
    rows().AddNew();
    m_line.setText("only");
    rows().Update();
    EXPECT_EQ(stored("short text"), text("only"));
}

TEST_F(BoundFields, SavingWithoutARowSaysSo) {
    attach();
    rows().MoveLast();
    rows().MoveNext();
    m_line.setText("typed");
    EXPECT_EQ(errorOf([&] { m_source.UpdateRecord(); }), static_cast<int>(ErrorNumber::NoCurrentRecord));
}

TEST_F(BoundFields, ATextIsGivenAsItIsStoredUntilTheControlIsTouched) {
    store("short text", text("one line\nand another"));
    attach();
    EXPECT_EQ(m_line.text(), "one line");
    EXPECT_EQ(m_fields.text(m_line), "one line\nand another");
    m_line.setText("one");
    EXPECT_EQ(m_fields.text(m_line), "one");
    EXPECT_EQ(errorOf([&] { (void)m_fields.text(m_label); }), static_cast<int>(ErrorNumber::InvalidValue));
}

// Holding

TEST_F(BoundFields, KeepWhatWasTypedWhileTheSourceLooksAround) {
    attach();
    m_line.setText("typed");
    {
        const kit::BoundFields::Hold hold(m_fields);
        rows().MoveNext();
        rows().MoveFirst();
    }
    EXPECT_EQ(m_line.text(), "typed");
    m_source.UpdateRecord();
    EXPECT_EQ(stored("short text"), text("typed"));
}

TEST_F(BoundFields, NeverWriteOneRowsTextsIntoAnother) {
    attach();
    m_line.setText("typed");
    {
        const kit::BoundFields::Hold hold(m_fields);
        rows().MoveNext();
    }
    EXPECT_EQ(errorOf([&] { m_source.UpdateRecord(); }), static_cast<int>(ErrorNumber::RecordGone));
    EXPECT_EQ(stored("short text", 1), text("second"));
}

// Texts that a box holds in another form

TEST_F(BoundFields, AnEditLeavesTheRestOfTheTextAsItIsStored) {
    store("long text", text("one\r\ntwo three\r\nfour"));
    attach();
    editor().moveCursor(QTextCursor::End);
    QTest::keyClicks(&editor(), "!");
    QTest::keyClick(&editor(), Qt::Key_Return);
    m_source.UpdateRecord();
    EXPECT_EQ(stored("long text"), text("one\r\ntwo three\r\nfour!\r\n"));
}

TEST_F(BoundFields, OddCharactersSurviveAnEditBesideThem) {
    const std::string odd("\t\0\xE2\x80\xA8\xE2\x80\xA9\xC2\xA0\xEF\xB7\x90\x01\r\xF0\x9F\x98\x80", 19);
    store("long text", "a" + odd + "b");
    attach();
    editor().moveCursor(QTextCursor::End);
    QTest::keyClicks(&editor(), "c");
    m_source.UpdateRecord();
    EXPECT_EQ(stored("long text"), db::Value("a" + odd + "bc"));
}

TEST_F(BoundFields, AHugeTextIsHeldAndAnEditToItWritten) {
    std::string huge;
    for (int line = 0; line < 40000; ++line)
        huge += "line " + std::to_string(line) + " of the errors of a scan\r\n";
    store("long text", huge);
    attach();
    m_source.UpdateRecord();
    EXPECT_EQ(stored("long text"), db::Value(huge));
    editor().moveCursor(QTextCursor::End);
    QTest::keyClicks(&editor(), "end");
    m_source.UpdateRecord();
    EXPECT_EQ(stored("long text"), db::Value(huge + "end"));
}

TEST_F(BoundFields, ATextOfOneEndlessWordIsBrokenAnywhere) {
    const std::string endless(200'000, 'x');
    store("long text", endless);
    attach();
    EXPECT_EQ(editor().wordWrapMode(), QTextOption::WrapAnywhere);
    EXPECT_EQ(m_area.text(), qt(endless));
    rows().MoveNext();
    EXPECT_EQ(editor().wordWrapMode(), QTextOption::WrapAtWordBoundaryOrAnywhere);
    EXPECT_EQ(m_area.text(), "two");
}

TEST_F(BoundFields, ALabelsNewTextIsWrittenAsItIs) {
    store("short text", text("a\nb"));
    m_fields.bind(m_label, "short text");
    m_fields.attach(m_source);
    const QString changed = QString("a\nc") + QChar(QChar::Nbsp);
    m_label.setText(changed);
    m_source.UpdateRecord();
    EXPECT_EQ(stored("short text"), text(changed.toUtf8().constData()));
}

TEST(MendedText, KeepsBothEndsAndPutsTheNewTextBetweenThem) {
    EXPECT_EQ(kit::mendedText("a\r\nb\r\nc", "a\r\nb\r\nc"), "a\r\nb\r\nc");
    EXPECT_EQ(kit::mendedText("a\r\nb\r\nc", "a\r\nx\r\ny\r\nc"), "a\r\nx\r\ny\r\nc");
    EXPECT_EQ(kit::mendedText("a\r\nb\r\nc", "a\nc"), "a\r\nc");
    EXPECT_EQ(kit::mendedText("a\r\nb", ""), "");
    EXPECT_EQ(kit::mendedText("aa\r\n", "a\r\n"), "a\r\n");
    EXPECT_EQ(kit::mendedText("a\rb", "a\r\nbc"), "a\rbc");
}

TEST(MendedText, GivesNewLinesTheLineEndsOfTheText) {
    EXPECT_EQ(kit::mendedText("a\nb", "a\r\n\r\nb"), "a\n\nb");
    EXPECT_EQ(kit::mendedText("a\nb\r\nc", "a\r\nb\r\nc\r\nd"), "a\nb\r\nc\r\nd");
    EXPECT_EQ(kit::mendedText("", "a\nb"), "a\r\nb");
}

TEST(MendedText, TakesAnyTexts) {
    EXPECT_EQ(kit::mendedText("short", "much longer"), "much longer");
    EXPECT_EQ(kit::mendedText("\r\n\r\n\r\n", "\n"), "\r\n");
    EXPECT_EQ(kit::mendedText("\r", "\n\n"), "\r\r\n");
}
