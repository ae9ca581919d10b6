#pragma once

#include "db/Database.h"

#include <filesystem>
#include <memory>
#include <span>
#include <string>

namespace discaro::db {

struct FileFormat;

// The engine of the process: opens catalogues and holds the one transaction. One thread.
//
// Transaction. Between BeginTrans and CommitTrans everything that the process writes, through all
// handles, is one transaction: it takes effect whole at CommitTrans or not at all. There is no
// rollback call. BeginTrans notes the data sources that are open (where there are none, the
// Database handles); when the last of those closes without CommitTrans, the transaction is undone
// with all its writes, whichever handle made them. So is it when the process ends in any way. When
// a write fails because the disk is full or defective, the memory is out, or the file is damaged,
// replaced or changed by another program past its locks, the whole transaction is undone at once and
// counts as lost: every further write throws TransactionLost, which tells that failure, until
// CommitTrans throws it a last time or the data sources close.
class DBEngine {
public:
    DBEngine() = delete;

    // Opens a catalogue that exists; never creates one. Throws FileMissing, NotACatalogue (a folder, another kind of
    // file, a database without the expected tables), CatalogueDamaged, CatalogueLocked, StorageFailure,
    // CatalogueReplaced (there are handles on a file that the path does not name any more, or that has been
    // overwritten; the next opening after the last of them has closed takes the file that is there, and where they are
    // neither data sources nor have a recordset open, and there is no transaction, this one closes them itself). A
    // read-only file, or one in a read-only folder, opens for reading.
    static std::shared_ptr<Database> OpenDatabase(const std::filesystem::path& path);

    // TransactionOpen when there is one already (also a lost one), HandleClosed when no catalogue
    // is open, CatalogueReadOnly, CatalogueLocked, CatalogueReplaced.
    static void BeginTrans();
    // Throws NoTransaction, or TransactionLost with nothing committed. When the commit itself fails,
    // with DiskFull, StorageFailure, CatalogueReplaced or the like, nothing is committed and the
    // transaction is over. It never waits for another program: from BeginTrans on the file is locked
    // for all others.
    static void CommitTrans();
    // Whether there is a transaction, lost ones included.
    static bool InTransaction();

    // What a file must be to open as a catalogue: set once at start by whoever knows the tables.
    // Until then any database with tables opens.
    static void SetFormat(FileFormat format);

    // Makes a database file of that format by running the statements. It is written under a
    // temporary name in the same folder, brought to the disk and only then given its name, so that
    // a file of that name is always complete. Never overwrites: NotAllowed when something of that
    // name exists. Throws PathMissing, DiskFull, StorageFailure, CatalogueReadOnly.
    static void CreateDatabase(const std::filesystem::path& path, const FileFormat& format,
                               std::span<const std::string> statements);

private:
    friend class DataSource;
    static std::shared_ptr<Database> open(const std::filesystem::path& path, Database::Binding binding);
};

} // namespace discaro::db
