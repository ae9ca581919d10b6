#pragma once

#include "support/Files.h"
#include "support/RawDatabase.h"
#include "support/catalogue/ScratchCatalogue.h"

#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

// A catalogue for the tests of the explorer, with rows put in as they are given, also such as no scan would write.
namespace discaro::test {

struct DiscRow {
    int number;
    std::string name;
    std::string label = "LABEL";
    double totalSize = 650.25;
    std::string comments = "Scanned.";
};

struct DirectoryRow {
    std::string number; // "C1D1S2"; the parent's is this without the last "S" part, "R" for a root
    std::string name;
    std::optional<std::string> parent = {};
    std::optional<int> disc = {}; // else as the number says
    std::string path = {};        // "D:\" and the name when empty
    int files = 0;
    int subdirectories = 0;
    double size = 0;
    double totalSize = 0;
    int totalFiles = 0;
    int totalSubdirectories = 0;
    std::string comments = {};
};

struct FileRow {
    std::string directory;
    std::string name;
    std::string extension;
    std::optional<double> size = 1.0;
    std::string attributes = "RA";
    std::string date = "04/28/99";
    std::optional<int> icons = {};
};

inline std::string quotedText(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text)
        quoted.append(c == '\'' ? 2 : 1, c);
    return quoted += '\'';
}

// Its folder is the current one, too, as long as it lives.
class CatalogueRig : public ScratchCatalogue {
public:
    // Statements of another program.
    void run(const std::string& sql) const { RawDatabase(path()).execute(sql); }
    std::string text(const std::string& sql) const { return RawDatabase(path()).text(sql); }

    void add(const DiscRow& disc) const {
        run("INSERT INTO Drive(\"id number\", \"Drive letter\", \"volume name\", \"Serial "
            "Number\", \"prefered name\","
            " \"file system\", \"Total Size\", \"free size\", Comments) VALUES (" +
            std::to_string(disc.number) + ", 'D:\\', " + quotedText(disc.label) + ", '1A2B-3C4D', " +
            quotedText(disc.name) + ", 'CDFS', " + std::to_string(disc.totalSize) + ", 0, " +
            quotedText(disc.comments) + ")");
    }

    void add(const DirectoryRow& row) const {
        const auto cut = row.number.rfind('S');
        const std::string above = cut == std::string::npos ? "R" : row.number.substr(0, cut);
        const int disc = row.disc ? *row.disc : std::atoi(row.number.c_str() + 1);
        const std::string path = row.path.empty() ? "D:\\" + row.name : row.path;
        run("INSERT INTO Directories VALUES (" + std::to_string(disc) + ", " + quotedText(row.parent.value_or(above)) +
            ", " + quotedText(row.number) + ", " + quotedText(row.name) + ", " + quotedText(path) + ", " +
            std::to_string(row.files) + ", " + std::to_string(row.subdirectories) + ", " + std::to_string(row.size) +
            ", " + std::to_string(row.totalSize) + ", " + std::to_string(row.totalFiles) + ", " +
            std::to_string(row.totalSubdirectories) + ", " + quotedText(row.comments) + ")");
    }

    void addRoot(int disc) const {
        add(DirectoryRow{.number = "C" + std::to_string(disc) + "D1", .name = "D:\\", .path = "D:\\"});
    }

    void add(const FileRow& row) const {
        const auto number = [](const auto& value) { return value ? std::to_string(*value) : std::string("NULL"); };
        run("INSERT INTO Files(\"directory number\", \"file name\", \"file extension\", \"file "
            "size\", Attributes,"
            " \"File date\", \"number of icons\") VALUES (" +
            quotedText(row.directory) + ", " + quotedText(row.name) + ", " + quotedText(row.extension) + ", " +
            number(row.size) + ", " + quotedText(row.attributes) + ", " + quotedText(row.date) + ", " +
            number(row.icons) + ")");
    }

private:
    const InFolder m_inFolder{folder()};
};

} // namespace discaro::test
