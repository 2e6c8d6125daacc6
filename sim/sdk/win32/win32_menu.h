#pragma once

// The slice's internal menu structures, and the non-client area that it draws itself. Main thread.

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

/// The menu; null and ERROR_INVALID_MENU_HANDLE as the last error for an invalid handle.
Menu* findMenu(HMENU menu);

/// The text without its "&" marks; `shortcut` receives what follows a tab.
std::u16string menuLabel(const std::u16string& text, std::u16string* shortcut = nullptr);
/// The access key in lower case, 0 for none.
TCHAR menuAccessKey(const std::u16string& text);

/// Hit test for a point above the client area, in window coordinates: HTCAPTION, HTCLOSE or HTMENU.
int frameHitTest(const Window& window, POINT point);
/// Handles a press of the left button there; screen coordinates.
void frameButtonDown(Window& window, int hit, POINT screen);
/// Runs the window's menu bar from the keyboard; key is an access key in lower case, or 0 for the first item.
void openMenuBar(Window& window, TCHAR key);

/// The menu bar from which a popup was opened.
struct BarTracking {
    int current;
    /// The rectangles of the bar's items, in screen coordinates.
    std::vector<RECT> items;
};

struct PopupChoice {
    /// The chosen item's id, 0 for none.
    UINT_PTR id = 0;
    /// The bar item that the user moved on to, -1 for none.
    int nextBarItem = -1;
};

/// Runs a popup in a modal loop. The owner gets WM_INITMENUPOPUP; WM_COMMAND is left to the caller.
PopupChoice trackPopup(HMENU menu, POINT screen, HWND owner, const BarTracking* bar = nullptr);

/// Closes all open popups without a choice.
void cancelPopups();

}  // namespace win32
