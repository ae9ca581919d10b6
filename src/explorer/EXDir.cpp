#include "explorer/EXDir.h"

#include "app/Module1.h"
#include "app/OpenSource.h"
#include "catalogue/Discs.h"
#include "catalogue/Names.h"

namespace discaro::explorer {

void EXDir::bindFields() {
    namespace directories = catalogue::directories;
    constexpr std::string_view kShown[] = {directories::kDirectoryName,
                                           directories::kDriveIdNumber,
                                           directories::kDirectoryPath,
                                           directories::kNumberOfFiles,
                                           directories::kNumberOfSubdirectories,
                                           directories::kSize,
                                           directories::kTotalNumberOfFiles,
                                           directories::kTotalNumberOfSubdirectories,
                                           directories::kTotalSize};
    showFields(kShown);
    bound().bind(*Text1, directories::kComments);
}

void EXDir::Form_Load() {
    app::openSource(*this, Data1, "Directories");
}

void EXDir::Timer1_Timer() {
    Data1.Recordset().FindFirst(catalogue::rowCondition(app::Module1::SelectedDirectory));
    bound().attach(Data1);
    Timer1->setEnabled(false);
}

} // namespace discaro::explorer
