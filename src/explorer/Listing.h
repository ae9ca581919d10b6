#pragma once

#include "db/DataSource.h"
#include "explorer/RightSide.h"
#include "kit/display/ElidedLabel.h"
#include "kit/display/ProgressBar.h"
#include "kit/display/StatusBar.h"
#include "kit/lists/ListView.h"
#include "kit/lists/TreeView.h"

#include <functional>
#include <string>

namespace discaro::explorer {

struct ListingRow;

// The two data sources of the explorer. Their positions are relied on: `discs` stands on the disc whose facts were
// shown last, `directories` on the directory that was listed last.
struct Sources {
    db::DataSource& discs;       // Data1
    db::DataSource& directories; // Data2
};

// A directory's files and subdirectories, or its facts, or those of the disc: what the right side shows of the node
// that is selected in the tree, and what the status bar says of it.
class Listing : public RightSide {
public:
    struct Controls {
        const kit::TreeView& tree;     // tvwdb
        kit::ElidedLabel& path;        // Label2
        kit::ListView& list;           // lvwdb
        kit::ListView& discFacts;      // DriveInfo
        kit::ListView& directoryFacts; // Dirinfo
        kit::StatusBar& statusBar;     // StatusBar1
        kit::ProgressBar& progress;    // prgload
    };

    // The controls and the sources outlive it. discNumber tells the disc whose facts are wanted; it may throw.
    Listing(const Controls& controls, const Sources& sources, std::function<std::string()> discNumber)
        : m_controls(controls)
        , m_sources(sources)
        , m_discNumber(std::move(discNumber)) {}

    void clear() override;
    void ShowDiscInfo() override;
    void ShowDirectory() override;
    // What a directory shows: its rows, or its facts. The pane changes at once.
    void showRows();
    void showFacts();

    // A click on a row: how many are selected, and how large they are. Throws where there is no row.
    void rowClicked();
    // Selects the file that another window wishes to be shown; without a wish nothing.
    void jumpToFile();
    // What a row is called: a directory by its own name, which the listing shows in capitals.
    QString nameOf(const kit::ListItem& row) const;

    std::string ViewMode = "file"; // "file" or "info": what a directory shows

private:
    void ShowDirectoryInfo();
    void showPane(kit::ListView& pane);
    int64_t listDirectories(int node);
    int64_t listFiles(int node);
    void addRow(const ListingRow& row);
    void tellEmpty(int node);
    void showCount();
    void showTotal();
    void showSelection();

    Controls m_controls;
    Sources m_sources;
    std::function<std::string()> m_discNumber;
};

} // namespace discaro::explorer
