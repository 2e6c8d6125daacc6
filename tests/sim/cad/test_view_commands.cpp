#include "tests/sim/cad/EditorFixture.h"

using cad::Box;
using cad::Point;

class ViewCommands : public EditorFixture {
protected:
    ViewCommands() { editor.viewport().resize(400, 400); }
};

TEST_F(ViewCommands, ZoomExtentsShowsEverything) {
    type("C 1000,1000 10 ZOOM E ");
    EXPECT_EQ(editor.viewport().center(), (Point{1000, 1000}));
    EXPECT_NEAR(editor.viewport().visible().height(), 20, 2);
}

TEST_F(ViewCommands, ZoomExtentsOfAnEmptyDrawingShowsTheLimits) {
    type("Z E ");
    EXPECT_EQ(editor.viewport().center(), (Point{210, 148.5}));
}

TEST_F(ViewCommands, ZoomAllCoversLimitsAndDrawing) {
    type("C 1000,0 10 Z A ");
    EXPECT_TRUE(editor.viewport().visible().contains(Box::of({0, -10}, {1010, 297})));
}

TEST_F(ViewCommands, ZoomWindowShowsTheAreaBetweenTwoCorners) {
    type("Z W 0,0 10,10 ");
    EXPECT_EQ(editor.viewport().center(), (Point{5, 5}));
    type("Z 20,20 40,40 ");
    EXPECT_EQ(editor.viewport().center(), (Point{30, 30}));
}

TEST_F(ViewCommands, ZoomScalesByAFactor) {
    const double before = editor.viewport().unitsPerPixel();
    type("Z 2X ");
    EXPECT_DOUBLE_EQ(editor.viewport().unitsPerPixel(), before / 2);
    type("Z 1 ");
    EXPECT_NEAR(editor.viewport().unitsPerPixel(), 420.0 / 400, 1e-12);
    type("Z 0 ");
    EXPECT_EQ(lastLine(), "需要点、比例因子或选项关键字。");
}

TEST_F(ViewCommands, ZoomPreviousRestoresTheLastView) {
    const double before = editor.viewport().unitsPerPixel();
    type("Z 4x Z P ");
    EXPECT_DOUBLE_EQ(editor.viewport().unitsPerPixel(), before);
    type("Z P ");
    EXPECT_EQ(lastLine(), "没有保存的上一个视图。");
}

TEST_F(ViewCommands, PanMovesTheBasePointToTheSecondPoint) {
    const Point before = editor.viewport().center();
    type("PAN 0,0 10,5 ");
    EXPECT_EQ(editor.viewport().center(), before - (Point{10, 5}));
}

TEST_F(ViewCommands, RedrawMakesTheWindowsRepaint) {
    const unsigned before = editor.viewport().revision();
    type("REDRAW ");
    EXPECT_NE(editor.viewport().revision(), before);
}

TEST_F(ViewCommands, ZoomRunsInsideAnotherCommand) {
    type("LINE 0,0 'ZOOM E ");
    EXPECT_EQ(lastLine(), "正在恢复执行 LINE 命令。");
    EXPECT_EQ(prompt(), "LINE 指定下一点或 [放弃(U)]: ");
    type("5,5 \n");
    EXPECT_EQ(entities().size(), 1u);
    EXPECT_EQ(listener.events,
              (std::vector<std::string>{"start LINE", "start ZOOM", "end ZOOM", "end LINE"}));
}

TEST_F(ViewCommands, DrawingCommandsDoNotRunInsideAnother) {
    type("LINE 0,0 'CIRCLE ");
    EXPECT_EQ(prompt(), "LINE 指定下一点或 [放弃(U)]: ");
    EXPECT_EQ(lastLine(), "需要点，或选项关键字。");
}
