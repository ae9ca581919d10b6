#include "db/rows/CurrentRow.h"

#include "base/RuntimeError.h"
#include "db/rows/RowSource.h"

namespace discaro::db {

using base::ErrorNumber;
using base::RuntimeError;

namespace {

void requireOpen(const CurrentRow& row) {
    if (row.rows == nullptr)
        throw RuntimeError(ErrorNumber::HandleClosed);
}

} // namespace

CurrentRow::CurrentRow(std::unique_ptr<RowSource> source)
    : rows(std::move(source))
    , layout(rows->query().layout) {}

CurrentRow::~CurrentRow() = default;

void CurrentRow::close() {
    edit.end();
    rows.reset();
}

const FieldDef& CurrentRow::definition(int position) const {
    return layout->definition.fields[static_cast<size_t>(position)];
}

Value CurrentRow::value(int position) const {
    requireOpen(*this);
    const auto field = static_cast<size_t>(position);
    const FieldType type = definition(position).type;
    const bool adding = edit.kind() == EditBuffer::Kind::Add;
    if (adding || (edit.active() && edit.assigned(field)))
        return edit.value(field, type);
    const Cell& cell = rows->cell(field);
    return valueOf(rows->window(), cell, type);
}

template <typename Given>
void CurrentRow::assign(int position, const Given& given) {
    if (!edit.active()) {
        requireOpen(*this);
        throw RuntimeError(ErrorNumber::NoEditInProgress);
    }
    const RowQuery& query = rows->query();
    const auto field = static_cast<size_t>(position);
    if (query.layout->columns[field] == query.table->numberField)
        throw RuntimeError(ErrorNumber::NotAllowed, "the database gives this number");
    edit.set(field, query.layout->definition.fields[field].type, given);
}

template void CurrentRow::assign(int position, const Value& given);
template void CurrentRow::assign(int position, const std::string_view& given);
template void CurrentRow::assign(int position, const bool& given);
template void CurrentRow::assign(int position, const int64_t& given);
template void CurrentRow::assign(int position, const double& given);

} // namespace discaro::db
