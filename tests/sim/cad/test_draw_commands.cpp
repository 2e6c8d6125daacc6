#include "tests/sim/cad/EditorFixture.h"

using cad::Entity;
using cad::EntityKind;
using cad::Point;

class DrawCommands : public EditorFixture {};

TEST_F(DrawCommands, LineDrawsASegmentForEachPoint) {
    type("LINE\n");
    EXPECT_EQ(prompt(), "LINE 指定第一个点: ");
    type("0,0\n");
    EXPECT_EQ(prompt(), "LINE 指定下一点或 [放弃(U)]: ");
    type("10,0\n@0,5\n");
    EXPECT_EQ(prompt(), "LINE 指定下一点或 [闭合(C)/放弃(U)]: ");
    type("\n");
    ASSERT_EQ(entities().size(), 2u);
    EXPECT_EQ(entities()[1].points, (std::vector<Point>{{10, 0}, {10, 5}}));
    EXPECT_EQ(prompt(), "命令: ");
}

TEST_F(DrawCommands, LineClosesToItsFirstPoint) {
    type("L 0,0 10,0 10,10 C ");
    ASSERT_EQ(entities().size(), 3u);
    EXPECT_EQ(entities()[2].points, (std::vector<Point>{{10, 10}, {0, 0}}));
    EXPECT_TRUE(editor.isQuiescent());
}

TEST_F(DrawCommands, LineUndoRemovesTheLastSegment) {
    type("LINE 0,0 10,0 20,0 U @0,7 \n");
    ASSERT_EQ(entities().size(), 2u);
    EXPECT_EQ(entities()[1].points, (std::vector<Point>{{10, 0}, {10, 7}}));
}

TEST_F(DrawCommands, LineUndoWithoutSegmentsPrintsAMessage) {
    type("LINE 0,0 U ");
    EXPECT_EQ(lastLine(), "所有线段都已放弃。");
    EXPECT_FALSE(editor.isQuiescent());
}

TEST_F(DrawCommands, LineCannotBeClosedWithOneSegment) {
    type("LINE 0,0 1,1 C ");
    EXPECT_EQ(lastLine(), "需要点，或选项关键字。");
}

TEST_F(DrawCommands, OneUndoRemovesAllSegmentsOfALineCommand) {
    type("LINE 0,0 10,0 20,0 \n");
    type("U\n");
    EXPECT_TRUE(entities().empty());
    EXPECT_EQ(lastLine(), "LINE");
}

TEST_F(DrawCommands, CircleByCenterAndRadius) {
    type("CIRCLE\n");
    EXPECT_EQ(prompt(), "CIRCLE 指定圆的圆心或 [三点(3P)/两点(2P)]: ");
    type("100,100\n");
    EXPECT_EQ(prompt(), "CIRCLE 指定圆的半径或 [直径(D)]: ");
    type("50\n");
    ASSERT_EQ(entities().size(), 1u);
    EXPECT_EQ(entities()[0].kind, EntityKind::Circle);
    EXPECT_EQ(entities()[0].points[0], (Point{100, 100}));
    EXPECT_DOUBLE_EQ(entities()[0].radius, 50);
}

TEST_F(DrawCommands, CircleDefaultsToTheLastRadius) {
    type("C 0,0 50 C 10,10 ");
    EXPECT_EQ(prompt(), "CIRCLE 指定圆的半径或 [直径(D)] <50.0000>: ");
    type("\n");
    ASSERT_EQ(entities().size(), 2u);
    EXPECT_DOUBLE_EQ(entities()[1].radius, 50);
}

TEST_F(DrawCommands, CircleByDiameter) {
    type("C 0,0 D 30 ");
    ASSERT_EQ(entities().size(), 1u);
    EXPECT_DOUBLE_EQ(entities()[0].radius, 15);
    type("C 0,0 D ");
    EXPECT_EQ(prompt(), "CIRCLE 指定圆的直径 <30.0000>: ");
}

TEST_F(DrawCommands, CircleThroughTwoAndThreePoints) {
    type("C 2P 0,0 10,0 ");
    type("C 3P 1,0 0,1 -1,0 ");
    ASSERT_EQ(entities().size(), 2u);
    EXPECT_EQ(entities()[0].points[0], (Point{5, 0}));
    EXPECT_DOUBLE_EQ(entities()[0].radius, 5);
    EXPECT_NEAR(entities()[1].radius, 1, 1e-12);
    EXPECT_NEAR(entities()[1].points[0].y, 0, 1e-12);
}

TEST_F(DrawCommands, CircleRejectsCollinearPoints) {
    type("C 3P 0,0 1,1 2,2 ");
    EXPECT_EQ(lastLine(), "三点共线，不能确定圆。");
    type("0,5 ");
    EXPECT_EQ(entities().size(), 1u);
}

TEST_F(DrawCommands, CircleRejectsANonPositiveRadius) {
    type("C 0,0 0 ");
    EXPECT_EQ(lastLine(), "值必须为正且非零。");
    type("-3 ");
    EXPECT_EQ(lastLine(), "值必须为正且非零。");
    type("3 ");
    EXPECT_EQ(entities().size(), 1u);
}

TEST_F(DrawCommands, CircleRadiusCanBePicked) {
    type("CIRCLE ");
    pick(10, 10);
    EXPECT_EQ(prompt(), "CIRCLE 指定圆的半径或 [直径(D)]: ");
    pick(13, 14);
    ASSERT_EQ(entities().size(), 1u);
    EXPECT_DOUBLE_EQ(entities()[0].radius, 5);
}

TEST_F(DrawCommands, PreviewFollowsTheCrosshair) {
    type("C 0,0 ");
    editor.setCursor({3, 4});
    ASSERT_FALSE(editor.preview().empty());
    EXPECT_DOUBLE_EQ(editor.preview()[0].radius, 5);
    EXPECT_TRUE(entities().empty());
}

TEST_F(DrawCommands, RectangleByCorners) {
    type("RECTANG 0,0 @20,10 ");
    ASSERT_EQ(entities().size(), 1u);
    EXPECT_EQ(entities()[0].points, (std::vector<Point>{{0, 0}, {20, 0}, {20, 10}, {0, 10}}));
    EXPECT_TRUE(entities()[0].closed);
}

TEST_F(DrawCommands, RectangleBySizeExtendsTowardThePickedSide) {
    type("REC 10,10 D 4 3 0,0 ");
    ASSERT_EQ(entities().size(), 1u);
    EXPECT_EQ(entities()[0].points[2], (Point{6, 7}));
}

TEST_F(DrawCommands, RectangleRejectsZeroWidth) {
    type("REC 1,1 1,5 ");
    EXPECT_EQ(lastLine(), "矩形的长度和宽度不能为零。");
    EXPECT_FALSE(editor.isQuiescent());
}

TEST_F(DrawCommands, PolylineBecomesOneEntityWhenItIsFinished) {
    type("PL 0,0 5,0 5,5 ");
    EXPECT_TRUE(entities().empty());
    type("C ");
    ASSERT_EQ(entities().size(), 1u);
    EXPECT_TRUE(entities()[0].closed);
    EXPECT_EQ(entities()[0].points.size(), 3u);
}

TEST_F(DrawCommands, OrthoModeConstrainsPicksToTheAxes) {
    type("ORTHOMODE 1 LINE 0,0 ");
    pick(30, 4);
    type("\n");
    ASSERT_EQ(entities().size(), 1u);
    EXPECT_EQ(entities()[0].points[1], (Point{30, 0}));
}
