// make_catalogue_big FOLDER [ACCENTED]: a catalogue of 200 discs in FOLDER/kvt.mde with 1,000,000 files, written as
// bare rows. Disc 100 has 100,000 directories, disc 2 a directory of 50,000 files (\LARGE), and every other disc 500
// directories. Of a thousand names so many as ACCENTED says, none without it, have a letter with an accent. Programs
// and libraries have texts of a version resource, some files a comment.
#include "catalogue/EmptyCatalogue.h"

#include <sqlite3.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>

namespace {

constexpr int kDiscs = 200;
constexpr int kLargestDisc = 100;
constexpr int kDiscOfLargeDirectory = 2;
constexpr int64_t kFiles = 1000000;
constexpr int64_t kLargeDirectory = 50000;
constexpr int kFilesOfADirectory = 4;
constexpr int kFilesNearTheRoot = 510;

[[noreturn]] void fail(sqlite3* connection) {
    std::cerr << sqlite3_errmsg(connection) << '\n';
    std::exit(1);
}

class Insert {
public:
    Insert(sqlite3* connection, const char* sql)
        : m_connection(connection) {
        if (sqlite3_prepare_v2(connection, sql, -1, &m_statement, nullptr) != SQLITE_OK)
            fail(connection);
    }
    ~Insert() { sqlite3_finalize(m_statement); }
    Insert(const Insert&) = delete;
    Insert& operator=(const Insert&) = delete;

    Insert& text(std::string_view value) {
        sqlite3_bind_text(m_statement, ++m_at, value.data(), static_cast<int>(value.size()), SQLITE_TRANSIENT);
        return *this;
    }
    Insert& number(double value) {
        sqlite3_bind_double(m_statement, ++m_at, value);
        return *this;
    }
    Insert& whole(int64_t value) {
        sqlite3_bind_int64(m_statement, ++m_at, value);
        return *this;
    }
    Insert& nothing(int fields) {
        for (; fields > 0; --fields)
            sqlite3_bind_null(m_statement, ++m_at);
        return *this;
    }
    void run() {
        if (sqlite3_step(m_statement) != SQLITE_DONE)
            fail(m_connection);
        sqlite3_reset(m_statement);
        m_at = 0;
    }

private:
    sqlite3* m_connection;
    sqlite3_stmt* m_statement = nullptr;
    int m_at = 0;
};

class Catalogue {
public:
    Catalogue(sqlite3* connection, uint64_t accented)
        : m_accented(accented)
        , m_disc(connection, "INSERT INTO Drive(\"id number\", \"Drive letter\", \"volume name\", \"Serial "
                             "Number\","
                             " \"prefered name\", \"file system\", \"Total Size\", \"free size\", Comments)"
                             " VALUES (?1, 'D:\\', ?2, '1A2B-3C4D', ?3, 'CDFS', 650.25, 0, 'Scanned without "
                             "errors.')")
        , m_directory(connection, "INSERT INTO Directories(\"drive id number\", \"Parent id\", \"id number\", "
                                  "\"directory name\","
                                  " \"Directory Path\", \"number of files\", \"number of subdirectories\", Size,"
                                  " \"Total Size\", \"Total number of files\", \"Total number of Subdirectories\")"
                                  " VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?8, ?6, ?7)")
        , m_file(connection, "INSERT INTO Files(\"directory number\", \"file name\", \"file "
                             "extension\", \"file size\","
                             " Attributes, \"File date\", \"file time\", \"number of icons\","
                             " \"Company Name\", Description, Copyright, \"Product name\","
                             " \"Product Version\", \"Internal Name\", \"Original file Name\","
                             " Comments)"
                             " VALUES (?1, ?2, ?3, ?4, 'RA', ?5, '10:15:00 AM', ?6,"
                             " ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14)") {}

    void addDisc(int number) {
        const std::string text = std::to_string(number);
        m_disc.whole(number).text("DISC_" + text).text("Disc " + text).run();
        m_number = number;
        const std::string root = "C" + text + "D1";
        if (number == kLargestDisc)
            addDirectory(root, "R", "D:\\", "D:\\", {100, 9, 110});
        else
            addDirectory(root, "R", "D:\\", "D:\\", {20, 24, 0});
    }

    void fillLargeDirectory() {
        const std::string number = "C" + std::to_string(kDiscOfLargeDirectory) + "D1S21";
        const std::string parent = "C" + std::to_string(kDiscOfLargeDirectory) + "D1";
        m_number = kDiscOfLargeDirectory;
        m_directory.whole(m_number).text(parent).text(number).text("LARGE").text("D:\\LARGE");
        m_directory.whole(kLargeDirectory).whole(0).number(50.0 * kLargeDirectory).run();
        addFiles(number, kLargeDirectory);
    }

