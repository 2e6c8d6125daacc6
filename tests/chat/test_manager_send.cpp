#include <QSignalSpy>
#include <QTimer>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "host/core/ZR_ZentriText.h"
#include "tests/chat/LogFile.h"
#include "tests/chat/ManagerTest.h"

namespace {

/// Sending, and filing and opening conversations.
class ManagerSend : public ManagerTest {
protected:
    /// Has the question "Q" answered with "A" in a new session "s1". False if the exchange does not end.
    bool askInNewSession(FakeAnswer& answer) {
        answerCreate("s1");
        m_server.answer(kChatTarget, "data:A\n\n");
        m_manager->send(_T("Q"), true, &answer);
        return waitUntilIdle();
    }
};

}  // namespace

TEST_F(ManagerSend, CreatesASessionForTheFirstQuestionOnly) {
    makeManager();
    answerCreate("s1");
    m_server.answer(kChatTarget, "data:A\n\n");
    QStringList signalled;
    QObject::connect(
        m_manager.get(), &ZR_AiChatManager::newSessionSet, m_manager.get(), [&](const CString& id) {
            // The session is listed with its question by the time the side bar reloads the list.
            signalled.append(QStringLiteral("new ") + toQString(id) + listed(id).join(QLatin1Char(' ')));
        });
    QObject::connect(
        m_manager.get(), &ZR_AiChatManager::sessionUpdated, m_manager.get(),
        [&](const CString& id) { signalled.append(QStringLiteral("updated ") + toQString(id)); });

    const int logged = LogFile::messages().size();
    m_manager->send(_T("怎样画圆"), true, nullptr);
    EXPECT_TRUE(g_zentriChatThread->isRunning());
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(requestsTo(kCreateTarget), 1);
    EXPECT_EQ(currentId(), QStringLiteral("s1"));
    EXPECT_EQ(m_manager->getLastUserInput(), _T("怎样画圆"));

    m_manager->send(_T("两行\n100%s"), false, nullptr);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(requestsTo(kCreateTarget), 1);
    EXPECT_EQ(requestsTo(kChatTarget), 2);
    EXPECT_EQ(signalled, texts({"new s10:怎样画圆", "updated s1"}));
    EXPECT_EQ(sessionIds(), texts({"s1"}));
    EXPECT_EQ(listed(_T("s1")), texts({"0:怎样画圆", "0:两行\n100%s"}));
    EXPECT_EQ(LogFile::messages().mid(logged),
              texts({"准备发送用户对话,内容如下:\n怎样画圆", "准备发送用户对话,内容如下:\n两行\n100%s"}));
    EXPECT_TRUE(takePrinted().isEmpty());

    const QByteArray second = m_server.request(2).body;
    EXPECT_TRUE(second.contains("\"userChatSessionId\": \"s1\"")) << second.constData();
    EXPECT_TRUE(second.contains("\"userInput\": \"两行\\n100%s\"")) << second.constData();
}

TEST_F(ManagerSend, SendsAndPrintsNothingWhenNobodyIsSignedIn) {
    makeManager();
    signOut();
    m_manager->send(_T("Q"), true, nullptr);
    m_manager->sendInKnownSession(_T("a"), _T("Q"), true, nullptr);
    EXPECT_TRUE(takePrinted().isEmpty());
    EXPECT_EQ(m_server.requestCount(), 0);
}

TEST_F(ManagerSend, RefusesToSendWithoutTheStreamingThread) {
    makeManager();
    deleteThreads();
    m_manager->send(_T("Q"), true, nullptr);
    EXPECT_EQ(takePrinted(), kNoChatThread);
    m_manager->sendInKnownSession(_T("a"), _T("Q"), true, nullptr);
    EXPECT_EQ(takePrinted(), kNoChatThread);
    EXPECT_EQ(m_server.requestCount(), 0);
}

