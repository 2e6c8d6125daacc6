#include <QDateTime>
#include <QTest>
#include <QTextEdit>
#include <QToolButton>
#include <utility>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatManager.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "host/core/ZR_ZentriAccount.h"
#include "host/core/ZR_ZentriText.h"
#include "sidebar/ZR_AiChatChatBoxPageContentLabel.h"
#include "tests/chat/ServiceReplies.h"
#include "tests/host/ModuleFixture.h"
#include "view/ZR_ZentriPaletteView.h"

// Clicks, and unloading and loading for another user, while a thread still runs or its signals are queued.

namespace {

class Users : public ModuleFixture {
protected:
    Users() { load(); }

    int requestsTo(const QByteArray& target) const {
        int count = 0;
        for (int i = 0; i < service.requestCount(); ++i) {
            count += service.request(i).target == target ? 1 : 0;
        }
        return count;
    }

    /// The ids of the manager's sessions.
    static QStringList sessions() {
        ZR_AiChatSessionList list;
        ZR_AiChatManager::instance().getSessions(list);
        QStringList ids;
        for (INT_PTR i = 0; i < list.GetCount(); ++i) {
            ids.append(toQString(list[i].GetSessionId()));
        }
        return ids;
    }

    /// The session's entry in the side bar, or null.
    QWidget* entry(const CString& id) const {
        for (auto* const found : view()->findChildren<ZR_AiChatChatBoxPageContentLabel*>()) {
            if (found->sessionId() == id) {
                return found;
            }
        }
        return nullptr;
    }

    /// The messages of a listed session.
    static QStringList messagesOf(const CString& id) {
        ZR_AiChatSingleChatRecord record;
        ZR_AiChatManager::instance().findSession(id, record);
        SingleChatUnitList units;
        record.GetUnits(units);
        QStringList messages;
        for (INT_PTR i = 0; i < units.GetCount(); ++i) {
            messages.append(QString::number(units[i].role) + QLatin1Char(':') + toQString(units[i].message));
        }
        return messages;
    }

    static CString currentId() {
        ZR_AiChatSingleChatRecord record;
        ZR_AiChatManager::instance().getCurrentRecord(record);
        return record.GetSessionId();
    }
};

}  // namespace

TEST_F(Users, TheNextUserWithoutSessionsSeesNone) {
    answerList(service, {"a"});
    answerRead(service, "a");
    openPanel();
    ASSERT_EQ(sessions(), QStringList{QStringLiteral("a")});
    unload();
    EXPECT_TRUE(sessions().isEmpty());
    load();
    answerList(service, {});
    program.host().clearPrinted();
    openPanel();
    EXPECT_TRUE(sessions().isEmpty());
}

TEST_F(Users, AReloadBeforeTheQueueHasRunStartsOver) {
    openPanel();
    const int before = service.requestCount();
    inputBox()->setPlainText(QStringLiteral("Q"));
    view()->sendInput();
    ASSERT_TRUE(TestProgram::pumpUntil([&] { return service.requestCount() == before + 2; }));
    service.sendHead(before + 1);
    service.sendBytes(before + 1, "data:first\n\n");
    ASSERT_TRUE(TestProgram::pumpUntil([] { return g_zentriCommunicating.load(); }));
    service.close(before + 1);
    // The host's message loop does not run from here on.
    ASSERT_TRUE(g_zentriChatThread->wait());
    unload();
    load();
    answerList(service, {"a"});
    answerRead(service, "a");
    program.host().clearPrinted();
    EXPECT_TRUE(currentId().IsEmpty());
    openPanel();
    EXPECT_EQ(sessions(), QStringList{QStringLiteral("a")});
    EXPECT_TRUE(currentId().IsEmpty());
}

