#include <gtest/gtest.h>

#include <thread>

#include "service/ChatStream.h"
#include "tests/service/PlainClient.h"

namespace zentri::service {
namespace {

using namespace std::chrono_literals;

/// An in-memory connection that fails on request: after a number of writes, or when `gone`.
struct MemoryConnection {
    std::string bytes;
    int writes = 0;
    int breakAfter = -1;
    bool gone = false;

    ChatStream::Connection link() {
        return {[this](std::string_view data) {
                    if (gone || writes == breakAfter) {
                        return false;
                    }
                    bytes += data;
                    ++writes;
                    return true;
                },
                [this] { return !gone; }};
    }

    PlainClient client() const {
        PlainClient client;
        client.receive(bytes);
        return client;
    }
};

RequestFaults faults(std::initializer_list<const char*> texts) {
    std::vector<Fault> list;
    for (const char* text : texts) {
        list.push_back(parseFault(std::string("chat:") + text));
    }
    return RequestFaults(list);
}

struct Fixture {
    explicit Fixture(std::initializer_list<const char*> texts = {})
        : stream(connection.link(), stop, faults(texts)) {}

    MemoryConnection connection;
    StopSignal stop;
    ChatStream stream;
};

TEST(ChatStream, WritesEachPieceImmediately) {
    Fixture f;
    EXPECT_TRUE(f.stream.write("你"));
    EXPECT_EQ(f.connection.bytes, "data:你\n\n");
    EXPECT_TRUE(f.stream.write("好\n"));
    EXPECT_EQ(f.connection.writes, 2);
    EXPECT_EQ(f.stream.finish(), ChatStream::End::Proper);
    EXPECT_EQ(f.connection.client().answer(), "你好\n");
    EXPECT_EQ(f.stream.delivered(), "你好\n");
}

TEST(ChatStream, NormalisesLineEndsToLf) {
    Fixture f;
    f.stream.write("a\r");
    f.stream.write("\nb\r");
    f.stream.finish();
    EXPECT_EQ(f.stream.delivered(), "a\nb\n");
    EXPECT_EQ(f.connection.client().answer(), "a\nb\n");
    EXPECT_EQ(f.connection.bytes.find('\r'), std::string::npos);
}

TEST(ChatStream, EndsWhenTheClientDisconnectsAndKeepsWhatWasSent) {
    Fixture f;
    f.connection.breakAfter = 1;
    EXPECT_TRUE(f.stream.write("一"));
    EXPECT_FALSE(f.stream.write("二"));
    EXPECT_FALSE(f.stream.write("三"));
    EXPECT_EQ(f.stream.finish(), ChatStream::End::Cut);
    EXPECT_EQ(f.stream.delivered(), "一");
}

TEST(ChatStream, PauseEndsWhenTheClientDisconnects) {
    Fixture f;
    f.connection.gone = true;
    EXPECT_FALSE(f.stream.pause(24h));
}

TEST(ChatStream, PauseEndsWhenTheServiceStops) {
    Fixture f;
    std::thread stopper([&] { f.stop.stop(); });
    EXPECT_FALSE(f.stream.pause(24h));
    stopper.join();
    EXPECT_EQ(f.stream.finish(), ChatStream::End::Cut);
}

TEST(ChatStreamFaults, CutAfterSendsThatManyEvents) {
    Fixture f{"cut-after=2"};
    EXPECT_TRUE(f.stream.write("一"));
    EXPECT_TRUE(f.stream.write("二"));
    EXPECT_FALSE(f.stream.write("三"));
    EXPECT_EQ(f.stream.finish(), ChatStream::End::Cut);
    EXPECT_EQ(f.connection.bytes, "data:一\n\ndata:二\n\n");
    EXPECT_EQ(f.stream.delivered(), "一二");
}

TEST(ChatStreamFaults, CutInEventSendsHalfOfTheNextEvent) {
    Fixture f{"cut-in-event=1"};
    EXPECT_TRUE(f.stream.write("abcd"));
    EXPECT_FALSE(f.stream.write("efgh"));
    EXPECT_EQ(f.stream.finish(), ChatStream::End::Cut);
    EXPECT_EQ(f.connection.client().events().size(), 1U);
    EXPECT_EQ(f.connection.client().unfinished(), "data:");
}

TEST(ChatStreamFaults, CutInCharWaitsForAMultiByteCharacter) {
    Fixture f{"cut-in-char=0"};
    EXPECT_TRUE(f.stream.write("abc"));
    EXPECT_FALSE(f.stream.write("x圆"));
    EXPECT_EQ(f.stream.finish(), ChatStream::End::Cut);
    const std::string rest = f.connection.client().unfinished();
    EXPECT_EQ(rest, "data:x\xE5");
    EXPECT_FALSE(isValidUtf8(rest));
}

TEST(ChatStreamFaults, EndInEventEndsTheReplyProperly) {
    Fixture f{"end-in-event=0"};
    EXPECT_FALSE(f.stream.write("abcd"));
    EXPECT_EQ(f.stream.finish(), ChatStream::End::Proper);
    EXPECT_TRUE(f.connection.client().events().empty());
    EXPECT_FALSE(f.connection.client().unfinished().empty());
}

TEST(ChatStreamFaults, CrLfEventsAreNotRecognisedByTheClient) {
    Fixture f{"crlf"};
    f.stream.write("a\nb");
    EXPECT_EQ(f.stream.finish(), ChatStream::End::Proper);
    EXPECT_EQ(f.connection.bytes, "data:a\r\ndata:b\r\n\r\n");
    EXPECT_TRUE(f.connection.client().events().empty());
}

TEST(ChatStreamFaults, EmptyEventsPrecedeTheAnswer) {
    Fixture f{"empty-events=3"};
    f.stream.write("a");
    EXPECT_EQ(f.connection.client().events(), (std::vector<std::string>{"", "", "", "a"}));
}

TEST(ChatStreamFaults, InvalidUtf8EventPrecedesTheAnswer) {
    Fixture f{"invalid-utf8"};
    f.stream.write("a");
    ASSERT_EQ(f.connection.client().events().size(), 2U);
    EXPECT_FALSE(isValidUtf8(f.connection.client().events()[0]));
}

TEST(ChatStreamFaults, HugeEventRepeatsTheAnswerInOneEvent) {
    Fixture f{"huge-event=10000"};
    f.stream.write("圆");
    f.stream.write("弧");
    EXPECT_EQ(f.connection.bytes, "");
    EXPECT_EQ(f.stream.finish(), ChatStream::End::Proper);
    ASSERT_EQ(f.connection.client().events().size(), 1U);
    EXPECT_GE(f.connection.client().answer().size(), 10000U);
    EXPECT_EQ(f.connection.client().answer().substr(0, 12), "圆弧圆弧");
}

TEST(ChatStreamFaults, NeverEndingAnswerRepeatsUntilTheClientDisconnects) {
    Fixture f{"never-ending"};
    f.connection.breakAfter = 20;
    f.stream.write("圆");
    EXPECT_EQ(f.stream.finish(), ChatStream::End::Cut);
    EXPECT_EQ(f.connection.client().events().size(), 20U);
    EXPECT_EQ(f.stream.delivered(), "圆");
}

TEST(ChatStreamFaults, NeverEndingAnswerEndsWhenTheServiceStops) {
    Fixture f{"never-ending"};
    f.stream.write("圆");
    std::thread stopper([&] { f.stop.stop(); });
    EXPECT_EQ(f.stream.finish(), ChatStream::End::Cut);
    stopper.join();
}

}  // namespace
}  // namespace zentri::service
