#include "db/sqlite/LikeFunction.h"

#include "base/Number.h"
#include "base/RuntimeError.h"
#include "db/pattern/LikePattern.h"

#include <sqlite3.h>

#include <memory>
#include <new>

namespace discaro::db {

namespace {

std::string_view textIn(sqlite3_value* value) {
    // Unlike sqlite3_value_text this does not copy the text to put a NUL behind it.
    const auto* text = static_cast<const char*>(sqlite3_value_blob(value));
    return {text == nullptr ? "" : text, static_cast<size_t>(sqlite3_value_bytes(value))};
}

void answer(sqlite3_context* context, LikePattern& pattern, sqlite3_value* value) {
    bool matches = false;
    switch (sqlite3_value_type(value)) {
    case SQLITE_NULL:
        return sqlite3_result_null(context);
    case SQLITE_INTEGER:
        matches = pattern.matches(base::numberText(static_cast<int64_t>(sqlite3_value_int64(value))));
        break;
    case SQLITE_FLOAT:
        matches = pattern.matches(base::numberText(sqlite3_value_double(value)));
        break;
    default:
        matches = pattern.matches(textIn(value));
    }
    sqlite3_result_int(context, matches ? 1 : 0);
}

void freePattern(void* pattern) {
    delete static_cast<LikePattern*>(pattern);
}

// The engine keeps the pattern as long as the statement runs, and may free it at once when memory
// is short; so the match comes first.
void compileAndAnswer(sqlite3_context* context, sqlite3_value* pattern, sqlite3_value* value) {
    if (sqlite3_value_type(pattern) == SQLITE_NULL)
        return sqlite3_result_null(context);
    auto compiled = std::make_unique<LikePattern>(textIn(pattern));
    answer(context, *compiled, value);
    sqlite3_set_auxdata(context, 0, compiled.release(), &freePattern);
}

// Called by the engine's C code, which no exception may cross. As few calls of the engine as will do: this runs for
// every row.
void like(sqlite3_context* context, int, sqlite3_value** arguments) {
    try {
        auto* compiled = static_cast<LikePattern*>(sqlite3_get_auxdata(context, 0));
        if (compiled != nullptr)
            answer(context, *compiled, arguments[1]);
        else
            compileAndAnswer(context, arguments[0], arguments[1]);
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(context);
    }
}

} // namespace

void registerLikeFunction(sqlite3* connection) {
    constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    const int result =
        sqlite3_create_function_v2(connection, "discaro_like", 2, kFlags, nullptr, &like, nullptr, nullptr, nullptr);
    if (result != SQLITE_OK)
        throw base::RuntimeError(base::ErrorNumber::OutOfMemory);
}

} // namespace discaro::db