TEST_F(ManagerSend, RefusesToSendDuringAnotherExchange) {
    makeManager();
    g_zentriCommunicating = true;
    m_manager->send(_T("Q"), true, nullptr);
    EXPECT_EQ(takePrinted(), kBusy);
    m_manager->sendInKnownSession(_T("a"), _T("Q"), true, nullptr);
    EXPECT_EQ(takePrinted(), kBusy);
    EXPECT_EQ(m_server.requestCount(), 0);
}

TEST_F(ManagerSend, RefusesToSendWithoutNetwork) {
    makeManager();
    answerCreate("s1");
    qputenv("ZR_ZENTRI_PROBE", "http://127.0.0.1:1");
    m_manager->send(_T("Q"), true, nullptr);
    EXPECT_EQ(takePrinted(), kNetworkFailure);
    EXPECT_EQ(m_server.requestCount(), 0);
    EXPECT_TRUE(current().isEmpty());
}

TEST_F(ManagerSend, ReportsAFailedSessionCreationAndHasNoConversationThen) {
    makeManager();
    m_server.answer(kCreateTarget, R"({"code":500,"msg":"坏"})");
    m_manager->send(_T("Q"), true, nullptr);
    EXPECT_EQ(takePrinted(), kNotCreated);
    EXPECT_TRUE(current().isEmpty());
    EXPECT_TRUE(currentId().isEmpty());
    EXPECT_TRUE(sessionIds().isEmpty());
    EXPECT_FALSE(g_zentriChatThread->isRunning());
    EXPECT_TRUE(m_manager->canCommunicate());
}

TEST_F(ManagerSend, SendsNothingInAnUnlistedSession) {
    makeManager();
    loadHistory({"a"});
    m_manager->openSession(_T("a"));
    m_manager->sendInKnownSession(_T("gone"), _T("Q"), true, nullptr);
    EXPECT_TRUE(takePrinted().isEmpty());
    EXPECT_FALSE(g_zentriChatThread->isRunning());
    EXPECT_EQ(requestsTo(kChatTarget), 0);
    EXPECT_TRUE(currentId().isEmpty());
    EXPECT_EQ(sessionIds(), texts({"a"}));
}

TEST_F(ManagerSend, MakesAKnownSessionCurrentBeforeItSends) {
    makeManager();
    loadHistory({"a", "b"});
    m_manager->openSession(_T("a"));
    m_server.answer(kChatTarget, "");
    m_manager->sendInKnownSession(_T("b"), _T("more"), true, nullptr);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(currentId(), QStringLiteral("b"));
    EXPECT_EQ(listed(_T("b")), texts({"0:Q b", "0:more"}));
    EXPECT_EQ(sessionIds(), texts({"a", "b"}));
}

TEST_F(ManagerSend, FilesTheCurrentConversationBeforeANewOne) {
    makeManager();
    FakeAnswer answer(m_calls);
    ASSERT_TRUE(askInNewSession(answer));
    EXPECT_EQ(listed(_T("s1")), texts({"0:Q"})) << "the answer reaches the list with the next filing";
    EXPECT_EQ(current().first(), QStringLiteral("0:Q"));
    const QStringList whole = current();
    EXPECT_GT(whole.size(), 1);

    m_manager->newSession();
    EXPECT_EQ(listed(_T("s1")), whole);
    EXPECT_TRUE(current().isEmpty());
    EXPECT_TRUE(currentId().isEmpty());
    m_manager->newSession();
    EXPECT_EQ(sessionIds(), texts({"s1"})) << "an empty conversation is dropped";
}

TEST_F(ManagerSend, FilesTheCurrentConversationAtItsPlaceInTheList) {
    makeManager();
    loadHistory({"a", "b", "c"});
    m_server.answer(kChatTarget, "");
    m_manager->openSession(_T("b"));
    m_manager->send(_T("more"), true, nullptr);
    ASSERT_TRUE(waitUntilIdle());
    m_manager->newSession();
    EXPECT_EQ(sessionIds(), texts({"a", "b", "c"}));
    EXPECT_EQ(listed(_T("b")), texts({"0:Q b", "0:more"}));
}

