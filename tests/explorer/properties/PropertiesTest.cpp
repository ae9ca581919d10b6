#include "explorer/properties/PropertiesTest.h"

#include <stdexcept>

namespace discaro::test {

namespace Module1 = app::Module1;

namespace {

// In one piece, since each save by itself waits for the disk.
void inOneTransaction(const std::function<void()>& action) {
    db::DBEngine::BeginTrans();
    action();
    db::DBEngine::CommitTrans();
}

} // namespace

void TestCatalogue::add(std::string_view table, const Fields& fields) const {
    const auto rows = database()->OpenRecordset(table);
    rows->AddNew();
    for (const auto& [field, value] : fields)
        rows->Fields(field) = value;
    rows->Update();
}

void TestCatalogue::addDisc(int64_t number, const db::Value& name, Fields further) const {
    further.insert(further.begin(), {{"id number", number}, {"prefered name", name}});
    add("Drive", further);
}

void TestCatalogue::addDirectory(const std::string& number, const std::string& name, Fields further) const {
    further.insert(further.begin(), {{"id number", number},
                                     {"drive id number", int64_t{1}},
                                     {"directory name", name},
                                     {"directory path", "D:\\" + name}});
    add("Directories", further);
}

int64_t TestCatalogue::addFile(const std::string& directory, const db::Value& name, Fields further) const {
    further.insert(further.begin(), {{"directory number", directory}, {"file name", name}});
    add("Files", further);
    const auto rows = database()->OpenRecordset("Files");
    rows->MoveLast();
    return rows->RowNumber();
}

db::Value TestCatalogue::stored(std::string_view table, const std::string& condition, std::string_view field) const {
    const auto rows = database()->OpenRecordset(table);
    rows->FindFirst(condition);
    if (rows->NoMatch())
        throw std::logic_error("no row: " + condition);
    return rows->Fields(field).Value();
}

std::vector<std::string> TestCatalogue::everything() const {
    std::vector<std::string> cells;
    const auto opened = database();
    for (const char* table : {"Drive", "Directories", "Files", "Prog Tag", "Master Table"}) {
        const auto rows = opened->OpenRecordset(table);
        for (; !rows->Eof(); rows->MoveNext())
            for (int field = 0; field < rows->FieldCount(); ++field)
                cells.push_back(rows->Fields(field).IsNull() ? "null" : rows->Fields(field).Text());
    }
    return cells;
}

PropertiesTest::PropertiesTest() {
    Module1::SelectedDisc = "2";
    Module1::SelectedDirectory = "C1D1S1";
    Module1::SelectedFile = "1";
    const auto keepsItOpen = catalogue.database();
    inOneTransaction([this] {
        catalogue.addDisc(1, text("one"));
        catalogue.addDisc(2, text("two"), {{"comments", text("Lent to Anna")}});
        catalogue.addDisc(3, text("three"), {{"volume name", text("TRIO")}});
        catalogue.addDirectory("C1D1", "D:\\");
        catalogue.addDirectory("C1D1S1", "PICTURES");
        catalogue.addFile("C1D1S1", text("readme.txt"));
    });
}

PropertiesTest::~PropertiesTest() {
    if (m_form)
        m_form->Unload();
}

void PropertiesTest::type(kit::TextBox& box, const char* text) {
    QTest::keyClick(&box.editor(), Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(&box.editor(), QString::fromUtf8(text));
}

void PropertiesTest::retype(kit::TextBox& box, const char* text) {
    box.selectAll();
    QTest::keyClicks(&box.editor(), QString::fromUtf8(text));
}

db::Value text(const std::string& utf8Text) {
    return utf8Text;
}

std::string valueBeside(const kit::Form& form, const char* caption) {
    for (const auto& control : form.controls()) {
        const auto* label = qobject_cast<const QLabel*>(control.object.data());
        const auto* value = label ? qobject_cast<const kit::ValueBox*>(label->buddy()) : nullptr;
        if (value && label->text() == QString::fromUtf8(caption))
            return value->text().toStdString();
    }
    throw std::logic_error(std::string("no value beside ") + caption);
}

} // namespace discaro::test
