#pragma once

#include "explorer/Commands.h"
#include "explorer/DiscTree.h"
#include "explorer/Listing.h"
#include "kit/form/Form.h"
#include "kit/form/Timer.h"

namespace discaro::explorer {

// Brings the catalogue into the explorer: a little after the window has come up, so that it is painted first; again
// after a jump or a lock; and when the user wants all values afresh. Errors of the catalogue are skipped.
class CatalogueLoad {
public:
    struct Controls {
        kit::Form& window;
        kit::Timer& timer;    // Timer2
        kit::ComboBox& discs; // Combo1
        kit::TreeView& tree;  // tvwdb
        kit::ListView& list;  // lvwdb
    };

    // The controls, the sources and the others outlive it.
    CatalogueLoad(const Controls& controls, const Sources& sources, DiscTree& tree, Listing& listing,
                  Commands& commands)
        : m_controls(controls)
        , m_sources(sources)
        , m_tree(tree)
        , m_listing(listing)
        , m_commands(commands) {}

    // The delayed load. An empty catalogue can't be explored: the window goes, and the menu comes up. Where it only
    // makes up for a lock, what the user has chosen meanwhile stays.
    void load();
    // Fills the list of discs anew and shows its first.
    void refresh();

private:
    void refreshSources();
    void showCatalogue(bool afresh);
    bool catalogueIsEmpty();
    void leaveEmptyCatalogue();
    void tellLocked();

    Controls m_controls;
    Sources m_sources;
    DiscTree& m_tree;
    Listing& m_listing;
    Commands& m_commands;
};

} // namespace discaro::explorer
