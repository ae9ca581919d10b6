#pragma once

#include "base/RuntimeError.h"
#include "disc/drives/DriveTable.h"
#include "disc/medium/Medium.h"

#include <cstdint>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::disc {

// Walks through the drives of a table: the current directory with its subdirectories, the directory whose files are
// listed, and the enumeration of a directory's files.
//
// Paths are drive paths: "D:\" for a root, "D:\A\B" for all else. "D:" and repeated backslashes are understood too.
// Names are found without regard to case, but an exact one is preferred. Every path that the lister gives means one
// directory; of subdirectories with the same name the later ones are given as "NAME (2)" and so on.
//
// The listings of the current directory and of those above it are kept, so going up reads nothing; no others are.
// Directories deeper than kMostLevels, or with a path longer than kLongestPath, and those that a damaged disc puts
// inside themselves, are shown empty and damaged. For one thread; the table must outlive the lister.
//
// Every function may be called again after it threw, and nothing has changed by then.
class Lister {
public:
    static constexpr size_t kMostLevels = 250;
    static constexpr size_t kLongestPath = 32767; // bytes; every row beneath would carry it once more

    explicit Lister(const DriveTable& drives);
    ~Lister();
    Lister(const Lister&) = delete;
    Lister& operator=(const Lister&) = delete;

    // Moves to the directory and reads it, unless its listing is kept. The path of another disc in the same drive
    // is read anew. A directory below the root that can't be read is moved to all the same and has what could be
    // read of it; takeDamage() tells. Throws base::RuntimeError: PathMissing when the path or the drive isn't there,
    // else what reading the root gave (DriveNotReady, FileSystemUnsupported ...).
    void setPath(std::string_view drivePath);

    // Reads the current directory and those above it anew. Throws as setPath does and keeps what it had then.
    void reread();

    // Lets go of the disc and all that was read of it, so that it can be taken out. The path stays as a text, and
    // setPath(path()) reads it again; until then there are no directories and no files.
    void letGo();

    // Empty before the first setPath.
    const std::string& path() const { return m_path; }

    // The subdirectories in alphabetical order, without regard to case, ties by the exact text; hidden ones too.
    int listCount() const;

    // Full path of the i-th subdirectory; -2 gives the parent's, at the root the root's. Other values throw
    // InvalidValue.
    std::string list(int index) const;

    // What was wrong with the current directory, once for each visit that read it: DirectoryDamaged when it could be
    // read in part, else the error that kept it from being read.
    std::optional<base::RuntimeError> takeDamage();

    // Chooses the directory whose files are counted. Throws as setPath does.
    void setFilePath(std::string_view drivePath);

    // Files directly inside it, hidden ones too; 0 before the first setFilePath.
    int fileCount() const;

    // Names of a directory's files in the medium's order, then an empty text. Never throws base::RuntimeError: a
    // directory that isn't there has no files. firstFile begins anew.
    std::string firstFile(std::string_view directoryPath);
    std::string nextFile();

    // A file's facts. The file that was enumerated last is at hand, also among several with the same name, and its
    // facts are read once for all three functions. Throws PathMissing, or what the medium gives when it can't read
    // them; a call after that tries to read them again.
    uint64_t fileLength(std::string_view path);
    std::time_t fileTime(std::string_view path);
    unsigned fileAttributes(std::string_view path);

    // Good for as long as the caller likes, whatever becomes of the lister. Throws PathMissing, ReadFailure.
    std::unique_ptr<ByteSource> openFile(std::string_view path);

    // False for directories, and for all that can't be found out.
    bool hasFile(std::string_view path);

    // Called after a move when path() has become another text, and when the same was read anew by reread() or after
    // letGo().
    std::function<void()> changed;

private:
    struct Level;
    using LevelPtr = std::shared_ptr<Level>;
    using Chain = std::vector<LevelPtr>; // from the root to a directory

    struct Enumeration {
        LevelPtr level;
        std::string base; // the directory's path without a trailing backslash
        size_t next = 0;  // the file that is enumerated next
        std::optional<FileFacts> facts;
    };

    // A file that a path means.
    struct Found {
        LevelPtr level;
        size_t index;
    };

    static std::string pathOf(const Chain& chain);
    static LevelPtr readLevel(const Chain& above, const Entry& entry);
    static FileFacts readFacts(const Found& file);
    bool stepDown(std::string_view path);
    bool stepUp(std::string_view path);
    std::string_view parentPath() const;
    Chain chainFromRoot(char letter) const;
    Chain chainTo(std::string_view path) const;
    LevelPtr directoryAt(std::string_view path) const;
    bool isEnumerated(std::string_view path) const;
    Found find(std::string_view path) const;
    template <typename Value>
    Value fact(std::string_view path, Value FileFacts::*value);

    const DriveTable& m_drives;
    Chain m_chain;
    std::string m_path;
    mutable size_t m_lastListed = 0;
    LevelPtr m_fileLevel;
    Enumeration m_enumeration;
};

} // namespace discaro::disc
