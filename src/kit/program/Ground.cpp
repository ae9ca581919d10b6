#include "kit/program/Ground.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QObject>

#include <utility>
#include <vector>

namespace discaro::kit {

namespace {

int g_handling = 0;

// Its event says that the event loop has come round.
class Ground : public QObject {
public:
    void post() {
        if (actions.empty() || m_posted || g_handling > 0)
            return;
        m_posted = true;
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

    std::vector<std::function<void()>> actions;

protected:
    // A yield may have brought the event: then others are on the stack, and the next ground is
    // waited for.
    bool event(QEvent* event) override {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        m_posted = false;
        if (g_handling <= 1)
            runGroundActions();
        return true;
    }

private:
    bool m_posted = false;
};

Ground& ground() {
    static Ground instance;
    return instance;
}

} // namespace

Handling::Handling() {
    ++g_handling;
}

Handling::~Handling() {
    --g_handling;
    ground().post();
}

void atGround(std::function<void()> action) {
    ground().actions.push_back(std::move(action));
    ground().post();
}

void runGroundActions() {
    for (const auto& action : std::exchange(ground().actions, {}))
        action();
}

} // namespace discaro::kit
