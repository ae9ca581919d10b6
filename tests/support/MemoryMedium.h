#pragma once

#include "base/RuntimeError.h"
#include "disc/medium/Medium.h"

#include <array>
#include <cstdint>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace discaro::test {

using base::ErrorNumber;

// What a medium is asked for.
enum class Asked { List, Facts, Open, Read };

// One directory or file of a tree. Made by folder() and file(); the with... functions give a
// changed copy, so that a tree is written as one literal:
//
//     folder("", {file("README.TXT", "hello"), folder("BIN", {file("A.EXE").withSize(1 << 20)})})
struct MemoryNode {
    std::string name;
    bool isDirectory = false;
    std::vector<MemoryNode> children;
    std::string content;
    disc::FileFacts facts;
    std::string damage;                   // of a directory that can be read in part
    std::optional<ErrorNumber> failure;   // listing a directory, asking for a file's facts
    std::optional<ErrorNumber> unopened;  // opening a file
    std::optional<ErrorNumber> unread;    // reading a file's second half
    std::optional<std::string> standsFor; // a directory that is the one of this path ("" is the root)

    MemoryNode withSize(uint64_t size) const;
    MemoryNode withTime(std::time_t modified) const;
    MemoryNode withAttributes(unsigned attributes) const;
    MemoryNode withDamage(std::string text) const;
    MemoryNode withFailure(ErrorNumber number) const;
    MemoryNode withOpenFailure(ErrorNumber number) const;
    MemoryNode withReadFailure(ErrorNumber number) const;
    MemoryNode standingFor(std::string path) const;
};

MemoryNode folder(std::string name, std::vector<MemoryNode> children = {});

// Read-only, of one fixed time, as long as its content.
MemoryNode file(std::string name, std::string content = {});

// A medium that holds a tree, counts what it is asked for and fails when told to.
class MemoryMedium : public disc::Medium {
public:
    // The root's name does not matter.
    explicit MemoryMedium(MemoryNode root);
    ~MemoryMedium() override;

    // The volume's facts; at first the label "MEMORY", "CDFS", "0123-4567", 650 MB, nothing free.
    disc::VolumeFacts volume;

    // The call of this number (the first is 1) fails, and so do the ones after it up to the count.
    void failOn(Asked asked, int call, ErrorNumber number = ErrorNumber::ReadFailure, int count = 1);

    // After so many calls of all kinds the disc is gone: each call fails with DriveNotReady, volume
    // facts too.
    void vanishAfter(int calls);

    int calls(Asked asked) const;

    // Directories listed so far, in order, such as "\" and "\BIN"; a path that was listed twice
    // stands twice.
    const std::vector<std::string>& listed() const;

    disc::VolumeFacts facts() const override;
    disc::Place root() const override;
    disc::Listing list(const disc::Place& parent, const disc::Place& directory) const override;
    disc::FileFacts fileFacts(const disc::Place& directory, const disc::Place& file) const override;
    std::unique_ptr<disc::ByteSource> open(const disc::Place& directory, const disc::Place& file) const override;

private:
    struct State;
    std::shared_ptr<State> m_state; // sources that were opened fail with the medium
};

} // namespace discaro::test
