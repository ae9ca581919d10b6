#pragma once

#include "explorer/CatalogueRig.h"
#include "explorer/EXMain.h"
#include "support/windows/Endings.h"
#include "support/windows/FormProbe.h"
#include "support/windows/FreshWindows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace discaro::test {

// Stands for another window: notes that it was loaded. A modal one is gone again at once, so that nothing waits.
class StubWindow : public kit::Form {
    Q_OBJECT
public:
    enum class Stay { Up, Leave };
    StubWindow(const char* name, Stay stay, std::vector<std::string>& log);

    std::function<void()> onLoad;

protected:
    void Form_Load() override;

private:
    Stay m_stay;
    std::vector<std::string>& m_log;
};

// The explorer in a program in which all its other windows are stubs, over a catalogue of its own.
class ExplorerRig {
public:
    ExplorerRig();

    // A catalogue of two discs:
    //   1 "Games": \, \DOCS, \DOCS\OLD, \Play (in this order); readme.txt and setup.exe in \, one file in \DOCS
    //   2 "Atlas": \, \MAPS with two files
    void fill() const;

    // Opens the window and has its delayed load done.
    explorer::EXMain& open();
    // The delayed load once more, as after a jump.
    void load(explorer::EXMain& window) const;
    // Only if it is up.
    bool isUp(const char* window) const;

    CatalogueRig catalogue;
    std::vector<std::string> shown;  // the other windows, in the order in which they were loaded
    std::function<void()> whenModal; // runs while a modal window is up
    const FreshWindows windows;
    CountedBeeps beeps;

private:
    void addStub(const char* name, StubWindow::Stay stay);
};

// Widgets of the explorer, as a user drives them
void clickNode(explorer::EXMain& window, const char* key);
void doubleClickNode(explorer::EXMain& window, const char* key);
void doubleClick(QWidget& surface, QPoint at);
void clickRow(kit::ListView& list, int place, Qt::KeyboardModifiers keys = {});
void doubleClickRow(kit::ListView& list, int place);
void choose(explorer::EXMain& window, const char* menuItem);
void pressButton(explorer::EXMain& window, const char* key);

// What a list shows: the texts of its rows from the first one to the last, and one column of them.
std::vector<std::string> textsOf(kit::ListView& list);
std::vector<std::string> columnOf(kit::ListView& list, int column);
// The texts of a node's children as shown.
std::vector<std::string> childrenOf(explorer::EXMain& window, const char* key);
int nodeOf(const explorer::EXMain& window, const char* key);
// The right side's list that is not hidden, by its name.
std::string shownPane(const explorer::EXMain& window);
// Whether a click on a node does nothing because it is the one that was listed last. The facts are gone afterwards.
bool countsAsListed(explorer::EXMain& window, const char* key);

class ExplorerTest : public testing::Test {
protected:
    ExplorerTest() { rig.fill(); }
    // The explorer on a directory of the disc "Games"; no window has been loaded since.
    explorer::EXMain& openOn(const char* key);

    ExplorerRig rig;
};

} // namespace discaro::test
