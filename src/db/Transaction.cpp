#include "db/Transaction.h"

#include "db/Engine.h"
#include "db/SqliteError.h"
#include "db/Store.h"

#include <algorithm>

namespace discaro::db {

using base::ErrorNumber;
using base::RuntimeError;

void Transaction::begin(const std::vector<std::shared_ptr<Store>>& stores,
                        std::vector<const Database*> owners) {
    if (m_state != State::None)
        throw RuntimeError(ErrorNumber::TransactionOpen);
    if (stores.empty())
        throw RuntimeError(ErrorNumber::HandleClosed);
    try {
        for (const auto& store : stores)
            if (store->updatable() || stores.size() == 1) {
                store->begin();
                m_stores.push_back(store);
            }
    } catch (const RuntimeError&) {
        end();
        throw;
    }
    if (m_stores.empty())
        throw RuntimeError(ErrorNumber::CatalogueReadOnly);
    m_owners = std::move(owners);
    m_state = State::Open;
}

void Transaction::commit() {
    if (m_state == State::None)
        throw RuntimeError(ErrorNumber::NoTransaction);
    for (const auto& store : m_stores)
        if (!store->connection().inTransaction())
            m_state = State::Lost;
    if (m_state == State::Lost) {
        const RuntimeError error = lost();
        end();
        throw error;
    }
    commitAll();
}

void Transaction::commitAll() {
    try {
        while (!m_stores.empty()) {
            m_stores.back()->commit();
            m_stores.pop_back();
        }
    } catch (const RuntimeError& error) {
        if (!error.is(ErrorNumber::CatalogueLocked))
            end();
        throw;
    }
    end();
}

void Transaction::join(Store& store) {
    if (m_state == State::None)
        return;
    if (m_state == State::Open && takesPart(store) && !store.connection().inTransaction())
        lose();
    if (m_state == State::Lost)
        throw lost();
    if (takesPart(store))
        return;
    store.begin();
    m_stores.push_back(Engine::instance().shared(store));
}

bool Transaction::takesPart(const Store& store) const {
    return std::ranges::any_of(m_stores, [&](const auto& each) { return each.get() == &store; });
}

RuntimeError Transaction::lost() const {
    return RuntimeError(ErrorNumber::TransactionLost, m_cause);
}

void Transaction::failureSeen(const RuntimeError& error) {
    const bool first = m_cause.empty() || error.is(ErrorNumber::CatalogueReplaced);
    if (m_state == State::Open && first && breaksTransaction(error))
        m_cause = error.description();
}

void Transaction::writeFailed(Store& store, const RuntimeError& error) {
    if (m_state != State::Open)
        return;
    failureSeen(error);
    if (breaksTransaction(error) || (takesPart(store) && !store.connection().inTransaction()))
        lose();
}

void Transaction::handleClosed(const Database& handle) {
    if (std::erase(m_owners, &handle) > 0 && m_owners.empty())
        end();
}

void Transaction::lose() {
    for (const auto& store : m_stores)
        store->rollback();
    m_state = State::Lost;
}

// What is not committed by now is undone. The files may close here, with their last holder.
void Transaction::end() {
    for (const auto& store : m_stores)
        store->rollback();
    m_stores.clear();
    m_owners.clear();
    m_cause.clear();
    m_state = State::None;
}

} // namespace discaro::db
