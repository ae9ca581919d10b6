#include "db/SaveGroup.h"

#include "db/Engine.h"
#include "db/RowWriter.h"
#include "db/SqliteError.h"
#include "db/Store.h"

#include <utility>

namespace discaro::db {

using base::RuntimeError;

namespace {

// True within its scope.
class Flagged {
public:
    explicit Flagged(bool& flag)
        : m_flag(flag) {
        m_flag = true;
    }
    ~Flagged() { m_flag = false; }
    Flagged(const Flagged&) = delete;
    Flagged& operator=(const Flagged&) = delete;

private:
    bool& m_flag;
};

SaveGroup*& inForce() {
    static SaveGroup* group = nullptr;
    return group;
}

} // namespace

SaveGroup* SaveGroup::current() {
    return inForce();
}

SaveGroup::SaveGroup(size_t most)
    : m_most(most) {
    if (inForce() != nullptr)
        return;
    inForce() = this;
    m_inForce = true;
}

SaveGroup::~SaveGroup() {
    giveWay();
    if (m_inForce)
        inForce() = nullptr;
}

void SaveGroup::End() {
    giveWay();
    if (const auto failure = std::exchange(m_failure, std::nullopt))
        throw RuntimeError(*failure);
}

bool SaveGroup::takes(const Store& store) const {
    return Engine::instance().transaction().state() == Transaction::State::None && !m_oneByOne &&
           (m_store == nullptr || m_store.get() == &store);
}

void SaveGroup::begin(Store& store) {
    store.begin();
    m_store = Engine::instance().shared(store);
}

bool SaveGroup::save(Store& store, RowWriter& writer, int64_t number, const EditBuffer& row,
                     uint64_t mask) {
    if (m_saves.size() >= m_most)
        giveWay();
    if (m_oneByOne)
        return writer.write(number, row, mask);
    if (m_store == nullptr)
        begin(store);
    try {
        const Flagged saving(m_saving);
        const bool found = writer.write(number, row, mask);
        if (found)
            m_saves.push_back({writer.shared_from_this(), number, mask, row.values(mask)});
        return found;
    } catch (const RuntimeError& error) {
        if (!breaksTransaction(error) && store.connection().inTransaction())
            throw;
    }
    doOneByOne();
    return writer.write(number, row, mask);
}

void SaveGroup::giveWay() {
    if (m_store == nullptr || m_saving)
        return;
    if (base::skipErrors([this] { m_store->commit(); }))
        forget();
    else
        doOneByOne();
}

void SaveGroup::doOneByOne() {
    m_oneByOne = true;
    m_store->rollback();
    const auto store = std::exchange(m_store, nullptr);
    EditBuffer row;
    for (const Save& save : std::exchange(m_saves, {}))
        try {
            row.put(save.mask, save.values);
            if (!save.writer->write(save.number, row, save.mask))
                throw RuntimeError(base::ErrorNumber::RecordGone);
        } catch (const RuntimeError& error) {
            if (!m_failure)
                m_failure = error;
        }
}

void SaveGroup::forget() {
    m_saves.clear();
    m_store.reset();
}

} // namespace discaro::db
