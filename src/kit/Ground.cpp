#include "kit/Ground.h"

#include "kit/UnhandledErrors.h"
#include "kit/Yield.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QObject>

#include <utility>
#include <vector>

namespace discaro::kit {

namespace {

int eventDepth() {
    const auto* application = qobject_cast<Application*>(QCoreApplication::instance());
    return application ? application->depth() : 0;
}

// Its event says that the event loop has come round.
class Ground : public QObject {
public:
    void post() {
        if (actions.empty() || m_posted || eventDepth() > 0 || yieldDepth() > 0)
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
        if (eventDepth() <= 1 && yieldDepth() == 0)
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

void atGround(std::function<void()> action) {
    ground().actions.push_back(std::move(action));
    ground().post();
}

void groundReached() {
    ground().post();
}

void runGroundActions() {
    for (const auto& action : std::exchange(ground().actions, {}))
        action();
}

} // namespace discaro::kit
