#pragma once

#include <memory>

namespace discaro::db {

// An open file as the transaction and a group of saves see it: something to begin, and to commit or undo.
class Participant : public std::enable_shared_from_this<Participant> {
public:
    virtual bool updatable() const = 0;
    // Whether it has been begun and neither committed nor undone, by whatever.
    virtual bool inTransaction() const = 0;
    virtual void begin() = 0;
    virtual void commit() = 0;
    virtual void rollback() noexcept = 0;

protected:
    ~Participant() = default;
};

} // namespace discaro::db
