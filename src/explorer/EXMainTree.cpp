#include "app/Module1.h"
#include "app/Windows.h"
#include "base/Number.h"
#include "base/RuntimeError.h"
#include "db/WaitOnce.h"
#include "explorer/DiscList.h"
#include "explorer/EXMain.h"
#include "explorer/NodeSearch.h"
#include "explorer/Queries.h"
#include "explorer/TreeBuild.h"
#include "kit/Strings.h"

#include <QtCore/QSignalBlocker>

// The disc list and the tree of the explorer.
namespace discaro::explorer {

using base::skipErrors;
using kit::qt;
using kit::utf8;
namespace shared = app::Module1;

namespace {

const QString kFirstKey = QStringLiteral("R");
const QString kDisc = QStringLiteral("cdrom");
const QString kClosed = QStringLiteral("closed");
const QString kOpen = QStringLiteral("open");

// Puts the rows of the catalogue into the tree and shows how far they have come.
class NodeSink : public TreeSink {
public:
    NodeSink(kit::TreeModel& nodes, kit::ProgressBar& progress, const QString& image)
        : m_nodes(nodes)
        , m_progress(progress)
        , m_image(image) {}

    void nameFirst(std::string_view text) override { m_nodes.setText(kFirst, qt(text)); }
    void add(const TreeRow& row) override {
        const QString key = qt(row.key);
        const int node = m_nodes.tryAdd(qt(row.parent), key, qt(row.text));
        if (node == 0)
            return;
        m_nodes.setTag(node, row.tag == row.key ? key : qt(row.tag));
        m_nodes.setImage(node, m_image);
        last = node;
    }
    void progress(double percent) override { m_progress.setValue(static_cast<int64_t>(percent)); }

    int last = 0;

private:
    kit::TreeModel& m_nodes;
    kit::ProgressBar& m_progress;
    QString m_image;
};

// The same with a yield after each row, where the window may begin another tree or go.
class YieldingSink : public NodeSink {
public:
    YieldingSink(kit::TreeModel& nodes, kit::ProgressBar& progress, const QString& image,
                 std::function<bool()> yield)
        : NodeSink(nodes, progress, image)
        , m_yield(std::move(yield)) {}

