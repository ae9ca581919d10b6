#include "explorer/Yielding.h"

#include "app/Module1.h"
#include "db/sqlite/WaitOnce.h"
#include "kit/program/Yield.h"

namespace discaro::explorer {

std::shared_ptr<db::Database> sharedCatalogue() {
    const auto& handle = app::Module1::CatalogueDb;
    if (!handle || !handle->IsOpen())
        app::Module1::OpenCatalogue();
    return handle;
}

void yield() {
    const db::WaitOnce::Pause pause;
    kit::yield();
}

} // namespace discaro::explorer
