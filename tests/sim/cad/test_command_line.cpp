#include <gtest/gtest.h>

#include "sim/cad/core/CommandLine.h"

using cad::CommandLine;
using Lines = std::vector<std::string>;

TEST(CommandLineModel, LineFeedStartsANewLine) {
    CommandLine line;
    line.print("\nfirst");
    line.print("\nsecond");
    EXPECT_EQ(line.lines(), (Lines{"first", "second"}));
}

TEST(CommandLineModel, TextIsAppendedToTheLineUntilALineFeed) {
    CommandLine line;
    line.print("\na");
    line.print("b\nc");
    line.print("d\n");
    line.addLine("own");
    EXPECT_EQ(line.lines(), (Lines{"ab", "cd", "own"}));
}

TEST(CommandLineModel, PromptEndsTheOpenLine) {
    CommandLine line;
    line.print("\na");
    line.setPrompt("命令: ");
    line.print("b");
    EXPECT_EQ(line.lines(), (Lines{"a", "b"}));
}

TEST(CommandLineModel, EditsWholeCodePoints) {
    CommandLine line;
    for (const char32_t c : std::u32string(U"圆a😀")) {
        line.insert(c);
    }
    line.moveCaret(-1);
    line.backspace();
    EXPECT_EQ(line.input(), "圆😀");
    EXPECT_EQ(line.inputBeforeCaret(), "圆");
    line.deleteForward();
    EXPECT_EQ(line.input(), "圆");
    line.caretToStart();
    line.backspace();
    line.moveCaret(-5);
    EXPECT_EQ(line.caret(), 0u);
    line.caretToEnd();
    EXPECT_EQ(line.caret(), 1u);
}

TEST(CommandLineModel, RecallsEarlierLinesAndRestoresTheTypedText) {
    CommandLine line;
    line.remember("LINE");
    line.remember("CIRCLE");
    line.remember("CIRCLE");
    line.setInput("ZO");
    line.recallPrevious();
    EXPECT_EQ(line.input(), "CIRCLE");
    line.recallPrevious();
    EXPECT_EQ(line.input(), "LINE");
    line.recallPrevious();
    EXPECT_EQ(line.input(), "LINE");
    line.recallNext();
    line.recallNext();
    EXPECT_EQ(line.input(), "ZO");
    line.recallNext();
    EXPECT_EQ(line.input(), "ZO");
}

TEST(CommandLineModel, WholeTextEndsWithPromptAndInput) {
    CommandLine line;
    line.addLine("one");
    line.setPrompt("命令: ");
    line.setInput("LI");
    EXPECT_EQ(line.text(), "one\n命令: LI");
    line.clear();
    EXPECT_EQ(line.text(), "命令: LI");
}

TEST(CommandLineModel, ScrollBackIsBounded) {
    CommandLine line;
    for (int i = 0; i < 10000; ++i) {
        line.print("\n" + std::to_string(i));
    }
    EXPECT_LE(line.lines().size(), 4000u);
    EXPECT_EQ(line.lines().back(), "9999");
}

TEST(CommandLineModel, EchoReceivesEveryPrintedText) {
    CommandLine line;
    std::string all;
    line.setEcho([&](const std::string& text) { all += text; });
    line.print("\na");
    line.addLine("b");
    EXPECT_EQ(all, "\na\nb");
}
