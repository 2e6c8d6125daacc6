#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <random>

#include "chat/ZR_AiChatEventSplitter.h"
#include "tests/chat/PlainEventSplitter.h"

namespace {

QStringList takeAll(ZR_AiChatEventSplitter& splitter) {
    QStringList texts;
    QString text;
    while (splitter.takeEvent(text)) {
        texts.append(text);
    }
    return texts;
}

QStringList split(const QByteArray& bytes) {
    ZR_AiChatEventSplitter splitter;
    splitter.append(bytes);
    return takeAll(splitter);
}

/// Bytes in which event ends, field names and multi-byte characters are frequent, both whole and truncated.
QByteArray randomStream(std::mt19937& random) {
    static const QByteArray pieces[] = {
        "\n",   "\n\n", "data:", "data: ", "dat",   "a:",     "da",
        "ta:",  "\r\n", "你好",  "【",     "😀",     "\xE4",   "\xBD\xA0",
        "\xFF", "id:7", " ",     "abc",    "Data:", ": ping", QByteArray(1, '\0')};
    std::uniform_int_distribution<std::size_t> which(0, std::size(pieces) - 1);
    std::uniform_int_distribution<int> length(0, 40);
    QByteArray stream;
    for (int i = length(random); i > 0; --i) {
        stream += pieces[which(random)];
    }
    return stream;
}

}  // namespace

TEST(EventSplitter, KeepsTheBlankAfterData) {
    EXPECT_EQ(split("data: 你好\n\n"), QStringList{QStringLiteral(" 你好")});
}

TEST(EventSplitter, KeepsLineBreaksWithinAnEvent) {
    EXPECT_EQ(split("data:a\ndata:b\n\n"), QStringList{QStringLiteral("a\nb")});
}

TEST(EventSplitter, ReturnsTwoEventsOfOneChunkInOrder) {
    EXPECT_EQ(split("data:a\n\ndata:b\n\n"), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
}

TEST(EventSplitter, HoldsBackAnEventUntilItsEmptyLineArrives) {
    ZR_AiChatEventSplitter splitter;
    splitter.append("data:ab");
    EXPECT_TRUE(takeAll(splitter).isEmpty());
    splitter.append("c\n");
    EXPECT_TRUE(takeAll(splitter).isEmpty());
    EXPECT_EQ(splitter.pendingSize(), 9);
    splitter.append("\nd");
    EXPECT_EQ(takeAll(splitter), QStringList{QStringLiteral("abc")});
    EXPECT_EQ(splitter.pendingSize(), 1);
    EXPECT_EQ(splitter.pendingTail(10), "d");
}

TEST(EventSplitter, RemovesFieldNamesInsideTheTextToo) {
    EXPECT_EQ(split("data:see data: here\n\n"), QStringList{QStringLiteral("see  here")});
}

TEST(EventSplitter, KeepsAFieldNameThatARemovalForms) {
    EXPECT_EQ(split("dadata:ta:x\n\n"), QStringList{QStringLiteral("data:x")});
}

TEST(EventSplitter, KeepsOtherFieldsAndOtherCase) {
    EXPECT_EQ(split("event: message\nid: 1\n: ping\nDATA:x\n\n"),
              QStringList{QStringLiteral("event: message\nid: 1\n: ping\nDATA:x")});
}

TEST(EventSplitter, ReturnsAnEmptyTextForAnEmptyEvent) {
    EXPECT_EQ(split("data:a\n\n\n\ndata:b\n\n"),
              (QStringList{QStringLiteral("a"), QString(), QStringLiteral("b")}));
}

TEST(EventSplitter, TreatsAThirdLineFeedAsPartOfTheNextEvent) {
    EXPECT_EQ(split("a\n\n\nb\n\n"), (QStringList{QStringLiteral("a"), QStringLiteral("\nb")}));
}

TEST(EventSplitter, DoesNotRecogniseCarriageReturns) {
    EXPECT_TRUE(split("data:a\r\n\r\n").isEmpty());
    EXPECT_EQ(split("data:a\r\n\r\ndata:b\n\n"), QStringList{QStringLiteral("a\r\n\r\nb")});
}

TEST(EventSplitter, DoesNotRecogniseAnEndMarker) {
    EXPECT_EQ(split("data:[DONE]\n\ndata:x\n\n"),
              (QStringList{QStringLiteral("[DONE]"), QStringLiteral("x")}));
}

TEST(EventSplitter, DecodesACharacterSplitBetweenChunks) {
    ZR_AiChatEventSplitter splitter;
    QStringList texts;
    for (const char byte : QByteArrayLiteral("data:你好\n\n")) {
        splitter.append(QByteArray(1, byte));
        texts += takeAll(splitter);
    }
    EXPECT_EQ(texts, QStringList{QStringLiteral("你好")});
    EXPECT_EQ(splitter.pendingSize(), 0);
}

TEST(EventSplitter, EqualsThePlainRuleAtEverySplitPosition) {
    std::mt19937 random(20240607);
    for (int round = 0; round < 300; ++round) {
        const QByteArray stream = randomStream(random);
        PlainEventSplitter whole;
        const QStringList expected = whole.takeChunk(stream);
        for (int cut = 0; cut <= stream.size(); ++cut) {
            ZR_AiChatEventSplitter splitter;
            splitter.append(stream.left(cut));
            QStringList texts = takeAll(splitter);
            splitter.append(stream.mid(cut));
            texts += takeAll(splitter);
            ASSERT_EQ(texts, expected) << "round " << round << ", cut at " << cut;
            ASSERT_EQ(splitter.pendingSize(), whole.pendingSize()) << "round " << round << ", cut at " << cut;
        }
    }
}

TEST(EventSplitter, EqualsThePlainRuleChunkByChunk) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> chunkSize(1, 9);
    ZR_AiChatEventSplitter splitter;
    PlainEventSplitter plain;
    for (int round = 0; round < 300; ++round) {
        const QByteArray stream = randomStream(random);
        for (int at = 0; at < stream.size();) {
            const int size = chunkSize(random);
            const QByteArray chunk = stream.mid(at, size);
            at += size;
            splitter.append(chunk);
            ASSERT_EQ(takeAll(splitter), plain.takeChunk(chunk)) << "round " << round;
            ASSERT_EQ(splitter.pendingSize(), plain.pendingSize()) << "round " << round;
        }
    }
}

TEST(EventSplitter, ReturnsEventsOneByOneWhileMoreBytesArrive) {
    ZR_AiChatEventSplitter splitter;
    QStringList expected;
    QStringList texts;
    QString text;
    for (int i = 0; i < 2000; ++i) {
        expected.append(QString::number(2 * i));
        expected.append(QString::number(2 * i + 1));
        splitter.append("data:" + QByteArray::number(2 * i) + "\n\ndata:" + QByteArray::number(2 * i + 1) +
                        "\n\n");
        ASSERT_TRUE(splitter.takeEvent(text));
        texts.append(text);
    }
    texts += takeAll(splitter);
    EXPECT_EQ(texts, expected);
}

TEST(EventSplitter, RemovesVeryManyFieldNamesInLinearTime) {
    // Removing them one by one would move the rest of the text each time, which takes minutes.
    const int count = 400000;
    const QByteArray stream = QByteArray("data:x").repeated(count) + "\n\n";
    QElapsedTimer timer;
    timer.start();
    const QStringList texts = split(stream);
    EXPECT_LT(timer.elapsed(), 10000);
    ASSERT_EQ(texts.size(), 1);
    EXPECT_EQ(texts.first(), QString(count, QLatin1Char('x')));
}