TEST_F(ManagerSend, OpensAListedSessionAndShowsIt) {
    makeManager();
    loadHistory({"a", "b"});
    m_manager->openSession(_T("a"));
    EXPECT_EQ(currentId(), QStringLiteral("a"));
    FakeChatView view(m_calls);
    m_manager->openSession(_T("b"));
    EXPECT_EQ(current(), texts({"0:Q b"}));
    EXPECT_EQ(m_calls, texts({"view show current"}));
}

TEST_F(ManagerSend, OpensAnEmptyConversationForAnUnlistedSession) {
    makeManager();
    FakeChatView view(m_calls);
    loadHistory({"a"});
    m_manager->openSession(_T("a"));
    m_manager->openSession(_T("gone"));
    EXPECT_TRUE(currentId().isEmpty());
    EXPECT_TRUE(current().isEmpty());
    EXPECT_EQ(m_calls, texts({"view show current", "view show current"}));
}

TEST_F(ManagerSend, RefusesToOpenASessionWhileTheStreamRuns) {
    makeManager();
    FakeChatView view(m_calls);
    loadHistory({"a", "b"});
    m_manager->openSession(_T("a"));
    m_calls.clear();
    m_manager->send(_T("Q"), true, nullptr);
    m_manager->openSession(_T("b"));
    EXPECT_EQ(takePrinted(), kOpenRefused);
    EXPECT_EQ(currentId(), QStringLiteral("a"));
    EXPECT_FALSE(m_calls.contains(QStringLiteral("view show current")));
}

TEST_F(ManagerSend, OpensASessionWhileTheHistoryIsBeingRead) {
    makeManager();
    loadHistory({"a"});
    const int before = m_server.requestCount();
    answerList(m_server, {"held"});
    m_manager->initUserData();
    ASSERT_TRUE(m_server.waitForRequests(before + 2));
    m_manager->openSession(_T("a"));
    EXPECT_EQ(currentId(), QStringLiteral("a"));
    EXPECT_FALSE(takePrinted().contains(kOpenRefused));
}

TEST_F(ManagerSend, RefusesReentrantCallsWhileCreatingASession) {
    makeManager();
    loadHistory({"a"});
    const int before = m_server.requestCount();
    bool allowed = true;
    QString printed;
    QTimer during;
    QObject::connect(&during, &QTimer::timeout, [&] {
        if (m_server.requestCount() == before) {
            return;
        }
        during.stop();
        allowed = m_manager->canCommunicate();
        m_manager->send(_T("re-entered"), true, nullptr);
        m_manager->openSession(_T("a"));
        m_manager->newSession();
        m_manager->initUserData();
        printed = takePrinted();
        const QByteArray body = R"({"code":200,"msg":"success","data":"s1"})";
        m_server.sendHead(before, 200, "application/json",
                          "Content-Length: " + QByteArray::number(body.size()) + "\r\n");
        m_server.sendBytes(before, body);
    });
    during.start(1);
    m_server.answer(kChatTarget, "");
    m_manager->send(_T("Q"), true, nullptr);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_FALSE(allowed);
    EXPECT_EQ(printed, kBusy + kBusy + kOpenRefused + kBusy);
    EXPECT_EQ(requestsTo(kCreateTarget), 1);
    EXPECT_EQ(listed(_T("s1")), texts({"0:Q"}));
    EXPECT_EQ(sessionIds(), texts({"a", "s1"}));
}

TEST_F(ManagerSend, StopsWhenTheThreadsAreDeletedWhileCreatingASession) {
    makeManager();
    auto answer = std::make_unique<FakeAnswer>(m_calls);
    QTimer during;
    QObject::connect(&during, &QTimer::timeout, [&] {
        if (m_server.requestCount() == 0) {
            return;
        }
        during.stop();
        answer.reset();
        deleteThreads();
        const QByteArray body = R"({"code":200,"msg":"success","data":"s1"})";
        m_server.sendHead(0, 200, "application/json",
                          "Content-Length: " + QByteArray::number(body.size()) + "\r\n");
        m_server.sendBytes(0, body);
    });
    during.start(1);
    m_manager->send(_T("Q"), true, answer.get());
    EXPECT_EQ(takePrinted(), kNoChatThread);
    EXPECT_TRUE(current().isEmpty());
    EXPECT_TRUE(m_calls.isEmpty());
}

