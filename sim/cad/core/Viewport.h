#pragma once

#include "sim/cad/core/Geometry.h"

namespace cad {

/// The visible part of the drawing, and the conversion between drawing units and pixels.
class Viewport {
public:
    Viewport();

    /// Keeps the center and the scale.
    void resize(int widthPixels, int heightPixels);
    int width() const { return m_width; }
    int height() const { return m_height; }

    Point center() const { return m_state.center; }
    double unitsPerPixel() const { return m_state.unitsPerPixel; }
    Box visible() const;

    /// Pixel coordinates are relative to the top left corner of the view, y down.
    Point toPixels(Point drawing) const;
    Point toDrawing(Point pixels) const;

    /// Shows the whole box with a margin; a box without extent keeps the scale.
    void zoomTo(const Box& box);
    /// Scales the view about its center: 2 shows things twice as large.
    void zoomBy(double factor);
    /// Scales the view about a pixel, which keeps showing the same point of the drawing.
    void zoomAt(Point pixel, double factor);
    void panBy(Point drawingVector);
    /// Returns to the view before the last zoom; false if there is none.
    bool zoomPrevious();

    /// Counts changes, for windows that show the drawing.
    unsigned revision() const { return m_revision; }

private:
    struct State {
        Point center;
        double unitsPerPixel;
    };
    static constexpr int kRemembered = 10;

    void remember();
    void change(State state);

    State m_state;
    State m_previous[kRemembered];
    int m_previousCount = 0;
    int m_width = 800;
    int m_height = 600;
    unsigned m_revision = 0;
};

}  // namespace cad
