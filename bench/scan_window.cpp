// scan_window FOLDER DISC [DETAIL]: the same scan as scan_once through the wizard's window, its display running, on
// the platform that QT_QPA_PLATFORM names. Prints the seconds from the press on the start button to the end.
#include "app/Module1.h"
#include "app/Windows.h"
#include "catalogue/EmptyCatalogue.h"
#include "db/DBEngine.h"
#include "kit/program/UnhandledErrors.h"
#include "scanner/Scanform.h"

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

#include <chrono>
#include <filesystem>
#include <iostream>

using namespace discaro;
using scanner::Scanform;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kSettle = 300; // milliseconds for the window system to have shown everything

void settle() {
    QEventLoop loop;
    QTimer::singleShot(kSettle, &loop, &QEventLoop::quit);
    loop.exec();
}

Scanform* openWizard() {
    app::Windows::Register("Scanform", [] { return new Scanform; });
    app::Windows::Show("Scanform");
    return qobject_cast<Scanform*>(app::Windows::Find("Scanform"));
}

// To the scanning screen, as a user goes.
void goToStart(Scanform& wizard, const char* disc, const std::string& detail) {
    if (detail == "all")
        wizard.Option1->click();
    else if (detail == "minimal")
        wizard.Option3->click();
    wizard.addDiscs({disc});
    wizard.Text2->setText("Bench");
    for (int page = 2; page < 5; ++page)
        wizard.Command1(2).click();
    wizard.Command1(3).click();
    settle();
}

} // namespace

int main(int argc, char** argv) {
    kit::Application application(argc, argv);
    if (argc < 3) {
        std::cerr << "usage: scan_window FOLDER DISC [DETAIL]\n";
        return 2;
    }
    db::DBEngine::SetFormat(catalogue::catalogueFormat());
    app::Module1::ApplicationPath = std::filesystem::absolute(argv[1]);
    if (!std::filesystem::exists(app::Module1::cataloguePath()))
        catalogue::createEmptyCatalogue(app::Module1::cataloguePath());
    Scanform* wizard = openWizard();
    goToStart(*wizard, argv[2], argc > 3 ? argv[3] : "basic");
    if (!wizard->Command2->isVisible()) {
        std::cerr << "scan_window: the wizard did not come to its last page\n";
        return 1;
    }
    const auto start = Clock::now();
    wizard->Command2->click();
    std::cout << "scan " << std::chrono::duration<double>(Clock::now() - start).count() << '\n';
    return wizard->Command1(7).isEnabled() ? 0 : 1;
}
