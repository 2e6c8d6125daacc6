#include <gtest/gtest.h>

#include <QApplication>
#include <QDateTime>
#include <QHoverEvent>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QToolButton>

#include "sidebar/ZR_AiChatChatBoxPage.h"
#include "sidebar/ZR_AiChatChatBoxPageContentLabel.h"
#include "tests/view/support/PaletteViewTest.h"
#include "view/theme/ChatTitleLabel.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

// No theme rule matches this value.
constexpr int kUnknownTheme = 5;

/// A widget with only this style sheet on the background, as an image.
template <typename Widget>
QImage lookOf(const QSize& size, const QString& sheet, const QColor& background) {
    QWidget parent;
    QPalette palette = parent.palette();
    palette.setColor(QPalette::Window, background);
    parent.setPalette(palette);
    parent.resize(size);
    auto* widget = new Widget(&parent);
    widget->setStyleSheet(sheet);
    widget->resize(size);
    return grabbed(parent);
}

/// The panel with the side bar open and one earlier session in it, in each theme.
class ThemeRows : public PaletteViewTest, public testing::WithParamInterface<int> {
protected:
    ThemeRows() {
        loadHistory({{QStringLiteral("a"), {QStringLiteral("Q")}, QDateTime::currentSecsSinceEpoch()}});
        m_view.toolBtnHistoricalChat_clicked(false);
        finishAnimations();
        // Visible only while the bar is closed.
        named<QToolButton>("toolButton_HistoricalChat")->show();
        named<QPushButton>("pushButton_NewChat")->show();
        m_view.setColorTheme(GetParam());
        settle();
    }

    static QColor row(const QColor& light, const QColor& dark, const QColor& unknown) {
        return GetParam() == kLightTheme ? light : GetParam() == kDarkTheme ? dark : unknown;
    }
    /// The style-sheet declaration for the icon of the theme; empty for an unknown theme.
    static QString image(const char* name) {
        if (GetParam() == kUnknownTheme) {
            return QString();
        }
        return QStringLiteral("image: url(:/res/img/%1%2.png);")
            .arg(QLatin1String(name), QLatin1String(GetParam() == kDarkTheme ? "-Dark" : ""));
    }
    static QColor defaultOf(QPalette::ColorRole role) { return QApplication::palette().color(role); }
    static QColor textOf(const QWidget& widget) { return widget.palette().color(widget.foregroundRole()); }
    static QImage leftHalf(const QImage& image) {
        return image.copy(0, 0, image.width() / 2, image.height());
    }

    /// Backgrounds of the panel and of the side bar's frame.
    static QColor panelBackground() { return row("#FFFFFF", "#000000", defaultOf(QPalette::Window)); }
    static QColor barBackground() {
        return row(QColor(243, 244, 246), QColor(37, 37, 40), panelBackground());
    }
    /// The widget as it appears in the panel.
    QImage seen(const QWidget& widget) {
        const QRect place(widget.mapTo(&m_view, QPoint()), widget.size());
        return m_view.grab(place).toImage().convertToFormat(QImage::Format_RGB32);
    }
    QListWidget* dated() const { return named<QListWidget>("listWidget_DatedChats"); }
    ChatTitleLabel* entry() const { return named<ChatTitleLabel>("frame_bottomLabel"); }

    /// Colour of an empty row of the message list in that state.
    QColor itemColour(bool hovered, bool selected) {
        list()->clear();
        auto* item = new QListWidgetItem(list());
        item->setSizeHint(QSize(100, 40));
        settle();
        const QRect place = list()->visualItemRect(item);
        list()->setSelectionMode(QAbstractItemView::SingleSelection);
        item->setSelected(selected);
        QHoverEvent hover(hovered ? QEvent::HoverMove : QEvent::HoverLeave,
                          hovered ? place.center() : QPoint(-1, -1), QPoint(-1, -1));
        QCoreApplication::sendEvent(list()->viewport(), &hover);
        return grabbed(*list()->viewport()).pixelColor(place.center());
    }
};

}  // namespace

TEST_P(ThemeRows, MainViewHasTheThemeColours) {
    EXPECT_EQ(grabbed(m_view).pixelColor(2, 2), panelBackground());
    EXPECT_EQ(textOf(m_view), row("#000000", "#FFFFFF", defaultOf(QPalette::WindowText)));
}

