// The history of the module must look the same as the plain history, pixel for pixel.

#include <gtest/gtest.h>

#include <QDateTime>
#include <QLabel>
#include <QListWidget>
#include <QRandomGenerator>
#include <QToolButton>
#include <QVBoxLayout>

#include "chat/ZR_AiChatManager.h"
#include "host/core/ZR_ZentriText.h"
#include "tests/sidebar/HistoryPages.h"
#include "tests/sidebar/PlainHistory.h"
#include "tests/view/support/QtPrinters.h"
#include "tests/view/support/ServiceTest.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

constexpr qint64 kNow = 1716200000;

class HistoryLook : public ServiceTest, public testing::WithParamInterface<int> {
protected:
    HistoryLook() : m_random(static_cast<quint32>(GetParam()) + 17) {
        m_box.setClock([] { return kNow; });
        inPanel(m_ownPanel, m_box);
        inPanel(m_plainPanel, m_plain);
        m_box.setObjectName(m_plain.objectName());
    }
    ~HistoryLook() override {
        m_box.setParent(nullptr);
        m_plain.setParent(nullptr);
    }

    void setTheme(int theme) {
        applyThemeProperty(&m_ownPanel, kColorThemeProperty, theme);
        applyThemeProperty(&m_plainPanel, kColorThemeProperty, theme);
    }
    void showPanels() {
        m_ownPanel.show();
        m_plainPanel.show();
        settle();
    }
    void load(const ZR_AiChatSessionList& list) {
        m_box.loadSessions(list);
        m_plain.loadSessions(list, kNow);
        settle();
    }
    void loadRandom() {
        ZR_AiChatSessionList list;
        fillRandomly(list);
        load(list);
    }
    /// Up to twenty sessions, on all kinds of pages.
    void fillRandomly(ZR_AiChatSessionList& list) {
        const int sessions = m_random.bounded(20);
        for (int i = 0; i < sessions; ++i) {
            const qint64 times[] = {kNow - m_random.bounded(40) * kDay / 10,
                                    kNow - m_random.bounded(40) * kDay, kNow - m_random.bounded(4000) * kDay,
                                    -1, m_random.bounded(2000)};
            const QString title = QStringLiteral("标题 title ").repeated(m_random.bounded(8));
            list.Add(makeRecord(QString::number(i), {title}, times[m_random.bounded(5)]));
        }
    }

    /// False while a list has a layout pending because its scroll bar has appeared or disappeared.
    static bool isLaidOut(const QWidget& box) {
        for (const QListWidget* list : box.findChildren<QListWidget*>()) {
            for (int row = 0; list->isVisible() && row < list->count(); ++row) {
                const QListWidgetItem* item = list->item(row);
                if (!item->isHidden() &&
                    list->itemWidget(list->item(row))->geometry() != list->visualItemRect(item)) {
                    return false;
                }
            }
        }
        return true;
    }

    void expectSame() {
        settle();
        ASSERT_TRUE(waitFor([this] { return isLaidOut(m_box) && isLaidOut(m_plain); }));
        const QList<ZR_AiChatChatBoxPage*> own = pagesOf(m_box);
        const QVector<PlainHistoryPage*> plain = m_plain.pages();
        ASSERT_EQ(own.size(), plain.size());
        for (int i = 0; i < own.size(); ++i) {
            const PlainHistoryPage* plainPage = plain[i];
            EXPECT_EQ(own[i]->labelText(), plainPage->label);
            EXPECT_EQ(own[i]->pageTime(), plainPage->pageTime);
            EXPECT_EQ(own[i]->isHidden(), plainPage->isHidden());
            EXPECT_EQ(own[i]->geometry(), plainPage->geometry());
            expectSameRows(*own[i]->findChild<QListWidget*>(), *plainPage->list());
        }
        EXPECT_EQ(grabbed(m_ownPanel), grabbed(m_plainPanel));
    }
    static void expectSameRows(const QListWidget& own, const QListWidget& plain) {
        EXPECT_EQ(own.minimumHeight(), plain.minimumHeight());
        EXPECT_EQ(own.geometry(), plain.geometry());
        ASSERT_EQ(own.count(), plain.count());
        for (int row = 0; row < own.count(); ++row) {
            EXPECT_EQ(own.item(row)->isHidden(), plain.item(row)->isHidden());
            if (!plain.isVisible()) {
                continue;  // laid out when its page is shown again
            }
            EXPECT_EQ(own.visualItemRect(own.item(row)), plain.visualItemRect(plain.item(row)));
            expectSameEntry(*own.itemWidget(own.item(row)), *plain.itemWidget(plain.item(row)));
        }
    }
    static void expectSameEntry(const QWidget& own, const QWidget& plain) {
        EXPECT_EQ(own.geometry(), plain.geometry());
        EXPECT_EQ(own.isHidden(), plain.isHidden());
        const QList<QWidget*> ownParts = own.findChildren<QWidget*>();
        const QList<QWidget*> plainParts = plain.findChildren<QWidget*>();
        ASSERT_EQ(ownParts.size(), plainParts.size());
        for (int i = 0; i < ownParts.size(); ++i) {
            EXPECT_EQ(ownParts[i]->geometry(), plainParts[i]->geometry());
            EXPECT_EQ(ownParts[i]->font(), plainParts[i]->font());
            EXPECT_EQ(ownParts[i]->palette(), plainParts[i]->palette());
            EXPECT_EQ(ownParts[i]->property(kColorThemeProperty),
                      plainParts[i]->property(kColorThemeProperty));
            EXPECT_EQ(ownParts[i]->testAttribute(Qt::WA_Hover), plainParts[i]->testAttribute(Qt::WA_Hover));
        }
    }

