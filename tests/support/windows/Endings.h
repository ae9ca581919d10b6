#pragma once

#include "kit/Beep.h"
#include "kit/EndProgram.h"

namespace discaro::test {

// What is thrown in the place of the program's end. It is no std::exception, so nothing but the
// test takes it.
struct ProgramEnded {
    int exitCode;
};

// While it lives, the program's end throws ProgramEnded. Only for events that a test sends itself:
// an exception must not pass through the event loop.
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
