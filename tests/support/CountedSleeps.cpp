#include "support/CountedSleeps.h"

#include <sqlite3.h>

#include <utility>

namespace discaro::test {

// The system's own file layer but for the sleeps.
struct CountedSleeps::Layer {
    sqlite3_vfs* real;
    sqlite3_vfs vfs;
    int microseconds = 0;
};

namespace {

int* g_microseconds = nullptr;

int countSleep(sqlite3_vfs*, int microseconds) {
    *g_microseconds += microseconds;
    return microseconds;
}

} // namespace

CountedSleeps::CountedSleeps()
    : m_layer(std::make_unique<Layer>()) {
    m_layer->real = sqlite3_vfs_find(nullptr);
    m_layer->vfs = *m_layer->real;
    m_layer->vfs.pNext = nullptr;
    m_layer->vfs.zName = "discaro-counted-sleeps";
    m_layer->vfs.xSleep = &countSleep;
    g_microseconds = &m_layer->microseconds;
    sqlite3_vfs_register(&m_layer->vfs, 1);
}

CountedSleeps::~CountedSleeps() {
    sqlite3_vfs_unregister(&m_layer->vfs);
    sqlite3_vfs_register(m_layer->real, 1);
}

int CountedSleeps::takeMilliseconds() {
    return std::exchange(m_layer->microseconds, 0) / 1000;
}

} // namespace discaro::test
