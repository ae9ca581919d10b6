#pragma once

#include "db/Database.h"

#include <memory>

namespace discaro::explorer {

// The program's handle to the catalogue, opened again if another window has closed it. Whoever yields keeps it: another
// handler may put a new one in its place. Throws as app::Module1::OpenCatalogue does.
std::shared_ptr<db::Database> sharedCatalogue();

// Lets the events that wait be handled. Handlers that run then wait for a locked catalogue by themselves.
void yield();

} // namespace discaro::explorer
