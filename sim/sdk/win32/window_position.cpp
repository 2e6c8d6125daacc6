// Showing, moving, sizing and stacking windows.

#include "win32_queue.h"
#include "win32_support.h"
#include "win32_window.h"

#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <cstring>

namespace win32 {

namespace {

/// Sets WM_NORMAL_HINTS: position and size, and a fixed size for a window without a sizing frame.
void tellSizeHints(const Window& window) {
    xcb_size_hints_t hints{};
    xcb_icccm_size_hints_set_position(&hints, 1, window.rectangle.left, window.rectangle.top);
    xcb_icccm_size_hints_set_size(&hints, 1, window.width(), window.height());
    if ((window.style & WS_THICKFRAME) == 0) {
        xcb_icccm_size_hints_set_min_size(&hints, window.width(), window.height());
        xcb_icccm_size_hints_set_max_size(&hints, window.width(), window.height());
    }
    xcb_icccm_set_wm_normal_hints(Display::instance().connection(), toXid(window.handle), &hints);
}

void configureServer(const Window& window) {
    const Display& display = Display::instance();
    if (window.isTopLevel()) {
        tellSizeHints(window);
    }
    int top = window.rectangle.top;
    if (window.isChild()) {
        if (const Window* parent = findWindow(window.parent)) {
            top += parent->topInset;
        }
    }
    const std::uint32_t values[] = {static_cast<std::uint32_t>(window.rectangle.left),
                                    static_cast<std::uint32_t>(top),
                                    static_cast<std::uint32_t>(std::max(1, window.width())),
                                    static_cast<std::uint32_t>(std::max(1, window.height()))};
    xcb_configure_window(
        display.connection(), toXid(window.handle),
        XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
        values);
}

void restack(Window& window, HWND insertAfter) {
    const Display& display = Display::instance();
    const bool bottom = insertAfter == HWND_BOTTOM;
    const bool known =
        insertAfter == HWND_TOP || bottom || insertAfter == HWND_TOPMOST || insertAfter == HWND_NOTOPMOST;
    if (known) {
        const std::uint32_t mode = bottom ? XCB_STACK_MODE_BELOW : XCB_STACK_MODE_ABOVE;
        xcb_configure_window(display.connection(), toXid(window.handle), XCB_CONFIG_WINDOW_STACK_MODE, &mode);
    } else {
        const std::uint32_t values[] = {toXid(insertAfter), XCB_STACK_MODE_BELOW};
        xcb_configure_window(display.connection(), toXid(window.handle),
                             XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, values);
    }
    Window* parent = window.isChild() ? findWindow(window.parent) : nullptr;
    if (parent == nullptr) {
        return;
    }
    auto& siblings = parent->children;
    siblings.erase(std::remove(siblings.begin(), siblings.end(), window.handle), siblings.end());
    auto position = bottom ? siblings.end() : siblings.begin();
    if (!known) {
        position = std::find(siblings.begin(), siblings.end(), insertAfter);
        position = position != siblings.end() ? position + 1 : siblings.begin();
    }
    siblings.insert(position, window.handle);
}

void setMaximized(Window& window, bool maximized) {
    const Display& display = Display::instance();
    if (((window.style & WS_MAXIMIZE) != 0) == maximized) {
        return;
    }
    if (window.isTopLevel() && display.hasWindowManager()) {
        // EWMH: a property as long as the window is not mapped, after that a message to the window manager.
        const xcb_atom_t states[] = {display.atoms().netWmStateMaximizedHorz,
                                     display.atoms().netWmStateMaximizedVert};
        if (!window.isShown()) {
            xcb_change_property(display.connection(), XCB_PROP_MODE_REPLACE, toXid(window.handle),
                                display.atoms().netWmState, XCB_ATOM_ATOM, 32, maximized ? 2 : 0, states);
        } else {
            xcb_client_message_event_t event{};
            event.response_type = XCB_CLIENT_MESSAGE;
            event.format = 32;
            event.window = toXid(window.handle);
            event.type = display.atoms().netWmState;
            event.data.data32[0] = maximized ? 1 : 0;
            event.data.data32[1] = states[0];
            event.data.data32[2] = states[1];
            xcb_send_event(display.connection(), 0, display.root(),
                           XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                           reinterpret_cast<const char*>(&event));
        }
        window.style = maximized ? window.style | WS_MAXIMIZE : window.style & ~WS_MAXIMIZE;
        return;
    }
    const HWND handle = window.handle;
    RECT target = window.normalRectangle;
    if (maximized) {
        window.normalRectangle = window.rectangle;
        window.style |= WS_MAXIMIZE;
        if (const Window* parent = window.isChild() ? findWindow(window.parent) : nullptr) {
            target = clientRectangle(*parent);
        } else {
            target = {0, 0, display.screen()->width_in_pixels, display.screen()->height_in_pixels};
        }
    } else {
        window.style &= ~WS_MAXIMIZE;
    }
    applyRectangle(handle, target, true);
}

void show(Window& window, bool activate) {
    const HWND handle = window.handle;
    const bool wasShown = window.isShown();
    if (!wasShown) {
        callWindow(handle, WM_SHOWWINDOW, TRUE, 0);
        Window* current = findWindow(handle);
        if (current == nullptr) {
            return;
        }
        current->style |= WS_VISIBLE;
        if (current->isTopLevel()) {
            tellSizeHints(*current);
        }
        xcb_map_window(Display::instance().connection(), toXid(handle));
        invalidate(*current, nullptr, true);
        current->frameUpdate = true;
        Display::instance().sync();
    }
    const Window* current = findWindow(handle);
    if (current != nullptr && current->isTopLevel() && activate) {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(Display::instance().connection(), toXid(handle), XCB_CONFIG_WINDOW_STACK_MODE,
                             &above);
        activateWindow(handle, WA_ACTIVE);
    }
}

void hide(Window& window) {
    const HWND handle = window.handle;
    if (!window.isShown()) {
        return;
    }
    callWindow(handle, WM_SHOWWINDOW, FALSE, 0);
    Window* current = findWindow(handle);
    if (current == nullptr) {
        return;
    }
    current->style &= ~WS_VISIBLE;
    if (current->isTopLevel()) {
        // ICCCM: withdrawing a window takes a synthetic UnmapNotify to the root besides the unmap.
        const Display& display = Display::instance();
        xcb_unmap_notify_event_t event{};
        event.response_type = XCB_UNMAP_NOTIFY;
        event.event = display.root();
        event.window = toXid(handle);
        xcb_unmap_window(display.connection(), toXid(handle));
        xcb_send_event(display.connection(), 0, display.root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&event));
    } else {
        xcb_unmap_window(Display::instance().connection(), toXid(handle));
    }
    Display::instance().sync();
    releaseFocus(*current, false);
}

}  // namespace

