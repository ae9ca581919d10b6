#pragma once

#include "app/HandOver.h"
#include "explorer/DiscTree.h"
#include "explorer/Listing.h"
#include "kit/controls/Toolbar.h"
#include "kit/form/MenuBar.h"

#include <functional>
#include <string>

namespace discaro::explorer {

struct OrderKey;
struct ViewChoice;

// Where the user's own settings of the explorer are kept, see kit::userSettings.
inline constexpr const char* kSettingsPlace = "Software\\Quorlen\\Discaro";

// What menus, toolbar and double clicks of the explorer do, beyond what tree and listing do by themselves: looks and
// order of the listing, the ways to other windows, and what these are told.
class Commands {
public:
    struct Controls {
        kit::Form& window;
        kit::MenuBar& menus;   // MenuBar1
        kit::Toolbar& toolbar; // Toolbar1
        kit::ComboBox& discs;  // Combo1
        kit::TreeView& tree;   // tvwdb
        kit::ListView& list;   // lvwdb
    };

    // The controls, the sources and the others outlive it.
    Commands(const Controls& controls, const Sources& sources, DiscTree& tree, Listing& listing)
        : m_controls(controls)
        , m_sources(sources)
        , m_tree(tree)
        , m_listing(listing) {}

    // Carries out a command word, in any case; a word that is none does nothing. Failing statements are skipped, but
    // a window that follows in the explorer's place and can't be loaded is reported as an unhandled error.
    void RunCommand(const std::string& word);

    // Greys the entries that lead to windows which are not part of the program.
    void disableMissingWindows();
    void showAllContents();
    // The header of a column of the listing, from 1.
    void orderByHeader(int header);
    void simulateDirectory();
    void customizeToolbar();
    void restoreToolbar();
    // The same commands for the node of the tree, wherever the user is.
    void propInTree();
    void tagInTree();
    // Double clicks on a row of the listing and on a node of the tree. Errors are skipped.
    void openRow();
    void openNode();

    std::string SkipMark; // "skip" while the window unloads to hand over

private:
    // Views and order
    void showFiles();
    void showInfo();
    void markMode(bool file);
    void showView(const ViewChoice& choice);
    void orderBy(const OrderKey& key);
    void setOrder(Qt::SortOrder order);
    void ascending();
    void descending();

    // Other windows
    void exitToMenu();
    void scan();
    void search();
    void about();
    void deleteDisc();
    void workshop();
    void programs();
    void leaveTo(const app::Move& move, const std::function<void()>& setVariables = {});
    void handOverTo(const char* window, const std::function<void()>& setVariables = {});

    // Properties
    std::string activeTag() const;
    void prop();
    void propOfRow();
    void chooseNodesDirectory();
    void propOfNode();
    void propOfDisc();
    void propOfSelected();

    // Program tags
    void tag();
    void prepareTag(const std::string& active);
    void tagRow();
    void tagNode();

    Controls m_controls;
    Sources m_sources;
    DiscTree& m_tree;
    Listing& m_listing;
};

} // namespace discaro::explorer
