#include "host/core/ZR_ZentriQuitGuard.h"

#include <utility>

#include "host/core/ZR_ZentriHostLoop.h"

namespace {

int g_guards = 0;
HHOOK g_hook = nullptr;
bool g_quitTaken = false;
int g_exitCode = 0;

LRESULT CALLBACK noteQuit(int code, WPARAM wParam, LPARAM lParam) {
    const auto* const message = reinterpret_cast<const MSG*>(lParam);
    if (code == HC_ACTION && wParam == PM_REMOVE && message->message == WM_QUIT) {
        g_quitTaken = true;
        g_exitCode = static_cast<int>(message->wParam);
    }
    return CallNextHookEx(g_hook, code, wParam, lParam);
}

}  // namespace

ZR_ZentriQuitGuard::ZR_ZentriQuitGuard() {
    if (g_guards++ == 0) {
        g_hook = SetWindowsHookExW(WH_GETMESSAGE, &noteQuit, nullptr, GetCurrentThreadId());
    }
}

ZR_ZentriQuitGuard::~ZR_ZentriQuitGuard() {
    if (--g_guards > 0) {
        return;
    }
    UnhookWindowsHookEx(std::exchange(g_hook, nullptr));
    if (std::exchange(g_quitTaken, false) && zentriHostLoopLevel() == 0) {
        PostQuitMessage(g_exitCode);
    }
}
