#pragma once

struct sqlite3;

namespace discaro::db {

// Gives the connection the SQL function discaro_like(pattern, value): 1 or 0 as LikePattern
// decides, null when either is null. A number is matched in its text form (base::numberText).
// Throws RuntimeError OutOfMemory.
void registerLikeFunction(sqlite3* connection);

} // namespace discaro::db
