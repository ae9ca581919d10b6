#pragma once

#include <filesystem>

namespace discaro::app {

// The mark of a running program, one a user. The system takes it back when the process ends in whatever way.
class SingleInstance {
public:
    // Takes the mark when no other process has it.
    explicit SingleInstance(const std::filesystem::path& markFile = defaultMark());
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    // Whether another instance had the mark already. Where no mark can be made at all, nobody has it.
    bool prevInstance() const { return m_taken; }

    // A file in the user's runtime folder, or in the temporary folder where there is none.
    static std::filesystem::path defaultMark();

private:
    int m_file = -1;
    bool m_taken = false;
};

} // namespace discaro::app