void applyRectangle(HWND handle, const RECT& rectangle, bool toServer) {
    Window* window = findWindow(handle);
    if (window == nullptr) {
        return;
    }
    const RECT old = window->rectangle;
    const bool moved = old.left != rectangle.left || old.top != rectangle.top;
    const bool sized = window->width() != rectangle.right - rectangle.left ||
                       window->height() != rectangle.bottom - rectangle.top;
    if (!moved && !sized) {
        return;
    }
    window->rectangle = rectangle;
    if (toServer) {
        configureServer(*window);
        Display::instance().sync();
    }
    if (sized) {
        invalidate(*window, nullptr, true);
        window->frameUpdate = true;
    }
    WINDOWPOS position{};
    position.hwnd = handle;
    position.x = rectangle.left;
    position.y = rectangle.top;
    position.cx = window->width();
    position.cy = window->height();
    position.flags = SWP_NOZORDER | SWP_NOACTIVATE | (moved ? 0U : SWP_NOMOVE) | (sized ? 0U : SWP_NOSIZE);
    callWindow(handle, WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&position));
}

void updateInset(Window& window) {
    const int inset = window.captionHeight + menuBarHeight(window);
    if (inset == window.topInset) {
        return;
    }
    window.topInset = inset;
    const HWND handle = window.handle;
    for (HWND child : window.children) {
        if (const Window* childWindow = findWindow(child)) {
            configureServer(*childWindow);
        }
    }
    invalidate(window, nullptr, true);
    window.frameUpdate = true;
    WINDOWPOS position{};
    position.hwnd = handle;
    position.x = window.rectangle.left;
    position.y = window.rectangle.top;
    position.cx = window.width();
    position.cy = window.height();
    position.flags = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOMOVE | SWP_FRAMECHANGED;
    callWindow(handle, WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&position));
}

}  // namespace win32

using namespace win32;

