#include "db/rows/AggregateSource.h"

#include "base/RuntimeError.h"

namespace discaro::db {

namespace {

// Stands where a table would: to an aggregate nothing ever changes.
Table& noTable() {
    static Table none;
    return none;
}

} // namespace

AggregateSource::AggregateSource(Store& store, std::shared_ptr<const RecordLayout> layout, std::string_view sql,
                                 const std::vector<Value>& bindings)
    : RowSource(store, RowQuery{&noTable(), std::move(layout), {}, {}, {}, {}}) {
    const auto statement = store.statement(sql);
    const StatementRun run(*statement);
    run->bindAll(bindings);
    fill(*run, 1);
}

void AggregateSource::first() {
    stand(0);
}

void AggregateSource::next() {
    if (place() == Place::Before)
        return first();
    requireRow();
    leave(Place::After);
}

void AggregateSource::previous() {
    if (place() == Place::After)
        return first();
    requireRow();
    leave(Place::Before);
}

void AggregateSource::moveTo(int64_t index) {
    if (index != 0)
        throw base::RuntimeError(base::ErrorNumber::NoCurrentRecord);
    first();
}

bool AggregateSource::find(const Criterion&) {
    throw base::RuntimeError(base::ErrorNumber::NotAllowed);
}

} // namespace discaro::db
