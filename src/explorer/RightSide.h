#pragma once

namespace discaro::explorer {

// What stands beside the tree, as the tree speaks to it.
class RightSide {
public:
    virtual ~RightSide() = default;

    // Nothing is listed any more.
    virtual void clear() = 0;
    // The disc that is chosen; the directory of the selected node, of the first node the disc. Errors are skipped.
    virtual void ShowDiscInfo() = 0;
    virtual void ShowDirectory() = 0;
};

} // namespace discaro::explorer