TEST_F(Users, AClickThatOvertakesTheEndOfAnAnswerLeavesItInItsSession) {
    answerList(service, {"a"});
    // Of today, so that the side bar shows it.
    service.answer(kReadTarget + "a",
                   R"({"code":200,"msg":"success","data":[{"role":"user","message":"Q a","createTime":)" +
                       QByteArray::number(QDateTime::currentSecsSinceEpoch()) + "}]}");
    openPanel();
    const int before = service.requestCount();
    inputBox()->setPlainText(QStringLiteral("Q"));
    view()->sendInput();
    ASSERT_TRUE(TestProgram::pumpUntil([&] { return service.requestCount() == before + 2; }));
    view()->findChild<QToolButton*>(QStringLiteral("toolButton_HistoricalChat"))->click();
    ASSERT_TRUE(TestProgram::pumpUntil([this] {
        return entry(_T("a")) != nullptr && entry(_T("a"))->visibleRegion().contains(QPoint(20, 5));
    }));
    service.sendHead(before + 1);
    service.sendBytes(before + 1, "data:A\n\n");
    ASSERT_TRUE(TestProgram::pumpUntil([] { return g_zentriCommunicating.load(); }));
    service.close(before + 1);
    // The host's message loop delivers a click, but not yet the signals that are posted by now.
    ASSERT_TRUE(g_zentriChatThread->wait());
    QWidget* const clicked = entry(_T("a"));
    QTest::mouseClick(clicked, Qt::LeftButton, Qt::NoModifier, QPoint(20, clicked->height() / 2));
    TestProgram::settle();
    EXPECT_TRUE(currentId() == _T("a"));
    EXPECT_EQ(messagesOf(_T("a")), QStringList{QStringLiteral("0:Q a")});
    EXPECT_EQ(messagesOf(_T("session-1")).mid(0, 2),
              (QStringList{QStringLiteral("0:Q"), QStringLiteral("1:A")}));
}

TEST_F(Users, ATokenThatTheChatCouldNotTakeIsHandedOverNextTime) {
    answerList(service, {"a"});
    answerRead(service, "a");
    FakeAccount::token = _T("token");
    delete std::exchange(g_zentriHistoryThread, nullptr);
    ASSERT_TRUE(run(_T("KQ_AICHAT")));
    EXPECT_GE(program.host().printedText().Find(_T("\n通信线程未初始化！")), 0);
    EXPECT_EQ(service.requestCount(), 0);
    // Creates the missing thread.
    load();
    ASSERT_TRUE(run(_T("KQ_AICHAT")));
    EXPECT_EQ(FakeAccount::tokenCalls, 2);
    EXPECT_TRUE(TestProgram::pumpUntil([] { return sessions() == QStringList{QStringLiteral("a")}; }));
    ASSERT_TRUE(run(_T("KQ_AICHAT")));
    EXPECT_EQ(FakeAccount::tokenCalls, 2);
    EXPECT_TRUE(testApp().boxes.empty());
}

TEST_F(Users, UnloadingDuringTheReadKeepsTheHistoryFromTheNextUser) {
    answerList(service, {"held", "next"});
    FakeAccount::token = _T("token");
    ASSERT_TRUE(run(_T("KQ_AICHAT")));
    ASSERT_TRUE(TestProgram::pumpUntil([this] { return service.requestCount() == 2; }));
    ASSERT_TRUE(g_zentriHistoryThread->isRunning());
    unload();
    EXPECT_TRUE(g_zentriHistoryThread->isRunning());
    load();
    answerList(service, {"b"});
    answerRead(service, "b");
    FakeAccount::token = _T("other");
    ASSERT_TRUE(run(_T("KQ_AICHAT")));
    EXPECT_TRUE(zentriAccessToken() == _T("other"));
    const QByteArray body = R"({"code":200,"msg":"success","data":[{"role":"user","message":"Q"}]})";
    service.sendHead(1, 200, "application/json",
                     "Content-Length: " + QByteArray::number(body.size()) + "\r\n");
    service.sendBytes(1, body);
    // Without another command.
    EXPECT_TRUE(TestProgram::pumpUntil([] { return sessions() == QStringList{QStringLiteral("b")}; }));
    EXPECT_EQ(requestsTo(kReadTarget + "next"), 0);
    for (int i = 0; i < service.requestCount(); ++i) {
        const bool former = i < 2;
        EXPECT_EQ(service.request(i).header("Authorization"), QByteArray(former ? "token" : "other")) << i;
    }
}

TEST_F(Users, UnloadingDuringTheReadSendsNothingMore) {
    answerList(service, {"held", "next"});
    FakeAccount::token = _T("token");
    ASSERT_TRUE(run(_T("KQ_AICHAT")));
    ASSERT_TRUE(TestProgram::pumpUntil([this] { return service.requestCount() == 2; }));
    unload();
    service.sendEmptyReply(1, 404);
    ASSERT_TRUE(TestProgram::pumpUntil([] { return !g_zentriHistoryThread->isRunning(); }));
    TestProgram::settle();
    EXPECT_EQ(service.requestCount(), 2);
    EXPECT_TRUE(sessions().isEmpty());
}
