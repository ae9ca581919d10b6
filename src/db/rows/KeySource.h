#pragma once

#include "db/rows/RowSource.h"

#include <cstdint>
#include <vector>

namespace discaro::db {

// Rows held by their numbers, collected at opening: eight bytes a row, any place reached at once. For an order, for a
// snapshot, and for a condition that an index answers out of insertion order.
class KeySource : public RowSource {
public:
    enum class Growth {
        Fixed,  // only rows added through the recordset itself come in, at the end
        Follows // rows added or deleted by anyone come and go; only without an order
    };

    KeySource(Store& store, RowQuery query, Growth growth);

    void first() override;
    void last() override;
    void next() override;
    void previous() override;
    void moveTo(int64_t index) override;
    bool find(const Criterion& criterion) override;
    int64_t count() override;
    int64_t index() override;
    void numbersAt(int64_t place, int64_t most, std::vector<int64_t>& numbers) override;
    void rowInserted(int64_t number) override;
    void rowDeleted() override;

protected:
    void readCurrent() override;

private:
    void collect();
    void collectAscending();
    void follow();
    void followDeletions();
    void append(Statement& statement);
    void standAt(size_t index);
    void standBehind(size_t index);
    bool findAscending(Statement& matches);
    bool findInOrder(Statement& matches);
    bool ascending() const { return m_query.order.empty(); }

    Growth m_growth;
    std::vector<int64_t> m_numbers;
    size_t m_index = 0; // of the current row; behind a deleted one, of the row after it
    bool m_inSequence = false;
    uint64_t m_seenInserted = 0;
    uint64_t m_seenDeleted = 0;
};

} // namespace discaro::db
