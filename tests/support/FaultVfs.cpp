#include "support/FaultVfs.h"

#include "db/sqlite/Connection.h"

#include <sqlite3.h>

#include <climits>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <new>
#include <system_error>

namespace discaro::test {

struct FaultVfs::Layer {
    sqlite3_vfs vfs{};
    sqlite3_vfs* real = nullptr;
    sqlite3_io_methods methods{};
    Fault fault = Fault::DiskFull;
    int failAt = INT_MAX;
    bool lasting = true;
    int operations = 0;
    bool failed = false;
    int64_t space = INT64_MAX;
    int actAt = INT_MAX;
    std::function<void()> action;

    enum class On { Database, Other };
    int operate(On what = On::Other);
    int resize(sqlite3_file* file, int64_t size);
};

namespace {

struct File {
    sqlite3_file base;
    void* layer;
    bool database;
    sqlite3_file real; // the real layer's own data follows
};

File* own(sqlite3_file* file) {
    return reinterpret_cast<File*>(file);
}

sqlite3_file* real(sqlite3_file* file) {
    return &own(file)->real;
}

int close(sqlite3_file* file) {
    return real(file)->pMethods->xClose(real(file));
}

int read(sqlite3_file* file, void* to, int bytes, sqlite3_int64 at) {
    return real(file)->pMethods->xRead(real(file), to, bytes, at);
}

int fileSize(sqlite3_file* file, sqlite3_int64* size) {
    return real(file)->pMethods->xFileSize(real(file), size);
}

int lock(sqlite3_file* file, int level) {
    return real(file)->pMethods->xLock(real(file), level);
}

int unlock(sqlite3_file* file, int level) {
    return real(file)->pMethods->xUnlock(real(file), level);
}

int checkReservedLock(sqlite3_file* file, int* reserved) {
    return real(file)->pMethods->xCheckReservedLock(real(file), reserved);
}

int fileControl(sqlite3_file* file, int operation, void* argument) {
    return real(file)->pMethods->xFileControl(real(file), operation, argument);
}

int sectorSize(sqlite3_file* file) {
    return real(file)->pMethods->xSectorSize(real(file));
}

// None: a device that promises atomic writes would make SQLite leave the journal out.
int deviceCharacteristics(sqlite3_file*) {
    return 0;
}

} // namespace

int FaultVfs::Layer::operate(On what) {
    const int number = operations++;
    if (number == actAt && what == On::Other)
        action();
    if (lasting ? number < failAt : number != failAt)
        return SQLITE_OK;
    if (fault == Fault::Death)
        std::raise(SIGKILL);
    failed = true;
    return fault == Fault::DiskFull ? SQLITE_FULL : SQLITE_IOERR_WRITE;
}

// Takes from the space what the file grows by, and gives back what it shrinks by.
int FaultVfs::Layer::resize(sqlite3_file* file, int64_t size) {
    if (space == INT64_MAX)
        return SQLITE_OK;
    sqlite3_int64 before = 0;
    if (const int code = fileSize(file, &before); code != SQLITE_OK)
        return code;
    if (size - before > space) {
        failed = true;
        return SQLITE_FULL;
    }
    space -= size - before;
    return SQLITE_OK;
}

FaultVfs::FaultVfs()
    : m_layer(std::make_unique<Layer>()) {
    using Self = Layer;
    static constexpr auto on = [](sqlite3_file* file) {
        return own(file)->database ? Layer::On::Database : Layer::On::Other;
    };
    m_layer->real = sqlite3_vfs_find(nullptr);
    m_layer->vfs = *m_layer->real;
    m_layer->vfs.zName = "discaro-fault";
    m_layer->vfs.pAppData = m_layer.get();
    m_layer->vfs.szOsFile = static_cast<int>(sizeof(File)) + m_layer->real->szOsFile;
    m_layer->methods = {1,
                        close,
                        read,
                        [](sqlite3_file* file, const void* from, int bytes, sqlite3_int64 at) {
                            auto* self = static_cast<Self*>(own(file)->layer);
                            sqlite3_int64 size = 0;
                            fileSize(file, &size);
                            int code = self->operate(on(file));
                            if (code == SQLITE_OK && at + bytes > size)
                                code = self->resize(file, at + bytes);
                            return code != SQLITE_OK ? code : real(file)->pMethods->xWrite(real(file), from, bytes, at);
                        },
                        [](sqlite3_file* file, sqlite3_int64 size) {
                            auto* self = static_cast<Self*>(own(file)->layer);
                            int code = self->operate(on(file));
                            if (code == SQLITE_OK)
                                code = self->resize(file, size);
                            return code != SQLITE_OK ? code : real(file)->pMethods->xTruncate(real(file), size);
                        },
                        [](sqlite3_file* file, int) { return static_cast<Self*>(own(file)->layer)->operate(); },
                        fileSize,
                        lock,
                        unlock,
                        checkReservedLock,
                        fileControl,
                        sectorSize,
                        deviceCharacteristics,
                        nullptr,
                        nullptr,
                        nullptr,
                        nullptr,
                        nullptr,
                        nullptr};
    m_layer->vfs.xOpen = [](sqlite3_vfs* vfs, const char* path, sqlite3_file* file, int flags, int* flagsOut) {
        auto* layer = static_cast<Self*>(vfs->pAppData);
        File* opened = own(file);
        opened->base.pMethods = nullptr;
        opened->layer = layer;
        opened->database = (flags & SQLITE_OPEN_MAIN_DB) != 0;
        const int code = layer->real->xOpen(layer->real, path, &opened->real, flags, flagsOut);
        if (code == SQLITE_OK)
            opened->base.pMethods = &layer->methods;
        return code;
    };
    m_layer->vfs.xDelete = [](sqlite3_vfs* vfs, const char* path, int syncFolder) {
        auto* layer = static_cast<Self*>(vfs->pAppData);
        const int code = layer->operate();
        std::error_code missing;
        const auto size = std::filesystem::file_size(path, missing);
        if (code == SQLITE_OK && !missing && layer->space != INT64_MAX)
            layer->space += static_cast<int64_t>(size);
        return code != SQLITE_OK ? SQLITE_IOERR_DELETE : layer->real->xDelete(layer->real, path, syncFolder);
    };
    sqlite3_vfs_register(&m_layer->vfs, 0);
    db::Connection::useFileLayer(name());
}

FaultVfs::~FaultVfs() {
    db::Connection::useFileLayer({});
    sqlite3_vfs_unregister(&m_layer->vfs);
}

void FaultVfs::failAt(int operation, Fault fault, bool lasting) {
    m_layer->failAt = operation;
    m_layer->fault = fault;
    m_layer->lasting = lasting;
    m_layer->operations = 0;
    m_layer->failed = false;
    m_layer->space = INT64_MAX;
    m_layer->actAt = INT_MAX;
}

void FaultVfs::limitSpace(int64_t bytes) {
    heal();
    m_layer->space = bytes;
}

void FaultVfs::actAt(int operation, std::function<void()> action) {
    heal();
    m_layer->actAt = operation;
    m_layer->action = std::move(action);
}

void FaultVfs::heal() {
    failAt(INT_MAX, Fault::DiskFull);
}

int FaultVfs::operations() const {
    return m_layer->operations;
}

bool FaultVfs::failed() const {
    return m_layer->failed;
}

} // namespace discaro::test
