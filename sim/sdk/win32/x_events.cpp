// Turns X events into messages.

#include "win32_display.h"
#include "win32_focus.h"
#include "win32_keyboard.h"
#include "win32_menu.h"
#include "win32_queue.h"
#include "win32_support.h"
#include "win32_window.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <utility>

namespace win32 {

namespace {

constexpr int kDoubleClickDistance = 4;
constexpr std::uint8_t kSentByClient = 0x80;
constexpr std::uint32_t kXembedRequestFocus = 3;

std::deque<XcbOwned<xcb_generic_event_t>> g_buffered;

// The pointer position in the last event, in screen coordinates.
POINT g_pointer{};
// For detecting double clicks.
struct {
    HWND window = nullptr;
    int button = 0;
    DWORD time = 0;
    POINT position{};
} g_lastPress;
// Keys that are down, for detecting auto-repeat.
std::array<bool, 256> g_held{};

UINT mouseKeys(std::uint16_t state) {
    return ((state & XCB_BUTTON_MASK_1) != 0 ? MK_LBUTTON : 0U) |
           ((state & XCB_BUTTON_MASK_2) != 0 ? MK_MBUTTON : 0U) |
           ((state & XCB_BUTTON_MASK_3) != 0 ? MK_RBUTTON : 0U) |
           ((state & XCB_MOD_MASK_SHIFT) != 0 ? MK_SHIFT : 0U) |
           ((state & XCB_MOD_MASK_CONTROL) != 0 ? MK_CONTROL : 0U);
}

void addMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, DWORD time,
                std::u16string text = {}) {
    InputMessage input;
    input.message.hwnd = window;
    input.message.message = message;
    input.message.wParam = wParam;
    input.message.lParam = lParam;
    input.message.time = time;
    input.message.pt = g_pointer;
    input.keyText = std::move(text);
    Queue::main().addInput(std::move(input));
}

/// The window that receives a pointer event over the given one: the capture window, or the nearest enabled
/// ancestor; null if the top-level window is disabled.
Window* pointerTarget(Window* window) {
    if (Window* capture = findWindow(captureWindow())) {
        return capture;
    }
    while (window != nullptr && !acceptsInput(window->handle)) {
        window = window->isChild() ? findWindow(window->parent) : nullptr;
    }
    return window;
}

LPARAM clientPosition(const Window& window) {
    const POINT origin = clientOrigin(window);
    return MAKELPARAM(g_pointer.x - origin.x, g_pointer.y - origin.y);
}

void buttonEvent(const xcb_button_press_event_t& event, bool down) {
    g_pointer = {event.root_x, event.root_y};
    Window* window = pointerTarget(findWindow(toHwnd(event.event)));
    if (window == nullptr) {
        return;
    }
    constexpr int kWheelUp = 4;
    constexpr int kWheelRight = 7;
    if (event.detail >= kWheelUp && event.detail <= kWheelRight) {
        if (!down) {
            return;
        }
        const bool vertical = event.detail < 6;
        const int delta = event.detail == 4 || event.detail == 7 ? WHEEL_DELTA : -WHEEL_DELTA;
        // To the window under the pointer, as since Windows 10; older versions send it to the focus window.
        addMessage(window->handle, vertical ? WM_MOUSEWHEEL : WM_MOUSEHWHEEL,
                   MAKEWPARAM(mouseKeys(event.state), delta), MAKELPARAM(g_pointer.x, g_pointer.y),
                   event.time);
        return;
    }
    if (event.detail < 1 || event.detail > 3) {
        return;
    }
    if (captureWindow() == nullptr && window->isTopLevel()) {
        const POINT inWindow = {g_pointer.x - window->rectangle.left, g_pointer.y - window->rectangle.top};
        if (inWindow.y < window->topInset) {
            if (event.detail == 1) {
                addMessage(window->handle, down ? WM_NCLBUTTONDOWN : WM_NCLBUTTONUP,
                           static_cast<WPARAM>(frameHitTest(*window, inWindow)),
                           MAKELPARAM(g_pointer.x, g_pointer.y), event.time);
            }
            return;
        }
    }
    struct ButtonMessages {
        UINT down, up, doubleClick, key;
    };
    constexpr ButtonMessages kButtons[] = {
        {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, MK_LBUTTON},
        {WM_MBUTTONDOWN, WM_MBUTTONUP, WM_MBUTTONDBLCLK, MK_MBUTTON},
        {WM_RBUTTONDOWN, WM_RBUTTONUP, WM_RBUTTONDBLCLK, MK_RBUTTON},
    };
    const ButtonMessages& button = kButtons[event.detail - 1];
    UINT message = down ? button.down : button.up;
    if (down) {
        const bool again = g_lastPress.window == window->handle && g_lastPress.button == event.detail &&
                           event.time - g_lastPress.time <= GetDoubleClickTime() &&
                           std::abs(g_lastPress.position.x - g_pointer.x) <= kDoubleClickDistance &&
                           std::abs(g_lastPress.position.y - g_pointer.y) <= kDoubleClickDistance;
        if (again && (window->windowClass->style & CS_DBLCLKS) != 0) {
            message = button.doubleClick;
        }
        g_lastPress.window = again ? nullptr : window->handle;
        g_lastPress.button = event.detail;
        g_lastPress.time = event.time;
        g_lastPress.position = g_pointer;
    }
    // The X event has the state before the button changed, the message needs the one after.
    const UINT keys = down ? mouseKeys(event.state) | button.key : mouseKeys(event.state) & ~button.key;
    addMessage(window->handle, message, keys, clientPosition(*window), event.time);
}

void motionEvent(const xcb_motion_notify_event_t& event) {
    g_pointer = {event.root_x, event.root_y};
    const Window* window = pointerTarget(findWindow(toHwnd(event.event)));
    if (window == nullptr) {
        return;
    }
    const LPARAM position = clientPosition(*window);
    if (captureWindow() == nullptr && GET_Y_LPARAM(position) < 0) {
        return;
    }
    // Coalesce with a move that has not been retrieved yet.
    if (MSG* last = Queue::main().lastInput(window->handle, WM_MOUSEMOVE)) {
        last->wParam = mouseKeys(event.state);
        last->lParam = position;
        last->time = event.time;
        last->pt = g_pointer;
        return;
    }
    addMessage(window->handle, WM_MOUSEMOVE, mouseKeys(event.state), position, event.time);
}

void keyEvent(const xcb_key_press_event_t& event, bool down) {
    g_pointer = {event.root_x, event.root_y};
    const bool repeated = std::exchange(g_held[event.detail], down) && down;
    const Key key = keyOf(event.detail, event.state);
    if (key.virtualKey == 0 && key.text.empty()) {
        return;
    }
    HWND target = focusWindow();
    const bool noFocus = target == nullptr;
    if (noFocus) {
        target = GetActiveWindow();
    }
    const bool altDown = (event.state & XCB_MOD_MASK_1) != 0 || key.virtualKey == VK_MENU;
    const bool control = (event.state & XCB_MOD_MASK_CONTROL) != 0;
    // Keys with Alt, F10, and keys without a focus window are sent as WM_SYSKEY messages.
    const bool system = noFocus || (altDown && !control) || key.virtualKey == VK_F10;
    DWORD bits = 1 | key.scanBits;
    if (altDown) {
        bits |= static_cast<DWORD>(KF_ALTDOWN) << 16;
    }
    if (repeated || !down) {
        bits |= static_cast<DWORD>(KF_REPEAT) << 16;
    }
    if (!down) {
        bits |= static_cast<DWORD>(KF_UP) << 16;
    }
    const UINT message = down ? (system ? WM_SYSKEYDOWN : WM_KEYDOWN) : (system ? WM_SYSKEYUP : WM_KEYUP);
    if (target == nullptr || !acceptsInput(target)) {
        // No window receives the message, but the key state changes all the same.
        MSG untold{};
        untold.message = message;
        untold.wParam = static_cast<WPARAM>(key.virtualKey);
        untold.lParam = static_cast<LPARAM>(static_cast<LONG>(bits));
        followKeyState(untold);
        return;
    }
    addMessage(target, message, static_cast<WPARAM>(key.virtualKey),
               static_cast<LPARAM>(static_cast<LONG>(bits)), event.time, key.text);
}

/// The top-level window that has this focus proxy.
Window* windowOfProxy(xcb_window_t proxy) {
    for (const auto& window : allWindows()) {
        if (window->focusProxy == proxy && proxy != XCB_NONE) {
            return window.get();
        }
    }
    return nullptr;
}

void focusEvent(const xcb_focus_in_event_t& event, unsigned sequence, bool in) {
    if (event.mode == XCB_NOTIFY_MODE_GRAB || event.mode == XCB_NOTIFY_MODE_UNGRAB ||
        event.detail == XCB_NOTIFY_DETAIL_POINTER || event.detail == XCB_NOTIFY_DETAIL_POINTER_ROOT ||
        event.detail == XCB_NOTIFY_DETAIL_NONE) {
        return;
    }
    Window* window = findWindow(toHwnd(event.event));
    if (window == nullptr) {
        return;
    }
    // A move between the window and its focus proxy is no focus change.
    if (event.detail == XCB_NOTIFY_DETAIL_INFERIOR) {
        if (in) {
            takeServerFocus(*window);
        }
        return;
    }
    if (in) {
        const bool onProxy =
            event.detail == XCB_NOTIFY_DETAIL_VIRTUAL || event.detail == XCB_NOTIFY_DETAIL_NONLINEAR_VIRTUAL;
        serverFocusIn(*window, sequence, onProxy);
    } else {
        g_held = {};
        serverFocusOut(*window, sequence);
    }
}

void configureEvent(const xcb_configure_notify_event_t& event) {
    const Window* window = findWindow(toHwnd(event.window));
    if (window == nullptr || !window->isTopLevel() || event.event != event.window) {
        return;
    }
    const Display& display = Display::instance();
    // The event's position may be relative to the window manager's frame.
    const auto origin = owned(xcb_translate_coordinates_reply(
        display.connection(),
        xcb_translate_coordinates(display.connection(), event.window, display.root(), 0, 0), nullptr));
    // Query the current size: a stale event must not undo a later SetWindowPos.
    const auto geometry = owned(xcb_get_geometry_reply(
        display.connection(), xcb_get_geometry(display.connection(), event.window), nullptr));
    if (!origin || !geometry) {
        return;
    }
    // An X window is at least one pixel wide and high; ours may be empty.
    const int width = geometry->width == 1 && window->width() == 0 ? 0 : geometry->width;
    const int height = geometry->height == 1 && window->height() == 0 ? 0 : geometry->height;
    applyRectangle(window->handle,
                   {origin->dst_x, origin->dst_y, origin->dst_x + width, origin->dst_y + height}, false);
}

void clientMessage(const xcb_client_message_event_t& event) {
    const Display& display = Display::instance();
    Window* window = findWindow(toHwnd(event.window));
    if (window == nullptr) {
        return;
    }
    if (event.type == display.atoms().wmProtocols && event.data.data32[0] == display.atoms().wmDeleteWindow) {
        if (window->isEnabled()) {
            PostMessageW(window->handle, WM_SYSCOMMAND, SC_CLOSE, MAKELPARAM(g_pointer.x, g_pointer.y));
        }
    } else if (event.type == display.atoms().xembed && event.data.data32[1] == kXembedRequestFocus) {
        // An embedded window was clicked. The toolkit of this process moves the focus itself, by its own
        // rules; a window of another process gets it.
        const auto tree = owned(xcb_query_tree_reply(
            display.connection(), xcb_query_tree(display.connection(), event.window), nullptr));
        const int count = tree ? xcb_query_tree_children_length(tree.get()) : 0;
        for (int i = 0; i < count; ++i) {
            const HWND child = toHwnd(xcb_query_tree_children(tree.get())[i]);
            const bool inProcess = foreignToolkit() != nullptr && foreignToolkit()->owns(child);
            if (!isOwnWindow(child) && toXid(child) != window->focusProxy && !inProcess) {
                SetFocus(child);
                return;
            }
        }
    }
}

void exposeEvent(const xcb_expose_event_t& event) {
    Window* window = findWindow(toHwnd(event.window));
    if (window == nullptr) {
        return;
    }
    if (event.y < window->topInset) {
        window->frameUpdate = true;
    }
    const RECT exposed = {event.x, event.y - window->topInset, event.x + event.width,
                          event.y - window->topInset + event.height};
    invalidate(*window, &exposed, true);
    if (event.count == 0 && window->frameUpdate) {
        paintFrame(*window);
    }
}

void handle(const xcb_generic_event_t& generic) {
    Display& display = Display::instance();
    // X errors arrive as events too and are ignored: a foreign window may be destroyed any time, so a request
    // may name one that no longer exists.
    switch (generic.response_type & ~kSentByClient) {
        case XCB_BUTTON_PRESS:
        case XCB_BUTTON_RELEASE: {
            const auto& event = reinterpret_cast<const xcb_button_press_event_t&>(generic);
            display.setTime(event.time);
            buttonEvent(event, (generic.response_type & ~kSentByClient) == XCB_BUTTON_PRESS);
            break;
        }
        case XCB_MOTION_NOTIFY: {
            const auto& event = reinterpret_cast<const xcb_motion_notify_event_t&>(generic);
            display.setTime(event.time);
            motionEvent(event);
            break;
        }
        case XCB_KEY_PRESS:
        case XCB_KEY_RELEASE: {
            const auto& event = reinterpret_cast<const xcb_key_press_event_t&>(generic);
            display.setTime(event.time);
            if (windowOfProxy(event.event) != nullptr) {
                keyEvent(event, (generic.response_type & ~kSentByClient) == XCB_KEY_PRESS);
            }
            break;
        }
        case XCB_FOCUS_IN:
        case XCB_FOCUS_OUT:
            focusEvent(reinterpret_cast<const xcb_focus_in_event_t&>(generic), generic.full_sequence,
                       (generic.response_type & ~kSentByClient) == XCB_FOCUS_IN);
            break;
        case XCB_EXPOSE:
            exposeEvent(reinterpret_cast<const xcb_expose_event_t&>(generic));
            break;
        case XCB_CONFIGURE_NOTIFY:
            configureEvent(reinterpret_cast<const xcb_configure_notify_event_t&>(generic));
            break;
        case XCB_UNMAP_NOTIFY:
        case XCB_DESTROY_NOTIFY:
            reclaimServerFocus();
            break;
        case XCB_CLIENT_MESSAGE:
            clientMessage(reinterpret_cast<const xcb_client_message_event_t&>(generic));
            break;
        case XCB_MAPPING_NOTIFY:
            reloadKeymap();
            break;
        default:
            break;
    }
}

}  // namespace

