#include "app/HandOver.h"

#include "app/Module1.h"
#include "app/Windows.h"
#include "kit/form/Timer.h"
#include "kit/program/Yield.h"

namespace discaro::app {

namespace {

void letLoadingPaint() {
    kit::yield();
    if (auto* loading = Windows::Find("Loading"))
        loading->awaitPainting();
}

} // namespace

void handOver(const Move& move, const std::function<void()>& setVariables) {
    if (!Windows::Exists(move.to))
        return;
    Windows::Show("Loading");
    if (move.keepFrom)
        Windows::Hide(move.from);
    else
        Windows::Unload(move.from);
    letLoadingPaint();
    Module1::ReturnTo = move.returnTo;
    if (setVariables)
        setVariables();
    Windows::Show(move.to);
}

void showReturnWindow() {
    if (Module1::ReturnTo == "switch")
        Windows::Show("Switch");
    else if (Module1::ReturnTo == "explore")
        Windows::Show("EXMain");
}

void showLoading() {
    Windows::Show("Loading");
    letLoadingPaint();
}

void jumpToExplorer() {
    showLoading();
    Windows::Show("EXMain");
    auto* explorer = Windows::Find("EXMain");
    if (auto* delayedLoad = explorer ? kit::timerOf(*explorer, "Timer2") : nullptr)
        delayedLoad->setEnabled(true);
}

} // namespace discaro::app
