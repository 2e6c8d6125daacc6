#include <gtest/gtest.h>

#include <QDateTime>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QScrollArea>
#include <QSignalSpy>
#include <QVBoxLayout>

#include "host/core/ZR_ZentriText.h"
#include "sidebar/ZR_AiChatChatBoxPageContentLabel.h"
#include "tests/sidebar/HistoryPages.h"
#include "tests/sidebar/Zone.h"
#include "tests/view/support/QtPrinters.h"
#include "tests/view/support/ServiceTest.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

qint64 at(int year, int month, int day, int hour = 12) {
    return QDateTime(QDate(year, month, day), QTime(hour, 0)).toSecsSinceEpoch();
}

class HistoryBoxTest : public ServiceTest {
protected:
    HistoryBoxTest() {
        m_box.setClock([this] { return m_now; });
        m_box.resize(300, 600);
        m_box.show();
    }

    struct Session {
        const char* id;
        qint64 time;
    };

    void load(const std::vector<Session>& sessions) {
        ZR_AiChatSessionList list;
        for (const Session& session : sessions) {
            const QString id = QString::fromUtf8(session.id);
            list.Add(makeRecord(id, {QStringLiteral("title ") + id}, session.time));
        }
        m_box.loadSessions(list);
    }

    QScrollArea* area() const { return m_box.findChild<QScrollArea*>(QStringLiteral("scrollArea")); }
    QLayout* pageLayout() const { return pageLayoutOf(m_box); }
    QList<ZR_AiChatChatBoxPage*> pages() const { return pagesOf(m_box); }
    /// "heading: id id" of every page, top to bottom.
    QStringList shown() const {
        QStringList result;
        for (const ZR_AiChatChatBoxPage* page : pages()) {
            QString line = page->labelText() + QLatin1Char(':');
            const auto* list = page->findChild<QListWidget*>();
            for (int row = 0; row < list->count(); ++row) {
                const auto* entry =
                    qobject_cast<ZR_AiChatChatBoxPageContentLabel*>(list->itemWidget(list->item(row)));
                line += QLatin1Char(' ') + toQString(entry->sessionId());
            }
            result.append(line);
        }
        return result;
    }

    qint64 m_now = at(2024, 5, 20);
    FakePalette m_palette;
    ZR_AiChatHistoricalChatBox m_box;
};

}  // namespace

