#pragma once

#include <windows.h>

#include <memory>
#include <vector>

#include "sim/cad/app/Theme.h"

namespace cad {

/// Owner-draws the menus of a window in the theme's colours, because system colours are shared by all
/// programs. Subclasses the window and deletes itself on WM_NCDESTROY.
class MenuLook {
public:
    /// The window's MenuLook, created on the first call for the menu bar that the window has by then.
    static MenuLook& of(HWND window);
    MenuLook(const MenuLook&) = delete;
    MenuLook& operator=(const MenuLook&) = delete;

    /// The theme must outlive the window. The caller redraws the menu bar.
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
    /// The window procedure before subclassing.
    WNDPROC m_next = nullptr;
    HFONT m_font;
    HBRUSH m_barBrush = nullptr;
    HBRUSH m_popupBrush = nullptr;
    const Theme* m_theme = nullptr;
    std::vector<std::unique_ptr<Item>> m_items;
};

}  // namespace cad