    int64_t files() const { return m_files; }
    int64_t directories() const { return m_directories; }

private:
    // How many subdirectories a directory has on each level.
    using Fans = std::array<int, 3>;

    void addDirectory(const std::string& number, const std::string& parent, const std::string& name,
                      const std::string& path, Fans fans) {
        const int children = fans[0];
        const int64_t files = children > 0 && fans[1] > 0 && fans[2] == 0 ? kFilesNearTheRoot : kFilesOfADirectory;
        ++m_directories;
        m_directory.whole(m_number).text(parent).text(number).text(name).text(path);
        m_directory.whole(files).whole(children).number(12.5 * static_cast<double>(files)).run();
        addFiles(number, files);
        for (int child = 1; child <= children; ++child) {
            const std::string below = "DIR" + std::to_string(1000 + child);
            addDirectory(number + "S" + std::to_string(child), number, below,
                         path + (path.ends_with('\\') ? "" : "\\") + below, {fans[1], fans[2], 0});
        }
    }

    void addFiles(const std::string& directory, int64_t count) {
        static constexpr std::array<const char*, 8> kExtensions = {".txt", ".exe", ".bmp", ".dll",
                                                                   ".htm", ".zip", ".WAV", ".doc"};
        for (int64_t i = 0; i < count; ++i) {
            const uint64_t mixed = static_cast<uint64_t>(m_files) * 2654435761U % 1000003U;
            const std::string extension = kExtensions[mixed % kExtensions.size()];
            const std::string date = "0" + std::to_string(1 + mixed % 9) + "/" + std::to_string(10 + mixed % 19) + "/" +
                                     std::to_string(90 + mixed % 10);
            const std::string name = nameOf(mixed) + extension;
            m_file.text(directory).text(name).text(extension);
            m_file.number(static_cast<double>(mixed) / 7).text(date);
            m_file.whole(static_cast<int64_t>(mixed % 5));
            addDetails(mixed, name, extension == ".exe" || extension == ".dll");
            m_file.run();
            ++m_files;
        }
    }

    std::string nameOf(uint64_t mixed) const {
        static constexpr std::array<const char*, 4> kAccented = {"\u00C4rger", "f\u00fcr ", "File ", "Stra\u00dfe"};
        if (mixed * 7919 % 1000 >= m_accented)
            return "File" + std::to_string(mixed);
        const std::string end = mixed % 4 == 2 ? "\u00e9" : "";
        return kAccented[mixed % kAccented.size()] + std::to_string(mixed) + end;
    }

    void addDetails(uint64_t mixed, const std::string& name, bool program) {
        if (program) {
            const std::string maker = "Company " + std::to_string(mixed % 100);
            m_file.text(maker).text("Part " + std::to_string(mixed % 1000) + " of the product");
            m_file.text("Copyright (C) " + maker + " 19" + std::to_string(90 + mixed % 10));
            m_file.text("Product " + std::to_string(mixed % 300));
            m_file.text(std::to_string(mixed % 9) + ".0.1").text(name).text(name);
        } else {
            m_file.nothing(7);
        }
        if (mixed % 50 == 0)
            m_file.text("seen on the disc of chapter " + std::to_string(mixed % 12) + ".4");
        else
            m_file.nothing(1);
    }

    uint64_t m_accented;
    Insert m_disc;
    Insert m_directory;
    Insert m_file;
    int m_number = 0;
    int64_t m_files = 0;
    int64_t m_directories = 0;
};

void write(sqlite3* connection, uint64_t accented) {
    sqlite3_exec(connection, "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; BEGIN", nullptr, nullptr, nullptr);
    {
        Catalogue catalogue(connection, accented);
        for (int disc = 1; disc <= kDiscs; ++disc)
            catalogue.addDisc(disc);
        catalogue.fillLargeDirectory();
        std::cout << kDiscs << " discs, " << catalogue.directories() << " directories, " << catalogue.files()
                  << " files (wanted " << kFiles << ")\n";
    }
    sqlite3_exec(connection, "COMMIT", nullptr, nullptr, nullptr);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) {
        std::cerr << "usage: make_catalogue_big FOLDER [ACCENTED]\n";
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::filesystem::create_directories(folder);
    const auto file = folder / "kvt.mde";
    discaro::catalogue::createEmptyCatalogue(file);
    sqlite3* connection = nullptr;
    if (sqlite3_open(file.c_str(), &connection) != SQLITE_OK)
        fail(connection);
    write(connection, argc == 3 ? std::strtoull(argv[2], nullptr, 10) : 0);
    sqlite3_close(connection);
}
