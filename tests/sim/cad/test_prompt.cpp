#include <gtest/gtest.h>

#include "sim/cad/core/Prompt.h"

using cad::Input;
using cad::InputSituation;
using cad::Point;
using cad::Prompt;

namespace {

std::optional<Input> parse(const Prompt& prompt, const std::string& answer, InputSituation situation = {}) {
    std::string error;
    const auto input = cad::parseInput(prompt, answer, situation, error);
    EXPECT_EQ(error.empty(), input.has_value());
    return input;
}

const Prompt kPoint("指定点: ", Prompt::Points);

}  // namespace

TEST(Prompt, ReadsCoordinates) {
    EXPECT_EQ(parse(kPoint, "10,20")->point, (Point{10, 20}));
    EXPECT_EQ(parse(kPoint, "-1.5,2e1,7")->point, (Point{-1.5, 20}));
    EXPECT_FALSE(parse(kPoint, "10"));
    EXPECT_FALSE(parse(kPoint, "10,"));
    EXPECT_FALSE(parse(kPoint, "a,b"));
    EXPECT_FALSE(parse(kPoint, "1,2,3,4"));
}

TEST(Prompt, ReadsRelativeAndPolarCoordinates) {
    const InputSituation situation{{10, 10}, {}};
    EXPECT_EQ(parse(kPoint, "@5,-5", situation)->point, (Point{15, 5}));
    EXPECT_EQ(parse(kPoint, "@", situation)->point, (Point{10, 10}));
    EXPECT_NEAR(parse(kPoint, "@10<90", situation)->point.y, 20, 1e-9);
    EXPECT_NEAR(parse(kPoint, "10<180", situation)->point.x, -10, 1e-9);
    EXPECT_FALSE(parse(kPoint, "@<", situation));
}

TEST(Prompt, NumberAloneIsADistanceTowardTheCrosshair) {
    const Prompt next("指定下一点: ", Prompt::Points, Point{0, 0});
    EXPECT_EQ(parse(next, "10", {{}, {0, 3}})->point, (Point{0, 10}));
    // With the crosshair on the base point there is no direction.
    EXPECT_FALSE(parse(next, "10", {{}, {0, 0}}));
}

TEST(Prompt, PointAtADistancePromptIsMeasuredFromTheBase) {
    const Prompt radius("指定圆的半径: ", Prompt::Numbers, Point{1, 1});
    EXPECT_DOUBLE_EQ(parse(radius, "4,5")->number, 5);
    EXPECT_DOUBLE_EQ(parse(radius, "2.5")->number, 2.5);
    EXPECT_FALSE(parse(Prompt("值: ", Prompt::Numbers), "4,5"));
}

TEST(Prompt, KeywordsAreSelectedByLettersOrWord) {
    const Prompt prompt("指定下一点或 [闭合(C)/放弃(U)]: ", Prompt::Points);
    EXPECT_TRUE(parse(prompt, "c")->isKeyword("C"));
    EXPECT_TRUE(parse(prompt, "U")->isKeyword("U"));
    EXPECT_TRUE(parse(prompt, "闭合")->isKeyword("C"));
    EXPECT_FALSE(parse(prompt, "X"));
    EXPECT_TRUE(parse(Prompt("输入变量名或 [?]: ", Prompt::Words), "?")->isKeyword("?"));
    EXPECT_TRUE(parse(Prompt("圆心或 [三点(3P)/两点(2P)]: ", Prompt::Points), "2p")->isKeyword("2P"));
}

TEST(Prompt, EmptyAnswerIsAcceptedOnlyWhereAllowed) {
    EXPECT_FALSE(parse(kPoint, ""));
    EXPECT_EQ(parse(Prompt("点: ", Prompt::Points | Prompt::Enters), "")->kind, Input::Enter);
}

TEST(Prompt, ErrorNamesTheExpectedInput) {
    std::string error;
    cad::parseInput(Prompt("指定下一点或 [放弃(U)]: ", Prompt::Points), "x", {}, error);
    EXPECT_EQ(error, "需要点，或选项关键字。");
    cad::parseInput(Prompt("数目: ", Prompt::Integers), "1.5", {}, error);
    EXPECT_EQ(error, "需要整数值。");
}
