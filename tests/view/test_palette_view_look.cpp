#include <gtest/gtest.h>

#include <QGraphicsOpacityEffect>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include "tests/view/support/PaletteViewTest.h"

// Side bar

TEST_F(PaletteViewTest, OpeningShowsTheBarAndStartsBothAnimations) {
    QTest::mouseClick(named<QToolButton>("toolButton_HistoricalChat"), Qt::LeftButton);
    EXPECT_TRUE(shown("widget_SideBar"));
    EXPECT_FALSE(shown("line"));
    EXPECT_TRUE(shown("line_2"));
    EXPECT_FALSE(shown("toolButton_HistoricalChat"));
    EXPECT_FALSE(shown("pushButton_NewChat"));
    EXPECT_EQ(animation("animationWidth")->state(), QAbstractAnimation::Running);
    EXPECT_EQ(animation("animationWidth")->startValue().toInt(), 0);
    EXPECT_EQ(animation("animationWidth")->endValue().toInt(), 250);
    EXPECT_EQ(animation("opacity")->state(), QAbstractAnimation::Running);
    EXPECT_EQ(animation("opacity")->startValue().toDouble(), 0.0);
    EXPECT_EQ(animation("opacity")->endValue().toDouble(), 1.0);
    finishAnimations();
    EXPECT_EQ(sideBar()->animationWidth(), 250);
    EXPECT_EQ(qobject_cast<QGraphicsOpacityEffect*>(sideBar()->graphicsEffect())->opacity(), 1.0);
    EXPECT_TRUE(shown("widget_SideBar"));
}

TEST_F(PaletteViewTest, ClosingHidesTheBarOnlyWhenItsAnimationHasFinished) {
    m_view.toolBtnHistoricalChat_clicked(false);
    finishAnimations();
    QTest::mouseClick(sideBar()->findChild<QToolButton*>(QStringLiteral("toolButton_CloseBar")),
                      Qt::LeftButton);
    EXPECT_TRUE(shown("widget_SideBar"));
    EXPECT_TRUE(shown("toolButton_HistoricalChat"));
    EXPECT_TRUE(shown("line"));
    EXPECT_TRUE(shown("pushButton_NewChat"));
    EXPECT_FALSE(shown("line_2"));
    EXPECT_EQ(animation("animationWidth")->startValue().toInt(), 250);
    EXPECT_EQ(animation("animationWidth")->endValue().toInt(), 0);
    EXPECT_EQ(animation("opacity")->startValue().toDouble(), 1.0);
    EXPECT_EQ(animation("opacity")->endValue().toDouble(), 0.0);
    finishAnimations();
    EXPECT_FALSE(shown("widget_SideBar"));
}

TEST_F(PaletteViewTest, SecondPressReversesFromTheConfiguredStartValue) {
    m_view.toolBtnHistoricalChat_clicked(false);
    animation("animationWidth")->setCurrentTime(200);
    animation("opacity")->setCurrentTime(200);
    m_view.toolBtnHistoricalChat_clicked(false);
    EXPECT_EQ(animation("animationWidth")->currentTime(), 0);
    EXPECT_EQ(animation("opacity")->currentTime(), 0);
    EXPECT_EQ(sideBar()->animationWidth(), 250);
    EXPECT_EQ(animation("opacity")->currentValue().toDouble(), 1.0);
    EXPECT_EQ(animation("animationWidth")->state(), QAbstractAnimation::Running);
}

TEST_F(PaletteViewTest, BarReopenedWhileClosingStaysVisible) {
    m_view.toolBtnHistoricalChat_clicked(false);
    finishAnimations();
    m_view.toolBtnHistoricalChat_clicked(false);
    animation("animationWidth")->setCurrentTime(400);
    m_view.toolBtnHistoricalChat_clicked(false);
    finishAnimations();
    EXPECT_TRUE(shown("widget_SideBar"));
}

TEST_F(PaletteViewTest, AnimationsRunToTheirEnd) {
    QSignalSpy finished(animation("animationWidth"), &QPropertyAnimation::finished);
    m_view.toolBtnHistoricalChat_clicked(false);
    EXPECT_TRUE(waitFor([&] { return finished.count() == 1; }));
    EXPECT_EQ(sideBar()->animationWidth(), 250);
}

TEST_F(PaletteViewTest, BubblesTakeTheNewWidthWhenTheAnimationEnds) {
    list()->addQuestion(QStringLiteral("a"));
    const int before = bubble(0)->width();
    m_view.toolBtnHistoricalChat_clicked(false);
    animation("animationWidth")->setCurrentTime(799);
    settle();
    EXPECT_EQ(bubble(0)->width(), before);
    EXPECT_LT(list()->width(), before - 150);
    finishAnimations();
    EXPECT_EQ(bubble(0)->width(), list()->width());
}

