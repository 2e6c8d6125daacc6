#include <gtest/gtest.h>

#include "sim/cad/core/Viewport.h"

using cad::Box;
using cad::Point;
using cad::Viewport;

TEST(Viewport, PixelAndDrawingConversionsAreInverse) {
    Viewport viewport;
    viewport.resize(640, 480);
    const Point there = viewport.toPixels({12.5, -3});
    const Point back = viewport.toDrawing(there);
    EXPECT_NEAR(back.x, 12.5, 1e-9);
    EXPECT_NEAR(back.y, -3, 1e-9);
}

TEST(Viewport, UpInTheDrawingIsUpOnTheScreen) {
    Viewport viewport;
    EXPECT_LT(viewport.toPixels({0, 10}).y, viewport.toPixels({0, 0}).y);
}

TEST(Viewport, ZoomToShowsTheWholeBoxCentered) {
    Viewport viewport;
    viewport.resize(400, 200);
    viewport.zoomTo(Box::of({0, 0}, {100, 100}));
    EXPECT_TRUE(viewport.visible().contains(Box::of({0, 0}, {100, 100})));
    EXPECT_EQ(viewport.center(), (Point{50, 50}));
}

TEST(Viewport, ZoomToAPointKeepsTheScale) {
    Viewport viewport;
    const double before = viewport.unitsPerPixel();
    viewport.zoomTo(Box::of({7, 7}, {7, 7}));
    EXPECT_DOUBLE_EQ(viewport.unitsPerPixel(), before);
    EXPECT_EQ(viewport.center(), (Point{7, 7}));
}

TEST(Viewport, ZoomAtKeepsThePixelUnderTheCursor) {
    Viewport viewport;
    const Point pixel{100, 50};
    const Point before = viewport.toDrawing(pixel);
    viewport.zoomAt(pixel, 3);
    EXPECT_NEAR(viewport.toDrawing(pixel).x, before.x, 1e-9);
    EXPECT_NEAR(viewport.toDrawing(pixel).y, before.y, 1e-9);
}

TEST(Viewport, PreviousGoesBackStepByStep) {
    Viewport viewport;
    EXPECT_FALSE(viewport.zoomPrevious());
    const double first = viewport.unitsPerPixel();
    viewport.zoomBy(2);
    viewport.zoomBy(2);
    EXPECT_TRUE(viewport.zoomPrevious());
    EXPECT_DOUBLE_EQ(viewport.unitsPerPixel(), first / 2);
    EXPECT_TRUE(viewport.zoomPrevious());
    EXPECT_DOUBLE_EQ(viewport.unitsPerPixel(), first);
    EXPECT_FALSE(viewport.zoomPrevious());
}

TEST(Viewport, RepeatedZoomStaysFinite) {
    Viewport viewport;
    for (int i = 0; i < 2000; ++i) {
        viewport.zoomBy(10);
    }
    EXPECT_GT(viewport.unitsPerPixel(), 0);
    for (int i = 0; i < 4000; ++i) {
        viewport.zoomBy(0.1);
    }
    EXPECT_LT(viewport.unitsPerPixel(), 1e9);
}
