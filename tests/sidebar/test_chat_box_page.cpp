#include <gtest/gtest.h>

#include <QLabel>
#include <QLayout>
#include <QListWidget>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include "chat/ZR_AiChatManager.h"
#include "host/core/ZR_ZentriText.h"
#include "sidebar/ZR_AiChatChatBoxPage.h"
#include "sidebar/ZR_AiChatChatBoxPageContentLabel.h"
#include "tests/view/support/QtPrinters.h"
#include "tests/view/support/ServiceTest.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

class ChatBoxPageTest : public ServiceTest {
protected:
    ChatBoxPageTest() {
        m_page.resize(350, 400);
        m_page.show();
    }

    QListWidget* list() const {
        return m_page.findChild<QListWidget*>(QStringLiteral("listWidget_DatedChats"));
    }
    QLabel* heading() const { return m_page.findChild<QLabel*>(QStringLiteral("label_PageFilterDate")); }
    ZR_AiChatChatBoxPageContentLabel* entry(int row) const {
        return qobject_cast<ZR_AiChatChatBoxPageContentLabel*>(list()->itemWidget(list()->item(row)));
    }
    void addAll(const QStringList& ids) {
        for (const QString& id : ids) {
            m_page.addEntry(toCString(id), toCString(QStringLiteral("title ") + id));
        }
    }
    int rowHeight() const {
        int height = 0;
        for (int row = 0; row < list()->count(); ++row) {
            height = std::max(height, list()->sizeHintForRow(row));
        }
        return height;
    }

    FakePalette m_palette;
    ZR_AiChatChatBoxPage m_page;
};

}  // namespace

