#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QTimer>

namespace discaro::kit {

class Form;

// A window's timer: while it is enabled it ticks every `interval` milliseconds. An interval of 0
// never ticks. Enabling an enabled timer changes nothing; a new interval starts counting anew. Its
// handler is never entered a second time while it runs, whatever it yields to. A timer that ticks
// within 50 ms waits until its window, when that is shown, has been painted. Unloading the window
// stops it for good.
class Timer : public QObject {
    Q_OBJECT
public:
    explicit Timer(QObject* window = nullptr);

    int interval() const { return m_interval; }
    void setInterval(int milliseconds);
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled);

    void stopForGood();

signals:
    void Tick();

private:
    void apply();
    void expire();
    bool awaitsPainting() const;

    QTimer m_clock;
    QElapsedTimer m_since;
    int m_interval = 0;
    bool m_enabled = false;
    bool m_ticking = false;
    bool m_stopped = false;
};

// The window's timer of that name, for windows that start each other's timers; null when there is none.
Timer* timerOf(const Form& window, const char* name);

} // namespace discaro::kit
