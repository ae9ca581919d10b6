#pragma once

namespace discaro::test {

// The first memory that the program asks for by new while it lives is refused.
class RefusedMemory {
public:
    RefusedMemory();
    ~RefusedMemory();
    RefusedMemory(const RefusedMemory&) = delete;
    RefusedMemory& operator=(const RefusedMemory&) = delete;
};

} // namespace discaro::test
