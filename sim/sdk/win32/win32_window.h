#pragma once

// The slice's windows as it keeps them. Main thread, but for the functions that say otherwise.

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
    /// Child windows, the topmost first.
    std::vector<HWND> children;
    /// The whole window: in the parent's client coordinates, or in the screen's for a top-level window.
    RECT rectangle{};
    /// Where a maximized or minimized window goes back to.
    RECT normalRectangle{};
    /// Height of what stands above the client area (caption, menu bar).
    int topInset = 0;
    /// Height of the caption, when the slice has to draw it because no window manager does.
    int captionHeight = 0;
    bool maximizedByManager = false;
    HMENU menu = nullptr;
    LONG_PTR id = 0;
    LONG_PTR userData = 0;
    std::vector<BYTE> extra;
    std::u16string text;
    std::map<std::u16string, HANDLE> properties;

    /// What of the client area must be painted; empty when nothing.
    RECT update{};
    bool erase = false;
    bool frameUpdate = false;

    /// Receives the keyboard's events for a top-level window: the X server gives keys to the window under the
    /// pointer when that is inside the focus window, and so would give Qt's windows keys meant for others.
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

/// The window, or null for a handle that is not (or no longer) one of the slice's.
Window* findWindow(HWND handle);
/// The same, with ERROR_INVALID_WINDOW_HANDLE as the last error when there is none.
Window* requireWindow(HWND handle);
/// Whether the handle is a window of the slice. Any thread.
bool isOwnWindow(HWND handle);
/// All windows, in the order they were made.
const std::vector<std::unique_ptr<Window>>& allWindows();
Window& addWindow(std::unique_ptr<Window> window);
void removeWindow(HWND handle);

std::shared_ptr<WindowClass> findClass(LPCWSTR nameOrAtom);

/// The top-level window that the window is in; works for windows inside ours that are not ours.
Window* topLevelOf(HWND handle);
/// Position of the client area's origin on the screen.
POINT clientOrigin(const Window& window);
RECT screenRectangle(const Window& window);
RECT clientRectangle(const Window& window);
/// Whether the window and all its ancestors are shown.
bool isViewable(const Window& window);
/// Whether neither the window nor an ancestor is disabled.
bool acceptsInput(HWND handle);

/// Calls the window's procedure, through the WH_CALLWNDPROC hooks. The window may be gone afterwards.
LRESULT callWindow(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Parts of the window functions that others call.
/// Sets the rectangle and sends what has changed; toServer tells the X server too.
void applyRectangle(HWND handle, const RECT& rectangle, bool toServer);
/// Recomputes the height above the client area after a change of menu or caption, and moves the children.
void updateInset(Window& window);
void invalidate(Window& window, const RECT* rectangle, bool erase);
/// Draws caption and menu bar.
void paintFrame(Window& window);
void destroyWindowTree(HWND handle);
/// Keeps the text and shows it in the caption.
void storeText(Window& window, LPCWSTR text);

// Focus (focus.cpp).
/// The window is going away or being hidden: focus, activation and capture leave it.
void releaseFocus(Window& window);
/// Makes a top-level window the active one; how is WA_ACTIVE or WA_CLICKACTIVE.
void activateWindow(HWND topLevel, int how);
/// Gives the X server's input focus to the top-level window's proxy.
void takeServerFocus(const Window& topLevel);

// Menu bar (menu_bar.cpp).
int menuBarHeight(const Window& window);
/// Colours and sizes of what the slice itself draws.
constexpr int kCaptionHeight = 26;
constexpr int kMenuBarHeight = 24;

// Geometry from the server for windows that are not ours.
bool foreignExists(HWND handle);
HWND foreignParent(HWND handle);
bool foreignRectangle(HWND handle, RECT& screen);
bool foreignVisible(HWND handle);

}  // namespace win32
