// bench_rows CATALOGUE: what a grid waits for, which paints a page of rows at places far apart, and what a group of
// saves costs beside single ones. Prints milliseconds. Changes rows of Directories to what they hold already, and no
// others, so any catalogue will do; a scan of make_tree's gives one of 1,000,000 files.
#include "catalogue/EmptyCatalogue.h"
#include "catalogue/Names.h"
#include "db/DBEngine.h"
#include "db/engine/SaveGroup.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <iomanip>
#include <iostream>
#include <random>
#include <vector>

using namespace discaro;
namespace directories = catalogue::directories;

namespace {

constexpr int kPages = 300;
constexpr int64_t kRowsOfPage = 50;
constexpr int kSaves = 500;

double milliseconds(const std::function<void()>& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// All cells of a page, as a grid asks for them.
void readPage(db::Recordset& rows, int64_t place) {
    for (int64_t row = place; row < place + kRowsOfPage; ++row)
        for (int field = 0; field < rows.FieldCount(); ++field)
            rows.ValueAt(row, field);
}

void measurePages(const char* what, db::Recordset& rows) {
    const int64_t count = rows.RecordCount();
    if (count <= kRowsOfPage)
        return;
    std::minstd_rand chance(1);
    std::uniform_int_distribution<int64_t> places(0, count - kRowsOfPage);
    const double first = milliseconds([&] { readPage(rows, places(chance)); });
    std::vector<double> times;
    for (int page = 0; page < kPages; ++page)
        times.push_back(milliseconds([&] { readPage(rows, places(chance)); }));
    std::ranges::sort(times);
    std::cout << std::left << std::setw(34) << what << std::right << std::setw(9) << count << " rows, a page: first "
              << first << ", median " << times[kPages / 2] << ", slowest " << times.back() << '\n';
}

// Changes a field back and forth, so that each save writes.
void saveSome(db::Recordset& rows) {
    rows.MoveFirst();
    for (int save = 0; save < kSaves && !rows.Eof(); ++save, rows.MoveNext()) {
        const double size = rows.Fields(directories::kTotalSize).Number();
        for (const double other : {size + 1, size}) {
            rows.Edit();
            rows(directories::kTotalSize) = other;
            rows.Update();
        }
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: bench_rows CATALOGUE\n";
        return 2;
    }
    db::DBEngine::SetFormat(catalogue::catalogueFormat());
    const auto database = db::DBEngine::OpenDatabase(argv[1]);
    std::cout << std::fixed << std::setprecision(2);
    const char* const kAll = "select * from files";
    const char* const kSome = "select * from files where [file name] like '*1*'";
    measurePages("snapshot", *database->OpenSnapshot(kAll));
    measurePages("snapshot in order of names", *database->OpenSnapshot("select * from files order by [file name]"));
    measurePages("snapshot with a condition", *database->OpenSnapshot(kSome));
    measurePages("table", *database->OpenRecordset("files"));
    measurePages("dynaset with a condition", *database->OpenRecordset(kSome));
    const auto rows = database->OpenRecordset("directories");
    std::cout << 2 * kSaves << " saves one by one: " << milliseconds([&] { saveSome(*rows); });
    std::cout << ", in a group: " << milliseconds([&] {
        db::SaveGroup group;
        saveSome(*rows);
        group.End();
    }) << '\n';
}
