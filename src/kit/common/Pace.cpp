#include "kit/common/Pace.h"

#include <algorithm>

namespace discaro::kit {

Pace::Pace(std::function<void()> show, QObject* parent)
    : QObject(parent)
    , m_show(std::move(show)) {
    m_later.setSingleShot(true);
    connect(&m_later, &QTimer::timeout, this, &Pace::showNow);
}

void Pace::changed() {
    if (m_later.isActive())
        return;
    const int64_t since = m_last.isValid() ? m_last.elapsed() : kMilliseconds;
    if (since >= kMilliseconds)
        showNow();
    else
        m_later.start(static_cast<int>(kMilliseconds - since));
}

void Pace::flush() {
    if (m_later.isActive())
        showNow();
}

void Pace::showNow() {
    m_later.stop();
    m_last.start();
    m_show();
}

} // namespace discaro::kit
