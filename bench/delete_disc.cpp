// delete_disc FOLDER: deletes the last disc of a folder's catalogue through the window, as a user who says OK does, on
// the platform that QT_QPA_PLATFORM names. Prints the seconds from the OK to the painted list without the disc.
#include "app/Module1.h"
#include "app/Windows.h"
#include "catalogue/DeleteCD.h"
#include "catalogue/EmptyCatalogue.h"
#include "db/DBEngine.h"
#include "kit/program/MsgBox.h"
#include "kit/program/UnhandledErrors.h"
#include "kit/program/Yield.h"

#include <chrono>
#include <filesystem>
#include <iostream>

using namespace discaro;
using catalogue::DeleteCD;

namespace {

using Clock = std::chrono::steady_clock;

void yieldUntilFilled(const DeleteCD& window) {
    while (window.Timer1->isEnabled())
        kit::yield();
}

} // namespace

int main(int argc, char** argv) {
    kit::Application application(argc, argv);
    if (argc != 2) {
        std::cerr << "usage: delete_disc FOLDER\n";
        return 2;
    }
    db::DBEngine::SetFormat(catalogue::catalogueFormat());
    app::Module1::ApplicationPath = std::filesystem::absolute(argv[1]);
    app::Windows::Register("DeleteCD", [] { return new DeleteCD; });
    app::Windows::Show("DeleteCD");
    auto* window = qobject_cast<DeleteCD*>(app::Windows::Find("DeleteCD"));
    yieldUntilFilled(*window);
    window->awaitPainting();
    const int discs = window->ListView1->rows().count();
    window->ListView1->select(discs - 1);
    emit window->ListView1->ItemClick(discs - 1);
    kit::yield();
    Clock::time_point answered;
    kit::setAnswerer([&](const kit::Question& question) {
        if (question.buttons == kit::Buttons::OkCancel)
            answered = Clock::now();
        return kit::Answer::Ok;
    });
    emit window->Command2->Click();
    yieldUntilFilled(*window);
    window->ListView1->repaint();
    window->DriveInfo->repaint();
    std::cout << "deletion " << std::chrono::duration<double>(Clock::now() - answered).count() << '\n';
    return window->ListView1->rows().count() == discs - 1 ? 0 : 1;
}
