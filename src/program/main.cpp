#include "app/Main.h"

#include "app/Module1.h"
#include "app/SingleInstance.h"
#include "app/Windows.h"
#include "catalogue/EmptyCatalogue.h"
#include "db/DBEngine.h"
#include "kit/EndProgram.h"
#include "kit/MsgBox.h"
#include "kit/Strings.h"
#include "kit/UnhandledErrors.h"
#include "program/ApplicationFolder.h"
#include "program/Wiring.h"

#include <QtGui/QIcon>

#include <exception>

using namespace discaro;

namespace {

// The category list stands beside the executable, or where the installation put its data.
std::filesystem::path categoryTemplate(const std::filesystem::path& executableFolder) {
    const auto beside = executableFolder / "kvt.ini";
    return std::filesystem::exists(beside) ? beside : executableFolder / "../share/discaro/kvt.ini";
}

void prepareFolder() {
    const std::filesystem::path executable = QCoreApplication::applicationDirPath().toStdString();
    app::Module1::ApplicationPath = program::findApplicationFolder(executable);
    try {
        program::prepareApplicationFolder(app::Module1::ApplicationPath,
                                          categoryTemplate(executable));
    } catch (const std::exception& error) {
        kit::MsgBox(
            QString("The application folder can't be made ready.\n\n%1").arg(kit::qt(error.what())),
            kit::Buttons::Ok, kit::Icon::Critical, "Discaro");
        kit::EndProgram(1);
    }
}

} // namespace

int main(int argc, char** argv) {
    kit::Application application(argc, argv);
    QCoreApplication::setApplicationName("Discaro");
    QGuiApplication::setApplicationDisplayName({});
    QGuiApplication::setDesktopFileName("com.quorlen.Discaro");
    QGuiApplication::setWindowIcon(QIcon(":/pictures/discaro.svg"));
    db::DBEngine::SetFormat(catalogue::catalogueFormat());
    program::registerWindows();
    app::Windows::setWhenNoneIsLeft([] { kit::EndProgram(); });
    const app::SingleInstance instance;
    kit::reportingErrors([&] { app::Main(instance, prepareFolder); });
    return kit::Application::exec();
}