TEST_P(ThemeRows, MessageListHasTheThemeBackgroundAndPadding) {
    EXPECT_EQ(grabbed(*list()->viewport()).pixelColor(1, 1),
              row(QColor(243, 244, 246), QColor(37, 37, 40), defaultOf(QPalette::Base)));
    EXPECT_EQ(list()->viewport()->pos(), QPoint(5, 5));
    EXPECT_EQ(list()->viewport()->height(), list()->height() - 10);
}

TEST_P(ThemeRows, MessageListHasNoFocusOutline) {
    list()->clear();
    auto* item = new QListWidgetItem(list());
    item->setSizeHint(QSize(100, 40));
    settle();
    const QImage rest = grabbed(*list()->viewport());
    list()->setCurrentItem(item);
    m_view.activateWindow();
    ASSERT_TRUE(waitFor([&] { return m_view.isActiveWindow(); }));
    list()->setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(list()->hasFocus());
    list()->clearSelection();
    EXPECT_EQ(grabbed(*list()->viewport()), rest);
}

TEST_P(ThemeRows, MessageListItemsHaveTheThemeHoverAndSelectionColours) {
    const QColor rest = itemColour(false, false);
    EXPECT_EQ(rest, row(QColor(243, 244, 246), QColor(37, 37, 40), defaultOf(QPalette::Base)));
    if (GetParam() == kUnknownTheme) {
        for (const char* colour : {"#d4e4eb", "#484e50", "#d0e0e6", "#5a6164"}) {
            EXPECT_NE(itemColour(true, false), QColor(colour));
            EXPECT_NE(itemColour(false, true), QColor(colour));
        }
        return;
    }
    EXPECT_EQ(itemColour(true, false), row("#d4e4eb", "#484e50", QColor()));
    EXPECT_EQ(itemColour(false, true), row("#d0e0e6", "#5a6164", QColor()));
}

TEST_P(ThemeRows, HistoryButtonShowsTheThemeIcon) {
    const auto* button = named<QToolButton>("toolButton_HistoricalChat");
    const QString sheet = QStringLiteral("background: transparent; border: none; padding: 2px;");
    EXPECT_EQ(seen(*button), lookOf<QToolButton>(button->size(), sheet + image("Expand"), panelBackground()));
}

TEST_P(ThemeRows, SendButtonShowsTheThemeIconAndIsRounded) {
    auto* button = named<QToolButton>("toolButton_Send");
    EXPECT_EQ(button->parentWidget(), named<QFrame>("frame_Input"));
    const QString sheet = QStringLiteral("border: none; border-radius: 12px;") + image("ChatSend");
    EXPECT_EQ(seen(*button),
              lookOf<QToolButton>(button->size(), sheet + QStringLiteral("background: transparent;"),
                                  panelBackground()));
    // The border radius is visible only with a background colour.
    button->setStyleSheet(button->styleSheet() + QStringLiteral("QToolButton { background: #ff0000; }"));
    button->setFixedSize(24, 24);
    settle();
    EXPECT_EQ(seen(*button),
              lookOf<QToolButton>(button->size(), sheet + QStringLiteral("background: #ff0000;"),
                                  panelBackground()));
}

TEST_P(ThemeRows, BubbleButtonsShowTheThemeIcons) {
    // In bubbles every value other than zero is light.
    const QString suffix = QLatin1String(GetParam() == kDarkTheme ? "-Dark" : "");
    const QColor background(120, 130, 140);
    list()->clear();
    list()->addQuestion(QStringLiteral("Q"));
    list()->addAnswer(QStringLiteral("A"));
    settle();
    const auto expectIcon = [&](int number, const QRect& place, const QString& name) {
        QImage shown(bubble(number)->size(), QImage::Format_RGB32);
        shown.fill(background);
        bubble(number)->render(&shown, QPoint(), QRegion(), QWidget::RenderFlags());
        QImage expected(place.size(), QImage::Format_RGB32);
        expected.fill(background);
        QPainter painter(&expected);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(expected.rect(), QPixmap(QStringLiteral(":/res/img/%1%2.png").arg(name, suffix)));
        painter.end();
        EXPECT_EQ(shown.copy(place), expected) << name.toStdString();
    };
    expectIcon(0, bubble(0)->rects().copyQuestionRect, QStringLiteral("ChatCopy"));
    expectIcon(0, bubble(0)->rects().editRect, QStringLiteral("ChatEdit"));
    expectIcon(1, bubble(1)->rects().copyAnswerRect, QStringLiteral("ChatCopy"));
    expectIcon(1, bubble(1)->rects().regenRect, QStringLiteral("ChatRegen"));
}

