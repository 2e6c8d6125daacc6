// The look of the side bar's widgets in the light, the dark and an unknown theme.

#include <gtest/gtest.h>

#include <QLabel>
#include <QLayout>
#include <QListWidget>
#include <QPushButton>
#include <QTextEdit>
#include <QToolButton>

#include "host/core/ZR_ZentriText.h"
#include "sidebar/ZR_AiChatChatBoxPage.h"
#include "sidebar/ZR_AiChatChatBoxPageContentLabel.h"
#include "sidebar/ZR_AiChatSideBar.h"
#include "sidebar/ZR_AiChatSideBarSearchInputDlg.h"
#include "tests/view/support/ProbePalette.h"
#include "tests/view/support/QtPrinters.h"
#include "tests/view/support/ServiceTest.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

constexpr int kUnknownTheme = 9;
const QColor kProbeText = ProbePalette::text();
const QColor kProbeBackground = ProbePalette::background();

/// Bounding rectangle of the pixels that are not the background.
QRect inkOf(const QImage& image, const QColor& background) {
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != background) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    return ink;
}

class SideBarLook : public ServiceTest {
protected:
    SideBarLook() {
        m_bar.resize(370, 710);
        m_bar.setProperty("animationWidth", 370);
        m_bar.show();
        settle();
    }

    void setTheme(int theme) {
        applyThemeProperty(&m_bar, kColorThemeProperty, theme);
        settle();
    }
    /// The widget as it appears on the bar, which shows where the widget is transparent.
    QImage look(const QWidget& widget) {
        return grabbed(m_bar).copy(QRect(widget.mapTo(&m_bar, QPoint()), widget.size()));
    }
    template <typename Widget>
    Widget& named(const char* name) const {
        return *childNamed<Widget>(m_bar, name);
    }

    ProbePalette m_probe;
    FakePalette m_palette;
    ZR_AiChatSideBar m_bar;
};

}  // namespace

TEST_F(SideBarLook, ProductNameFollowsTheThemeAndTheLogoIsAlwaysShown) {
    auto& name = named<QLabel>("label_ProductName");
    EXPECT_EQ(name.font().pixelSize(), 14);
    const struct {
        int theme;
        QColor text;
    } rows[] = {{1, Qt::black}, {0, Qt::white}, {kUnknownTheme, kProbeText}};
    for (const auto& row : rows) {
        setTheme(row.theme);
        EXPECT_EQ(name.palette().color(QPalette::WindowText), row.text) << row.theme;
        auto& logo = named<QLabel>("label_IconMain");
        EXPECT_GT(inkOf(look(logo), kProbeBackground).width(), 15) << row.theme;
    }
}

TEST_F(SideBarLook, CloseButtonMovesItsImageWhenHoveredAndPressed) {
    auto& close = named<QToolButton>("toolButton_CloseBar");
    setTheme(kUnknownTheme);
    EXPECT_TRUE(inkOf(look(close), kProbeBackground).isEmpty());
    for (const int theme : {1, 0}) {
        setTheme(theme);
        const QRect rest = inkOf(look(close), kProbeBackground);
        ASSERT_FALSE(rest.isEmpty());
        // The padding is 8 pixels on the left and 4 on the right.
        EXPECT_NEAR(rest.center().x(), close.rect().center().x() + 2, 1);
        hover(close);
        EXPECT_NEAR(inkOf(look(close), kProbeBackground).center().x(), rest.center().x() + 1, 1);
        close.setAttribute(Qt::WA_UnderMouse, false);
        close.setDown(true);
        EXPECT_NEAR(inkOf(look(close), kProbeBackground).center().x(), rest.center().x() + 1, 1);
        EXPECT_NE(inkOf(look(close), kProbeBackground), rest);
        close.setDown(false);
        EXPECT_EQ(inkOf(look(close), kProbeBackground), rest);
    }
}

TEST_F(SideBarLook, CloseButtonWouldShowTextInBlueAndGrey) {
    auto& close = named<QToolButton>("toolButton_CloseBar");
    close.setText(QStringLiteral("■■■■"));
    setTheme(kUnknownTheme);
    EXPECT_GT(pixelsOf(look(close), kProbeText), 20);
    hover(close);
    EXPECT_GT(pixelsOf(look(close), QColor("#3498DB")), 20);
    close.setDown(true);
    EXPECT_GT(pixelsOf(look(close), QColor("#2980B9")), 20);
    close.setDown(false);
    close.setEnabled(false);
    EXPECT_GT(pixelsOf(look(close), QColor("#BDC3C7")), 20);
}

