#include "win32_queue.h"
#include "win32_support.h"

#include <algorithm>

namespace win32 {

namespace {

/// The hook that this thread is running; nested when a hook procedure's own calls run hooks.
struct ChainPosition {
    std::shared_ptr<Hook> hook;
    ChainPosition* outer;
};
thread_local ChainPosition* t_position = nullptr;

/// Calls the next hook of this kind: the newest one installed before `newer`, or the newest of all for null.
LRESULT callHook(int kind, const Hook* newer, int code, WPARAM wParam, LPARAM lParam) {
    std::shared_ptr<Hook> next;
    for (const auto& hook : Queue::current().hooks()) {
        if (hook->kind == kind && (newer == nullptr || hook->order < newer->order) &&
            (next == nullptr || hook->order > next->order)) {
            next = hook;
        }
    }
    if (next == nullptr) {
        return 0;
    }
    ChainPosition position{next, t_position};
    t_position = &position;
    const LRESULT result = next->procedure(code, wParam, lParam);
    t_position = position.outer;
    return result;
}

bool anyHook(int kind) {
    const auto& hooks = Queue::current().hooks();
    return std::any_of(hooks.begin(), hooks.end(), [kind](const auto& hook) { return hook->kind == kind; });
}

std::mutex g_hooksMutex;
std::vector<std::shared_ptr<Hook>> g_hooks;
unsigned g_hooksMade = 0;

}  // namespace

void callGetMessageHooks(MSG& message, UINT remove) {
    if (anyHook(WH_GETMESSAGE)) {
        callHook(WH_GETMESSAGE, nullptr, HC_ACTION, remove, reinterpret_cast<LPARAM>(&message));
    }
}

void callWndProcHooks(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (anyHook(WH_CALLWNDPROC)) {
        CWPSTRUCT call{lParam, wParam, message, window};
        callHook(WH_CALLWNDPROC, nullptr, HC_ACTION, 0, reinterpret_cast<LPARAM>(&call));
    }
}

bool callCbtHooks(int code, HWND window, LPARAM lParam) {
    return anyHook(WH_CBT) && callHook(WH_CBT, nullptr, code, reinterpret_cast<WPARAM>(window), lParam) != 0;
}

}  // namespace win32

using namespace win32;

HHOOK SetWindowsHookExW(int kind, HOOKPROC procedure, HINSTANCE module, DWORD threadId) {
    if (kind != WH_GETMESSAGE && kind != WH_CALLWNDPROC && kind != WH_CBT) {
        unsupported("SetWindowsHookEx", "a kind of hook other than WH_GETMESSAGE, WH_CALLWNDPROC and WH_CBT");
    }
    if (procedure == nullptr) {
        return failWith<HHOOK>(ERROR_INVALID_HOOK_FILTER, nullptr);
    }
    if (threadId == 0) {
        if (module == nullptr) {
            return failWith<HHOOK>(ERROR_HOOK_NEEDS_HMOD, nullptr);
        }
        unsupported("SetWindowsHookEx", "a hook for all threads");
    }
    if (threadId != GetCurrentThreadId()) {
        unsupported("SetWindowsHookEx", "a hook for another thread");
    }
    const std::lock_guard<std::mutex> lock(g_hooksMutex);
    auto hook = std::make_shared<Hook>(Hook{kind, procedure, threadId, g_hooksMade++});
    Queue::current().hooks().push_back(hook);
    g_hooks.push_back(hook);
    return reinterpret_cast<HHOOK>(hook.get());
}

BOOL UnhookWindowsHookEx(HHOOK handle) {
    std::shared_ptr<Hook> hook;
    {
        const std::lock_guard<std::mutex> lock(g_hooksMutex);
        const auto found = std::find_if(g_hooks.begin(), g_hooks.end(), [handle](const auto& candidate) {
            return reinterpret_cast<HHOOK>(candidate.get()) == handle;
        });
        if (found == g_hooks.end()) {
            return failWith<BOOL>(ERROR_INVALID_HOOK_HANDLE, FALSE);
        }
        hook = *found;
        if (hook->threadId != GetCurrentThreadId()) {
            unsupported("UnhookWindowsHookEx", "a hook of another thread");
        }
        g_hooks.erase(found);
    }
    auto& hooks = Queue::current().hooks();
    hooks.erase(std::remove(hooks.begin(), hooks.end(), hook), hooks.end());
    return TRUE;
}

// The handle is ignored, as on Windows: the chain continues from the hook that is running.
LRESULT CallNextHookEx(HHOOK, int code, WPARAM wParam, LPARAM lParam) {
    if (t_position == nullptr) {
        return 0;
    }
    return callHook(t_position->hook->kind, t_position->hook.get(), code, wParam, lParam);
}
