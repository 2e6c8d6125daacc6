#include <gtest/gtest.h>

#include <QDateTime>
#include <QLabel>
#include <QLayout>
#include <QListWidget>
#include <QMetaProperty>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>
#include <QToolButton>

#include "chat/ZR_AiChatManager.h"
#include "host/core/ZR_ZentriText.h"
#include "sidebar/ZR_AiChatSideBar.h"
#include "sidebar/ZR_AiChatSideBarSearchInputDlg.h"
#include "tests/sidebar/HistoryPages.h"
#include "tests/view/support/QtPrinters.h"
#include "tests/view/support/ServiceTest.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

class SideBarTest : public ServiceTest {
protected:
    SideBarTest() : m_now(QDateTime::currentSecsSinceEpoch()) {
        m_bar.resize(370, 710);
        m_bar.show();
        settle();
    }

    template <typename Widget>
    Widget* named(const char* name) const {
        return childNamed<Widget>(m_bar, name);
    }
    QTextEdit* search() const { return m_bar.searchBox(); }
    ZR_AiChatHistoricalChatBox* box() const { return named<ZR_AiChatHistoricalChatBox>("widget_ChatBox"); }
    QList<ZR_AiChatChatBoxPage*> pages() const { return pagesOf(*box()); }
    int visibleRows() const {
        int rows = 0;
        for (const ZR_AiChatChatBoxPage* page : pages()) {
            const auto* list = page->findChild<QListWidget*>();
            for (int row = 0; row < list->count(); ++row) {
                rows += !page->isHidden() && !list->item(row)->isHidden() ? 1 : 0;
            }
        }
        return rows;
    }
    /// Has the manager read these sessions and the bar list them.
    void fill(const QList<Stored>& sessions) {
        loadHistory(sessions);
        ZR_AiChatSessionList list;
        ZR_AiChatManager::instance().getSessions(list);
        m_bar.loadSessions(list);
    }

    qint64 m_now;
    FakePalette m_palette;
    ZR_AiChatSideBar m_bar;
};

}  // namespace

