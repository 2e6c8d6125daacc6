// Canvas implemented with cairo and Pango.

#include <win32_cairo.h>

#include <map>

#include "sim/cad/app/Canvas.h"

namespace cad {

namespace {

// Sizes are in pixels, like the layout of the windows.
const char* fontName(Font font) {
    switch (font) {
        case Font::Interface:
            return "Noto Sans CJK SC, Noto Sans, sans-serif 13px";
        case Font::InterfaceBold:
            return "Noto Sans CJK SC, Noto Sans, sans-serif Bold 13px";
        case Font::Small:
            return "Noto Sans CJK SC, Noto Sans, sans-serif 12px";
        case Font::CommandLine:
            return "Noto Sans Mono CJK SC, DejaVu Sans Mono, monospace 13px";
    }
    return "";
}

class CairoCanvas : public Canvas {
public:
    explicit CairoCanvas(cairo_t* cairo) : m_cairo(cairo) { cairo_save(m_cairo); }
    CairoCanvas(const CairoCanvas&) = delete;
    CairoCanvas& operator=(const CairoCanvas&) = delete;

    ~CairoCanvas() override {
        for (const auto& [font, layout] : m_layouts) {
            g_object_unref(layout);
        }
        cairo_restore(m_cairo);
    }

    void fill(const Area& area, Color color) override {
        setColor(color, 1);
        cairo_rectangle(m_cairo, area.x, area.y, area.width, area.height);
        cairo_fill(m_cairo);
    }

    void fillRounded(const Area& area, double radius, Color color, double opacity) override {
        setColor(color, opacity);
        roundedPath(area, radius);
        cairo_fill(m_cairo);
    }

    void strokeRounded(const Area& area, double radius, const Stroke& stroke) override {
        roundedPath(area, radius);
        draw(stroke);
    }

    void polyline(const std::vector<Point>& points, bool closed, const Stroke& stroke) override {
        for (const Point& point : points) {
            cairo_line_to(m_cairo, point.x, point.y);
        }
        if (closed) {
            cairo_close_path(m_cairo);
        }
        draw(stroke);
    }

    void circle(Point center, double radius, const Stroke& stroke) override {
        cairo_new_sub_path(m_cairo);
        cairo_arc(m_cairo, center.x, center.y, radius, 0, 2 * kPi);
        draw(stroke);
    }

    void text(double left, double top, const std::string& text, Font font, Color color) override {
        PangoLayout* const layout = layoutOf(text, font);
        setColor(color, 1);
        cairo_move_to(m_cairo, left, top);
        pango_cairo_show_layout(m_cairo, layout);
        cairo_new_path(m_cairo);
    }

    double textWidth(const std::string& text, Font font) override {
        int width = 0;
        pango_layout_get_size(layoutOf(text, font), &width, nullptr);
        return static_cast<double>(width) / PANGO_SCALE;
    }

    double lineHeight(Font font) override {
        int height = 0;
        pango_layout_get_pixel_size(layoutOf("圆g", font), nullptr, &height);
        return height;
    }

    void pushClip(const Area& area) override {
        cairo_save(m_cairo);
        cairo_rectangle(m_cairo, area.x, area.y, area.width, area.height);
        cairo_clip(m_cairo);
    }

    void popClip() override { cairo_restore(m_cairo); }

private:
    void setColor(Color color, double opacity) {
        const auto part = [color](int shift) { return static_cast<double>((color >> shift) & 0xFFu) / 255; };
        cairo_set_source_rgba(m_cairo, part(16), part(8), part(0), opacity);
    }

    void roundedPath(const Area& area, double radius) {
        cairo_new_sub_path(m_cairo);
        cairo_arc(m_cairo, area.right() - radius, area.y + radius, radius, -kPi / 2, 0);
        cairo_arc(m_cairo, area.right() - radius, area.bottom() - radius, radius, 0, kPi / 2);
        cairo_arc(m_cairo, area.x + radius, area.bottom() - radius, radius, kPi / 2, kPi);
        cairo_arc(m_cairo, area.x + radius, area.y + radius, radius, kPi, 3 * kPi / 2);
        cairo_close_path(m_cairo);
    }

    void draw(const Stroke& stroke) {
        setColor(stroke.color, 1);
        cairo_set_line_width(m_cairo, stroke.width);
        cairo_set_dash(m_cairo, &stroke.dash, stroke.dash > 0 ? 1 : 0, 0);
        cairo_stroke(m_cairo);
    }

    PangoLayout* layoutOf(const std::string& text, Font font) {
        PangoLayout*& layout = m_layouts[font];
        if (layout == nullptr) {
            layout = pango_cairo_create_layout(m_cairo);
            PangoFontDescription* const description = pango_font_description_from_string(fontName(font));
            pango_layout_set_font_description(layout, description);
            pango_font_description_free(description);
            pango_layout_set_single_paragraph_mode(layout, TRUE);
        }
        pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
        return layout;
    }

    cairo_t* m_cairo;
    std::map<Font, PangoLayout*> m_layouts;
};

}  // namespace

std::unique_ptr<Canvas> makeCanvas(HDC dc) {
    return std::make_unique<CairoCanvas>(win32Cairo(dc));
}

}  // namespace cad
