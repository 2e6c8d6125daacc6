#include "win32_queue.h"
#include "win32_support.h"
#include "win32_window.h"

#include <algorithm>
#include <map>

namespace win32 {

namespace {

thread_local bool t_inSend = false;

bool isKeyMessage(UINT message) {
    return message == WM_KEYDOWN || message == WM_KEYUP || message == WM_SYSKEYDOWN || message == WM_SYSKEYUP;
}

void setKey(Queue& queue, int virtualKey, bool down) {
    BYTE& state = queue.keyState()[static_cast<std::size_t>(virtualKey & 0xFF)];
    const bool wasDown = (state & 0x80) != 0;
    if (down && !wasDown) {
        state = static_cast<BYTE>(state ^ 0x01);
    }
    state = static_cast<BYTE>((state & 0x01) | (down ? 0x80 : 0));
}

LRESULT sendHere(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (isOwnWindow(window)) {
        return callWindow(window, message, wParam, lParam);
    }
    Win32ForeignToolkit* toolkit = foreignToolkit();
    if (toolkit != nullptr && toolkit->owns(window)) {
        MSG sent{};
        sent.hwnd = window;
        sent.message = message;
        sent.wParam = wParam;
        sent.lParam = lParam;
        sent.time = static_cast<DWORD>(ticks());
        sent.pt = Queue::current().lastPosition();
        callWndProcHooks(window, message, wParam, lParam);
        return toolkit->deliver(sent);
    }
    return failWith<LRESULT>(ERROR_INVALID_WINDOW_HANDLE, 0);
}

std::vector<HWND> topLevelWindows() {
    std::vector<HWND> windows;
    callOnMainThread([&windows] {
        for (const auto& window : allWindows()) {
            if (window->isTopLevel()) {
                windows.push_back(window->handle);
            }
        }
    });
    return windows;
}

}  // namespace

void followKeyState(const MSG& message) {
    Queue& queue = Queue::current();
    if (isKeyMessage(message.message)) {
        const bool down = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
        const int key = static_cast<int>(message.wParam & 0xFF);
        setKey(queue, key, down);
        const bool extended = (HIWORD(static_cast<DWORD_PTR>(message.lParam)) & KF_EXTENDED) != 0;
        switch (key) {
            case VK_SHIFT:
                setKey(queue, VK_LSHIFT, down);
                break;
            case VK_CONTROL:
                setKey(queue, extended ? VK_RCONTROL : VK_LCONTROL, down);
                break;
            case VK_MENU:
                setKey(queue, extended ? VK_RMENU : VK_LMENU, down);
                break;
            default:
                break;
        }
        return;
    }
    switch (message.message) {
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            setKey(queue, VK_LBUTTON, true);
            break;
        case WM_LBUTTONUP:
            setKey(queue, VK_LBUTTON, false);
            break;
        case WM_RBUTTONDOWN:
        case WM_RBUTTONDBLCLK:
            setKey(queue, VK_RBUTTON, true);
            break;
        case WM_RBUTTONUP:
            setKey(queue, VK_RBUTTON, false);
            break;
        case WM_MBUTTONDOWN:
        case WM_MBUTTONDBLCLK:
            setKey(queue, VK_MBUTTON, true);
            break;
        case WM_MBUTTONUP:
            setKey(queue, VK_MBUTTON, false);
            break;
        default:
            break;
    }
}

LRESULT callWindow(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    callWndProcHooks(handle, message, wParam, lParam);
    const Window* window = findWindow(handle);
    return window != nullptr ? window->procedure(handle, message, wParam, lParam) : 0;
}

bool retrieved(MSG& message, UINT remove) {
    Queue& queue = Queue::current();
    queue.noteRetrieved(message);
    if ((remove & PM_REMOVE) != 0) {
        followKeyState(message);
        switch (message.message) {
            case WM_LBUTTONDOWN:
            case WM_RBUTTONDOWN:
            case WM_MBUTTONDOWN:
            case WM_NCLBUTTONDOWN:
                if (!activateClicked(message)) {
                    return false;
                }
                break;
            case WM_MOUSEMOVE:
                pointerMoved(message);
                break;
            default:
                break;
        }
    }
    callGetMessageHooks(message, remove);
    return true;
}

}  // namespace win32

