#pragma once

// The slice's internal device contexts and GDI objects. Main thread.

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

/// Null for an invalid handle.
DeviceContext* findContext(HDC dc);
/// The object of a handle; a system colour index plus one means that colour's brush. Null for null.
const GdiObject* gdiObject(HGDIOBJ handle);

/// A cairo surface for a whole X window; the caller destroys it.
cairo_surface_t* windowSurface(xcb_window_t window, int width, int height);

/// The user-interface font. The first call sets up the fonts (ZR_SIM_FONT).
const PangoFontDescription* interfaceFont();
PangoLayout* makeLayout(cairo_t* cairo, std::u16string_view text, const PangoFontDescription* font = nullptr);
void setColor(cairo_t* cairo, COLORREF color);

}  // namespace win32
