#include "kit/display/StatusBar.h"

#include "base/RuntimeError.h"
#include "kit/common/WindowScale.h"

#include <algorithm>
#include <cmath>

namespace discaro::kit {

namespace {

constexpr int kIndent = 5;

} // namespace

StatusBar::StatusBar(QWidget* parent)
    : QWidget(parent) {}

void StatusBar::setPanels(const std::vector<Panel>& panels) {
    for (const Place& place : m_panels)
        delete place.label;
    m_panels.clear();
    for (const Panel& panel : panels) {
        auto* label = new QLabel(this);
        label->setObjectName(QStringLiteral("Panels(%1)").arg(m_panels.size() + 1));
        label->setTextFormat(Qt::PlainText);
        label->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        label->setIndent(scaledLength(kIndent));
        label->setAccessibleName(panel.spoken);
        m_panels.push_back({panel, label});
    }
    lay();
}

const StatusBar::Place& StatusBar::at(int panel) const {
    if (panel < 1 || panel > panelCount())
        throw base::RuntimeError(base::ErrorNumber::InvalidValue, "no panel " + std::to_string(panel));
    return m_panels[static_cast<size_t>(panel) - 1];
}

QString StatusBar::panelText(int panel) const {
    return at(panel).label->text();
}

void StatusBar::setPanelText(int panel, const QString& text) {
    const Place& place = at(panel);
    place.label->setText(text);
    const QString& spoken = place.panel.spoken;
    place.label->setAccessibleName(spoken.isEmpty() ? text : spoken + QStringLiteral(": ") + text);
}

bool StatusBar::isAutoSize(int panel) const {
    return at(panel).panel.autoSize;
}

void StatusBar::setAutoSize(int panel, bool autoSize) {
    const int width = panelPlace(panel).width();
    at(panel).panel.width = width;
    at(panel).panel.autoSize = autoSize;
    lay();
}

int StatusBar::logicalWidth() const {
    return static_cast<int>(std::lround(width() / windowScale()));
}

int StatusBar::logicalHeight() const {
    return static_cast<int>(std::lround(height() / windowScale()));
}

int StatusBar::widthOf(const Panel& panel) const {
    if (!panel.autoSize)
        return panel.width;
    int taken = 0;
    int sharing = 0;
    for (const Place& each : m_panels) {
        taken += each.panel.autoSize ? 0 : each.panel.width;
        sharing += each.panel.autoSize ? 1 : 0;
    }
    return std::max(0, logicalWidth() - taken) / sharing;
}

QRect StatusBar::panelPlace(int panel) const {
    const int width = widthOf(at(panel).panel);
    int left = 0;
    for (int before = 1; before < panel; ++before)
        left += widthOf(at(before).panel);
    return {left, 0, width, logicalHeight()};
}

void StatusBar::lay() {
    for (int panel = 1; panel <= panelCount(); ++panel) {
        const QRect place = panelPlace(panel);
        const int left = scaledLength(place.left());
        const int end = scaledLength(place.left() + place.width());
        at(panel).label->setGeometry(left, 0, end - left, height());
    }
}

void StatusBar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    lay();
}

} // namespace discaro::kit
