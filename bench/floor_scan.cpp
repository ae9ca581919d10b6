// floor_scan FOLDER DISC: the same input and output as a scan at basic detail with nothing around it: walk,
// stat, and bare prepared inserts of the same rows, with the same tables and indexes, in one transaction.
#include "catalogue/EmptyCatalogue.h"

#include <dirent.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

sqlite3* g_connection = nullptr;

void run(const char* sql) {
    if (sqlite3_exec(g_connection, sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        std::cerr << sqlite3_errmsg(g_connection) << '\n';
        std::exit(1);
    }
}

sqlite3_stmt* prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(g_connection, sql, -1, &statement, nullptr) != SQLITE_OK) {
        std::cerr << sqlite3_errmsg(g_connection) << '\n';
        std::exit(1);
    }
    return statement;
}

void bindText(sqlite3_stmt* statement, int at, std::string_view text) {
    sqlite3_bind_text(statement, at, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

void step(sqlite3_stmt* statement) {
    if (sqlite3_step(statement) != SQLITE_DONE) {
        std::cerr << sqlite3_errmsg(g_connection) << '\n';
        std::exit(1);
    }
    sqlite3_reset(statement);
}

sqlite3_stmt* g_directory = nullptr;
sqlite3_stmt* g_file = nullptr;

void addDirectory(const std::string& number, const std::string& parent, const std::string& path,
                  const std::string& name) {
    bindText(g_directory, 1, parent);
    bindText(g_directory, 2, number);
    bindText(g_directory, 3, name);
    bindText(g_directory, 4, path);
    step(g_directory);
}

void addFile(int folder, const std::string& number, const char* name) {
    struct stat facts {};
    fstatat(folder, name, &facts, AT_SYMLINK_NOFOLLOW);
    std::tm local{};
    localtime_r(&facts.st_mtime, &local);
    char date[16];
    char time[16];
    std::strftime(date, sizeof date, "%m/%d/%y", &local);
    std::strftime(time, sizeof time, "%I:%M:%S %p", &local);
    const std::string_view text(name);
    const auto point = text.rfind('.');
    bindText(g_file, 1, number);
    bindText(g_file, 2, text);
    bindText(g_file, 3, point == std::string_view::npos ? std::string_view{} : text.substr(point));
    sqlite3_bind_double(g_file, 4, static_cast<double>(facts.st_size) / 1024);
    bindText(g_file, 5, "");
    bindText(g_file, 6, date);
    bindText(g_file, 7, time);
    step(g_file);
}

void walk(int parentFolder, const char* entry, const std::string& number, const std::string& parent,
          const std::string& path) {
    const int folder = openat(parentFolder, entry, O_RDONLY | O_DIRECTORY);
    DIR* listing = fdopendir(folder);
    addDirectory(number, parent, path, entry);
    std::vector<std::string> children;
    while (const dirent* item = readdir(listing)) {
        if (item->d_name[0] == '.' && (item->d_name[1] == 0 || (item->d_name[1] == '.' && item->d_name[2] == 0)))
            continue;
        if (item->d_type == DT_DIR)
            children.emplace_back(item->d_name);
        else
            addFile(folder, number, item->d_name);
    }
    for (size_t i = 0; i < children.size(); ++i)
        walk(folder, children[i].c_str(), number + "S" + std::to_string(i + 1), number, path + "\\" + children[i]);
    closedir(listing);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: floor_scan FOLDER DISC\n";
        return 2;
    }
    const std::string catalogue = std::string(argv[1]) + "/kvt.mde";
    discaro::catalogue::createEmptyCatalogue(catalogue);
    sqlite3_open(catalogue.c_str(), &g_connection);
    run("PRAGMA journal_mode=DELETE; PRAGMA synchronous=FULL; PRAGMA cache_size=-65536; BEGIN");
    run("INSERT INTO Drive(\"id number\", \"prefered name\") VALUES (1, 'Floor')");
    g_directory = prepare("INSERT INTO Directories(\"drive id number\", \"Parent id\", \"id "
                          "number\", \"directory name\","
                          " \"Directory Path\") VALUES (1, ?1, ?2, ?3, ?4)");
    g_file = prepare("INSERT INTO Files(\"directory number\", \"file name\", \"file extension\", \"file size\","
                     " Attributes, \"File date\", \"file time\") VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)");
    walk(AT_FDCWD, argv[2], "C1D1", "R", "D:");
    run("COMMIT");
    sqlite3_finalize(g_directory);
    sqlite3_finalize(g_file);
    sqlite3_close(g_connection);
}
