#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace discaro::test {

// A file layer for SQLite that passes everything on to the system's own and can fail: every write, synchronisation, cut
// and deletion of a file counts as one operation, and from a chosen one on they fail, or the process dies. Registered
// under name() while it lives, and all files that the store opens lie on it; only one may live at a time.
// Synchronisations are counted and not done: no test cuts the power, and they take long.
class FaultVfs {
public:
    enum class Fault { DiskFull, WriteError, Death };

    FaultVfs();
    ~FaultVfs();
    FaultVfs(const FaultVfs&) = delete;
    FaultVfs& operator=(const FaultVfs&) = delete;

    static std::string name() { return "discaro-fault"; }

    // Counts operations from 0 again; the one of that number fails, and with `lasting` all after it.
    void failAt(int operation, Fault fault, bool lasting = true);
    // From now on files may grow by this many bytes together; beyond that the disk is full until some shrink or go.
    void limitSpace(int64_t bytes);
    // Nothing fails, but before the operation of that number, counted from 0 again, the action runs, as if another
    // program came in between. A database's own writes and cuts are left out: those nobody comes in between.
    void actAt(int operation, std::function<void()> action);
    // Nothing fails any more.
    void heal();
    // Operations since failAt or heal.
    int operations() const;
    // Whether any has failed since then.
    bool failed() const;

private:
    struct Layer;
    std::unique_ptr<Layer> m_layer;
};

} // namespace discaro::test
