#pragma once

#include "base/RuntimeError.h"

#include <memory>
#include <string>
#include <vector>

namespace discaro::db {

class Handle;
class Participant;

// The one transaction of the process, over all open files. Its rules stand at DBEngine. A transaction over several
// files commits them one after another; only one is ever written in practice.
class Transaction {
public:
    enum class State { None, Open, Lost };

    State state() const { return m_state; }

    // Begins on every file that can be changed; owners are the handles whose closing ends it.
    void begin(const std::vector<std::shared_ptr<Participant>>& files, std::vector<const Handle*> owners);
    void commit();
    // Before each write: makes the file part of an open transaction. Throws TransactionLost, whose detail tells
    // what broke the transaction.
    void join(Participant& file);
    // Whenever a statement fails. The first failure of its kind is what a lost transaction was lost to, also when
    // whoever ran the statement passed over it; a file that was replaced is the reason for whatever failed before.
    void failureSeen(const base::RuntimeError& error);
    // After a failed write.
    void writeFailed(Participant& file, const base::RuntimeError& error);
    void handleClosed(const Handle& handle);

private:
    void lose();
    void end();
    void commitAll();
    bool takesPart(const Participant& file) const;
    base::RuntimeError lost() const;

    State m_state = State::None;
    std::string m_cause; // in words; empty when no statement has failed
    std::vector<std::shared_ptr<Participant>> m_files;
    std::vector<const Handle*> m_owners;
};

} // namespace discaro::db
