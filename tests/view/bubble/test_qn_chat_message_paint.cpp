#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <memory>

#include "tests/view/support/PlainBubblePainter.h"
#include "tests/view/support/QtPrinters.h"
#include "tests/view/support/RandomText.h"
#include "view/bubble/QNChatMessage.h"

namespace {

std::unique_ptr<QNChatMessage> bubbleOf(const QString& text, int kind, int width, bool loading = false) {
    auto bubble = std::make_unique<QNChatMessage>();
    bubble->setFixedWidth(width);
    if (loading) {
        bubble->startAnswerLoading();
        bubble->appendAnswerText(text);
    }
    const QSize size = bubble->fontRect(text);
    bubble->setText(text, QStringLiteral("1700000000"), size, kind);
    bubble->resize(width, size.height());
    return bubble;
}

QImage painted(QNChatMessage& bubble, const QColor& background, const std::vector<QRect>& parts) {
    QImage image(bubble.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(background);
    for (const QRect& part : parts) {
        QPainter painter(&image);
        bubble.render(&painter, part.topLeft(), QRegion(part), QWidget::RenderFlags());
    }
    return image;
}

QImage painted(QNChatMessage& bubble, const QColor& background) {
    return painted(bubble, background, {bubble.rect()});
}

/// The bubble divided into strips, as a scrolled list exposes it.
std::vector<QRect> strips(const QNChatMessage& bubble, int height) {
    std::vector<QRect> parts;
    for (int y = 0; y < bubble.height(); y += height) {
        parts.emplace_back(0, y, bubble.width(), std::min(height, bubble.height() - y));
    }
    return parts;
}

std::string difference(const QImage& a, const QImage& b) {
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (a.pixel(x, y) != b.pixel(x, y)) {
                return "first difference at " + std::to_string(x) + "," + std::to_string(y);
            }
        }
    }
    return "none";
}

void expectPlainPixels(QNChatMessage& bubble) {
    const QColor background(243, 244, 246);
    const QImage expected = PlainBubblePainter::paint(bubble, background);
    const QImage whole = painted(bubble, background);
    EXPECT_EQ(whole, expected) << difference(whole, expected) << "\n" << bubble.msgText().toStdString();
    const QImage inStrips = painted(bubble, background, strips(bubble, 37));
    EXPECT_EQ(inStrips, expected) << difference(inStrips, expected) << "\n" << bubble.msgText().toStdString();
}

void expectPlainRuns(QNChatMessage& bubble) {
    const std::vector<ChatLinkRun> expected = PlainBubblePainter::linkRuns(bubble);
    painted(bubble, Qt::white);
    ASSERT_EQ(bubble.linkRuns().size(), expected.size()) << bubble.msgText().toStdString();
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(bubble.linkRuns()[i].rect, expected[i].rect) << i;
        EXPECT_EQ(bubble.linkRuns()[i].command, expected[i].command) << i;
    }
}

}  // namespace

class QNChatMessagePaintRandom : public testing::TestWithParam<int> {};

TEST_P(QNChatMessagePaintRandom, AnswerMatchesThePixelsAndLinksOfThePlainRules) {
    const auto kind = static_cast<RandomText::Kind>(GetParam());
    RandomText random(3000U + static_cast<unsigned>(GetParam()));
    for (int round = 0; round < 6; ++round) {
        const auto bubble = bubbleOf(random.text(kind, random.number(0, 400)), QNChatMessage::Answer,
                                     random.number(230, 700));
        if (round % 2 == 1) {
            bubble->setColorTheme(0);
        }
        expectPlainPixels(*bubble);
        expectPlainRuns(*bubble);
    }
}

TEST_P(QNChatMessagePaintRandom, QuestionMatchesThePixelsOfThePlainRules) {
    const auto kind = static_cast<RandomText::Kind>(GetParam());
    RandomText random(4000U + static_cast<unsigned>(GetParam()));
    for (int round = 0; round < 6; ++round) {
        const auto bubble = bubbleOf(random.text(kind, random.number(0, 300)), QNChatMessage::Question,
                                     random.number(230, 700));
        if (round % 2 == 1) {
            bubble->setColorTheme(0);
        }
        expectPlainPixels(*bubble);
    }
}