TEST_F(ManagerSend, ChecksTheThreadThenTheExchangeThenTheNetwork) {
    makeManager();
    qputenv("ZR_ZENTRI_PROBE", "http://127.0.0.1:1");
    g_zentriCommunicating = true;
    m_manager->send(_T("Q"), true, nullptr);
    EXPECT_EQ(takePrinted(), kBusy);
    deleteThreads();
    m_manager->send(_T("Q"), true, nullptr);
    EXPECT_EQ(takePrinted(), kNoChatThread);
}

TEST_F(ManagerSend, ChangesNothingWhenItRefusesToSendInAKnownSession) {
    makeManager();
    loadHistory({"a", "b"});
    m_manager->openSession(_T("a"));
    qputenv("ZR_ZENTRI_PROBE", "http://127.0.0.1:1");
    m_manager->sendInKnownSession(_T("b"), _T("Q"), true, nullptr);
    EXPECT_EQ(takePrinted(), kNetworkFailure);
    signOut();
    m_manager->sendInKnownSession(_T("b"), _T("Q"), true, nullptr);
    EXPECT_TRUE(takePrinted().isEmpty());
    EXPECT_EQ(currentId(), QStringLiteral("a"));
    EXPECT_EQ(current(), texts({"0:Q a"}));
    EXPECT_EQ(listed(_T("b")), texts({"0:Q b"}));
}

TEST_F(ManagerSend, EmitsItsSignalBeforeItStartsTheExchange) {
    makeManager();
    answerCreate("s1");
    m_server.answer(kChatTarget, "");
    QList<bool> running;
    const auto note = [&] { running.append(g_zentriChatThread->isRunning()); };
    QObject::connect(m_manager.get(), &ZR_AiChatManager::newSessionSet, m_manager.get(), note);
    QObject::connect(m_manager.get(), &ZR_AiChatManager::sessionUpdated, m_manager.get(), note);
    m_manager->send(_T("first"), true, nullptr);
    ASSERT_TRUE(waitUntilIdle());
    m_manager->send(_T("second"), true, nullptr);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(running, (QList<bool>{false, false}));
}

TEST_F(ManagerSend, RefusesDecisionsOfTheReceiversOfItsSignal) {
    makeManager();
    loadHistory({"a"});
    answerCreate("s1");
    m_server.answer(kChatTarget, "");
    QList<bool> allowed;
    const auto decide = [&] {
        allowed.append(m_manager->canCommunicate());
        m_manager->openSession(_T("a"));
        m_manager->newSession();
    };
    QObject::connect(m_manager.get(), &ZR_AiChatManager::newSessionSet, m_manager.get(), decide);
    QObject::connect(m_manager.get(), &ZR_AiChatManager::sessionUpdated, m_manager.get(), decide);
    m_manager->send(_T("first"), true, nullptr);
    ASSERT_TRUE(waitUntilIdle());
    m_manager->send(_T("second"), true, nullptr);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(allowed, (QList<bool>{false, false}));
    EXPECT_EQ(takePrinted(), kBusy + kOpenRefused + kBusy + kOpenRefused);
    EXPECT_EQ(current(), texts({"0:first", "0:second"}));
    EXPECT_TRUE(m_server.request(m_server.requestCount() - 1).body.contains("\"userInput\": \"second\""));
}

