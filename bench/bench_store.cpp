// The store's parts that a scan and a search lean on, one by one: a file's row, a directory's subtree sum, a row's
// change, fields by their names, names folded for a comparison.
#include "base/Text.h"
#include "catalogue/EmptyCatalogue.h"
#include "catalogue/Names.h"
#include "db/DBEngine.h"
#include "db/DataSource.h"
#include "db/pattern/FoldBuffer.h"

#include <benchmark/benchmark.h>

#include <array>
#include <filesystem>
#include <memory>
#include <string>

using namespace discaro;
namespace fields = catalogue::files;
namespace directories = catalogue::directories;

namespace {

// A catalogue with one disc of as many directories under its root, in a transaction that is never committed.
class Catalogue {
public:
    explicit Catalogue(int directoryCount)
        : m_path(std::filesystem::temp_directory_path() / "discaro-bench.mde") {
        std::filesystem::remove(m_path);
        db::DBEngine::SetFormat(catalogue::catalogueFormat());
        catalogue::createEmptyCatalogue(m_path);
        open(discs, "drive");
        open(directoryRows, "directories");
        open(fileRows, "files");
        db::DBEngine::BeginTrans();
        auto& disc = discs.Recordset();
        disc.AddNew();
        disc(catalogue::drive::kIdNumber) = 1;
        disc.Update();
        addDirectory("C1D1");
        for (int i = 1; i <= directoryCount; ++i)
            addDirectory("C1D1S" + std::to_string(i));
    }
    ~Catalogue() {
        for (auto* source : {&discs, &directoryRows, &fileRows})
            source->Close();
        std::filesystem::remove(m_path);
    }

    db::DataSource discs;
    db::DataSource directoryRows;
    db::DataSource fileRows;

private:
    void open(db::DataSource& source, const char* table) {
        source.SetDatabaseName(m_path);
        source.SetRecordSource(table);
        source.Refresh();
    }
    void addDirectory(const std::string& number) {
        auto& row = directoryRows.Recordset();
        row.AddNew();
        row(directories::kDriveIdNumber) = 1;
        row(directories::kIdNumber) = number;
        row(directories::kSize) = 2.5;
        row(directories::kNumberOfFiles) = 3;
        row(directories::kNumberOfSubdirectories) = 0;
        row.Update();
    }

    std::filesystem::path m_path;
};

void addFileRow(benchmark::State& state) {
    Catalogue catalogue(1);
    auto& row = catalogue.fileRows.Recordset();
    int64_t number = 0;
    for (auto _ : state) {
        row.AddNew();
        row(fields::kDirectoryNumber) = "C1D1S1";
        row(fields::kFileName) = "file" + std::to_string(++number) + ".txt";
        row(fields::kFileExtension) = ".txt";
        row(fields::kFileSize) = 0.25;
        row(fields::kAttributes) = "R";
        row(fields::kFileDate) = "12/25/02";
        row(fields::kFileTime) = "10:30:15 AM";
        row.Update();
    }
}
BENCHMARK(addFileRow);

void sumOfALeaf(benchmark::State& state) {
    Catalogue catalogue(10000);
    auto database = catalogue.directoryRows.Database();
    int64_t number = 0;
    for (auto _ : state) {
        number = number % 10000 + 1;
        auto sums = database->OpenRecordset("select sum(Size) As [Total size] , sum([number of "
                                            "files]) as Files , sum([number of subdirectories]) as "
                                            "subs from directories where [id number] like 'C1D1S" +
                                            std::to_string(number) + "S*'");
        benchmark::DoNotOptimize(sums->Fields("Files").Value());
    }
}
BENCHMARK(sumOfALeaf);

void changeOfADirectory(benchmark::State& state) {
    Catalogue catalogue(10000);
    auto& row = catalogue.directoryRows.Recordset();
    row.MoveFirst();
    for (auto _ : state) {
        row.Edit();
        row(directories::kTotalSize) = 5.5;
        row(directories::kTotalNumberOfFiles) = 7;
        row(directories::kTotalNumberOfSubdirectories) = 2;
        row.Update();
        row.MoveNext();
        if (row.Eof())
            row.MoveFirst();
    }
}
BENCHMARK(changeOfADirectory);

// The fields that a scan sets for each file.
void fieldsByName(benchmark::State& state) {
    Catalogue catalogue(1);
    auto& row = catalogue.fileRows.Recordset();
    for (auto _ : state)
        for (const auto name : {fields::kDirectoryNumber, fields::kFileName, fields::kFileExtension, fields::kFileSize,
                                fields::kAttributes, fields::kFileDate, fields::kFileTime})
            benchmark::DoNotOptimize(&row(name));
}
BENCHMARK(fieldsByName);

// ASCII, letters with accents, another script.
constexpr std::array kNames = {"Program Files Setup 1.0.exe", "\u00dcbersicht f\u00fcr \u00c4rzte.doc",
                               "\u041f\u0440\u043e\u0433\u0440\u0430\u043c\u043c\u0430.txt"};

void foldedByBuffer(benchmark::State& state) {
    const std::string name = kNames[static_cast<size_t>(state.range(0))];
    db::FoldBuffer buffer;
    for (auto _ : state) {
        if (!buffer.lowerAscii(name))
            buffer.fold(name);
        benchmark::DoNotOptimize(buffer.view());
    }
}
BENCHMARK(foldedByBuffer)->DenseRange(0, 2);

void foldedByRule(benchmark::State& state) {
    const std::string name = kNames[static_cast<size_t>(state.range(0))];
    for (auto _ : state)
        benchmark::DoNotOptimize(base::foldedForComparison(name));
}
BENCHMARK(foldedByRule)->DenseRange(0, 2);

} // namespace
