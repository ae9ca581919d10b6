#include "app/Main.h"
#include "app/Module1.h"
#include "app/SingleInstance.h"
#include "app/Windows.h"
#include "catalogue/EmptyCatalogue.h"
#include "db/DBEngine.h"
#include "kit/common/Strings.h"
#include "kit/display/ImageList.h"
#include "kit/program/EndProgram.h"
#include "kit/program/MsgBox.h"
#include "kit/program/UnhandledErrors.h"
#include "program/ApplicationFolder.h"
#include "program/Texts.h"
#include "program/Wiring.h"

#include <exception>

using namespace discaro;

namespace {

std::filesystem::path executableFolder() {
    return QCoreApplication::applicationDirPath().toStdString();
}

// The category list that a new folder gets stands beside the executable.
void prepareFolder() {
    try {
        program::prepareApplicationFolder(app::Module1::ApplicationPath, executableFolder() / "kvt.ini");
    } catch (const std::exception& error) {
        kit::MsgBox(QString(program::kFolderNotReady).arg(kit::qt(error.what())), kit::Buttons::Ok, kit::Icon::Critical,
                    program::kFolderNotReadyTitle);
        kit::EndProgram(1);
    }
}

} // namespace

int main(int argc, char** argv) {
    kit::Application application(argc, argv);
    QCoreApplication::setApplicationName("Discaro");
    QGuiApplication::setApplicationDisplayName({});
    QGuiApplication::setDesktopFileName("com.quorlen.Discaro");
    QGuiApplication::setWindowIcon(kit::pictureIcon(":/pictures/discaro.svg"));
    db::DBEngine::SetFormat(catalogue::catalogueFormat());
    program::registerWindows();
    app::Windows::setWhenNoneIsLeft([] { kit::EndProgram(); });
    app::Module1::ApplicationPath = program::findApplicationFolder(executableFolder());
    const app::SingleInstance instance(app::SingleInstance::defaultMark(), app::Module1::ApplicationPath);
    kit::reportingErrors([&] { app::Main(instance, prepareFolder); });
    return kit::Application::exec();
}