bool bufferXEvents() {
    if (!Display::isOpen()) {
        return false;
    }
    xcb_connection_t* connection = Display::instance().connection();
    while (xcb_generic_event_t* event = xcb_poll_for_event(connection)) {
        g_buffered.push_back(owned(event));
    }
    if (xcb_connection_has_error(connection) != 0) {
        std::fputs("win32: lost the connection to the X server\n", stderr);
        std::_Exit(1);
    }
    return !g_buffered.empty();
}

void readXEvents() {
    // One at a time: handling an event may run a modal loop that reads the others.
    while (bufferXEvents()) {
        const auto event = std::move(g_buffered.front());
        g_buffered.pop_front();
        // X reports auto-repeat as a release and a press with the same timestamp; Windows repeats only the
        // key-down message. Drop the release.
        if ((event->response_type & ~kSentByClient) == XCB_KEY_RELEASE && !g_buffered.empty()) {
            const auto& up = reinterpret_cast<const xcb_key_press_event_t&>(*event);
            const auto& next = reinterpret_cast<const xcb_key_press_event_t&>(*g_buffered.front());
            if ((next.response_type & ~kSentByClient) == XCB_KEY_PRESS && next.detail == up.detail &&
                next.time == up.time) {
                continue;
            }
        }
        handle(*event);
    }
}

POINT pointerPosition() {
    return g_pointer;
}

}  // namespace win32

using namespace win32;

BOOL GetCursorPos(LPPOINT point) {
    const Display& display = Display::instance();
    const auto pointer = owned(xcb_query_pointer_reply(
        display.connection(), xcb_query_pointer(display.connection(), display.root()), nullptr));
    if (!pointer) {
        return FALSE;
    }
    *point = {pointer->root_x, pointer->root_y};
    return TRUE;
}

BOOL SetCursorPos(int x, int y) {
    const Display& display = Display::instance();
    xcb_warp_pointer(display.connection(), XCB_NONE, display.root(), 0, 0, 0, 0, static_cast<std::int16_t>(x),
                     static_cast<std::int16_t>(y));
    display.sync();
    return TRUE;
}

UINT GetDoubleClickTime() {
    constexpr UINT kMilliseconds = 500;
    return kMilliseconds;
}
