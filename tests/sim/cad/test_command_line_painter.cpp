#include "sim/cad/app/CommandLinePainter.h"

#include <gtest/gtest.h>

#include "tests/sim/cad/FakeCanvas.h"

using cad::Area;
using cad::CommandLine;
using cad::CommandLinePainter;

class CommandLinePainterTest : public testing::Test {
protected:
    /// The visible rows of the scroll-back, top to bottom.
    std::vector<std::string> rows(double width, int shownRows, int scrolled = 0) {
        canvas = FakeCanvas();
        const Area area{0, 0, width, static_cast<double>(CommandLinePainter::heightForRows(shownRows))};
        painter.paint(canvas, line, theme, area, scrolled, true);
        EXPECT_EQ(canvas.clips, 0);
        std::vector<std::string> texts;
        for (const FakeCanvas::Text& text : canvas.texts) {
            if (text.color == theme.mutedText) {
                texts.push_back(text.text);
            }
        }
        return texts;
    }

    const cad::Theme& theme = cad::themeFor(0);
    CommandLine line;
    CommandLinePainter painter;
    FakeCanvas canvas;
};

using Rows = std::vector<std::string>;

TEST_F(CommandLinePainterTest, ShowsTheNewestRows) {
    for (const char* text : {"one", "two", "three", "four"}) {
        line.addLine(text);
    }
    EXPECT_EQ(rows(400, 3), (Rows{"two", "three", "four"}));
    EXPECT_EQ(painter.largestScroll(), 1);
}

TEST_F(CommandLinePainterTest, ScrollsBackNoFurtherThanTheOldestRow) {
    for (const char* text : {"one", "two", "three", "four"}) {
        line.addLine(text);
    }
    EXPECT_EQ(rows(400, 3, 1), (Rows{"one", "two", "three"}));
    EXPECT_EQ(rows(400, 3, 99), (Rows{"one", "two", "three"}));
}

TEST_F(CommandLinePainterTest, LongLinesWrapBetweenCharacters) {
    line.addLine("圆abcdefghij");
    const Rows broken = rows(16 + 20 + 10 + 60, 5);
    ASSERT_EQ(broken.size(), 2u);
    EXPECT_EQ(broken[0], "圆abcde");
    EXPECT_EQ(broken[1], "fghij");
}

TEST_F(CommandLinePainterTest, RewrapsWhenTheTextOrTheWidthChanges) {
    line.addLine("abcdefgh");
    EXPECT_EQ(rows(400, 3).size(), 1u);
    EXPECT_EQ(rows(16 + 20 + 10 + 40, 3).size(), 2u);
    line.addLine("x");
    EXPECT_EQ(rows(400, 3), (Rows{"abcdefgh", "x"}));
    line.clear();
    EXPECT_TRUE(rows(400, 3).empty());
}

TEST_F(CommandLinePainterTest, PutsOneCharacterInARowWhenNoneFits) {
    line.addLine("abc");
    EXPECT_EQ(rows(20, 5).size(), 3u);
}

TEST_F(CommandLinePainterTest, PromptIsFollowedByTheInputAndTheCaret) {
    line.setPrompt("命令: ");
    line.setInput("LI");
    rows(400, 3);
    ASSERT_EQ(canvas.texts.size(), 2u);
    EXPECT_EQ(canvas.texts[0].text, "命令: ");
    EXPECT_EQ(canvas.texts[1].text, "LI");
    EXPECT_DOUBLE_EQ(canvas.texts[1].left, canvas.texts[0].left + 4 * FakeCanvas::kCharacter);
    EXPECT_DOUBLE_EQ(canvas.fills.back().first.x, canvas.texts[1].left + 2 * FakeCanvas::kCharacter);
}

TEST_F(CommandLinePainterTest, LongInputIsScrolledToTheCaret) {
    line.setPrompt("命令: ");
    line.setInput(std::string(200, 'x'));
    rows(400, 3);
    EXPECT_LT(canvas.fills.back().first.x, 400);
    EXPECT_LT(canvas.texts[0].left, 0);
}