    QRandomGenerator m_random;
    FakePalette m_palette;
    QWidget m_ownPanel;
    QWidget m_plainPanel;
    ZR_AiChatHistoricalChatBox m_box;
    PlainHistory m_plain;

private:
    /// Gives the panel a style sheet whose rules apply to all descendants, like that of the view.
    static void inPanel(QWidget& panel, QWidget& box) {
        panel.setStyleSheet(QStringLiteral(
            "QLabel[ZR_ColorTheme='1']{color:#112233} QWidget{color:#445566; font:20px} "
            "QToolButton{border:3px solid red; padding:4px} QLabel:hover{background:#00ff00}"));
        (new QVBoxLayout(&panel))->addWidget(&box);
        panel.resize(270, 640);
    }
};

}  // namespace

TEST_P(HistoryLook, MatchesWhenLoadedInAVisiblePanel) {
    showPanels();
    for (const int theme : {1, 0, 7}) {
        setTheme(theme);
        loadRandom();
        expectSame();
    }
}

TEST_P(HistoryLook, MatchesWhenLoadedBeforeThePanelIsShown) {
    setTheme(GetParam() % 2);
    loadRandom();
    m_box.applyFilter(QStringLiteral("nothing like it"));
    m_plain.applyFilter(QStringLiteral("nothing like it"));
    m_box.showAllEntries();
    m_plain.showAllEntries();
    showPanels();
    expectSame();
}

TEST_P(HistoryLook, MatchesAfterAThemeChange) {
    showPanels();
    loadRandom();
    for (const int theme : {0, 5, 1}) {
        setTheme(theme);
        expectSame();
    }
}

TEST_P(HistoryLook, MatchesWhenHoveredAndWhenDisabled) {
    showPanels();
    ZR_AiChatSessionList list;
    fillRandomly(list);
    list.Add(makeRecord(QStringLiteral("a"), {QStringLiteral("标题")}, kNow));
    for (const int theme : {1, 0, 7}) {
        setTheme(theme);
        load(list);
        const auto* own = pagesOf(m_box)[0]->findChild<QListWidget*>();
        const QListWidget* plain = m_plain.pages()[0]->list();
        for (const char* part : {"frame_bottomLabel", "toolButton_option"}) {
            hover(*own->itemWidget(own->item(0))->findChild<QWidget*>(QString::fromLatin1(part)));
            hover(*plain->itemWidget(plain->item(0))->findChild<QWidget*>(QString::fromLatin1(part)));
            expectSame();
        }
        m_box.setEnabled(false);
        m_plain.setEnabled(false);
        expectSame();
        m_box.setEnabled(true);
        m_plain.setEnabled(true);
    }
}

TEST_P(HistoryLook, MatchesWhileTheFilterChanges) {
    QList<Stored> sessions;
    for (int i = 0; i < 30; ++i) {
        sessions.append(
            {QString::number(i),
             {QStringLiteral("问题 ") + QString::number(m_random.bounded(3000)), QStringLiteral("答")},
             kNow - m_random.bounded(500) * kDay / 4});
    }
    loadHistory(sessions);
    ZR_AiChatSessionList list;
    ZR_AiChatManager::instance().getSessions(list);
    ASSERT_EQ(list.GetCount(), 30);
    showPanels();
    load(list);
    for (int stroke = 0; stroke < 8; ++stroke) {
        if (m_random.bounded(4) == 0) {
            m_box.showAllEntries();
            m_plain.showAllEntries();
        } else {
            const QString text = QString::number(m_random.bounded(300));
            m_box.applyFilter(text);
            m_plain.applyFilter(text);
        }
        expectSame();
    }
}

INSTANTIATE_TEST_SUITE_P(Histories, HistoryLook, testing::Range(0, 4));
