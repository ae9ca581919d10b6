#pragma once

#include <cstdint>
#include <string_view>

struct sqlite3;

namespace discaro::db {

// A field's text in one row.
struct RowText {
    std::string_view bytes;
    bool null = false;
    bool plain = false; // ASCII without NUL: the engine's collation NOCASE orders it as base::orderKey does
};

// Takes the rows of a statement one by one while the engine runs it, which costs half of what stepping from row to row
// does.
class RowTaker {
public:
    virtual ~RowTaker() = default;
    // Whether it has seen enough. The text is valid during the call.
    virtual bool take(int64_t number, const RowText& text) = 0;
};

// Gives the connection these SQL functions; `taker` must outlive it and point to the taker while a statement with the
// first one runs.
// discaro_take(number, text), or without the text, the last term of a condition: hands over each row that meets the
// terms before it, in the order in which the engine walks. Null, or 1 when the taker has seen enough, so that the first
// row that the statement gives ends the walk.
// discaro_order(text): base::orderKey; null for null.
// Throws RuntimeError OutOfMemory.
void registerRowFunctions(sqlite3* connection, RowTaker** taker);
// The last one alone.
void registerOrderFunction(sqlite3* connection);

} // namespace discaro::db
