#include "kit/program/EndProgram.h"

#include <cstdlib>
#include <utility>

namespace discaro::kit {

namespace {

std::function<void(int)> g_ender;

} // namespace

void EndProgram(int exitCode) {
    if (g_ender)
        g_ender(exitCode);
    std::_Exit(exitCode);
}

std::function<void(int)> setEnder(std::function<void(int)> ender) {
    return std::exchange(g_ender, std::move(ender));
}

} // namespace discaro::kit
