#include <gtest/gtest.h>

#include <QChildEvent>
#include <QDateTime>
#include <QPointer>
#include <QScrollBar>
#include <QSignalSpy>
#include <QVBoxLayout>

#include "tests/view/support/QtPrinters.h"
#include "tests/view/support/ViewTest.h"
#include "view/ZR_AiChatListWidget.h"
#include "view/bubble/QNChatMessage.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

/// Counts the receivers of the theme signal.
class CountingList : public ZR_AiChatListWidget {
public:
    using ZR_AiChatListWidget::ZR_AiChatListWidget;
    int themeConnections() const { return receivers(SIGNAL(ZR_ListWidget_ColorThemeChanged(int))); }
};

/// Records the children that are added to an object.
class ChildRecorder : public QObject {
public:
    explicit ChildRecorder(QObject* parent) { parent->installEventFilter(this); }
    const QList<const QObject*>& added() const { return m_added; }

    bool eventFilter(QObject* watched, QEvent* event) override {
        Q_UNUSED(watched)
        if (event->type() == QEvent::ChildAdded) {
            m_added.append(static_cast<QChildEvent*>(event)->child());
        }
        return false;
    }

private:
    QList<const QObject*> m_added;
};

/// Counts the item layouts.
class LayoutCountingList : public ZR_AiChatListWidget {
public:
    void doItemsLayout() override {
        ++layouts;
        ZR_AiChatListWidget::doItemsLayout();
    }
    int layouts = 0;
};

class ChatListTest : public ViewTest {
protected:
    ChatListTest() {
        m_list.resize(500, 400);
        m_list.show();
    }

    QNChatMessage* bubble(int row) const {
        return qobject_cast<QNChatMessage*>(m_list.itemWidget(m_list.item(row)));
    }

    void* rowOf(const QNChatMessage* message) const {
        return message->property("ZR_LISTITEM_PTR").value<void*>();
    }

    CountingList m_list;
};

}  // namespace