BOOL ShowWindow(HWND handle, int command) {
    Window* window = requireWindow(handle);
    if (window == nullptr) {
        return FALSE;
    }
    if (!onMainThread()) {
        unsupported("ShowWindow", "on a thread other than the window's");
    }
    const BOOL wasShown = window->isShown() ? TRUE : FALSE;
    switch (command) {
        case SW_HIDE:
            hide(*window);
            break;
        case SW_MAXIMIZE:
            setMaximized(*window, true);
            break;
        case SW_SHOWNORMAL:
        case SW_RESTORE:
        case SW_SHOWNOACTIVATE:
            setMaximized(*window, false);
            break;
        case SW_SHOW:
        case SW_SHOWNA:
        case SW_SHOWDEFAULT:
            break;
        default:
            unsupported("ShowWindow", "minimizing");
    }
    window = findWindow(handle);
    if (command != SW_HIDE && window != nullptr) {
        show(*window, command != SW_SHOWNA && command != SW_SHOWNOACTIVATE);
    }
    return wasShown;
}

BOOL SetWindowPos(HWND handle, HWND insertAfter, int x, int y, int width, int height, UINT flags) {
    Window* window = requireWindow(handle);
    if (window == nullptr) {
        return FALSE;
    }
    if (!onMainThread()) {
        unsupported("SetWindowPos", "on a thread other than the window's");
    }
    WINDOWPOS position{handle, insertAfter, x, y, width, height, flags};
    if ((flags & SWP_NOMOVE) != 0) {
        position.x = window->rectangle.left;
        position.y = window->rectangle.top;
    }
    if ((flags & SWP_NOSIZE) != 0) {
        position.cx = window->width();
        position.cy = window->height();
    }
    if ((flags & SWP_NOSENDCHANGING) == 0) {
        callWindow(handle, WM_WINDOWPOSCHANGING, 0, reinterpret_cast<LPARAM>(&position));
        window = findWindow(handle);
        if (window == nullptr) {
            return FALSE;
        }
    }
    if ((position.flags & SWP_NOZORDER) == 0) {
        restack(*window, position.hwndInsertAfter);
    }
    applyRectangle(handle,
                   {position.x, position.y, position.x + std::max(0, position.cx),
                    position.y + std::max(0, position.cy)},
                   true);
    window = findWindow(handle);
    if (window != nullptr && (flags & SWP_FRAMECHANGED) != 0) {
        updateInset(*window);
        window = findWindow(handle);
    }
    if (window != nullptr && (flags & SWP_HIDEWINDOW) != 0) {
        hide(*window);
        window = findWindow(handle);
    }
    if (window != nullptr && (flags & SWP_SHOWWINDOW) != 0) {
        show(*window, false);
        window = findWindow(handle);
    }
    if (window != nullptr && (flags & (SWP_NOACTIVATE | SWP_NOZORDER | SWP_HIDEWINDOW)) == 0 &&
        window->isTopLevel() && window->isShown()) {
        activateWindow(handle, WA_ACTIVE);
    }
    Display::instance().flush();
    return TRUE;
}

BOOL MoveWindow(HWND handle, int x, int y, int width, int height, BOOL repaint) {
    if (SetWindowPos(handle, nullptr, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE) == FALSE) {
        return FALSE;
    }
    return repaint != FALSE ? UpdateWindow(handle) : TRUE;
}

BOOL BringWindowToTop(HWND handle) {
    return SetWindowPos(handle, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
}

HWND SetParent(HWND handle, HWND newParent) {
    Window* window = requireWindow(handle);
    if (window == nullptr) {
        return nullptr;
    }
    if (newParent == nullptr || !window->isChild()) {
        unsupported("SetParent", "anything but moving a child window to another parent window");
    }
    Window* target = requireWindow(newParent);
    if (target == nullptr) {
        return nullptr;
    }
    const HWND oldParent = window->parent;
    if (Window* old = findWindow(oldParent)) {
        old->children.erase(std::remove(old->children.begin(), old->children.end(), handle),
                            old->children.end());
    }
    window->parent = newParent;
    target->children.insert(target->children.begin(), handle);
    xcb_reparent_window(Display::instance().connection(), toXid(handle), toXid(newParent),
                        static_cast<std::int16_t>(window->rectangle.left),
                        static_cast<std::int16_t>(window->rectangle.top + target->topInset));
    // Reparenting an X window maps it again if it was mapped, so the visibility does not change.
    Display::instance().sync();
    invalidate(*window, nullptr, true);
    return oldParent;
}

BOOL AdjustWindowRectEx(LPRECT rectangle, DWORD style, BOOL menu, DWORD) {
    if ((style & WS_CHILD) == 0) {
        if ((style & WS_CAPTION) == WS_CAPTION && !Display::instance().hasWindowManager()) {
            rectangle->top -= kCaptionHeight;
        }
        if (menu != FALSE) {
            rectangle->top -= kMenuBarHeight;
        }
    }
    return TRUE;
}
