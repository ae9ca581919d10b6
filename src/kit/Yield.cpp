#include "kit/Yield.h"

#include "kit/Ground.h"

#include <QtCore/QCoreApplication>

namespace discaro::kit {

namespace {

int g_depth = 0;

struct Deeper {
    Deeper() { ++g_depth; }
    ~Deeper() { --g_depth; }
};

} // namespace

void yield() {
    {
        const Deeper deeper;
        QCoreApplication::processEvents();
    }
    if (g_depth == 0)
        groundReached();
}

int yieldDepth() {
    return g_depth;
}

} // namespace discaro::kit
