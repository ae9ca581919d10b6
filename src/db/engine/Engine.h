#pragma once

#include "db/engine/Handle.h"
#include "db/engine/Store.h"
#include "db/engine/Transaction.h"
#include "db/schema/FileFormat.h"

#include <filesystem>
#include <memory>
#include <vector>

namespace discaro::db {

// The state of the process that DBEngine's functions work on: open files, open handles, the transaction.
class Engine {
public:
    static Engine& instance();

    // The store of a file, the same for every path to it. CatalogueReplaced when one is open whose file is no longer
    // that of the path; handles on such a one through which nobody works are closed first (DBEngine::OpenDatabase).
    std::shared_ptr<Store> open(const std::filesystem::path& path);

    void setFormat(FileFormat format) { m_format = std::move(format); }
    Transaction& transaction() { return m_transaction; }
    void beginTransaction();

    // Bound handles are those of data sources.
    void handleOpened(Handle& handle, bool bound);
    void handleClosed(const Handle& handle);

private:
    struct Opened {
        Handle* handle;
        bool bound;
    };

    std::shared_ptr<Store> known(const FileIdentity& identity);
    std::shared_ptr<Store> openNew(const std::filesystem::path& path, const FileIdentity& identity);
    void closeIdle(const Store& store);
    std::vector<std::shared_ptr<Store>> openStores();
    std::vector<const Handle*> owners() const;

    FileFormat m_format;
    std::vector<std::weak_ptr<Store>> m_stores;
    std::vector<Opened> m_handles;
    Transaction m_transaction;
};

} // namespace discaro::db
