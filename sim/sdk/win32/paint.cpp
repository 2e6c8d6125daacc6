// Update rectangles, painting and device contexts.

#include "win32_paint.h"

#include "win32_cairo.h"
#include "win32_queue.h"
#include "win32_support.h"
#include "winuser.h"

#include <cairo-xcb.h>
#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace win32 {

namespace {

std::vector<std::unique_ptr<DeviceContext>>& contexts() {
    static std::vector<std::unique_ptr<DeviceContext>> all;
    return all;
}

DeviceContext* openContext(const Window& window) {
    auto context = std::make_unique<DeviceContext>();
    cairo_surface_t* surface =
        windowSurface(toXid(window.handle), std::max(1, window.width()), std::max(1, window.height()));
    context->cairo = cairo_create(surface);
    cairo_surface_destroy(surface);
    cairo_translate(context->cairo, 0, window.topInset);
    cairo_rectangle(context->cairo, 0, 0, window.width(), window.clientHeight());
    cairo_clip(context->cairo);
    context->window = window.handle;
    context->state.brush = gdiObject(GetStockObject(WHITE_BRUSH));
    context->state.pen = gdiObject(GetStockObject(BLACK_PEN));
    context->state.font = gdiObject(GetStockObject(DEFAULT_GUI_FONT));
    contexts().push_back(std::move(context));
    return contexts().back().get();
}

void closeContext(DeviceContext* context) {
    cairo_surface_t* surface = cairo_surface_reference(cairo_get_target(context->cairo));
    cairo_destroy(context->cairo);
    // Finish it now: somebody may still hold a reference to the surface when the window is destroyed.
    cairo_surface_finish(surface);
    cairo_surface_destroy(surface);
    auto& all = contexts();
    all.erase(
        std::remove_if(all.begin(), all.end(), [context](const auto& open) { return open.get() == context; }),
        all.end());
    Display::instance().flush();
}

/// Adds a font file to the system's fonts; returns its family name, empty on failure.
std::string addFontFile(const char* path) {
    if (FcConfigAppFontAddFile(FcConfigGetCurrent(), reinterpret_cast<const FcChar8*>(path)) == FcFalse) {
        std::fprintf(stderr, "win32: ZR_SIM_FONT: no font can be read from %s\n", path);
        return {};
    }
    std::string family;
    FcFontSet* fonts = FcConfigGetFonts(FcConfigGetCurrent(), FcSetApplication);
    for (int i = 0; fonts != nullptr && i < fonts->nfont; ++i) {
        FcChar8* file = nullptr;
        FcChar8* name = nullptr;
        if (FcPatternGetString(fonts->fonts[i], FC_FILE, 0, &file) == FcResultMatch &&
            std::string_view(reinterpret_cast<const char*>(file)) == path &&
            FcPatternGetString(fonts->fonts[i], FC_FAMILY, 0, &name) == FcResultMatch) {
            family = reinterpret_cast<const char*>(name);
        }
    }
    return family;
}

}  // namespace

DeviceContext* findContext(HDC dc) {
    const auto& all = contexts();
    const auto found = std::find_if(all.begin(), all.end(), [dc](const auto& context) {
        return reinterpret_cast<HDC>(context.get()) == dc;
    });
    return found != all.end() ? found->get() : nullptr;
}

cairo_surface_t* windowSurface(xcb_window_t window, int width, int height) {
    const Display& display = Display::instance();
    return cairo_xcb_surface_create(display.connection(), window, display.visual(), width, height);
}

const PangoFontDescription* interfaceFont() {
    static const PangoFontDescription* const font = [] {
        std::string families = "sans-serif";
        // Lets a machine without installed fonts display Chinese.
        const char* path = std::getenv("ZR_SIM_FONT");
        if (path != nullptr && *path != '\0') {
            const std::string family = addFontFile(path);
            if (!family.empty()) {
                families = family + "," + families;
            }
        }
        PangoFontDescription* description = pango_font_description_new();
        pango_font_description_set_family(description, families.c_str());
        constexpr int kPixels = 13;
        pango_font_description_set_absolute_size(description, kPixels * PANGO_SCALE);
        return description;
    }();
    return font;
}

PangoLayout* makeLayout(cairo_t* cairo, std::u16string_view text, const PangoFontDescription* font) {
    const PangoFontDescription* interface = interfaceFont();
    PangoLayout* layout = pango_cairo_create_layout(cairo);
    pango_layout_set_font_description(layout, font != nullptr ? font : interface);
    const std::string utf8 = toUtf8(text);
    pango_layout_set_text(layout, utf8.c_str(), static_cast<int>(utf8.size()));
    return layout;
}

void setColor(cairo_t* cairo, COLORREF color) {
    constexpr double kFull = 255.0;
    cairo_set_source_rgb(cairo, GetRValue(color) / kFull, GetGValue(color) / kFull, GetBValue(color) / kFull);
}

void invalidate(Window& window, const RECT* rectangle, bool erase) {
    const RECT client = clientRectangle(window);
    RECT added = client;
    if (rectangle != nullptr && IntersectRect(&added, rectangle, &client) == FALSE) {
        return;
    }
    UnionRect(&window.update, &window.update, &added);
    window.erase = window.erase || erase;
}

}  // namespace win32

