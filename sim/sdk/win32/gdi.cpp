// Brushes, pens, fonts, lines and text.

#include "win32_paint.h"
#include "win32_support.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace win32 {

namespace {

constexpr int kSystemColors = 31;

GdiObject makeObject(GdiObject::Kind kind, COLORREF color, bool null = false) {
    GdiObject object;
    object.kind = kind;
    object.stock = true;
    object.null = null;
    object.color = color;
    return object;
}

GdiObject& stockObject(int index) {
    using Kind = GdiObject::Kind;
    static std::map<int, GdiObject> objects = {
        {WHITE_BRUSH, makeObject(Kind::Brush, RGB(255, 255, 255))},
        {GRAY_BRUSH, makeObject(Kind::Brush, RGB(128, 128, 128))},
        {BLACK_BRUSH, makeObject(Kind::Brush, RGB(0, 0, 0))},
        {NULL_BRUSH, makeObject(Kind::Brush, 0, true)},
        {WHITE_PEN, makeObject(Kind::Pen, RGB(255, 255, 255))},
        {BLACK_PEN, makeObject(Kind::Pen, RGB(0, 0, 0))},
        {NULL_PEN, makeObject(Kind::Pen, 0, true)},
        {DEFAULT_GUI_FONT, makeObject(Kind::Font, 0)},
    };
    const auto found = objects.find(index);
    if (found == objects.end()) {
        unsupported("GetStockObject", "a stock object that the slice does not provide");
    }
    return found->second;
}

/// Fills the current path with the selected brush, then draws it with the selected pen.
void fillAndStroke(const DeviceContext& context) {
    if (!context.state.brush->null) {
        setColor(context.cairo, context.state.brush->color);
        cairo_fill_preserve(context.cairo);
    }
    if (!context.state.pen->null) {
        setColor(context.cairo, context.state.pen->color);
        cairo_set_line_width(context.cairo, std::max(1, context.state.pen->width));
        static constexpr double kDash[] = {6.0, 3.0};
        static constexpr double kDot[] = {1.0, 2.0};
        switch (context.state.pen->style) {
            case PS_DASH:
                cairo_set_dash(context.cairo, kDash, 2, 0);
                break;
            case PS_DOT:
                cairo_set_dash(context.cairo, kDot, 2, 0);
                break;
            default:
                cairo_set_dash(context.cairo, nullptr, 0, 0);
                break;
        }
        cairo_stroke_preserve(context.cairo);
    }
    cairo_new_path(context.cairo);
}

/// Offset to the centre of a pixel, where a line one pixel wide is sharp.
constexpr double kPixelCentre = 0.5;

/// Removes the "&" before an access key and turns "&&" into "&".
std::u16string withoutPrefixes(std::u16string_view text) {
    std::u16string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u'&' && i + 1 < text.size()) {
            ++i;
        }
        plain.push_back(text[i]);
    }
    return plain;
}

std::u16string_view view(LPCWSTR text, int length) {
    return length < 0 ? std::u16string_view(text)
                      : std::u16string_view(text, static_cast<std::size_t>(length));
}

}  // namespace

const GdiObject* gdiObject(HGDIOBJ handle) {
    const auto number = reinterpret_cast<std::uintptr_t>(handle);
    if (number != 0 && number <= kSystemColors) {
        return reinterpret_cast<const GdiObject*>(GetSysColorBrush(static_cast<int>(number) - 1));
    }
    return static_cast<const GdiObject*>(handle);
}

}  // namespace win32

using namespace win32;

namespace {

COLORREF defaultSysColor(int index) {
    switch (index) {
        case COLOR_ACTIVECAPTION:
            return RGB(0x3A, 0x4A, 0x5E);
        case COLOR_INACTIVECAPTION:
            return RGB(0x7A, 0x84, 0x90);
        case COLOR_CAPTIONTEXT:
        case COLOR_HIGHLIGHTTEXT:
        case COLOR_WINDOW:
            return RGB(255, 255, 255);
        case COLOR_HIGHLIGHT:
            return RGB(0x2F, 0x74, 0xC0);
        case COLOR_BTNSHADOW:
            return RGB(160, 160, 160);
        case COLOR_GRAYTEXT:
            return RGB(109, 109, 109);
        case COLOR_MENUTEXT:
        case COLOR_WINDOWTEXT:
        case COLOR_BTNTEXT:
            return RGB(0, 0, 0);
        default:
            return RGB(240, 240, 240);
    }
}

std::array<COLORREF, kSystemColors>& sysColors() {
    static std::array<COLORREF, kSystemColors> colors = [] {
        std::array<COLORREF, kSystemColors> defaults{};
        for (int i = 0; i < kSystemColors; ++i) {
            defaults.at(static_cast<std::size_t>(i)) = defaultSysColor(i);
        }
        return defaults;
    }();
    return colors;
}

BOOL CALLBACK tellSysColorChange(HWND window, LPARAM) {
    SendMessageW(window, WM_SYSCOLORCHANGE, 0, 0);
    return TRUE;
}

}  // namespace

