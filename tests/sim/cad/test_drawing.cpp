#include <gtest/gtest.h>

#include "sim/cad/core/Drawing.h"

using cad::Box;
using cad::Drawing;
using cad::Entity;
using cad::Point;

TEST(Drawing, UndoRevertsAWholeGroupAndReturnsItsName) {
    Drawing drawing;
    drawing.beginGroup("LINE");
    drawing.add(Entity::line({0, 0}, {1, 0}));
    drawing.add(Entity::line({1, 0}, {1, 1}));
    drawing.endGroup();

    EXPECT_EQ(drawing.undo(), "LINE");
    EXPECT_TRUE(drawing.entities().empty());
    EXPECT_EQ(drawing.redo(), "LINE");
    EXPECT_EQ(drawing.entities().size(), 2u);
}

TEST(Drawing, GroupWithoutChangesLeavesNothingToUndo) {
    Drawing drawing;
    drawing.beginGroup("ZOOM");
    drawing.endGroup();
    EXPECT_EQ(drawing.undo(), std::nullopt);
}

TEST(Drawing, UndoingAnEraseRestoresIdAndOrder) {
    Drawing drawing;
    const int first = drawing.add(Entity::line({0, 0}, {1, 0}));
    const int second = drawing.add(Entity::circle({5, 5}, 1));
    drawing.erase(first);
    ASSERT_EQ(drawing.entities().size(), 1u);
    drawing.undo();
    ASSERT_EQ(drawing.entities().size(), 2u);
    EXPECT_EQ(drawing.entities()[0].id, first);
    EXPECT_EQ(drawing.entities()[1].id, second);
}

TEST(Drawing, NewChangeClearsTheRedoList) {
    Drawing drawing;
    drawing.add(Entity::circle({0, 0}, 1));
    drawing.undo();
    drawing.add(Entity::circle({0, 0}, 2));
    EXPECT_EQ(drawing.redo(), std::nullopt);
}

TEST(Drawing, IdsAreNeverReused) {
    Drawing drawing;
    const int first = drawing.add(Entity::circle({0, 0}, 1));
    drawing.undo();
    EXPECT_NE(drawing.add(Entity::circle({0, 0}, 1)), first);
}

TEST(Drawing, PicksTheNewestEntityWithinTheTolerance) {
    Drawing drawing;
    drawing.add(Entity::line({0, 0}, {10, 0}));
    const int circle = drawing.add(Entity::circle({5, 3}, 3));
    ASSERT_NE(drawing.pick({5, 0.1}, 0.5), nullptr);
    EXPECT_EQ(drawing.pick({5, 0.1}, 0.5)->id, circle);
    EXPECT_EQ(drawing.pick({5, 3}, 0.5), nullptr);
}

TEST(Drawing, ExtentsCoverCirclesAndVertices) {
    Drawing drawing;
    EXPECT_TRUE(drawing.extents().isEmpty());
    drawing.add(Entity::circle({10, 10}, 5));
    drawing.add(Entity::rectangle({0, 0}, {-2, 3}));
    const Box extents = drawing.extents();
    EXPECT_EQ(extents.min, (Point{-2, 0}));
    EXPECT_EQ(extents.max, (Point{15, 15}));
}

TEST(Entity, CrossesABoxIfAnyPartLiesInIt) {
    const Box box = Box::of({0, 0}, {10, 10});
    EXPECT_TRUE(Entity::line({-5, 5}, {15, 5}).crosses(box));
    EXPECT_FALSE(Entity::line({-5, 11}, {15, 11}).crosses(box));
    EXPECT_TRUE(Entity::circle({12, 5}, 3).crosses(box));
    // The box is entirely inside the circle and does not touch it.
    EXPECT_FALSE(Entity::circle({5, 5}, 100).crosses(box));
    EXPECT_TRUE(Entity::rectangle({-1, -1}, {5, 20}).crosses(box));
}

TEST(Entity, ClosedPolylineIncludesItsClosingSegment) {
    const Entity rectangle = Entity::rectangle({0, 0}, {4, 4});
    EXPECT_DOUBLE_EQ(rectangle.distanceTo({-1, 2}), 1);
    const Entity open = Entity::polyline({{0, 0}, {4, 0}, {4, 4}, {0, 4}}, false);
    EXPECT_DOUBLE_EQ(open.distanceTo({-1, 2}), std::hypot(1, 2));
}
