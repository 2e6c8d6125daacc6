// The non-client area that the slice itself draws for a top-level window: the menu bar and, if no window
// manager runs, the caption.

#include "win32_menu.h"
#include "win32_paint.h"
#include "win32_queue.h"
#include "win32_support.h"
#include "win32_window.h"

#include <algorithm>

namespace win32 {

namespace {

constexpr int kItemPadding = 9;
constexpr int kCaptionPadding = 10;
constexpr double kCloseMark = 4.5;

// The bar item whose popup is open.
HWND g_openWindow = nullptr;
int g_openItem = -1;

/// The rectangles of the bar's items, in window coordinates.
std::vector<RECT> itemRectangles(const Window& window) {
    std::vector<RECT> rectangles;
    const Menu* menu = window.menu != nullptr ? findMenu(window.menu) : nullptr;
    if (menu == nullptr) {
        return rectangles;
    }
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, 1, 1);
    cairo_t* cairo = cairo_create(surface);
    int left = kItemPadding / 2;
    for (const MenuItem& item : menu->items) {
        PangoLayout* layout = makeLayout(cairo, menuLabel(item.text));
        int width = 0;
        pango_layout_get_pixel_size(layout, &width, nullptr);
        g_object_unref(layout);
        const int right = left + width + 2 * kItemPadding;
        rectangles.push_back({left, window.captionHeight, right, window.captionHeight + kMenuBarHeight});
        left = right;
    }
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
    return rectangles;
}

void drawText(cairo_t* cairo, const std::u16string& text, const RECT& place, int padding, COLORREF color) {
    PangoLayout* layout = makeLayout(cairo, text);
    pango_layout_set_width(layout, (place.right - place.left - 2 * padding) * PANGO_SCALE);
    pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_END);
    int height = 0;
    pango_layout_get_pixel_size(layout, nullptr, &height);
    setColor(cairo, color);
    const int top = place.top + (place.bottom - place.top - height) / 2;
    cairo_move_to(cairo, place.left + padding, top);
    pango_cairo_show_layout(cairo, layout);
    g_object_unref(layout);
}

void drawCaption(cairo_t* cairo, const Window& window) {
    const bool active = GetActiveWindow() == window.handle;
    setColor(cairo, GetSysColor(active ? COLOR_ACTIVECAPTION : COLOR_INACTIVECAPTION));
    cairo_rectangle(cairo, 0, 0, window.width(), window.captionHeight);
    cairo_fill(cairo);
    const COLORREF textColor = GetSysColor(COLOR_CAPTIONTEXT);
    drawText(cairo, window.text, {0, 0, window.width() - window.captionHeight, window.captionHeight},
             kCaptionPadding, textColor);
    const double x = window.width() - window.captionHeight / 2.0;
    const double y = window.captionHeight / 2.0;
    setColor(cairo, textColor);
    cairo_set_line_width(cairo, 1.5);
    cairo_move_to(cairo, x - kCloseMark, y - kCloseMark);
    cairo_line_to(cairo, x + kCloseMark, y + kCloseMark);
    cairo_move_to(cairo, x - kCloseMark, y + kCloseMark);
    cairo_line_to(cairo, x + kCloseMark, y - kCloseMark);
    cairo_stroke(cairo);
}

void drawBar(cairo_t* cairo, const Window& window) {
    setColor(cairo, GetSysColor(COLOR_MENU));
    cairo_rectangle(cairo, 0, window.captionHeight, window.width(), kMenuBarHeight);
    cairo_fill(cairo);
    const Menu* menu = findMenu(window.menu);
    const auto rectangles = itemRectangles(window);
    for (std::size_t i = 0; i < rectangles.size(); ++i) {
        const RECT& place = rectangles[i];
        const bool open = g_openWindow == window.handle && g_openItem == static_cast<int>(i);
        if (open) {
            setColor(cairo, GetSysColor(COLOR_HIGHLIGHT));
            cairo_rectangle(cairo, place.left, place.top, place.right - place.left, place.bottom - place.top);
            cairo_fill(cairo);
        }
        const int color = !menu->items[i].isEnabled() ? COLOR_GRAYTEXT
                          : open                      ? COLOR_HIGHLIGHTTEXT
                                                      : COLOR_MENUTEXT;
        drawText(cairo, menuLabel(menu->items[i].text), place, kItemPadding, GetSysColor(color));
    }
}

