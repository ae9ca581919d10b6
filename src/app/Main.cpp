#include "app/Main.h"

#include "app/SingleInstance.h"
#include "app/Texts.h"
#include "app/Windows.h"
#include "kit/program/EndProgram.h"
#include "kit/program/MsgBox.h"
#include "kit/program/Yield.h"

namespace discaro::app {

void Main(const SingleInstance& instance, const std::function<void()>& prepare) {
    if (instance.prevInstance()) {
        kit::MsgBox(kAlreadyRunning, kit::Buttons::Ok, kit::Icon::Exclamation, kAlreadyRunningTitle);
        kit::EndProgram();
    }
    kit::yield();
    prepare();
    Windows::Show("Switch");
}

} // namespace discaro::app
