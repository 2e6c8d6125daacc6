#include <gtest/gtest.h>

#include <QApplication>
#include <QWidget>

#include "tests/view/support/DebugTraces.h"
#include "tests/view/support/PlainTextMeasure.h"
#include "tests/view/support/QtPrinters.h"
#include "tests/view/support/RandomText.h"
#include "view/bubble/ChatTextMeasure.h"

namespace {

constexpr int kSpace = 174;

QFont bubbleFont() {
    QFont font = QApplication::font();
    font.setPointSize(12);
    return font;
}

QSize measured(const QString& text, int textWidth) {
    ChatTextMeasure measure;
    return measure.measureText(text, bubbleFont(), textWidth, kSpace);
}

QSize plain(const QString& text, int textWidth) {
    return PlainTextMeasure::measure(text, bubbleFont(), textWidth, kSpace);
}

/// A font with kerning, unlike the font of the resource set. Replaced by another one if not installed.
QFont kernedFont() {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSize(12);
    return font;
}

int lineHeight() {
    return static_cast<int>(QFontMetricsF(bubbleFont()).lineSpacing());
}

}  // namespace

TEST(ChatTextMeasure, EmptyTextHasThreeSpareRows) {
    EXPECT_EQ(measured(QString(), 300), QSize(kSpace, 3 * lineHeight()));
}

TEST(ChatTextMeasure, ShortLineIsAsWideAsItsText) {
    const QString text = QStringLiteral("画圆用 CIRCLE");
    const int width = static_cast<int>(QFontMetricsF(bubbleFont()).horizontalAdvance(text));
    EXPECT_EQ(measured(text, 500), QSize(kSpace + width, 3 * lineHeight()));
}

TEST(ChatTextMeasure, LineExactlyAsWideAsTheTextWidthDoesNotWrap) {
    const QString text = QStringLiteral("多段线");
    const int width = static_cast<int>(QFontMetricsF(bubbleFont()).horizontalAdvance(text));
    EXPECT_EQ(measured(text, width), QSize(kSpace + width, 3 * lineHeight()));
    EXPECT_GT(measured(text, width - 1).height(), 3 * lineHeight());
}

TEST(ChatTextMeasure, SingleLongLineIsCutIntoPiecesThatOverlapAndGrow) {
    // Piece i begins at i row lengths and is i + 1 row lengths long, so characters are counted repeatedly.
    const QString text = QString(400, QChar(u'图'));
    const QFontMetricsF metrics(bubbleFont());
    const int textWidth = 300;
    const int rows = static_cast<int>(metrics.horizontalAdvance(text) / textWidth);
    const QSize size = measured(text, textWidth);
    EXPECT_EQ(size, plain(text, textWidth));
    EXPECT_GT(size.height(), (rows + 3) * lineHeight());
    EXPECT_EQ(size.width(), kSpace + textWidth);
}

TEST(ChatTextMeasure, TextWithLineBreaksIsMeasuredCharacterByCharacter) {
    const QString line = QString(100, QChar(u'图'));
    const QSize single = measured(line, 300);
    const QSize broken = measured(line + QLatin1Char('\n'), 300);
    EXPECT_EQ(broken, plain(line + QLatin1Char('\n'), 300));
    EXPECT_LT(broken.height(), single.height());
}

TEST(ChatTextMeasure, LeadingAndTrailingLineBreaksCountAsRows) {
    EXPECT_EQ(measured(QStringLiteral("\n"), 300).height(), 4 * lineHeight());
    EXPECT_EQ(measured(QStringLiteral("\n\nA\n\n"), 300).height(), 7 * lineHeight());
}

TEST(ChatTextMeasure, CharacterWiderThanTheTextWidthGetsItsOwnRow) {
    EXPECT_EQ(measured(QStringLiteral("图纸\n图"), 3), plain(QStringLiteral("图纸\n图"), 3));
    EXPECT_EQ(measured(QStringLiteral("图纸\n图"), 3), QSize(kSpace + 3, 5 * lineHeight()));
}

