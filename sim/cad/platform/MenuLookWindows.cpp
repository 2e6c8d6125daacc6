#include "sim/cad/platform/MenuLookWindows.h"

#include <string>

namespace cad {

namespace {

/// Name of the window property that holds the MenuLook.
constexpr const wchar_t* kProperty = L"zentri-host menu look";
constexpr int kTextCapacity = 128;
// Metrics of popup menus, in pixels.
constexpr int kMarkColumn = 26;
constexpr int kShortcutGap = 28;
constexpr int kRightMargin = 18;
constexpr int kRowPadding = 8;
constexpr int kSeparatorHeight = 9;
// Margin on either side of a title in the menu bar, in pixels.
constexpr int kTitleMargin = 2;

COLORREF rgb(Color color) {
    return RGB(color >> 16, color >> 8, color);
}

SIZE sizeOf(HDC dc, const std::wstring& text) {
    RECT rect{};
    ::DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &rect, DT_SINGLELINE | DT_CALCRECT);
    return {rect.right, rect.bottom};
}

void fill(HDC dc, const RECT& rect, Color color) {
    const HBRUSH brush = ::CreateSolidBrush(rgb(color));
    ::FillRect(dc, &rect, brush);
    ::DeleteObject(brush);
}

/// Draws a check mark centered in the rectangle.
void drawTick(HDC dc, const RECT& rect, Color color) {
    const int x = (rect.left + rect.right) / 2;
    const int y = (rect.top + rect.bottom) / 2;
    const POINT corners[] = {{x - 4, y}, {x - 1, y + 3}, {x + 5, y - 4}};
    const HPEN pen = ::CreatePen(PS_SOLID, 2, rgb(color));
    const HGDIOBJ former = ::SelectObject(dc, pen);
    ::Polyline(dc, corners, 3);
    ::SelectObject(dc, former);
    ::DeleteObject(pen);
}

}  // namespace

/// The item data that WM_MEASUREITEM and WM_DRAWITEM pass back.
struct MenuLook::Item {
    /// Empty for a separator.
    std::wstring text;
    std::wstring shortcut;
    bool isTitle = false;
};

MenuLook& MenuLook::of(HWND window) {
    auto* look = static_cast<MenuLook*>(::GetPropW(window, kProperty));
    if (look == nullptr) {
        look = new MenuLook(window);
        ::SetPropW(window, kProperty, look);
        look->m_next = reinterpret_cast<WNDPROC>(
            ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(windowProcedure)));
    }
    return *look;
}

MenuLook::MenuLook(HWND window) : m_window(window) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    m_font = ::CreateFontIndirectW(&metrics.lfMenuFont);
    takeItems(::GetMenu(window), true);
}

MenuLook::~MenuLook() {
    for (const HGDIOBJ object : {HGDIOBJ{m_font}, HGDIOBJ{m_barBrush}, HGDIOBJ{m_popupBrush}}) {
        ::DeleteObject(object);
    }
}

void MenuLook::setTheme(const Theme& theme) {
    m_theme = &theme;
    const HBRUSH former[] = {m_barBrush, m_popupBrush};
    m_barBrush = ::CreateSolidBrush(rgb(theme.frame));
    m_popupBrush = ::CreateSolidBrush(rgb(theme.popup));
    const HMENU bar = ::GetMenu(m_window);
    MENUINFO info{};
    info.cbSize = sizeof info;
    info.fMask = MIM_BACKGROUND;
    info.hbrBack = m_barBrush;
    ::SetMenuInfo(bar, &info);
    info.hbrBack = m_popupBrush;
    for (int i = ::GetMenuItemCount(bar) - 1; i >= 0; --i) {
        ::SetMenuInfo(::GetSubMenu(bar, i), &info);
    }
    for (const HBRUSH brush : former) {
        ::DeleteObject(brush);
    }
}

void MenuLook::takeItems(HMENU menu, bool isBar) {
    const int count = ::GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i) {
        wchar_t buffer[kTextCapacity];
        MENUITEMINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_FTYPE | MIIM_STRING | MIIM_SUBMENU;
        info.dwTypeData = buffer;
        info.cch = kTextCapacity;
        ::GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info);
        auto item = std::make_unique<Item>();
        item->isTitle = isBar;
        if ((info.fType & MFT_SEPARATOR) == 0) {
            item->text = std::wstring(buffer, info.cch);
            const size_t tab = item->text.find(L'\t');
            if (tab != std::wstring::npos) {
                item->shortcut = item->text.substr(tab + 1);
                item->text.resize(tab);
            }
        }
        if (info.hSubMenu != nullptr) {
            takeItems(info.hSubMenu, false);
        }
        // The menu keeps the item's text, in which the system looks for mnemonics.
        info.fMask = MIIM_FTYPE | MIIM_DATA;
        info.fType |= MFT_OWNERDRAW;
        info.dwItemData = reinterpret_cast<ULONG_PTR>(item.get());
        ::SetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info);
        m_items.push_back(std::move(item));
    }
}

