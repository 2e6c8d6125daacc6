#include <gtest/gtest.h>

#include <random>

#include "service/EventWriter.h"
#include "service/Text.h"
#include "tests/service/PlainClient.h"

namespace zentri::service {
namespace {

std::string bytesOf(const std::vector<std::string>& events) {
    std::string bytes;
    for (const std::string& event : events) {
        bytes += event;
    }
    return bytes;
}

std::string asReceived(const std::string& text) {
    PlainClient client;
    client.receive(bytesOf(EventWriter::eventsOf(text)));
    EXPECT_EQ(client.unfinished(), "") << text;
    return client.answer();
}

TEST(EventWriter, WritesNoSpaceAfterTheFieldName) {
    EXPECT_EQ(EventWriter::eventsOf("你好"), std::vector<std::string>{"data:你好\n\n"});
    EXPECT_EQ(EventWriter::eventsOf(" x"), std::vector<std::string>{"data: x\n\n"});
}

TEST(EventWriter, WritesSeveralLinesAsOneEvent) {
    EXPECT_EQ(EventWriter::eventsOf("a\nb"), std::vector<std::string>{"data:a\ndata:b\n\n"});
}

TEST(EventWriter, EmptyLinesDoNotEndTheEventEarly) {
    EXPECT_EQ(EventWriter::eventsOf("a\n\n\nb"),
              std::vector<std::string>{"data:a\ndata:\ndata:\ndata:b\n\n"});
}

TEST(EventWriter, KeepsLeadingAndTrailingLineFeeds) {
    for (const char* text : {"\n", "\n\n", "\n\n\n", "a\n", "a\n\n", "\na", "\n\na\n\n"}) {
        EXPECT_EQ(asReceived(text), text);
    }
}

TEST(EventWriter, EmptyTextProducesNoEvent) {
    EXPECT_TRUE(EventWriter::eventsOf("").empty());
}

TEST(EventWriter, SplitsALiteralFieldNameAcrossTwoEvents) {
    EXPECT_EQ(EventWriter::eventsOf("see data: here"),
              (std::vector<std::string>{"data:see data\n\n", "data:: here\n\n"}));
    for (const char* text :
         {"data:", "data:data:", "dadata:ta:", "data:\ndata:\n\ndata:", "ddata::", "a data:"}) {
        EXPECT_EQ(asReceived(text), text);
    }
}

TEST(EventWriter, ClientLosesALiteralFieldNameInASingleEvent) {
    PlainClient client;
    client.receive(EventWriter::event("see data: here", "\n"));
    EXPECT_EQ(client.answer(), "see  here");
}

TEST(EventWriter, WritesCrLfLineEndsOnRequest) {
    EXPECT_EQ(EventWriter::event("a\nb", "\r\n"), "data:a\r\ndata:b\r\n\r\n");
}

/// Random mixtures of the difficult cases: consecutive line feeds, fragments of the field name, spaces,
/// multi-byte characters.
TEST(EventWriter, RandomTextsInRandomPiecesArriveUnchanged) {
    constexpr const char* kParts[] = {"\n", "\n",       "\n\n", "data:", "data",   ":",  "da",    "ta:", " ",
                                      "圆", "【LINE】", "😀",    "a",     "event:", "\t", "id: 3", "。"};
    std::mt19937 random(20240531);
    for (int round = 0; round < 4000; ++round) {
        std::string text;
        for (auto parts = random() % 40; parts > 0; --parts) {
            text += kParts[random() % std::size(kParts)];
        }
        PlainClient client;
        std::string_view rest = text;
        while (!rest.empty()) {
            const std::string_view piece = firstCodePoints(rest, 1 + random() % 7);
            rest.remove_prefix(piece.size());
            const std::string bytes = bytesOf(EventWriter::eventsOf(piece));
            const std::size_t cut = random() % (bytes.size() + 1);
            client.receive(bytes.substr(0, cut));
            client.receive(bytes.substr(cut));
        }
        ASSERT_EQ(client.answer(), text);
        ASSERT_EQ(client.unfinished(), "");
        for (const std::string& event : client.events()) {
            ASSERT_TRUE(isValidUtf8(event));
        }
    }
}

}  // namespace
}  // namespace zentri::service
