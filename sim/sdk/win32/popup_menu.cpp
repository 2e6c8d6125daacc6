// Popup menus: each level is a window; a modal message loop runs them.

#include "win32_menu.h"
#include "win32_paint.h"
#include "win32_queue.h"
#include "win32_support.h"
#include "win32_window.h"

#include <algorithm>

namespace win32 {

namespace {

constexpr int kItemHeight = 24;
constexpr int kSeparatorHeight = 9;
constexpr int kBorder = 2;
constexpr int kTextLeft = 26;
constexpr int kShortcutGap = 24;
constexpr int kTextRight = 22;
constexpr LPCWSTR kPopupClass = u"#32768";

struct Level {
    HWND window = nullptr;
    HMENU menu = nullptr;
    int selected = -1;
    /// The items' rectangles, in client coordinates.
    std::vector<RECT> items;
};

class PopupSession;
PopupSession* g_session = nullptr;

class PopupSession {
public:
    PopupSession(HWND owner, const BarTracking* bar) : m_owner(owner), m_bar(bar), m_outer(g_session) {
        g_session = this;
    }
    ~PopupSession() {
        closeFrom(0);
        g_session = m_outer;
    }
    PopupSession(const PopupSession&) = delete;
    PopupSession& operator=(const PopupSession&) = delete;

    void open(HMENU menu, POINT screen);
    PopupChoice run();
    /// Ends the menu without a choice. May be called re-entrantly while the session uses its windows, so it
    /// only hides them; the destructor destroys them.
    void cancel();
    PopupSession* outer() const { return m_outer; }
    void paint(HWND window, HDC dc) const;

private:
    void closeFrom(std::size_t level);
    void select(std::size_t level, int item);
    void openPopupOf(std::size_t level, bool selectFirst);
    void choose(std::size_t level);
    void mouse(const MSG& message);
    void key(const MSG& message);
    void step(int direction);
    const Menu* menuOf(std::size_t level) const { return findMenu(m_levels[level].menu); }
    const MenuItem* itemOf(std::size_t level) const;

