#include "db/engine/Engine.h"

#include "base/RuntimeError.h"
#include "db/engine/SaveGroup.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace discaro::db {

using base::ErrorNumber;
using base::RuntimeError;

namespace {

[[noreturn]] void refuse(int error, const std::filesystem::path& path) {
    const bool missing = error == ENOENT || error == ENOTDIR;
    throw RuntimeError(missing ? ErrorNumber::FileMissing : ErrorNumber::StorageFailure, path.string());
}

FileIdentity identityOf(const std::filesystem::path& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0)
        refuse(errno, path);
    if (!S_ISREG(status.st_mode))
        throw RuntimeError(ErrorNumber::NotACatalogue, path.string());
    return {status.st_dev, status.st_ino};
}

bool names(const std::filesystem::path& path, const FileIdentity& file) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && FileIdentity{status.st_dev, status.st_ino} == file;
}

} // namespace

// Never destroyed: handles in static variables may close after any other static object is gone.
Engine& Engine::instance() {
    static Engine* const engine = std::make_unique<Engine>().release();
    return *engine;
}

// Under the name of an open file there may be another by now, beside the journal of the first.
std::shared_ptr<Store> Engine::open(const std::filesystem::path& path) {
    const std::string name = path.lexically_normal().string();
    const auto isLost = [&](const std::shared_ptr<Store>& store) {
        return store->hasName(name) && !(names(path, store->identity()) && store->ownsFile());
    };
    for (const auto& store : openStores())
        if (isLost(store))
            closeIdle(*store);
    if (std::ranges::any_of(openStores(), isLost))
        throw RuntimeError(ErrorNumber::CatalogueReplaced, name);
    const FileIdentity identity = identityOf(path);
    auto store = known(identity);
    if (store == nullptr)
        store = openNew(path, identity);
    store->requireFile();
    store->addName(name);
    return store;
}

// Handles that nobody works through do not stand in the way of the file that has taken the place of theirs.
void Engine::closeIdle(const Store& store) {
    std::vector<Handle*> ofStore;
    for (const Opened& opened : m_handles) {
        if (opened.handle->store().get() != &store)
            continue;
        if (opened.bound || !opened.handle->idle())
            return;
        ofStore.push_back(opened.handle);
    }
    if (m_transaction.state() == Transaction::State::None)
        for (Handle* handle : ofStore)
            handle->Close();
}

std::shared_ptr<Store> Engine::known(const FileIdentity& identity) {
    for (auto& store : openStores())
        if (store->identity() == identity)
            return store;
    return nullptr;
}

std::shared_ptr<Store> Engine::openNew(const std::filesystem::path& path, const FileIdentity& identity) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(path, error);
    if (error)
        refuse(error.value(), path);
    for (const auto& store : openStores())
        if (store->path() == real)
            throw RuntimeError(ErrorNumber::CatalogueReplaced, real.string());
    auto store = std::make_shared<Store>(real.string(), identity, m_format, m_transaction);
    if (!names(real, identity))
        throw RuntimeError(ErrorNumber::CatalogueReplaced, real.string());
    m_stores.push_back(store);
    return store;
}

std::vector<std::shared_ptr<Store>> Engine::openStores() {
    std::erase_if(m_stores, [](const auto& store) { return store.expired(); });
    std::vector<std::shared_ptr<Store>> stores;
    for (const auto& store : m_stores)
        stores.push_back(store.lock());
    return stores;
}

void Engine::beginTransaction() {
    if (SaveGroup* const group = SaveGroup::current())
        group->giveWay();
    const auto stores = openStores();
    m_transaction.begin({stores.begin(), stores.end()}, owners());
}

std::vector<const Handle*> Engine::owners() const {
    const bool anyBound = std::ranges::any_of(m_handles, &Opened::bound);
    std::vector<const Handle*> owners;
    for (const Opened& opened : m_handles)
        if (opened.bound || !anyBound)
            owners.push_back(opened.handle);
    return owners;
}

void Engine::handleOpened(Handle& handle, bool bound) {
    m_handles.push_back({&handle, bound});
}

void Engine::handleClosed(const Handle& handle) {
    std::erase_if(m_handles, [&](const Opened& each) { return each.handle == &handle; });
    m_transaction.handleClosed(handle);
}

} // namespace discaro::db
