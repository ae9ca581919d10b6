#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace discaro::base {

// What can go wrong below the windows. The value is the number that a user sees; RuntimeError.cpp holds the texts.
enum class ErrorNumber : int {
    // The store
    SyntaxError = 3401,
    UnknownTable = 3402,
    UnknownField = 3403,
    NotAllowed = 3404,
    FileMissing = 3410,
    NotACatalogue = 3411,
    CatalogueDamaged = 3412,
    CatalogueReadOnly = 3413,
    CatalogueLocked = 3414,
    DiskFull = 3415,
    StorageFailure = 3416,
    OutOfMemory = 3417,
    CatalogueReplaced = 3418,
    NoCurrentRecord = 3420,
    DataTypeConversion = 3421,
    NoEditInProgress = 3422,
    NoTransaction = 3423,
    TransactionLost = 3424,
    RuleViolated = 3425,
    HandleClosed = 3426,
    RecordGone = 3427,
    TransactionOpen = 3428,
    // Discs
    PathMissing = 3501,
    DriveNotReady = 3502,
    ReadFailure = 3503,
    DirectoryDamaged = 3504,
    DirectoryLoop = 3505,
    FileSystemUnknown = 3506,
    FileSystemUnsupported = 3507,
    TooManyDrives = 3508,
    FileDamaged = 3509,
    // Windows
    InvalidValue = 3601,
};

// How a failing statement of the store or of a disc says so. Callers may test the number.
class RuntimeError : public std::exception {
public:
    // The description is the table's text for the number, with ": " and the detail behind it when there is one. It
    // ends without a full stop: what it is about may follow it.
    explicit RuntimeError(ErrorNumber number, std::string_view detail = {});

    // The same error with the thing that it is about, in brackets behind the description that does not name it yet.
    RuntimeError about(std::string_view thing) const;

    int number() const { return m_number; }
    bool is(ErrorNumber number) const { return m_number == static_cast<int>(number); }
    const std::string& description() const { return m_description; }
    const char* what() const noexcept override { return m_description.c_str(); }

private:
    int m_number;
    std::string m_description;
};

// Runs one statement and passes over its RuntimeError; nothing else is hidden.
// Returns whether the statement ran to its end.
template <typename Statement>
bool skipErrors(Statement&& statement) {
    try {
        statement();
        return true;
    } catch (const RuntimeError&) {
        return false;
    }
}

} // namespace discaro::base
