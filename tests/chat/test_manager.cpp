#include <QRegularExpression>
#include <QSet>
#include <QTcpServer>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "host/core/ZR_ZentriText.h"
#include "tests/chat/ManagerTest.h"

namespace {

/// The guards, the history and the access to the sessions.
class Manager : public ManagerTest {};

}  // namespace

TEST_F(Manager, ReportsMissingThreadsWhenCreatedAndNeverReactsToThem) {
    m_manager = std::make_unique<TestManager>();
    EXPECT_EQ(takePrinted(), QStringLiteral("\n初始化顺序有误,通信线程应先于管理类初始化"));
    makeThreads();
    m_server.answer(kChatTarget, "data:a\n\n");
    g_zentriChatThread->start();
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_FALSE(g_zentriCommunicating);
    answerHistory({"a"});
    m_manager->initUserData();
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(takePrinted().isEmpty());
    EXPECT_TRUE(sessionIds().isEmpty());
}

TEST_F(Manager, ReportsAnUnfinishedExchangeWhenDestroyed) {
    makeManager();
    m_manager.reset();
    EXPECT_TRUE(takePrinted().isEmpty());

    m_manager = std::make_unique<TestManager>();
    g_zentriExchangeUnfinished = true;
    m_manager.reset();
    g_zentriExchangeUnfinished = false;
    EXPECT_EQ(takePrinted(), QStringLiteral("\n通信线程未正常结束,可能发生错误"));
}

TEST_F(Manager, HasOneInstance) {
    makeThreads();
    ZR_AiChatManager& manager = ZR_AiChatManager::instance();
    EXPECT_EQ(&manager, &ZR_AiChatManager::instance());
    EXPECT_TRUE(manager.canCommunicate());
}

TEST_F(Manager, ChecksItsGuardsInOrder) {
    m_manager = std::make_unique<TestManager>();
    takePrinted();
    g_zentriCommunicating = true;
    signOut();
    EXPECT_FALSE(m_manager->canCommunicate());
    EXPECT_EQ(takePrinted(), kNotSignedIn);
    signIn(_T(""));
    EXPECT_FALSE(m_manager->canCommunicate());
    EXPECT_EQ(takePrinted(), kNotSignedIn);
    signIn(_T("token-1"));
    EXPECT_FALSE(m_manager->canCommunicate());
    EXPECT_EQ(takePrinted(), kNoThreads);
    makeThreads();
    m_manager->onReadStart();
    takePrinted();
    EXPECT_FALSE(m_manager->canCommunicate());
    EXPECT_EQ(takePrinted(), kBusy);
    g_zentriCommunicating = false;
    EXPECT_FALSE(m_manager->canCommunicate());
    EXPECT_EQ(takePrinted(), kInitialising);
    m_manager->onReadEnd();
    takePrinted();
    EXPECT_TRUE(m_manager->canCommunicate());
    EXPECT_TRUE(takePrinted().isEmpty());
}

TEST_F(Manager, RefusesWhenAThreadIsMissing) {
    makeManager();
    delete g_zentriHistoryThread;
    g_zentriHistoryThread = nullptr;
    EXPECT_FALSE(m_manager->canCommunicate());
    EXPECT_EQ(takePrinted(), kNoThreads);
}

TEST_F(Manager, RefusesWhileAThreadRuns) {
    makeManager();
    g_zentriChatThread->start();
    ASSERT_TRUE(m_server.waitForRequests(1));
    g_zentriCommunicating = false;
    EXPECT_FALSE(m_manager->canCommunicate());
    EXPECT_EQ(takePrinted(), kBusy);
    g_zentriChatThread->quit();
    ASSERT_TRUE(waitUntilIdle());
    takePrinted();

    g_zentriHistoryThread->start();
    ASSERT_TRUE(m_server.waitForRequests(2));
    takePrinted();
    EXPECT_FALSE(m_manager->canCommunicate());
    EXPECT_EQ(takePrinted(), kInitialising);
}

