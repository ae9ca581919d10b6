#include "db/Recordset.h"

#include "db/dialect/Dialect.h"
#include "db/rows/OpenRows.h"
#include "db/rows/RowPage.h"
#include "db/rows/RowSource.h"
#include "db/rows/RowWriter.h"

#include <bit>

namespace discaro::db {

using base::ErrorNumber;
using base::RuntimeError;

namespace {

// The writer of the whole table is shared; one for some of its fields belongs to the recordset.
std::shared_ptr<RowWriter> writerFor(Store& store, const RowQuery& query) {
    if (query.table->definition == nullptr)
        return nullptr;
    if (query.layout != query.table->layout)
        return std::make_shared<RowWriter>(store, *query.table, query.layout);
    if (query.table->writer == nullptr)
        query.table->writer = std::make_shared<RowWriter>(store, *query.table, query.layout);
    return query.table->writer;
}

} // namespace

Recordset::Recordset(Key, std::shared_ptr<RecordsetList> list, std::shared_ptr<Store> store,
                     std::unique_ptr<RowSource> rows, RecordsetType type)
    : m_list(std::move(list))
    , m_store(std::move(store))
    , m_row(std::move(rows))
    , m_writer(writerFor(*m_store, m_row.rows->query()))
    , m_type(type) {
    m_fields.reserve(m_row.layout->size());
    for (size_t position = 0; position < m_row.layout->size(); ++position)
        m_fields.push_back(Field(m_row, static_cast<int>(position)));
    m_row.rows->first();
    m_list->open.push_back(this);
}

Recordset::~Recordset() {
    Close();
}

void Recordset::Close() {
    if (!IsOpen())
        return;
    m_page.reset();
    m_row.close();
    m_writer.reset();
    std::erase(m_list->open, this);
    m_store.reset();
    m_list.reset();
}

void Recordset::requireOpen() const {
    if (!IsOpen())
        throw RuntimeError(ErrorNumber::HandleClosed);
}

bool Recordset::isAggregate() const {
    return m_writer == nullptr;
}

bool Recordset::Updatable() const {
    return IsOpen() && m_type != RecordsetType::Snapshot && m_store->updatable();
}

void Recordset::requireUpdatable() const {
    requireOpen();
    if (m_type == RecordsetType::Snapshot)
        throw RuntimeError(ErrorNumber::NotAllowed, "the recordset is a snapshot");
    if (!m_store->updatable())
        throw RuntimeError(ErrorNumber::CatalogueReadOnly, m_store->path());
}

void Recordset::announce() const {
    if (repositioned)
        repositioned();
}

// Editing

void Recordset::AddNew() {
    requireUpdatable();
    m_row.edit.begin(EditBuffer::Kind::Add, m_row.layout->size());
    announce();
}

void Recordset::Edit() {
    requireUpdatable();
    m_row.rows->cell(0); // there is a row, and it still exists
    m_row.edit.begin(EditBuffer::Kind::Change, m_row.layout->size());
}

void Recordset::Update() {
    requireUpdatable();
    if (m_row.edit.active() && beforeUpdate)
        beforeUpdate();
    requireOpen();
    if (!m_row.edit.active())
        throw RuntimeError(ErrorNumber::NoEditInProgress);
    if (m_row.edit.kind() == EditBuffer::Kind::Add)
        insertRow();
    else
        changeRow();
    m_row.edit.end();
    announce();
}

void Recordset::insertRow() {
    const int64_t number = m_writer->insert(m_row.edit);
    m_row.rows->rowInserted(number);
}

void Recordset::changeRow() {
    const uint64_t mask = changedFields();
    const bool fresh = m_row.rows->fresh();
    const uint64_t& changed = m_row.rows->query().table->changed;
    const uint64_t before = changed;
    if (!m_writer->update(m_row.rows->number(), m_row.edit, mask))
        throw RuntimeError(ErrorNumber::RecordGone);
    if (mask != 0)
        m_row.rows->rowChanged(fresh && changed == before + 1); // more is not of this row alone
}

// Bound controls write all they show; what is the same already is left alone, and its indexes with it.
uint64_t Recordset::changedFields() {
    uint64_t mask = m_row.edit.mask();
    for (uint64_t rest = mask; rest != 0; rest &= rest - 1) {
        const auto field = static_cast<size_t>(std::countr_zero(rest));
        const Cell& cell = m_row.rows->cell(field);
        if (m_row.edit.equals(field, m_row.rows->window(), cell))
            mask &= ~(uint64_t{1} << field);
    }
    return mask;
}

void Recordset::CancelUpdate() {
    requireOpen();
    if (!m_row.edit.active())
        return;
    m_row.edit.end();
    announce();
}

void Recordset::Delete() {
    requireUpdatable();
    m_row.rows->cell(0);
    if (!m_writer->remove(m_row.rows->number()))
        throw RuntimeError(ErrorNumber::RecordGone);
    m_row.edit.end();
    m_row.rows->rowDeleted();
}

// Moves

void Recordset::move(void (RowSource::*step)()) {
    requireOpen();
    (*m_row.rows.*step)();
    m_row.edit.end();
    announce();
}

void Recordset::MoveFirst() {
    move(&RowSource::first);
}

void Recordset::MoveLast() {
    move(&RowSource::last);
}

void Recordset::MoveNext() {
    move(&RowSource::next);
}

void Recordset::MovePrevious() {
    move(&RowSource::previous);
}

void Recordset::MoveTo(int64_t position) {
    requireOpen();
    m_row.rows->moveTo(position);
    m_row.edit.end();
    announce();
}

void Recordset::FindFirst(std::string_view criterion) {
    requireOpen();
    if (isAggregate())
        throw RuntimeError(ErrorNumber::NotAllowed);
    const RowQuery& query = m_row.rows->query();
    Query parsed = parseCriterion(criterion, *query.table->definition, query.bindings.size());
    m_noMatch = !m_row.rows->find({std::move(parsed.where), std::move(parsed.bindings)});
    if (m_noMatch)
        return;
    m_row.edit.end();
    announce();
}

bool Recordset::Eof() const {
    requireOpen();
    const RowSource::Place place = m_row.rows->place();
    return place == RowSource::Place::After || place == RowSource::Place::None;
}

bool Recordset::Bof() const {
    requireOpen();
    const RowSource::Place place = m_row.rows->place();
    return place == RowSource::Place::Before || place == RowSource::Place::None;
}

int64_t Recordset::RecordCount() {
    requireOpen();
    return m_row.rows->count();
}

int64_t Recordset::AbsolutePosition() {
    requireOpen();
    return m_row.rows->index();
}

double Recordset::PercentPosition() {
    requireOpen();
    if (m_row.rows->place() == RowSource::Place::After)
        return 100;
    const int64_t index = m_row.rows->index();
    const int64_t count = index < 0 ? 0 : m_row.rows->count();
    return count == 0 ? 0 : 100.0 * static_cast<double>(index) / static_cast<double>(count);
}

int64_t Recordset::RowNumber() const {
    requireOpen();
    if (m_row.rows->place() != RowSource::Place::On)
        throw RuntimeError(ErrorNumber::NoCurrentRecord);
    return m_row.rows->number();
}

// Order

void Recordset::SetSort(std::string_view order) {
    requireOpen();
    if (isAggregate())
        throw RuntimeError(ErrorNumber::NotAllowed);
    m_sort = parseSort(order, *m_row.rows->query().table->definition);
}

std::unique_ptr<Recordset> Recordset::OpenRecordset() {
    requireOpen();
    if (isAggregate())
        throw RuntimeError(ErrorNumber::NotAllowed);
    RowQuery query = m_row.rows->query();
    query.order = m_sort;
    auto rows = openRows(*m_store, std::move(query), m_type == RecordsetType::Snapshot);
    return std::make_unique<Recordset>(Key(), m_list, m_store, std::move(rows), m_type);
}

// Fields

Value Recordset::ValueAt(int64_t place, int field) {
    requireOpen();
    if (isAggregate())
        throw RuntimeError(ErrorNumber::NotAllowed);
    const FieldType type = Fields(field).Type();
    if (m_page == nullptr)
        m_page = std::make_unique<RowPage>(*m_store, *m_row.rows);
    return valueOf(m_page->window(), m_page->cell(place, static_cast<size_t>(field)), type);
}

Field& Recordset::Fields(std::string_view name) {
    const int position = m_row.layout->definition.find(name);
    if (position < 0)
        throw RuntimeError(ErrorNumber::UnknownField, name);
    return m_fields[static_cast<size_t>(position)];
}

Field& Recordset::Fields(int position) {
    if (position < 0 || position >= FieldCount())
        throw RuntimeError(ErrorNumber::UnknownField, std::to_string(position));
    return m_fields[static_cast<size_t>(position)];
}

} // namespace discaro::db
