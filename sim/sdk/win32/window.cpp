// Window classes; creating and destroying windows.

#include "win32_queue.h"
#include "win32_support.h"
#include "win32_window.h"

#include <xcb/xcb_icccm.h>

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <vector>

namespace win32 {

namespace {

constexpr ATOM kFirstClassAtom = 0xC000;
constexpr int kDefaultCascade = 26;

std::vector<std::shared_ptr<WindowClass>>& classes() {
    static std::vector<std::shared_ptr<WindowClass>> all;
    return all;
}

ATOM registerClass(const WNDCLASSEXW& description) {
    static ATOM nextAtom = kFirstClassAtom;
    if (description.lpszClassName == nullptr || description.lpfnWndProc == nullptr) {
        return failWith<ATOM>(ERROR_INVALID_PARAMETER, 0);
    }
    if (findClass(description.lpszClassName) != nullptr) {
        return failWith<ATOM>(ERROR_CLASS_ALREADY_EXISTS, 0);
    }
    auto windowClass = std::make_shared<WindowClass>();
    windowClass->name = description.lpszClassName;
    windowClass->atom = nextAtom++;
    windowClass->style = description.style;
    windowClass->procedure = description.lpfnWndProc;
    windowClass->extraBytes = description.cbWndExtra;
    windowClass->instance = description.hInstance;
    windowClass->icon = description.hIcon;
    windowClass->cursor = description.hCursor;
    windowClass->background = description.hbrBackground;
    classes().push_back(windowClass);
    return windowClass->atom;
}

void setText(xcb_window_t id, const std::u16string& text) {
    const Display& display = Display::instance();
    const std::string utf8 = toUtf8(text);
    const auto length = static_cast<std::uint32_t>(utf8.size());
    xcb_change_property(display.connection(), XCB_PROP_MODE_REPLACE, id, display.atoms().netWmName,
                        display.atoms().utf8String, 8, length, utf8.data());
    xcb_change_property(display.connection(), XCB_PROP_MODE_REPLACE, id, XCB_ATOM_WM_NAME,
                        display.atoms().utf8String, 8, length, utf8.data());
}

/// Sets a top-level window's properties for the window manager and creates its focus proxy.
void prepareTopLevel(Window& window) {
    const Display& display = Display::instance();
    xcb_connection_t* connection = display.connection();
    const xcb_window_t id = toXid(window.handle);
    const xcb_atom_t protocols[] = {display.atoms().wmDeleteWindow};
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, display.atoms().wmProtocols, XCB_ATOM_ATOM, 32,
                        1, protocols);
    const auto pid = static_cast<std::uint32_t>(getpid());
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, display.atoms().netWmPid, XCB_ATOM_CARDINAL,
                        32, 1, &pid);
    if (window.parent != nullptr) {
        xcb_icccm_set_wm_transient_for(connection, id, toXid(window.parent));
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, display.atoms().netWmWindowType,
                            XCB_ATOM_ATOM, 32, 1, &display.atoms().netWmWindowTypeDialog);
    }
    // WM_CLASS: the instance and the class name, each null-terminated.
    const std::string name = program_invocation_short_name;
    const std::string classes = name + '\0' + name + '\0';
    xcb_icccm_set_wm_class(connection, id, static_cast<std::uint32_t>(classes.size()), classes.data());
    xcb_icccm_wm_hints_t hints{};
    xcb_icccm_wm_hints_set_input(&hints, 1);
    xcb_icccm_set_wm_hints(connection, id, &hints);
    setText(id, window.text);

    window.focusProxy = xcb_generate_id(connection);
    const std::uint32_t proxyEvents =
        XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_FOCUS_CHANGE;
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window.focusProxy, id, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &proxyEvents);
    xcb_map_window(connection, window.focusProxy);
}