TEST_F(PaletteViewTest, BubblesFitTheListEvenIfTheAnimationSkippedFrames) {
    list()->addQuestion(QStringLiteral("a"));
    for (int i = 0; i < 2; ++i) {
        m_view.toolBtnHistoricalChat_clicked(false);
        settle();
        animation("animationWidth")->setCurrentTime(400);
        settle();
        finishAnimations();
        settle();
        EXPECT_EQ(bubble(0)->width(), list()->width()) << i;
    }
}

TEST_F(PaletteViewTest, ResizeAloneDoesNotRemeasureAsIntended) {
    list()->addQuestion(QStringLiteral("a"));
    const int before = bubble(0)->width();
    m_view.resize(420, 673);
    settle();
    EXPECT_EQ(bubble(0)->width(), before);
    m_view.relayoutMessages();
    EXPECT_EQ(bubble(0)->width(), list()->width());
}

TEST_F(PaletteViewTest, ViewGeometryIsRelativeToTheParent) {
    QWidget parent;
    ZR_ZentriPaletteView view(&parent);
    view.setGeometry(13, 17, 400, 300);
    EXPECT_EQ(view.viewGeometry(), QRect(13, 17, 400, 300));
}

// Themes

TEST_F(PaletteViewTest, ThemeReachesEveryWidgetAndBubble) {
    list()->addQuestion(QStringLiteral("a"));
    m_view.setColorTheme(0);
    for (const QWidget* widget : m_view.findChildren<QWidget*>()) {
        EXPECT_EQ(widget->property("ZR_ColorTheme").toInt(), 0) << widget->objectName().toStdString();
    }
    EXPECT_EQ(bubble(0)->textColor(), QColor(229, 246, 254));
    m_view.setColorTheme(1);
    EXPECT_EQ(bubble(0)->textColor(), QColor(51, 51, 51));
    m_view.setColorTheme(0);
    list()->addAnswer(QStringLiteral("b"));
    EXPECT_EQ(bubble(1)->textColor(), QColor(229, 246, 254));
}

TEST_F(PaletteViewTest, VisibleBubblesAreRepaintedInTheNewTheme) {
    list()->addQuestion(QStringLiteral("a"));
    settle();
    PaintCounter paints(bubble(0));
    settle();
    ASSERT_EQ(paints.count(), 0);
    m_view.setColorTheme(0);
    settle();
    EXPECT_GT(paints.count(), 0);
}

class PaletteViewColours : public PaletteViewTest {
protected:
    QColor background(const char* name) const {
        QWidget* widget = named<QWidget>(name);
        return grabbed(*widget).pixelColor(widget->width() / 2, widget->height() - 3);
    }
    QImage iconOf(const char* name) const { return grabbed(*named<QWidget>(name)); }
};

TEST_F(PaletteViewColours, LightThemeHasItsColours) {
    m_view.setColorTheme(1);
    EXPECT_EQ(grabbed(m_view).pixelColor(2, 2), QColor("#FFFFFF"));
    EXPECT_EQ(m_view.palette().color(m_view.foregroundRole()), QColor("#000000"));
    EXPECT_EQ(background("listWidget_ChatView"), QColor(243, 244, 246));
    EXPECT_EQ(title()->palette().color(QPalette::WindowText), QColor("#000000"));
    EXPECT_EQ(input()->palette().color(QPalette::Text), QColor("#000000"));
    EXPECT_EQ(background("textEdit_userInput"), QColor("#FFFFFF"));
}

TEST_F(PaletteViewColours, DarkThemeHasItsColours) {
    m_view.setColorTheme(0);
    EXPECT_EQ(grabbed(m_view).pixelColor(2, 2), QColor("#000000"));
    EXPECT_EQ(m_view.palette().color(m_view.foregroundRole()), QColor("#FFFFFF"));
    EXPECT_EQ(background("listWidget_ChatView"), QColor(37, 37, 40));
    EXPECT_EQ(title()->palette().color(QPalette::WindowText), QColor("#FFFFFF"));
    EXPECT_EQ(input()->palette().color(QPalette::Text), QColor("#FFFFFF"));
    EXPECT_EQ(background("textEdit_userInput"), QColor("#000000"));
}

