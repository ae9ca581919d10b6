#pragma once

#include "base/RuntimeError.h"

#include <memory>
#include <string>
#include <vector>

namespace discaro::db {

class Database;
class Store;

// The one transaction of the process, over all open files. Its rules stand at DBEngine. A transaction over several
// files commits them one after another; only one is ever written in practice.
class Transaction {
public:
    enum class State { None, Open, Lost };

    State state() const { return m_state; }

    // Begins on every file that can be changed; owners are the handles whose closing ends it.
    void begin(const std::vector<std::shared_ptr<Store>>& stores,
               std::vector<const Database*> owners);
    void commit();
    // Before each write: makes the file part of an open transaction. Throws TransactionLost, whose detail tells
    // what broke the transaction.
    void join(Store& store);
    // Whenever a statement fails. The first failure of its kind is what a lost transaction was lost to, also when
    // whoever ran the statement passed over it; a file that was replaced is the reason for whatever failed before.
    void failureSeen(const base::RuntimeError& error);
    // After a failed write.
    void writeFailed(Store& store, const base::RuntimeError& error);
    void handleClosed(const Database& handle);

private:
    void lose();
    void end();
    void commitAll();
    bool takesPart(const Store& store) const;
    base::RuntimeError lost() const;

    State m_state = State::None;
    std::string m_cause; // in words; empty when no statement has failed
    std::vector<std::shared_ptr<Store>> m_stores;
    std::vector<const Database*> m_owners;
};

} // namespace discaro::db
