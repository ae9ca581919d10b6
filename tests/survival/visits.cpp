// Visits from the menu to a window and back, many of them, on the display that there is: what a visit takes is given
// back. visits.py runs each case on a display of its own.
#include "app/Switch.h"
#include "app/Windows.h"
#include "explorer/CatalogueRig.h"
#include "kit/form/Timer.h"
#include "program/Wiring.h"
#include "support/windows/FormProbe.h"
#include "support/windows/FreshWindows.h"

#include <QtCore/QDeadlineTimer>

#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <string>

using namespace discaro;
using namespace discaro::test;

namespace {

namespace Windows = app::Windows;

// Kilobytes of memory that are the process's own.
int64_t ownMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == "RssAnon:") {
            int64_t kilobytes = 0;
            status >> kilobytes;
            return kilobytes;
        }
    ADD_FAILURE() << "no figure of memory";
    return 0;
}

// The whole program over a catalogue of two discs, its menu on the screen.
class Visits : public testing::Test {
protected:
    static constexpr int kFirst = 100;
    static constexpr int kLast = 1000;
    static constexpr int64_t kMostGrowth = 1024; // kilobytes

    Visits() {
        for (const int disc : {1, 2}) {
            catalogue.add(DiscRow{.number = disc, .name = "Disc " + std::to_string(disc)});
            catalogue.addRoot(disc);
            const std::string root = "C" + std::to_string(disc) + "D1";
            catalogue.add(DirectoryRow{.number = root + "S1", .name = "DOCS"});
            catalogue.add(FileRow{.directory = root, .name = "readme.txt", .extension = ".txt"});
        }
        program::registerWindows();
        Windows::Show("Switch");
    }

    static bool isUp(const char* window) {
        kit::Form* form = Windows::Find(window);
        return form && form->isPainted() && !Windows::IsLoaded("Loading");
    }

    // As the event loop of the program would, until it is so.
    template <typename Condition>
    static bool becomes(Condition condition) {
        constexpr int kLongest = 60000; // milliseconds
        constexpr int kSlice = 10;
        for (const QDeadlineTimer limit(kLongest); !condition() && !limit.hasExpired();)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, kSlice);
        return condition();
    }

    // From the menu by a click on the entry, and back by the window's frame. The timer is the one that fills the
    // window.
    void visit(int entry, const char* window, const char* timer) {
        auto* menu = qobject_cast<app::Switch*>(Windows::Find("Switch"));
        ASSERT_TRUE(menu);
        QTest::mouseClick(&menu->Label1(entry), Qt::LeftButton);
        ASSERT_TRUE(becomes([&] { return Windows::IsLoaded(window); }));
        if (timer)
            emit kit::timerOf(*Windows::Find(window), timer)->Tick();
        ASSERT_TRUE(becomes([&] { return isUp(window); }));
        Windows::Find(window)->close();
        ASSERT_TRUE(becomes([] { return isUp("Switch"); }));
    }

    void expectNoGrowth(int entry, const char* window, const char* timer = nullptr) {
        int64_t before = 0;
        for (int count = 1; count <= kLast && !HasFatalFailure(); ++count) {
            visit(entry, window, timer);
            if (count == kFirst)
                before = ownMemory();
        }
        const int64_t growth = ownMemory() - before;
        std::cout << window << ": " << growth << " KB more after " << kLast << " visits than after " << kFirst << '\n';
        EXPECT_LE(growth, kMostGrowth);
    }

    CatalogueRig catalogue;
    const FreshWindows windows;
};

} // namespace

TEST_F(Visits, Explorer) {
    expectNoGrowth(2, "EXMain", "Timer2");
}

TEST_F(Visits, ScanWizard) {
    expectNoGrowth(0, "Scanform");
}

TEST_F(Visits, Deletion) {
    expectNoGrowth(1, "DeleteCD", "Timer1");
}
