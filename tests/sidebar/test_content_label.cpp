#include <gtest/gtest.h>

#include <QLabel>
#include <QLayout>
#include <QMenu>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include "sidebar/ZR_AiChatChatBoxPageContentLabel.h"
#include "tests/view/support/QtPrinters.h"
#include "tests/view/support/ServiceTest.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

class ContentLabelTest : public ServiceTest {
protected:
    ContentLabelTest() {
        m_entry.setSessionId(_T("a"));
        m_entry.setTitle(_T("怎样画圆"));
        m_entry.resize(240, 30);
        m_entry.show();
        settle();
    }

    QLabel* label() const { return m_entry.findChild<QLabel*>(QStringLiteral("frame_bottomLabel")); }
    QToolButton* button() const {
        return m_entry.findChild<QToolButton*>(QStringLiteral("toolButton_option"));
    }

    /// Calls `work` with the options menu once it is open.
    template <typename Work>
    void whenOpen(Work work) {
        QTimer::singleShot(0, &m_context, [this, work] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            m_opened = true;
            work(*menu);
        });
    }

    FakePalette m_palette;
    ZR_AiChatChatBoxPageContentLabel m_entry;
    QObject m_context;
    bool m_opened = false;
};

}  // namespace

TEST_F(ContentLabelTest, FormHasTheNamesAndTexts) {
    const ZR_AiChatChatBoxPageContentLabel entry;
    EXPECT_EQ(entry.objectName(), QStringLiteral("ZR_AiChatChatBoxPageContentLabelClass"));
    EXPECT_EQ(entry.size(), QSize(784, 115));
    EXPECT_EQ(entry.layout()->objectName(), QStringLiteral("horizontalLayout_2"));
    const auto* title = entry.findChild<QLabel*>(QStringLiteral("frame_bottomLabel"));
    EXPECT_EQ(title->text(), QStringLiteral("初始文本"));
    EXPECT_EQ(title->frameShape(), QFrame::StyledPanel);
    EXPECT_EQ(title->frameShadow(), QFrame::Raised);
    EXPECT_EQ(title->layout()->objectName(), QStringLiteral("horizontalLayout"));
    EXPECT_NE(title->layout()->itemAt(0)->spacerItem(), nullptr);
    const auto* option = qobject_cast<QToolButton*>(title->layout()->itemAt(1)->widget());
    EXPECT_EQ(option->objectName(), QStringLiteral("toolButton_option"));
    EXPECT_EQ(option->text(), QStringLiteral("..."));
    EXPECT_EQ(option->arrowType(), Qt::NoArrow);
}

TEST_F(ContentLabelTest, OptionsButtonIsAtTheRightEndOfTheTitle) {
    EXPECT_GT(button()->geometry().left(), label()->width() * 3 / 4);
    EXPECT_LE(button()->geometry().right(), label()->width());
    EXPECT_GE(button()->height(), 16);
}

TEST_F(ContentLabelTest, LongTitleIsShownUnchangedAsPlainText) {
    const CString title =
        CString(_T("<b>很长的标题</b>\n")) + _T("第二行很长很长很长很长很长很长很长很长很长很长很长很长");
    m_entry.setTitle(title);
    EXPECT_EQ(m_entry.title(), title);
    EXPECT_TRUE(label()->text().endsWith(QStringLiteral("很长")));
    EXPECT_TRUE(label()->text().startsWith(QStringLiteral("<b>")));
    EXPECT_EQ(m_entry.width(), 240);
    EXPECT_EQ(label()->width(), 240);
}

TEST_F(ContentLabelTest, SearchMatchesAnyMessageCaseSensitively) {
    loadHistory(
        {{QStringLiteral("a"), {QStringLiteral("怎样画圆"), QStringLiteral("用 CIRCLE 命令")}, 1700000000},
         {QStringLiteral("b"), {QStringLiteral("other")}, 1700000000}});
    EXPECT_TRUE(m_entry.matchesSearch(QStringLiteral("画圆")));
    EXPECT_TRUE(m_entry.matchesSearch(QStringLiteral("CIRC")));
    EXPECT_FALSE(m_entry.matchesSearch(QStringLiteral("circ")));
    EXPECT_FALSE(m_entry.matchesSearch(QStringLiteral("other")));
}

TEST_F(ContentLabelTest, TitlesAreNotSearched) {
    loadHistory({{QStringLiteral("a"), {QStringLiteral("question")}, 1700000000}});
    m_entry.setTitle(_T("only in the title"));
    EXPECT_FALSE(m_entry.matchesSearch(QStringLiteral("title")));
}

TEST_F(ContentLabelTest, UnknownSessionNeverMatches) {
    m_entry.setSessionId(_T("nobody knows"));
    EXPECT_FALSE(m_entry.matchesSearch(QString()));
    EXPECT_FALSE(m_entry.matchesSearch(QStringLiteral("a")));
}

TEST_F(ContentLabelTest, MenuOffersDeleteOnly) {
    whenOpen([](QMenu& menu) {
        ASSERT_EQ(menu.actions().size(), 1);
        const QAction* action = menu.actions().first();
        EXPECT_EQ(action->text(), QStringLiteral("删除"));
        const QImage icon = action->icon().pixmap(16).toImage();
        EXPECT_FALSE(icon.isNull());
        EXPECT_EQ(icon, QIcon(QStringLiteral(":/res/img/DeleteAction.png")).pixmap(16).toImage());
        EXPECT_TRUE(action->shortcut().isEmpty());
        menu.close();
    });
    const QSignalSpy deleted(&m_entry, &ZR_AiChatChatBoxPageContentLabel::ContentMenu_deleteAction_clicked);
    QTest::mouseClick(button(), Qt::LeftButton);
    EXPECT_TRUE(m_opened);
    EXPECT_EQ(deleted.count(), 0);
    EXPECT_TRUE(m_entry.findChildren<QMenu*>().isEmpty());
}

