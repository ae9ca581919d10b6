#include "program/Wiring.h"

#include "app/Loading.h"
#include "app/Searching.h"
#include "app/Switch.h"
#include "app/Windows.h"
#include "catalogue/DeleteCD.h"
#include "explorer/EXCDROM.h"
#include "explorer/EXDir.h"
#include "explorer/EXFile.h"
#include "explorer/EXMain.h"
#include "scanner/Scanform.h"

namespace discaro::program {

namespace {

template <typename Window>
void add(const char* name) {
    app::Windows::Register(name, [] { return new Window; });
}

} // namespace

void registerWindows() {
    add<app::Switch>("Switch");
    add<app::Loading>("Loading");
    add<app::Searching>("Searching");
    add<scanner::Scanform>("Scanform");
    add<catalogue::DeleteCD>("DeleteCD");
    add<explorer::EXMain>("EXMain");
    add<explorer::EXCDROM>("EXCDROM");
    add<explorer::EXDir>("EXDir");
    add<explorer::EXFile>("EXFile");
}

} // namespace discaro::program