TEST_F(ChatListTest, ConstructorSetsNameSizeTitleAndScrolling) {
    const ZR_AiChatListWidget list;
    EXPECT_EQ(list.objectName(), QStringLiteral("ZR_AiChatListWidgetClass"));
    EXPECT_EQ(list.size(), QSize(600, 400));
    EXPECT_EQ(list.windowTitle(), QStringLiteral("ZR_AiChatListWidget"));
    EXPECT_EQ(list.horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    EXPECT_EQ(list.verticalScrollMode(), QAbstractItemView::ScrollPerPixel);
}

TEST_F(ChatListTest, QuestionIsARowOfKindOne) {
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    m_list.addQuestion(QStringLiteral("怎样画圆"));
    const qint64 after = QDateTime::currentSecsSinceEpoch();
    ASSERT_EQ(m_list.count(), 1);
    EXPECT_EQ(bubble(0)->userType(), 1);
    EXPECT_EQ(bubble(0)->msgText(), QStringLiteral("怎样画圆"));
    EXPECT_GE(bubble(0)->timeText().toLongLong(), before);
    EXPECT_LE(bubble(0)->timeText().toLongLong(), after);
}

TEST_F(ChatListTest, AnswerIsACompleteRowOfKindTwo) {
    m_list.addAnswer(QStringLiteral("好"));
    EXPECT_EQ(bubble(0)->userType(), 2);
    EXPECT_FALSE(bubble(0)->isAnswerLoading());
}

TEST_F(ChatListTest, RowSetUpMeasuresForTheListWidth) {
    m_list.addQuestion(QString(60, QChar(u'图')) + QLatin1Char('\n'));
    EXPECT_EQ(bubble(0)->width(), 500);
    EXPECT_EQ(bubble(0)->minimumWidth(), 500);
    EXPECT_EQ(bubble(0)->maximumWidth(), 500);
    EXPECT_EQ(bubble(0)->rects().textWidth, 500 - 174);
    EXPECT_EQ(m_list.item(0)->sizeHint(), bubble(0)->allSize());
    EXPECT_EQ(rowOf(bubble(0)), m_list.item(0));
}

TEST_F(ChatListTest, NewBubbleTakesTheThemeOfTheList) {
    m_list.setProperty("ZR_ColorTheme", 1);
    m_list.addQuestion(QStringLiteral("light"));
    EXPECT_EQ(bubble(0)->textColor(), QColor(51, 51, 51));
    m_list.setProperty("ZR_ColorTheme", 0);
    m_list.addAnswer(QStringLiteral("dark"));
    EXPECT_EQ(bubble(1)->textColor(), QColor(229, 246, 254));
}

TEST_F(ChatListTest, FirstSizeHintOfALoadingAnswerIsThatOfTheEmptyText) {
    QNChatMessage* answer = m_list.addLoadingAnswer();
    ASSERT_EQ(m_list.count(), 1);
    EXPECT_EQ(bubble(0), answer);
    EXPECT_TRUE(answer->isAnswerLoading());
    EXPECT_EQ(answer->userType(), 2);
    EXPECT_EQ(m_list.item(0)->sizeHint(), QSize(174, 3 * answer->rects().lineHeight + 40));
    EXPECT_EQ(answer->rects().textWidth, 500 - 174);
}

TEST_F(ChatListTest, ThemeChangeReachesEveryBubble) {
    m_list.addQuestion(QStringLiteral("a"));
    m_list.addAnswer(QStringLiteral("b"));
    m_list.addLoadingAnswer();
    emit m_list.ZR_ListWidget_ColorThemeChanged(0);
    for (int row = 0; row < 3; ++row) {
        EXPECT_EQ(bubble(row)->linkColor(), QColor(128, 186, 245)) << row;
    }
}

TEST_F(ChatListTest, RemeasuringLeavesExactlyOneThemeConnection) {
    m_list.addQuestion(QStringLiteral("a"));
    m_list.addAnswer(QStringLiteral("b"));
    EXPECT_EQ(m_list.themeConnections(), 2);
    for (int i = 0; i < 5; ++i) {
        m_list.refreshLastItem();
        m_list.relayoutAll();
        m_list.onStreamProcess(false);
    }
    EXPECT_EQ(m_list.themeConnections(), 2);
}

TEST_F(ChatListTest, RefreshOfAnEmptyListDoesNothing) {
    m_list.refreshLastItem();
    m_list.relayoutAll();
    m_list.onStreamProcess(false);
    EXPECT_EQ(m_list.count(), 0);
}

TEST_F(ChatListTest, RefreshChangesTheLastRowOnly) {
    m_list.addQuestion(QString(60, QChar(u'图')) + QLatin1Char('\n'));
    m_list.addAnswer(QString(60, QChar(u'图')) + QLatin1Char('\n'));
    const QString time = bubble(1)->timeText();
    m_list.resize(320, 400);
    m_list.refreshLastItem();
    EXPECT_EQ(bubble(0)->width(), 500);
    EXPECT_EQ(bubble(1)->width(), 320);
    EXPECT_EQ(m_list.item(1)->sizeHint(), bubble(1)->allSize());
    EXPECT_EQ(bubble(1)->timeText(), time);
    EXPECT_EQ(bubble(1)->userType(), 2);
}

TEST_F(ChatListTest, ResizeAloneDoesNotRewrapAsIntended) {
    m_list.addQuestion(QString(60, QChar(u'图')) + QLatin1Char('\n'));
    const QSize before = m_list.item(0)->sizeHint();
    m_list.resize(320, 400);
    settle();
    EXPECT_EQ(bubble(0)->width(), 500);
    EXPECT_EQ(m_list.item(0)->sizeHint(), before);
    m_list.relayoutAll();
    EXPECT_EQ(bubble(0)->width(), 320);
    EXPECT_GT(m_list.item(0)->sizeHint().height(), before.height());
}

TEST_F(ChatListTest, RelayoutKeepsTextTimeAndKindOfEveryRow) {
    m_list.addQuestion(QStringLiteral("a"));
    m_list.addAnswer(QStringLiteral("b"));
    m_list.relayoutAll();
    EXPECT_EQ(bubble(0)->msgText(), QStringLiteral("a"));
    EXPECT_EQ(bubble(0)->userType(), 1);
    EXPECT_EQ(bubble(1)->msgText(), QStringLiteral("b"));
    EXPECT_EQ(bubble(1)->userType(), 2);
    EXPECT_EQ(rowOf(bubble(1)), m_list.item(1));
}

TEST_F(ChatListTest, StreamedPieceGrowsTheRowAndScrollsToIt) {
    for (int i = 0; i < 6; ++i) {
        m_list.addQuestion(QStringLiteral("filler"));
    }
    QNChatMessage* answer = m_list.addLoadingAnswer();
    settle();
    m_list.verticalScrollBar()->setValue(0);
    answer->appendAnswerText(QStringLiteral("1\n2\n3\n4\n5\n6"));
    m_list.onStreamProcess(false);
    EXPECT_EQ(m_list.item(6)->sizeHint(), answer->allSize());
    EXPECT_EQ(m_list.verticalScrollBar()->value(), m_list.verticalScrollBar()->maximum());
    EXPECT_TRUE(answer->isAnswerLoading());
}

TEST_F(ChatListTest, TrueStreamFlagDoesNothing) {
    QNChatMessage* answer = m_list.addLoadingAnswer();
    const QSize before = m_list.item(0)->sizeHint();
    answer->appendAnswerText(QStringLiteral("1\n2\n3"));
    m_list.onStreamProcess(true);
    EXPECT_EQ(m_list.item(0)->sizeHint(), before);
}

TEST_F(ChatListTest, ClearDeletesTheBubblesAndLatePiecesAreHarmless) {
    QPointer<QNChatMessage> answer = m_list.addLoadingAnswer();
    m_list.clear();
    EXPECT_EQ(m_list.count(), 0);
    ASSERT_FALSE(answer.isNull());
    // It lives until its deferred delete and must not write to the deleted row until then.
    EXPECT_EQ(rowOf(answer), nullptr);
    answer->appendAnswerText(QStringLiteral("late"));
    answer->startAnswerLoading();
    answer->stopAnswerLoading();
    settle();
    EXPECT_TRUE(answer.isNull());
    EXPECT_EQ(m_list.themeConnections(), 0);
}

TEST_F(ChatListTest, BubbleOfARemovedRowNoLongerPointsToIt) {
    m_list.addQuestion(QStringLiteral("a"));
    const QPointer<QNChatMessage> answer = m_list.addLoadingAnswer();
    delete m_list.takeItem(1);
    ASSERT_FALSE(answer.isNull());
    EXPECT_EQ(rowOf(answer), nullptr);
    answer->startAnswerLoading();
    EXPECT_EQ(m_list.count(), 1);
}

TEST_F(ChatListTest, OnlyCompleteAnswersAreCreatedOutsideTheListAsIntended) {
    // setItemWidget() reparents every bubble to the viewport; this is about the parent it is created with.
    QWidget panel;
    auto* list = new ZR_AiChatListWidget(&panel);
    const ChildRecorder panelsChildren(&panel);
    const ChildRecorder listsChildren(list);
    list->addQuestion(QStringLiteral("q"));
    list->addAnswer(QStringLiteral("a"));
    list->addLoadingAnswer();
    const auto bubble = [&](int row) { return list->itemWidget(list->item(row)); };
    for (int row = 0; row < 3; ++row) {
        EXPECT_EQ(bubble(row)->parentWidget(), list->viewport());
    }
    EXPECT_TRUE(listsChildren.added().contains(bubble(0)));
    EXPECT_TRUE(panelsChildren.added().contains(bubble(1)));
    EXPECT_FALSE(listsChildren.added().contains(bubble(1)));
    EXPECT_TRUE(listsChildren.added().contains(bubble(2)));
}

TEST_F(ChatListTest, EveryRowHasTheCurrentTimeInSeconds) {
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    m_list.addQuestion(QStringLiteral("q"));
    m_list.addAnswer(QStringLiteral("a"));
    m_list.addLoadingAnswer();
    const qint64 after = QDateTime::currentSecsSinceEpoch();
    for (int row = 0; row < 3; ++row) {
        EXPECT_GE(bubble(row)->timeText().toLongLong(), before) << row;
        EXPECT_LE(bubble(row)->timeText().toLongLong(), after) << row;
        EXPECT_EQ(bubble(row)->timeText(), QString::number(bubble(row)->timeText().toLongLong()));
    }
}

TEST_F(ChatListTest, RowsWithoutABubbleAreNotChanged) {
    auto* item = new QListWidgetItem(&m_list);
    item->setSizeHint(QSize(17, 19));
    m_list.refreshLastItem();
    m_list.relayoutAll();
    m_list.onStreamProcess(false);
    EXPECT_EQ(item->sizeHint(), QSize(17, 19));
}

TEST_F(ChatListTest, RemeasuringTakesTheListThemeAndKeepsLoading) {
    m_list.setProperty("ZR_ColorTheme", 1);
    QNChatMessage* answer = m_list.addLoadingAnswer();
    answer->appendAnswerText(QStringLiteral("1"));
    m_list.setProperty("ZR_ColorTheme", 0);
    m_list.refreshLastItem();
    EXPECT_EQ(answer->textColor(), QColor(229, 246, 254));
    EXPECT_TRUE(answer->isAnswerLoading());
    answer->appendAnswerText(QStringLiteral("2"));
    EXPECT_EQ(answer->msgText(), QStringLiteral("12"));
}

TEST_F(ChatListTest, RemeasuringSchedulesALayoutEvenIfNoSizeChanged) {
    LayoutCountingList list;
    list.show();
    list.addQuestion(QStringLiteral("q"));
    settle();
    for (const bool all : {false, true}) {
        list.layouts = 0;
        if (all) {
            list.relayoutAll();
        } else {
            list.refreshLastItem();
        }
        EXPECT_EQ(list.layouts, 0) << all;
        EXPECT_TRUE(waitFor([&] { return list.layouts == 1; })) << all;
    }
}

TEST_F(ChatListTest, RowsMoveDownWhenTheOneAboveGrows) {
    for (const bool all : {false, true}) {
        m_list.clear();
        QNChatMessage* answer = m_list.addLoadingAnswer();
        auto* below = all ? new QListWidgetItem(&m_list) : nullptr;
        settle();
        answer->appendAnswerText(QStringLiteral("1\n2\n3\n4\n5\n6"));
        if (all) {
            m_list.relayoutAll();
        } else {
            m_list.refreshLastItem();
        }
        settle();
        EXPECT_EQ(m_list.visualItemRect(m_list.item(0)).height(), answer->allSize().height()) << all;
        if (below != nullptr) {
            EXPECT_EQ(m_list.visualItemRect(below).top(), answer->allSize().height());
        }
    }
}
