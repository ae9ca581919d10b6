#include "db/engine/SaveGroup.h"

#include "db/sqlite/SqliteError.h"

#include <utility>

namespace discaro::db {

using base::RuntimeError;

namespace {

// True within its scope.
class Flagged {
public:
    explicit Flagged(bool& flag)
        : m_flag(flag) {
        flag = true;
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

bool SaveGroup::takes(const Participant& file) const {
    return !m_oneByOne && (m_file == nullptr || m_file.get() == &file);
}

bool SaveGroup::save(Participant& file, RowSaver& saver, int64_t number, const EditBuffer& row, uint64_t mask) {
    if (m_saves.size() >= m_most)
        giveWay();
    if (m_oneByOne)
        return saver.write(number, row, mask);
    if (m_file == nullptr) {
        file.begin();
        m_file = file.shared_from_this();
    }
    try {
        const Flagged saving(m_saving);
        const bool found = saver.write(number, row, mask);
        if (found)
            m_saves.push_back({saver.shared_from_this(), number, mask, row.values(mask)});
        return found;
    } catch (const RuntimeError& error) {
        if (!breaksTransaction(error) && file.inTransaction())
            throw;
    }
    doOneByOne();
    return saver.write(number, row, mask);
}

void SaveGroup::giveWay() {
    if (m_file == nullptr || m_saving)
        return;
    if (base::skipErrors([this] { m_file->commit(); }))
        forget();
    else
        doOneByOne();
}

void SaveGroup::doOneByOne() {
    m_oneByOne = true;
    m_file->rollback();
    const auto file = std::exchange(m_file, nullptr);
    EditBuffer row;
    for (const Save& save : std::exchange(m_saves, {}))
        try {
            row.put(save.mask, save.values);
            if (!save.saver->write(save.number, row, save.mask))
                throw RuntimeError(base::ErrorNumber::RecordGone);
        } catch (const RuntimeError& error) {
            if (!m_failure)
                m_failure = error;
        }
}

void SaveGroup::forget() {
    m_saves.clear();
    m_file.reset();
}

} // namespace discaro::db
