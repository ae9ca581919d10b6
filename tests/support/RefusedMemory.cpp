#include "support/RefusedMemory.h"

#include <cstddef>
#include <cstdlib>
#include <new>
#include <utility>

namespace {

bool g_refusing = false;

} // namespace

// In the place of the language's own; its other forms call these, or are a pair by themselves.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return std::exchange(g_refusing, false) ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* operator new(std::size_t size) {
    if (void* const memory = operator new(size, std::nothrow))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace discaro::test {

RefusedMemory::RefusedMemory() {
    g_refusing = true;
}

RefusedMemory::~RefusedMemory() {
    g_refusing = false;
}

} // namespace discaro::test
