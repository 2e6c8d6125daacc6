#include <gtest/gtest.h>

#include "service/BuiltInAnswerer.h"
#include "service/Text.h"
#include "service/UpstreamAnswerer.h"

namespace zentri::service {
namespace {

const KnowledgeBase& builtIn() {
    static const KnowledgeBase knowledge(KnowledgeBase::builtInTopics());
    return knowledge;
}

std::string answerTo(const std::vector<std::string>& questions) {
    const BuiltInAnswerer answerer(builtIn(), Pace{});
    std::vector<Message> messages;
    for (const std::string& question : questions) {
        messages.push_back({Role::User, question, 0});
        messages.push_back({Role::Assistant, answerer.textFor(messages), 0});
    }
    return messages.back().text;
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// Records pieces and pauses, and disconnects after `leaveAfter` pieces.
struct NotingSink : AnswerSink {
    bool write(std::string_view piece) override {
        pieces.emplace_back(piece);
        return pieces.size() < leaveAfter;
    }
    bool pause(std::chrono::milliseconds time) override {
        pauses.push_back(time);
        return true;
    }
    bool alive() override { return true; }

    std::size_t leaveAfter = 100000;
    std::vector<std::string> pieces;
    std::vector<std::chrono::milliseconds> pauses;
};

TEST(BuiltInAnswerer, ExplainsTheStepsAndNamesTheCommand) {
    const std::string answer = answerTo({"怎么画圆"});
    EXPECT_TRUE(contains(answer, "【CIRCLE】"));
    EXPECT_TRUE(contains(answer, "\n1. "));
    EXPECT_TRUE(contains(answer, "\n提示："));
    EXPECT_NE(answer.back(), '\n');
}

TEST(BuiltInAnswerer, AnswersAnEnglishQuestionWithTheEnglishSummaryFirst) {
    const std::string answer = answerTo({"how do I draw a rectangle?"});
    EXPECT_EQ(answer.rfind("【RECTANG】 draws", 0), 0U);
    EXPECT_TRUE(contains(answer, "矩形"));
}

TEST(BuiltInAnswerer, FollowUpIsAnsweredInTheContextOfTheEarlierQuestion) {
    const std::string answer = answerTo({"怎么画圆", "那怎么删除?"});
    EXPECT_TRUE(contains(answer, "画圆"));
    EXPECT_TRUE(contains(answer, "【ERASE】"));
}

TEST(BuiltInAnswerer, FollowUpWithoutContentContinuesTheSameTopic) {
    const std::string answer = answerTo({"怎么画圆", "谢谢", "还有呢？"});
    EXPECT_TRUE(contains(answer, "接着说“画圆”"));
    EXPECT_TRUE(contains(answer, "提示："));
    EXPECT_TRUE(contains(answerTo({"how do I draw a circle", "what else?"}), "More about"));
}

TEST(BuiltInAnswerer, FollowUpWithoutAnEarlierTopicIsAnOrdinaryQuestion) {
    EXPECT_TRUE(contains(answerTo({"那怎么删除一条线?"}), "【ERASE】"));
    EXPECT_TRUE(contains(answerTo({"还有呢？"}), "抱歉"));
}

TEST(BuiltInAnswerer, UnrelatedQuestionIgnoresTheEarlierTopic) {
    EXPECT_TRUE(contains(answerTo({"怎么画圆", "图纸怎么打印成PDF文件"}), "PDF"));
    EXPECT_FALSE(contains(answerTo({"怎么画圆", "图纸怎么打印成PDF文件"}), "【CIRCLE】"));
}

TEST(BuiltInAnswerer, ReportsThatNoTopicFitsAndSuggestsKnownTopics) {
    const std::string answer = answerTo({"今天天气怎么样"});
    EXPECT_TRUE(contains(answer, "抱歉"));
    EXPECT_TRUE(contains(answer, "“画圆”"));
    EXPECT_TRUE(contains(answerTo({"what is the capital of France"}), "Sorry"));
}

TEST(BuiltInAnswerer, SuggestsSimilarTopicsForAPartialMatch) {
    const std::string answer = answerTo({"公司去年的标注制度文件由哪个部门负责起草"});
    EXPECT_TRUE(contains(answer, "抱歉")) << answer;
    EXPECT_TRUE(contains(answer, "比较接近的话题有")) << answer;
}

TEST(BuiltInAnswerer, EverySuggestedTopicHasAnAnswer) {
    const std::string answer = answerTo({"今天天气怎么样"});
    for (const char* title : {"画圆", "画直线", "删除对象", "新建图层", "标注线性尺寸"}) {
        EXPECT_TRUE(contains(answer, title));
        EXPECT_FALSE(contains(answerTo({title}), "抱歉")) << title;
    }
}

TEST(BuiltInAnswerer, AnswersAGreetingUnlessAQuestionFollows) {
    EXPECT_TRUE(contains(answerTo({"你好"}), "您好"));
    EXPECT_TRUE(contains(answerTo({"hello"}), "Hello"));
    EXPECT_TRUE(contains(answerTo({"你好，请问怎么画圆"}), "【CIRCLE】"));
    EXPECT_TRUE(contains(answerTo({"怎么画圆", "谢谢"}), "不客气"));
}

TEST(BuiltInAnswerer, WritesPiecesOfTheConfiguredSizeWithPausesBetween) {
    BuiltInAnswerer answerer(builtIn(), Pace{std::chrono::milliseconds(7), 5});
    NotingSink sink;
    answerer.answer({{{Role::User, "怎么画圆", 0}}, ""}, sink);
    ASSERT_GT(sink.pieces.size(), 10U);
    std::string text;
    for (std::size_t i = 0; i < sink.pieces.size(); ++i) {
        EXPECT_TRUE(isValidUtf8(sink.pieces[i]));
        if (i + 1 < sink.pieces.size()) {
            EXPECT_EQ(codePointCount(sink.pieces[i]), 5U);
        }
        text += sink.pieces[i];
    }
    EXPECT_EQ(text, answerTo({"怎么画圆"}));
    EXPECT_EQ(sink.pauses.size(), sink.pieces.size() - 1);
    EXPECT_EQ(sink.pauses.front(), std::chrono::milliseconds(7));
}

TEST(BuiltInAnswerer, StopsWhenTheSinkReturnsFalse) {
    BuiltInAnswerer answerer(builtIn(), Pace{std::chrono::milliseconds(0), 1});
    NotingSink sink;
    sink.leaveAfter = 3;
    answerer.answer({{{Role::User, "怎么画圆", 0}}, ""}, sink);
    EXPECT_EQ(sink.pieces.size(), 3U);
}

TEST(UpstreamFromUrl, CompletesThePath) {
    EXPECT_EQ(upstreamFromUrl("http://127.0.0.1:9").origin, "http://127.0.0.1:9");
    EXPECT_EQ(upstreamFromUrl("http://127.0.0.1:9").path, "/v1/chat/completions");
    EXPECT_EQ(upstreamFromUrl("https://h/api/v3/").path, "/api/v3/chat/completions");
    EXPECT_EQ(upstreamFromUrl("https://h/x/chat/completions").path, "/x/chat/completions");
}

TEST(UpstreamFromUrl, RejectsInvalidUrls) {
    for (const char* url : {"", "h/v1", "ftp://h", "http://", "http:///v1", "http://user@h", "http://h h"}) {
        EXPECT_THROW(upstreamFromUrl(url), std::invalid_argument) << url;
    }
}

}  // namespace
}  // namespace zentri::service
