#pragma once

#include "db/rows/RowSource.h"

#include <cstdint>
#include <string>

namespace discaro::db {

// The one row of an aggregate, computed at opening. Nothing can be found in it or changed.
class AggregateSource : public RowSource {
public:
    // The SQL gives a column to leave out and then one for each field of the layout.
    AggregateSource(Store& store, std::shared_ptr<const RecordLayout> layout, std::string_view sql,
                    const std::vector<Value>& bindings);

    void first() override;
    void last() override { first(); }
    void next() override;
    void previous() override;
    void moveTo(int64_t index) override;
    bool find(const Criterion& criterion) override;
    int64_t count() override { return 1; }
    int64_t index() override { return place() == Place::On ? 0 : -1; }
    void numbersAt(int64_t, int64_t, std::vector<int64_t>&) override {} // its row has no number
};

} // namespace discaro::db