TEST(ChatTextMeasure, ZeroOrNegativeWidthNeitherCrashesNorHangs) {
    const QString line = QString(20000, QChar(u'图'));
    for (const int width : {0, -1, -74, -174, -100000}) {
        for (const QString& text :
             {QString(), QStringLiteral("a"), QStringLiteral("\n"), line, line + QLatin1Char('\n') + line}) {
            const QSize size = measured(text, width);
            EXPECT_LE(size.height(), QWIDGETSIZE_MAX);
            EXPECT_EQ(size.width(), kSpace + std::min(width, 0)) << width;
        }
    }
}

TEST(ChatTextMeasure, ZeroOrNegativeWidthMatchesThePlainRules) {
    for (const int width : {0, -1, -74, -174}) {
        for (const char* text : {"", "a", "AB CD", "\n", "A\nBC\n"}) {
            EXPECT_EQ(measured(QString::fromLatin1(text), width), plain(QString::fromLatin1(text), width))
                << width << " " << text;
        }
    }
}

TEST(ChatTextMeasure, TinyWidthIsLimitedToTheMaximumWidgetHeight) {
    const QString line = QString(100000, QChar(u'图'));
    for (const int width : {1, 2, 5, 16, 40}) {
        EXPECT_LE(measured(line, width).height(), QWIDGETSIZE_MAX);
    }
}

TEST(ChatTextMeasure, TinyWidthMatchesThePlainRules) {
    RandomText random(7);
    for (const int width : {1, 2, 3, 5, 9, 17, 33}) {
        for (int kind = 0; kind < RandomText::KindCount; ++kind) {
            const QString text = random.text(static_cast<RandomText::Kind>(kind), 40);
            EXPECT_EQ(measured(text, width), plain(text, width)) << width << " " << text.toStdString();
        }
    }
}

class ChatTextMeasureRandom : public testing::TestWithParam<int> {};

TEST_P(ChatTextMeasureRandom, MatchesThePlainRules) {
    const auto kind = static_cast<RandomText::Kind>(GetParam());
    RandomText random(1000U + static_cast<unsigned>(GetParam()));
    for (int round = 0; round < 60; ++round) {
        const int width = random.number(60, 760);
        const QString text = random.text(kind, random.number(0, 500));
        ASSERT_EQ(measured(text, width), plain(text, width)) << width << " " << text.toStdString();
    }
}