TEST_F(SideBarLook, NewChatButtonIsTheSameInEveryTheme) {
    auto& button = named<QPushButton>("pushButton_NewChat");
    const QPoint inside(button.width() / 4, button.height() / 2);
    for (const int theme : {1, 0, kUnknownTheme}) {
        setTheme(theme);
        const QImage rest = look(button);
        EXPECT_EQ(rest.pixelColor(inside), QColor("#80baf5"));
        for (const int y : {0, 1}) {
            EXPECT_EQ(rest.pixelColor(button.width() / 2, y), QColor("#e5f6fe"));
        }
        EXPECT_EQ(rest.pixelColor(button.width() / 2, 2), QColor("#80baf5"));
        // A border radius of 15 does not paint the corner.
        EXPECT_EQ(rest.pixelColor(3, 3), kProbeBackground);
        EXPECT_EQ(rest.pixelColor(16, 0), QColor("#e5f6fe"));
        EXPECT_EQ(button.font().pixelSize(), 14);
        EXPECT_EQ(button.palette().color(QPalette::ButtonText), QColor(Qt::black));
        const QRect text = inkOf(rest.copy(80, 4, 200, button.height() - 8), QColor("#80baf5"));
        EXPECT_NEAR(text.center().x() + 80, button.width() / 2, 2);

        hover(button);
        EXPECT_EQ(look(button).pixelColor(inside), QColor("#d0e0e6"));
        EXPECT_NE(look(button).pixelColor(button.width() / 2, 1), QColor("#e5f6fe"));
        button.setAttribute(Qt::WA_UnderMouse, false);
        button.setDown(true);
        const QImage pressed = look(button);
        EXPECT_EQ(pressed.pixelColor(inside), QColor("#4A90C7"));
        EXPECT_EQ(pressed.pixelColor(button.width() / 2, 1), QColor("#2E5570"));
        // The padding at the top and on the left moves the centred text.
        const QRect moved = inkOf(pressed.copy(80, 4, 200, button.height() - 8), QColor("#4A90C7"));
        EXPECT_NEAR(moved.left(), text.left() + 3, 1);
        EXPECT_GT(moved.top(), text.top());
        button.setDown(false);
        button.setEnabled(false);
        EXPECT_EQ(look(button).pixelColor(inside), QColor("#B0E0E6"));
        EXPECT_EQ(look(button).pixelColor(button.width() / 2, 0), QColor("#A9A9A9"));
        button.setEnabled(true);
    }
}

TEST_F(SideBarLook, SearchRowFollowsTheTheme) {
    auto& frame = named<QFrame>("frame");
    auto& box = named<QTextEdit>("textEdit_SearchText");
    auto& icon = named<QLabel>("label_IconSearch");
    const struct {
        int theme;
        QColor background;
        QColor base;
        QColor text;
    } rows[] = {{1, QColor(243, 244, 246), Qt::white, Qt::black},
                {0, QColor(37, 37, 40), Qt::black, Qt::white},
                {kUnknownTheme, kProbeBackground, kProbeBackground, kProbeText}};
    QImage icons[3];
    int i = 0;
    for (const auto& row : rows) {
        setTheme(row.theme);
        const QImage image = look(frame);
        // Without a border the background extends to the edge.
        for (const QPoint& edge : {QPoint(0, 300), QPoint(frame.width() - 1, 300),
                                   QPoint(200, frame.height() - 1), QPoint(2, 200)}) {
            EXPECT_EQ(image.pixelColor(edge), row.background) << row.theme;
        }
        EXPECT_EQ(box.palette().color(QPalette::Text), row.text) << row.theme;
        const QImage search = look(box);
        EXPECT_EQ(search.pixelColor(100, search.height() / 2), row.base) << row.theme;
        for (const int y : {0, 1, search.height() - 1, search.height() - 2}) {
            EXPECT_EQ(search.pixelColor(100, y), QColor("#3c88f0")) << row.theme;
        }
        EXPECT_NE(search.pixelColor(100, 2), QColor("#3c88f0"));
        for (const int x : {0, 1, search.width() - 11, search.width() - 12}) {
            EXPECT_EQ(search.pixelColor(x, search.height() / 2), QColor("#3c88f0")) << row.theme;
        }
        EXPECT_NE(search.pixelColor(search.width() - 10, search.height() / 2), QColor("#3c88f0"));
        EXPECT_NE(search.pixelColor(0, 0), QColor("#3c88f0"));
        icons[i++] = look(icon);
        EXPECT_EQ(inkOf(icons[i - 1], row.background).isEmpty(), row.theme == kUnknownTheme);
    }
    EXPECT_NE(icons[0], icons[1]);
}