TEST_F(SideBarTest, FormHasTheNamesTextsAndLayouts) {
    const ZR_AiChatSideBar bar;
    EXPECT_EQ(bar.objectName(), QStringLiteral("ZR_AiChatSideBarClass"));
    EXPECT_EQ(bar.size(), QSize(370, 710));
    EXPECT_EQ(bar.sizePolicy().horizontalPolicy(), QSizePolicy::Ignored);
    EXPECT_EQ(bar.sizePolicy().verticalPolicy(), QSizePolicy::Ignored);
    const QLayout* outer = bar.layout();
    EXPECT_EQ(outer->objectName(), QStringLiteral("verticalLayout_2"));
    EXPECT_EQ(outer->contentsMargins().left(), 0);
    EXPECT_EQ(outer->contentsMargins().top(), 0);
    EXPECT_EQ(outer->contentsMargins().bottom(), 0);
    EXPECT_GT(outer->contentsMargins().right(), 0);
    const QLayout* column = outer->itemAt(0)->layout();
    EXPECT_EQ(column->objectName(), QStringLiteral("verticalLayout_3"));
    EXPECT_EQ(column->contentsMargins().top(), 0);
    const QLayout* heading = column->itemAt(0)->layout();
    EXPECT_EQ(heading->objectName(), QStringLiteral("horizontalLayout"));
    const char* const headingNames[] = {"label_IconMain", "label_ProductName", "toolButton_CloseBar"};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(heading->itemAt(i)->widget()->objectName(), QString::fromLatin1(headingNames[i]));
    }
    EXPECT_EQ(column->itemAt(1)->widget()->objectName(), QStringLiteral("pushButton_NewChat"));
    const auto* frame = qobject_cast<QFrame*>(column->itemAt(2)->widget());
    EXPECT_EQ(frame->objectName(), QStringLiteral("frame"));
    EXPECT_EQ(frame->frameShape(), QFrame::StyledPanel);
    EXPECT_EQ(frame->frameShadow(), QFrame::Raised);
    EXPECT_EQ(frame->layout()->objectName(), QStringLiteral("verticalLayout"));
    EXPECT_EQ(frame->layout()->contentsMargins(), QMargins(0, 0, 0, 0));
    const QLayout* searchRow = frame->layout()->itemAt(0)->layout();
    EXPECT_EQ(searchRow->objectName(), QStringLiteral("horizontalLayout_2"));
    EXPECT_EQ(searchRow->itemAt(0)->widget()->objectName(), QStringLiteral("label_IconSearch"));
    EXPECT_EQ(searchRow->itemAt(1)->widget()->objectName(), QStringLiteral("textEdit_SearchText"));
    EXPECT_EQ(frame->layout()->itemAt(1)->widget()->objectName(), QStringLiteral("widget_ChatBox"));
    const QLayout* const framed = frame->layout();
    for (const QLayout* layout : {outer, column, heading, searchRow, framed}) {
        EXPECT_EQ(layout->spacing(), 6) << layout->objectName().toStdString();
    }
    for (const char* name :
         {"label_IconMain", "label_ProductName", "toolButton_CloseBar", "pushButton_NewChat", "frame",
          "label_IconSearch", "textEdit_SearchText", "widget_ChatBox"}) {
        EXPECT_EQ(bar.findChild<QWidget*>(QString::fromLatin1(name))->minimumSize(), QSize(0, 0)) << name;
    }
    EXPECT_EQ(named<QLabel>("label_ProductName")->text(), QStringLiteral("朔禾CAD Zentri"));
    EXPECT_EQ(named<QPushButton>("pushButton_NewChat")->text(), QStringLiteral("+新对话"));
    EXPECT_EQ(named<QToolButton>("toolButton_CloseBar")->text(), QString());
    EXPECT_EQ(named<QToolButton>("toolButton_CloseBar")->toolTip(), QStringLiteral("收回侧边栏"));
    EXPECT_EQ(named<QLabel>("label_IconSearch")->toolTip(), QStringLiteral("查找"));
    EXPECT_EQ(search()->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(search()->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
}

TEST_F(SideBarTest, AnimationWidthIsAPropertyAndStartsAsTheMinimumWidth) {
    const int index = m_bar.metaObject()->indexOfProperty("animationWidth");
    ASSERT_GE(index, 0);
    EXPECT_TRUE(m_bar.metaObject()->property(index).isWritable());
    EXPECT_EQ(ZR_AiChatSideBar().animationWidth(), 0);
}

TEST_F(SideBarTest, AnimationWidthDividesTheRowsIntoTwelfths) {
    const struct {
        int width;
        int twelfth;
    } rows[] = {{370, 30}, {250, 20}, {12, 1}, {11, 0}, {0, 0}};
    for (const auto& row : rows) {
        m_bar.setProperty("animationWidth", row.width);
        EXPECT_EQ(m_bar.animationWidth(), row.width);
        EXPECT_EQ(m_bar.maximumWidth(), row.width);
        EXPECT_EQ(named<QWidget>("label_IconMain")->minimumWidth(), 2 * row.twelfth);
        EXPECT_EQ(named<QWidget>("label_ProductName")->minimumWidth(), 7 * row.twelfth);
        EXPECT_EQ(named<QWidget>("toolButton_CloseBar")->minimumWidth(), 3 * row.twelfth);
        EXPECT_EQ(named<QWidget>("label_IconSearch")->minimumWidth(), 2 * row.twelfth);
        EXPECT_EQ(named<QWidget>("textEdit_SearchText")->minimumWidth(), 10 * row.twelfth);
    }
}

TEST_F(SideBarTest, ButtonClicksAreReemitted) {
    const QSignalSpy closed(&m_bar, &ZR_AiChatSideBar::SideBar_btnCloseBar_clicked);
    const QSignalSpy opened(&m_bar, &ZR_AiChatSideBar::SideBar_btnNewChat_clicked);
    QTest::mouseClick(named<QToolButton>("toolButton_CloseBar"), Qt::LeftButton);
    EXPECT_EQ(closed.count(), 1);
    EXPECT_EQ(closed.at(0).at(0).toBool(), false);
    QTest::mouseClick(named<QPushButton>("pushButton_NewChat"), Qt::LeftButton);
    EXPECT_EQ(opened.count(), 1);
    m_bar.btnCloseBar_clicked(true);
    EXPECT_EQ(closed.at(1).at(0).toBool(), true);
    m_bar.btnNewChat_clicked(true);
    EXPECT_EQ(opened.at(1).at(0).toBool(), true);
}

TEST_F(SideBarTest, PickedSessionIsReemitted) {
    const QSignalSpy picked(&m_bar, &ZR_AiChatSideBar::SideBar_chatPage_Clicked);
    emit box()->historicalChat_Clicked(QStringLiteral("a"));
    ASSERT_EQ(picked.count(), 1);
    EXPECT_EQ(picked.at(0).at(0).toString(), QStringLiteral("a"));
}

TEST_F(SideBarTest, SearchFiltersOnEachChangeAndClearingShowsAll) {
    fill({{QStringLiteral("a"), {QStringLiteral("圆形")}, m_now},
          {QStringLiteral("b"), {QStringLiteral("圆弧")}, m_now}});
    EXPECT_EQ(visibleRows(), 2);
    search()->setPlainText(QStringLiteral("圆"));
    EXPECT_EQ(visibleRows(), 2);
    search()->setPlainText(QStringLiteral("圆弧"));
    EXPECT_EQ(visibleRows(), 1);
    search()->setPlainText(QStringLiteral("圆弧x"));
    EXPECT_EQ(visibleRows(), 0);
    search()->clear();
    EXPECT_EQ(visibleRows(), 2);
}

TEST_F(SideBarTest, UnchangedSearchTextDoesNotFilterAgain) {
    fill({{QStringLiteral("a"), {QStringLiteral("圆")}, m_now}});
    search()->setPlainText(QStringLiteral("线"));
    ASSERT_EQ(visibleRows(), 0);
    pages()[0]->showAllEntries();
    // The same text again, as after deleting and retyping a character.
    search()->setPlainText(QStringLiteral("线"));
    emit search()->textChanged();
    EXPECT_EQ(visibleRows(), 1);
    search()->setPlainText(QStringLiteral("线段"));
    EXPECT_EQ(visibleRows(), 0);
}

TEST_F(SideBarTest, EnterIsConsumedInTheSearchBoxOnly) {
    for (const int key : {int{Qt::Key_Return}, int{Qt::Key_Enter}}) {
        for (const Qt::KeyboardModifiers modifiers :
             {Qt::KeyboardModifiers(), Qt::KeyboardModifiers(Qt::ShiftModifier)}) {
            QKeyEvent press(QEvent::KeyPress, key, modifiers, QStringLiteral("\r"));
            EXPECT_TRUE(m_bar.eventFilter(search(), &press));
            EXPECT_FALSE(m_bar.eventFilter(box(), &press));
        }
        QTest::keyClick(search(), static_cast<Qt::Key>(key));
    }
    EXPECT_EQ(search()->toPlainText(), QString());
    QKeyEvent other(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier);
    EXPECT_FALSE(m_bar.eventFilter(search(), &other));
}

TEST_F(SideBarTest, NewSessionReloadsAndFiltersAgain) {
    loadHistory({{QStringLiteral("a"), {QStringLiteral("圆")}, m_now},
                 {QStringLiteral("b"), {QStringLiteral("线")}, m_now}});
    EXPECT_EQ(pages().size(), 0);
    emit ZR_AiChatManager::instance().newSessionSet(_T("b"));
    EXPECT_EQ(visibleRows(), 2);
    search()->setPlainText(QStringLiteral("圆"));
    EXPECT_EQ(visibleRows(), 1);
    emit ZR_AiChatManager::instance().newSessionSet(_T("b"));
    EXPECT_EQ(visibleRows(), 1);
}

TEST_F(SideBarTest, UpdateOfASessionThatIsNotShownDoesNotReload) {
    fill({{QStringLiteral("old"), {QStringLiteral("圆")}, m_now - 40 * kDay}});
    const ZR_AiChatChatBoxPage* page = pages()[0];
    emit ZR_AiChatManager::instance().sessionUpdated(_T("elsewhere"));
    EXPECT_EQ(pages()[0], page);
}

TEST_F(SideBarTest, UpdatedSessionOfTodayKeepsItsPlace) {
    fill({{QStringLiteral("a"), {QStringLiteral("圆")}, m_now}});
    const ZR_AiChatChatBoxPage* page = pages()[0];
    emit ZR_AiChatManager::instance().sessionUpdated(_T("a"));
    EXPECT_EQ(pages()[0], page);
}

TEST_F(SideBarTest, UpdatedEarlierSessionMovesToToday) {
    fill({{QStringLiteral("old"), {QStringLiteral("圆")}, m_now - 40 * kDay}});
    ASSERT_NE(pages()[0]->labelText(), QStringLiteral("今天"));
    ZR_AiChatManager::instance().openSession(_T("old"));
    answerChat("data:A\n\n");
    ZR_AiChatManager::instance().send(_T("again"), true, nullptr);
    ASSERT_EQ(pages().size(), 1);
    EXPECT_EQ(pages()[0]->labelText(), QStringLiteral("今天"));
}

TEST_F(SideBarTest, RefreshSelectionSelectsTheCurrentSession) {
    fill({{QStringLiteral("a"), {QStringLiteral("圆")}, m_now},
          {QStringLiteral("b"), {QStringLiteral("线")}, m_now}});
    ZR_AiChatManager::instance().openSession(_T("b"));
    m_bar.refreshSelection();
    EXPECT_EQ(pages()[0]->findChild<QListWidget*>()->currentRow(), 1);
}

TEST_F(SideBarTest, AdjustPagesFitsThePageHeights) {
    fill({{QStringLiteral("a"), {QStringLiteral("圆")}, m_now}});
    auto* list = pages()[0]->findChild<QListWidget*>();
    const int fitted = list->minimumHeight();
    list->setMinimumHeight(500);
    m_bar.adjustPages();
    EXPECT_EQ(list->minimumHeight(), fitted);
}

TEST_F(SideBarTest, RefreshSelectionFitsThePageHeights) {
    fill({{QStringLiteral("a"), {QStringLiteral("圆")}, m_now}});
    auto* list = pages()[0]->findChild<QListWidget*>();
    const int fitted = list->minimumHeight();
    list->setMinimumHeight(500);
    m_bar.refreshSelection();
    EXPECT_EQ(list->minimumHeight(), fitted);
}

TEST_F(SideBarTest, SlotForTheSearchDialogDoesNothing) {
    fill({{QStringLiteral("a"), {QStringLiteral("圆")}, m_now}});
    m_bar.searchDlg_searchText_textChanged();
    EXPECT_EQ(visibleRows(), 1);
}

TEST_F(SideBarTest, ColoursFollowTheTheme) {
    auto* frame = named<QFrame>("frame");
    auto* close = named<QToolButton>("toolButton_CloseBar");
    auto* icon = named<QLabel>("label_IconSearch");
    const auto frameColour = [&] { return grabbed(*frame).pixelColor(5, frame->height() - 5); };
    applyThemeProperty(&m_bar, kColorThemeProperty, 1);
    EXPECT_EQ(frameColour(), QColor(243, 244, 246));
    EXPECT_EQ(named<QLabel>("label_ProductName")->palette().color(QPalette::WindowText), QColor(Qt::black));
    const QImage lightClose = grabbed(*close);
    const QImage lightIcon = grabbed(*icon);
    applyThemeProperty(&m_bar, kColorThemeProperty, 0);
    EXPECT_EQ(frameColour(), QColor(37, 37, 40));
    EXPECT_EQ(named<QLabel>("label_ProductName")->palette().color(QPalette::WindowText), QColor(Qt::white));
    const QImage darkClose = grabbed(*close);
    const QImage darkIcon = grabbed(*icon);
    EXPECT_NE(lightClose, darkClose);
    EXPECT_NE(lightIcon, darkIcon);
    applyThemeProperty(&m_bar, kColorThemeProperty, 9);
    EXPECT_NE(frameColour(), QColor(243, 244, 246));
    EXPECT_NE(frameColour(), QColor(37, 37, 40));
    EXPECT_NE(grabbed(*close), lightClose);
    EXPECT_NE(grabbed(*close), darkClose);
}

TEST_F(SideBarTest, SearchBoxHasABlueFrame) {
    const QImage image = grabbed(*search());
    EXPECT_EQ(image.pixelColor(image.width() / 2, 0), QColor("#3c88f0"));
    EXPECT_EQ(image.pixelColor(image.width() / 2, 1), QColor("#3c88f0"));
    // The right margin is ten pixels.
    EXPECT_NE(image.pixelColor(image.width() - 5, image.height() / 2), QColor("#3c88f0"));
    EXPECT_EQ(image.pixelColor(image.width() - 11, image.height() / 2), QColor("#3c88f0"));
    EXPECT_EQ(search()->font().pixelSize(), 14);
    EXPECT_EQ(search()->palette().color(QPalette::Highlight), QColor("#90C8F6"));
}

TEST_F(SideBarTest, NewChatButtonHasTheActionColours) {
    auto* button = named<QPushButton>("pushButton_NewChat");
    const auto colour = [&] {
        return grabbed(*button).pixelColor(button->width() / 4, button->height() / 2);
    };
    const auto border = [&] { return grabbed(*button).pixelColor(button->width() / 2, 0); };
    EXPECT_EQ(colour(), QColor("#80baf5"));
    EXPECT_EQ(border(), QColor("#e5f6fe"));
    EXPECT_NE(grabbed(*button).pixelColor(0, 0), QColor("#e5f6fe"));
    hover(*button);
    EXPECT_EQ(colour(), QColor("#d0e0e6"));
    button->setAttribute(Qt::WA_UnderMouse, false);
    button->setDown(true);
    EXPECT_EQ(colour(), QColor("#4A90C7"));
    button->setDown(false);
    button->setEnabled(false);
    EXPECT_EQ(colour(), QColor("#B0E0E6"));
    EXPECT_EQ(border(), QColor("#A9A9A9"));
    EXPECT_EQ(button->palette().color(QPalette::Disabled, QPalette::ButtonText), QColor("#808080"));
}

TEST_F(SideBarTest, SearchDialogIsBuiltAsDesigned) {
    const QPointer<ZR_AiChatSideBarSearchInputDlg> dialog = new ZR_AiChatSideBarSearchInputDlg;
    EXPECT_EQ(dialog->objectName(), QStringLiteral("ZR_AiChatSideBarSearchInputDlgClass"));
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("ZR_AiChatSideBarSearchInputDlg"));
    EXPECT_EQ(dialog->size(), QSize(600, 400));
    EXPECT_EQ(static_cast<int>(dialog->windowFlags() & Qt::WindowType_Mask),
              static_cast<int>(Qt::SplashScreen));
    EXPECT_TRUE(dialog->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(dialog->testAttribute(Qt::WA_DeleteOnClose));
    EXPECT_EQ(dialog->layout()->objectName(), QStringLiteral("verticalLayout"));
    EXPECT_EQ(dialog->layout()->sizeConstraint(), QLayout::SetNoConstraint);
    auto* text = dialog->findChild<QTextEdit*>(QStringLiteral("textEdit_SearchText"));
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(text->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    text->setPlainText(QStringLiteral("圆"));
    EXPECT_EQ(dialog->searchText(), QStringLiteral("圆"));
    dialog->show();
    settle();
    EXPECT_EQ(text->font().pixelSize(), 10);
    EXPECT_EQ(text->palette().color(QPalette::Highlight), QColor("#90C8F6"));
    EXPECT_GT(pixelsOf(grabbed(*text), QColor("#bc9cd9")), 1000);
    EXPECT_EQ(grabbed(*dialog).pixelColor(597, 200), QColor(250, 251, 255));
    dialog->close();
    settle();
    EXPECT_TRUE(dialog.isNull());
}
