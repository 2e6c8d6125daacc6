#include "sim/cad/app/DrawingPainter.h"

#include <cmath>

namespace cad {

namespace {

constexpr double kSmallestGridPixels = 16;
constexpr int kMinorsPerMajor = 5;
constexpr double kLineWidth = 1.25;
constexpr double kPreviewDash = 5;

// One-pixel lines are crisp when they run through pixel centers.
double crisp(double pixel) {
    return std::floor(pixel) + 0.5;
}

class Painter {
public:
    Painter(Canvas& canvas, Editor& editor, const Theme& theme)
        : m_canvas(canvas), m_editor(editor), m_viewport(editor.viewport()), m_theme(theme) {}

    void paint(std::optional<Point> crosshair) {
        m_canvas.fill({0, 0, width(), height()}, m_theme.view);
        if (m_editor.variables().integer("GRIDMODE") == 1) {
            paintGrid();
        }
        paintAxes();
        const std::set<int>& selected = m_editor.selection();
        for (const Entity& entity : m_editor.drawing().entities()) {
            const bool chosen = selected.count(entity.id) != 0;
            paintEntity(entity, {chosen ? m_theme.accent : m_theme.entity, chosen ? 2 : kLineWidth,
                                 chosen ? kPreviewDash : 0});
        }
        paintAxesIcon();
        if (crosshair) {
            for (const Entity& entity : m_editor.preview()) {
                paintEntity(entity, {m_theme.preview, 1, kPreviewDash});
            }
            paintCrosshair(*crosshair);
        }
    }

private:
    double width() const { return m_viewport.width(); }
    double height() const { return m_viewport.height(); }

    void paintGrid() {
        const double step = gridStep();
        const Box visible = m_viewport.visible();
        const auto each = [step](double from, double to, auto visit) {
            const auto first = static_cast<long long>(std::ceil(from / step));
            const auto last = static_cast<long long>(std::floor(to / step));
            for (long long i = first; i <= last; ++i) {
                visit(static_cast<double>(i) * step, i % kMinorsPerMajor == 0);
            }
        };
        // Minor lines first, so that none is painted over a major one.
        for (const bool majors : {false, true}) {
            const Stroke stroke{majors ? m_theme.gridMajor : m_theme.gridMinor, 1, 0};
            each(visible.min.x, visible.max.x, [&](double x, bool major) {
                if (major == majors) {
                    const double at = crisp(m_viewport.toPixels({x, 0}).x);
                    m_canvas.line({at, 0}, {at, height()}, stroke);
                }
            });
            each(visible.min.y, visible.max.y, [&](double y, bool major) {
                if (major == majors) {
                    const double at = crisp(m_viewport.toPixels({0, y}).y);
                    m_canvas.line({0, at}, {width(), at}, stroke);
                }
            });
        }
    }

    // The smallest of 1, 2, 5, 10, 20… that keeps grid lines at least kSmallestGridPixels apart.
    double gridStep() const {
        const double least = kSmallestGridPixels * m_viewport.unitsPerPixel();
        const double decade = std::pow(10, std::floor(std::log10(least)));
        for (const double factor : {1.0, 2.0, 5.0}) {
            if (decade * factor >= least) {
                return decade * factor;
            }
        }
        return decade * 10;
    }

    void paintAxes() {
        const Point origin = m_viewport.toPixels({0, 0});
        const double x = crisp(origin.x);
        const double y = crisp(origin.y);
        if (y >= 0 && y <= height() && x < width()) {
            m_canvas.line({std::max(x, 0.0), y}, {width(), y}, {m_theme.axisX, 1, 0});
        }
        if (x >= 0 && x <= width() && y > 0) {
            m_canvas.line({x, std::min(y, height())}, {x, 0}, {m_theme.axisY, 1, 0});
        }
    }

    void paintEntity(const Entity& entity, const Stroke& stroke) {
        if (entity.kind == EntityKind::Circle) {
            m_canvas.circle(m_viewport.toPixels(entity.points[0]), entity.radius / m_viewport.unitsPerPixel(),
                            stroke);
            return;
        }
        std::vector<Point> pixels;
        for (const Point& point : entity.points) {
            pixels.push_back(m_viewport.toPixels(point));
        }
        m_canvas.polyline(pixels, entity.closed, stroke);
    }

    void paintAxesIcon() {
        constexpr double kMargin = 22;
        constexpr double kLength = 40;
        constexpr double kHead = 4;
        const Point origin{kMargin + 0.5, std::floor(height()) - kMargin - 0.5};
        const Point right = origin + Point{kLength, 0};
        const Point up = origin - Point{0, kLength};
        const Stroke x{m_theme.axisX, 1.5, 0};
        const Stroke y{m_theme.axisY, 1.5, 0};
        m_canvas.line(origin, right, x);
        m_canvas.polyline({right + Point{-kHead, -kHead}, right, right + Point{-kHead, kHead}}, false, x);
        m_canvas.line(origin, up, y);
        m_canvas.polyline({up + Point{-kHead, kHead}, up, up + Point{kHead, kHead}}, false, y);
        m_canvas.strokeRounded({origin.x - 3, origin.y - 3, 6, 6}, 0.5, {m_theme.mutedText, 1, 0});
        const double line = m_canvas.lineHeight(Font::Small);
        m_canvas.text(right.x + 6, right.y - line / 2, "X", Font::Small, m_theme.axisX);
        m_canvas.text(up.x - 4, up.y - line - 2, "Y", Font::Small, m_theme.axisY);
    }

    void paintCrosshair(Point at) {
        const double percent = m_editor.variables().integer("CURSORSIZE") / 100.0;
        const double arm = std::max(width(), height()) * percent;
        const double x = crisp(at.x);
        const double y = crisp(at.y);
        const Stroke stroke{m_theme.crosshair, 1, 0};
        m_canvas.line({x - arm, y}, {x + arm, y}, stroke);
        m_canvas.line({x, y - arm}, {x, y + arm}, stroke);
        const double box = m_editor.variables().integer("PICKBOX");
        m_canvas.polyline({{x - box, y - box}, {x + box, y - box}, {x + box, y + box}, {x - box, y + box}},
                          true, stroke);
    }

    Canvas& m_canvas;
    Editor& m_editor;
    const Viewport& m_viewport;
    const Theme& m_theme;
};

}  // namespace

void paintDrawing(Canvas& canvas, Editor& editor, const Theme& theme, std::optional<Point> crosshair) {
    Painter(canvas, editor, theme).paint(crosshair);
}

}  // namespace cad