TEST_F(SideBarLook, HistoryBoxIsTransparent) {
    auto& box = named<QWidget>("widget_ChatBox");
    for (const int theme : {1, 0, kUnknownTheme}) {
        setTheme(theme);
        const QImage image = look(named<QFrame>("frame"));
        const QColor background = image.pixelColor(2, 200);
        EXPECT_EQ(image.pixelColor(box.geometry().center()), background);
        EXPECT_EQ(image.pixelColor(box.geometry().topLeft()), background);
        EXPECT_EQ(image.pixelColor(box.geometry().bottomRight()), background);
    }
}

TEST_F(SideBarLook, PageHeadingAndListFollowTheTheme) {
    ZR_AiChatChatBoxPage page;
    page.resize(300, 200);
    page.show();
    page.addEntry(_T("a"), _T("title"));
    page.adjustHeight();
    auto* heading = page.findChild<QLabel*>(QStringLiteral("label_PageFilterDate"));
    auto* list = page.findChild<QListWidget*>(QStringLiteral("listWidget_DatedChats"));
    const struct {
        int theme;
        QColor text;
    } rows[] = {{1, Qt::black}, {0, Qt::white}, {kUnknownTheme, kProbeText}};
    for (const auto& row : rows) {
        applyThemeProperty(&page, kColorThemeProperty, row.theme);
        settle();
        EXPECT_EQ(heading->palette().color(QPalette::WindowText), row.text);
        EXPECT_EQ(heading->font().pixelSize(), 14);
        EXPECT_TRUE(heading->font().bold());
        EXPECT_EQ(heading->contentsRect(), heading->rect().adjusted(1, 1, -1, -1));
        EXPECT_EQ(list->palette().color(QPalette::Text), row.text);
        EXPECT_EQ(list->font().pixelSize(), 14);
        EXPECT_FALSE(list->font().bold());
        // There is no border, only 9 pixels of padding.
        EXPECT_EQ(list->viewport()->geometry().topLeft(), QPoint(9, 9));
        EXPECT_EQ(list->viewport()->width(), list->width() - 18);
        const QImage image = grabbed(page);
        EXPECT_EQ(image.pixelColor(list->geometry().bottomRight()), kProbeBackground);
        EXPECT_EQ(image.pixelColor(list->geometry().topLeft()), kProbeBackground);
        EXPECT_EQ(image.pixelColor(list->geometry().topLeft() + QPoint(200, 25)), kProbeBackground);
    }
}

TEST_F(SideBarLook, EntryFollowsTheThemeAtRestHoveredAndDisabled) {
    ZR_AiChatChatBoxPageContentLabel entry;
    entry.setTitle(_T("title"));
    entry.resize(240, 30);
    entry.show();
    settle();
    auto* label = entry.findChild<QLabel*>(QStringLiteral("frame_bottomLabel"));
    const struct {
        int theme;
        QColor text;
        QColor hover;
    } rows[] = {{1, Qt::black, QColor("#d0e0e6")},
                {0, Qt::white, QColor("#363a3c")},
                {kUnknownTheme, kProbeText, kProbeBackground}};
    for (const auto& row : rows) {
        applyThemeProperty(&entry, kColorThemeProperty, row.theme);
        settle();
        EXPECT_EQ(label->palette().color(QPalette::WindowText), row.text);
        EXPECT_EQ(label->font().pixelSize(), 14);
        EXPECT_EQ(label->contentsRect(), label->rect().adjusted(1, 1, -1, -1));
        const QImage rest = grabbed(entry);
        EXPECT_EQ(rest.pixelColor(150, 15), kProbeBackground);
        EXPECT_EQ(rest.pixelColor(150, 0), kProbeBackground);
        const int textLeft = inkOf(rest.copy(0, 2, 120, 26), kProbeBackground).left();
        EXPECT_LT(textLeft, 20);
        EXPECT_GT(pixelsOf(rest, row.text), 3);
        label->setAttribute(Qt::WA_UnderMouse, true);
        const QImage hovered = grabbed(entry);
        for (const QPoint& place : {QPoint(150, 15), QPoint(150, 3), QPoint(236, 15), QPoint(8, 1)}) {
            EXPECT_EQ(hovered.pixelColor(place), row.hover) << row.theme;
        }
        // A border radius of 8 does not paint the corners.
        EXPECT_EQ(hovered.pixelColor(1, 1), kProbeBackground);
        EXPECT_EQ(hovered.pixelColor(238, 28), kProbeBackground);
        label->setAttribute(Qt::WA_UnderMouse, false);
        entry.setEnabled(false);
        EXPECT_EQ(grabbed(entry).pixelColor(150, 15), QColor("#B0E0E6"));
        EXPECT_EQ(grabbed(entry).pixelColor(150, 0), QColor("#B0E0E6"));
        EXPECT_EQ(label->palette().color(QPalette::Disabled, QPalette::WindowText), QColor("#808080"));
        entry.setEnabled(true);
    }
}