COLORREF GetSysColor(int index) {
    return index < 0 || index >= kSystemColors ? defaultSysColor(index)
                                               : sysColors().at(static_cast<std::size_t>(index));
}

BOOL SetSysColors(int count, const INT* indices, const COLORREF* colors) {
    for (int i = 0; i < count; ++i) {
        if (indices[i] < 0 || indices[i] >= kSystemColors) {
            return failWith(ERROR_INVALID_PARAMETER, FALSE);
        }
        sysColors().at(static_cast<std::size_t>(indices[i])) = colors[i];
    }
    EnumThreadWindows(mainThreadId(), tellSysColorChange, 0);
    return TRUE;
}

HBRUSH GetSysColorBrush(int index) {
    static std::array<GdiObject, kSystemColors> brushes;
    GdiObject& brush = brushes.at(static_cast<std::size_t>(std::clamp(index, 0, kSystemColors - 1)));
    brush.stock = true;
    brush.color = GetSysColor(index);
    return reinterpret_cast<HBRUSH>(&brush);
}

HBRUSH CreateSolidBrush(COLORREF color) {
    auto* object = new GdiObject;
    object->color = color;
    return reinterpret_cast<HBRUSH>(object);
}

HPEN CreatePen(int style, int width, COLORREF color) {
    auto* object = new GdiObject;
    object->kind = GdiObject::Kind::Pen;
    object->null = style == PS_NULL;
    object->style = style;
    object->width = width;
    object->color = color;
    return reinterpret_cast<HPEN>(object);
}

HFONT CreateFontW(int height, int, int, int, int weight, DWORD italic, DWORD, DWORD, DWORD, DWORD, DWORD,
                  DWORD, DWORD, LPCWSTR faceName) {
    auto* object = new GdiObject;
    object->kind = GdiObject::Kind::Font;
    object->font = pango_font_description_copy(interfaceFont());
    if (faceName != nullptr && *faceName != 0) {
        const std::string families =
            toUtf8(faceName) + "," + pango_font_description_get_family(interfaceFont());
        pango_font_description_set_family(object->font, families.c_str());
    }
    if (height != 0) {
        // A positive height is that of the cell: the em is about 0.82 of it.
        constexpr double kEmOfLine = 0.82;
        pango_font_description_set_absolute_size(object->font,
                                                 (height < 0 ? -height : height * kEmOfLine) * PANGO_SCALE);
    }
    if (weight != 0) {
        pango_font_description_set_weight(object->font, static_cast<PangoWeight>(weight));
    }
    if (italic != 0) {
        pango_font_description_set_style(object->font, PANGO_STYLE_ITALIC);
    }
    return reinterpret_cast<HFONT>(object);
}

HGDIOBJ GetStockObject(int index) {
    return &stockObject(index);
}

BOOL DeleteObject(HGDIOBJ handle) {
    const GdiObject* object = gdiObject(handle);
    if (object == nullptr) {
        return FALSE;
    }
    if (!object->stock) {
        pango_font_description_free(object->font);
        delete object;
    }
    return TRUE;
}

HGDIOBJ SelectObject(HDC dc, HGDIOBJ handle) {
    DeviceContext* context = findContext(dc);
    const GdiObject* object = gdiObject(handle);
    if (context == nullptr || object == nullptr) {
        return nullptr;
    }
    const GdiObject*& selected = object->kind == GdiObject::Kind::Brush ? context->state.brush
                                 : object->kind == GdiObject::Kind::Pen ? context->state.pen
                                                                        : context->state.font;
    return const_cast<GdiObject*>(std::exchange(selected, object));
}

COLORREF SetTextColor(HDC dc, COLORREF color) {
    DeviceContext* context = findContext(dc);
    return context != nullptr ? std::exchange(context->state.textColor, color) : 0xFFFFFFFFU;
}

