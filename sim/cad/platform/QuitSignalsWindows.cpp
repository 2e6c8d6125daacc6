#include <windows.h>

#include <utility>

#include "sim/cad/platform/QuitSignals.h"

namespace cad {

namespace {

std::function<void()> g_onSignal;
bool g_signalled = false;

BOOL WINAPI handler(DWORD event) {
    // Called on a system thread. Events that are not handled here end the process.
    if (g_signalled || (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)) {
        return FALSE;
    }
    g_signalled = true;
    g_onSignal();
    return TRUE;
}

}  // namespace

QuitSignals::QuitSignals(std::function<void()> onSignal) {
    g_onSignal = std::move(onSignal);
    g_signalled = false;
    ::SetConsoleCtrlHandler(handler, TRUE);
}

QuitSignals::~QuitSignals() {
    ::SetConsoleCtrlHandler(handler, FALSE);
}

}  // namespace cad