using namespace win32;

BOOL InvalidateRect(HWND handle, const RECT* rectangle, BOOL erase) {
    Window* window = requireWindow(handle);
    if (window == nullptr) {
        return FALSE;
    }
    if (!onMainThread()) {
        unsupported("InvalidateRect", "on a thread other than the window's");
    }
    invalidate(*window, rectangle, erase != FALSE);
    return TRUE;
}

BOOL ValidateRect(HWND handle, const RECT* rectangle) {
    Window* window = requireWindow(handle);
    if (window == nullptr) {
        return FALSE;
    }
    // The update region is one rectangle, so a call that covers only part of it validates nothing.
    RECT common{};
    if (rectangle == nullptr || (IntersectRect(&common, rectangle, &window->update) != FALSE &&
                                 EqualRect(&common, &window->update) != FALSE)) {
        window->update = {};
        window->erase = false;
    }
    return TRUE;
}

BOOL RedrawWindow(HWND handle, const RECT* rectangle, HRGN region, UINT flags) {
    Window* window = requireWindow(handle);
    if (window == nullptr) {
        return FALSE;
    }
    if (region != nullptr) {
        unsupported("RedrawWindow", "with a region");
    }
    if ((flags & RDW_INVALIDATE) != 0) {
        invalidate(*window, rectangle, (flags & RDW_ERASE) != 0);
    }
    if ((flags & RDW_VALIDATE) != 0) {
        ValidateRect(handle, rectangle);
    }
    if ((flags & RDW_FRAME) != 0) {
        paintFrame(*window);
    }
    if ((flags & RDW_ALLCHILDREN) != 0) {
        for (HWND child : std::vector<HWND>(window->children)) {
            RedrawWindow(child, nullptr, nullptr, flags);
        }
    }
    return (flags & RDW_UPDATENOW) != 0 ? UpdateWindow(handle) : TRUE;
}

BOOL GetUpdateRect(HWND handle, LPRECT rectangle, BOOL) {
    const Window* window = requireWindow(handle);
    if (window == nullptr) {
        return FALSE;
    }
    if (rectangle != nullptr) {
        *rectangle = window->update;
    }
    return window->needsPaint() ? TRUE : FALSE;
}

BOOL UpdateWindow(HWND handle) {
    const Window* window = requireWindow(handle);
    if (window == nullptr) {
        return FALSE;
    }
    if (window->needsPaint() && isViewable(*window)) {
        SendMessageW(handle, WM_PAINT, 0, 0);
    }
    return TRUE;
}

HDC BeginPaint(HWND handle, LPPAINTSTRUCT paint) {
    Window* window = requireWindow(handle);
    if (window == nullptr) {
        return nullptr;
    }
    *paint = {};
    paint->rcPaint = window->update;
    const bool erase = window->erase;
    window->update = {};
    window->erase = false;
    DeviceContext* context = openContext(*window);
    context->painting = true;
    const RECT& area = paint->rcPaint;
    cairo_rectangle(context->cairo, area.left, area.top, area.right - area.left, area.bottom - area.top);
    cairo_clip(context->cairo);
    // Double-buffer: EndPaint shows everything at once, so nothing flickers.
    cairo_push_group_with_content(context->cairo, CAIRO_CONTENT_COLOR);
    paint->hdc = reinterpret_cast<HDC>(context);
    if (erase) {
        paint->fErase =
            SendMessageW(handle, WM_ERASEBKGND, reinterpret_cast<WPARAM>(paint->hdc), 0) == 0 ? TRUE : FALSE;
    }
    return paint->hdc;
}

BOOL EndPaint(HWND, const PAINTSTRUCT* paint) {
    DeviceContext* context = findContext(paint->hdc);
    if (context == nullptr) {
        return FALSE;
    }
    while (!context->saved.empty()) {
        RestoreDC(paint->hdc, -1);
    }
    cairo_pop_group_to_source(context->cairo);
    cairo_paint(context->cairo);
    closeContext(context);
    return TRUE;
}

HDC GetDC(HWND handle) {
    if (handle == nullptr) {
        unsupported("GetDC", "the screen's device context");
    }
    const Window* window = requireWindow(handle);
    return window != nullptr ? reinterpret_cast<HDC>(openContext(*window)) : nullptr;
}

int ReleaseDC(HWND, HDC dc) {
    DeviceContext* context = findContext(dc);
    if (context == nullptr || context->painting) {
        return 0;
    }
    closeContext(context);
    return 1;
}

HWND WindowFromDC(HDC dc) {
    const DeviceContext* context = findContext(dc);
    return context != nullptr ? context->window : nullptr;
}

cairo_t* win32Cairo(HDC dc) {
    const DeviceContext* context = findContext(dc);
    return context != nullptr ? context->cairo : nullptr;
}

PangoLayout* win32TextLayout(HDC dc, LPCWSTR text, int length) {
    const DeviceContext* context = findContext(dc);
    if (context == nullptr) {
        return nullptr;
    }
    return makeLayout(context->cairo, length < 0
                                          ? std::u16string_view(text)
                                          : std::u16string_view(text, static_cast<std::size_t>(length)));
}
