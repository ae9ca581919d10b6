#include "app/OpenSource.h"

#include "app/Module1.h"

namespace discaro::app {

void openSource(kit::Form& window, db::DataSource& source, const char* table) {
    source.SetDatabaseName(Module1::cataloguePath());
    source.SetRecordSource(table);
    window.atUnload([&source] { source.Close(); });
    source.Refresh();
}

} // namespace discaro::app
