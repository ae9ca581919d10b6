#pragma once

namespace discaro::test {

// The engine of the process as it is at the program's start: it knows no format of files and waits for locks as long as
// it does. At the object's end it is so again.
class FreshEngine {
public:
    FreshEngine() { reset(); }
    ~FreshEngine() { reset(); }
    FreshEngine(const FreshEngine&) = delete;
    FreshEngine& operator=(const FreshEngine&) = delete;

private:
    static void reset();
};

} // namespace discaro::test
