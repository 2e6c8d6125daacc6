// Queries about windows, ours and foreign ones.

#include "win32_queue.h"
#include "win32_support.h"
#include "win32_window.h"

#include <algorithm>
#include <cstring>

namespace win32 {

bool foreignExists(HWND handle) {
    const auto id = reinterpret_cast<std::uintptr_t>(handle);
    if (id == 0 || id > 0xFFFFFFFFU) {
        return false;
    }
    if (foreignToolkit() != nullptr && onMainThread() && foreignToolkit()->owns(handle)) {
        return true;
    }
    if (!Display::isOpen()) {
        return false;
    }
    xcb_connection_t* connection = Display::instance().connection();
    return owned(xcb_get_window_attributes_reply(
               connection, xcb_get_window_attributes(connection, toXid(handle)), nullptr)) != nullptr;
}

HWND foreignParent(HWND handle) {
    if (foreignToolkit() != nullptr && onMainThread() && foreignToolkit()->owns(handle)) {
        return foreignToolkit()->parent(handle);
    }
    if (!Display::isOpen()) {
        return nullptr;
    }
    xcb_connection_t* connection = Display::instance().connection();
    const auto tree =
        owned(xcb_query_tree_reply(connection, xcb_query_tree(connection, toXid(handle)), nullptr));
    return tree && tree->parent != tree->root ? toHwnd(tree->parent) : nullptr;
}

bool foreignRectangle(HWND handle, RECT& screen) {
    if (foreignToolkit() != nullptr && onMainThread() && foreignToolkit()->owns(handle)) {
        return foreignToolkit()->rectangle(handle, screen);
    }
    if (!Display::isOpen()) {
        return false;
    }
    const Display& display = Display::instance();
    const auto geometry = owned(xcb_get_geometry_reply(
        display.connection(), xcb_get_geometry(display.connection(), toXid(handle)), nullptr));
    const auto position = owned(xcb_translate_coordinates_reply(
        display.connection(),
        xcb_translate_coordinates(display.connection(), toXid(handle), display.root(), 0, 0), nullptr));
    if (!geometry || !position) {
        return false;
    }
    screen = {position->dst_x, position->dst_y, position->dst_x + geometry->width,
              position->dst_y + geometry->height};
    return true;
}

bool foreignVisible(HWND handle) {
    if (!Display::isOpen()) {
        return false;
    }
    xcb_connection_t* connection = Display::instance().connection();
    const auto attributes = owned(xcb_get_window_attributes_reply(
        connection, xcb_get_window_attributes(connection, toXid(handle)), nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

namespace {

LONG_PTR* extraSlot(Window& window, int index, std::size_t size) {
    if (index < 0 || static_cast<std::size_t>(index) + size > window.extra.size()) {
        setError(ERROR_INVALID_INDEX);
        return nullptr;
    }
    return reinterpret_cast<LONG_PTR*>(window.extra.data() + index);
}

LONG_PTR windowLong(HWND handle, int index, std::size_t size) {
    Window* window = requireWindow(handle);
    if (window == nullptr) {
        return 0;
    }
    switch (index) {
        case GWLP_WNDPROC:
            return reinterpret_cast<LONG_PTR>(window->procedure);
        case GWLP_HINSTANCE:
            return reinterpret_cast<LONG_PTR>(window->instance);
        case GWLP_HWNDPARENT:
            return reinterpret_cast<LONG_PTR>(window->parent);
        case GWLP_ID:
            return window->id;
        case GWL_STYLE:
            return static_cast<LONG>(window->style);
        case GWL_EXSTYLE:
            return static_cast<LONG>(window->exStyle);
        case GWLP_USERDATA:
            return window->userData;
        default:
            break;
    }
    const LONG_PTR* slot = extraSlot(*window, index, size);
    LONG_PTR value = 0;
    if (slot != nullptr) {
        std::memcpy(&value, slot, size);
    }
    return value;
}

LONG_PTR setWindowLong(HWND handle, int index, LONG_PTR value, std::size_t size) {
    Window* window = requireWindow(handle);
    if (window == nullptr) {
        return 0;
    }
    SetLastError(ERROR_SUCCESS);
    const LONG_PTR old = windowLong(handle, index, size);
    switch (index) {
        case GWLP_WNDPROC:
            window->procedure = reinterpret_cast<WNDPROC>(value);
            break;
        case GWLP_HINSTANCE:
            window->instance = reinterpret_cast<HINSTANCE>(value);
            break;
        case GWLP_HWNDPARENT:
            window->parent = reinterpret_cast<HWND>(value);
            break;
        case GWLP_ID:
            window->id = value;
            break;
        case GWL_STYLE:
            // WS_VISIBLE cannot be changed here: showing and hiding takes ShowWindow.
            window->style = (static_cast<DWORD>(value) & ~WS_VISIBLE) | (window->style & WS_VISIBLE);
            break;
        case GWL_EXSTYLE:
            window->exStyle = static_cast<DWORD>(value);
            break;
        case GWLP_USERDATA:
            window->userData = value;
            break;
        default:
            if (LONG_PTR* slot = extraSlot(*window, index, size)) {
                std::memcpy(slot, &value, size);
            }
            break;
    }
    return old;
}

}  // namespace

}  // namespace win32

using namespace win32;

BOOL IsWindow(HWND handle) {
    return handle != nullptr && (isOwnWindow(handle) || foreignExists(handle)) ? TRUE : FALSE;
}

BOOL IsWindowVisible(HWND handle) {
    if (const Window* window = findWindow(handle)) {
        return isViewable(*window) ? TRUE : FALSE;
    }
    return handle != nullptr && foreignVisible(handle) ? TRUE : FALSE;
}

BOOL IsIconic(HWND handle) {
    const Window* window = requireWindow(handle);
    return window != nullptr && (window->style & WS_MINIMIZE) != 0 ? TRUE : FALSE;
}

BOOL IsZoomed(HWND handle) {
    const Window* window = requireWindow(handle);
    return window != nullptr && (window->style & WS_MAXIMIZE) != 0 ? TRUE : FALSE;
}

BOOL EnableWindow(HWND handle, BOOL enable) {
    Window* window = requireWindow(handle);
    if (window == nullptr) {
        return FALSE;
    }
    const bool wasEnabled = window->isEnabled();
    if (wasEnabled != (enable != FALSE)) {
        if (enable != FALSE) {
            window->style &= ~WS_DISABLED;
        } else {
            callWindow(handle, WM_CANCELMODE, 0, 0);
            window = findWindow(handle);
            if (window == nullptr) {
                return FALSE;
            }
            window->style |= WS_DISABLED;
            if (GetFocus() == handle) {
                SetFocus(nullptr);
            }
            if (GetCapture() == handle) {
                ReleaseCapture();
            }
        }
        callWindow(handle, WM_ENABLE, static_cast<WPARAM>(enable != FALSE), 0);
    }
    return wasEnabled ? FALSE : TRUE;
}

BOOL IsWindowEnabled(HWND handle) {
    if (const Window* window = findWindow(handle)) {
        return window->isEnabled() ? TRUE : FALSE;
    }
    return IsWindow(handle);
}

HWND GetParent(HWND handle) {
    if (const Window* window = findWindow(handle)) {
        // An owner is returned for WS_POPUP windows only.
        return window->isChild() || (window->style & WS_POPUP) != 0 ? window->parent : nullptr;
    }
    if (handle == nullptr || !foreignExists(handle)) {
        return failWith<HWND>(ERROR_INVALID_WINDOW_HANDLE, nullptr);
    }
    return foreignParent(handle);
}

HWND GetAncestor(HWND handle, UINT kind) {
    if (IsWindow(handle) == FALSE) {
        return failWith<HWND>(ERROR_INVALID_WINDOW_HANDLE, nullptr);
    }
    const auto parentOf = [](HWND window) {
        const Window* own = findWindow(window);
        if (own == nullptr) {
            return foreignParent(window);
        }
        return own->isChild() ? own->parent : nullptr;
    };
    if (kind == GA_PARENT) {
        HWND parent = parentOf(handle);
        return parent != nullptr ? parent : GetDesktopWindow();
    }
    HWND current = handle;
    for (HWND parent = parentOf(current); parent != nullptr; parent = parentOf(current)) {
        current = parent;
    }
    if (kind == GA_ROOTOWNER) {
        for (HWND owner = GetParent(current); owner != nullptr; owner = GetParent(current)) {
            current = owner;
        }
    }
    return current;
}

HWND GetWindow(HWND handle, UINT relation) {
    const Window* window = requireWindow(handle);
    if (window == nullptr) {
        return nullptr;
    }
    if (relation == GW_OWNER) {
        return window->isTopLevel() ? window->parent : nullptr;
    }
    if (relation == GW_CHILD) {
        return !window->children.empty() ? window->children.front() : nullptr;
    }
    const Window* parent = window->isChild() ? findWindow(window->parent) : nullptr;
    if (parent == nullptr) {
        unsupported("GetWindow", "siblings of a top-level window");
    }
    const auto& siblings = parent->children;
    const auto place = std::find(siblings.begin(), siblings.end(), handle);
    switch (relation) {
        case GW_HWNDFIRST:
            return siblings.front();
        case GW_HWNDLAST:
            return siblings.back();
        case GW_HWNDNEXT:
            return std::next(place) != siblings.end() ? *std::next(place) : nullptr;
        case GW_HWNDPREV:
            return place != siblings.begin() ? *std::prev(place) : nullptr;
        default:
            return failWith<HWND>(ERROR_INVALID_PARAMETER, nullptr);
    }
}

HWND GetTopWindow(HWND handle) {
    return GetWindow(handle, GW_CHILD);
}

HWND GetDlgItem(HWND handle, int id) {
    const Window* window = requireWindow(handle);
    if (window != nullptr) {
        for (HWND child : window->children) {
            if (findWindow(child)->id == id) {
                return child;
            }
        }
    }
    return nullptr;
}

int GetDlgCtrlID(HWND handle) {
    const Window* window = requireWindow(handle);
    return window != nullptr ? static_cast<int>(window->id) : 0;
}

BOOL EnumChildWindows(HWND handle, WNDENUMPROC callback, LPARAM parameter) {
    const Window* window = requireWindow(handle);
    if (window == nullptr) {
        return FALSE;
    }
    for (HWND child : std::vector<HWND>(window->children)) {
        if (findWindow(child) == nullptr) {
            continue;
        }
        if (callback(child, parameter) == FALSE || EnumChildWindows(child, callback, parameter) == FALSE) {
            return FALSE;
        }
    }
    return TRUE;
}

BOOL EnumThreadWindows(DWORD threadId, WNDENUMPROC callback, LPARAM parameter) {
    std::vector<HWND> topLevels;
    if (threadId == mainThreadId()) {
        for (const auto& window : allWindows()) {
            if (window->isTopLevel()) {
                topLevels.push_back(window->handle);
            }
        }
    }
    for (HWND window : topLevels) {
        if (findWindow(window) != nullptr && callback(window, parameter) == FALSE) {
            return FALSE;
        }
    }
    return topLevels.empty() ? FALSE : TRUE;
}

HWND FindWindowW(LPCWSTR className, LPCWSTR windowName) {
    const auto wantedClass = className != nullptr ? findClass(className) : nullptr;
    for (const auto& window : allWindows()) {
        if (window->isTopLevel() && (className == nullptr || window->windowClass == wantedClass) &&
            (windowName == nullptr || equalIgnoringCase(window->text, windowName))) {
            return window->handle;
        }
    }
    return nullptr;
}

HWND GetDesktopWindow() {
    return toHwnd(Display::instance().root());
}

HWND WindowFromPoint(POINT point) {
    const Display& display = Display::instance();
    xcb_window_t window = display.root();
    for (;;) {
        const auto reply = owned(xcb_translate_coordinates_reply(
            display.connection(),
            xcb_translate_coordinates(display.connection(), display.root(), window,
                                      static_cast<std::int16_t>(point.x), static_cast<std::int16_t>(point.y)),
            nullptr));
        if (!reply || reply->child == XCB_NONE) {
            return window != display.root() ? toHwnd(window) : nullptr;
        }
        window = reply->child;
    }
}

DWORD GetWindowThreadProcessId(HWND handle, LPDWORD processId) {
    if (!isOwnWindow(handle) &&
        !(foreignToolkit() != nullptr && onMainThread() && foreignToolkit()->owns(handle))) {
        return failWith<DWORD>(ERROR_INVALID_WINDOW_HANDLE, 0);
    }
    if (processId != nullptr) {
        *processId = GetCurrentProcessId();
    }
    return mainThreadId();
}

BOOL IsChild(HWND parent, HWND handle) {
    for (HWND current = handle; current != nullptr;) {
        const Window* window = findWindow(current);
        if (window != nullptr && !window->isChild()) {
            return FALSE;
        }
        current = window != nullptr ? window->parent : foreignParent(current);
        if (current == parent) {
            return parent != nullptr ? TRUE : FALSE;
        }
    }
    return FALSE;
}

BOOL GetWindowRect(HWND handle, LPRECT rectangle) {
    if (const Window* window = findWindow(handle)) {
        *rectangle = screenRectangle(*window);
        return TRUE;
    }
    if (handle == nullptr || !foreignRectangle(handle, *rectangle)) {
        return failWith<BOOL>(ERROR_INVALID_WINDOW_HANDLE, FALSE);
    }
    return TRUE;
}

BOOL GetClientRect(HWND handle, LPRECT rectangle) {
    if (const Window* window = findWindow(handle)) {
        *rectangle = clientRectangle(*window);
        return TRUE;
    }
    if (GetWindowRect(handle, rectangle) == FALSE) {
        return FALSE;
    }
    return OffsetRect(rectangle, -rectangle->left, -rectangle->top);
}

int MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count) {
    POINT delta{};
    for (const auto& [handle, sign] : {std::pair<HWND, int>{from, 1}, std::pair<HWND, int>{to, -1}}) {
        POINT origin{};
        if (handle != nullptr && ClientToScreen(handle, &origin) == FALSE) {
            return 0;
        }
        delta.x += sign * origin.x;
        delta.y += sign * origin.y;
    }
    for (UINT i = 0; i < count; ++i) {
        points[i].x += delta.x;
        points[i].y += delta.y;
    }
    return static_cast<int>(MAKELONG(delta.x, delta.y));
}

BOOL ClientToScreen(HWND handle, LPPOINT point) {
    POINT origin{};
    if (const Window* window = findWindow(handle)) {
        origin = clientOrigin(*window);
    } else {
        RECT rectangle;
        if (GetWindowRect(handle, &rectangle) == FALSE) {
            return FALSE;
        }
        origin = {rectangle.left, rectangle.top};
    }
    point->x += origin.x;
    point->y += origin.y;
    return TRUE;
}

BOOL ScreenToClient(HWND handle, LPPOINT point) {
    POINT origin{};
    if (ClientToScreen(handle, &origin) == FALSE) {
        return FALSE;
    }
    point->x -= origin.x;
    point->y -= origin.y;
    return TRUE;
}

LONG_PTR GetWindowLongPtrW(HWND handle, int index) {
    return windowLong(handle, index, sizeof(LONG_PTR));
}

LONG_PTR SetWindowLongPtrW(HWND handle, int index, LONG_PTR value) {
    return setWindowLong(handle, index, value, sizeof(LONG_PTR));
}

LONG GetWindowLongW(HWND handle, int index) {
    return static_cast<LONG>(windowLong(handle, index, sizeof(LONG)));
}

LONG SetWindowLongW(HWND handle, int index, LONG value) {
    return static_cast<LONG>(setWindowLong(handle, index, value, sizeof(LONG)));
}

HANDLE GetPropW(HWND handle, LPCWSTR name) {
    const Window* window = requireWindow(handle);
    if (window == nullptr) {
        return nullptr;
    }
    const auto found = window->properties.find(name);
    return found != window->properties.end() ? found->second : nullptr;
}

BOOL SetPropW(HWND handle, LPCWSTR name, HANDLE value) {
    Window* window = requireWindow(handle);
    if (window == nullptr) {
        return FALSE;
    }
    window->properties[name] = value;
    return TRUE;
}

HANDLE RemovePropW(HWND handle, LPCWSTR name) {
    HANDLE value = GetPropW(handle, name);
    if (Window* window = findWindow(handle)) {
        window->properties.erase(name);
    }
    return value;
}

int GetClassNameW(HWND handle, LPWSTR buffer, int size) {
    const Window* window = requireWindow(handle);
    if (window == nullptr || size <= 0) {
        return 0;
    }
    const std::size_t length = window->windowClass->name.copy(buffer, static_cast<std::size_t>(size - 1));
    buffer[length] = 0;
    return static_cast<int>(length);
}

int GetWindowTextW(HWND handle, LPWSTR buffer, int size) {
    if (buffer == nullptr || size <= 0) {
        return 0;
    }
    *buffer = 0;
    return static_cast<int>(
        SendMessageW(handle, WM_GETTEXT, static_cast<WPARAM>(size), reinterpret_cast<LPARAM>(buffer)));
}

int GetWindowTextLengthW(HWND handle) {
    return static_cast<int>(SendMessageW(handle, WM_GETTEXTLENGTH, 0, 0));
}

int GetSystemMetrics(int index) {
    switch (index) {
        case SM_CXSCREEN:
            return Display::instance().screen()->width_in_pixels;
        case SM_CYSCREEN:
            return Display::instance().screen()->height_in_pixels;
        case SM_CYCAPTION:
            return kCaptionHeight;
        case SM_CYMENU:
            return kMenuBarHeight;
        case SM_CXBORDER:
        case SM_CYBORDER:
            return 1;
        case SM_CXDOUBLECLK:
        case SM_CYDOUBLECLK:
        case SM_CXDRAG:
        case SM_CYDRAG:
            return 4;
        default:
            unsupported("GetSystemMetrics", "a metric that the slice does not provide");
    }
}
