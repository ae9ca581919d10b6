#pragma once

#include <cstdint>
#include <string>

struct sqlite3;

namespace discaro::db {

// A layer between SQLite and its file layer that keeps a connection from touching any file but the one that it opened.
//
// That file is the connection's own as long as its path names it (device, inode) and nobody writes past SQLite's locks:
// while the connection holds the lock for writing, size and time of change are those of its own last write; while it
// does not, whoever has changed the file has counted the change on, as every SQLite program does (the change counter,
// bytes 24 to 27). One that was changed and has the same header, as a copy that has gone another way may have, counts
// as changed by the rules too: SQLite is made to drop the pages that it keeps. Once it is not the connection's own:
// - A file that somebody else has changed is not written any more, not by a rollback either. What a rollback has to
//   undo is undone only where all that the connection has written still stands there. One whose header or
//   size such a rollback leaves other than it was stays somebody else's.
// - A file that has only lost its name is written on, so that a rollback leaves it whole wherever it has been moved to.
// - A journal at the path is not read, and it is deleted only by the connection that made it.
// For SQLite these are no errors, so that its rollbacks run to their end. Whoever writes asks ownsFile before and
// after. Three things alone fail, with SQLITE_READONLY_DBMOVED: the lock for writing, a commit that is expected, and
// the opening of a path that has come to name another file meanwhile.
//
// A journal beside a file that is being opened is set aside, as FileNaming.h tells, when it was made for a longer one:
// a killed process has left it beside its own, which has been replaced since.

// The name of this layer over another; empty for the default one.
const char* guardedLayer(const std::string& layer);

// Whether the file of a connection, opened through such a layer, is its own.
bool ownsFile(sqlite3* connection);

// Before a commit: it is to fail when the file turns out not to be the connection's own.
void expectCommit(sqlite3* connection);

// What tells one state of a file from those before and after it.
struct FileState {
    uint32_t changes = 0; // the change counter
    int64_t size = 0;
    int64_t seconds = 0; // since 1970, of the last write
    int64_t nanoseconds = 0;
    bool operator==(const FileState&) const = default;
};
FileState stateOfFile(sqlite3* connection);

// Whether the file's header says that it has a write-ahead log.
bool hasWriteAheadLog(sqlite3* connection);

} // namespace discaro::db
