#pragma once

#include <unistd.h>

#include <utility>

namespace discaro::base {

// Owns an open file descriptor, and is the only one in the program that does; negative when there is none.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number)
        : m_number(number) {}
    Descriptor(Descriptor&& other) noexcept
        : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor() {
        if (m_number >= 0)
            ::close(m_number);
    }

    explicit operator bool() const { return m_number >= 0; }
    int number() const { return m_number; }
    int release() { return std::exchange(m_number, -1); }

private:
    int m_number = -1;
};

} // namespace discaro::base
