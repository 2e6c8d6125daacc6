#pragma once

// Menus as the slice keeps them, and what of a top-level window it draws itself. Main thread.

#include "win32_window.h"

#include <string>
#include <vector>

namespace win32 {

struct MenuItem {
    UINT flags = 0;
    UINT_PTR id = 0;
    HMENU popup = nullptr;
    std::u16string text;

    bool isSeparator() const { return (flags & MF_SEPARATOR) != 0; }
    bool isEnabled() const { return (flags & (MF_GRAYED | MF_DISABLED)) == 0; }
};

struct Menu {
    std::vector<MenuItem> items;
};

/// The menu, or null for a handle that is none (then with ERROR_INVALID_MENU_HANDLE as the last error).
Menu* findMenu(HMENU menu);

/// A text without its "&" marks; what follows a tab goes to shortcut.
std::u16string menuLabel(const std::u16string& text, std::u16string* shortcut = nullptr);
/// The access key's letter in lower case, 0 for none.
TCHAR menuAccessKey(const std::u16string& text);

/// What of the window's own part (above the client area) is at a point in window coordinates: HTCAPTION,
/// HTCLOSE or HTMENU.
int frameHitTest(const Window& window, POINT point);
/// The left button went down there; screen coordinates.
void frameButtonDown(Window& window, int hit, POINT screen);
/// Runs the window's menu bar from the keyboard; key is an access key's letter or 0.
void openMenuBar(Window& window, TCHAR key);

/// A menu bar that a popup hangs from.
struct BarTracking {
    int current;
    /// Where the bar's items are on the screen.
    std::vector<RECT> items;
};

struct PopupChoice {
    /// The chosen item, 0 for none.
    UINT_PTR id = 0;
    /// The bar's item that the user went on to, -1 for none.
    int nextBarItem = -1;
};

/// Runs a popup in a modal loop; the owner gets WM_INITMENUPOPUP, but no WM_COMMAND.
PopupChoice trackPopup(HMENU menu, POINT screen, HWND owner, const BarTracking* bar = nullptr);

/// Ends all open popups without a choice.
void cancelPopups();

}  // namespace win32