TEST_P(QNChatMessagePaintRandom, GrowingAnswerMatchesThePixelsOfThePlainRules) {
    const auto kind = static_cast<RandomText::Kind>(GetParam());
    RandomText random(5000U + static_cast<unsigned>(GetParam()));
    const QString text = random.text(kind, 300);
    QNChatMessage bubble;
    bubble.setFixedWidth(420);
    bubble.startAnswerLoading();
    for (int from = 0; from < text.size(); from += 60) {
        bubble.appendAnswerText(text.mid(from, 60));
        expectPlainPixels(bubble);
    }
}

INSTANTIATE_TEST_SUITE_P(EveryKindOfText, QNChatMessagePaintRandom,
                         testing::Range(0, int{RandomText::KindCount}));

TEST(QNChatMessagePaint, OtherFontsMatchThePixelsOfThePlainRules) {
    // Families that are not installed are replaced by others.
    RandomText random(77);
    const QString texts[] = {
        QStringLiteral("office waffle fjord AVATAR To. 中文 ") + random.text(RandomText::Latin, 200),
        random.text(RandomText::ManyLines, 120)};
    for (const QString& text : texts) {
        for (const int kind : {int{QNChatMessage::Question}, int{QNChatMessage::Answer}}) {
            const auto bubble = bubbleOf(text, kind, 420);
            expectPlainPixels(*bubble);
            for (const char* family : {"DejaVu Sans", "Liberation Serif", "Noto Serif CJK SC"}) {
                QFont font(QString::fromLatin1(family));
                font.setPointSizeF(13.7);
                bubble->setFont(font);
                bubble->resize(420, bubble->fontRect(text).height());
                expectPlainPixels(*bubble);
            }
        }
    }
}

TEST(QNChatMessagePaint, ParagraphsAffectTheDirectionOfTheirNeighbours) {
    // The direction of a paragraph depends on the whole text, including characters outside the BMP.
    const QString shorter[] = {QStringLiteral("ab, 12."),
                               QStringLiteral("12, 34."),
                               QStringLiteral("עב 12. ab!"),
                               QStringLiteral("(עב)"),
                               QStringLiteral("\U00010900\U00010901 12. ab!"),
                               QStringLiteral("\u202Eab, 12.")};
    const QString longer = QStringLiteral("abc abc abc abc abc, 12.");
    for (const QString& first : shorter) {
        for (const QString& second : shorter) {
            for (const QString& text : {first + QLatin1Char('\n') + second + QLatin1Char('\n') + longer,
                                        longer + QLatin1Char('\n') + first + QLatin1Char('\n') + second}) {
                const auto bubble = bubbleOf(text, QNChatMessage::Question, 420);
                expectPlainPixels(*bubble);
            }
        }
    }
}

TEST(QNChatMessagePaint, EmptyLoadingAnswerShowsTheWaitingText) {
    QNChatMessage bubble;
    bubble.setFixedWidth(420);
    bubble.startAnswerLoading();
    bubble.resize(420, bubble.allSize().height());
    expectPlainPixels(bubble);
    const QRect afterIcon(bubble.rects().textLeftRect.topLeft(), QSize(120, 20));
    QImage blank(afterIcon.size(), QImage::Format_ARGB32_Premultiplied);
    blank.fill(Qt::white);
    EXPECT_NE(painted(bubble, Qt::white).copy(afterIcon), blank);
}