TEST_F(Manager, ReadsTheHistoryOnlyWhenSignedIn) {
    makeManager();
    FakeChatView view(m_calls);
    signOut();
    m_manager->initUserData();
    EXPECT_FALSE(g_zentriHistoryThread->isRunning());
    EXPECT_TRUE(takePrinted().isEmpty());

    signIn(_T("token-1"));
    answerHistory({"b", "a"});
    m_manager->initUserData();
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(takePrinted(), kReadBegins + kReadDone);
    EXPECT_EQ(sessionIds(), texts({"b", "a"}));
    EXPECT_EQ(m_calls, texts({"view sessions b a"}));
    EXPECT_TRUE(m_manager->canCommunicate());
}

TEST_F(Manager, PrintsWhyTheHistoryCannotBeReadNow) {
    makeManager();
    g_zentriCommunicating = true;
    m_manager->initUserData();
    EXPECT_EQ(takePrinted(), kBusy);
    EXPECT_FALSE(g_zentriHistoryThread->isRunning());
}

TEST_F(Manager, KeepsItsListWhenTheHistoryIsEmpty) {
    makeManager();
    FakeChatView view(m_calls);
    loadHistory({"a", "b"});
    answerHistory({});
    m_manager->initUserData();
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(sessionIds(), texts({"a", "b"}));
    EXPECT_EQ(m_calls, texts({"view sessions a b"}));
    EXPECT_EQ(takePrinted(), kReadBegins + kReadDone);
}

TEST_F(Manager, ReadsTheHistoryWithoutAView) {
    makeManager();
    loadHistory({"a"});
    EXPECT_EQ(sessionIds(), texts({"a"}));
}

TEST_F(Manager, ReplacesItsListWithTheHistoryAndStartsAnEmptyConversation) {
    makeManager();
    answerCreate("new");
    m_server.answer(kChatTarget, "");
    m_manager->send(_T("Q"), true, nullptr);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(sessionIds(), texts({"new"}));
    loadHistory({"a"});
    EXPECT_EQ(sessionIds(), texts({"a"}));
    EXPECT_TRUE(currentId().isEmpty());
}

TEST_F(Manager, ReturnsCopiesOfItsSessions) {
    makeManager();
    loadHistory({"a", "b"});
    ZR_AiChatSessionList sessions;
    sessions.Add(ZR_AiChatSingleChatRecord());
    EXPECT_TRUE(m_manager->getSessions(sessions));
    ASSERT_EQ(idsOf(sessions), texts({"a", "b"}));
    sessions[0].Clear();
    EXPECT_EQ(sessionIds(), texts({"a", "b"}));

    ZR_AiChatSingleChatRecord record;
    record.SetSessionId(_T("untouched"));
    EXPECT_FALSE(m_manager->findSession(_T("A"), record));
    EXPECT_EQ(record.GetSessionId(), _T("untouched"));
    ASSERT_TRUE(m_manager->findSession(_T("b"), record));
    EXPECT_EQ(messagesOf(record), texts({"0:Q b"}));
    record.Clear();
    EXPECT_EQ(listed(_T("b")), texts({"0:Q b"}));
}

TEST_F(Manager, FindsTheFirstOfTwoSessionsWithTheSameId) {
    makeManager();
    m_server.answer(
        kListTarget,
        R"({"code":200,"msg":"success","data":[{"userChatSessionId":"a"},{},{"userChatSessionId":"a"}]})");
    m_server.answer(kReadTarget + "a",
                    R"({"code":200,"msg":"success","data":[{"role":"user","message":"x"}]})");
    m_server.answer(kReadTarget, R"({"code":200,"msg":"success","data":[]})");
    m_manager->initUserData();
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(sessionIds(), texts({"a", "", "a"}));
    EXPECT_EQ(listed(_T("a")), texts({"0:x"}));
}

