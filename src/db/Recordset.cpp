#include "db/Recordset.h"

#include "db/Database.h"
#include "db/Dialect.h"
#include "db/RowPage.h"
#include "db/RowSource.h"
#include "db/RowWriter.h"

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

Recordset::Recordset(Key, std::shared_ptr<Database> database, std::shared_ptr<Store> store,
                     std::unique_ptr<RowSource> rows, RecordsetType type)
    : m_database(std::move(database))
    , m_store(std::move(store))
    , m_rows(std::move(rows))
    , m_layout(m_rows->query().layout)
    , m_writer(writerFor(*m_store, m_rows->query()))
    , m_type(type) {
    m_fields.reserve(m_layout->size());
    for (size_t position = 0; position < m_layout->size(); ++position)
        m_fields.push_back(Field(*this, static_cast<int>(position)));
    m_rows->first();
    m_database->enrol(*this);
}

Recordset::~Recordset() {
    Close();
}

void Recordset::Close() {
    if (!IsOpen())
        return;
    m_edit.end();
    m_page.reset();
    m_rows.reset();
    m_writer.reset();
    m_database->discharge(*this);
    m_store.reset();
    m_database.reset();
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
    m_edit.begin(EditBuffer::Kind::Add, m_layout->size());
    announce();
}

void Recordset::Edit() {
    requireUpdatable();
    m_rows->cell(0); // there is a row, and it still exists
    m_edit.begin(EditBuffer::Kind::Change, m_layout->size());
}

void Recordset::Update() {
    requireUpdatable();
    if (m_edit.active() && beforeUpdate)
        beforeUpdate();
    requireOpen();
    if (!m_edit.active())
        throw RuntimeError(ErrorNumber::NoEditInProgress);
    if (m_edit.kind() == EditBuffer::Kind::Add)
        insertRow();
    else
        changeRow();
    m_edit.end();
    announce();
}

void Recordset::insertRow() {
    const int64_t number = m_writer->insert(m_edit);
    m_rows->rowInserted(number);
}

void Recordset::changeRow() {
    const uint64_t mask = changedFields();
    const bool fresh = m_rows->fresh();
    const uint64_t& changed = m_rows->query().table->changed;
    const uint64_t before = changed;
    if (!m_writer->update(m_rows->number(), m_edit, mask))
        throw RuntimeError(ErrorNumber::RecordGone);
    if (mask != 0)
        m_rows->rowChanged(fresh && changed == before + 1); // more is not of this row alone
}

// Bound controls write all they show; what is the same already is left alone, and its indexes with it.
uint64_t Recordset::changedFields() {
    uint64_t mask = m_edit.mask();
    for (uint64_t rest = mask; rest != 0; rest &= rest - 1) {
        const auto field = static_cast<size_t>(std::countr_zero(rest));
        const Cell& cell = m_rows->cell(field);
        if (m_edit.equals(field, m_rows->window(), cell))
            mask &= ~(uint64_t{1} << field);
    }
    return mask;
}

void Recordset::CancelUpdate() {
    requireOpen();
    if (!m_edit.active())
        return;
    m_edit.end();
    announce();
}

void Recordset::Delete() {
    requireUpdatable();
    m_rows->cell(0);
    if (!m_writer->remove(m_rows->number()))
        throw RuntimeError(ErrorNumber::RecordGone);
    m_edit.end();
    m_rows->rowDeleted();
}

// Moves

void Recordset::move(void (RowSource::*step)()) {
    requireOpen();
    (*m_rows.*step)();
    m_edit.end();
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
    m_rows->moveTo(position);
    m_edit.end();
    announce();
}

void Recordset::FindFirst(std::string_view criterion) {
    requireOpen();
    if (isAggregate())
        throw RuntimeError(ErrorNumber::NotAllowed);
    Query parsed = parseCriterion(criterion, *m_rows->query().table->definition);
    m_noMatch = !m_rows->find({std::move(parsed.where), std::move(parsed.bindings)});
    if (m_noMatch)
        return;
    m_edit.end();
    announce();
}

