#include "base/RuntimeError.h"

#include <algorithm>
#include <array>

namespace discaro::base {

namespace {

struct Entry {
    ErrorNumber number;
    std::string_view description;
};

constexpr std::array kErrors = {
    Entry{ErrorNumber::SyntaxError, "Syntax error in query"},
    Entry{ErrorNumber::UnknownTable, "The catalogue has no table of this name"},
    Entry{ErrorNumber::UnknownField, "The table has no field of this name"},
    Entry{ErrorNumber::NotAllowed, "The operation is not supported for this object"},
    Entry{ErrorNumber::FileMissing, "The catalogue file was not found"},
    Entry{ErrorNumber::NotACatalogue, "The file is not a catalogue"},
    Entry{ErrorNumber::CatalogueDamaged, "The catalogue file is damaged"},
    Entry{ErrorNumber::CatalogueReadOnly, "The catalogue is read-only"},
    Entry{ErrorNumber::CatalogueLocked, "The catalogue is in use by another program"},
    Entry{ErrorNumber::DiskFull, "There is not enough space on the disk"},
    Entry{ErrorNumber::StorageFailure, "The catalogue file could not be read or written"},
    Entry{ErrorNumber::OutOfMemory, "Not enough memory"},
    Entry{ErrorNumber::CatalogueReplaced, "The catalogue file was replaced, removed or changed by another program"},
    Entry{ErrorNumber::NoCurrentRecord, "No current record"},
    Entry{ErrorNumber::DataTypeConversion, "Data type conversion error"},
    Entry{ErrorNumber::NoEditInProgress, "Update without AddNew or Edit"},
    Entry{ErrorNumber::NoTransaction, "There is no transaction to commit"},
    Entry{ErrorNumber::TransactionLost, "The transaction was undone after an earlier failure"},
    Entry{ErrorNumber::RuleViolated, "The change would break a rule of the catalogue"},
    Entry{ErrorNumber::HandleClosed, "The database or recordset is closed"},
    Entry{ErrorNumber::RecordGone, "The record has been deleted"},
    Entry{ErrorNumber::TransactionOpen, "A transaction is already open"},
    Entry{ErrorNumber::PathMissing, "The path was not found"},
    Entry{ErrorNumber::DriveNotReady, "There is no disc in the drive, or it cannot be read"},
    Entry{ErrorNumber::ReadFailure, "The disc could not be read"},
    Entry{ErrorNumber::DirectoryDamaged, "The directory is damaged"},
    Entry{ErrorNumber::DirectoryLoop, "The directory stands in more than one place of the disc"},
    Entry{ErrorNumber::FileSystemUnknown, "The file is not a disc image"},
    Entry{ErrorNumber::FileSystemUnsupported, "The file system of this disc can't be read"},
    Entry{ErrorNumber::TooManyDrives, "All drive letters are in use"},
    Entry{ErrorNumber::FileDamaged, "The file is damaged"},
    Entry{ErrorNumber::InvalidValue, "The value is out of range"},
};

std::string describe(ErrorNumber number, std::string_view detail) {
    const auto* entry = std::ranges::find(kErrors, number, &Entry::number);
    std::string text(entry == kErrors.end() ? "Unknown error" : entry->description);
    return detail.empty() ? text : text + ": " + std::string(detail);
}

} // namespace

RuntimeError::RuntimeError(ErrorNumber number, std::string_view detail)
    : m_number(static_cast<int>(number))
    , m_description(describe(number, detail)) {}

RuntimeError RuntimeError::about(std::string_view thing) const {
    RuntimeError named = *this;
    if (m_description.find(thing) == std::string::npos)
        named.m_description.append(" (").append(thing).append(")");
    return named;
}

} // namespace discaro::base
