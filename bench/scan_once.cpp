// scan_once FOLDER DISC [DETAIL]: a whole scan without a window (quick scan, walk, totals, commit) of a folder or disc
// image into the catalogue of a folder, which is made when it is missing. Prints the counts and the seconds of each
// stage.
#include "app/Module1.h"
#include "catalogue/EmptyCatalogue.h"
#include "catalogue/Names.h"
#include "db/DBEngine.h"
#include "disc/drives/DriveTable.h"
#include "scanner/QuickScan.h"
#include "scanner/ScanEngine.h"

#include <chrono>
#include <filesystem>
#include <iostream>

using namespace discaro;

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

class Stages : public scanner::ScanWatcher {
public:
    void walkFinished() override { m_walk = secondsSince(m_start); }
    void totalsFinished() override { m_totals = secondsSince(m_start); }
    void scanFinished() override { m_end = secondsSince(m_start); }
    void print() const {
        std::cout << "walk " << m_walk << " totals " << m_totals - m_walk << " commit " << m_end - m_totals << '\n';
    }

private:
    Clock::time_point m_start = Clock::now();
    double m_walk = 0;
    double m_totals = 0;
    double m_end = 0;
};

void openSource(db::DataSource& source, std::string_view table) {
    source.SetDatabaseName(app::Module1::cataloguePath());
    source.SetRecordSource(std::string(table));
    source.Refresh();
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::cerr << "usage: scan_once FOLDER DISC [DETAIL]\n";
        return 2;
    }
    db::DBEngine::SetFormat(catalogue::catalogueFormat());
    app::Module1::ApplicationPath = std::filesystem::absolute(argv[1]);
    if (!std::filesystem::exists(app::Module1::cataloguePath()))
        catalogue::createEmptyCatalogue(app::Module1::cataloguePath());
    db::DataSource master;
    db::DataSource discs;
    db::DataSource directories;
    db::DataSource files;
    openSource(master, "master table");
    openSource(discs, "drive");
    openSource(directories, "directories");
    openSource(files, "files");

    const char letter = disc::driveTable().addImageOrFolder(argv[2]);
    disc::Lister lister(disc::driveTable());
    scanner::QuickScan quick(lister);
    const auto start = Clock::now();
    quick.begin(letter);
    quick.countBelow([](const std::string&) { return true; });
    std::cout << quick.directories() << " directories, " << quick.files() << " files, quick scan "
              << secondsSince(start) << '\n';
    scanner::ScanRequest request{
        .driveLetter = letter, .preferredName = "Bench", .comments = {}, .quickFiles = quick.files(), .options = {}};
    if (argc > 3)
        request.options.DetailLevel = argv[3];
    Stages stages;
    scanner::ScanEngine engine({master, discs, directories, files}, disc::driveTable(), lister, stages, request);
    engine.begin();
    engine.run();
    stages.print();
}
