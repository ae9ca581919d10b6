// search_store CATALOGUE ROUNDS [pairs | CONDITION]: how long the store takes to open the searches that the page for
// files composes, on a catalogue of make_catalogue_big: no condition, each of the fourteen fields with a pattern or
// number that few, some and nearly all files meet, with `pairs` all pairs of these. Prints processor time and the
// clock's, the least of the rounds, in milliseconds. search_store.py sets the sqlite3 shell beside it.
#include "db/DBEngine.h"
#include "db/Recordset.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <iomanip>
#include <iostream>
#include <string>
#include <vector>

using namespace discaro;

namespace {

// The fields in the order of the page; under each what stands in it.
const std::vector<std::vector<std::string>> kConditions = {
    {"[file name] like 'file77*' ", "[file name] like '*e77*' ", "[file name] like 'f*' ", "[file name] like '*e*' ",
     "[file name] like 'file12345.exe' "},
    {"[file extension] like '.dll' ", "[file extension] like '.*x*' ", "[file extension] like '.*' "},
    {"[file size] =100", "[file size] >70000", "[file size] >-1"},
    {"[directory number] like 'c12d'", "[directory number] like 'C7D1S3'"},
    {"[attributes] like 'Hr*' ", "[attributes] like '*A*' ", "[attributes] like 'r*' "},
    {"[number of icons] =77", "[number of icons] >2", "[number of icons] <9"},
    {"[Company Name] like 'comp*' ", "[Company Name] like '*any 7*' "},
    {"[Description] like '*part*' ", "[Description] like 'x*' "},
    {"[Copyright] like '*19*' "},
    {"[Product name] like 'prod*' "},
    {"[Product Version] like '2*'"},
    {"[Internal Name] like '*e*' "},
    {"[Original file Name] like 'file7*' "},
    {"[Comments] like '*disc*' ", "[Comments] like '*#.#*' "}};

struct Time {
    double processor;
    double clock;
    int64_t rows;
};

Time now() {
    timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    const std::chrono::duration<double, std::milli> clock = std::chrono::steady_clock::now().time_since_epoch();
    return {static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) * 1e-6, clock.count(), 0};
}

Time measure(db::Database& database, const std::string& conditions, int rounds) {
    const std::string query =
        "SELECT files.*  FROM Files where [id number] like '*'" + conditions + " Order by [file name]";
    Time least{1e9, 1e9, 0};
    for (int round = 0; round < rounds; ++round) {
        const Time begin = now();
        const auto rows = database.OpenRecordset(query);
        const Time end = now();
        least = {std::min(least.processor, end.processor - begin.processor),
                 std::min(least.clock, end.clock - begin.clock), rows->RecordCount()};
    }
    return least;
}

void print(const Time& time, const std::string& conditions) {
    std::cout << std::fixed << std::setprecision(1) << std::setw(8) << time.processor << std::setw(8) << time.clock
              << std::setw(9) << time.rows << "  " << conditions << std::endl;
}

void measurePairs(db::Database& database, int rounds) {
    Time worst{0, 0, 0};
    std::string where;
    for (size_t first = 0; first < kConditions.size(); ++first)
        for (size_t second = first + 1; second < kConditions.size(); ++second)
            for (const std::string& left : kConditions[first])
                for (const std::string& right : kConditions[second]) {
                    const std::string pair = "and " + left + "and " + right;
                    const Time time = measure(database, pair, rounds);
                    print(time, pair);
                    if (time.processor > worst.processor) {
                        worst = time;
                        where = pair;
                    }
                }
    std::cout << "the longest pair:\n";
    print(worst, where);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3 || argc > 4) {
        std::cerr << "usage: search_store CATALOGUE ROUNDS [pairs]\n";
        return 2;
    }
    const int rounds = std::atoi(argv[2]);
    const auto database = db::DBEngine::OpenDatabase(argv[1]);
    print(measure(*database, "", rounds), "no condition");
    if (argc == 4 && std::string_view(argv[3]) == "pairs")
        return measurePairs(*database, rounds), 0;
    if (argc == 4)
        return print(measure(*database, argv[3], rounds), argv[3]), 0;
    for (const auto& conditions : kConditions)
        for (const std::string& condition : conditions)
            print(measure(*database, "and " + condition, rounds), condition);
}