TEST_F(ChatBoxPageTest, FormHasTheNamesAndSettings) {
    const ZR_AiChatChatBoxPage page;
    EXPECT_EQ(page.objectName(), QStringLiteral("ZR_AiChatChatBoxPageClass"));
    EXPECT_EQ(page.size(), QSize(350, 129));
    EXPECT_EQ(page.layout()->spacing(), 6);
    EXPECT_EQ(page.layout()->contentsMargins(), QMargins(0, 0, 0, 0));
    EXPECT_EQ(page.labelText(), QStringLiteral("日期文本"));
    EXPECT_EQ(heading()->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    EXPECT_EQ(heading()->sizePolicy().verticalPolicy(), QSizePolicy::Minimum);
    EXPECT_FALSE(list()->isSortingEnabled());
    EXPECT_EQ(list()->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(list()->sizePolicy().verticalPolicy(), QSizePolicy::Preferred);
    EXPECT_EQ(list()->sizePolicy().verticalStretch(), 1);
    EXPECT_EQ(list()->minimumSize(), QSize(0, 0));
    EXPECT_EQ(list()->verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    EXPECT_EQ(list()->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(list()->sizeAdjustPolicy(), QAbstractScrollArea::AdjustToContents);
    EXPECT_EQ(list()->resizeMode(), QListView::Adjust);
}

TEST_F(ChatBoxPageTest, SetLabelSetsTheHeading) {
    m_page.setLabel(QStringLiteral("今天"));
    EXPECT_EQ(m_page.labelText(), QStringLiteral("今天"));
    EXPECT_EQ(heading()->text(), QStringLiteral("今天"));
}

TEST_F(ChatBoxPageTest, PageTimeIsSetUnchangedOrNormalised) {
    m_page.setPageTime(1700000001, false);
    EXPECT_EQ(m_page.pageTime(), 1700000001);
    m_page.setPageTime(1700000001, true);
    EXPECT_LT(m_page.pageTime(), 1700000001 - kDay);
    EXPECT_GE(m_page.pageTime(), 1700000001 - 32 * kDay);
}

TEST_F(ChatBoxPageTest, PageTimeStaysZeroIfItCannotBeConverted) {
    m_page.setPageTime(-77, true);
    EXPECT_EQ(m_page.pageTime(), 0);
}

TEST_F(ChatBoxPageTest, EntriesAreAppendedWithIdAndTitle) {
    addAll({QStringLiteral("b"), QStringLiteral("a")});
    ASSERT_EQ(list()->count(), 2);
    EXPECT_EQ(toQString(entry(0)->sessionId()), QStringLiteral("b"));
    EXPECT_EQ(toQString(entry(1)->title()), QStringLiteral("title a"));
}

TEST_F(ChatBoxPageTest, ContainsSessionComparesExactly) {
    EXPECT_FALSE(m_page.containsSession(QStringLiteral("Ab")));
    addAll({QStringLiteral("Ab")});
    EXPECT_TRUE(m_page.containsSession(QStringLiteral("Ab")));
    EXPECT_FALSE(m_page.containsSession(QStringLiteral("ab")));
    EXPECT_FALSE(m_page.containsSession(QStringLiteral("A")));
}

TEST_F(ChatBoxPageTest, ListHeightIsThatOfTheVisibleRowsPlus18) {
    addAll({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    m_page.adjustHeight();
    EXPECT_GT(rowHeight(), 10);
    EXPECT_EQ(list()->minimumHeight(), 3 * rowHeight() + 18);
    list()->item(1)->setHidden(true);
    m_page.adjustHeight();
    EXPECT_EQ(list()->minimumHeight(), 2 * rowHeight() + 18);
    list()->item(0)->setSizeHint(QSize(10, 77));
    m_page.adjustHeight();
    EXPECT_EQ(list()->minimumHeight(), 2 * 77 + 18);
}

TEST_F(ChatBoxPageTest, ListHeightOfAnEmptyPageIs18) {
    m_page.adjustHeight();
    EXPECT_EQ(list()->minimumHeight(), 18);
}

TEST_F(ChatBoxPageTest, EntriesStayAsWideAsTheListWhenItIsResized) {
    addAll({QStringLiteral("a"), QStringLiteral("b")});
    m_page.adjustHeight();
    settle();
    for (const int width : {350, 200, 190, 300, 120}) {
        m_page.resize(width, m_page.height());
        settle();
        EXPECT_EQ(entry(0)->width(), list()->viewport()->width()) << width;
        EXPECT_EQ(entry(1)->width(), list()->viewport()->width()) << width;
        const auto* option = entry(1)->findChild<QWidget*>(QStringLiteral("toolButton_option"));
        EXPECT_LE(option->mapTo(list()->viewport(), option->rect().bottomRight()).x(),
                  list()->viewport()->width());
    }
}

TEST_F(ChatBoxPageTest, ClickedRowEmitsItsSessionId) {
    addAll({QStringLiteral("a"), QStringLiteral("b")});
    m_page.adjustHeight();
    settle();
    const QSignalSpy clicked(&m_page, &ZR_AiChatChatBoxPage::chatLabel_Clicked);
    QTest::mouseClick(entry(1), Qt::LeftButton, Qt::NoModifier, QPoint(20, entry(1)->height() / 2));
    ASSERT_EQ(clicked.count(), 1);
    EXPECT_EQ(clicked.at(0).at(0).toString(), QStringLiteral("b"));
}

TEST_F(ChatBoxPageTest, ClickedRowWithoutAnEntryEmitsNothing) {
    auto* bare = new QListWidgetItem(list());
    const QSignalSpy clicked(&m_page, &ZR_AiChatChatBoxPage::chatLabel_Clicked);
    m_page.listWidget_itemClicked(bare);
    EXPECT_EQ(clicked.count(), 0);
}

TEST_F(ChatBoxPageTest, DeleteRemovesOnlyItsRowAndKeepsHeadingAndHeight) {
    addAll({QStringLiteral("a"), QStringLiteral("b")});
    m_page.adjustHeight();
    const int height = list()->minimumHeight();
    const QPointer<ZR_AiChatChatBoxPageContentLabel> first = entry(0);
    emit first->ContentMenu_deleteAction_clicked();
    settle();
    EXPECT_TRUE(first.isNull());
    ASSERT_EQ(list()->count(), 1);
    EXPECT_EQ(toQString(entry(0)->sessionId()), QStringLiteral("b"));
    EXPECT_EQ(list()->minimumHeight(), height);
    emit entry(0)->ContentMenu_deleteAction_clicked();
    EXPECT_EQ(list()->count(), 0);
    EXPECT_TRUE(heading()->isVisible());
    EXPECT_TRUE(m_page.isVisible());
    m_page.adjustHeight();
    EXPECT_EQ(list()->minimumHeight(), 18);
}

TEST_F(ChatBoxPageTest, DeletedRowNoLongerCountsAfterTheNextFilter) {
    addAll({QStringLiteral("a"), QStringLiteral("b")});
    list()->item(0)->setSizeHint(QSize(10, 77));
    m_page.adjustHeight();
    EXPECT_EQ(list()->minimumHeight(), 2 * 77 + 18);
    emit entry(0)->ContentMenu_deleteAction_clicked();
    EXPECT_EQ(list()->minimumHeight(), 2 * 77 + 18);
    m_page.showAllEntries();
    EXPECT_EQ(list()->minimumHeight(), rowHeight() + 18);
    EXPECT_LT(rowHeight(), 77);
}

TEST_F(ChatBoxPageTest, AddedRowCountsAfterTheNextFilter) {
    addAll({QStringLiteral("a")});
    m_page.adjustHeight();
    addAll({QStringLiteral("b")});
    list()->item(1)->setSizeHint(QSize(10, 77));
    m_page.showAllEntries();
    EXPECT_EQ(list()->minimumHeight(), 2 * 77 + 18);
}

TEST_F(ChatBoxPageTest, EntryAddedWithoutAThemeIsLightUntilTheThemeIsApplied) {
    applyThemeProperty(&m_page, kColorThemeProperty, 0);
    addAll({QStringLiteral("a")});
    const auto* title = entry(0)->findChild<QLabel*>(QStringLiteral("frame_bottomLabel"));
    EXPECT_EQ(title->palette().color(QPalette::WindowText), QColor(Qt::black));
    applyThemeProperty(&m_page, kColorThemeProperty, 0);
    EXPECT_EQ(title->palette().color(QPalette::WindowText), QColor(Qt::white));
}

TEST_F(ChatBoxPageTest, DeleteWithoutAnEntryAsSenderDoesNothing) {
    addAll({QStringLiteral("a")});
    m_page.contentLabel_deleteAction_Clicked();
    EXPECT_EQ(list()->count(), 1);
}

TEST_F(ChatBoxPageTest, DeletedEntryLeavesTheSessionWithTheManager) {
    loadHistory({{QStringLiteral("a"), {QStringLiteral("Q")}, 1700000000}});
    addAll({QStringLiteral("a")});
    const int requests = m_server.requestCount();
    emit entry(0)->ContentMenu_deleteAction_clicked();
    settle();
    EXPECT_EQ(m_server.requestCount(), requests);
    ZR_AiChatSingleChatRecord record;
    EXPECT_TRUE(ZR_AiChatManager::instance().findSession(_T("a"), record));
}

TEST_F(ChatBoxPageTest, FilterHidesRowsThatDoNotMatchAndFitsTheHeight) {
    loadHistory({{QStringLiteral("a"), {QStringLiteral("圆")}, 1700000000},
                 {QStringLiteral("b"), {QStringLiteral("线"), QStringLiteral("用圆弧")}, 1700000000},
                 {QStringLiteral("c"), {QStringLiteral("线")}, 1700000000}});
    addAll({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("unknown")});
    m_page.applyFilter(QStringLiteral("圆"));
    EXPECT_FALSE(list()->item(0)->isHidden());
    EXPECT_FALSE(list()->item(1)->isHidden());
    EXPECT_TRUE(list()->item(2)->isHidden());
    EXPECT_TRUE(list()->item(3)->isHidden());
    EXPECT_EQ(list()->minimumHeight(), 2 * rowHeight() + 18);
    EXPECT_TRUE(m_page.isVisible());
    m_page.applyFilter(QStringLiteral("线"));
    EXPECT_TRUE(list()->item(0)->isHidden());
    EXPECT_FALSE(list()->item(2)->isHidden());
}

TEST_F(ChatBoxPageTest, FilterThatHidesEveryRowHidesThePageUntilAllAreShown) {
    loadHistory({{QStringLiteral("a"), {QStringLiteral("圆")}, 1700000000}});
    addAll({QStringLiteral("a")});
    m_page.applyFilter(QStringLiteral("nothing like it"));
    EXPECT_TRUE(m_page.isHidden());
    m_page.applyFilter(QStringLiteral("圆"));
    EXPECT_FALSE(m_page.isHidden());
    m_page.applyFilter(QStringLiteral("nothing like it"));
    m_page.showAllEntries();
    EXPECT_FALSE(m_page.isHidden());
    EXPECT_FALSE(list()->item(0)->isHidden());
    EXPECT_EQ(list()->minimumHeight(), rowHeight() + 18);
}

TEST_F(ChatBoxPageTest, FoldSlotDoesNothing) {
    addAll({QStringLiteral("a")});
    m_page.onPushButtonFoldClicked();
    EXPECT_EQ(list()->count(), 1);
    EXPECT_TRUE(list()->isVisible());
}

TEST_F(ChatBoxPageTest, SelectSessionSelectsOnlyThatEntry) {
    addAll({QStringLiteral("a"), QStringLiteral("b")});
    m_page.selectSession(QStringLiteral("b"));
    EXPECT_EQ(list()->currentRow(), 1);
    EXPECT_TRUE(list()->item(1)->isSelected());
    m_page.selectSession(QStringLiteral("elsewhere"));
    EXPECT_TRUE(list()->selectedItems().isEmpty());
    EXPECT_EQ(list()->currentRow(), -1);
}

TEST_F(ChatBoxPageTest, SelectSessionClearsASelectionWithoutACurrentRow) {
    addAll({QStringLiteral("a"), QStringLiteral("b")});
    list()->item(0)->setSelected(true);
    ASSERT_EQ(list()->currentRow(), -1);
    m_page.selectSession(QStringLiteral("elsewhere"));
    EXPECT_TRUE(list()->selectedItems().isEmpty());
}

TEST_F(ChatBoxPageTest, ColoursFollowTheTheme) {
    addAll({QStringLiteral("a")});
    for (const auto& row : {std::pair<int, QColor>(1, Qt::black), std::pair<int, QColor>(0, Qt::white)}) {
        applyThemeProperty(&m_page, kColorThemeProperty, row.first);
        EXPECT_EQ(heading()->palette().color(QPalette::WindowText), row.second);
        EXPECT_EQ(list()->palette().color(QPalette::Text), row.second);
    }
    EXPECT_EQ(heading()->font().pixelSize(), 14);
    EXPECT_TRUE(heading()->font().bold());
    EXPECT_EQ(list()->font().pixelSize(), 14);
}
