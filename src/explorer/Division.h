#pragma once

#include "kit/controls/Divider.h"
#include "kit/display/ProgressBar.h"
#include "kit/display/StatusBar.h"
#include "kit/form/Form.h"

#include <QtCore/QSettings>

#include <optional>
#include <vector>

namespace discaro::explorer {

// Gives the room that the explorer has beyond its first size to the controls that have a use for it. At the first size
// every control stands where the form table put it; beyond it a handle divides the tree from the right side.
class Division {
public:
    struct Parts {
        std::vector<QWidget*> wide; // menus, toolbar and the like, from one side of the window to the other
        QWidget* area;              // everything below the menus
        QWidget* discs;             // takes the room across
        QWidget* number;            // stands at the right
        QWidget* heading;           // above the tree
        QWidget* path;              // above the right side
        QWidget* tree;
        std::vector<QWidget*> right; // the listing and the panes, in one place
        QWidget* statusBar;
        kit::Divider* handle;
    };

    Division(kit::Form& window, Parts parts);

    // Puts the controls where they belong at the window's present size.
    void lay();
    // The user's own division, as pixels of the screen that the tree is wide; and back to sharing what room there is.
    void divideAt(int treeWidth);
    void share();

    // Moves the progress bar into a panel of the status bar, in the room that the other panels leave. The panel keeps
    // the size that the bar was fitted to, and the bar goes along with the panel. A second call does nothing.
    void FitProgressBar(kit::ProgressBar& bar, kit::StatusBar& statusBar, int panel, int marginTwips);
    // Puts the bar back where it stood before.
    void releaseProgressBar();

    // Keep size and division in the user's settings, and bring them back: the size fitted to the screen. What makes no
    // sense there is passed over.
    void save(QSettings& settings) const;
    void restore(const QSettings& settings);

private:
    struct Seat {
        kit::ProgressBar* bar = nullptr;
        kit::StatusBar* statusBar = nullptr;
        int panel = 0;
        int margin = 0; // in logical pixels
    };

    QSize more() const;
    QRect first(const QWidget* control) const;
    int treeWidth() const;
    void divide(int tree, int across, int down);
    void seatProgressBar();

    kit::Form& m_window;
    Parts m_parts;
    std::optional<double> m_chosen; // the tree's width in logical pixels
    Seat m_seat;
    QWidget* ProgressParent = nullptr; // where the bar stood before it moved into the status bar
};

} // namespace discaro::explorer
