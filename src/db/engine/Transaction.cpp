#include "db/engine/Transaction.h"

#include "db/engine/Participant.h"
#include "db/sqlite/SqliteError.h"

#include <algorithm>

namespace discaro::db {

using base::ErrorNumber;
using base::RuntimeError;

void Transaction::begin(const std::vector<std::shared_ptr<Participant>>& files, std::vector<const Handle*> owners) {
    if (m_state != State::None)
        throw RuntimeError(ErrorNumber::TransactionOpen);
    if (files.empty())
        throw RuntimeError(ErrorNumber::HandleClosed);
    try {
        for (const auto& file : files)
            if (file->updatable() || files.size() == 1) {
                file->begin();
                m_files.push_back(file);
            }
    } catch (const RuntimeError&) {
        end();
        throw;
    }
    if (m_files.empty())
        throw RuntimeError(ErrorNumber::CatalogueReadOnly);
    m_owners = std::move(owners);
    m_state = State::Open;
}

void Transaction::commit() {
    if (m_state == State::None)
        throw RuntimeError(ErrorNumber::NoTransaction);
    for (const auto& file : m_files)
        if (!file->inTransaction())
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
        while (!m_files.empty()) {
            m_files.back()->commit();
            m_files.pop_back();
        }
    } catch (const RuntimeError&) {
        end();
        throw;
    }
    end();
}

void Transaction::join(Participant& file) {
    if (m_state == State::None)
        return;
    if (m_state == State::Open && takesPart(file) && !file.inTransaction())
        lose();
    if (m_state == State::Lost)
        throw lost();
    if (takesPart(file))
        return;
    file.begin();
    m_files.push_back(file.shared_from_this());
}

bool Transaction::takesPart(const Participant& file) const {
    return std::ranges::any_of(m_files, [&](const auto& each) { return each.get() == &file; });
}

RuntimeError Transaction::lost() const {
    return RuntimeError(ErrorNumber::TransactionLost, m_cause);
}

void Transaction::failureSeen(const RuntimeError& error) {
    const bool first = m_cause.empty() || error.is(ErrorNumber::CatalogueReplaced);
    if (m_state == State::Open && first && breaksTransaction(error))
        m_cause = error.description();
}

void Transaction::writeFailed(Participant& file, const RuntimeError& error) {
    if (m_state != State::Open)
        return;
    failureSeen(error);
    if (breaksTransaction(error) || (takesPart(file) && !file.inTransaction()))
        lose();
}

void Transaction::handleClosed(const Handle& handle) {
    if (std::erase(m_owners, &handle) > 0 && m_owners.empty())
        end();
}

void Transaction::lose() {
    for (const auto& file : m_files)
        file->rollback();
    m_state = State::Lost;
}

// What is not committed by now is undone. The files may close here, with their last holder.
void Transaction::end() {
    for (const auto& file : m_files)
        file->rollback();
    m_files.clear();
    m_owners.clear();
    m_cause.clear();
    m_state = State::None;
}

} // namespace discaro::db
