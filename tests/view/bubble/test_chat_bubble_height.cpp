#include <gtest/gtest.h>

#include <QWidget>

#include "view/bubble/ChatBubbleHeight.h"

TEST(ChatBubbleHeight, MeasuredTextIsTheBreaksPlusThreeRows) {
    EXPECT_EQ(ChatBubbleHeight::ofMeasuredText(0, 23), 3 * 23);
    EXPECT_EQ(ChatBubbleHeight::ofMeasuredText(4, 23), 7 * 23);
}

TEST(ChatBubbleHeight, MeasuredTextIsLimitedToTheMaximumWidgetHeight) {
    const int maxBreaks = ChatBubbleHeight::maxBreaks(23);
    EXPECT_LE(maxBreaks * 23, QWIDGETSIZE_MAX);
    EXPECT_EQ(ChatBubbleHeight::ofMeasuredText(maxBreaks + 1, 23), QWIDGETSIZE_MAX);
    EXPECT_EQ(ChatBubbleHeight::ofMeasuredText(qint64{1} << 40U, 23), QWIDGETSIZE_MAX);
}

TEST(ChatBubbleHeight, FrameIsOneLineLessThanTheTextBlockAndTheBubble40More) {
    const ChatBubbleHeight height(92, 23);
    EXPECT_EQ(height.frame, 92 - 23);
    EXPECT_EQ(height.bubble, 92 + 40);
}

TEST(ChatBubbleHeight, TextBlockIsAtLeast30High) {
    EXPECT_EQ(ChatBubbleHeight(12, 23).bubble, 70);
    EXPECT_EQ(ChatBubbleHeight(30, 23).bubble, 70);
    EXPECT_EQ(ChatBubbleHeight(31, 23).bubble, 71);
}
