#include "db/sqlite/RowTaker.h"

#include "base/RuntimeError.h"
#include "base/Text.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <string>

namespace discaro::db {

namespace {

// The high bit of each byte that is ASCII and not NUL: adding to its seven low bits carries into the high bit unless
// all of them are 0.
constexpr uint64_t kHigh = 0x8080808080808080;

uint64_t plainBytes(const char* bytes) {
    uint64_t block = 0;
    std::memcpy(&block, bytes, sizeof(block));
    return ((block & ~kHigh) + ~kHigh) & ~block & kHigh;
}

bool isPlain(std::string_view text) {
    if (text.size() < sizeof(uint64_t))
        return std::ranges::all_of(text, [](char c) { return static_cast<signed char>(c) > 0; });
    const char* const last = text.data() + text.size() - sizeof(uint64_t);
    uint64_t plain = plainBytes(last);
    for (const char* at = text.data(); at < last; at += sizeof(uint64_t))
        plain &= plainBytes(at);
    return plain == kHigh;
}

// As few calls of the engine as will do: this runs for every row.
RowText textOf(sqlite3_value* value) {
    const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value));
    if (bytes == nullptr)
        return {{}, sqlite3_value_type(value) == SQLITE_NULL, true};
    const std::string_view text(bytes, static_cast<size_t>(sqlite3_value_bytes(value)));
    return {text, false, isPlain(text)};
}

// Called by the engine's C code, which no exception may cross.
void take(sqlite3_context* context, int count, sqlite3_value** arguments) {
    try {
        RowTaker* taker = *static_cast<RowTaker**>(sqlite3_user_data(context));
        // Without a result the function's value is null, which a condition takes for false.
        const RowText text = count == 2 ? textOf(arguments[1]) : RowText{{}, true, true};
        if (taker->take(sqlite3_value_int64(arguments[0]), text))
            sqlite3_result_int(context, 1);
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(context);
    }
}

void order(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (sqlite3_value_type(arguments[0]) == SQLITE_NULL)
        return sqlite3_result_null(context);
    try {
        const std::string key = base::orderKey(textOf(arguments[0]).bytes);
        sqlite3_result_blob64(context, key.data(), key.size(), SQLITE_TRANSIENT);
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(context);
    }
}

void requireDone(int result) {
    if (result != SQLITE_OK)
        throw base::RuntimeError(base::ErrorNumber::OutOfMemory);
}

} // namespace

void registerRowFunctions(sqlite3* connection, RowTaker** taker) {
    constexpr int kFlags = SQLITE_UTF8 | SQLITE_DIRECTONLY;
    requireDone(
        sqlite3_create_function_v2(connection, "discaro_take", -1, kFlags, taker, &take, nullptr, nullptr, nullptr));
    registerOrderFunction(connection);
}

void registerOrderFunction(sqlite3* connection) {
    constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    requireDone(
        sqlite3_create_function_v2(connection, "discaro_order", 1, kFlags, nullptr, &order, nullptr, nullptr, nullptr));
}

} // namespace discaro::db
