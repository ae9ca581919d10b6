#pragma once

#include "base/Descriptor.h"

#include <array>
#include <filesystem>

namespace discaro::app {

// The mark of a running program: one a user, and one on the application folder, which users may share and which the
// ways to start the program may find with other surroundings. The system takes both back when the process ends in
// whatever way.
class SingleInstance {
public:
    // Takes the marks that no other process has: that of a file, which is made, and that of a folder, which lies on
    // the folder itself and leaves nothing in it. An empty path and a folder that is not there have no mark.
    explicit SingleInstance(const std::filesystem::path& markFile, const std::filesystem::path& folder = {});

    // Whether another instance had a mark already. Where no mark can be made at all, nobody has it.
    bool prevInstance() const { return m_taken; }

    // A file in the user's runtime folder, or in the temporary folder where there is none.
    static std::filesystem::path defaultMark();

private:
    void take(const base::Descriptor& mark);

    std::array<base::Descriptor, 2> m_marks; // of the file and of the folder
    bool m_taken = false;
};

} // namespace discaro::app