TEST_P(ChatTextMeasureRandom, MatchesThePlainRulesWhileTextIsAppended) {
    const auto kind = static_cast<RandomText::Kind>(GetParam());
    RandomText random(2000U + static_cast<unsigned>(GetParam()));
    for (int round = 0; round < 6; ++round) {
        const int width = random.number(60, 500);
        const QString text = random.text(kind, random.number(50, 700));
        ChatTextMeasure measure;
        for (int length = 0; length < text.size();) {
            length = std::min(text.size(), length + random.number(1, 40));
            const QString soFar = text.left(length);
            ASSERT_EQ(measure.measureText(soFar, bubbleFont(), width, kSpace), plain(soFar, width))
                << width << " " << soFar.toStdString();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EveryKindOfText, ChatTextMeasureRandom,
                         testing::Range(0, int{RandomText::KindCount}));

TEST(ChatTextMeasure, GrowingLongSingleLineMatchesThePlainRules) {
    // Long enough for the width to be computed in parts.
    RandomText random(42);
    for (const RandomText::Kind kind : {RandomText::Cjk, RandomText::Latin, RandomText::Unbroken}) {
        const QString text = random.text(kind, 2500);
        ChatTextMeasure measure;
        for (int length = 100; length < text.size(); length += 600) {
            const QString soFar = text.left(length);
            ASSERT_EQ(measure.measureText(soFar, bubbleFont(), 260, kSpace), plain(soFar, 260)) << length;
        }
    }
}

TEST(ChatTextMeasure, GrowingSingleLineWithNonAdditiveWidthsMatchesThePlainRules) {
    RandomText random(43);
    QString odd = random.text(RandomText::Hostile, 1800) + random.text(RandomText::Emoji, 900);
    odd.remove(QLatin1Char('\n'));
    const QString marks = QString(900, QChar(0x0E01)) + QString(400, QChar(u'图'));
    for (const QString& text : {odd, marks}) {
        ChatTextMeasure measure;
        for (int length = 500; length < text.size(); length += 400) {
            const QString soFar = text.left(length);
            ASSERT_EQ(measure.measureText(soFar, bubbleFont(), 260, kSpace), plain(soFar, 260)) << length;
        }
    }
}

TEST(ChatTextMeasure, AppendedLineBreakSwitchesToThePerLineRule) {
    ChatTextMeasure measure;
    const QString line = QString(120, QChar(u'图'));
    EXPECT_EQ(measure.measureText(line, bubbleFont(), 300, kSpace), plain(line, 300));
    const QString broken = line + QStringLiteral("\n再来一行");
    EXPECT_EQ(measure.measureText(broken, bubbleFont(), 300, kSpace), plain(broken, 300));
}

TEST(ChatTextMeasure, ChangedWidthFontOrTextIsMeasuredFromTheStart) {
    ChatTextMeasure measure;
    const QString text = RandomText(3).text(RandomText::Mixed, 600);
    measure.measureText(text, bubbleFont(), 300, kSpace);
    EXPECT_EQ(measure.measureText(text, bubbleFont(), 200, kSpace), plain(text, 200));
    QFont larger = bubbleFont();
    larger.setPointSize(20);
    EXPECT_EQ(measure.measureText(text, larger, 200, kSpace),
              PlainTextMeasure::measure(text, larger, 200, kSpace));
    EXPECT_EQ(measure.measureText(QStringLiteral("x"), larger, 200, kSpace),
              PlainTextMeasure::measure(QStringLiteral("x"), larger, 200, kSpace));
}

TEST(ChatTextMeasure, ChangedWidthOrTextOfASingleLineIsMeasuredFromTheStart) {
    ChatTextMeasure measure;
    const QString text = RandomText(4).text(RandomText::Latin, 700);
    measure.measureText(text, bubbleFont(), 300, kSpace);
    EXPECT_EQ(measure.measureText(text, bubbleFont(), 170, kSpace), plain(text, 170));
    EXPECT_EQ(measure.measureText(text, bubbleFont(), 410, kSpace), plain(text, 410));
    const QString other = RandomText(5).text(RandomText::Cjk, 700);
    EXPECT_EQ(measure.measureText(other, bubbleFont(), 410, kSpace), plain(other, 410));
}

TEST(ChatTextMeasure, KerningAcrossInternalCutsIsNotLost) {
    // The true width gives one row; without the kerning at the cuts it would be two.
    const QString text = QStringLiteral("AV").repeated(1500);
    const QFont font = kernedFont();
    const int textWidth = static_cast<int>(QFontMetricsF(font).horizontalAdvance(text) / 2) + 1;
    ChatTextMeasure measure;
    EXPECT_EQ(measure.measureText(text, font, textWidth, kSpace),
              PlainTextMeasure::measure(text, font, textWidth, kSpace));
}

TEST(ChatTextMeasure, AppendedRightToLeftTextAffectsTheWholeLine) {
    const QString neutral = QStringLiteral("'.-/(,").repeated(120);
    const QString whole = neutral + QStringLiteral("עברית");
    const QFont font = kernedFont();
    const qreal width = QFontMetricsF(font).horizontalAdvance(whole);
    for (int rows = 2; rows < 6; ++rows) {
        for (const int around : {0, 1}) {
            const int textWidth = static_cast<int>(width / rows) + around;
            ChatTextMeasure measure;
            measure.measureText(neutral, font, textWidth, kSpace);
            EXPECT_EQ(measure.measureText(whole, font, textWidth, kSpace),
                      PlainTextMeasure::measure(whole, font, textWidth, kSpace));
        }
    }
}

TEST(ChatTextMeasure, SurrogatePairAppendedInHalvesIsOneCharacter) {
    const QString line = QString(700, QChar(u'图'));
    for (const QString& character : {QStringLiteral("\U00010900"), QStringLiteral("\U0001F600")}) {
        const QString whole = line + character + QStringLiteral(" 12.");
        ChatTextMeasure measure;
        for (const int length : {line.size(), line.size() + 1, line.size() + 2, whole.size()}) {
            const QString soFar = whole.left(length);
            EXPECT_EQ(measure.measureText(soFar, bubbleFont(), 300, kSpace), plain(soFar, 300)) << length;
        }
    }
}

TEST(ChatTextMeasure, JoiningLettersBreakWhereThePlainRuleDoes) {
    for (const char* letters : {"abc سا\nx", "ساسا\n", "شن نا\nسن"}) {
        const QString text = QString::fromUtf8(letters);
        for (int width = 4; width < 90; ++width) {
            ASSERT_EQ(measured(text, width), plain(text, width)) << width << " " << letters;
        }
    }
}

TEST(ChatAdvanceTable, RecognisesCharactersThatChangeTheDirection) {
    for (const uint turning : {0x05D0U, 0x0627U, 0x0661U, 0x202AU, 0x202BU, 0x202CU, 0x202DU, 0x202EU,
                               0x2066U, 0x2067U, 0x2068U, 0x2069U, 0x10900U}) {
        EXPECT_TRUE(ChatAdvanceTable::turnsDirection(turning)) << std::hex << turning;
    }
    for (const uint straight : {uint{'A'}, uint{'1'}, uint{' '}, uint{'('}, 0x0301U, 0x0E01U, 0x200BU,
                                0x3002U, 0x56FEU, 0x1F600U}) {
        EXPECT_FALSE(ChatAdvanceTable::turnsDirection(straight)) << std::hex << straight;
    }
}

TEST(ChatTextMeasure, FractionalFontSizesMatchThePlainRules) {
    RandomText random(11);
    for (const qreal points : {8.5, 13.7}) {
        QFont font = bubbleFont();
        font.setPointSizeF(points);
        font.setHintingPreference(QFont::PreferNoHinting);
        for (int round = 0; round < 20; ++round) {
            const QString text =
                random.text(static_cast<RandomText::Kind>(round % RandomText::KindCount), 300);
            const int width = random.number(80, 500);
            ChatTextMeasure measure;
            ASSERT_EQ(measure.measureText(text, font, width, kSpace),
                      PlainTextMeasure::measure(text, font, width, kSpace))
                << width << " " << text.toStdString();
        }
    }
}

TEST(ChatTextMeasure, TracesLongLines) {
    DebugTraces traces;
    const QString text = QString(30, QChar(u'图'));
    const QFontMetricsF metrics(bubbleFont());
    measured(text, 100);
    ASSERT_FALSE(traces.messages().isEmpty());
    EXPECT_EQ(traces.messages().first(), QStringLiteral("fixC0 0 | %1 | \"%2\"")
                                             .arg(static_cast<int>(metrics.horizontalAdvance(text) / 100))
                                             .arg(text));
    traces.messages().clear();
    const int tenCharacters = static_cast<int>(metrics.horizontalAdvance(text.left(10))) + 1;
    measured(QStringLiteral("短\n") + text, tenCharacters);
    ASSERT_EQ(traces.messages().size(), 1);
    EXPECT_TRUE(traces.messages().first().startsWith(QStringLiteral("fixC1 3 | 2 | \"%1\" | \"").arg(text)))
        << traces.messages().first().toStdString();
    EXPECT_EQ(traces.messages().first().count(QStringLiteral("\\n")), 2);
}

TEST(ChatTextMeasure, TracesThePiecesOfASingleLongLine) {
    DebugTraces traces;
    const QString text = QString(30, QChar(u'图'));
    const QFontMetricsF metrics(bubbleFont());
    const int width = static_cast<int>(metrics.horizontalAdvance(text.left(10))) + 1;
    const int perRow = static_cast<int>(width / metrics.horizontalAdvance(QStringLiteral(" ")));
    // A space is narrower than a character, so the first piece contains the whole text.
    ASSERT_GT(perRow, 30);
    measured(text, width);
    ASSERT_EQ(traces.messages().size(), 2);
    const QString ten = text.left(10);
    EXPECT_EQ(traces.messages()[1], QStringLiteral("fixC1 4 | 2 | \"%1\" | \"%2\\n%2\\n%2\"").arg(text, ten));
}

TEST(ChatTextMeasure, TracesOnlyTextMeasuredFromItsStart) {
    DebugTraces traces;
    ChatTextMeasure measure;
    const QString text = QString(30, QChar(u'图'));
    measure.measureText(text, bubbleFont(), 100, kSpace);
    EXPECT_FALSE(traces.messages().isEmpty());
    traces.messages().clear();
    measure.measureText(text + text, bubbleFont(), 100, kSpace);
    EXPECT_TRUE(traces.messages().isEmpty());
}