TEST_P(ThemeRows, DateHeadingIsBoldInTheThemeTextColour) {
    auto* heading = named<QLabel>("label_PageFilterDate");
    EXPECT_EQ(textOf(*heading), row("#000000", "#FFFFFF", defaultOf(QPalette::WindowText)));
    EXPECT_EQ(heading->font().pixelSize(), 14);
    EXPECT_TRUE(heading->font().bold());
    QLabel plain(heading->text());
    plain.setStyleSheet(QStringLiteral("font: bold 14px; padding: 1px;"));
    EXPECT_EQ(heading->sizeHint(), plain.sizeHint());
}

TEST_P(ThemeRows, DatedChatsAreTransparentWithTheThemeTextColour) {
    EXPECT_EQ(dated()->palette().color(QPalette::Text), row("#000000", "#FFFFFF", defaultOf(QPalette::Text)));
    EXPECT_EQ(dated()->font().pixelSize(), 14);
    EXPECT_EQ(dated()->viewport()->pos(), QPoint(9, 9));
    // Transparent and without a border, so the frame of the side bar shows.
    const QFrame* frame = named<QFrame>("frame");
    const QImage image = grabbed(*named<QFrame>("frame"));
    const QPoint corner = dated()->mapTo(frame, QPoint(0, 0));
    EXPECT_EQ(image.pixelColor(corner), image.pixelColor(frame->width() / 2, frame->height() - 5));
    EXPECT_EQ(image.pixelColor(corner + QPoint(4, 4)),
              image.pixelColor(frame->width() / 2, frame->height() - 5));
}

TEST_P(ThemeRows, SessionEntryHasTheThemeTextColour) {
    EXPECT_EQ(textOf(*entry()), row("#000000", "#FFFFFF", defaultOf(QPalette::WindowText)));
    EXPECT_EQ(entry()->font().pixelSize(), 14);
}

TEST_P(ThemeRows, HoveredSessionEntryHasTheThemeHoverColour) {
    dated()->clearSelection();
    entry()->setText(QString());
    const QImage rest = seen(*entry());
    entry()->setAttribute(Qt::WA_UnderMouse, true);
    const QImage hovered = seen(*entry());
    if (GetParam() == kUnknownTheme) {
        EXPECT_EQ(hovered, rest);
        return;
    }
    const QString colour = row("#d0e0e6", "#363a3c", QColor()).name();
    const QString sheet =
        QStringLiteral("background-color: %1; border: 1px inset %1; border-radius: 8px;").arg(colour);
    EXPECT_EQ(leftHalf(hovered), leftHalf(lookOf<QLabel>(entry()->size(), sheet, barBackground())));
}

TEST_P(ThemeRows, SideBarFrameHasTheThemeBackground) {
    const QFrame* frame = named<QFrame>("frame");
    EXPECT_EQ(seen(*frame).pixelColor(frame->width() / 2, frame->height() - 2), barBackground());
}

TEST_P(ThemeRows, SearchIconFollowsTheTheme) {
    const auto* icon = named<QLabel>("label_IconSearch");
    const QString sheet = QStringLiteral("background: transparent; padding: 9px 6px;");
    EXPECT_EQ(seen(*icon), lookOf<QLabel>(icon->size(), sheet + image("ChatSearch"), barBackground()));
}

TEST_P(ThemeRows, CloseBarButtonShowsTheThemeIcon) {
    const auto* button = named<QToolButton>("toolButton_CloseBar");
    const QString sheet = QStringLiteral("background: transparent; border: none; padding: 0 4px 0 8px;");
    EXPECT_EQ(seen(*button),
              lookOf<QToolButton>(button->size(), sheet + image("Retract"), panelBackground()));
}

TEST_P(ThemeRows, HistoryBoxIsTransparent) {
    const auto* box = named<QWidget>("widget_ChatBox");
    const QColor colour = box->palette().color(box->backgroundRole());
    if (GetParam() == kUnknownTheme) {
        EXPECT_EQ(colour, defaultOf(QPalette::Window));
        return;
    }
    EXPECT_EQ(colour, row(QColor(30, 30, 30, 0), QColor(200, 200, 200, 0), QColor()));
}

