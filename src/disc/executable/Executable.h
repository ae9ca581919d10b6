#pragma once

#include "disc/executable/ExecutableNe.h"
#include "disc/executable/ExecutablePe.h"
#include "disc/executable/ExecutableReader.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace discaro::disc {

// What is in a file for the two questions asked of it: how many icons, and which version texts. Any
// file may be opened; one that begins neither as an executable nor as an icon file costs one short
// read. At most 4 MiB are read and 10,000 table entries visited, whatever the file says. Only the
// source's own errors are thrown. The source must outlive the object.
class Executable {
public:
    explicit Executable(const ByteSource& source);
    Executable(const Executable&) = delete;
    Executable& operator=(const Executable&) = delete;

    // Icon groups of an executable; 1 for an icon or cursor file; else 0.
    int64_t icons();

    // The bytes of the version resource, at most 64 KiB; empty when there is none.
    std::string versionResource();

private:
    void openResources(uint64_t header);
    bool isIconFile();

    ExecutableReader m_reader;
    std::string m_head; // the file's first bytes
    std::variant<std::monostate, PeResources, NeResources> m_resources;
};

} // namespace discaro::disc