using namespace win32;

BOOL GetMessageW(LPMSG message, HWND window, UINT first, UINT last) {
    Queue& queue = Queue::current();
    const MessageFilter filter{window, first, last};
    const bool main = onMainThread();
    if (main) {
        yieldToMainContext();
    }
    for (;;) {
        const unsigned seen = queue.arrivals();
        queue.runErrands();
        if (main) {
            readXEvents();
        }
        if (queue.take(*message, filter, true)) {
            if (retrieved(*message, PM_REMOVE)) {
                return message->message != WM_QUIT ? TRUE : FALSE;
            }
        } else if (main) {
            waitInMainContext(filter);
        } else {
            queue.waitAlone(seen, filter);
        }
    }
}

BOOL PeekMessageW(LPMSG message, HWND window, UINT first, UINT last, UINT remove) {
    Queue& queue = Queue::current();
    const MessageFilter filter{window, first, last};
    const bool removes = (remove & PM_REMOVE) != 0;
    const bool main = onMainThread();
    queue.runErrands();
    if (main) {
        readXEvents();
    }
    while (queue.take(*message, filter, removes)) {
        if (retrieved(*message, remove)) {
            return TRUE;
        }
    }
    // A polling message loop has to run the main context's other sources too: on Windows they would be driven
    // by messages of their own. A peek (PM_NOREMOVE, or with a filter) runs nothing.
    if (!main || !removes || !filter.everything()) {
        return FALSE;
    }
    pollMainContext();
    queue.runErrands();
    return queue.take(*message, filter, true) && retrieved(*message, remove) ? TRUE : FALSE;
}

BOOL WaitMessage() {
    Queue& queue = Queue::current();
    MSG message;
    for (;;) {
        const unsigned seen = queue.arrivals();
        queue.runErrands();
        if (onMainThread()) {
            readXEvents();
        }
        if (queue.take(message, {}, false)) {
            return TRUE;
        }
        if (onMainThread()) {
            waitInMainContext({});
        } else {
            queue.waitAlone(seen, {});
        }
    }
}

LRESULT DispatchMessageW(const MSG* message) {
    if (message->message == WM_TIMER && message->lParam != 0) {
        const auto procedure = reinterpret_cast<TIMERPROC>(message->lParam);
        const auto& timers = Queue::current().timers();
        const bool alive = std::any_of(timers.begin(), timers.end(), [&](const Timer& timer) {
            return timer.window == message->hwnd && timer.id == message->wParam &&
                   timer.procedure == procedure;
        });
        if (alive) {
            procedure(message->hwnd, WM_TIMER, message->wParam, static_cast<DWORD>(ticks()));
        }
        return 0;
    }
    if (message->hwnd == nullptr) {
        return 0;
    }
    if (isOwnWindow(message->hwnd)) {
        const Window* window = findWindow(message->hwnd);
        if (window == nullptr || !onMainThread()) {
            return 0;
        }
        const HWND handle = message->hwnd;
        return window->procedure(handle, message->message, message->wParam, message->lParam);
    }
    Win32ForeignToolkit* toolkit = foreignToolkit();
    if (toolkit != nullptr && onMainThread() && toolkit->owns(message->hwnd)) {
        return toolkit->deliver(*message);
    }
    return 0;
}

BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (window == HWND_BROADCAST) {
        for (HWND target : topLevelWindows()) {
            PostMessageW(target, message, wParam, lParam);
        }
        return TRUE;
    }
    if (window != nullptr && IsWindow(window) == FALSE) {
        return failWith<BOOL>(ERROR_INVALID_WINDOW_HANDLE, FALSE);
    }
    MSG posted{};
    posted.hwnd = window;
    posted.message = message;
    posted.wParam = wParam;
    posted.lParam = lParam;
    posted.time = static_cast<DWORD>(ticks());
    if (onMainThread()) {
        posted.pt = pointerPosition();
    }
    (window == nullptr ? Queue::current() : Queue::main()).post(posted);
    return TRUE;
}