TEST_P(ThemeRows, ActionButtonHasTheSameColoursInAllThemes) {
    auto* button = named<QPushButton>("pushButton_NewChat");
    const QString base =
        QStringLiteral("border-radius: 15px; padding: 1px 12px; font: 14px; color: #000000;");
    const auto look = [&](const char* colours) {
        return lookOf<QPushButton>(button->size(), base + QLatin1String(colours), panelBackground());
    };
    button->setText(QString());
    EXPECT_EQ(seen(*button), look("background-color: #80baf5; border: 2px solid #e5f6fe;"));
    EXPECT_EQ(button->font().pixelSize(), 14);
    EXPECT_EQ(textOf(*button), QColor("#000000"));
    hover(*button);
    EXPECT_EQ(seen(*button), look("background-color: #d0e0e6; border: 2px inset #d0e0e6;"));
    button->setAttribute(Qt::WA_UnderMouse, false);
    button->setDown(true);
    EXPECT_EQ(seen(*button), look("background-color: #4A90C7; border: 2px inset #2E5570;"));
    button->setDown(false);
    button->setEnabled(false);
    EXPECT_EQ(seen(*button), look("background-color: #B0E0E6; border: 2px solid #A9A9A9;"));
    EXPECT_EQ(button->palette().color(QPalette::Disabled, QPalette::ButtonText), QColor("#808080"));
}

TEST_P(ThemeRows, InputFrameHasTheSameBlueInAllThemes) {
    auto* frame = named<QFrame>("frame_Input");
    qDeleteAll(frame->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
    const QString sheet = QStringLiteral("border: 2px solid #3c88f0; border-radius: 5px;");
    EXPECT_EQ(seen(*frame), lookOf<QFrame>(frame->size(), sheet, panelBackground()));
}

TEST_P(ThemeRows, ScrollBarIsThinAndRound) {
    for (int i = 0; i < 12; ++i) {
        list()->addQuestion(QStringLiteral("filler"));
    }
    settle();
    auto* bar = list()->verticalScrollBar();
    ASSERT_TRUE(bar->isVisible());
    EXPECT_EQ(bar->width(), 8);
    const QImage image = grabbed(*bar);
    const QColor handle = row("#c8ccd2", "#55585e", QColor());
    if (GetParam() == kUnknownTheme) {
        EXPECT_EQ(pixelsOf(image, "#c8ccd2") + pixelsOf(image, "#55585e"), 0);
        return;
    }
    EXPECT_EQ(image.pixelColor(4, 6), handle);
    EXPECT_NE(image.pixelColor(0, 0), handle);
    EXPECT_NE(image.pixelColor(7, 0), handle);
    EXPECT_NE(image.pixelColor(4, bar->height() - 2), handle);
}

TEST_P(ThemeRows, WidgetCreatedAfterAThemeChangeIsLightUntilTheThemeIsReapplied) {
    ZR_AiChatChatBoxPage late(&m_view);
    auto* heading = late.findChild<QLabel*>(QStringLiteral("label_PageFilterDate"));
    heading->ensurePolished();
    EXPECT_EQ(textOf(*heading), QColor("#000000"));
    reapplyOwnTheme(&m_view);
    EXPECT_EQ(textOf(*heading), row("#000000", "#FFFFFF", defaultOf(QPalette::WindowText)));
}

TEST_P(ThemeRows, RebuiltHistoryHasTheCurrentTheme) {
    loadHistory({{QStringLiteral("b"), {QStringLiteral("Q2")}, QDateTime::currentSecsSinceEpoch()}});
    const auto* heading = named<QLabel>("label_PageFilterDate");
    EXPECT_EQ(textOf(*heading), row("#000000", "#FFFFFF", defaultOf(QPalette::WindowText)));
    EXPECT_EQ(entry()->text(), QStringLiteral("Q2"));
    EXPECT_EQ(textOf(*entry()), row("#000000", "#FFFFFF", defaultOf(QPalette::WindowText)));
}

INSTANTIATE_TEST_SUITE_P(LightDarkAndUnknown, ThemeRows,
                         testing::Values(kLightTheme, kDarkTheme, kUnknownTheme));
