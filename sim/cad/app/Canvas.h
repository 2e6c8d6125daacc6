#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "sim/cad/core/Geometry.h"

namespace cad {

/// 0xRRGGBB.
using Color = unsigned;

/// A rectangle in pixels. Fractional coordinates align thin lines with pixel centers.
struct Area {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double right() const { return x + width; }
    double bottom() const { return y + height; }
    Area inset(double by) const { return {x + by, y + by, width - 2 * by, height - 2 * by}; }
};

enum class Font { Interface, InterfaceBold, Small, CommandLine };

struct Stroke {
    Color color = 0;
    double width = 1;
    /// Length of a dash and of a gap in pixels; 0 draws a solid line.
    double dash = 0;
};

/// The program paints only through this interface, so that each platform's graphics library is used in a
/// single file. Coordinates are client-area pixels, y down; shapes are anti-aliased; text is UTF-8.
class Canvas {
public:
    virtual ~Canvas() = default;

    virtual void fill(const Area& area, Color color) = 0;
    virtual void fillRounded(const Area& area, double radius, Color color, double opacity = 1) = 0;
    virtual void strokeRounded(const Area& area, double radius, const Stroke& stroke) = 0;
    virtual void polyline(const std::vector<Point>& points, bool closed, const Stroke& stroke) = 0;
    virtual void circle(Point center, double radius, const Stroke& stroke) = 0;
    void line(Point from, Point to, const Stroke& stroke) { polyline({from, to}, false, stroke); }

    /// One line of text; `top` is the upper edge of its line box.
    virtual void text(double left, double top, const std::string& text, Font font, Color color) = 0;
    virtual double textWidth(const std::string& text, Font font) = 0;
    virtual double lineHeight(Font font) = 0;

    virtual void pushClip(const Area& area) = 0;
    virtual void popClip() = 0;
};

/// A canvas that draws on the device context, which must outlive it.
std::unique_ptr<Canvas> makeCanvas(HDC dc);

}  // namespace cad
