#pragma once

#include "base/RuntimeError.h"

namespace discaro::explorer {

// Runs one statement of a loop over rows and passes over its error, except that the catalogue is locked: every row
// behind would meet the same, so that error is thrown and ends the loop.
template <typename Statement>
void skipErrorsUnlessLocked(Statement&& statement) {
    try {
        statement();
    } catch (const base::RuntimeError& error) {
        if (error.is(base::ErrorNumber::CatalogueLocked))
            throw;
    }
}

} // namespace discaro::explorer
