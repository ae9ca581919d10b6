#pragma once

#include "db/Field.h"
#include "db/rows/CurrentRow.h"
#include "db/schema/Definitions.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::db {

class Database;
class Recordset;
class RowPage;
class RowWriter;
class Store;

// The recordsets that are open through one handle. Whoever holds the list holds the handle.
struct RecordsetList {
    std::vector<Recordset*> open;
};

// Table: opened from a table's name on a Database. Dynaset: opened from a select, or through a data
// source. Both can be changed and see what any handle of the process saves, new rows at their end.
// Snapshot: an aggregate, or a data source that only reads; it can't be changed and holds the row
// numbers of the moment when it was opened.
enum class RecordsetType { Table = 0, Dynaset = 1, Snapshot = 2 };

// A set of rows and a position in it: on a row, before the first (Bof) or behind the last (Eof).
// Opening stands on the first row; an empty set is at Bof and Eof. Order is insertion order unless
// the query has an "order by"; a sorted set holds its row numbers from the moment of opening, and
// rows added through it come at its end.
//
// One thread. A recordset keeps its Database alive. After Close, or after its Database was closed,
// every operation but Close throws HandleClosed. Errors are base::RuntimeError; a failed operation
// leaves position and edit as they were unless it says otherwise. Any operation may also fail with what the file gives:
// CatalogueDamaged, StorageFailure, CatalogueLocked, DiskFull, OutOfMemory, and CatalogueReplaced where it writes.
class Recordset {
public:
    // Only a Database opens recordsets, and a recordset its sorted copy.
    class Key {
        friend class Database;
        friend class Recordset;
        Key() = default;
    };
    Recordset(Key, std::shared_ptr<RecordsetList> list, std::shared_ptr<Store> store, std::unique_ptr<RowSource> rows,
              RecordsetType type);
    ~Recordset();
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    // Begins a new row, dropping an edit in progress. The current row stays what it is. NotAllowed
    // for a snapshot.
    void AddNew();
    // Begins a change of the current row, dropping an edit in progress. NoCurrentRecord,
    // RecordGone, NotAllowed.
    void Edit();
    // Saves the row begun with AddNew or Edit; only changed fields are written. The current row is
    // the one it was before AddNew. Throws NoEditInProgress, RuleViolated, RecordGone,
    // CatalogueReadOnly, CatalogueReplaced, TransactionLost; the edit then stays in progress and may
    // be corrected and saved again.
    void Update();
    // Drops the edit in progress, if there is one.
    void CancelUpdate();
    bool EditInProgress() const { return m_row.edit.active(); }
    // Deletes the current row, with its cascades. The position stays where the row was: reading
    // gives RecordGone, MoveNext goes to the row behind it. NoCurrentRecord, RecordGone,
    // NotAllowed, CatalogueReadOnly.
    void Delete();

    // Each move drops an edit in progress. First and last of an empty set are Bof and Eof, which is
    // no error. Beyond Eof, and before Bof, NoCurrentRecord. MoveLast reaches the row added last, as
    // far as it meets the recordset's condition.
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    // To the row at a 0-based place; NoCurrentRecord when there is none. At once in a snapshot or
    // sorted set, else a walk from the nearest known place.
    void MoveTo(int64_t position);
    // To the first row, from the beginning, that meets the criterion: a "where" clause without the
    // word. Sets NoMatch; without a match, or when it throws SyntaxError or UnknownField, the
    // position stays.
    void FindFirst(std::string_view criterion);
    bool NoMatch() const { return m_noMatch; }
    bool Eof() const;
    bool Bof() const;

    // The number of rows, exact at any time.
    int64_t RecordCount();
    // The 0-based place of the current row, -1 where there is none; the same in percent of the
    // count, 0 to 100.
    int64_t AbsolutePosition();
    double PercentPosition();
    // The row number under which the store keeps the current row; NoCurrentRecord where there is
    // none.
    int64_t RowNumber() const;

    // Sets the order of the copy that OpenRecordset opens: fields in brackets, "desc" behind one,
    // commas between; empty for none. Throws SyntaxError, UnknownField. This recordset itself stays
    // as it is.
    void SetSort(std::string_view order);
    // A new recordset over the same rows in the order that SetSort has set, of the same Type.
    std::unique_ptr<Recordset> OpenRecordset();

    RecordsetType Type() const { return m_type; }
    // Whether AddNew, Edit and Delete are possible at all: no snapshot, and not on a read-only
    // catalogue.
    bool Updatable() const;
    // Drops an edit in progress and ends the recordset. Closing twice is no error.
    void Close();
    bool IsOpen() const { return m_store != nullptr; }

    int FieldCount() const { return static_cast<int>(m_fields.size()); }
    // The value of a field in the row at a 0-based place, read beside the current row: position and edit stay, nothing
    // is announced, and what an edit in progress has set does not show. The rows around come along, so that a grid may
    // ask cell by cell. A page costs milliseconds at any place of a million rows; only where a set that is neither
    // sorted nor a snapshot has a condition, or a table has gaps, the first look goes through the row numbers.
    // NoCurrentRecord where there is no such place, RecordGone for a row that has been deleted, UnknownField,
    // NotAllowed for an aggregate.
    Value ValueAt(int64_t place, int field);

    // By name, whatever the capitals, or by position from 0. UnknownField. The reference lives as
    // long as the recordset does.
    Field& Fields(std::string_view name);
    Field& Fields(int position);
    Field& operator()(std::string_view name) { return Fields(name); }

    // For a data source and its bound controls. The first runs at the start of Update and may
    // assign fields; the second runs whenever the row that Field::Value shows may be another one:
    // after a move, AddNew, Update, CancelUpdate.
    std::function<void()> beforeUpdate;
    std::function<void()> repositioned;

private:
    void requireOpen() const;
    void requireUpdatable() const;
    void move(void (RowSource::*step)());
    void announce() const;
    void insertRow();
    void changeRow();
    uint64_t changedFields();
    bool isAggregate() const;

    std::shared_ptr<RecordsetList> m_list;
    std::shared_ptr<Store> m_store;
    CurrentRow m_row;
    std::unique_ptr<RowPage> m_page; // once rows have been read by place
    std::shared_ptr<RowWriter> m_writer;
    std::vector<Field> m_fields;
    std::vector<SortTerm> m_sort;
    RecordsetType m_type;
    bool m_noMatch = false;
};

} // namespace discaro::db
