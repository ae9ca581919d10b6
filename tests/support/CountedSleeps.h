#pragma once

#include <memory>

namespace discaro::test {

// Waits for another program's lock take no time while it lives, and are added up.
class CountedSleeps {
public:
    CountedSleeps();
    ~CountedSleeps();
    CountedSleeps(const CountedSleeps&) = delete;
    CountedSleeps& operator=(const CountedSleeps&) = delete;

    // What would have been waited since the last call.
    int takeMilliseconds();

private:
    struct Layer;
    std::unique_ptr<Layer> m_layer;
};

} // namespace discaro::test
