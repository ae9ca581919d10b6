#pragma once

#include "db/rows/RowSource.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace discaro::db {

// The rows of a table, or those that meet a condition, in insertion order: a position by row number that reads ahead
// as it goes. Opening costs nothing, memory does not grow with the table, and rows added by anyone come at the end.
// Not for a condition that an index answers out of insertion order: each read ahead would search the whole table.
class CursorSource : public RowSource {
public:
    CursorSource(Store& store, RowQuery query);

    void first() override;
    void last() override;
    void next() override;
    void previous() override;
    void moveTo(int64_t index) override;
    bool find(const Criterion& criterion) override;
    int64_t count() override;
    int64_t index() override;
    void numbersAt(int64_t place, int64_t most, std::vector<int64_t>& numbers) override;
    void rowChanged(bool wasFresh) override;

private:
    bool readForward(int64_t from, size_t rows);
    bool readBackward(int64_t from);
    bool jumpTo(int64_t index);
    void step(int64_t rows);
    std::optional<int64_t> firstOfDense();
    void learnMarks();

    // The place of the current row, remembered while nothing happens in front of it.
    uint64_t indexState() const;
    bool indexKnown() const { return m_index >= 0 && m_indexState == indexState(); }
    void rememberIndex(int64_t index);

    std::shared_ptr<Statement> m_forward;
    std::shared_ptr<Statement> m_backward;
    int64_t m_index = -1;
    uint64_t m_indexState = 0;
    int64_t m_count = -1;
    uint64_t m_countState = 0;
    std::vector<int64_t> m_marks; // the number of every so many-th row: places are counted from the nearest
    uint64_t m_marksState = 0;
};

} // namespace discaro::db
