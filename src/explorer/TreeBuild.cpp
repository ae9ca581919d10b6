#include "explorer/TreeBuild.h"

#include "base/Number.h"
#include "base/RuntimeError.h"
#include "catalogue/Names.h"
#include "explorer/Queries.h"
#include "explorer/Texts.h"
#include "explorer/UnlessLocked.h"

namespace discaro::explorer {

using base::skipErrors;

namespace {

using namespace catalogue::directories;

// The fields that every node needs, found once.
struct Fields {
    explicit Fields(db::Recordset& rows)
        : disc(rows(kDriveIdNumber))
        , parent(rows(kParentId))
        , number(rows(kIdNumber))
        , name(rows(kDirectoryName)) {}

    db::Field disc;
    db::Field parent;
    db::Field number;
    db::Field name;
};

template <typename Row>
void forEach(db::Recordset& rows, TreeSink& sink, Row row) {
    skipErrors([&] {
        for (; !rows.Eof(); rows.MoveNext()) {
            skipErrorsUnlessLocked([&] { sink.progress(rows.PercentPosition()); });
            skipErrorsUnlessLocked(row);
            if (!sink.rowDone())
                return;
        }
    });
}

std::string discName(db::Database& catalogue, const db::Field& disc) {
    const std::string number = base::numberText(static_cast<int64_t>(disc.Number()));
    const auto rows = catalogue.OpenRecordset(discQuery(number));
    return (*rows)(catalogue::drive::kPreferedName).Text();
}

} // namespace

void buildDisc(db::Recordset& directories, TreeSink& sink) {
    skipErrors([&] {
        const Fields fields(directories);
        skipErrors([&] { sink.nameFirst(discNodeText(fields.disc.Text())); });
        TreeRow row;
        forEach(directories, sink, [&] {
            row.parent = fields.parent.Text();
            row.key = fields.number.Text();
            row.text = fields.name.Text();
            sink.add(row);
        });
    });
}

void buildAllContents(db::Recordset& roots, db::Database& catalogue, TreeSink& sink) {
    skipErrors([&] {
        const Fields fields(roots);
        forEach(roots, sink, [&] {
            TreeRow row;
            skipErrorsUnlessLocked([&] { row.text = discName(catalogue, fields.disc); });
            row.parent = fields.parent.Text();
            row.key = fields.number.Text();
            sink.add(row);
        });
    });
}

} // namespace discaro::explorer
