#pragma once

#include "base/RuntimeError.h"

#include <functional>

struct sqlite3;

namespace discaro::db {

// The engine's error for a result code of SQLite (primary or extended).
base::ErrorNumber errorNumberOf(int code);

// A connection as its statements know it.
struct Session {
    sqlite3* handle = nullptr;
    // Hears of each failure before it is thrown, so also of those that are passed over. May be empty.
    std::function<void(const base::RuntimeError&)> onFailure;
};

// Throws the error for a result code, with the connection's own words as its detail.
[[noreturn]] void raise(const Session& session, int code);

// Whether a failure leaves it open what has reached the file, so that a transaction can't go on
// after it.
bool breaksTransaction(const base::RuntimeError& error);

} // namespace discaro::db
