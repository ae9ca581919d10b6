#include "kit/Pace.h"

#include <algorithm>

namespace discaro::kit {

Pace::Pace(std::function<void()> show, QObject* parent)
    : QObject(parent)
    , m_show(std::move(show)) {
    m_later.setSingleShot(true);
    connect(&m_later, &QTimer::timeout, this, &Pace::show);
}

void Pace::changed() {
    if (m_later.isActive())
        return;
    const int64_t since = m_last.isValid() ? m_last.elapsed() : kMilliseconds;
    if (since >= kMilliseconds)
        show();
    else
        m_later.start(static_cast<int>(kMilliseconds - since));
}

void Pace::flush() {
    if (m_later.isActive())
        show();
}

void Pace::show() {
    m_later.stop();
    m_last.start();
    m_show();
}

} // namespace discaro::kit