void MenuLook::measure(MEASUREITEMSTRUCT& request) const {
    const Item& item = *reinterpret_cast<const Item*>(request.itemData);
    const HDC dc = ::GetDC(m_window);
    const HGDIOBJ former = ::SelectObject(dc, m_font);
    const SIZE text = sizeOf(dc, item.text);
    if (item.isTitle) {
        request.itemWidth = static_cast<UINT>(text.cx + 2 * kTitleMargin);
        request.itemHeight = static_cast<UINT>(::GetSystemMetrics(SM_CYMENU));
    } else if (item.text.empty()) {
        request.itemWidth = 0;
        request.itemHeight = kSeparatorHeight;
    } else {
        const LONG shortcut = item.shortcut.empty() ? 0 : kShortcutGap + sizeOf(dc, item.shortcut).cx;
        request.itemWidth = static_cast<UINT>(kMarkColumn + text.cx + shortcut + kRightMargin);
        request.itemHeight = static_cast<UINT>(text.cy + kRowPadding);
    }
    ::SelectObject(dc, former);
    ::ReleaseDC(m_window, dc);
}

void MenuLook::draw(const DRAWITEMSTRUCT& request) const {
    const Item& item = *reinterpret_cast<const Item*>(request.itemData);
    const HDC dc = request.hDC;
    RECT rect = request.rcItem;
    const bool marked = (request.itemState & (ODS_SELECTED | ODS_HOTLIGHT)) != 0;
    const Color ground = item.isTitle ? m_theme->frame : m_theme->popup;
    fill(dc, rect, marked && !item.text.empty() ? m_theme->menuHighlight : ground);
    if (item.text.empty()) {
        const LONG middle = (rect.top + rect.bottom) / 2;
        fill(dc, {rect.left + kMarkColumn, middle, rect.right, middle + 1}, m_theme->border);
        return;
    }
    const HGDIOBJ former = ::SelectObject(dc, m_font);
    ::SetBkMode(dc, TRANSPARENT);
    ::SetTextColor(dc, rgb(m_theme->text));
    const UINT format =
        DT_SINGLELINE | DT_VCENTER | ((request.itemState & ODS_NOACCEL) != 0 ? DT_HIDEPREFIX : 0);
    if (item.isTitle) {
        ::DrawTextW(dc, item.text.c_str(), -1, &rect, format | DT_CENTER);
    } else {
        if ((request.itemState & ODS_CHECKED) != 0) {
            drawTick(dc, {rect.left, rect.top, rect.left + kMarkColumn, rect.bottom}, m_theme->text);
        }
        rect.left += kMarkColumn;
        rect.right -= kRightMargin;
        ::DrawTextW(dc, item.text.c_str(), -1, &rect, format);
        ::SetTextColor(dc, rgb(m_theme->mutedText));
        ::DrawTextW(dc, item.shortcut.c_str(), -1, &rect, format | DT_RIGHT);
    }
    ::SelectObject(dc, former);
}

void MenuLook::drawEmptyPartOfBar() const {
    // Wine ignores the menu bar's background brush, and the system draws its own line below the bar.
    MENUBARINFO info{};
    info.cbSize = sizeof info;
    RECT window{};
    RECT client{};
    if (::GetMenuBarInfo(m_window, OBJID_MENU, 0, &info) == FALSE ||
        ::GetWindowRect(m_window, &window) == FALSE || ::GetClientRect(m_window, &client) == FALSE) {
        return;
    }
    ::MapWindowPoints(m_window, nullptr, reinterpret_cast<POINT*>(&client), 2);
    RECT empty = info.rcBar;
    empty.bottom = client.top;
    RECT last{};
    const int count = ::GetMenuItemCount(info.hMenu);
    if (::GetMenuItemRect(m_window, info.hMenu, static_cast<UINT>(count - 1), &last) != FALSE) {
        empty.left = last.right;
    }
    RECT below = {info.rcBar.left, info.rcBar.bottom, info.rcBar.right, client.top};
    ::OffsetRect(&empty, -window.left, -window.top);
    ::OffsetRect(&below, -window.left, -window.top);
    const HDC dc = ::GetWindowDC(m_window);
    fill(dc, empty, m_theme->frame);
    fill(dc, below, m_theme->frame);
    ::ReleaseDC(m_window, dc);
}

LRESULT CALLBACK MenuLook::windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto& self = *static_cast<MenuLook*>(::GetPropW(window, kProperty));
    const WNDPROC next = self.m_next;
    switch (message) {
        case WM_MEASUREITEM:
            if (auto* const request = reinterpret_cast<MEASUREITEMSTRUCT*>(lParam);
                request->CtlType == ODT_MENU) {
                self.measure(*request);
                return TRUE;
            }
            break;
        case WM_DRAWITEM:
            if (auto* const request = reinterpret_cast<DRAWITEMSTRUCT*>(lParam);
                request->CtlType == ODT_MENU) {
                self.draw(*request);
                return TRUE;
            }
            break;
        case WM_NCPAINT:
        case WM_NCACTIVATE: {
            const LRESULT result = ::CallWindowProcW(next, window, message, wParam, lParam);
            self.drawEmptyPartOfBar();
            return result;
        }
        case WM_NCDESTROY:
            ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(next));
            ::RemovePropW(window, kProperty);
            delete &self;
            break;
        default:
            break;
    }
    return ::CallWindowProcW(next, window, message, wParam, lParam);
}

}  // namespace cad
