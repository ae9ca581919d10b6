#pragma once

#include "base/RuntimeError.h"

struct sqlite3;

namespace discaro::db {

// The engine's error for a result code of SQLite (primary or extended).
base::ErrorNumber errorNumberOf(int code);

// Throws the error for a result code, with the connection's own words as its detail.
[[noreturn]] void raise(sqlite3* connection, int code);

// Whether a failure leaves it open what has reached the file, so that a transaction can't go on
// after it.
bool breaksTransaction(const base::RuntimeError& error);

} // namespace discaro::db
