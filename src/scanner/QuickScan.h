#pragma once

#include "disc/drives/Lister.h"

#include <functional>
#include <string>

namespace discaro::scanner {

// Counts the directories below the root and all files of a disc, from listings alone: no file is opened.
class QuickScan {
public:
    // Called once for each directory, with its path, after its subdirectories are counted. May let events run.
    // Returns whether to go on.
    using Progress = std::function<bool(const std::string& path)>;

    explicit QuickScan(disc::Lister& lister)
        : m_lister(lister) {}

    // Moves to the drive's root and counts its files; both counts begin at 0.
    // Throws base::RuntimeError when the drive can't be read.
    void begin(char driveLetter);

    // Counts everything below the root, the lister standing there. Throws base::RuntimeError when the disc is gone.
    // Returns whether it came to the end.
    bool countBelow(const Progress& progress);

    double directories() const { return m_directories; } // the root left out
    double files() const { return m_files; }
    // Directories, the root among them, that were there and could be read only in part or not at all.
    int damagedDirectories() const { return m_damaged; }

    // "12 Directories", a line end, "345 Files".
    std::string text() const;

private:
    bool countDirectory(const Progress& progress);

    void noteDamage();

    disc::Lister& m_lister;
    char m_driveLetter = 0;
    bool m_failed = false; // some directory was not read whole
    int m_damaged = 0;
    double m_directories = 0;
    double m_files = 0;
};

} // namespace discaro::scanner
