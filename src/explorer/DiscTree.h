#pragma once

#include "explorer/RightSide.h"
#include "kit/controls/Controls.h"
#include "kit/display/ElidedLabel.h"
#include "kit/display/ProgressBar.h"
#include "kit/form/Form.h"
#include "kit/lists/ListView.h"
#include "kit/lists/TreeView.h"

#include <string>

namespace discaro::explorer {

// The list of discs and the tree: the directories of one disc, or the root directories of all. It yields while it
// reads; another choice made meanwhile ends what it was at. Errors of the catalogue are skipped.
class DiscTree {
public:
    struct Controls {
        kit::Form& window;          // bears the disc's name
        kit::ComboBox& discs;       // Combo1
        kit::ListView& sorter;      // ListView1, brings the discs into order
        kit::Label& number;         // Label3
        kit::ElidedLabel& path;     // Label2, emptied with a new tree
        kit::TreeView& tree;        // tvwdb
        kit::ProgressBar& progress; // prgload
    };

    // The controls and the right side outlive it.
    DiscTree(const Controls& controls, RightSide& rightSide)
        : m_controls(controls)
        , m_rightSide(rightSide) {}

    // Fills the list of discs and chooses none.
    void FillDiscList();
    // Whether the list is still to be filled, because another program had locked the catalogue.
    bool isLocked() const { return m_locked; }
    void emptyDiscList();
    // The number of the disc that is chosen in the list; InvalidValue when none is.
    std::string discNumber() const;

    // The tree of the disc that is chosen in the list; and besides the disc's facts on the right side.
    void buildChosenDisc();
    void chooseDisc();
    // The tree of all discs. Whether it was built to its end.
    bool buildAllContents();
    // A first node alone, and nothing listed.
    void ResetViews();
    void addFirstNode();
    void selectCurrentNode();
    void expandAll(bool expanded);

    // Lists the directory or the disc that another window wishes to be shown; without a wish nothing.
    static bool isJumpWanted();
    static void forgetJumps();
    void jumpToDirectory();
    // Goes to the node of a directory's row in the listing. Whether there is one.
    bool goToListedDirectory(const kit::ListItem& row);

    // Events of the tree.
    void nodeClicked();
    void nodeExpanded(int node);
    void nodeCollapsed(int node);

    int LastNode = 0; // the node listed last, so that a click on it does nothing

private:
    bool overtaken(int build) const;
    void jumpToDisc();
    void buildDiscTree();
    void buildRootsTree();
    kit::TreeModel& nodes() const { return m_controls.tree.nodes(); }

    Controls m_controls;
    RightSide& m_rightSide;
    bool m_locked = false;
    int CurrentNode = 0; // the node that a routine works on
    int m_builds = 0;    // how often a tree was begun
};

} // namespace discaro::explorer
