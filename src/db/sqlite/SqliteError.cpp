#include "db/sqlite/SqliteError.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace discaro::db {

namespace {

using base::ErrorNumber;

struct Translation {
    int code;
    ErrorNumber number;
};

constexpr std::array kTranslations = {
    Translation{SQLITE_IOERR_NOMEM, ErrorNumber::OutOfMemory},
    Translation{SQLITE_READONLY_DBMOVED, ErrorNumber::CatalogueReplaced},
    Translation{SQLITE_PERM, ErrorNumber::CatalogueReadOnly},
    Translation{SQLITE_READONLY, ErrorNumber::CatalogueReadOnly},
    Translation{SQLITE_BUSY, ErrorNumber::CatalogueLocked},
    Translation{SQLITE_LOCKED, ErrorNumber::CatalogueLocked},
    Translation{SQLITE_NOMEM, ErrorNumber::OutOfMemory},
    Translation{SQLITE_CORRUPT, ErrorNumber::CatalogueDamaged},
    Translation{SQLITE_NOTADB, ErrorNumber::NotACatalogue},
    Translation{SQLITE_FULL, ErrorNumber::DiskFull},
    Translation{SQLITE_CONSTRAINT, ErrorNumber::RuleViolated},
    Translation{SQLITE_TOOBIG, ErrorNumber::DataTypeConversion},
    Translation{SQLITE_MISMATCH, ErrorNumber::DataTypeConversion},
    Translation{SQLITE_AUTH, ErrorNumber::NotAllowed},
};

const Translation* find(int code) {
    const auto* found = std::ranges::find(kTranslations, code, &Translation::code);
    return found == kTranslations.end() ? nullptr : found;
}

// A sum beyond 64 bits is reported under the general code; only the message tells it apart.
bool isOverflow(sqlite3* connection, int code) {
    return (code & 0xff) == SQLITE_ERROR && connection != nullptr &&
           std::string_view(sqlite3_errmsg(connection)) == "integer overflow";
}

} // namespace

ErrorNumber errorNumberOf(int code) {
    const Translation* found = find(code);
    if (found == nullptr)
        found = find(code & 0xff);
    return found == nullptr ? ErrorNumber::StorageFailure : found->number;
}

void raise(const Session& session, int code) {
    sqlite3* const connection = session.handle;
    if (isOverflow(connection, code))
        throw base::RuntimeError(ErrorNumber::DataTypeConversion, "the sum is too large");
    const bool ofConnection = connection != nullptr && sqlite3_extended_errcode(connection) == code;
    const base::RuntimeError error(errorNumberOf(code),
                                   ofConnection ? sqlite3_errmsg(connection) : sqlite3_errstr(code));
    if (session.onFailure)
        session.onFailure(error);
    throw error;
}

bool breaksTransaction(const base::RuntimeError& error) {
    return error.is(ErrorNumber::DiskFull) || error.is(ErrorNumber::StorageFailure) ||
           error.is(ErrorNumber::OutOfMemory) || error.is(ErrorNumber::CatalogueDamaged) ||
           error.is(ErrorNumber::CatalogueReplaced);
}

} // namespace discaro::db
