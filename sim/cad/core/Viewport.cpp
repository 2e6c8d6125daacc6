#include "sim/cad/core/Viewport.h"

namespace cad {

namespace {

// Beyond these scales, conversions become meaningless in double precision.
constexpr double kSmallestScale = 1e-8;
constexpr double kLargestScale = 1e8;
constexpr double kMarginFactor = 1.06;
// A new drawing shows the limits of an A3 sheet.
constexpr Point kFirstCenter{210, 148.5};
constexpr double kFirstScale = 0.62;

}  // namespace

Viewport::Viewport() : m_state{kFirstCenter, kFirstScale} {}

void Viewport::resize(int widthPixels, int heightPixels) {
    m_width = std::max(1, widthPixels);
    m_height = std::max(1, heightPixels);
    ++m_revision;
}

Box Viewport::visible() const {
    const Point half{m_width * m_state.unitsPerPixel / 2, m_height * m_state.unitsPerPixel / 2};
    return Box::of(m_state.center - half, m_state.center + half);
}

Point Viewport::toPixels(Point drawing) const {
    return {(drawing.x - m_state.center.x) / m_state.unitsPerPixel + m_width / 2.0,
            m_height / 2.0 - (drawing.y - m_state.center.y) / m_state.unitsPerPixel};
}

Point Viewport::toDrawing(Point pixels) const {
    return {m_state.center.x + (pixels.x - m_width / 2.0) * m_state.unitsPerPixel,
            m_state.center.y - (pixels.y - m_height / 2.0) * m_state.unitsPerPixel};
}

void Viewport::zoomTo(const Box& box) {
    if (box.isEmpty()) {
        return;
    }
    remember();
    State state{box.center(), m_state.unitsPerPixel};
    const double scale = std::max(box.width() / m_width, box.height() / m_height) * kMarginFactor;
    if (scale > 0) {
        state.unitsPerPixel = scale;
    }
    change(state);
}

void Viewport::zoomBy(double factor) {
    remember();
    change({m_state.center, m_state.unitsPerPixel / factor});
}

void Viewport::zoomAt(Point pixel, double factor) {
    const Point fixed = toDrawing(pixel);
    change({m_state.center, m_state.unitsPerPixel / factor});
    const Point moved = toDrawing(pixel);
    change({m_state.center + (fixed - moved), m_state.unitsPerPixel});
}

void Viewport::panBy(Point drawingVector) {
    change({m_state.center + drawingVector, m_state.unitsPerPixel});
}

bool Viewport::zoomPrevious() {
    if (m_previousCount == 0) {
        return false;
    }
    change(m_previous[--m_previousCount]);
    return true;
}

void Viewport::remember() {
    if (m_previousCount == kRemembered) {
        std::move(m_previous + 1, m_previous + kRemembered, m_previous);
        --m_previousCount;
    }
    m_previous[m_previousCount++] = m_state;
}

void Viewport::change(State state) {
    state.unitsPerPixel = std::clamp(state.unitsPerPixel, kSmallestScale, kLargestScale);
    m_state = state;
    ++m_revision;
}

}  // namespace cad