    HWND m_owner;
    const BarTracking* m_bar;
    PopupSession* m_outer;
    std::vector<Level> m_levels;
    PopupChoice m_choice;
    bool m_done = false;
};

LRESULT CALLBACK popupProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_PAINT) {
        PAINTSTRUCT paint;
        const HDC dc = BeginPaint(window, &paint);
        if (g_session != nullptr) {
            g_session->paint(window, dc);
        }
        EndPaint(window, &paint);
        return 0;
    }
    if (message == WM_MOUSEACTIVATE) {
        return MA_NOACTIVATE;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

void registerPopupClass() {
    static const bool registered = [] {
        WNDCLASSEXW description{};
        description.cbSize = sizeof description;
        description.lpfnWndProc = popupProcedure;
        description.lpszClassName = kPopupClass;
        return RegisterClassExW(&description) != 0;
    }();
    static_cast<void>(registered);
}

int textWidth(const std::u16string& text) {
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, 1, 1);
    cairo_t* cairo = cairo_create(surface);
    PangoLayout* layout = makeLayout(cairo, text);
    int width = 0;
    pango_layout_get_pixel_size(layout, &width, nullptr);
    g_object_unref(layout);
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
    return width;
}

void showText(cairo_t* cairo, const std::u16string& text, int left, const RECT& place) {
    PangoLayout* layout = makeLayout(cairo, text);
    int height = 0;
    pango_layout_get_pixel_size(layout, nullptr, &height);
    const int top = place.top + (place.bottom - place.top - height) / 2;
    cairo_move_to(cairo, left, top);
    pango_cairo_show_layout(cairo, layout);
    g_object_unref(layout);
}

void PopupSession::open(HMENU handle, POINT screen) {
    registerPopupClass();
    SendMessageW(m_owner, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(handle), 0);
    const Menu* menu = findMenu(handle);
    if (menu == nullptr) {
        return;
    }
    Level level;
    level.menu = handle;
    int labels = 0;
    int shortcuts = 0;
    for (const MenuItem& item : menu->items) {
        std::u16string shortcut;
        labels = std::max(labels, textWidth(menuLabel(item.text, &shortcut)));
        if (!shortcut.empty()) {
            shortcuts = std::max(shortcuts, textWidth(shortcut) + kShortcutGap);
        }
    }
    const int width = kTextLeft + labels + shortcuts + kTextRight;
    int top = kBorder;
    for (const MenuItem& item : menu->items) {
        const int bottom = top + (item.isSeparator() ? kSeparatorHeight : kItemHeight);
        level.items.push_back({kBorder, top, width - kBorder, bottom});
        top = bottom;
    }
    const int height = top + kBorder;
    // Keep the popup on the screen.
    const int x = std::max(0, std::min(screen.x, GetSystemMetrics(SM_CXSCREEN) - width));
    const int y = std::max(0, std::min(screen.y, GetSystemMetrics(SM_CYSCREEN) - height));
    level.window = CreateWindowExW(WS_EX_NOACTIVATE | WS_EX_TOOLWINDOW, kPopupClass, u"", WS_POPUP, x, y,
                                   width, height, m_owner, nullptr, nullptr, nullptr);
    m_levels.push_back(level);
    ShowWindow(level.window, SW_SHOWNA);
    SetWindowPos(level.window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    UpdateWindow(level.window);
    SetCapture(m_levels.front().window);
}

void PopupSession::closeFrom(std::size_t level) {
    while (m_levels.size() > level) {
        const Level closed = m_levels.back();
        m_levels.pop_back();
        if (findWindow(m_owner) != nullptr) {
            SendMessageW(m_owner, WM_UNINITMENUPOPUP, reinterpret_cast<WPARAM>(closed.menu), 0);
        }
        if (findWindow(closed.window) != nullptr) {
            DestroyWindow(closed.window);
        }
    }
}

const MenuItem* PopupSession::itemOf(std::size_t level) const {
    const Menu* menu = menuOf(level);
    const int selected = m_levels[level].selected;
    return menu != nullptr && selected >= 0 && static_cast<std::size_t>(selected) < menu->items.size()
               ? &menu->items[static_cast<std::size_t>(selected)]
               : nullptr;
}

void PopupSession::select(std::size_t level, int item) {
    if (m_levels[level].selected == item) {
        return;
    }
    m_levels[level].selected = item;
    InvalidateRect(m_levels[level].window, nullptr, FALSE);
    if (const MenuItem* selected = itemOf(level)) {
        SendMessageW(m_owner, WM_MENUSELECT, MAKEWPARAM(selected->id, selected->flags),
                     reinterpret_cast<LPARAM>(m_levels[level].menu));
    }
}

void PopupSession::openPopupOf(std::size_t level, bool selectFirst) {
    const MenuItem* item = itemOf(level);
    if (item == nullptr || item->popup == nullptr || !item->isEnabled()) {
        return;
    }
    if (m_levels.size() > level + 1 && m_levels[level + 1].menu == item->popup) {
        return;
    }
    closeFrom(level + 1);
    RECT place = m_levels[level].items[static_cast<std::size_t>(m_levels[level].selected)];
    MapWindowPoints(m_levels[level].window, nullptr, reinterpret_cast<LPPOINT>(&place), 2);
    open(item->popup, {place.right, place.top - kBorder});
    if (selectFirst) {
        step(1);
    }
}

void PopupSession::choose(std::size_t level) {
    const MenuItem* item = itemOf(level);
    if (item == nullptr || item->isSeparator() || !item->isEnabled()) {
        return;
    }
    if (item->popup != nullptr) {
        openPopupOf(level, true);
        return;
    }
    m_choice.id = item->id;
    m_done = true;
}

void PopupSession::mouse(const MSG& message) {
    POINT screen = {GET_X_LPARAM(message.lParam), GET_Y_LPARAM(message.lParam)};
    ClientToScreen(message.hwnd, &screen);
    const bool press = message.message == WM_LBUTTONDOWN || message.message == WM_RBUTTONDOWN;
    const bool release = message.message == WM_LBUTTONUP || message.message == WM_RBUTTONUP;
    for (std::size_t level = m_levels.size(); level-- > 0;) {
        RECT place;
        GetWindowRect(m_levels[level].window, &place);
        if (PtInRect(&place, screen) == FALSE) {
            continue;
        }
        const POINT inWindow = {screen.x - place.left, screen.y - place.top};
        const auto& items = m_levels[level].items;
        const auto hit = std::find_if(items.begin(), items.end(), [inWindow](const RECT& item) {
            return PtInRect(&item, inWindow) != FALSE;
        });
        select(level, hit != items.end() ? static_cast<int>(hit - items.begin()) : -1);
        const MenuItem* item = itemOf(level);
        if (item != nullptr && item->popup != nullptr) {
            openPopupOf(level, false);
        } else {
            closeFrom(level + 1);
        }
        if (release) {
            choose(level);
        }
        return;
    }
    if (m_bar != nullptr) {
        for (std::size_t i = 0; i < m_bar->items.size(); ++i) {
            if (PtInRect(&m_bar->items[i], screen) == FALSE) {
                continue;
            }
            if (static_cast<int>(i) != m_bar->current) {
                m_choice.nextBarItem = static_cast<int>(i);
                m_done = true;
            } else if (press) {
                m_done = true;
            }
            return;
        }
    }
    if (press) {
        m_done = true;
    }
}

void PopupSession::step(int direction) {
    const std::size_t level = m_levels.size() - 1;
    const Menu* menu = menuOf(level);
    const int count = menu != nullptr ? static_cast<int>(menu->items.size()) : 0;
    int item = m_levels[level].selected;
    if (item < 0 && direction < 0) {
        item = 0;
    }
    for (int tried = 0; tried < count; ++tried) {
        item = (item + direction + count) % count;
        if (!menu->items[static_cast<std::size_t>(item)].isSeparator()) {
            select(level, item);
            return;
        }
    }
}

void PopupSession::key(const MSG& message) {
    const std::size_t level = m_levels.size() - 1;
    const int barItems = m_bar != nullptr ? static_cast<int>(m_bar->items.size()) : 0;
    const auto goToBarItem = [&](int direction) {
        if (barItems > 1) {
            m_choice.nextBarItem = (m_bar->current + direction + barItems) % barItems;
            m_done = true;
        }
    };
    switch (message.wParam) {
        case VK_DOWN:
            step(1);
            break;
        case VK_UP:
            step(-1);
            break;
        case VK_RETURN:
            choose(level);
            break;
        case VK_RIGHT:
            if (const MenuItem* item = itemOf(level); item != nullptr && item->popup != nullptr) {
                openPopupOf(level, true);
            } else {
                goToBarItem(1);
            }
            break;
        case VK_LEFT:
            if (level > 0) {
                closeFrom(level);
            } else {
                goToBarItem(-1);
            }
            break;
        case VK_ESCAPE:
            if (level > 0) {
                closeFrom(level);
            } else {
                m_done = true;
            }
            break;
        case VK_MENU:
        case VK_F10:
            m_done = true;
            break;
        default: {
            const Menu* menu = menuOf(level);
            const TCHAR wanted = foldCase(static_cast<TCHAR>(message.wParam));
            for (std::size_t i = 0; menu != nullptr && i < menu->items.size(); ++i) {
                if (menuAccessKey(menu->items[i].text) == wanted) {
                    select(level, static_cast<int>(i));
                    choose(level);
                    break;
                }
            }
            break;
        }
    }
}

void PopupSession::cancel() {
    m_done = true;
    m_choice = {};
    for (const Level& level : m_levels) {
        if (findWindow(level.window) != nullptr) {
            ShowWindow(level.window, SW_HIDE);
        }
    }
}

PopupChoice PopupSession::run() {
    while (!m_done && !m_levels.empty() && findWindow(m_owner) != nullptr &&
           findWindow(m_levels.front().window) != nullptr) {
        MSG message;
        if (GetMessageW(&message, nullptr, 0, 0) == FALSE) {
            // Re-post WM_QUIT for the program's own message loop.
            PostQuitMessage(static_cast<int>(message.wParam));
            break;
        }
        if (message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN) {
            key(message);
        } else if (message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST) {
            continue;
        } else if (message.message >= WM_MOUSEFIRST && message.message <= WM_MOUSELAST) {
            mouse(message);
        } else {
            DispatchMessageW(&message);
        }
        // The capture was lost, for example to a message box.
        if (GetCapture() == nullptr) {
            break;
        }
    }
    return m_choice;
}

void PopupSession::paint(HWND window, HDC dc) const {
    const auto level = std::find_if(m_levels.begin(), m_levels.end(),
                                    [window](const Level& candidate) { return candidate.window == window; });
    const Menu* menu = level != m_levels.end() ? findMenu(level->menu) : nullptr;
    if (menu == nullptr) {
        return;
    }
    RECT client;
    GetClientRect(window, &client);
    FillRect(dc, &client, GetSysColorBrush(COLOR_WINDOW));
    FrameRect(dc, &client, GetSysColorBrush(COLOR_BTNSHADOW));
    cairo_t* cairo = findContext(dc)->cairo;
    for (std::size_t i = 0; i < menu->items.size() && i < level->items.size(); ++i) {
        const MenuItem& item = menu->items[i];
        const RECT& place = level->items[i];
        if (item.isSeparator()) {
            const int middle = (place.top + place.bottom) / 2;
            const RECT line = {place.left + kBorder, middle, place.right - kBorder, middle + 1};
            FillRect(dc, &line, GetSysColorBrush(COLOR_BTNSHADOW));
            continue;
        }
        const bool selected = level->selected == static_cast<int>(i);
        if (selected) {
            FillRect(dc, &place, GetSysColorBrush(COLOR_HIGHLIGHT));
        }
        const int color = !item.isEnabled() ? COLOR_GRAYTEXT
                          : selected        ? COLOR_HIGHLIGHTTEXT
                                            : COLOR_MENUTEXT;
        setColor(cairo, GetSysColor(color));
        std::u16string shortcut;
        showText(cairo, menuLabel(item.text, &shortcut), kTextLeft, place);
        if (!shortcut.empty()) {
            showText(cairo, shortcut, place.right - kTextRight - textWidth(shortcut), place);
        }
        if ((item.flags & MF_CHECKED) != 0) {
            showText(cairo, u"\u2713", place.left + kBorder + 4, place);
        }
        if (item.popup != nullptr) {
            showText(cairo, u"\u25B8", place.right - kTextRight + 6, place);
        }
    }
}

}  // namespace

void cancelPopups() {
    for (PopupSession* session = g_session; session != nullptr; session = session->outer()) {
        session->cancel();
    }
}

PopupChoice trackPopup(HMENU menu, POINT screen, HWND owner, const BarTracking* bar) {
    PopupSession session(owner, bar);
    session.open(menu, screen);
    const PopupChoice choice = session.run();
    ReleaseCapture();
    return choice;
}

}  // namespace win32
