// bench_explorer FOLDER [RUNS]: what a user of the explorer waits for, on the catalogue that make_catalogue_big makes.
// Prints the medians in milliseconds; each ends when the window has been painted. Runs on the offscreen platform.
#include "app/Module1.h"
#include "app/Windows.h"
#include "catalogue/EmptyCatalogue.h"
#include "db/DBEngine.h"
#include "explorer/EXMain.h"
#include "explorer/NodeSearch.h"
#include "kit/program/UnhandledErrors.h"
#include "kit/program/Yield.h"

#include <QtWidgets/QApplication>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

using namespace discaro;
using explorer::EXMain;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kLargestDisc = 100;
constexpr int kDiscOfLargeDirectory = 2;

int64_t memoryInMegabytes(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind(field + ":", 0) == 0)
            return std::stoll(line.substr(field.size() + 1)) / 1024;
    return 0;
}

// Lets the window show what has changed.
void paint(EXMain& window) {
    kit::yield();
    window.tvwdb->flush();
    window.repaint();
    window.tvwdb->viewport()->repaint();
    if (window.lvwdb->isVisible())
        window.lvwdb->shown().viewport()->repaint();
    kit::yield();
}

class Report {
public:
    Report(EXMain& window, int runs)
        : m_window(window)
        , m_runs(runs) {}

    void measure(const char* what, const std::function<void()>& prepare, const std::function<void()>& action) {
        std::vector<double> times;
        for (int run = 0; run < m_runs; ++run) {
            prepare();
            paint(m_window);
            const auto start = Clock::now();
            action();
            paint(m_window);
            times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        }
        std::ranges::sort(times);
        std::cout << what << ": " << times[times.size() / 2] << " ms (worst " << times.back() << ")\n";
    }

private:
    EXMain& m_window;
    int m_runs;
};

void choose(EXMain& window, int disc) {
    window.Combo1->setListIndex(window.Combo1->findData(static_cast<qlonglong>(disc)));
}

// A click as the user's: the tree is told that its node was chosen by hand.
void clickNode(EXMain& window, int node) {
    window.tvwdb->selectNode(node);
    emit window.tvwdb->NodeClick(node);
}

void trigger(EXMain& window, const char* item) {
    window.MenuBar1->item(item).trigger();
}

EXMain& openExplorer() {
    app::Windows::Register("EXMain", [] { return new EXMain; });
    const auto start = Clock::now();
    app::Windows::Show("EXMain");
    auto& window = *static_cast<EXMain*>(app::Windows::Find("EXMain"));
    while (window.tvwdb->nodes().count() < 2)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    paint(window);
    std::cout << "open, the delay of 100 ms included: "
              << std::chrono::duration<double, std::milli>(Clock::now() - start).count() << " ms\n";
    return window;
}

void measureTree(EXMain& window, Report& report) {
    report.measure(
        "disc of 100,000 directories", [&] { choose(window, 1); }, [&] { choose(window, kLargestDisc); });
    std::cout << window.tvwdb->nodes().count() << " nodes; memory with them on screen: " << memoryInMegabytes("VmRSS")
              << " MB\n";
    report.measure(
        "expand all 100,000", [&] { trigger(window, "collapse"); }, [&] { trigger(window, "expand"); });
    report.measure(
        "collapse all 100,000", [&] { trigger(window, "expand"); }, [&] { trigger(window, "collapse"); });
    report.measure(
        "show all contents", [&] { choose(window, 1); }, [&] { trigger(window, "Showall"); });
    window.RunCommand("file view");
}

void measureClicks(EXMain& window, Report& report) {
    choose(window, kLargestDisc);
    int node = 500;
    report.measure(
        "click on an ordinary directory of the large disc", [] {}, [&] { clickNode(window, node += 97); });
    choose(window, 1);
    node = 2;
    report.measure(
        "click on an ordinary directory", [] {}, [&] { clickNode(window, node += 3); });
}

void measureListing(EXMain& window, Report& report) {
    choose(window, kDiscOfLargeDirectory);
    const int large = explorer::findTagged(window.tvwdb->nodes(), QStringLiteral("C2D1S21"));
    const int other = large - 1;
    report.measure(
        "directory of 50,000 files", [&] { clickNode(window, other); }, [&] { clickNode(window, large); });
    std::cout << window.lvwdb->rows().count() << " rows; memory with them on screen: " << memoryInMegabytes("VmRSS")
              << " MB\n";
    for (const char* word : {"filesize", "filedate", "filename"})
        report.measure((std::string("re-sorted by ") + word).c_str(), [&] { window.RunCommand("numoficons"); },
                       [&] { window.RunCommand(word); });
    report.measure(
        "re-sorted in descending order", [&] { window.RunCommand("ascending"); },
        [&] { window.RunCommand("descending"); });
    for (const char* word : {"large icons", "small icons", "list view"})
        report.measure((std::string("shown in ") + word).c_str(), [&] { window.RunCommand("report view"); },
                       [&] { window.RunCommand(word); });
    report.measure(
        "listed sorted, in large icons",
        [&] {
            window.RunCommand("large icons");
            clickNode(window, other);
        },
        [&] { clickNode(window, large); });
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: bench_explorer FOLDER [RUNS]\n";
        return 2;
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    kit::Application application(argc, argv);
    app::Module1::ApplicationPath = std::filesystem::absolute(argv[1]);
    std::filesystem::current_path(app::Module1::ApplicationPath);
    db::DBEngine::SetFormat(catalogue::catalogueFormat());
    EXMain& window = openExplorer();
    Report report(window, argc > 2 ? std::stoi(argv[2]) : 5);
    measureTree(window, report);
    measureClicks(window, report);
    measureListing(window, report);
    std::cout << "memory at the end: " << memoryInMegabytes("VmRSS") << " MB, at most " << memoryInMegabytes("VmHWM")
              << " MB\n";
    app::Windows::Clear();
}
