#include <gtest/gtest.h>

#include "service/UpstreamParser.h"

namespace zentri::service {
namespace {

using Events = std::vector<std::string>;

Events eventsOf(const std::vector<std::string>& chunks) {
    Events events;
    SseParser parser([&](const std::string& data) { events.push_back(data); });
    for (const std::string& chunk : chunks) {
        parser.feed(chunk);
    }
    parser.finish();
    return events;
}

TEST(SseParser, ParsesAnEvent) {
    EXPECT_EQ(eventsOf({"data: {\"a\":1}\n\n"}), Events{"{\"a\":1}"});
}

TEST(SseParser, StripsOneLeadingSpaceOnly) {
    EXPECT_EQ(eventsOf({"data:x\n\ndata:  y\n\n"}), (Events{"x", " y"}));
}

TEST(SseParser, IgnoresCommentsOtherFieldsAndEmptyEvents) {
    EXPECT_EQ(eventsOf({": keep-alive\n\nevent: message\nid: 7\nretry: 10\ndata: x\n\n\n\n"}), Events{"x"});
}

TEST(SseParser, JoinsDataLinesWithLineFeeds) {
    EXPECT_EQ(eventsOf({"data: a\ndata\ndata: b\n\n"}), Events{"a\n\nb"});
}

TEST(SseParser, DeliversTheLastEventAtTheEndOfTheStream) {
    EXPECT_EQ(eventsOf({"data: a\n\ndata: b\n"}), (Events{"a", "b"}));
    EXPECT_EQ(eventsOf({"data: a\n\ndata: b"}), (Events{"a", "b"}));
    EXPECT_TRUE(eventsOf({""}).empty());
}

TEST(SseParser, SkipsAByteOrderMark) {
    EXPECT_EQ(eventsOf({"\xEF\xBB\xBF"
                        "data: a\n\n"}),
              Events{"a"});
}

TEST(SseParser, EventsDoNotDependOnLineEndsOrChunkBoundaries) {
    const Events wanted{"你好", "a\nb", "[DONE]"};
    for (const std::string end : {"\n", "\r\n", "\r"}) {
        const std::string bytes = ": c" + end + "data: 你好" + end + end + "data: a" + end + "data: b" + end +
                                  end + "data: [DONE]" + end + end;
        for (std::size_t first = 0; first <= bytes.size(); ++first) {
            ASSERT_EQ(eventsOf({bytes.substr(0, first), bytes.substr(first)}), wanted) << first;
        }
        Events single;
        for (const char c : bytes) {
            single.emplace_back(1, c);
        }
        EXPECT_EQ(eventsOf(single), wanted);
    }
}

TEST(ParseDelta, ReadsTheTextOfADelta) {
    const UpstreamDelta delta =
        parseDelta(R"({"choices":[{"index":0,"delta":{"content":"你\n好"},"finish_reason":null}]})");
    EXPECT_TRUE(delta.valid);
    EXPECT_FALSE(delta.finished);
    EXPECT_EQ(delta.text, "你\n好");
}

TEST(ParseDelta, RecognisesTheEnd) {
    EXPECT_TRUE(parseDelta("[DONE]").finished);
    EXPECT_TRUE(parseDelta(R"({"choices":[{"delta":{},"finish_reason":"stop"}]})").finished);
}

TEST(ParseDelta, AcceptsEventsWithoutText) {
    for (const char* data :
         {R"({"choices":[{"delta":{"role":"assistant","content":null}}]})", R"({"choices":[]})",
          R"({"choices":[{"delta":{"reasoning_content":"hm"}}],"usage":{}})", R"({"choices":[{}]})",
          R"({"choices":[null]})", R"({"choices":[{"delta":{"content":3}}]})"}) {
        const UpstreamDelta delta = parseDelta(data);
        EXPECT_TRUE(delta.valid) << data;
        EXPECT_EQ(delta.text, "") << data;
        EXPECT_EQ(delta.error, "") << data;
        EXPECT_FALSE(delta.finished) << data;
    }
}

TEST(ParseDelta, ReadsErrorMessages) {
    EXPECT_EQ(parseDelta(R"({"error":{"message":"quota","type":"x"}})").error, "quota");
    EXPECT_EQ(parseDelta(R"({"error":"overloaded"})").error, "overloaded");
    EXPECT_EQ(parseDelta(R"({"error":{"code":3}})").error, R"({"code":3})");
    EXPECT_TRUE(parseDelta(R"({"error":"x"})").valid);
    EXPECT_EQ(parseDelta(R"({"error":null,"choices":[{"delta":{"content":"a"}}]})").text, "a");
}

TEST(ParseDelta, RejectsMalformedEvents) {
    for (const char* data : {"", "{", "[]", "3", "null", "{}", "<html>", R"({"choices":3})", "\xFF"}) {
        EXPECT_FALSE(parseDelta(data).valid) << data;
    }
}

TEST(ParseCompletion, ReadsACompleteAnswer) {
    EXPECT_EQ(parseCompletion(R"({"choices":[{"message":{"role":"assistant","content":"全部"}}]})").text,
              "全部");
}

}  // namespace
}  // namespace zentri::service
