#pragma once

#include "db/dialect/Query.h"
#include "db/engine/RowWindow.h"
#include "db/engine/Store.h"
#include "db/schema/Table.h"
#include "db/value/Value.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::db {

// Which rows of a table a recordset holds, and in which order.
struct RowQuery {
    Table* table = nullptr;
    std::shared_ptr<const RecordLayout> layout;
    std::string where;           // SQL with ?1 ?2 ..., or ""
    std::vector<SortTerm> order; // empty for insertion order
    std::vector<Value> bindings;
    ConditionFacts condition;

    bool wholeTable() const { return where.empty(); }
    // " FROM table WHERE ..." with the condition, a further one, or both.
    std::string from(std::string_view further = {}) const;
    // " WHERE ..." alone, or "".
    std::string filter(std::string_view further = {}) const;
    // The number of the first parameter behind those of the condition, and the same as a placeholder.
    int nextParameter() const { return static_cast<int>(bindings.size()) + 1; }
    std::string nextPlaceholder() const { return std::string("?").append(std::to_string(nextParameter())); }
};

// A criterion of FindFirst as SQL, with the values of its placeholders, which count on from those of the query.
struct Criterion {
    std::string where;
    std::vector<Value> bindings;
};

// The rows of a recordset and the place of the current one. Moving reads rows into a window; no statement stays open
// between two calls.
class RowSource {
public:
    enum class Place { None, Before, On, After };

    RowSource(Store& store, RowQuery query);
    virtual ~RowSource() = default;
    RowSource(const RowSource&) = delete;
    RowSource& operator=(const RowSource&) = delete;

    Place place() const { return m_place; }
    const RowQuery& query() const { return m_query; }
    // The row number of the current row, also of one just deleted. Only on a row.
    int64_t number() const { return m_number; }

    // The current row's cell as it is stored now; its text lies in window(). Valid until the next call. Throws
    // NoCurrentRecord, RecordGone.
    const Cell& cell(size_t field);
    const RowWindow& window() const { return m_window; }

    // The moves of a recordset. A failed one leaves the place as it was.
    virtual void first() = 0;
    virtual void last() = 0;
    virtual void next() = 0;
    virtual void previous() = 0;
    virtual void moveTo(int64_t index) = 0;
    virtual bool find(const Criterion& criterion) = 0;
    // The number of rows, and the 0-based place of the current one, -1 when there is none.
    virtual int64_t count() = 0;
    virtual int64_t index() = 0;
    // Appends the row numbers from a 0-based place on, up to so many; the current row stays what it is.
    virtual void numbersAt(int64_t place, int64_t most, std::vector<int64_t>& numbers) = 0;

    // What the recordset itself has just done. rowChanged is told whether the window was fresh before: then only the
    // current row in it has become old.
    virtual void rowInserted(int64_t) {}
    virtual void rowChanged(bool wasFresh);
    virtual void rowDeleted() { m_gone = true; }
    // Whether the rows in the window are as they are stored.
    bool fresh() const { return m_windowState == m_query.table->changed; }

protected:
    void requireRow() const;
    void leave(Place place) { m_place = place; }
    // Makes a row of the window the current one; makes a row the current one without reading it yet.
    void stand(size_t windowRow);
    void standUnread(int64_t number);
    bool gone() const { return m_gone; }
    // Whether there is a current row and nobody has deleted it.
    bool exists();
    // Steps to the next row of the window, if it has one that is still right.
    bool advanceInWindow();
    // Fills the window anew from a bound statement with up to so many rows; false, with the window as it was, for
    // none. An error at the first row leaves the window as it was, too. One row comes with all its fields, more with
    // those that have been asked for so far.
    bool fill(Statement& statement, size_t rows);
    // The same by row numbers; rows that are gone are left out.
    bool fill(std::span<const int64_t> numbers);
    // Reads the current row, and perhaps some behind it, into the window and stands on it. Throws RecordGone.
    virtual void readCurrent();
    // How many rows to read at once: more each time while all that was read is used.
    size_t readAhead();
    void stopReadingAhead() { m_ahead = 1; }
    void bindQuery(Statement& statement) const { statement.bindAll(m_query.bindings); }
    void bindCriterion(Statement& statement, const Criterion& criterion) const;
    // The rows of the query that also meet a condition on rowid, whose placeholder is bound to the number.
    int64_t countWhere(std::string_view further, int64_t number);
    int64_t countAll();

    Store& m_store;
    const RowQuery m_query;

private:
    void refresh(size_t field);
    void emptyWindow(size_t rows);
    Statement& exactStatement();

    RowWindow m_window;
    uint64_t m_windowState; // the table's changes when the window was read
    size_t m_at = 0;        // the current row in the window
    Place m_place = Place::None;
    int64_t m_number = 0;
    bool m_gone = false;  // deleted through this recordset
    bool m_stale = false; // the current row alone has changed since the window was read
    uint64_t m_used = 0;  // the fields that have been asked for
    size_t m_ahead = 1;
    std::shared_ptr<Statement> m_exact;
};

} // namespace discaro::db
