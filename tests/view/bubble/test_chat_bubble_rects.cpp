#include <gtest/gtest.h>

#include "tests/view/support/QtPrinters.h"
#include "view/bubble/ChatBubbleRects.h"

namespace {

constexpr int kWidth = 600;
constexpr int kLineHeight = 23;

ChatBubbleRects placed(const QSize& measured, QSize* whole = nullptr) {
    ChatBubbleRects rects;
    rects.setWidth(kWidth);
    rects.lineHeight = kLineHeight;
    const QSize size = rects.place(measured);
    if (whole != nullptr) {
        *whole = size;
    }
    return rects;
}

}  // namespace

TEST(ChatBubbleRects, WidthsDependOnTheBubbleWidth) {
    ChatBubbleRects rects;
    rects.setWidth(kWidth);
    EXPECT_EQ(rects.bubbleWidth, 450);
    EXPECT_EQ(rects.textWidth, 426);
    EXPECT_EQ(rects.spaceWidth, 174);
    rects.setWidth(100);
    EXPECT_EQ(rects.textWidth, -74);
    EXPECT_EQ(rects.spaceWidth, 174);
}

TEST(ChatBubbleRects, AvatarsAreInTheUpperCorners) {
    const ChatBubbleRects rects = placed({300, 92});
    EXPECT_EQ(rects.iconLeftRect, QRect(20, 10, 40, 40));
    EXPECT_EQ(rects.iconRightRect, QRect(540, 10, 40, 40));
}

TEST(ChatBubbleRects, FramesOfAShortTextFitTheText) {
    // The frames are 300 - 174 + 24 wide; that of the question ends 26 pixels from the right edge.
    const ChatBubbleRects rects = placed({300, 92});
    EXPECT_EQ(rects.frameLeftRect, QRect(71, 15, 150, 69));
    EXPECT_EQ(rects.frameRightRect, QRect(600 + 174 - 300 - 50, 15, 150, 69));
    EXPECT_EQ(kWidth - rects.frameRightRect.right() - 1, 26);
    EXPECT_EQ(rects.textLeftRect, QRect(83, 25, 126, 49));
    EXPECT_EQ(rects.textRightRect, QRect(436, 25, 126, 49));
}

TEST(ChatBubbleRects, FullWidthFrameEndsFurtherLeftThanAShortOneAsIntended) {
    const ChatBubbleRects rects = placed({600, 92});
    EXPECT_EQ(rects.frameLeftRect, QRect(71, 15, 450, 69));
    EXPECT_EQ(rects.frameRightRect, QRect(79, 15, 450, 69));
    EXPECT_EQ(kWidth - rects.frameRightRect.right() - 1, 71);
    EXPECT_EQ(rects.textLeftRect.width(), rects.textWidth);
}

TEST(ChatBubbleRects, OnePixelLessThanFullWidthIsAShortFrame) {
    EXPECT_EQ(placed({599, 92}).frameRightRect.x(), 600 + 174 - 599 - 50);
    EXPECT_EQ(placed({599, 92}).frameRightRect.width(), 449);
}

TEST(ChatBubbleRects, TrianglesAreComputedThoughNeverPainted) {
    const ChatBubbleRects rects = placed({300, 92});
    EXPECT_EQ(rects.triangleLeftRect, QRect(65, 11, 6, 69));
    EXPECT_EQ(rects.triangleRightRect, QRect(529, 11, 6, 69));
}

TEST(ChatBubbleRects, ButtonsAreBelowTheText) {
    const ChatBubbleRects rects = placed({300, 92});
    const int bottom = 25 + 49 - 1;
    EXPECT_EQ(rects.copyAnswerRect, QRect(83, bottom + 20, 20, 20));
    EXPECT_EQ(rects.regenRect, QRect(108, bottom + 20, 20, 20));
    EXPECT_EQ(rects.copyQuestionRect, QRect(436, bottom + 20, 20, 20));
    EXPECT_EQ(rects.editRect, QRect(461, bottom + 20, 20, 20));
}

TEST(ChatBubbleRects, TextBlockIsAtLeast30HighAndTheBubble40Higher) {
    QSize whole;
    const ChatBubbleRects rects = placed({300, 12}, &whole);
    EXPECT_EQ(whole, QSize(300, 70));
    EXPECT_EQ(rects.frameLeftRect.height(), 30 - kLineHeight);
    placed({300, 31}, &whole);
    EXPECT_EQ(whole.height(), 71);
}

TEST(ChatBubbleRects, FrameTopIsThreeTruncatedQuartersOfALine) {
    ChatBubbleRects rects;
    rects.setWidth(kWidth);
    rects.lineHeight = 27;
    rects.place({300, 92});
    EXPECT_EQ(rects.frameLeftRect.y(), 18);
}