TEST(QNChatMessagePaint, LoadingAnswerShowsNeitherLinksNorIcons) {
    const auto bubble = bubbleOf(QStringLiteral("用【LINE】画线"), QNChatMessage::Answer, 420, true);
    const QImage image = painted(*bubble, Qt::white);
    EXPECT_TRUE(bubble->linkRuns().empty());
    const QRect icons = bubble->rects().copyAnswerRect | bubble->rects().regenRect;
    QImage blank(icons.size(), image.format());
    blank.fill(Qt::white);
    EXPECT_EQ(image.copy(icons), blank);
    bubble->stopAnswerLoading();
    const QImage done = painted(*bubble, Qt::white);
    EXPECT_EQ(bubble->linkRuns().size(), 1U);
    EXPECT_NE(done.copy(icons), blank);
}

TEST(QNChatMessagePaint, AnswerThatLoadsAgainHasNoLinks) {
    const auto bubble = bubbleOf(QStringLiteral("用【LINE】画线"), QNChatMessage::Answer, 420);
    painted(*bubble, Qt::white);
    ASSERT_EQ(bubble->linkRuns().size(), 1U);
    bubble->startAnswerLoading();
    painted(*bubble, Qt::white);
    EXPECT_TRUE(bubble->linkRuns().empty());
}

TEST(QNChatMessagePaint, TimeLineShowsTheLocalTimeCentred) {
    const auto bubble = bubbleOf(QStringLiteral("unused"), QNChatMessage::Time, 420);
    expectPlainPixels(*bubble);
}

TEST(QNChatMessagePaint, OtherKindsPaintNothing) {
    for (const int kind : {0, 4, -1}) {
        const auto bubble = bubbleOf(QStringLiteral("text"), kind, 420);
        QImage blank(bubble->size(), QImage::Format_ARGB32_Premultiplied);
        blank.fill(Qt::white);
        EXPECT_EQ(painted(*bubble, Qt::white), blank) << kind;
    }
}

TEST(QNChatMessagePaint, QuestionFrameIsFilledWithTheThemeColour) {
    const auto bubble = bubbleOf(QStringLiteral("怎样画圆？"), QNChatMessage::Question, 420);
    const QPoint inFrame = bubble->rects().frameRightRect.topLeft() + QPoint(6, 6);
    EXPECT_EQ(painted(*bubble, Qt::white).pixelColor(inFrame), QColor(229, 246, 254));
    bubble->setColorTheme(0);
    EXPECT_EQ(painted(*bubble, Qt::white).pixelColor(inFrame), QColor(51, 51, 51));
}

TEST(QNChatMessagePaint, AnswerHasNoFrameAndQuestionNoAvatar) {
    const auto answer = bubbleOf(QStringLiteral("好"), QNChatMessage::Answer, 420);
    EXPECT_EQ(painted(*answer, Qt::white).pixelColor(answer->rects().frameLeftRect.topLeft() + QPoint(3, 3)),
              QColor(Qt::white));
    const auto question = bubbleOf(QStringLiteral("好"), QNChatMessage::Question, 420);
    const QImage image = painted(*question, Qt::white);
    QImage blank(QSize(40, 40), image.format());
    blank.fill(Qt::white);
    EXPECT_EQ(image.copy(question->rects().iconLeftRect), blank);
}

TEST(QNChatMessagePaint, VeryNarrowBubblesPaintWithoutCrashing) {
    RandomText random(9);
    for (const int width : {1, 60, 150, 174, 175, 180, 190}) {
        for (const int kind : {1, 2, 3}) {
            const auto bubble = bubbleOf(random.text(RandomText::Links, 60), kind, width);
            bubble->resize(width, std::min(bubble->height(), 3000));
            painted(*bubble, Qt::white);
        }
    }
}

TEST(QNChatMessageLinks, UnmatchedOpeningBracketIsNoLink) {
    const auto bubble = bubbleOf(QStringLiteral("输入【LINE 再按回车"), QNChatMessage::Answer, 420);
    painted(*bubble, Qt::white);
    EXPECT_TRUE(bubble->linkRuns().empty());
}

TEST(QNChatMessageLinks, EachMatchedPairOfBracketsIsALink) {
    const auto bubble = bubbleOf(QStringLiteral("【【A】】【B】【"), QNChatMessage::Answer, 420);
    painted(*bubble, Qt::white);
    ASSERT_EQ(bubble->linkRuns().size(), 2U);
    EXPECT_EQ(bubble->linkRuns()[0].command, QStringLiteral("【A"));
    EXPECT_EQ(bubble->linkRuns()[1].command, QStringLiteral("B"));
}

