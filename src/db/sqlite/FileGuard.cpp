#include "db/sqlite/FileGuard.h"

#include "base/Descriptor.h"
#include "base/RuntimeError.h"
#include "db/sqlite/FileNaming.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace discaro::db {

namespace {

// Operations of sqlite3_file_control that this layer answers itself.
constexpr int kAskOwner = 0x44697301;
constexpr int kAskLog = 0x44697302;
constexpr int kExpectCommit = 0x44697303;
constexpr int kAskState = 0x44697304;

struct Identity {
    dev_t device = 0;
    ino_t inode = 0;
    bool operator==(const Identity&) const = default;
};

// Not even the file that was opened: for a name that leads nowhere.
constexpr Identity kNothing{};

Identity identityAt(const char* path) {
    struct stat status {};
    return ::stat(path, &status) == 0 ? Identity{status.st_dev, status.st_ino} : kNothing;
}

struct Stamp {
    off_t size = 0;
    int64_t seconds = 0;
    int64_t nanoseconds = 0;
    bool operator==(const Stamp&) const = default;
};

// What SQLite's file format tells in the first 100 bytes.
using Header = std::array<unsigned char, 100>;

bool writesAhead(const Header& header) {
    constexpr size_t kWriteVersion = 18;
    return header[kWriteVersion] == 2;
}

uint32_t numberAt(std::span<const unsigned char> bytes, size_t place) {
    uint32_t number = 0;
    for (const unsigned char byte : bytes.subspan(place, 4))
        number = number << 8U | byte;
    return number;
}

constexpr size_t kCounter = 24;

uint32_t changesOf(const Header& header) {
    return numberAt(header, kCounter);
}

uint32_t pageSizeOf(const Header& header) {
    constexpr size_t kPageSize = 16;
    const uint32_t stored = numberAt(header, kPageSize) >> 16U;
    return stored == 1 ? 1U << 16U : stored;
}

bool sameKind(const Header& a, const Header& b) {
    constexpr size_t kMagic = 16;
    constexpr size_t kApplication = 68;
    return std::equal(a.begin(), a.begin() + kMagic, b.begin()) &&
           std::equal(a.begin() + kApplication, a.begin() + kApplication + 4, b.begin() + kApplication);
}

// Whether a journal was made for a longer file than this one, as "The Rollback Journal" of SQLite's file format tells.
// As long as a file has a journal it is at least as long as it was before the change. One whose pages have another size
// than the journal's may be in the middle of being vacuumed.
bool isOfLonger(const std::string& journal, const Header& header, int64_t size) {
    constexpr std::array<unsigned char, 8> kMagic = {0xd9, 0xd5, 0x05, 0xf9, 0x20, 0xa1, 0x63, 0xd7};
    constexpr size_t kPages = 16;
    constexpr size_t kPageSize = 24;
    std::array<unsigned char, kPageSize + 4> head{};
    std::ifstream file(journal, std::ios::binary);
    if (!file.read(reinterpret_cast<char*>(head.data()), head.size()) ||
        !std::equal(kMagic.begin(), kMagic.end(), head.begin()))
        return false;
    const int64_t pageSize = numberAt(head, kPageSize);
    return pageSize == pageSizeOf(header) && size < pageSize * numberAt(head, kPages);
}

// Whether a program that keeps SQLite's rules can have made the one of the other. A counter may run over. A
// write-ahead log is carried into the file without counting.
bool follows(const Header& now, const Header& before) {
    if (now == before)
        return true;
    if (!sameKind(now, before))
        return false;
    return writesAhead(now) || writesAhead(before) || static_cast<int32_t>(changesOf(now) - changesOf(before)) > 0;
}

// One open database file.
class Guard {
public:
    Guard(const char* path, sqlite3_file& file)
        : m_path(path)
        , m_file(file)
        , m_held(::open(path, O_PATH | O_CLOEXEC)) {}

