#include "sim/cad/app/DrawingPainter.h"

#include "tests/sim/cad/EditorFixture.h"
#include "tests/sim/cad/FakeCanvas.h"

using cad::Point;

class DrawingPainter : public EditorFixture {
protected:
    DrawingPainter() { editor.viewport().resize(400, 300); }

    void paint(std::optional<Point> crosshair = std::nullopt) {
        canvas = FakeCanvas();
        cad::paintDrawing(canvas, editor, theme, crosshair);
    }

    int shapesOf(cad::Color color) const {
        int count = 0;
        for (const FakeCanvas::Shape& shape : canvas.shapes) {
            count += shape.stroke.color == color ? 1 : 0;
        }
        return count;
    }

    const cad::Theme& theme = cad::themeFor(1);
    FakeCanvas canvas;
};

TEST_F(DrawingPainter, EntitiesAreDrawnWhereTheViewportMapsThem) {
    type("C 100,100 31 ");
    paint();
    const FakeCanvas::Shape* circle = nullptr;
    for (const FakeCanvas::Shape& shape : canvas.shapes) {
        if (shape.radius > 0) {
            circle = &shape;
        }
    }
    ASSERT_NE(circle, nullptr);
    EXPECT_EQ(circle->points[0], editor.viewport().toPixels({100, 100}));
    EXPECT_DOUBLE_EQ(circle->radius, 31 / editor.viewport().unitsPerPixel());
    EXPECT_EQ(circle->stroke.color, theme.entity);
}

TEST_F(DrawingPainter, GridDensityIsBoundedAtEveryScaleAndTheGridCanBeSwitchedOff) {
    for (const double factor : {1.0, 1e-6, 1e12, 3e-7}) {
        editor.viewport().zoomBy(factor);
        paint();
        EXPECT_GT(shapesOf(theme.gridMinor), 5);
        EXPECT_LT(shapesOf(theme.gridMinor), 60);
    }
    type("GRIDMODE 0 ");
    paint();
    EXPECT_EQ(shapesOf(theme.gridMinor) + shapesOf(theme.gridMajor), 0);
}

TEST_F(DrawingPainter, PreviewIsDrawnOnlyWithTheCrosshair) {
    type("LINE 0,0 ");
    paint();
    EXPECT_EQ(shapesOf(theme.preview), 0);
    paint(Point{50, 50});
    EXPECT_EQ(shapesOf(theme.preview), 1);
    EXPECT_EQ(shapesOf(theme.crosshair), 3);
}

TEST_F(DrawingPainter, SelectedEntitiesAreDashed) {
    type("C 100,100 30 E ALL ");
    paint();
    for (const FakeCanvas::Shape& shape : canvas.shapes) {
        if (shape.radius > 0) {
            EXPECT_GT(shape.stroke.dash, 0);
        }
    }
}
