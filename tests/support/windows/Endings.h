#pragma once

#include "kit/common/Beep.h"
#include "kit/program/EndProgram.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>

#include <functional>
#include <utility>

namespace discaro::test {

// What is thrown in the place of the program's end. It is no std::exception, so nothing but the
// test takes it.
struct ProgramEnded {
    int exitCode;
};

// While it lives, the program's end throws ProgramEnded. What may end has to run by asHandler: an
// exception that passes through the handling of keys or of the mouse leaks what the window library
// holds there.
class ThrowingEnd {
public:
    ThrowingEnd()
        : m_before(kit::setEnder([](int exitCode) { throw ProgramEnded{exitCode}; })) {}
    ~ThrowingEnd() { kit::setEnder(m_before); }
    ThrowingEnd(const ThrowingEnd&) = delete;
    ThrowingEnd& operator=(const ThrowingEnd&) = delete;

private:
    std::function<void(int)> m_before;
};

// Runs a step as an event handler of the application.
inline void asHandler(std::function<void()> step) {
    class Receiver : public QObject {
    public:
        explicit Receiver(std::function<void()> run)
            : m_step(std::move(run)) {}
        bool event(QEvent*) override {
            m_step();
            return true;
        }

    private:
        std::function<void()> m_step;
    };
    Receiver receiver(std::move(step));
    QEvent event(QEvent::User);
    QCoreApplication::sendEvent(&receiver, &event);
}

// Counts the beeps while it lives.
class CountedBeeps {
public:
    CountedBeeps()
        : m_before(kit::setBeeper([this] { ++m_count; })) {}
    ~CountedBeeps() { kit::setBeeper(m_before); }
    CountedBeeps(const CountedBeeps&) = delete;
    CountedBeeps& operator=(const CountedBeeps&) = delete;

    int count() const { return m_count; }

private:
    int m_count = 0;
    std::function<void()> m_before;
};

} // namespace discaro::test
