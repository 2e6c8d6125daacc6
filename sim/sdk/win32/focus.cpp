// Focus, activation and capture.
//
// The X server's input focus stays on the focus proxy of the active top-level window; which window gets the
// keys is decided here. Another toolkit's window embedded in one of ours is notified of the focus through the
// XEMBED protocol.

#include "win32_focus.h"

#include "win32_queue.h"
#include "win32_support.h"
#include "win32_window.h"

namespace win32 {

namespace {

HWND g_focus = nullptr;
HWND g_active = nullptr;
HWND g_lastActive = nullptr;
HWND g_capture = nullptr;
// Sequence number of our last SetInputFocus request: focus events from before it are stale.
unsigned g_focusRequest = 0;

enum XembedMessage : std::uint32_t {
    kXembedWindowActivate = 1,
    kXembedWindowDeactivate = 2,
    kXembedFocusIn = 4,
    kXembedFocusOut = 5,
};

void sendXembed(HWND window, XembedMessage message) {
    const Display& display = Display::instance();
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = toXid(window);
    event.type = display.atoms().xembed;
    event.data.data32[0] = display.time();
    event.data.data32[1] = message;
    xcb_send_event(display.connection(), 0, toXid(window), XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(display.connection());
}

void tellFocus(HWND window, bool focused, HWND other) {
    if (findWindow(window) != nullptr) {
        callWindow(window, focused ? WM_SETFOCUS : WM_KILLFOCUS, reinterpret_cast<WPARAM>(other), 0);
        return;
    }
    if (foreignToolkit() != nullptr && foreignToolkit()->owns(window)) {
        foreignToolkit()->focusChanged(window, focused);
    } else if (focused) {
        sendXembed(window, kXembedWindowActivate);
        sendXembed(window, kXembedFocusIn);
    } else {
        sendXembed(window, kXembedFocusOut);
    }
}

HWND moveFocus(HWND window) {
    const HWND old = g_focus;
    if (old == window) {
        return old;
    }
    g_focus = window;
    if (old != nullptr) {
        tellFocus(old, false, window);
        // The WM_KILLFOCUS handler may itself have moved the focus.
        if (g_focus != window) {
            return old;
        }
    }
    if (window != nullptr) {
        tellFocus(window, true, old);
    }
    return old;
}

void deactivate(HWND next) {
    const HWND old = g_active;
    if (old == nullptr) {
        return;
    }
    g_active = nullptr;
    if (findWindow(old) != nullptr) {
        callWindow(old, WM_NCACTIVATE, FALSE, 0);
        callWindow(old, WM_ACTIVATE, MAKEWPARAM(WA_INACTIVE, 0), reinterpret_cast<LPARAM>(next));
    }
}

bool inside(HWND window, HWND ancestor) {
    return window != nullptr && (window == ancestor || IsChild(ancestor, window) != FALSE);
}

/// The window to activate when this one is hidden or destroyed: its owner, or else any top-level window that
/// can be activated.
HWND successorOf(const Window& window) {
    if (const Window* owner = findWindow(window.parent);
        owner != nullptr && owner->isTopLevel() && isViewable(*owner) && owner->isEnabled()) {
        return owner->handle;
    }
    for (auto candidate = allWindows().rbegin(); candidate != allWindows().rend(); ++candidate) {
        if ((*candidate)->isTopLevel() && candidate->get() != &window && isViewable(**candidate) &&
            (*candidate)->isEnabled() && !(*candidate)->destroying) {
            return (*candidate)->handle;
        }
    }
    return nullptr;
}

}  // namespace

void takeServerFocus(const Window& topLevel) {
    if (!isViewable(topLevel)) {
        return;
    }
    const Display& display = Display::instance();
    g_focusRequest = xcb_set_input_focus(display.connection(), XCB_INPUT_FOCUS_PARENT, topLevel.focusProxy,
                                         XCB_CURRENT_TIME)
                         .sequence;
    xcb_flush(display.connection());
}

void activateWindow(HWND topLevel, int how) {
    const Window* window = findWindow(topLevel);
    if (window == nullptr || !window->isEnabled()) {
        return;
    }
    takeServerFocus(*window);
    if (g_active == topLevel) {
        return;
    }
    const HWND old = g_active;
    deactivate(topLevel);
    if (findWindow(topLevel) == nullptr) {
        return;
    }
    g_active = g_lastActive = topLevel;
    callWindow(topLevel, WM_NCACTIVATE, TRUE, 0);
    // DefWindowProc sets the focus to it.
    callWindow(topLevel, WM_ACTIVATE, MAKEWPARAM(how, 0), reinterpret_cast<LPARAM>(old));
}

void serverFocusIn(Window& topLevel, unsigned sequence, bool onProxy) {
    if (static_cast<int>(sequence - g_focusRequest) < 0) {
        return;
    }
    if (!onProxy) {
        takeServerFocus(topLevel);
    }
    if (g_active != topLevel.handle && topLevel.isEnabled()) {
        activateWindow(topLevel.handle, WA_ACTIVE);
    }
}

void serverFocusOut(Window& topLevel, unsigned sequence) {
    if (static_cast<int>(sequence - g_focusRequest) < 0 || g_active != topLevel.handle) {
        return;
    }
    deactivate(nullptr);
    if (g_active == nullptr) {
        moveFocus(nullptr);
    }
    // Release every key: the key-up events of those held now go to another program.
    auto& keys = Queue::main().keyState();
    for (BYTE& key : keys) {
        key = static_cast<BYTE>(key & 0x01);
    }
}

void reclaimServerFocus() {
    const Display& display = Display::instance();
    if (g_active != nullptr || display.hasWindowManager()) {
        return;
    }
    const Window* last = findWindow(g_lastActive);
    if (last == nullptr || !isViewable(*last) || !last->isEnabled()) {
        return;
    }
    const auto focus = owned(
        xcb_get_input_focus_reply(display.connection(), xcb_get_input_focus(display.connection()), nullptr));
    if (focus && (focus->focus == XCB_NONE || focus->focus == XCB_INPUT_FOCUS_POINTER_ROOT ||
                  focus->focus == display.root())) {
        activateWindow(last->handle, WA_ACTIVE);
    }
}

void releaseFocus(Window& window, bool destroyed) {
    const HWND handle = window.handle;
    if (inside(g_capture, handle)) {
        ReleaseCapture();
    }
    if (window.isTopLevel()) {
        if (g_active == handle) {
            const HWND next = successorOf(window);
            if (next != nullptr) {
                activateWindow(next, WA_ACTIVE);
            } else {
                deactivate(nullptr);
            }
        }
        if (inside(g_focus, handle)) {
            moveFocus(nullptr);
        }
        if (g_lastActive == handle) {
            g_lastActive = window.parent;
        }
    } else if (g_focus == handle || (destroyed && inside(g_focus, handle))) {
        const Window* parent = findWindow(window.parent);
        moveFocus(parent != nullptr && !parent->destroying ? parent->handle : nullptr);
    }
}

HWND focusWindow() {
    return g_focus;
}
HWND captureWindow() {
    return g_capture;
}

void captureLost() {
    if (g_capture != nullptr) {
        const HWND old = g_capture;
        g_capture = nullptr;
        if (findWindow(old) != nullptr) {
            callWindow(old, WM_CAPTURECHANGED, 0, 0);
        }
    }
}

bool activateClicked(const MSG& message) {
    const Window* topLevel = topLevelOf(message.hwnd);
    if (topLevel == nullptr || topLevel->handle == g_active || !topLevel->isEnabled()) {
        return true;
    }
    const HWND handle = topLevel->handle;
    const LRESULT answer = SendMessageW(message.hwnd, WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(handle),
                                        MAKELPARAM(HTCLIENT, message.message));
    if (answer != MA_NOACTIVATE && answer != MA_NOACTIVATEANDEAT) {
        activateWindow(handle, WA_CLICKACTIVE);
    }
    return answer != MA_ACTIVATEANDEAT && answer != MA_NOACTIVATEANDEAT;
}

}  // namespace win32

using namespace win32;

HWND SetFocus(HWND handle) {
    if (!onMainThread()) {
        return failWith<HWND>(ERROR_ACCESS_DENIED, nullptr);
    }
    if (handle == nullptr) {
        return moveFocus(nullptr);
    }
    if (IsWindow(handle) == FALSE) {
        return failWith<HWND>(ERROR_INVALID_WINDOW_HANDLE, nullptr);
    }
    if (!acceptsInput(handle)) {
        return failWith<HWND>(ERROR_INVALID_PARAMETER, nullptr);
    }
    const HWND old = g_focus;
    if (const Window* topLevel = topLevelOf(handle)) {
        if (topLevel->handle != g_active) {
            activateWindow(topLevel->handle, WA_ACTIVE);
        }
    }
    moveFocus(handle);
    return old;
}

HWND GetFocus() {
    return onMainThread() ? g_focus : nullptr;
}

HWND SetActiveWindow(HWND handle) {
    const HWND old = g_active;
    const Window* window = requireWindow(handle);
    if (window == nullptr) {
        return nullptr;
    }
    if (window->isTopLevel()) {
        activateWindow(handle, WA_ACTIVE);
    }
    return old;
}

HWND GetActiveWindow() {
    return onMainThread() ? g_active : nullptr;
}

BOOL SetForegroundWindow(HWND handle) {
    const Window* topLevel = topLevelOf(handle);
    if (topLevel == nullptr) {
        return FALSE;
    }
    BringWindowToTop(topLevel->handle);
    activateWindow(topLevel->handle, WA_ACTIVE);
    return TRUE;
}

HWND GetForegroundWindow() {
    return g_active;
}

HWND SetCapture(HWND handle) {
    if (requireWindow(handle) == nullptr || !onMainThread()) {
        return nullptr;
    }
    const HWND old = g_capture;
    g_capture = handle;
    const Display& display = Display::instance();
    owned(xcb_grab_pointer_reply(
        display.connection(),
        xcb_grab_pointer(
            display.connection(), 0, toXid(handle),
            XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION,
            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME),
        nullptr));
    if (old != nullptr && old != handle && findWindow(old) != nullptr) {
        callWindow(old, WM_CAPTURECHANGED, 0, reinterpret_cast<LPARAM>(handle));
    }
    return old;
}

BOOL ReleaseCapture() {
    if (g_capture != nullptr) {
        xcb_ungrab_pointer(Display::instance().connection(), XCB_CURRENT_TIME);
        Display::instance().flush();
        captureLost();
    }
    return TRUE;
}

HWND GetCapture() {
    return onMainThread() ? g_capture : nullptr;
}
