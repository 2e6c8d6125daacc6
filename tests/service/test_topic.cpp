#include <gtest/gtest.h>

#include "service/Topic.h"

namespace zentri::service {
namespace {

constexpr const char* kCircle =
    "area: 绘图\r\n"
    "\n"
    "# 画圆\n"
    "ask: 怎么画圆 | how do I draw a circle\n"
    "keys: 圆, circle ,, 半径\n"
    "cmd: CIRCLE, DONUT\n"
    "en: 【CIRCLE】 draws: a circle.\n"
    "第一行\n"
    "第二行\n"
    "1. 一\n"
    "12. 二\n"
    "- 提示\n";

std::string parseError(const std::string& text) {
    try {
        parseTopics(text, "x.topics");
    } catch (const TopicError& error) {
        return error.what();
    }
    return {};
}

TEST(Topic, ParsesEveryField) {
    const std::vector<Topic> topics = parseTopics(kCircle, "x.topics");
    ASSERT_EQ(topics.size(), 1U);
    const Topic& topic = topics.front();
    EXPECT_EQ(topic.area, "绘图");
    EXPECT_EQ(topic.title, "画圆");
    EXPECT_EQ(topic.questions, (std::vector<std::string>{"怎么画圆", "how do I draw a circle"}));
    EXPECT_EQ(topic.keywords, (std::vector<std::string>{"圆", "circle", "半径"}));
    EXPECT_EQ(topic.commands, (std::vector<std::string>{"CIRCLE", "DONUT"}));
    EXPECT_EQ(topic.english, "【CIRCLE】 draws: a circle.");
    EXPECT_EQ(topic.introduction, "第一行\n第二行");
    EXPECT_EQ(topic.steps, (std::vector<std::string>{"一", "二"}));
    EXPECT_EQ(topic.tips, std::vector<std::string>{"提示"});
    EXPECT_FALSE(topic.isSmallTalk());
}

TEST(Topic, AreaAppliesToTheFollowingTopics) {
    const std::string two =
        std::string(kCircle) + "# 二\nkeys: 二\nen: two\n说明\narea: 修改\n# 三\nkeys: 三\nen: three\n说明\n";
    const std::vector<Topic> topics = parseTopics(two, "x.topics");
    ASSERT_EQ(topics.size(), 3U);
    EXPECT_EQ(topics[1].area, "绘图");
    EXPECT_EQ(topics[2].area, "修改");
    EXPECT_TRUE(topics[2].isSmallTalk());
}

TEST(Topic, NumberWithoutDotAndSpaceIsText) {
    const std::vector<Topic> topics = parseTopics("area: a\n# t\nkeys: k\nen: e\n3.5 毫米\n", "x.topics");
    EXPECT_EQ(topics.front().introduction, "3.5 毫米");
}

TEST(Topic, ErrorsNameTheLine) {
    EXPECT_EQ(parseError("text\n"), "x.topics:1: text before the first topic");
    EXPECT_EQ(parseError("area: a\n\n# t\nen: e\n说明\n"), "x.topics:3: the topic 't' has no keys");
    EXPECT_EQ(parseError("area: a\n# t\nkeys: k\n说明\n"), "x.topics:2: the topic 't' has no English line");
    EXPECT_EQ(parseError("area: a\n# t\nkeys: k\nen: e\n1. 步\n"),
              "x.topics:2: the topic 't' has no introduction");
    EXPECT_EQ(parseError("# t\nkeys: k\nen: e\n说明\n"), "x.topics:1: the topic 't' has no area");
    EXPECT_EQ(parseError("area: \xFF\n"), "x.topics: not UTF-8");
}

TEST(Topic, EmptyFileHasNoTopics) {
    EXPECT_TRUE(parseTopics("", "x.topics").empty());
}

}  // namespace
}  // namespace zentri::service