COLORREF SetBkColor(HDC dc, COLORREF color) {
    DeviceContext* context = findContext(dc);
    return context != nullptr ? std::exchange(context->state.backgroundColor, color) : 0xFFFFFFFFU;
}

int SetBkMode(HDC dc, int mode) {
    DeviceContext* context = findContext(dc);
    return context != nullptr ? std::exchange(context->state.backgroundMode, mode) : 0;
}

int SaveDC(HDC dc) {
    DeviceContext* context = findContext(dc);
    if (context == nullptr) {
        return 0;
    }
    cairo_save(context->cairo);
    context->saved.push_back(context->state);
    return static_cast<int>(context->saved.size());
}

BOOL RestoreDC(HDC dc, int saved) {
    DeviceContext* context = findContext(dc);
    if (context == nullptr || saved == 0) {
        return FALSE;
    }
    const int depth = static_cast<int>(context->saved.size());
    const int target = saved < 0 ? depth + saved + 1 : saved;
    if (target < 1 || target > depth) {
        return FALSE;
    }
    while (static_cast<int>(context->saved.size()) >= target) {
        cairo_restore(context->cairo);
        context->state = context->saved.back();
        context->saved.pop_back();
    }
    return TRUE;
}

int IntersectClipRect(HDC dc, int left, int top, int right, int bottom) {
    constexpr int kSimpleRegion = 2;
    const DeviceContext* context = findContext(dc);
    if (context == nullptr) {
        return 0;
    }
    cairo_rectangle(context->cairo, left, top, right - left, bottom - top);
    cairo_clip(context->cairo);
    return kSimpleRegion;
}

int FillRect(HDC dc, const RECT* rectangle, HBRUSH brush) {
    const DeviceContext* context = findContext(dc);
    const GdiObject* object = gdiObject(brush);
    if (context == nullptr || object == nullptr) {
        return 0;
    }
    if (!object->null) {
        setColor(context->cairo, object->color);
        cairo_rectangle(context->cairo, rectangle->left, rectangle->top, rectangle->right - rectangle->left,
                        rectangle->bottom - rectangle->top);
        cairo_fill(context->cairo);
    }
    return 1;
}

int FrameRect(HDC dc, const RECT* rectangle, HBRUSH brush) {
    const DeviceContext* context = findContext(dc);
    const GdiObject* object = gdiObject(brush);
    if (context == nullptr || object == nullptr) {
        return 0;
    }
    setColor(context->cairo, object->color);
    cairo_set_dash(context->cairo, nullptr, 0, 0);
    cairo_set_line_width(context->cairo, 1);
    cairo_rectangle(context->cairo, rectangle->left + kPixelCentre, rectangle->top + kPixelCentre,
                    rectangle->right - rectangle->left - 1, rectangle->bottom - rectangle->top - 1);
    cairo_stroke(context->cairo);
    return 1;
}

BOOL Rectangle(HDC dc, int left, int top, int right, int bottom) {
    const DeviceContext* context = findContext(dc);
    if (context == nullptr) {
        return FALSE;
    }
    cairo_rectangle(context->cairo, left + kPixelCentre, top + kPixelCentre, right - left - 1,
                    bottom - top - 1);
    fillAndStroke(*context);
    return TRUE;
}

BOOL Ellipse(HDC dc, int left, int top, int right, int bottom) {
    const DeviceContext* context = findContext(dc);
    if (context == nullptr || right - left < 2 || bottom - top < 2) {
        return FALSE;
    }
    constexpr double kFullTurn = 6.283185307179586;
    cairo_save(context->cairo);
    cairo_translate(context->cairo, (left + right) / 2.0, (top + bottom) / 2.0);
    cairo_scale(context->cairo, (right - left - 1) / 2.0, (bottom - top - 1) / 2.0);
    cairo_new_sub_path(context->cairo);
    cairo_arc(context->cairo, 0, 0, 1, 0, kFullTurn);
    cairo_restore(context->cairo);
    fillAndStroke(*context);
    return TRUE;
}

BOOL MoveToEx(HDC dc, int x, int y, LPPOINT previous) {
    DeviceContext* context = findContext(dc);
    if (context == nullptr) {
        return FALSE;
    }
    const POINT old = std::exchange(context->state.position, POINT{x, y});
    if (previous != nullptr) {
        *previous = old;
    }
    return TRUE;
}

