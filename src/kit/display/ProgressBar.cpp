#include "kit/display/ProgressBar.h"

#include "base/RuntimeError.h"

#include <algorithm>
#include <string>

namespace discaro::kit {

namespace {

constexpr int kSteps = 10000;

[[noreturn]] void refuse(int64_t value) {
    throw base::RuntimeError(base::ErrorNumber::InvalidValue, "progress bar: " + std::to_string(value));
}

} // namespace

ProgressBar::ProgressBar(QWidget* parent)
    : QProgressBar(parent)
    , m_pace([this] { draw(); }) {
    QProgressBar::setRange(0, kSteps);
    QProgressBar::setValue(0);
    setTextVisible(false);
}

void ProgressBar::setMin(int64_t min) {
    changeRange(min, m_max);
}

void ProgressBar::setMax(int64_t max) {
    changeRange(m_min, max);
}

void ProgressBar::changeRange(int64_t min, int64_t max) {
    if (max < min)
        refuse(max < m_min ? max : min);
    m_min = min;
    m_max = max;
    m_value = std::clamp(m_value, min, max);
    m_pace.changed();
}

void ProgressBar::setValue(int64_t value) {
    if (value < m_min || value > m_max)
        refuse(value);
    m_value = value;
    m_pace.changed();
}

int64_t ProgressBar::percent() const {
    if (m_max == 0)
        refuse(0);
    return static_cast<int64_t>(static_cast<double>(m_value) / static_cast<double>(m_max) * 100.0);
}

void ProgressBar::paintNow() {
    m_pace.cancel();
    draw();
    repaint();
}

// The base class paints at once; what else waits for painting is to go along with it.
void ProgressBar::draw() {
    const bool paints = updatesEnabled();
    setUpdatesEnabled(false);
    const auto whole = static_cast<double>(m_max - m_min);
    const double done = whole > 0 ? static_cast<double>(m_value - m_min) / whole : 0.0;
    QProgressBar::setValue(static_cast<int>(done * kSteps));
    setUpdatesEnabled(paints);
}

} // namespace discaro::kit