TEST_F(SideBarLook, OptionsButtonIsTheSameInEveryTheme) {
    ZR_AiChatChatBoxPageContentLabel entry;
    entry.resize(240, 40);
    entry.show();
    settle();
    auto* button = entry.findChild<QToolButton*>(QStringLiteral("toolButton_option"));
    const auto dots = [&] {
        return grabbed(entry).copy(QRect(button->mapTo(&entry, QPoint()), button->size()));
    };
    for (const int theme : {1, 0, kUnknownTheme}) {
        applyThemeProperty(&entry, kColorThemeProperty, theme);
        settle();
        EXPECT_TRUE(inkOf(dots(), kProbeBackground).isEmpty()) << "the dots must not be visible at rest";
        const int middle = button->height() / 2;
        hover(*button);
        const QImage hovered = dots();
        EXPECT_EQ(hovered.pixelColor(button->width() / 2, 3), QColor("#c3d2d7"));
        EXPECT_EQ(hovered.pixelColor(3, middle), QColor("#c3d2d7"));
        // A border radius of 8 does not paint the corner.
        EXPECT_EQ(hovered.pixelColor(1, 1), kProbeBackground);
        EXPECT_LT(darkestGray(hovered), 100);
        button->setDown(true);
        EXPECT_EQ(dots().pixelColor(button->width() / 2, 3), QColor("#b6c4c8"));
        button->setDown(false);
        button->setAttribute(Qt::WA_UnderMouse, false);
    }
}

TEST_F(SideBarLook, EntryHasAPressedRuleThatALabelNeverShows) {
    // A QLabel is never in the pressed state, so the rule has no visible effect.
    EXPECT_TRUE(ZR_AiChatChatBoxPageContentLabel::styleSheetText().contains(QStringLiteral(
        "QLabel:pressed { background-color: #4A90C7; border: 2px inset #2E5570; padding-top: 4px; "
        "padding-left: 4px; }")));
}

TEST_F(SideBarLook, SearchBoxesHaveAViewportRuleWithoutVisibleEffect) {
    const QString rule = QStringLiteral("QTextEdit QWidget { border-radius: 10px; margin: 1px; }");
    EXPECT_TRUE(named<QTextEdit>("textEdit_SearchText").styleSheet().contains(rule));
    const ZR_AiChatSideBarSearchInputDlg dialog;
    EXPECT_TRUE(dialog.findChild<QTextEdit*>()->styleSheet().contains(rule));
    EXPECT_TRUE(
        dialog.findChild<QTextEdit*>()->styleSheet().contains(QStringLiteral("background-clip: padding;")));
    EXPECT_TRUE(named<QTextEdit>("textEdit_SearchText")
                    .styleSheet()
                    .contains(QStringLiteral("background-clip: padding;")));
}

TEST_F(SideBarLook, SearchDialogHasItsFrameAndBoxColours) {
    ZR_AiChatSideBarSearchInputDlg dialog;
    dialog.show();
    settle();
    const auto* outer = dialog.layout();
    const auto* frame = dialog.findChild<QFrame*>(QStringLiteral("frame"));
    EXPECT_EQ(frame->frameShape(), QFrame::StyledPanel);
    EXPECT_EQ(frame->frameShadow(), QFrame::Raised);
    EXPECT_EQ(frame->geometry(), dialog.rect());
    const auto* inner = frame->layout();
    EXPECT_EQ(inner->objectName(), QStringLiteral("verticalLayout_2"));
    for (const QLayout* layout : {outer, inner}) {
        EXPECT_EQ(layout->spacing(), 6);
        EXPECT_EQ(layout->contentsMargins(), QMargins());
        EXPECT_EQ(layout->sizeConstraint(), QLayout::SetNoConstraint);
    }
    const QImage image = grabbed(dialog);
    EXPECT_EQ(image.pixelColor(599, 200), QColor(250, 251, 255));
    EXPECT_EQ(image.pixelColor(0, 0), QColor(250, 251, 255));
    for (const int x : {0, 1, 588, 589}) {
        EXPECT_EQ(image.pixelColor(x, 200), QColor("#bc9cd9")) << x;
    }
    EXPECT_NE(image.pixelColor(590, 200), QColor("#bc9cd9"));
    EXPECT_EQ(image.pixelColor(300, 200), QColor(Qt::white));
    // A border radius of 12 does not paint the corner.
    EXPECT_NE(image.pixelColor(3, 2), QColor("#bc9cd9"));
}
