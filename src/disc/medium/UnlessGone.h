#pragma once

#include "base/RuntimeError.h"

namespace discaro::disc {

// Runs one statement over a medium and passes over its error, except that the disc is gone: what comes behind could not
// be read either. Returns whether the statement ran to its end.
template <typename Statement>
bool skipErrorsUnlessGone(Statement&& statement) {
    try {
        statement();
        return true;
    } catch (const base::RuntimeError& error) {
        if (error.is(base::ErrorNumber::DriveNotReady))
            throw;
        return false;
    }
}

} // namespace discaro::disc
