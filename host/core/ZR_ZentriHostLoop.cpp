#include "host/core/ZR_ZentriHostLoop.h"

#include <QCoreApplication>
#include <QThread>
#include <QTimer>
#include <algorithm>

#include "host/core/ZR_ZentriModalScope.h"

namespace {

int g_hostLoopLevel = 0;

int loopLevel() {
    return QThread::currentThread()->loopLevel();
}

}  // namespace

void learnZentriHostLoops() {
    g_hostLoopLevel = loopLevel();
    // A host may load its modules before it enters its main loop.
    QTimer::singleShot(0, QCoreApplication::instance(),
                       [] { g_hostLoopLevel = std::max(g_hostLoopLevel, loopLevel()); });
}

void checkZentriHostLoops() {
    g_hostLoopLevel = std::min(g_hostLoopLevel, loopLevel());
}

int zentriHostLoopLevel() {
    return g_hostLoopLevel;
}

bool zentriNestedLoopRuns() {
    return ZR_ZentriModalScope::anyOpen() || loopLevel() > g_hostLoopLevel;
}