xcb_window_t createServerWindow(const Window& window) {
    Display& display = Display::instance();
    const Window* parent = window.isChild() ? findWindow(window.parent) : nullptr;
    const xcb_window_t id = xcb_generate_id(display.connection());
    std::uint32_t events = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_BUTTON_PRESS |
                           XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION |
                           XCB_EVENT_MASK_LEAVE_WINDOW;
    if (parent == nullptr) {
        events |=
            XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_PROPERTY_CHANGE;
    }
    const bool unmanaged =
        parent == nullptr && (window.style & WS_POPUP) != 0 && (window.style & WS_CAPTION) == 0;
    const std::uint32_t values[] = {XCB_BACK_PIXMAP_NONE, unmanaged ? 1U : 0U, events};
    const int top = window.rectangle.top + (parent != nullptr ? parent->topInset : 0);
    xcb_create_window(display.connection(), XCB_COPY_FROM_PARENT, id,
                      parent != nullptr ? toXid(parent->handle) : display.root(),
                      static_cast<std::int16_t>(window.rectangle.left), static_cast<std::int16_t>(top),
                      static_cast<std::uint16_t>(std::max(1, window.width())),
                      static_cast<std::uint16_t>(std::max(1, window.height())), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, display.visual()->visual_id,
                      XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    return id;
}

/// Reparents foreign child windows to the root before their parent is destroyed: the X server would destroy
/// them with it, and their owner (Qt) would go on using them until it noticed.
void letForeignChildrenGo(xcb_window_t id) {
    const Display& display = Display::instance();
    const auto tree =
        owned(xcb_query_tree_reply(display.connection(), xcb_query_tree(display.connection(), id), nullptr));
    if (!tree) {
        return;
    }
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    const Window* parent = findWindow(toHwnd(id));
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        if (findWindow(toHwnd(children[i])) == nullptr &&
            (parent == nullptr || children[i] != parent->focusProxy)) {
            xcb_unmap_window(display.connection(), children[i]);
            xcb_reparent_window(display.connection(), children[i], display.root(), 0, 0);
        }
    }
}

void sendDestroy(HWND handle) {
    Window* window = findWindow(handle);
    if (window == nullptr) {
        return;
    }
    window->destroying = true;
    callWindow(handle, WM_DESTROY, 0, 0);
    window = findWindow(handle);
    if (window == nullptr) {
        return;
    }
    for (HWND child : std::vector<HWND>(window->children)) {
        sendDestroy(child);
    }
}

void sendFinalDestroy(HWND handle) {
    Window* window = findWindow(handle);
    if (window == nullptr) {
        return;
    }
    for (HWND child : std::vector<HWND>(window->children)) {
        sendFinalDestroy(child);
    }
    callWindow(handle, WM_NCDESTROY, 0, 0);
    window = findWindow(handle);
    if (window == nullptr) {
        return;
    }
    releaseFocus(*window, true);
    letForeignChildrenGo(toXid(handle));
    if (window->isTopLevel() && window->menu != nullptr) {
        DestroyMenu(window->menu);
    }
    if (Window* parent = findWindow(window->parent); parent != nullptr && window->isChild()) {
        parent->children.erase(std::remove(parent->children.begin(), parent->children.end(), handle),
                               parent->children.end());
    }
    --window->windowClass->windows;
    Queue::main().forgetWindow(handle);
    xcb_destroy_window(Display::instance().connection(), toXid(handle));
    removeWindow(handle);
}

RECT initialRectangle(int x, int y, int width, int height, bool child) {
    const xcb_screen_t* screen = Display::instance().screen();
    static int defaultWindows = 0;
    if (x == CW_USEDEFAULT) {
        x = y = child ? 0 : kDefaultCascade * (1 + defaultWindows++ % 8);
    } else if (y == CW_USEDEFAULT) {
        y = 0;
    }
    if (width == CW_USEDEFAULT) {
        width = child ? 0 : screen->width_in_pixels * 3 / 4;
        height = child ? 0 : screen->height_in_pixels * 3 / 4;
    }
    return {x, y, x + std::max(0, width), y + std::max(0, height)};
}

}  // namespace

std::shared_ptr<WindowClass> findClass(LPCWSTR nameOrAtom) {
    const auto& all = classes();
    const auto found = std::find_if(all.begin(), all.end(), [nameOrAtom](const auto& windowClass) {
        return IS_INTRESOURCE(nameOrAtom)
                   ? windowClass->atom == static_cast<ATOM>(reinterpret_cast<ULONG_PTR>(nameOrAtom))
                   : equalIgnoringCase(windowClass->name, nameOrAtom);
    });
    return found != all.end() ? *found : nullptr;
}

void destroyWindowTree(HWND handle) {
    sendDestroy(handle);
    sendFinalDestroy(handle);
}

}  // namespace win32

