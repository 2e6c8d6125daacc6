#include "win32_focus.h"
#include "win32_menu.h"
#include "win32_queue.h"
#include "win32_support.h"
#include "win32_window.h"

#include <algorithm>
#include <map>
#include <utility>

namespace win32 {

namespace {

// Alt pressed and released with no other key in between opens the menu bar.
bool g_altAlone = false;

void setCursor(HCURSOR cursor, HWND window) {
    const auto value = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(cursor));
    xcb_change_window_attributes(Display::instance().connection(), toXid(window), XCB_CW_CURSOR, &value);
}

HWND g_pointerWindow = nullptr;
HCURSOR g_cursor = nullptr;
HCURSOR g_shownCursor = nullptr;
HWND g_shownIn = nullptr;

LRESULT getText(const Window& window, WPARAM size, LPARAM buffer) {
    if (size == 0) {
        return 0;
    }
    const auto target = reinterpret_cast<LPWSTR>(buffer);
    const std::size_t length = window.text.copy(target, size - 1);
    target[length] = 0;
    return static_cast<LRESULT>(length);
}

void positionChanged(HWND handle, const WINDOWPOS& position) {
    if ((position.flags & SWP_NOMOVE) == 0) {
        if (const Window* window = findWindow(handle)) {
            callWindow(handle, WM_MOVE, 0,
                       MAKELPARAM(window->rectangle.left, window->rectangle.top + window->topInset));
        }
    }
    if ((position.flags & SWP_NOSIZE) == 0) {
        if (const Window* window = findWindow(handle)) {
            const bool maximized = (window->style & WS_MAXIMIZE) != 0;
            callWindow(handle, WM_SIZE, static_cast<WPARAM>(maximized ? SIZE_MAXIMIZED : SIZE_RESTORED),
                       MAKELPARAM(window->width(), window->clientHeight()));
        }
    }
}

LRESULT systemCommand(Window& window, WPARAM command, LPARAM lParam) {
    switch (command & 0xFFF0U) {
        case SC_CLOSE:
            return callWindow(window.handle, WM_CLOSE, 0, 0);
        case SC_KEYMENU:
            if (Window* topLevel = topLevelOf(window.handle)) {
                openMenuBar(*topLevel, foldCase(static_cast<TCHAR>(lParam)));
            }
            return 0;
        case SC_MAXIMIZE:
            ShowWindow(window.handle, SW_MAXIMIZE);
            return 0;
        case SC_RESTORE:
            ShowWindow(window.handle, SW_RESTORE);
            return 0;
        default:
            return 0;
    }
}

LRESULT systemKey(Window& window, UINT message, WPARAM key, LPARAM lParam) {
    const HWND handle = window.handle;
    switch (message) {
        case WM_KEYDOWN:
            g_altAlone = false;
            return 0;
        case WM_SYSKEYDOWN:
            g_altAlone = key == VK_MENU;
            if (key == VK_F4 && (HIWORD(static_cast<DWORD_PTR>(lParam)) & KF_ALTDOWN) != 0) {
                const Window* topLevel = topLevelOf(handle);
                if (topLevel != nullptr) {
                    PostMessageW(topLevel->handle, WM_SYSCOMMAND, SC_CLOSE, 0);
                }
            }
            return 0;
        case WM_SYSKEYUP:
        case WM_KEYUP:
            if ((key == VK_MENU && std::exchange(g_altAlone, false)) ||
                (key == VK_F10 && message == WM_SYSKEYUP)) {
                const Window* topLevel = topLevelOf(handle);
                if (topLevel != nullptr) {
                    SendMessageW(topLevel->handle, WM_SYSCOMMAND, SC_KEYMENU, 0);
                }
            }
            return 0;
        default:  // WM_SYSCHAR
            g_altAlone = false;
            if (window.isChild()) {
                return SendMessageW(window.parent, message, key, lParam);
            }
            SendMessageW(handle, WM_SYSCOMMAND, SC_KEYMENU, static_cast<LPARAM>(key));
            return 0;
    }
}

}  // namespace

void pointerMoved(const MSG& message) {
    g_pointerWindow = message.hwnd;
    if (captureWindow() == nullptr) {
        SendMessageW(message.hwnd, WM_SETCURSOR, reinterpret_cast<WPARAM>(message.hwnd),
                     MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    }
}

}  // namespace win32

using namespace win32;

