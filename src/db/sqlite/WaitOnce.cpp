#include "db/sqlite/WaitOnce.h"

#include <utility>

namespace discaro::db {

namespace {

WaitOnce* g_scope = nullptr;

} // namespace

WaitOnce::WaitOnce()
    : m_outermost(g_scope == nullptr) {
    if (m_outermost)
        g_scope = this;
}

WaitOnce::~WaitOnce() {
    if (m_outermost)
        g_scope = nullptr;
}

WaitOnce::Pause::Pause()
    : m_paused(std::exchange(g_scope, nullptr)) {}

WaitOnce::Pause::~Pause() {
    g_scope = m_paused;
}

bool WaitOnce::mayWait() {
    return g_scope == nullptr || !g_scope->m_inVain;
}

void WaitOnce::waitedInVain() {
    if (g_scope != nullptr)
        g_scope->m_inVain = true;
}

} // namespace discaro::db
