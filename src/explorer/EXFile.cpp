#include "explorer/EXFile.h"

#include "app/Module1.h"
#include "app/OpenSource.h"
#include "base/RuntimeError.h"
#include "catalogue/Discs.h"
#include "catalogue/Names.h"
#include "kit/common/Strings.h"

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
        files::kFileExtension,  files::kFileSize,     files::kFileDate,        files::kFileTime,  files::kAttributes,
        files::kNumberOfIcons,  files::kCompanyName,  files::kDescription,     files::kCopyright, files::kProductName,
        files::kProductVersion, files::kInternalName, files::kOriginalFileName};
    showFields(kShown);
    bound().bind(*Text1, files::kComments);
}

void EXFile::Form_Load() {
    app::openSource(*this, Data1, "files");
    app::openSource(*this, Data2, "directories");
}

void EXFile::Timer1_Timer() {
    findFile();
    findDirectory();
    Timer1->setEnabled(false);
}

void EXFile::findFile() {
    skipErrors([this] { Data1.Recordset().FindFirst(catalogue::rowCondition(SelectedFile)); });
    skipErrors([this] { bound().attach(Data1); });
    skipErrors([this] { addValue(*Label1, Data1, catalogue::files::kFileName); });
}

void EXFile::findDirectory() {
    namespace directories = catalogue::directories;
    skipErrors([this] { Data2.Recordset().FindFirst(catalogue::rowCondition(SelectedDirectory)); });
    skipErrors([this] { addValue(*Label2, Data2, directories::kDirectoryPath); });
    skipErrors([this] { addValue(*Label3, Data2, directories::kDriveIdNumber); });
}

void EXFile::Data1_Reposition() {
    Data1_Caption = kit::qt(Data1.Recordset()(catalogue::files::kIdNumber).Text());
}

} // namespace discaro::explorer
