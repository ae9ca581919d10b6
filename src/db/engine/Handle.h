#pragma once

#include <memory>

namespace discaro::db {

class Store;

// An open handle on a file, as the engine sees it.
class Handle {
public:
    // The file. HandleClosed.
    virtual const std::shared_ptr<Store>& store() const = 0;
    // Whether nobody works through it.
    virtual bool idle() const = 0;
    virtual void Close() = 0;

protected:
    ~Handle() = default;
};

} // namespace discaro::db