bool Recordset::Eof() const {
    requireOpen();
    const RowSource::Place place = m_rows->place();
    return place == RowSource::Place::After || place == RowSource::Place::None;
}

bool Recordset::Bof() const {
    requireOpen();
    const RowSource::Place place = m_rows->place();
    return place == RowSource::Place::Before || place == RowSource::Place::None;
}

int64_t Recordset::RecordCount() {
    requireOpen();
    return m_rows->count();
}

int64_t Recordset::AbsolutePosition() {
    requireOpen();
    return m_rows->index();
}

double Recordset::PercentPosition() {
    requireOpen();
    if (m_rows->place() == RowSource::Place::After)
        return 100;
    const int64_t index = m_rows->index();
    const int64_t count = index < 0 ? 0 : m_rows->count();
    return count == 0 ? 0 : 100.0 * static_cast<double>(index) / static_cast<double>(count);
}

int64_t Recordset::RowNumber() const {
    requireOpen();
    if (m_rows->place() != RowSource::Place::On)
        throw RuntimeError(ErrorNumber::NoCurrentRecord);
    return m_rows->number();
}

// Order

void Recordset::SetSort(std::string_view order) {
    requireOpen();
    if (isAggregate())
        throw RuntimeError(ErrorNumber::NotAllowed);
    m_sort = parseSort(order, *m_rows->query().table->definition);
}

std::unique_ptr<Recordset> Recordset::OpenRecordset() {
    requireOpen();
    if (isAggregate())
        throw RuntimeError(ErrorNumber::NotAllowed);
    RowQuery query = m_rows->query();
    query.order = m_sort;
    return m_database->openRows(m_store, std::move(query), m_type);
}

// Fields

Value Recordset::ValueAt(int64_t place, int field) {
    requireOpen();
    if (isAggregate())
        throw RuntimeError(ErrorNumber::NotAllowed);
    const FieldType type = Fields(field).Type();
    if (m_page == nullptr)
        m_page = std::make_unique<RowPage>(*m_store, *m_rows);
    return valueOf(m_page->window(), m_page->cell(place, static_cast<size_t>(field)), type);
}

Field& Recordset::Fields(std::string_view name) {
    const int position = m_layout->names.find(name);
    if (position < 0)
        throw RuntimeError(ErrorNumber::UnknownField, name);
    return m_fields[static_cast<size_t>(position)];
}

Field& Recordset::Fields(int position) {
    if (position < 0 || position >= FieldCount())
        throw RuntimeError(ErrorNumber::UnknownField, std::to_string(position));
    return m_fields[static_cast<size_t>(position)];
}

const FieldDef& Recordset::definition(int position) const {
    return m_layout->definition.fields[static_cast<size_t>(position)];
}

Value Recordset::value(int position) const {
    requireOpen();
    const auto field = static_cast<size_t>(position);
    const FieldType type = definition(position).type;
    const bool adding = m_edit.kind() == EditBuffer::Kind::Add;
    if (adding || (m_edit.active() && m_edit.assigned(field)))
        return m_edit.value(field, type);
    const Cell& cell = m_rows->cell(field);
    return valueOf(m_rows->window(), cell, type);
}

template <typename Given>
void Recordset::assign(int position, const Given& given) {
    if (!m_edit.active()) {
        requireOpen();
        throw RuntimeError(ErrorNumber::NoEditInProgress);
    }
    const RowQuery& query = m_rows->query();
    const auto field = static_cast<size_t>(position);
    if (query.layout->columns[field] == query.table->numberField)
        throw RuntimeError(ErrorNumber::NotAllowed, "the database gives this number");
    m_edit.set(field, query.layout->definition.fields[field].type, given);
}

template void Recordset::assign(int position, const Value& given);
template void Recordset::assign(int position, const std::string_view& given);
template void Recordset::assign(int position, const bool& given);
template void Recordset::assign(int position, const int64_t& given);
template void Recordset::assign(int position, const double& given);

} // namespace discaro::db
