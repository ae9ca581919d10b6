#pragma once

#include "db/DataSource.h"
#include "kit/form/Form.h"

namespace discaro::app {

// Opens a table of the catalogue for a window that loads; it is given back when the window is unloaded, or at once when
// its loading fails. Throws as db::DataSource::Refresh does.
void openSource(kit::Form& window, db::DataSource& source, const char* table);

} // namespace discaro::app
