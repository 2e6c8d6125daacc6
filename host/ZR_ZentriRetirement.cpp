#include "host/ZR_ZentriRetirement.h"

#include <afxext.h>
#include <afxwin.h>
#include <rxmfcapi.h>

#include <QCoreApplication>
#include <QThread>
#include <QTimer>

#include "host/ZR_ZentriPaletteSet.h"
#include "host/core/ZR_ZentriModalScope.h"

namespace {
constexpr int kRetryMilliseconds = 50;
}

bool zentriLoopRuns() {
    // Qt's main event loop is never entered, so any Qt event loop on this thread is a nested one.
    return ZR_ZentriModalScope::anyOpen() || QThread::currentThread()->loopLevel() > 0;
}

void retirePaletteSet(ZR_ZentriPaletteSet* paletteSet) {
    if (paletteSet == nullptr) {
        return;
    }
    if (!zentriLoopRuns()) {
        delete paletteSet;
        return;
    }
    acedGetAcadFrame()->ShowControlBar(paletteSet, FALSE, FALSE);
    auto* const timer = new QTimer(QCoreApplication::instance());
    QObject::connect(timer, &QTimer::timeout, timer, [timer, paletteSet] {
        if (zentriLoopRuns()) {
            return;
        }
        timer->stop();
        timer->deleteLater();
        delete paletteSet;
    });
    timer->start(kRetryMilliseconds);
}
