#include "explorer/EXFile.h"

#include "app/Module1.h"
#include "base/RuntimeError.h"
#include "catalogue/Names.h"
#include "explorer/PropertiesKeys.h"
#include "explorer/PropertiesRules.h"
#include "kit/Strings.h"
#include "kit/Yield.h"

namespace discaro::explorer {

using app::Module1::SelectedDirectory;
using app::Module1::SelectedFile;
using base::skipErrors;

namespace {

// The label's fixed text, two blanks and the field's value.
void addValue(kit::Label& label, db::DataSource& source, std::string_view field) {
    label.setText(label.text() + "  " + kit::qt(source.Recordset()(field).Text()));
}

} // namespace

void EXFile::bindFields() {
    namespace files = catalogue::files;
    constexpr std::string_view kShown[] = {
        files::kFileExtension,   files::kFileSize,       files::kFileDate,
        files::kFileTime,        files::kAttributes,     files::kNumberOfIcons,
        files::kCompanyName,     files::kDescription,    files::kCopyright,
        files::kProductName,     files::kProductVersion, files::kInternalName,
        files::kOriginalFileName};
    for (int index = 0; const std::string_view field : kShown)
        m_bound.show(field,
                     [&box = lblFields(index++)](const QString& text) { box.setText(text); });
    m_bound.bind(*Text1, files::kComments);
    connect(&m_bound, &kit::BoundFields::Reposition, this, &EXFile::Data1_Reposition);
    connect(&m_bound, &kit::BoundFields::Shown, this, &EXFile::Data1_Shown);
}

void EXFile::Form_Load() {
    const auto open = [this](db::DataSource& source, const char* table) {
        source.SetDatabaseName(app::Module1::cataloguePath());
        source.SetRecordSource(table);
        atUnload([&source] { source.Close(); });
        source.Refresh();
    };
    open(Data1, "files");
    open(Data2, "directories");
}

void EXFile::Timer1_Timer() {
    findFile();
    findDirectory();
    Timer1->setEnabled(false);
}

void EXFile::findFile() {
    skipErrors([this] { Data1.Recordset().FindFirst(idCondition(SelectedFile)); });
    skipErrors([this] { m_bound.attach(Data1); });
    skipErrors([this] { addValue(*Label1, Data1, catalogue::files::kFileName); });
}

void EXFile::findDirectory() {
    namespace directories = catalogue::directories;
    skipErrors([this] { Data2.Recordset().FindFirst(idCondition(SelectedDirectory)); });
    skipErrors([this] { addValue(*Label2, Data2, directories::kDirectoryPath); });
    skipErrors([this] { addValue(*Label3, Data2, directories::kDriveIdNumber); });
}

void EXFile::Data1_Reposition() {
    Data1_Caption = kit::qt(Data1.Recordset()(catalogue::files::kIdNumber).Text());
}

void EXFile::Data1_Shown() {
    Command1->setEnabled(false);
}

void EXFile::Text1_Change() {
    Command1->setEnabled(true);
}

void EXFile::Command1_Click() {
    Data1.UpdateRecord();
    Command1->setEnabled(false);
}

void EXFile::Command2_Click() {
    if (Command1->isEnabled())
        Command1_Click();
    Unload();
}

void EXFile::Timer2_Timer() {
    kit::yield();
    m_ground.change(*this);
}

void EXFile::keyPressEvent(QKeyEvent* event) {
    if (!obeyKey(*this, *event))
        Form::keyPressEvent(event);
}

bool EXFile::isLeftByEscape() const {
    return !m_bound.isTouched(*Text1);
}

void EXFile::paintEvent(QPaintEvent*) {
    m_ground.paint(*this);
}

} // namespace discaro::explorer