TEST_F(Manager, SearchesTheMessagesInListOrder) {
    makeManager();
    loadHistory({"b1", "a", "b2"});
    ZR_AiChatSessionList found;
    EXPECT_TRUE(m_manager->searchSessions(_T("Q b"), found));
    EXPECT_EQ(idsOf(found), texts({"b1", "b2"}));
    EXPECT_FALSE(m_manager->searchSessions(_T("q b"), found));
    EXPECT_EQ(found.GetCount(), 0);
    EXPECT_TRUE(m_manager->searchSessions(_T(""), found));
    EXPECT_EQ(found.GetCount(), 3);
}

TEST_F(Manager, ProbesTheConfiguredAddress) {
    makeManager();
    EXPECT_TRUE(m_manager->checkConnection());
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
    qputenv("ZR_ZENTRI_PROBE", "http://127.0.0.1:" + QByteArray::number(closed.serverPort()));
    EXPECT_TRUE(m_manager->checkConnection());
    closed.close();
    EXPECT_FALSE(m_manager->checkConnection());
}

TEST_F(Manager, CreatesGuidsInUpperCaseWithoutBraces) {
    const QRegularExpression form(
        QStringLiteral("\\A[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\\z"));
    QSet<QString> seen;
    for (int i = 0; i < 100; ++i) {
        const QString guid = toQString(ZR_AiChatManager::makeGuid());
        EXPECT_TRUE(form.match(guid).hasMatch()) << qPrintable(guid);
        seen.insert(guid);
    }
    EXPECT_EQ(seen.size(), 100);
}

TEST_F(Manager, ReadsNoHistoryWithAnEmptyToken) {
    makeManager();
    signIn(_T(""));
    m_manager->initUserData();
    EXPECT_FALSE(g_zentriHistoryThread->isRunning());
    EXPECT_TRUE(takePrinted().isEmpty());
}

TEST_F(Manager, IsInitialisingUntilTheSideBarHasTheList) {
    makeManager();
    FakeChatView view(m_calls);
    bool allowed = true;
    QString printed;
    view.onCall = [&] {
        printed = takePrinted();
        allowed = m_manager->canCommunicate();
    };
    answerHistory({"a"});
    m_manager->initUserData();
    ASSERT_TRUE(g_zentriHistoryThread->wait(kWaitLimitMs));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_FALSE(allowed);
    EXPECT_EQ(printed, kReadBegins);
    EXPECT_EQ(takePrinted(), kInitialising + kReadDone);
}

TEST_F(Manager, IsInitialisingBeforeItSaysSoAndNoLongerWhenItSaysThatItIsDone) {
    makeManager();
    QList<bool> allowed;
    m_host.onPrint = [&](const CString& text) {
        if (toQString(text) == kReadBegins || toQString(text) == kReadDone) {
            allowed.append(m_manager->canCommunicate());
        }
    };
    m_manager->onReadStart();
    m_manager->onReadEnd();
    EXPECT_EQ(allowed, (QList<bool>{false, true}));
}

TEST_F(Manager, UsesTheLatestHistoryWhenTwoReadsEndBeforeItsSlotsRun) {
    makeManager();
    answerHistory({"a"});
    m_manager->initUserData();
    // No event is delivered meanwhile, so the manager has not handled readStart yet.
    ASSERT_TRUE(g_zentriHistoryThread->wait(kWaitLimitMs));
    answerHistory({"b", "c"});
    m_manager->initUserData();
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(sessionIds(), texts({"b", "c"}));
    EXPECT_TRUE(m_manager->canCommunicate());
}

TEST_F(Manager, DeclaresItsSignalsInOrder) {
    EXPECT_EQ(
        signalsOf(ZR_AiChatManager::staticMetaObject),
        texts({"sessionUpdated(CString)", "newSessionSet(CString)", "streamStart()", "streamProcess(QString)",
               "streamEnd()", "historicalChatReadStart()", "historicalChatReadEnd()"}));
}

TEST_F(Manager, ConnectsToTheNewHistoryReaderAfterAReload) {
    makeManager();
    deleteThreads();
    makeThreads();
    loadHistory({"a"});
    EXPECT_EQ(sessionIds(), texts({"a"}));
}
