#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "sim/cad/app/Theme.h"

namespace cad {

/// Draws the menus of a window in the colours of the theme: the system's own belong to all programs. Dies
/// with the window.
class MenuLook {
public:
    /// Of the window, for the menu bar that it has at the first call.
    static MenuLook& of(HWND window);
    MenuLook(const MenuLook&) = delete;
    MenuLook& operator=(const MenuLook&) = delete;

    /// The theme must outlive the window; the caller has the bar drawn anew.
    void setTheme(const Theme& theme);

private:
    struct Item;

    explicit MenuLook(HWND window);
    ~MenuLook();

    static LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void takeItems(HMENU menu, bool isBar);
    void measure(MEASUREITEMSTRUCT& request) const;
    void draw(const DRAWITEMSTRUCT& request) const;
    void drawEmptyPartOfBar() const;

    HWND m_window;
    /// What got the messages before.
    WNDPROC m_next = nullptr;
    HFONT m_font;
    HBRUSH m_barBrush = nullptr;
    HBRUSH m_popupBrush = nullptr;
    const Theme* m_theme = nullptr;
    std::vector<std::unique_ptr<Item>> m_items;
};

}  // namespace cad
