#include "kit/common/Beep.h"

#include <QtWidgets/QApplication>

#include <utility>

namespace discaro::kit {

namespace {

std::function<void()> g_beeper;

} // namespace

void Beep() {
    if (g_beeper)
        g_beeper();
    else
        QApplication::beep();
}

std::function<void()> setBeeper(std::function<void()> beeper) {
    return std::exchange(g_beeper, std::move(beeper));
}

} // namespace discaro::kit