BOOL LineTo(HDC dc, int x, int y) {
    DeviceContext* context = findContext(dc);
    if (context == nullptr) {
        return FALSE;
    }
    const POINT points[] = {context->state.position, {x, y}};
    context->state.position = {x, y};
    return Polyline(dc, points, 2);
}

BOOL Polyline(HDC dc, const POINT* points, int count) {
    const DeviceContext* context = findContext(dc);
    if (context == nullptr || count < 2) {
        return FALSE;
    }
    cairo_new_path(context->cairo);  // drawing text leaves a current point
    for (int i = 0; i < count; ++i) {
        cairo_line_to(context->cairo, points[i].x + kPixelCentre, points[i].y + kPixelCentre);
    }
    DeviceContext lines = *context;
    lines.state.brush = gdiObject(GetStockObject(NULL_BRUSH));
    fillAndStroke(lines);
    return TRUE;
}

int DrawTextW(HDC dc, LPCWSTR text, int length, LPRECT rectangle, UINT format) {
    const DeviceContext* context = findContext(dc);
    if (context == nullptr) {
        return 0;
    }
    const std::u16string shown = (format & DT_NOPREFIX) != 0 ? std::u16string(view(text, length))
                                                             : withoutPrefixes(view(text, length));
    PangoLayout* layout = makeLayout(context->cairo, shown, context->state.font->font);
    const int width = rectangle->right - rectangle->left;
    const bool singleLine = (format & DT_SINGLELINE) != 0;
    pango_layout_set_single_paragraph_mode(layout, singleLine ? TRUE : FALSE);
    if ((format & DT_WORDBREAK) != 0 && !singleLine) {
        pango_layout_set_width(layout, width * PANGO_SCALE);
        pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
    } else if ((format & DT_END_ELLIPSIS) != 0) {
        pango_layout_set_width(layout, width * PANGO_SCALE);
        pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_END);
    }
    int textWidth = 0;
    int textHeight = 0;
    pango_layout_get_pixel_size(layout, &textWidth, &textHeight);
    if ((format & DT_CALCRECT) != 0) {
        rectangle->right = rectangle->left + textWidth;
        rectangle->bottom = rectangle->top + textHeight;
        g_object_unref(layout);
        return textHeight;
    }
    int x = rectangle->left;
    if ((format & DT_CENTER) != 0) {
        x += (width - textWidth) / 2;
    } else if ((format & DT_RIGHT) != 0) {
        x += width - textWidth;
    }
    int y = rectangle->top;
    if (singleLine && (format & DT_VCENTER) != 0) {
        y += (rectangle->bottom - rectangle->top - textHeight) / 2;
    } else if (singleLine && (format & DT_BOTTOM) != 0) {
        y = rectangle->bottom - textHeight;
    }
    cairo_save(context->cairo);
    cairo_rectangle(context->cairo, rectangle->left, rectangle->top, width,
                    rectangle->bottom - rectangle->top);
    cairo_clip(context->cairo);
    if (context->state.backgroundMode == OPAQUE) {
        setColor(context->cairo, context->state.backgroundColor);
        cairo_rectangle(context->cairo, x, y, textWidth, textHeight);
        cairo_fill(context->cairo);
    }
    setColor(context->cairo, context->state.textColor);
    cairo_move_to(context->cairo, x, y);
    pango_cairo_show_layout(context->cairo, layout);
    cairo_restore(context->cairo);
    g_object_unref(layout);
    return textHeight;
}

BOOL TextOutW(HDC dc, int x, int y, LPCWSTR text, int length) {
    constexpr int kFar = 0x7FFF;
    RECT rectangle = {x, y, kFar, kFar};
    return DrawTextW(dc, text, length, &rectangle, DT_SINGLELINE | DT_NOPREFIX) != 0 ? TRUE : FALSE;
}

BOOL GetTextExtentPoint32W(HDC dc, LPCWSTR text, int length, LPSIZE size) {
    const DeviceContext* context = findContext(dc);
    if (context == nullptr) {
        return FALSE;
    }
    PangoLayout* layout = makeLayout(context->cairo, view(text, length), context->state.font->font);
    pango_layout_set_single_paragraph_mode(layout, TRUE);
    pango_layout_get_pixel_size(layout, &size->cx, &size->cy);
    g_object_unref(layout);
    return TRUE;
}