TEST_F(PaletteViewColours, UnknownThemeMatchesNoThemeRule) {
    const ZR_ZentriPaletteView plain;
    m_view.setColorTheme(5);
    const QColor list = background("listWidget_ChatView");
    EXPECT_NE(list, QColor(243, 244, 246));
    EXPECT_NE(list, QColor(37, 37, 40));
    // Rules without a theme selector still apply: the input frame is blue.
    const QWidget* frame = named<QFrame>("frame_Input");
    EXPECT_EQ(grabbed(*named<QFrame>("frame_Input")).pixelColor(frame->width() / 2, 0), QColor("#3c88f0"));
}

TEST_F(PaletteViewColours, InputFrameIsBlueInBothThemes) {
    for (const int theme : {0, 1}) {
        m_view.setColorTheme(theme);
        const QImage image = grabbed(*named<QFrame>("frame_Input"));
        EXPECT_EQ(image.pixelColor(image.width() / 2, 0), QColor("#3c88f0"));
        EXPECT_EQ(image.pixelColor(image.width() / 2, 1), QColor("#3c88f0"));
        EXPECT_NE(image.pixelColor(0, 0), QColor("#3c88f0"));
    }
}

TEST_F(PaletteViewColours, PlaceholderIsGreyFromTheStartAndInEveryTheme) {
    const QColor grey(138, 143, 153);
    EXPECT_EQ(input()->palette().color(QPalette::PlaceholderText), grey);
    for (const int theme : {0, 1, 5}) {
        m_view.setColorTheme(theme);
        EXPECT_EQ(input()->palette().color(QPalette::PlaceholderText), grey) << theme;
        EXPECT_GT(pixelsOf(grabbed(*input()), grey), 0) << theme;
    }
}

TEST_F(PaletteViewColours, PairedIconsChangeWithTheTheme) {
    for (const char* name : {"toolButton_HistoricalChat", "toolButton_Send"}) {
        m_view.setColorTheme(1);
        const QImage light = iconOf(name);
        m_view.setColorTheme(0);
        const QImage dark = iconOf(name);
        EXPECT_NE(light, dark) << name;
        m_view.setColorTheme(5);
        const QImage none = iconOf(name);
        EXPECT_NE(none, light) << name;
        EXPECT_NE(none, dark) << name;
    }
}

TEST_F(PaletteViewColours, NewChatButtonHasTheActionColours) {
    auto* button = named<QPushButton>("pushButton_NewChat");
    const auto colour = [&] { return grabbed(*button).pixelColor(button->width() / 2, 4); };
    for (const int theme : {0, 1, 5}) {
        m_view.setColorTheme(theme);
        EXPECT_EQ(colour(), QColor("#80baf5"));
        EXPECT_EQ(grabbed(*button).pixelColor(button->width() / 2, 0), QColor("#e5f6fe"));
    }
    hover(*button);
    EXPECT_EQ(colour(), QColor("#d0e0e6"));
    button->setAttribute(Qt::WA_UnderMouse, false);
    button->setDown(true);
    EXPECT_EQ(colour(), QColor("#4A90C7"));
    button->setDown(false);
    button->setEnabled(false);
    EXPECT_EQ(colour(), QColor("#B0E0E6"));
    EXPECT_EQ(grabbed(*button).pixelColor(button->width() / 2, 0), QColor("#A9A9A9"));
    EXPECT_EQ(button->palette().color(QPalette::Disabled, QPalette::ButtonText), QColor("#808080"));
}

TEST_F(PaletteViewColours, HoveredAndSelectedItemsHaveTheThemeColours) {
    const struct {
        int theme;
        QColor hover;
        QColor selected;
    } rows[] = {{1, QColor("#d4e4eb"), QColor("#d0e0e6")}, {0, QColor("#484e50"), QColor("#5a6164")}};
    for (const auto& row : rows) {
        m_view.setColorTheme(row.theme);
        auto* item = new QListWidgetItem(list());
        item->setSizeHint(QSize(100, 40));
        settle();
        const QRect place = list()->visualItemRect(item);
        const auto colour = [&] { return grabbed(*list()->viewport()).pixelColor(place.center()); };
        QTest::mouseMove(list()->viewport(), place.center());
        QHoverEvent hover(QEvent::HoverMove, place.center(), QPoint(-1, -1));
        QCoreApplication::sendEvent(list()->viewport(), &hover);
        EXPECT_EQ(colour(), row.hover);
        list()->setSelectionMode(QAbstractItemView::SingleSelection);
        item->setSelected(true);
        QHoverEvent leave(QEvent::HoverLeave, QPoint(-1, -1), place.center());
        QCoreApplication::sendEvent(list()->viewport(), &leave);
        EXPECT_EQ(colour(), row.selected);
        list()->setSelectionMode(QAbstractItemView::NoSelection);
        list()->clear();
    }
}