TEST_F(ContentLabelTest, MenuHasTheThemeBackgroundAndText) {
    const struct {
        int theme;
        QColor background;
        QColor text;
    } rows[] = {{1, QColor(0xFF, 0xFF, 0xFF), Qt::black}, {0, QColor(0x25, 0x25, 0x28), Qt::white}};
    for (const auto& row : rows) {
        applyThemeProperty(&m_entry, kColorThemeProperty, row.theme);
        whenOpen([&row](QMenu& menu) {
            const QImage look = menu.grab().toImage();
            EXPECT_EQ(look.pixelColor(look.width() - 6, look.height() / 2), row.background);
            EXPECT_EQ(menu.palette().color(QPalette::WindowText), row.text);
            menu.close();
        });
        m_opened = false;
        QTest::mouseClick(button(), Qt::LeftButton);
        EXPECT_TRUE(m_opened);
    }
}

TEST_F(ContentLabelTest, MenuOpensAtTheButtonMinusTheViewPositionAsIntended) {
    m_palette.geometry = QRect(30, 20, 400, 300);
    m_entry.move(200, 150);
    settle();
    QPoint place;
    whenOpen([&](QMenu& menu) {
        place = menu.pos();
        menu.close();
    });
    m_entry.toolButton_options_clicked(false);
    EXPECT_EQ(place, button()->mapToGlobal(button()->rect().bottomLeft()) - QPoint(30, 20));
}

TEST_F(ContentLabelTest, DeleteActionEmitsTheSignal) {
    const QSignalSpy deleted(&m_entry, &ZR_AiChatChatBoxPageContentLabel::ContentMenu_deleteAction_clicked);
    whenOpen([](QMenu& menu) {
        menu.actions().first()->trigger();
        menu.close();
    });
    m_entry.toolButton_options_clicked(false);
    EXPECT_EQ(deleted.count(), 1);
}

TEST_F(ContentLabelTest, NoMenuOpensWithoutAView) {
    m_palette.view = nullptr;
    m_entry.toolButton_options_clicked(false);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(ContentLabelTest, EntryMayBeDestroyedWhileItsMenuIsOpen) {
    const QPointer<ZR_AiChatChatBoxPageContentLabel> entry = new ZR_AiChatChatBoxPageContentLabel;
    entry->show();
    whenOpen([&](QMenu&) { delete entry.data(); });
    entry->toolButton_options_clicked(false);
    EXPECT_TRUE(entry.isNull());
}

TEST_F(ContentLabelTest, ColoursAtRestAndHoveredFollowTheTheme) {
    const struct {
        int theme;
        QColor text;
        QColor hover;
    } rows[] = {{1, Qt::black, QColor("#d0e0e6")}, {0, Qt::white, QColor("#363a3c")}};
    for (const auto& row : rows) {
        applyThemeProperty(&m_entry, kColorThemeProperty, row.theme);
        EXPECT_EQ(label()->palette().color(QPalette::WindowText), row.text);
        const QImage rest = grabbed(m_entry);
        EXPECT_NE(rest.pixelColor(150, 15), row.hover);
        label()->setAttribute(Qt::WA_UnderMouse, true);
        const QImage hovered = grabbed(m_entry);
        EXPECT_EQ(hovered.pixelColor(150, 15), row.hover);
        EXPECT_NE(hovered.pixelColor(0, 0), row.hover);
        label()->setAttribute(Qt::WA_UnderMouse, false);
    }
    EXPECT_EQ(label()->font().pixelSize(), 14);
}

TEST_F(ContentLabelTest, UnknownThemeHasNoHoverColour) {
    applyThemeProperty(&m_entry, kColorThemeProperty, 3);
    const QImage rest = grabbed(m_entry);
    label()->setAttribute(Qt::WA_UnderMouse, true);
    EXPECT_EQ(grabbed(m_entry).pixelColor(150, 15), rest.pixelColor(150, 15));
}

TEST_F(ContentLabelTest, DisabledEntryHasTheDisabledColours) {
    m_entry.setEnabled(false);
    EXPECT_EQ(grabbed(m_entry).pixelColor(150, 15), QColor("#B0E0E6"));
    EXPECT_EQ(label()->palette().color(QPalette::Disabled, QPalette::WindowText), QColor("#808080"));
}

TEST_F(ContentLabelTest, OptionsDotsAreVisibleOnlyWhenHovered) {
    const auto look = [&] {
        const QRect place(button()->mapTo(&m_entry, QPoint()), button()->size());
        return grabbed(m_entry).copy(place);
    };
    EXPECT_GT(darkestGray(look()), 150);
    hover(*button());
    // The dots are so small that their grey value depends on the font rendering.
    EXPECT_LT(darkestGray(look()), 120);
    EXPECT_GT(pixelsOf(look(), QColor("#c3d2d7")), 20);
    button()->setDown(true);
    EXPECT_GT(pixelsOf(look(), QColor("#b6c4c8")), 20);
}