using namespace win32;

ATOM RegisterClassExW(const WNDCLASSEXW* windowClass) {
    if (windowClass->cbSize != sizeof(WNDCLASSEXW)) {
        return failWith<ATOM>(ERROR_INVALID_PARAMETER, 0);
    }
    return registerClass(*windowClass);
}

ATOM RegisterClassW(const WNDCLASSW* windowClass) {
    WNDCLASSEXW extended{};
    extended.cbSize = sizeof extended;
    extended.style = windowClass->style;
    extended.lpfnWndProc = windowClass->lpfnWndProc;
    extended.cbClsExtra = windowClass->cbClsExtra;
    extended.cbWndExtra = windowClass->cbWndExtra;
    extended.hInstance = windowClass->hInstance;
    extended.hIcon = windowClass->hIcon;
    extended.hCursor = windowClass->hCursor;
    extended.hbrBackground = windowClass->hbrBackground;
    extended.lpszMenuName = windowClass->lpszMenuName;
    extended.lpszClassName = windowClass->lpszClassName;
    return registerClass(extended);
}

BOOL UnregisterClassW(LPCWSTR className, HINSTANCE) {
    const auto windowClass = findClass(className);
    if (windowClass == nullptr) {
        return failWith<BOOL>(ERROR_CLASS_DOES_NOT_EXIST, FALSE);
    }
    if (windowClass->windows != 0) {
        return failWith<BOOL>(ERROR_CLASS_HAS_WINDOWS, FALSE);
    }
    auto& all = classes();
    all.erase(std::remove(all.begin(), all.end(), windowClass), all.end());
    return TRUE;
}

BOOL GetClassInfoW(HINSTANCE, LPCWSTR className, LPWNDCLASSW description) {
    const auto windowClass = findClass(className);
    if (windowClass == nullptr) {
        return failWith<BOOL>(ERROR_CLASS_DOES_NOT_EXIST, FALSE);
    }
    *description = {};
    description->style = windowClass->style;
    description->lpfnWndProc = windowClass->procedure;
    description->cbWndExtra = windowClass->extraBytes;
    description->hInstance = windowClass->instance;
    description->hIcon = windowClass->icon;
    description->hCursor = windowClass->cursor;
    description->hbrBackground = windowClass->background;
    description->lpszClassName = className;
    return TRUE;
}