    const std::string& path() const { return m_path; }
    bool holdsWhatWasOpened() const;
    bool named() const;
    bool owns();
    // A journal or log at the path belongs to the file that the path names.
    bool mayUseCompanions() const { return !m_foreign && named(); }
    bool mayWrite();
    // At the lock for reading.
    void beginReading();
    // Whether SQLite may keep pages of another state of the file than the one that it has locked now.
    bool hasOldPages() { return std::exchange(m_oldPages, false); }
    void wrote(const void* bytes, int count, int64_t at);
    void cut(int64_t size);
    // At the lock for writing; false when the file is not the one that was left.
    bool beginWriting();
    void unlocking();
    void expectCommit() { m_committing = true; }
    bool mayCommit();
    Header header() const;
    FileState state() const;

private:
    struct Written {
        size_t hash;
        int count;
    };

    Stamp stamp() const;
    void look();
    void notePages();
    bool holdsWhatWasWritten() const;
    bool isAsLeft(const Stamp& now) const;
    void takeStock(const Stamp& now);

    std::string m_path;
    sqlite3_file& m_file;
    base::Descriptor m_held; // the file itself, whatever its name; it takes part in no lock
    bool m_known = false;
    Stamp m_left;                 // as this connection left the file, or found it
    std::optional<Stamp> m_pages; // that SQLite may keep: when they were read or written last
    bool m_oldPages = false;
    Header m_header{}; // and its size, when it was whole last
    off_t m_size = 0;
    bool m_writing = false;
    bool m_committing = false;
    bool m_touched = false; // while it wrote somebody else has, though not where it did
    bool m_foreign = false;
    std::unordered_map<int64_t, Written> m_written; // since the lock, by place
};

Stamp Guard::stamp() const {
    struct stat status {};
    if (::fstat(m_held.number(), &status) != 0)
        return {-1};
    return {status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

bool Guard::named() const {
    struct stat status {};
    return ::fstat(m_held.number(), &status) == 0 &&
           identityAt(m_path.c_str()) == Identity{status.st_dev, status.st_ino};
}

// The descriptor came after SQLite's own.
bool Guard::holdsWhatWasOpened() const {
    int moved = 0;
    m_file.pMethods->xFileControl(&m_file, SQLITE_FCNTL_HAS_MOVED, &moved);
    return moved == 0 && named();
}

bool Guard::owns() {
    look();
    return !m_foreign && !m_touched && named();
}

bool Guard::mayWrite() {
    look();
    return !m_foreign;
}

void Guard::look() {
    if (!m_writing || m_foreign || stamp() == m_left)
        return;
    m_touched = !m_written.empty() && holdsWhatWasWritten();
    m_foreign = !m_touched;
    m_left = stamp();
}

bool Guard::holdsWhatWasWritten() const {
    std::string bytes;
    return std::ranges::all_of(m_written, [&](const auto& entry) {
        const auto& [place, written] = entry;
        bytes.resize(static_cast<size_t>(written.count));
        return m_file.pMethods->xRead(&m_file, bytes.data(), written.count, place) == SQLITE_OK &&
               std::hash<std::string_view>()(bytes) == written.hash;
    });
}

void Guard::beginReading() {
    const Stamp now = stamp();
    m_oldPages = m_oldPages || (m_pages && *m_pages != now);
    m_pages = now;
}

void Guard::notePages() {
    m_left = stamp();
    if (!m_touched)
        m_pages = m_left;
}

void Guard::wrote(const void* bytes, int count, int64_t at) {
    if (!m_writing)
        return;
    notePages();
    const std::string_view text(static_cast<const char*>(bytes), static_cast<size_t>(count));
    m_written[at] = {std::hash<std::string_view>()(text), count};
}

void Guard::cut(int64_t size) {
    if (!m_writing)
        return;
    notePages();
    std::erase_if(m_written, [&](const auto& entry) { return entry.first >= size; });
}

Header Guard::header() const {
    Header header{};
    m_file.pMethods->xRead(&m_file, header.data(), header.size(), 0);
    return header;
}

FileState Guard::state() const {
    const Stamp now = stamp();
    return {changesOf(header()), now.size, now.seconds, now.nanoseconds};
}

void Guard::takeStock(const Stamp& now) {
    m_left = now;
    m_header = header();
    m_size = now.size;
    m_known = true;
}

bool Guard::beginWriting() {
    const Stamp now = stamp();
    if (m_known && now != m_left && !follows(header(), m_header))
        m_foreign = true;
    if (m_foreign || !named())
        return false;
    takeStock(now);
    m_written.clear();
    m_touched = false;
    m_writing = true;
    return true;
}

// Whether the connection, or another program by the rules, has made the file what it is. What somebody else has written
// into a transaction is known only by what the rollback has left.
bool Guard::isAsLeft(const Stamp& now) const {
    if (m_touched)
        return now.size == m_size && header() == m_header;
    return m_writing || !m_known || follows(header(), m_header);
}

// At the end of a transaction the file is whole, unless there is a journal that nobody has been able to play back.
void Guard::unlocking() {
    look();
    const Stamp now = stamp();
    const bool news = m_writing || m_touched || !m_known || now != m_left;
    if (news && !m_foreign && identityAt((m_path + "-journal").c_str()) == kNothing) {
        if (isAsLeft(now))
            takeStock(now);
        else
            m_foreign = true;
        m_touched = false;
    }
    m_writing = false;
    m_committing = false;
    m_written.clear();
}

// Asked once all pages are on the disk; the rollback that follows a refusal is not to be asked again.
bool Guard::mayCommit() {
    return !std::exchange(m_committing, false) || owns();
}

// ---- The layer, as SQLite calls it

struct File {
    sqlite3_file base;
    Guard* guard;
    sqlite3_file real; // the real layer's own data follows
};

struct Layer {
    std::string name;
    std::string realName;
    sqlite3_vfs vfs{};
};

struct State {
    std::vector<std::unique_ptr<Guard>> guards;
    std::map<std::string, Identity, std::less<>> journals; // that this process has opened last
    std::map<std::string, Layer> layers;                   // by the name of the real one
};

// Never destroyed: a file may close after any static object is gone.
State& state() {
    static State* const all = std::make_unique<State>().release();
    return *all;
}

File* own(sqlite3_file* file) {
    return reinterpret_cast<File*>(file);
}

sqlite3_file* real(sqlite3_file* file) {
    return &own(file)->real;
}

sqlite3_vfs* realLayer(sqlite3_vfs* layer) {
    const std::string& name = static_cast<Layer*>(layer->pAppData)->realName;
    return sqlite3_vfs_find(name.empty() ? nullptr : name.c_str());
}

const sqlite3_io_methods& methodsOf(sqlite3_file* file) {
    return *real(file)->pMethods;
}

int closeFile(sqlite3_file* file) {
    const int code = methodsOf(file).xClose(real(file));
    std::erase_if(state().guards, [&](const auto& guard) { return guard.get() == own(file)->guard; });
    return code;
}

// After each lock SQLite looks whether these bytes of the header are still those of the pages that it keeps. Copies of
// a catalogue that have each been changed may have the same; then it is shown what no file has.
int readFile(sqlite3_file* file, void* to, int count, sqlite3_int64 at) {
    constexpr int kVersion = 16;
    const int code = methodsOf(file).xRead(real(file), to, count, at);
    if (code == SQLITE_OK && at == kCounter && count == kVersion && own(file)->guard->hasOldPages())
        std::memset(to, 0xff, kVersion);
    return code;
}

int writeFile(sqlite3_file* file, const void* from, int count, sqlite3_int64 at) {
    Guard& guard = *own(file)->guard;
    if (!guard.mayWrite())
        return SQLITE_OK;
    const int code = methodsOf(file).xWrite(real(file), from, count, at);
    guard.wrote(from, count, at);
    return code;
}

int truncateFile(sqlite3_file* file, sqlite3_int64 size) {
    Guard& guard = *own(file)->guard;
    if (!guard.mayWrite())
        return SQLITE_OK;
    const int code = methodsOf(file).xTruncate(real(file), size);
    guard.cut(size);
    return code;
}

int syncFile(sqlite3_file* file, int flags) {
    const int code = methodsOf(file).xSync(real(file), flags);
    return own(file)->guard->mayCommit() ? code : SQLITE_READONLY_DBMOVED;
}

int fileSize(sqlite3_file* file, sqlite3_int64* size) {
    return methodsOf(file).xFileSize(real(file), size);
}

int lockFile(sqlite3_file* file, int level) {
    const int code = methodsOf(file).xLock(real(file), level);
    if (code == SQLITE_OK && level == SQLITE_LOCK_SHARED)
        own(file)->guard->beginReading();
    if (code != SQLITE_OK || level != SQLITE_LOCK_RESERVED || own(file)->guard->beginWriting())
        return code;
    methodsOf(file).xUnlock(real(file), SQLITE_LOCK_SHARED);
    return SQLITE_READONLY_DBMOVED;
}

int unlockFile(sqlite3_file* file, int level) {
    own(file)->guard->unlocking();
    return methodsOf(file).xUnlock(real(file), level);
}

int checkReservedLock(sqlite3_file* file, int* reserved) {
    return methodsOf(file).xCheckReservedLock(real(file), reserved);
}

int controlFile(sqlite3_file* file, int operation, void* argument) {
    Guard& guard = *own(file)->guard;
    if (operation == kAskOwner)
        *static_cast<bool*>(argument) = guard.owns();
    else if (operation == kAskLog)
        *static_cast<bool*>(argument) = writesAhead(guard.header());
    else if (operation == kAskState)
        *static_cast<FileState*>(argument) = guard.state();
    else if (operation == kExpectCommit)
        guard.expectCommit();
    else
        return methodsOf(file).xFileControl(real(file), operation, argument);
    return SQLITE_OK;
}

int sectorSize(sqlite3_file* file) {
    return methodsOf(file).xSectorSize(real(file));
}

int deviceCharacteristics(sqlite3_file* file) {
    return methodsOf(file).xDeviceCharacteristics(real(file));
}

int mapShared(sqlite3_file* file, int region, int size, int extend, void volatile** memory) {
    return methodsOf(file).xShmMap(real(file), region, size, extend, memory);
}

int lockShared(sqlite3_file* file, int offset, int count, int flags) {
    return methodsOf(file).xShmLock(real(file), offset, count, flags);
}

void shareBarrier(sqlite3_file* file) {
    methodsOf(file).xShmBarrier(real(file));
}

int unmapShared(sqlite3_file* file, int remove) {
    return methodsOf(file).xShmUnmap(real(file), remove);
}

// Of the interface's versions the third maps the file itself; that is never asked for.
const sqlite3_io_methods* methodsOfVersion(int version) {
    static const auto make = [](int number) {
        return sqlite3_io_methods{number,
                                  closeFile,
                                  readFile,
                                  writeFile,
                                  truncateFile,
                                  syncFile,
                                  fileSize,
                                  lockFile,
                                  unlockFile,
                                  checkReservedLock,
                                  controlFile,
                                  sectorSize,
                                  deviceCharacteristics,
                                  mapShared,
                                  lockShared,
                                  shareBarrier,
                                  unmapShared,
                                  nullptr,
                                  nullptr};
    };
    static const std::array methods = {make(1), make(2)};
    return &methods[version >= 2 ? 1 : 0];
}

// A program in the middle of a change holds this lock; of a killed one nothing is left but its journal.
bool isBeingChanged(sqlite3_file& file) {
    int reserved = 0;
    return file.pMethods->xCheckReservedLock(&file, &reserved) != SQLITE_OK || reserved != 0;
}

int openGuarded(const char* path, File& file) {
    auto guard = std::make_unique<Guard>(path, file.real);
    if (!guard->holdsWhatWasOpened()) {
        file.real.pMethods->xClose(&file.real);
        return SQLITE_READONLY_DBMOVED;
    }
    if (isOfLonger(std::string(path) + "-journal", guard->header(), guard->state().size) && !isBeingChanged(file.real))
        base::skipErrors([&] { setJournalAside(path); });
    file.guard = guard.get();
    state().guards.push_back(std::move(guard));
    file.base.pMethods = methodsOfVersion(file.real.pMethods->iVersion);
    return SQLITE_OK;
}

// All but databases are left to the real layer whole.
int openFile(sqlite3_vfs* layer, const char* path, sqlite3_file* file, int flags, int* flagsOut) {
    sqlite3_vfs* below = realLayer(layer);
    file->pMethods = nullptr;
    if ((flags & SQLITE_OPEN_MAIN_DB) != 0 && path != nullptr) {
        own(file)->real.pMethods = nullptr;
        const int code = below->xOpen(below, path, real(file), flags, flagsOut);
        return code == SQLITE_OK ? openGuarded(path, *own(file)) : code;
    }
    const int code = below->xOpen(below, path, file, flags, flagsOut);
    if (code == SQLITE_OK && (flags & SQLITE_OPEN_MAIN_JOURNAL) != 0 && path != nullptr)
        state().journals[path] = identityAt(path);
    return code;
}

// Whether every database that a file beside it would belong to is still the one of that name.
bool mayUse(std::string_view path) {
    return std::ranges::none_of(state().guards, [&](const auto& guard) {
        const bool beside =
            path.starts_with(guard->path()) && path.size() > guard->path().size() && path[guard->path().size()] == '-';
        return beside && !guard->mayUseCompanions();
    });
}

int deleteFile(sqlite3_vfs* layer, const char* path, int syncFolder) {
    auto& journals = state().journals;
    const auto journal = journals.find(std::string_view(path));
    const bool made = journal != journals.end();
    const bool may = made ? journal->second == identityAt(path) : mayUse(path);
    if (made)
        journals.erase(journal);
    sqlite3_vfs* below = realLayer(layer);
    return may ? below->xDelete(below, path, syncFolder) : SQLITE_OK;
}

int accessFile(sqlite3_vfs* layer, const char* path, int flags, int* result) {
    sqlite3_vfs* below = realLayer(layer);
    if (mayUse(path))
        return below->xAccess(below, path, flags, result);
    *result = 0;
    return SQLITE_OK;
}

void stackOn(Layer& layer) {
    sqlite3_vfs& vfs = layer.vfs;
    vfs = *sqlite3_vfs_find(layer.realName.empty() ? nullptr : layer.realName.c_str());
    vfs.pNext = nullptr;
    vfs.zName = layer.name.c_str();
    vfs.szOsFile += static_cast<int>(sizeof(File));
    vfs.pAppData = &layer;
    vfs.xOpen = openFile;
    vfs.xDelete = deleteFile;
    vfs.xAccess = accessFile;
    sqlite3_vfs_register(&vfs, 0);
}

template <typename Answer = bool>
Answer ask(sqlite3* connection, int operation) {
    Answer answer{};
    sqlite3_file_control(connection, "main", operation, &answer);
    return answer;
}

} // namespace

const char* guardedLayer(const std::string& layer) {
    const auto [entry, fresh] = state().layers.try_emplace(layer);
    if (fresh) {
        entry->second.name = "discaro-guard" + (layer.empty() ? layer : "-" + layer);
        entry->second.realName = layer;
        stackOn(entry->second);
    }
    return entry->second.name.c_str();
}

bool ownsFile(sqlite3* connection) {
    return ask(connection, kAskOwner);
}

void expectCommit(sqlite3* connection) {
    ask(connection, kExpectCommit);
}

FileState stateOfFile(sqlite3* connection) {
    return ask<FileState>(connection, kAskState);
}

bool hasWriteAheadLog(sqlite3* connection) {
    return ask(connection, kAskLog);
}

} // namespace discaro::db
