#pragma once

// The slice's internal window structures. Main thread, except where a function says otherwise.

#include "win32_display.h"
#include "winuser.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace win32 {

struct WindowClass {
    std::u16string name;
    ATOM atom = 0;
    UINT style = 0;
    WNDPROC procedure = nullptr;
    int extraBytes = 0;
    HINSTANCE instance = nullptr;
    HICON icon = nullptr;
    HCURSOR cursor = nullptr;
    HBRUSH background = nullptr;
    int windows = 0;
};

struct Window {
    HWND handle = nullptr;
    std::shared_ptr<WindowClass> windowClass;
    WNDPROC procedure = nullptr;
    DWORD style = 0;
    DWORD exStyle = 0;
    HINSTANCE instance = nullptr;
    /// The parent of a child window, the owner of any other.
    HWND parent = nullptr;
    /// Child windows in Z order, topmost first.
    std::vector<HWND> children;
    /// The window rectangle: in the parent's client coordinates, or in screen coordinates for a top-level
    /// window.
    RECT rectangle{};
    /// The rectangle to restore a maximized or minimized window to.
    RECT normalRectangle{};
    /// Height of the non-client area above the client area (caption, menu bar).
    int topInset = 0;
    /// Height of the caption, if the slice draws it because no window manager does; else 0.
    int captionHeight = 0;
    bool maximizedByManager = false;
    HMENU menu = nullptr;
    LONG_PTR id = 0;
    LONG_PTR userData = 0;
    std::vector<BYTE> extra;
    std::u16string text;
    std::map<std::u16string, HANDLE> properties;

    /// The update region, one rectangle in client coordinates; empty when nothing needs painting.
    RECT update{};
    bool erase = false;
    bool frameUpdate = false;

    /// Invisible window that holds the X focus for its top-level window. The X server sends key events to the
    /// window under the pointer if that is inside the focus window, so Qt's windows would get keys meant for
    /// others.
    xcb_window_t focusProxy = XCB_NONE;
    bool destroying = false;

    bool isChild() const { return (style & WS_CHILD) != 0; }
    bool isTopLevel() const { return (style & WS_CHILD) == 0; }
    bool isShown() const { return (style & WS_VISIBLE) != 0; }
    bool isEnabled() const { return (style & WS_DISABLED) == 0; }
    int width() const { return rectangle.right - rectangle.left; }
    int height() const { return rectangle.bottom - rectangle.top; }
    int clientHeight() const { return height() > topInset ? height() - topInset : 0; }
    bool needsPaint() const { return update.right > update.left && update.bottom > update.top; }
};

/// The window; null for a handle that is not, or no longer, one of the slice's.
Window* findWindow(HWND handle);
/// The same; sets ERROR_INVALID_WINDOW_HANDLE when it returns null.
Window* requireWindow(HWND handle);
/// Whether the handle is one of the slice's windows. Any thread.
bool isOwnWindow(HWND handle);
/// All windows, in order of creation.
const std::vector<std::unique_ptr<Window>>& allWindows();
Window& addWindow(std::unique_ptr<Window> window);
void removeWindow(HWND handle);

std::shared_ptr<WindowClass> findClass(LPCWSTR nameOrAtom);

/// The top-level window that contains the window; also for a foreign window embedded in one of ours.
Window* topLevelOf(HWND handle);
/// The client area's origin in screen coordinates.
POINT clientOrigin(const Window& window);
RECT screenRectangle(const Window& window);
RECT clientRectangle(const Window& window);
/// Whether the window and all its ancestors are shown.
bool isViewable(const Window& window);
/// Whether neither the window nor an ancestor is disabled.
bool acceptsInput(HWND handle);

/// Runs the WH_CALLWNDPROC hooks and calls the window procedure. The window may be destroyed afterwards.
LRESULT callWindow(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Parts of the window functions that other files use.
/// Sets the rectangle and sends WM_WINDOWPOSCHANGED; toServer also moves the X window.
void applyRectangle(HWND handle, const RECT& rectangle, bool toServer);
/// Recomputes the height above the client area after a change of menu or caption, and moves the children.
void updateInset(Window& window);
void invalidate(Window& window, const RECT* rectangle, bool erase);
/// Draws the caption and the menu bar.
void paintFrame(Window& window);
void destroyWindowTree(HWND handle);
/// Stores the window text and shows it in the caption.
void storeText(Window& window, LPCWSTR text);

// Focus (focus.cpp).
/// Moves focus, activation and capture away from a window that is being hidden or destroyed. The focus stays
/// in a child of a hidden child window, but does not survive the window's destruction.
void releaseFocus(Window& window, bool destroyed);
/// Activates a top-level window; how is WA_ACTIVE or WA_CLICKACTIVE.
void activateWindow(HWND topLevel, int how);
/// Sets the X input focus to the top-level window's focus proxy.
void takeServerFocus(const Window& topLevel);

// Menu bar (menu_bar.cpp).
int menuBarHeight(const Window& window);
/// Heights in pixels of the non-client area that the slice itself draws.
constexpr int kCaptionHeight = 26;
constexpr int kMenuBarHeight = 24;

// Queries about foreign windows: answered by the toolkit that owns them, else by the X server.
bool foreignExists(HWND handle);
HWND foreignParent(HWND handle);
bool foreignRectangle(HWND handle, RECT& screen);
bool foreignVisible(HWND handle);

}  // namespace win32