TEST_F(HistoryBoxTest, FormHasTheNamesAndSettings) {
    EXPECT_EQ(m_box.objectName(), QStringLiteral("ZR_AiChatHistoricalChatBoxClass"));
    EXPECT_EQ(m_box.layout()->objectName(), QStringLiteral("verticalLayout"));
    EXPECT_EQ(m_box.layout()->contentsMargins(), QMargins(0, 0, 0, 0));
    EXPECT_TRUE(area()->widgetResizable());
    EXPECT_EQ(area()->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    const auto* layout = qobject_cast<QVBoxLayout*>(pageLayout());
    ASSERT_NE(layout, nullptr);
    EXPECT_EQ(layout->spacing(), 2);
    EXPECT_EQ(layout->contentsMargins(), QMargins(0, 0, 0, 0));
    EXPECT_EQ(layout->alignment(), Qt::AlignTop);
}

TEST_F(HistoryBoxTest, EmptyListLeavesTheBoxEmpty) {
    load({});
    EXPECT_TRUE(pages().isEmpty());
    load({{"a", m_now}});
    load({});
    EXPECT_TRUE(pages().isEmpty());
}

TEST_F(HistoryBoxTest, EveryLoadPostsALayoutRequestToTheParent) {
    class Panel : public QWidget {
    public:
        int requests = 0;

    protected:
        bool event(QEvent* event) override {
            requests += event->type() == QEvent::LayoutRequest ? 1 : 0;
            return QWidget::event(event);
        }
    };
    Panel panel;
    (new QVBoxLayout(&panel))->addWidget(&m_box);
    panel.show();
    settle();
    const int before = panel.requests;
    load({});
    settle();
    EXPECT_GT(panel.requests, before);
    m_box.setParent(nullptr);
}

TEST_F(HistoryBoxTest, SessionsOfTodayShareAPageInListOrder) {
    load({{"a", m_now - 100}, {"b", m_now}, {"c", m_now - 50}});
    EXPECT_EQ(shown(), QStringList({QStringLiteral("今天: a b c")}));
}

TEST_F(HistoryBoxTest, PagesAreOrderedFromTodayBackThroughTheMonths) {
    load({{"old", at(2023, 5, 3)},
          {"month", at(2024, 5, 2)},
          {"april", at(2024, 4, 30)},
          {"today", m_now},
          {"old2", at(2023, 5, 30)},
          {"yesterday", m_now - kDay},
          {"december", at(2023, 12, 31)}});
    EXPECT_EQ(shown(),
              QStringList({QStringLiteral("今天: today"), QStringLiteral("昨天: yesterday"),
                           QStringLiteral("本月: month"), QStringLiteral("2024年04月: april"),
                           QStringLiteral("2023年12月: december"), QStringLiteral("2023年05月: old old2")}));
}

TEST_F(HistoryBoxTest, OnTheFirstOfAMonthTheDayBeforeIsYesterday) {
    m_now = at(2024, 5, 1);
    load({{"y", at(2024, 4, 30)}, {"april", at(2024, 4, 29)}});
    EXPECT_EQ(shown(), QStringList({QStringLiteral("昨天: y"), QStringLiteral("2024年04月: april")}));
}

TEST_F(HistoryBoxTest, PagesWithEqualTimesAreOrderedByDescendingHeading) {
    // On the 1st, the pages of yesterday and of this month have the same time.
    m_now = at(2024, 6, 1);
    load({{"y", at(2024, 5, 31)}, {"m", at(2024, 6, 12)}});
    const QList<ZR_AiChatChatBoxPage*> found = pages();
    ASSERT_EQ(found.size(), 2);
    ASSERT_EQ(found[0]->pageTime(), found[1]->pageTime());
    ASSERT_GT(QStringLiteral("本月"), QStringLiteral("昨天"));
    EXPECT_EQ(shown(), QStringList({QStringLiteral("本月: m"), QStringLiteral("昨天: y")}));
}

TEST_F(HistoryBoxTest, NewYearsDayIsGroupedCorrectlyInAnyTimeZone) {
    for (const char* name : {"UTC0", "Asia/Shanghai", "America/New_York", "Pacific/Kiritimati"}) {
        const Zone zone(name);
        m_now = at(2024, 1, 1, 0);
        load({{"november", at(2023, 11, 30)},
              {"december", at(2023, 12, 1)},
              {"eve", m_now - 1},
              {"midnight", m_now},
              {"january", at(2024, 1, 31)},
              {"december30", at(2023, 12, 30, 23)}});
        // The page of January has the same time as that of yesterday, the start of New Year's Eve.
        EXPECT_EQ(shown(),
                  QStringList({QStringLiteral("今天: midnight"), QStringLiteral("本月: january"),
                               QStringLiteral("昨天: eve"), QStringLiteral("2023年12月: december december30"),
                               QStringLiteral("2023年11月: november")}))
            << name;
        m_now = at(2024, 1, 3);
        load({{"eve", at(2023, 12, 31)}, {"first", at(2024, 1, 1)}, {"second", at(2024, 1, 2, 0)}});
        EXPECT_EQ(shown(), QStringList({QStringLiteral("昨天: second"), QStringLiteral("本月: first"),
                                        QStringLiteral("2023年12月: eve")}))
            << name;
    }
}

TEST_F(HistoryBoxTest, ClockIsReadForEverySession) {
    int reads = 0;
    m_box.setClock([&] {
        ++reads;
        return m_now + reads / 2 * kDay;
    });
    load({{"a", m_now}, {"b", m_now}});
    // Both pages have the same time.
    EXPECT_EQ(shown(), QStringList({QStringLiteral("昨天: b"), QStringLiteral("今天: a")}));
}

TEST_F(HistoryBoxTest, PageTimeBelowMinusOneIsNotPlaced) {
    const struct {
        const char* zone;
        bool shown;
    } rows[] = {{"AAA-0:00:01", true}, {"AAA-0:00:02", false}};
    for (const auto& row : rows) {
        const Zone zone(row.zone);
        m_now = kDay + 100;
        load({{"first", 50}});
        EXPECT_EQ(shown(), row.shown ? QStringList(QStringLiteral("昨天: first")) : QStringList())
            << row.zone;
    }
}

TEST_F(HistoryBoxTest, LatestMessageDecidesThePage) {
    ZR_AiChatSessionList list;
    ZR_AiChatSingleChatRecord record;
    record.SetSessionId(_T("a"));
    record.AddUnit(0, _T("Q"), at(2023, 1, 5));
    record.AddUnit(1, _T("A"), m_now);
    record.AddUnit(0, _T("Q2"), at(2023, 2, 5));
    list.Add(record);
    m_box.loadSessions(list);
    EXPECT_EQ(shown(), QStringList({QStringLiteral("今天: a")}));
}

TEST_F(HistoryBoxTest, SessionWithoutMessagesIsNeverShown) {
    ZR_AiChatSessionList list;
    ZR_AiChatSingleChatRecord record;
    record.SetSessionId(_T("empty"));
    list.Add(record);
    list.Add(makeRecord(QStringLiteral("a"), {QStringLiteral("Q")}, m_now));
    m_box.loadSessions(list);
    EXPECT_EQ(shown(), QStringList({QStringLiteral("今天: a")}));
    for (const ZR_AiChatChatBoxPage* page : m_box.findChildren<ZR_AiChatChatBoxPage*>()) {
        EXPECT_EQ(page->isVisible(), page->labelText() == QStringLiteral("今天"));
    }
    // Nor is it shown together with the box.
    m_box.hide();
    m_box.show();
    for (const ZR_AiChatChatBoxPage* page : m_box.findChildren<ZR_AiChatChatBoxPage*>()) {
        EXPECT_EQ(page->isVisible(), page->labelText() == QStringLiteral("今天"));
    }
}

TEST_F(HistoryBoxTest, UnrecognisedTimesShareTheLastPage) {
    load({{"bad", qint64{1} << 60U}, {"a", m_now}, {"worse", -5}, {"old", at(1971, 3, 5)}});
    EXPECT_EQ(shown(), QStringList({QStringLiteral("今天: a"), QStringLiteral("1971年03月: old"),
                                    QStringLiteral("日期无法识别: bad worse")}));
}

TEST_F(HistoryBoxTest, PagesAreFittedWhenTheyArePlaced) {
    load({{"a", m_now}, {"b", m_now}});
    const auto* list = pages()[0]->findChild<QListWidget*>();
    EXPECT_EQ(list->minimumHeight(), 2 * list->sizeHintForRow(0) + 18);
    EXPECT_TRUE(pages()[0]->isVisible());
}

TEST_F(HistoryBoxTest, ReloadDetachesTheFormerPagesButKeepsThemAlive) {
    load({{"a", m_now}});
    const QPointer<ZR_AiChatChatBoxPage> former = pages()[0];
    load({{"b", m_now}});
    settle();
    ASSERT_FALSE(former.isNull());
    EXPECT_EQ(former->parent(), nullptr);
    EXPECT_FALSE(former->isVisible());
    EXPECT_EQ(shown(), QStringList({QStringLiteral("今天: b")}));
}

TEST_F(HistoryBoxTest, FormerPagesAreDestroyedWithTheBox) {
    QPointer<ZR_AiChatChatBoxPage> former;
    {
        ZR_AiChatHistoricalChatBox box;
        ZR_AiChatSessionList list;
        list.Add(makeRecord(QStringLiteral("a"), {QStringLiteral("Q")}, m_now));
        box.loadSessions(list);
        former = box.findChild<ZR_AiChatChatBoxPage*>();
        box.loadSessions(list);
        ASSERT_FALSE(former.isNull());
    }
    EXPECT_TRUE(former.isNull());
}

TEST_F(HistoryBoxTest, PageOrderDoesNotChangeUntilTheNextLoad) {
    load({{"a", m_now}});
    m_now += kDay;
    m_box.adjustPages();
    EXPECT_EQ(shown(), QStringList({QStringLiteral("今天: a")}));
    load({{"a", m_now - kDay}});
    EXPECT_EQ(shown(), QStringList({QStringLiteral("昨天: a")}));
}

TEST_F(HistoryBoxTest, ClickIsReemitted) {
    load({{"a", m_now}, {"old", at(2023, 5, 3)}});
    const QSignalSpy clicked(&m_box, &ZR_AiChatHistoricalChatBox::historicalChat_Clicked);
    emit pages()[1]->chatLabel_Clicked(QStringLiteral("old"));
    ASSERT_EQ(clicked.count(), 1);
    EXPECT_EQ(clicked.at(0).at(0).toString(), QStringLiteral("old"));
}

TEST_F(HistoryBoxTest, PageLabelOfReturnsTheFirstPageThatListsTheSession) {
    load({{"a", m_now}, {"old", at(2023, 5, 3)}, {"a", at(2023, 5, 3)}});
    EXPECT_EQ(m_box.pageLabelOf(QStringLiteral("a")), QStringLiteral("今天"));
    EXPECT_EQ(m_box.pageLabelOf(QStringLiteral("old")), QStringLiteral("2023年05月"));
    EXPECT_EQ(m_box.pageLabelOf(QStringLiteral("nobody")), QString());
}

TEST_F(HistoryBoxTest, SpacersAreSkipped) {
    load({{"a", m_now}});
    qobject_cast<QVBoxLayout*>(pageLayout())->insertSpacing(0, 10);
    m_box.adjustPages();
    m_box.showAllEntries();
    m_box.applyFilter(QStringLiteral("x"));
    EXPECT_EQ(m_box.pageLabelOf(QStringLiteral("a")), QStringLiteral("今天"));
    load({});
    EXPECT_EQ(pageLayout()->count(), 0);
}

TEST_F(HistoryBoxTest, FilterAppliesToEveryPageAndCanBeCleared) {
    loadHistory({{QStringLiteral("a"), {QStringLiteral("圆")}, m_now},
                 {QStringLiteral("b"), {QStringLiteral("线")}, at(2023, 5, 3)}});
    load({{"a", m_now}, {"b", at(2023, 5, 3)}});
    m_box.applyFilter(QStringLiteral("线"));
    EXPECT_FALSE(pages()[0]->isVisible());
    EXPECT_TRUE(pages()[1]->isVisible());
    m_box.showAllEntries();
    EXPECT_TRUE(pages()[0]->isVisible());
    EXPECT_TRUE(pages()[1]->isVisible());
}

TEST_F(HistoryBoxTest, RebuiltPagesHaveTheThemeOfTheBox) {
    applyThemeProperty(&m_box, kColorThemeProperty, 0);
    load({{"a", m_now}});
    const auto* heading = pages()[0]->findChild<QLabel*>(QStringLiteral("label_PageFilterDate"));
    EXPECT_EQ(heading->property("ZR_ColorTheme").toInt(), 0);
    EXPECT_EQ(heading->palette().color(QPalette::WindowText), QColor(Qt::white));
    for (const QObject* child : m_box.findChildren<QObject*>()) {
        EXPECT_EQ(child->property("ZR_ColorTheme").toInt(), 0) << child->objectName().toStdString();
    }
}

TEST_F(HistoryBoxTest, SelectionIsOnOnePageOnly) {
    load({{"a", m_now}, {"b", at(2023, 5, 3)}});
    pages()[0]->selectSession(QStringLiteral("a"));
    m_box.selectSession(QStringLiteral("b"));
    EXPECT_TRUE(pages()[0]->findChild<QListWidget*>()->selectedItems().isEmpty());
    EXPECT_EQ(pages()[1]->findChild<QListWidget*>()->selectedItems().size(), 1);
}

TEST_F(HistoryBoxTest, BackgroundIsTransparent) {
    load({{"a", m_now}});
    QWidget behind;
    behind.setStyleSheet(QStringLiteral("#behind{background:#ff00ff}"));
    behind.setObjectName(QStringLiteral("behind"));
    behind.resize(300, 600);
    m_box.setParent(&behind);
    m_box.show();
    behind.show();
    settle();
    EXPECT_EQ(grabbed(behind).pixelColor(150, 590), QColor("#ff00ff"));
    EXPECT_EQ(grabbed(behind).pixelColor(295, 10), QColor("#ff00ff"));
    m_box.setParent(nullptr);
}
