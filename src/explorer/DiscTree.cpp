#include "explorer/DiscTree.h"

#include "app/Module1.h"
#include "base/Number.h"
#include "base/RuntimeError.h"
#include "db/sqlite/WaitOnce.h"
#include "explorer/DiscList.h"
#include "explorer/NodeSearch.h"
#include "explorer/Queries.h"
#include "explorer/Texts.h"
#include "explorer/TreeBuild.h"
#include "explorer/Yielding.h"
#include "kit/common/Strings.h"

#include <QtCore/QSignalBlocker>

#include <utility>

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
    NodeSink(kit::TreeModel& nodes, kit::ProgressBar& progress, QString image)
        : m_nodes(nodes)
        , m_progress(progress)
        , m_image(std::move(image)) {}

    void nameFirst(std::string_view text) override { m_nodes.setText(kFirst, qt(text)); }
    void add(const TreeRow& row) override {
        const QString key = qt(row.key);
        const int node = m_nodes.tryAdd(qt(row.parent), key, qt(row.text));
        if (node == 0)
            return;
        m_nodes.setTag(node, key);
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
    YieldingSink(kit::TreeModel& nodes, kit::ProgressBar& progress, const QString& image, std::function<bool()> yield)
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

std::string DiscTree::discNumber() const {
    const QVariant number = m_controls.discs.itemData(m_controls.discs.listIndex());
    if (!number.isValid())
        throw base::RuntimeError(base::ErrorNumber::InvalidValue, "no disc is chosen");
    return base::numberText(static_cast<int64_t>(number.toLongLong()));
}

void DiscTree::emptyDiscList() {
    const QSignalBlocker quiet(&m_controls.discs);
    m_controls.discs.clear();
    m_controls.sorter.clear();
}

void DiscTree::FillDiscList() {
    const db::WaitOnce once;
    const QSignalBlocker quiet(&m_controls.discs);
    emptyDiscList();
    m_locked = false;
    try {
        for (const Disc& disc : readDiscs(*sharedCatalogue()))
            m_controls.sorter.add(
                {.key = {}, .text = qt(disc.name), .icon = {}, .tag = qt(disc.number), .subItems = {}});
    } catch (const base::RuntimeError& error) {
        m_locked = error.is(base::ErrorNumber::CatalogueLocked);
    }
    kit::ListModel& discs = m_controls.sorter.rows();
    discs.setSorted(true);
    for (int place = 0; place < discs.count(); ++place) {
        const kit::ListItem& disc = discs.item(place);
        m_controls.discs.addLine(qt(discLine(utf8(disc.text), utf8(disc.tag))),
                                 static_cast<qlonglong>(numberIn(utf8(disc.tag))));
    }
    m_controls.discs.setListIndex(-1);
}

void DiscTree::chooseDisc() {
    const db::WaitOnce once;
    const int build = m_builds + 1;
    buildChosenDisc();
    if (overtaken(build))
        return;
    skipErrors([this] { m_controls.tree.selectNode(kFirst); });
    m_rightSide.ShowDiscInfo();
    m_controls.tree.setFocus();
}

// ---- Building

void DiscTree::addFirstNode() {
    // Over a tree that stands there is none to add, and no other node is to bear the catalogue's name.
    if (nodes().find(kFirstKey) != 0)
        return;
    skipErrors([this] { CurrentNode = nodes().add({}, kFirstKey, "Root"); });
    skipErrors([this] { nodes().setTag(CurrentNode, qt(sharedCatalogue()->Name())); });
}

void DiscTree::selectCurrentNode() {
    skipErrors([this] { m_controls.tree.selectNode(CurrentNode); });
}

void DiscTree::ResetViews() {
    nodes().clear();
    m_rightSide.clear();
    addFirstNode();
}

void DiscTree::buildChosenDisc() {
    const db::WaitOnce once;
    m_controls.path.setText({});
    ResetViews();
    skipErrors([this] { m_controls.number.setText(qt(discNumberText(discNumber()))); });
    const int build = ++m_builds;
    yield();
    if (overtaken(build))
        return;
    jumpToDisc();
    if (overtaken(build))
        return;
    buildDiscTree();
    if (!overtaken(build))
        m_controls.window.setCaption(m_controls.discs.currentText());
}

// Another choice of a disc, made in a yield or by a jump, has built the tree that this one would build.
bool DiscTree::overtaken(int build) const {
    return m_controls.window.isUnloaded() || build != m_builds;
}

void DiscTree::jumpToDisc() {
    if (shared::JumpDisc.empty())
        return;
    const auto wanted = static_cast<qlonglong>(numberIn(shared::JumpDisc));
    for (int line = 0; line < m_controls.discs.count(); ++line)
        if (m_controls.discs.itemData(line).toLongLong() == wanted) {
            m_controls.discs.setListIndex(line);
            break;
        }
    shared::JumpDisc.clear();
}

void DiscTree::buildDiscTree() {
    const int build = m_builds;
    std::unique_ptr<db::Recordset> rows;
    skipErrors([&] { rows = sharedCatalogue()->OpenRecordset(discDirectoriesQuery(discNumber())); });
    yield();
    if (overtaken(build))
        return;
    kit::TreeModel& nodes = this->nodes();
    m_controls.progress.show();
    NodeSink sink(nodes, m_controls.progress, kClosed);
    if (rows)
        buildDisc(*rows, sink);
    CurrentNode = sink.last != 0 ? sink.last : CurrentNode;
    m_controls.progress.hide();
    skipErrors([&] { nodes.setImage(kFirst, kDisc); });
    skipErrors([&] { nodes.setSorted(kFirst, true); });
    skipErrors([&] { nodes.setExpanded(kFirst, true); });
    skipErrors([&] { nodes.setExpanded(kFirst + 1, true); });
}

bool DiscTree::buildAllContents() {
    const db::WaitOnce once;
    ResetViews();
    m_controls.number.setText("All Contents");
    const int build = ++m_builds;
    yield();
    if (overtaken(build))
        return false;
    buildRootsTree();
    return !overtaken(build);
}

void DiscTree::buildRootsTree() {
    const int build = m_builds;
    std::shared_ptr<db::Database> handle;
    std::unique_ptr<db::Recordset> rows;
    skipErrors([&] { handle = sharedCatalogue(); });
    skipErrors([&] { rows = handle ? handle->OpenRecordset(kRootDirectoriesQuery) : nullptr; });
    yield();
    if (overtaken(build))
        return;
    kit::TreeModel& nodes = this->nodes();
    m_controls.progress.show();
    skipErrors([&] { nodes.setText(kFirst, "All CDs"); });
    skipErrors([&] { nodes.setImage(kFirst, kDisc); });
    YieldingSink sink(nodes, m_controls.progress, kDisc, [&] {
        yield();
        return !overtaken(build);
    });
    if (rows)
        explorer::buildAllContents(*rows, *handle, sink);
    if (overtaken(build))
        return;
    m_controls.progress.hide();
    skipErrors([&] { nodes.setSorted(kFirst, true); });
    skipErrors([&] { nodes.setExpanded(kFirst, true); });
}

void DiscTree::expandAll(bool expanded) {
    kit::TreeModel& nodes = this->nodes();
    for (int node = 1; node <= nodes.count(); ++node)
        nodes.setExpanded(node, expanded);
}

// ---- Jumps

bool DiscTree::isJumpWanted() {
    return !shared::JumpDisc.empty() || !shared::JumpDirectory.empty() || !shared::JumpFile.empty();
}

void DiscTree::forgetJumps() {
    for (std::string* wish : {&shared::JumpDisc, &shared::JumpDirectory, &shared::JumpFile})
        wish->clear();
}

void DiscTree::jumpToDirectory() {
    if (shared::JumpDirectory.empty())
        return;
    const int node = findTagged(nodes(), qt(shared::JumpDirectory));
    skipErrors([&] {
        m_controls.tree.selectNode(node);
        m_controls.tree.ensureVisible(node);
        m_rightSide.ShowDirectory();
    });
    shared::JumpDirectory.clear();
}

bool DiscTree::goToListedDirectory(const kit::ListItem& row) {
    const int node = findListedDirectory(nodes(), row.tag.toInt(), row.key);
    if (node == 0)
        return false;
    m_controls.tree.selectNode(node);
    m_controls.tree.ensureVisible(node);
    m_rightSide.ShowDirectory();
    LastNode = m_controls.tree.selectedNode();
    return true;
}

// ---- Events of the tree

void DiscTree::nodeClicked() {
    const int node = m_controls.tree.selectedNode();
    if (node == LastNode)
        return;
    LastNode = node;
    m_rightSide.ShowDirectory();
}

void DiscTree::nodeExpanded(int node) {
    if (node == kFirst)
        return;
    nodes().setImage(node, kOpen);
    nodes().setSorted(node, true);
}

void DiscTree::nodeCollapsed(int node) {
    if (node != kFirst)
        nodes().setImage(node, kClosed);
}

} // namespace discaro::explorer