BOOL PostThreadMessageW(DWORD threadId, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto queue = threadId == GetCurrentThreadId() ? nullptr : Queue::ofThread(threadId);
    if (queue == nullptr && threadId != GetCurrentThreadId()) {
        return failWith<BOOL>(ERROR_INVALID_THREAD_ID, FALSE);
    }
    MSG posted{};
    posted.message = message;
    posted.wParam = wParam;
    posted.lParam = lParam;
    posted.time = static_cast<DWORD>(ticks());
    if (message == WM_QUIT) {
        (queue ? *queue : Queue::current()).quit(static_cast<int>(wParam));
    } else {
        (queue ? *queue : Queue::current()).post(posted);
    }
    return TRUE;
}

void PostQuitMessage(int exitCode) {
    Queue::current().quit(exitCode);
}

LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (window == HWND_BROADCAST) {
        for (HWND target : topLevelWindows()) {
            SendMessageW(target, message, wParam, lParam);
        }
        return 1;
    }
    if (onMainThread()) {
        return sendHere(window, message, wParam, lParam);
    }
    LRESULT result = 0;
    DWORD error = GetLastError();
    callOnMainThread([&] {
        t_inSend = true;
        result = sendHere(window, message, wParam, lParam);
        t_inSend = false;
        error = result == 0 && !isOwnWindow(window) ? GetLastError() : error;
    });
    SetLastError(error);
    return result;
}

BOOL InSendMessage() {
    return t_inSend ? TRUE : FALSE;
}

LRESULT CallWindowProcW(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return procedure(window, message, wParam, lParam);
}

UINT RegisterWindowMessageW(LPCWSTR name) {
    constexpr UINT kFirstRegistered = 0xC000;
    static std::mutex mutex;
    static std::map<std::u16string, UINT> messages;
    if (name == nullptr || *name == 0) {
        return failWith<UINT>(ERROR_INVALID_PARAMETER, 0);
    }
    std::u16string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(), foldCase);
    const std::lock_guard<std::mutex> lock(mutex);
    return messages.emplace(folded, kFirstRegistered + static_cast<UINT>(messages.size())).first->second;
}

LONG GetMessageTime() {
    return static_cast<LONG>(Queue::current().lastTime());
}

DWORD GetMessagePos() {
    const POINT position = Queue::current().lastPosition();
    return static_cast<DWORD>(MAKELONG(position.x, position.y));
}

// Timers.

UINT_PTR SetTimer(HWND window, UINT_PTR id, UINT milliseconds, TIMERPROC procedure) {
    if (window != nullptr && (!onMainThread() || requireWindow(window) == nullptr)) {
        return failWith<UINT_PTR>(ERROR_INVALID_WINDOW_HANDLE, 0);
    }
    Queue& queue = Queue::current();
    auto& timers = queue.timers();
    const UINT period = std::clamp<UINT>(milliseconds, USER_TIMER_MINIMUM, 0x7FFFFFFFU);
    auto timer = std::find_if(timers.begin(), timers.end(), [&](const Timer& candidate) {
        return candidate.window == window && candidate.id == id;
    });
    if (timer == timers.end()) {
        if (window == nullptr) {
            static thread_local UINT_PTR nextId = 0x7FFF;
            id = nextId--;
        }
        timers.push_back({window, id, 0, nullptr, 0});
        timer = std::prev(timers.end());
    }
    timer->period = period;
    timer->procedure = procedure;
    timer->due = ticks() + period;
    // For a window's timer any non-zero result means success, also if its id is 0.
    return window == nullptr ? id : std::max<UINT_PTR>(id, 1);
}

BOOL KillTimer(HWND window, UINT_PTR id) {
    auto& timers = Queue::current().timers();
    const auto timer = std::find_if(timers.begin(), timers.end(), [&](const Timer& candidate) {
        return candidate.window == window && candidate.id == id;
    });
    if (timer == timers.end()) {
        return failWith<BOOL>(ERROR_INVALID_PARAMETER, FALSE);
    }
    timers.erase(timer);
    return TRUE;
}