TEST_F(ManagerSend, FilesTheConversationAfterTheSignInTestAndBeforeTheOthers) {
    makeManager();
    FakeAnswer answer(m_calls);
    ASSERT_TRUE(askInNewSession(answer));
    m_manager->newSession();
    m_manager->onStreamEnd();
    ASSERT_EQ(current(), texts({"1:A"})) << "a conversation without an id, which filing drops";

    signOut();
    m_manager->send(_T("refused"), true, nullptr);
    EXPECT_EQ(current(), texts({"1:A"}));
    signIn(_T("token-1"));
    g_zentriCommunicating = true;
    m_manager->send(_T("refused"), true, nullptr);
    EXPECT_EQ(takePrinted(), kBusy);
    EXPECT_TRUE(current().isEmpty());
}

TEST_F(ManagerSend, FilesTheCurrentConversationWhenASessionIsOpened) {
    makeManager();
    loadHistory({"a"});
    FakeAnswer answer(m_calls);
    ASSERT_TRUE(askInNewSession(answer));
    const QStringList whole = current();
    ASSERT_GT(whole.size(), 1);
    m_manager->openSession(_T("a"));
    EXPECT_EQ(listed(_T("s1")), whole);
    EXPECT_EQ(sessionIds(), texts({"a", "s1"}));
}

TEST_F(ManagerSend, LogsTheQuestionBeforeItStartsTheThread) {
    makeManager();
    answerCreate("s1");
    m_server.answer(kChatTarget, "");
    // Writing such a question takes far longer than starting a thread.
    const QString question(1 << 22, QLatin1Char('x'));
    qint64 loggedAtStart = 0;
    QObject::connect(
        g_zentriChatThread, &QThread::started, g_zentriChatThread, [&] { loggedAtStart = LogFile::size(); },
        Qt::DirectConnection);
    const qint64 before = LogFile::size();
    m_manager->send(toCString(question), true, nullptr);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_GT(loggedAtStart, before + 2 * question.size());
}

TEST_F(ManagerSend, NeverEmitsItsStreamAndHistorySignalsOnPurpose) {
    makeManager();
    const QSignalSpy start(m_manager.get(), &ZR_AiChatManager::streamStart);
    const QSignalSpy process(m_manager.get(), &ZR_AiChatManager::streamProcess);
    const QSignalSpy end(m_manager.get(), &ZR_AiChatManager::streamEnd);
    const QSignalSpy readStart(m_manager.get(), &ZR_AiChatManager::historicalChatReadStart);
    const QSignalSpy readEnd(m_manager.get(), &ZR_AiChatManager::historicalChatReadEnd);
    loadHistory({"a"});
    m_manager->openSession(_T("a"));
    m_server.answer(kChatTarget, "data:x\n\n");
    m_manager->send(_T("Q"), true, nullptr);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(start.size() + process.size() + end.size() + readStart.size() + readEnd.size(), 0);
}

TEST_F(ManagerSend, OpensASessionWhileOnlyTheFlagIsSetOnPurpose) {
    makeManager();
    loadHistory({"a"});
    g_zentriCommunicating = true;
    m_manager->openSession(_T("a"));
    EXPECT_EQ(currentId(), QStringLiteral("a"));
    EXPECT_TRUE(takePrinted().isEmpty());
}

TEST_F(ManagerSend, LeavesTheGuardOfNewSessionToItsCallerOnPurpose) {
    makeManager();
    loadHistory({"a"});
    m_manager->openSession(_T("a"));
    g_zentriCommunicating = true;
    m_manager->newSession();
    EXPECT_TRUE(currentId().isEmpty());
    EXPECT_TRUE(takePrinted().isEmpty());
}

TEST_F(ManagerSend, DropsALateAnswerInAConversationWithoutAnId) {
    makeManager();
    FakeAnswer answer(m_calls);
    ASSERT_TRUE(askInNewSession(answer));
    m_manager->newSession();
    const QStringList filed = listed(_T("s1"));
    m_manager->onStreamEnd();
    EXPECT_EQ(current(), texts({"1:A"}));
    m_manager->newSession();
    EXPECT_TRUE(current().isEmpty());
    EXPECT_EQ(sessionIds(), texts({"s1"}));
    EXPECT_EQ(listed(_T("s1")), filed);
}
