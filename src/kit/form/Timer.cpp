#include "kit/form/Timer.h"

#include "kit/form/Form.h"
#include "kit/program/UnhandledErrors.h"

#include <QtCore/QScopedValueRollback>

namespace discaro::kit {

namespace {

// Timers this quick do the work of a window that has just opened: the window paints first.
constexpr int kQuick = 50;
constexpr int kLongestWait = 200;

} // namespace

Timer::Timer(QObject* window)
    : QObject(window) {
    m_clock.setTimerType(Qt::PreciseTimer);
    connect(&m_clock, &QTimer::timeout, this, &Timer::expire);
    if (const auto* form = qobject_cast<const Form*>(window))
        connect(form, &Form::Unloaded, this, &Timer::stopForGood);
}

void Timer::setInterval(int milliseconds) {
    m_interval = std::max(milliseconds, 0);
    m_clock.stop();
    apply();
}

void Timer::setEnabled(bool enabled) {
    if (enabled == m_enabled)
        return;
    m_enabled = enabled;
    apply();
}

void Timer::stopForGood() {
    m_stopped = true;
    apply();
}

void Timer::apply() {
    const bool runs = m_enabled && !m_stopped && m_interval > 0;
    if (!runs)
        m_clock.stop();
    else if (!m_clock.isActive())
        m_clock.start(m_interval);
    m_since.start();
}

bool Timer::awaitsPainting() const {
    const auto* form = qobject_cast<const Form*>(parent());
    return m_interval < kQuick && form && form->isVisible() && !form->isPainted() && m_since.elapsed() < kLongestWait;
}

void Timer::expire() {
    if (m_ticking || isEndingByError() || awaitsPainting())
        return;
    const QScopedValueRollback ticking(m_ticking, true);
    emit Tick();
}

Timer* timerOf(const Form& window, const char* name) {
    return window.findChild<Timer*>(QString::fromLatin1(name));
}

} // namespace discaro::kit