void setOpenItem(HWND handle, int item) {
    g_openWindow = item >= 0 ? handle : nullptr;
    g_openItem = item;
    if (Window* window = findWindow(handle)) {
        paintFrame(*window);
    }
}

/// Runs the modal menu loop, starting with the popup of the given item.
void runBar(HWND handle, int item) {
    SendMessageW(handle, WM_ENTERMENULOOP, FALSE, 0);
    if (const Window* window = findWindow(handle)) {
        SendMessageW(handle, WM_INITMENU, reinterpret_cast<WPARAM>(window->menu), 0);
    }
    UINT_PTR command = 0;
    while (item >= 0) {
        const Window* window = findWindow(handle);
        const Menu* menu = window != nullptr && window->menu != nullptr ? findMenu(window->menu) : nullptr;
        if (menu == nullptr || static_cast<std::size_t>(item) >= menu->items.size()) {
            break;
        }
        const MenuItem chosen = menu->items[static_cast<std::size_t>(item)];
        if (!chosen.isEnabled()) {
            break;
        }
        if (chosen.popup == nullptr) {
            command = chosen.id;
            break;
        }
        BarTracking bar{item, itemRectangles(*window)};
        const RECT whole = screenRectangle(*window);
        for (RECT& rectangle : bar.items) {
            OffsetRect(&rectangle, whole.left, whole.top);
        }
        const RECT& place = bar.items[static_cast<std::size_t>(item)];
        setOpenItem(handle, item);
        const PopupChoice choice = trackPopup(chosen.popup, {place.left, place.bottom}, handle, &bar);
        setOpenItem(handle, -1);
        command = choice.id;
        item = choice.nextBarItem;
    }
    if (findWindow(handle) == nullptr) {
        return;
    }
    SendMessageW(handle, WM_EXITMENULOOP, FALSE, 0);
    if (command != 0) {
        PostMessageW(handle, WM_COMMAND, command, 0);
    }
}

}  // namespace

int menuBarHeight(const Window& window) {
    return window.isTopLevel() && window.menu != nullptr ? kMenuBarHeight : 0;
}

void paintFrame(Window& window) {
    window.frameUpdate = false;
    if (window.topInset == 0 || !isViewable(window)) {
        return;
    }
    cairo_surface_t* surface = windowSurface(toXid(window.handle), window.width(), window.height());
    cairo_t* cairo = cairo_create(surface);
    cairo_rectangle(cairo, 0, 0, window.width(), window.topInset);
    cairo_clip(cairo);
    cairo_push_group_with_content(cairo, CAIRO_CONTENT_COLOR);
    if (window.captionHeight > 0) {
        drawCaption(cairo, window);
    }
    if (menuBarHeight(window) > 0) {
        drawBar(cairo, window);
    }
    cairo_pop_group_to_source(cairo);
    cairo_paint(cairo);
    cairo_destroy(cairo);
    cairo_surface_finish(surface);
    cairo_surface_destroy(surface);
    Display::instance().flush();
}

int frameHitTest(const Window& window, POINT point) {
    if (point.y >= window.captionHeight) {
        return HTMENU;
    }
    return point.x >= window.width() - window.captionHeight ? HTCLOSE : HTCAPTION;
}

void frameButtonDown(Window& window, int hit, POINT screen) {
    const HWND handle = window.handle;
    if (hit == HTCLOSE) {
        PostMessageW(handle, WM_SYSCOMMAND, SC_CLOSE, MAKELPARAM(screen.x, screen.y));
        return;
    }
    if (hit != HTMENU) {
        return;
    }
    const RECT whole = screenRectangle(window);
    const POINT inWindow = {screen.x - whole.left, screen.y - whole.top};
    const auto rectangles = itemRectangles(window);
    for (std::size_t i = 0; i < rectangles.size(); ++i) {
        if (PtInRect(&rectangles[i], inWindow) != FALSE) {
            runBar(handle, static_cast<int>(i));
            return;
        }
    }
}

void openMenuBar(Window& window, TCHAR key) {
    const Menu* menu = window.menu != nullptr ? findMenu(window.menu) : nullptr;
    if (menu == nullptr || menu->items.empty()) {
        return;
    }
    if (key == 0) {
        runBar(window.handle, 0);
        return;
    }
    for (std::size_t i = 0; i < menu->items.size(); ++i) {
        if (menuAccessKey(menu->items[i].text) == key) {
            runBar(window.handle, static_cast<int>(i));
            return;
        }
    }
    MessageBeep(MB_OK);
}

}  // namespace win32
