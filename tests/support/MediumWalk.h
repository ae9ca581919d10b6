#pragma once

#include "disc/medium/Medium.h"

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::test {

// What a walk finds.
struct WalkedEntry {
    std::string path; // shown names, "A/B.TXT"; the root has an empty one
    bool isDirectory = false;
    disc::Place parent;
    disc::Place place;
    disc::FileFacts facts;
};

struct Walk {
    std::vector<WalkedEntry> entries; // without the root, directories in front of what they hold
    std::vector<std::string> damage;  // "PATH: what", for damaged and for unreadable directories

    std::vector<std::string> paths() const;               // sorted, a "/" behind directories
    const WalkedEntry* find(std::string_view path) const; // null when there is none
};

// Lists everything, with the facts of every file; stops after the limit.
Walk walk(const disc::Medium& medium, size_t limit = 5'000'000);

// The whole content of a file, read in pieces of odd sizes.
std::string contentOf(const disc::Medium& medium, const WalkedEntry& file);

} // namespace discaro::test