    bool rowDone() override { return m_yield(); }

private:
    std::function<bool()> m_yield;
};

int64_t numberIn(const std::string& text) {
    return static_cast<int64_t>(base::leadingNumber(text));
}

} // namespace

// ---- The disc list

std::string EXMain::discNumber() const {
    const QVariant number = Combo1->itemData(Combo1->listIndex());
    if (!number.isValid())
        throw base::RuntimeError(base::ErrorNumber::InvalidValue, "no disc is chosen");
    return base::numberText(static_cast<int64_t>(number.toLongLong()));
}

void EXMain::FillDiscList() {
    const db::WaitOnce once;
    const QSignalBlocker quiet(Combo1);
    Combo1->clear();
    ListView1->clear();
    m_locked = false;
    try {
        for (const Disc& disc : readDiscs(*catalogue()))
            ListView1->add({.key = {},
                            .text = qt(disc.name),
                            .icon = {},
                            .tag = qt(disc.number),
                            .subItems = {}});
    } catch (const base::RuntimeError& error) {
        m_locked = error.is(base::ErrorNumber::CatalogueLocked);
    }
    kit::ListModel& discs = ListView1->rows();
    discs.setSorted(true);
    for (int place = 0; place < discs.count(); ++place) {
        const kit::ListItem& disc = discs.item(place);
        Combo1->addLine(qt(discLine(utf8(disc.text), utf8(disc.tag))),
                        static_cast<qlonglong>(numberIn(utf8(disc.tag))));
    }
    Combo1->setListIndex(-1);
}

void EXMain::Combo1_Click() {
    const db::WaitOnce once;
    const int build = m_builds + 1;
    Command1_Click();
    if (overtaken(build))
        return;
    skipErrors([this] { tvwdb->selectNode(kFirst); });
    ShowDiscInfo();
    tvwdb->setFocus();
}

// ---- Building

void EXMain::addFirstNode() {
    skipErrors([this] { CurrentNode = tvwdb->nodes().add({}, kFirstKey, "Root"); });
    skipErrors([this] { tvwdb->nodes().setTag(CurrentNode, qt(catalogue()->Name())); });
}

void EXMain::ResetViews() {
    tvwdb->nodes().clear();
    lvwdb->clear();
    lvwdb->setEmptyText({});
    addFirstNode();
}

void EXMain::Command1_Click() {
    const db::WaitOnce once;
    Label2->setText({});
    ResetViews();
    skipErrors([this] { Label3->setText("CD-ROM Number : " + qt(discNumber())); });
    const int build = ++m_builds;
    yield();
    if (overtaken(build))
        return;
    jumpToDisc();
    if (overtaken(build))
        return;
    buildDiscTree();
    if (!overtaken(build))
        setCaption(Combo1->currentText());
}

// Another choice of a disc, made in a yield or by a jump, has built the tree that this one would build.
bool EXMain::overtaken(int build) const {
    return isUnloaded() || build != m_builds;
}

void EXMain::jumpToDisc() {
    if (shared::JumpDisc.empty())
        return;
    const auto wanted = static_cast<qlonglong>(numberIn(shared::JumpDisc));
    for (int line = 0; line < Combo1->count(); ++line)
        if (Combo1->itemData(line).toLongLong() == wanted) {
            Combo1->setListIndex(line);
            break;
        }
    shared::JumpDisc.clear();
}

void EXMain::buildDiscTree() {
    const int build = m_builds;
    std::unique_ptr<db::Recordset> rows;
    skipErrors([&] { rows = catalogue()->OpenRecordset(discDirectoriesQuery(discNumber())); });
    yield();
    if (overtaken(build))
        return;
    kit::TreeModel& nodes = tvwdb->nodes();
    prgload->show();
    NodeSink sink(nodes, *prgload, kClosed);
    if (rows)
        buildDisc(*rows, sink);
    CurrentNode = sink.last != 0 ? sink.last : CurrentNode;
    prgload->hide();
    skipErrors([&] { nodes.setImage(kFirst, kDisc); });
    skipErrors([&] { nodes.setSorted(kFirst, true); });
    skipErrors([&] { nodes.setExpanded(kFirst, true); });
    skipErrors([&] { nodes.setExpanded(kFirst + 1, true); });
}

void EXMain::Showall_Click() {
    const db::WaitOnce once;
    ResetViews();
    Label3->setText("All Contents");
    const int build = ++m_builds;
    yield();
    if (overtaken(build))
        return;
    buildAllContentsTree();
    if (!overtaken(build))
        RunCommand("info view");
}

void EXMain::buildAllContentsTree() {
    const int build = m_builds;
    std::shared_ptr<db::Database> handle;
    std::unique_ptr<db::Recordset> rows;
    skipErrors([&] { handle = catalogue(); });
    skipErrors([&] { rows = handle ? handle->OpenRecordset(kRootDirectoriesQuery) : nullptr; });
    yield();
    if (overtaken(build))
        return;
    kit::TreeModel& nodes = tvwdb->nodes();
    prgload->show();
    skipErrors([&] { nodes.setText(kFirst, "All CDs"); });
    skipErrors([&] { nodes.setImage(kFirst, kDisc); });
    YieldingSink sink(nodes, *prgload, kDisc, [&] {
        yield();
        return !overtaken(build);
    });
    if (rows)
        buildAllContents(*rows, *handle, sink);
    if (overtaken(build))
        return;
    prgload->hide();
    skipErrors([&] { nodes.setSorted(kFirst, true); });
    skipErrors([&] { nodes.setExpanded(kFirst, true); });
}

void EXMain::refreshall_Click() {
    const db::WaitOnce once;
    {
        const QSignalBlocker quiet(Combo1);
        Combo1->clear();
    }
    ListView1->clear();
    yield();
    if (isUnloaded())
        return;
    skipErrors([] { shared::OpenCatalogue(); });
    FillDiscList();
    Combo1->setListIndex(0); // which yields
    if (isUnloaded())
        return;
    skipErrors([this] { tvwdb->selectNode(tvwdb->selectedNode()); });
    skipErrors([this] { Data1.Refresh(); });
    if (m_locked)
        tellLocked();
}

void EXMain::expandAll(bool expanded) {
    kit::TreeModel& nodes = tvwdb->nodes();
    for (int node = 1; node <= nodes.count(); ++node)
        nodes.setExpanded(node, expanded);
}

void EXMain::expand_Click() {
    expandAll(true);
}

void EXMain::collapse_Click() {
    expandAll(false);
}

// ---- Jumps

bool EXMain::isJumpWanted() {
    return !shared::JumpDisc.empty() || !shared::JumpDirectory.empty() || !shared::JumpFile.empty();
}

void EXMain::jumpToDirectory() {
    if (shared::JumpDirectory.empty())
        return;
    const int node = findTagged(tvwdb->nodes(), qt(shared::JumpDirectory));
    skipErrors([&] {
        tvwdb->selectNode(node);
        tvwdb->ensureVisible(node);
        ShowDirectory();
    });
    shared::JumpDirectory.clear();
}

// A directory's row has a node's index for its tag, which can equal a file's number: rows are looked at in the order
// of the listing.
void EXMain::jumpToFile() {
    if (shared::JumpFile.empty())
        return;
    const QString wanted = qt(shared::JumpFile);
    kit::ListModel& rows = lvwdb->rows();
    for (int place = 0; place < rows.count(); ++place)
        if (rows.item(place).tag == wanted) {
            lvwdb->select(place);
            lvwdb->ensureVisible(place);
            break;
        }
    shared::JumpFile.clear();
}

bool EXMain::goToListedDirectory(const kit::ListItem& row) {
    const int node = findListedDirectory(tvwdb->nodes(), row.tag.toInt(), row.key);
    if (node == 0)
        return false;
    tvwdb->selectNode(node);
    tvwdb->ensureVisible(node);
    ShowDirectory();
    LastNode = tvwdb->selectedNode();
    return true;
}

// ---- Events of the tree

void EXMain::tvwdb_NodeClick() {
    const int node = tvwdb->selectedNode();
    if (node == LastNode)
        return;
    LastNode = node;
    ShowDirectory();
}

void EXMain::tvwdb_Expand(int node) {
    if (node == kFirst)
        return;
    tvwdb->nodes().setImage(node, kOpen);
    tvwdb->nodes().setSorted(node, true);
}

void EXMain::tvwdb_Collapse(int node) {
    if (node != kFirst)
        tvwdb->nodes().setImage(node, kClosed);
}

void EXMain::tvwdb_DblClick() {
    const bool first = tvwdb->selectedNode() == kFirst;
    skipErrors([this] { propOfSelected(); });
    if (first && !isUnloaded())
        skipErrors([this] { tvwdb->nodes().setExpanded(tvwdb->selectedNode(), true); });
}

void EXMain::tvwdb_MouseDown(QPoint global) {
    MenuBar1->popUp("Treeviewmenu", global);
}

} // namespace discaro::explorer
