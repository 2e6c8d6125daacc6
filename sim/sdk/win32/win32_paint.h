#pragma once

// Device contexts, fonts and drawing objects as the slice keeps them. Main thread.

#include "win32_window.h"
#include "wingdi.h"

#include <cairo.h>
#include <pango/pangocairo.h>

#include <string_view>
#include <vector>

namespace win32 {

struct GdiObject {
    enum class Kind { Brush, Pen, Font };
    Kind kind = Kind::Brush;
    bool stock = false;
    /// A brush or pen that paints nothing.
    bool null = false;
    COLORREF color = 0;
    int style = PS_SOLID;
    int width = 1;
    PangoFontDescription* font = nullptr;
};

struct DeviceContext {
    struct State {
        const GdiObject* brush;
        const GdiObject* pen;
        const GdiObject* font;
        COLORREF textColor = RGB(0, 0, 0);
        COLORREF backgroundColor = RGB(255, 255, 255);
        int backgroundMode = OPAQUE;
        POINT position{};
    };
    cairo_t* cairo = nullptr;
    HWND window = nullptr;
    /// Between BeginPaint and EndPaint.
    bool painting = false;
    State state;
    std::vector<State> saved;
};

/// Null for a handle that is no device context.
DeviceContext* findContext(HDC dc);
/// The object a handle stands for; a small number is a system colour's brush. Null for null.
const GdiObject* gdiObject(HGDIOBJ handle);

/// A drawing surface of a whole X window.
cairo_surface_t* windowSurface(xcb_window_t window, int width, int height);

/// The user-interface font. The fonts' set-up happens on the first call.
const PangoFontDescription* interfaceFont();
PangoLayout* makeLayout(cairo_t* cairo, std::u16string_view text, const PangoFontDescription* font = nullptr);
void setColor(cairo_t* cairo, COLORREF color);

}  // namespace win32