HWND CreateWindowExW(DWORD exStyle, LPCWSTR className, LPCWSTR windowName, DWORD style, int x, int y,
                     int width, int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID parameter) {
    if (!onMainThread()) {
        unsupported("CreateWindowEx", "on a thread other than the main thread");
    }
    const auto windowClass = findClass(className);
    if (windowClass == nullptr) {
        return failWith<HWND>(ERROR_CANNOT_FIND_WND_CLASS, nullptr);
    }
    const bool child = (style & WS_CHILD) != 0;
    const bool messageOnly = parent == HWND_MESSAGE;
    if (messageOnly) {
        parent = nullptr;
    } else if (parent != nullptr || child) {
        if (requireWindow(parent) == nullptr) {
            return nullptr;
        }
        // The owner of a window that is not a child is always a top-level window.
        parent = child ? parent : topLevelOf(parent)->handle;
    }

    Display& display = Display::instance();
    watchDisplay(xcb_get_file_descriptor(display.connection()));

    auto made = std::make_unique<Window>();
    made->windowClass = windowClass;
    made->procedure = windowClass->procedure;
    made->style = style & ~WS_VISIBLE;
    made->exStyle = exStyle;
    made->instance = instance;
    made->parent = parent;
    made->text = windowName != nullptr ? windowName : u"";
    made->rectangle = initialRectangle(x, y, width, height, child);
    made->extra.resize(static_cast<std::size_t>(std::max(0, windowClass->extraBytes)));
    if (child) {
        made->id = reinterpret_cast<LONG_PTR>(menu);
    } else {
        made->menu = menu;
        if ((style & WS_CAPTION) == WS_CAPTION && !display.hasWindowManager()) {
            made->captionHeight = kCaptionHeight;
        }
    }
    made->topInset = made->captionHeight + menuBarHeight(*made);
    made->handle = toHwnd(createServerWindow(*made));
    Window& window = addWindow(std::move(made));
    const HWND handle = window.handle;
    if (child) {
        findWindow(parent)->children.push_back(handle);
    } else {
        prepareTopLevel(window);
    }
    ++windowClass->windows;
    // From here on other X clients, Qt above all, may use the window's id.
    display.sync();

    CREATESTRUCTW create{};
    create.lpCreateParams = parameter;
    create.hInstance = instance;
    create.hMenu = menu;
    create.hwndParent = parent;
    create.x = window.rectangle.left;
    create.y = window.rectangle.top;
    create.cx = window.width();
    create.cy = window.height();
    create.style = static_cast<LONG>(style);
    create.lpszName = windowName;
    create.lpszClass = className;
    create.dwExStyle = exStyle;
    CBT_CREATEWNDW hookArgument{&create, HWND_TOP};
    const auto argument = reinterpret_cast<LPARAM>(&create);
    if (callCbtHooks(HCBT_CREATEWND, handle, reinterpret_cast<LPARAM>(&hookArgument))) {
        sendFinalDestroy(handle);
        return nullptr;
    }
    if (callWindow(handle, WM_NCCREATE, 0, argument) == 0) {
        sendFinalDestroy(handle);
        return nullptr;
    }
    if (callWindow(handle, WM_CREATE, 0, argument) == -1) {
        destroyWindowTree(handle);
        return nullptr;
    }
    const auto stillThere = [handle] { return findWindow(handle); };
    if (const Window* current = stillThere()) {
        callWindow(handle, WM_SIZE, SIZE_RESTORED, MAKELPARAM(current->width(), current->clientHeight()));
    }
    if (const Window* current = stillThere()) {
        const int left = current->rectangle.left;
        callWindow(handle, WM_MOVE, 0, MAKELPARAM(left, current->rectangle.top + current->topInset));
    }
    if (stillThere() != nullptr && child && (exStyle & WS_EX_NOPARENTNOTIFY) == 0) {
        SendMessageW(parent, WM_PARENTNOTIFY, MAKEWPARAM(WM_CREATE, stillThere()->id),
                     reinterpret_cast<LPARAM>(handle));
    }
    if (stillThere() != nullptr && (style & WS_VISIBLE) != 0) {
        ShowWindow(handle, (style & WS_MAXIMIZE) != 0 ? SW_SHOWMAXIMIZED : SW_SHOW);
    }
    return stillThere() != nullptr ? handle : nullptr;
}

BOOL DestroyWindow(HWND handle) {
    Window* window = requireWindow(handle);
    if (window == nullptr) {
        return FALSE;
    }
    if (!onMainThread()) {
        return failWith<BOOL>(ERROR_ACCESS_DENIED, FALSE);
    }
    if (window->destroying) {
        return TRUE;
    }
    if (callCbtHooks(HCBT_DESTROYWND, handle, 0)) {
        return FALSE;
    }
    if (window->isChild() && (window->exStyle & WS_EX_NOPARENTNOTIFY) == 0) {
        SendMessageW(window->parent, WM_PARENTNOTIFY, MAKEWPARAM(WM_DESTROY, window->id),
                     reinterpret_cast<LPARAM>(handle));
    }
    if (findWindow(handle) == nullptr) {
        return TRUE;
    }
    ShowWindow(handle, SW_HIDE);
    std::vector<HWND> ownedWindows;
    for (const auto& candidate : allWindows()) {
        if (candidate->isTopLevel() && candidate->parent == handle && candidate->handle != handle) {
            ownedWindows.push_back(candidate->handle);
        }
    }
    for (HWND ownedWindow : ownedWindows) {
        DestroyWindow(ownedWindow);
    }
    if (findWindow(handle) != nullptr) {
        destroyWindowTree(handle);
    }
    Display::instance().sync();
    return TRUE;
}

BOOL SetWindowTextW(HWND handle, LPCWSTR text) {
    return SendMessageW(handle, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) != 0 ? TRUE : FALSE;
}

namespace win32 {

void storeText(Window& window, LPCWSTR text) {
    window.text = text != nullptr ? text : u"";
    if (window.isTopLevel()) {
        setText(toXid(window.handle), window.text);
        paintFrame(window);
        Display::instance().flush();
    }
}

}  // namespace win32
