#include "host/ZR_ZentriRetirement.h"

#include <afxext.h>
#include <afxwin.h>
#include <rxmfcapi.h>

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>
#include <memory>
#include <utility>
#include <vector>

#include "host/ZR_ZentriPaletteSet.h"
#include "host/core/ZR_ZentriHostLoop.h"

namespace {

constexpr int kRetryMilliseconds = 50;

std::vector<std::unique_ptr<ZR_ZentriPaletteSet>>& retired() {
    // Never destroyed: at process exit neither Qt nor MFC is left to delete a window.
    static auto* const sets = new std::vector<std::unique_ptr<ZR_ZentriPaletteSet>>;
    return *sets;
}

/// Owned by the application. Null while no set waits.
QPointer<QTimer> g_timer;

void deleteWhenIdle() {
    if (zentriNestedLoopRuns()) {
        return;
    }
    g_timer->stop();
    g_timer->deleteLater();
    g_timer = nullptr;
    deleteRetiredPaletteSets();
}

}  // namespace

void retirePaletteSet(ZR_ZentriPaletteSet* paletteSet) {
    if (paletteSet == nullptr) {
        return;
    }
    if (!zentriNestedLoopRuns()) {
        delete paletteSet;
        return;
    }
    retired().emplace_back(paletteSet);
    if (g_timer == nullptr) {
        g_timer = new QTimer(QCoreApplication::instance());
        QObject::connect(g_timer, &QTimer::timeout, g_timer, &deleteWhenIdle);
        g_timer->start(kRetryMilliseconds);
    }
    if (paletteSet->GetSafeHwnd() != nullptr) {
        acedGetAcadFrame()->ShowControlBar(paletteSet, FALSE, FALSE);
    }
}

void deleteRetiredPaletteSets() {
    // Deleting a window calls back into the host.
    const auto sets = std::exchange(retired(), {});
}
