#include "explorer/Division.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace discaro::explorer {

namespace {

const QString kSize = QStringLiteral("Explorer/Size");
const QString kMaximised = QStringLiteral("Explorer/Maximised");
const QString kTree = QStringLiteral("Explorer/Tree");

// In logical pixels.
constexpr int kHandle = 5;
constexpr int kLeastTree = 100;
constexpr int kLeastRight = 240;

// The margin of the progress bar is measured in twips.
constexpr double kTwipsOfPixel = 15;

} // namespace

Division::Division(kit::Form& window, Parts parts)
    : m_window(window)
    , m_parts(std::move(parts)) {}

// Some desktops make a window smaller than it may be.
QSize Division::more() const {
    return (m_window.size() - m_window.firstSize()).expandedTo(QSize(0, 0));
}

QRect Division::first(const QWidget* control) const {
    return m_window.tablePlace(*control);
}

void Division::lay() {
    const int across = more().width();
    const int down = more().height();
    // The menu bar chooses its own height.
    for (QWidget* each : m_parts.wide)
        each->resize(first(each).width() + across, each->height());
    m_parts.area->resize(first(m_parts.area).size() + more());
    m_parts.discs->setGeometry(first(m_parts.discs).adjusted(0, 0, across, 0));
    m_parts.number->setGeometry(first(m_parts.number).translated(across, 0));
    m_parts.statusBar->setGeometry(first(m_parts.statusBar).adjusted(0, down, across, down));
    divide(treeWidth(), across, down);
    if (ProgressParent)
        seatProgressBar();
}

// The right side moves along with the tree's edge and makes room for the handle.
void Division::divide(int tree, int across, int down) {
    const int handle = more().isNull() ? 0 : m_window.scaled(kHandle);
    const int wider = tree - first(m_parts.tree).width();
    const int moved = wider + handle;
    m_parts.heading->setGeometry(first(m_parts.heading).adjusted(0, 0, wider, 0));
    m_parts.tree->setGeometry(first(m_parts.tree).adjusted(0, 0, wider, down));
    m_parts.path->setGeometry(first(m_parts.path).adjusted(moved, 0, across, 0));
    for (QWidget* each : m_parts.right)
        each->setGeometry(first(each).adjusted(moved, 0, across, down));
    const int top = m_parts.heading->y();
    m_parts.handle->setGeometry(tree, top, handle, m_parts.tree->geometry().bottom() + 1 - top);
    m_parts.handle->setVisible(handle > 0);
}

int Division::treeWidth() const {
    const int firstWidth = first(m_parts.tree).width();
    if (more().isNull())
        return firstWidth;
    const int width = m_window.firstSize().width() + more().width();
    const int shared = firstWidth * width / m_window.firstSize().width();
    const int wanted = m_chosen ? m_window.scaled(*m_chosen) : shared;
    return std::clamp(wanted, m_window.scaled(kLeastTree), width - m_window.scaled(kLeastRight));
}

void Division::divideAt(int treeWidth) {
    m_chosen = treeWidth / m_window.scale();
    m_chosen = this->treeWidth() / m_window.scale();
    lay();
}

void Division::share() {
    m_chosen.reset();
    lay();
}

void Division::FitProgressBar(kit::ProgressBar& bar, kit::StatusBar& statusBar, int panel, int marginTwips) {
    if (ProgressParent)
        return;
    ProgressParent = bar.parentWidget();
    bar.setParent(&statusBar);
    bar.setStyleSheet("QProgressBar { border: none; background: transparent; }"
                      "QProgressBar::chunk { background: palette(highlight); }");
    m_seat = {&bar, &statusBar, panel, static_cast<int>(std::lround(marginTwips / kTwipsOfPixel))};
    seatProgressBar();
}

void Division::seatProgressBar() {
    m_seat.statusBar->setAutoSize(m_seat.panel, true);
    const int margin = m_seat.margin;
    const QRect room = m_seat.statusBar->panelPlace(m_seat.panel);
    m_window.place(*m_seat.bar, QRect(room.left() + margin, margin, room.width() - 2 * margin, room.height() - margin));
    m_seat.statusBar->setAutoSize(m_seat.panel, false);
}

void Division::releaseProgressBar() {
    if (ProgressParent)
        m_seat.bar->setParent(ProgressParent);
}

void Division::save(QSettings& settings) const {
    const bool maximised = m_window.isMaximized();
    const QSize normal = maximised ? m_window.normalGeometry().size() : m_window.size();
    const auto keep = [&settings](const QString& key, bool wanted, const QVariant& value) {
        if (wanted)
            settings.setValue(key, value);
        else
            settings.remove(key);
    };
    keep(kSize, normal.isValid() && normal != m_window.firstSize(), m_window.logical(normal));
    keep(kMaximised, maximised, true);
    keep(kTree, m_chosen.has_value(), m_chosen.value_or(0));
}

void Division::restore(const QSettings& settings) {
    const QSize size = settings.value(kSize).toSize();
    if (size.isValid())
        m_window.resizeTo(size);
    const double tree = settings.value(kTree).toDouble();
    if (std::isfinite(tree) && tree >= kLeastTree)
        m_chosen = std::min(tree, 1.0 * QWIDGETSIZE_MAX);
    if (settings.value(kMaximised).toBool())
        m_window.setWindowState(m_window.windowState() | Qt::WindowMaximized);
}

} // namespace discaro::explorer
