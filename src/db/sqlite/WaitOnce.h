#pragma once

namespace discaro::db {

// Within its scope the statements of this process wait for another program's lock once in all: after a wait in vain the
// others fail at once. For a handler that asks the catalogue many things one after the other; a scope within another
// adds nothing. Before a yield, when other handlers run, the scope is left by a Pause.
class WaitOnce {
public:
    WaitOnce();
    ~WaitOnce();
    WaitOnce(const WaitOnce&) = delete;
    WaitOnce& operator=(const WaitOnce&) = delete;

    // While it lives everything waits as without any scope.
    class Pause {
    public:
        Pause();
        ~Pause();
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;

    private:
        WaitOnce* m_paused;
    };

    // For the connections: whether a wait is still worth while; and that one was in vain.
    static bool mayWait();
    static void waitedInVain();

private:
    bool m_outermost;
    bool m_inVain = false;
};

} // namespace discaro::db
