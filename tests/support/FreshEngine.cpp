#include "support/FreshEngine.h"

#include "db/DBEngine.h"
#include "db/schema/FileFormat.h"
#include "db/sqlite/Connection.h"

namespace discaro::test {

void FreshEngine::reset() {
    constexpr int kUsualWait = 2000; // milliseconds
    db::DBEngine::SetFormat({});
    db::Connection::setLockWait(kUsualWait);
}

} // namespace discaro::test
