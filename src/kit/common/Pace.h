#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QTimer>

#include <functional>

namespace discaro::kit {

// Lets a display follow a value that changes thousands of times a second: `changed` shows it at
// once when the last showing is some thirtieth of a second ago, else soon.
class Pace : public QObject {
    Q_OBJECT
public:
    static constexpr int kMilliseconds = 33;

    explicit Pace(std::function<void()> show, QObject* parent = nullptr);

    void changed();
    // Shows now whatever is waiting.
    void flush();
    // Forgets what is waiting.
    void cancel() { m_later.stop(); }

private:
    void showNow();

    std::function<void()> m_show;
    QElapsedTimer m_last;
    QTimer m_later;
};

} // namespace discaro::kit