TEST(QNChatMessageLinks, EmptyBracketsAreNoLink) {
    const auto bubble = bubbleOf(QStringLiteral("【】"), QNChatMessage::Answer, 420);
    painted(*bubble, Qt::white);
    EXPECT_TRUE(bubble->linkRuns().empty());
}

TEST(QNChatMessageLinks, WrappedLinkIsOneRunThatCoversBothRowsAndTheGap) {
    // The long line makes the text area as wide as it can be, so the link has to wrap.
    const auto bubble = bubbleOf(QString(12, QChar(u'图')) + QStringLiteral("【多段线多段线】后面的文字") +
                                     QStringLiteral("\n") + QString(40, QChar(u'图')),
                                 QNChatMessage::Answer, 460);
    painted(*bubble, Qt::white);
    ASSERT_EQ(bubble->linkRuns().size(), 1U);
    const QRect run = bubble->linkRuns()[0].rect;
    const QFontMetrics metrics(bubble->font());
    EXPECT_EQ(run.height(), metrics.lineSpacing() + metrics.height());
    EXPECT_EQ(run.left(), bubble->rects().textLeftRect.left());
    EXPECT_EQ(bubble->linkRuns()[0].command, QStringLiteral("多段线多段线"));
}

TEST(QNChatMessageLinks, LineBreakSplitsALinkIntoTwoRuns) {
    const auto bubble = bubbleOf(QStringLiteral("【LI\nNE】"), QNChatMessage::Answer, 460);
    painted(*bubble, Qt::white);
    ASSERT_EQ(bubble->linkRuns().size(), 2U);
    EXPECT_EQ(bubble->linkRuns()[0].command, QStringLiteral("LI\nNE"));
    EXPECT_EQ(bubble->linkRuns()[1].command, QStringLiteral("LI\nNE"));
    EXPECT_LT(bubble->linkRuns()[0].rect.bottom(), bubble->linkRuns()[1].rect.bottom());
}

TEST(QNChatMessageLinks, ConsecutiveLinksWithTheSameCommandAreOneRun) {
    const auto bubble = bubbleOf(QStringLiteral("【LINE】或【LINE】"), QNChatMessage::Answer, 460);
    painted(*bubble, Qt::white);
    ASSERT_EQ(bubble->linkRuns().size(), 1U);
}

TEST(QNChatMessageLinks, LinksAreUnderlinedAndInTheLinkColour) {
    const auto bubble = bubbleOf(QStringLiteral("【HHH】"), QNChatMessage::Answer, 460);
    const QImage image = painted(*bubble, Qt::white);
    ASSERT_EQ(bubble->linkRuns().size(), 1U);
    const QRect run = bubble->linkRuns()[0].rect;
    bool underlined = false;
    for (int y = run.top(); y <= run.bottom() && !underlined; ++y) {
        underlined = true;
        for (int x = run.left(); x <= run.right(); ++x) {
            underlined = underlined && image.pixelColor(x, y) == QColor(0, 0, 255);
        }
    }
    EXPECT_TRUE(underlined);
}

TEST(QNChatMessageLinks, RunsAreThoseOfTheLastPaint) {
    const auto bubble =
        bubbleOf(QStringLiteral("很长的一段文字在这里【LINE】\n第二行"), QNChatMessage::Answer, 460);
    painted(*bubble, Qt::white);
    ASSERT_EQ(bubble->linkRuns().size(), 1U);
    const QRect before = bubble->linkRuns()[0].rect;
    bubble->setFixedWidth(260);
    bubble->fontRect(bubble->msgText());
    EXPECT_EQ(bubble->linkRuns()[0].rect, before);
    painted(*bubble, Qt::white);
    EXPECT_NE(bubble->linkRuns()[0].rect, before);
}
