#include "disc/IconCount.h"

#include "disc/Executable.h"

namespace discaro::disc {

int64_t countIcons(const ByteSource& source) {
    return Executable(source).icons();
}

} // namespace discaro::disc