LRESULT DefWindowProcW(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) {
    Window* window = findWindow(handle);
    if (window == nullptr) {
        return 0;
    }
    switch (message) {
        case WM_NCCREATE:
        case WM_NCACTIVATE:
            if (message == WM_NCACTIVATE) {
                paintFrame(*window);
            }
            return TRUE;
        case WM_CLOSE:
            DestroyWindow(handle);
            return 0;
        case WM_SETTEXT:
            storeText(*window, reinterpret_cast<LPCWSTR>(lParam));
            return TRUE;
        case WM_GETTEXT:
            return getText(*window, wParam, lParam);
        case WM_GETTEXTLENGTH:
            return static_cast<LRESULT>(window->text.size());
        case WM_PAINT: {
            PAINTSTRUCT paint;
            BeginPaint(handle, &paint);
            EndPaint(handle, &paint);
            return 0;
        }
        case WM_ERASEBKGND:
            if (window->windowClass->background != nullptr) {
                const RECT client = clientRectangle(*window);
                FillRect(reinterpret_cast<HDC>(wParam), &client, window->windowClass->background);
                return TRUE;
            }
            return FALSE;
        case WM_WINDOWPOSCHANGED:
            positionChanged(handle, *reinterpret_cast<const WINDOWPOS*>(lParam));
            return 0;
        case WM_ACTIVATE:
            if (LOWORD(wParam) != WA_INACTIVE && (window->style & WS_MINIMIZE) == 0) {
                SetFocus(handle);
            }
            return 0;
        case WM_MOUSEACTIVATE:
            if (window->isChild()) {
                const LRESULT answer = SendMessageW(window->parent, message, wParam, lParam);
                if (answer != 0) {
                    return answer;
                }
            }
            return MA_ACTIVATE;
        case WM_SETCURSOR:
            if (window->windowClass->cursor != nullptr) {
                SetCursor(window->windowClass->cursor);
                return TRUE;
            }
            return window->isChild() ? SendMessageW(window->parent, message, wParam, lParam) : FALSE;
        case WM_MOUSEWHEEL:
        case WM_MOUSEHWHEEL:
        case WM_CONTEXTMENU:
            return window->isChild() ? SendMessageW(window->parent, message, wParam, lParam) : 0;
        case WM_RBUTTONUP: {
            POINT point = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
            ClientToScreen(handle, &point);
            SendMessageW(handle, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(handle),
                         MAKELPARAM(point.x, point.y));
            return 0;
        }
        case WM_CANCELMODE:
            cancelPopups();
            ReleaseCapture();
            return 0;
        case WM_NCLBUTTONDOWN:
            frameButtonDown(*window, static_cast<int>(wParam), {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
            return 0;
        case WM_SYSCOMMAND:
            return systemCommand(*window, wParam, lParam);
        case WM_KEYDOWN:
        case WM_KEYUP:
        case WM_SYSKEYDOWN:
        case WM_SYSKEYUP:
        case WM_SYSCHAR:
            return systemKey(*window, message, wParam, lParam);
        case WM_QUERYENDSESSION:
            return TRUE;
        default:
            return 0;
    }
}

HCURSOR LoadCursorW(HINSTANCE instance, LPCWSTR name) {
    // Resource id of the system cursor, and its glyph in the X server's "cursor" font.
    static const std::map<ULONG_PTR, std::uint16_t> glyphs = {
        {32512, 68},  {32513, 152}, {32514, 150}, {32515, 34}, {32642, 134},
        {32643, 136}, {32644, 108}, {32645, 116}, {32646, 52}, {32649, 60},
    };
    static std::map<ULONG_PTR, HCURSOR> made;
    const auto number = reinterpret_cast<ULONG_PTR>(name);
    const auto glyph = glyphs.find(number);
    if (instance != nullptr || glyph == glyphs.end()) {
        unsupported("LoadCursor", "a cursor other than the common system cursors");
    }
    HCURSOR& cursor = made[number];
    if (cursor == nullptr) {
        const Display& display = Display::instance();
        const xcb_font_t font = xcb_generate_id(display.connection());
        const xcb_cursor_t id = xcb_generate_id(display.connection());
        static constexpr char kFont[] = "cursor";
        xcb_open_font(display.connection(), font, sizeof kFont - 1, kFont);
        xcb_create_glyph_cursor(display.connection(), id, font, font, glyph->second,
                                static_cast<std::uint16_t>(glyph->second + 1), 0, 0, 0, 0xFFFF, 0xFFFF,
                                0xFFFF);
        xcb_close_font(display.connection(), font);
        cursor = reinterpret_cast<HCURSOR>(static_cast<std::uintptr_t>(id));
    }
    return cursor;
}

HCURSOR SetCursor(HCURSOR cursor) {
    const HCURSOR old = std::exchange(g_cursor, cursor);
    if (findWindow(g_pointerWindow) != nullptr && (g_shownIn != g_pointerWindow || g_shownCursor != cursor)) {
        setCursor(cursor, g_pointerWindow);
        g_shownIn = g_pointerWindow;
        g_shownCursor = cursor;
        Display::instance().flush();
    }
    return old;
}
