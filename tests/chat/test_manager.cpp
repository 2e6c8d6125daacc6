#include <QCoreApplication>
#include <QRegularExpression>
#include <QSet>
#include <QTcpServer>
#include <QTimer>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "host/core/ZR_ZentriText.h"
#include "tests/chat/FakeChat.h"
#include "tests/chat/LogFile.h"
#include "tests/support/http/FakeHttpServer.h"

namespace {

const QByteArray chatTarget = "/zr/ai/caddraw/chat";
const QByteArray createTarget = "/zr/ai/session/create";
const QByteArray listTarget = "/zr/ai/session/user";
const QByteArray readTarget = "/zr/ai/chat/user/session/";

const QString notSignedIn = QStringLiteral("\n尚未登录！");
const QString noThreads = QStringLiteral("\n通信线程未初始化！");
const QString busy = QStringLiteral("\n已有正在通信的对话，请等待该通信完成...");
const QString initialising = QStringLiteral("\n正在初始化用户数据，请等待该操作完成...");
const QString noChatThread = QStringLiteral("\n对话线程未初始化！");
const QString notCreated = QStringLiteral("\n创建新对话失败！");
const QString openRefused = QStringLiteral("\n当前有正在进行的通信,请等待通信结束...");
const QString readBegins = QStringLiteral("\nZentri:开始初始化用户数据...");
const QString readDone = QStringLiteral("\nZentri:用户数据初始化完成");
const QString networkFailure = QStringLiteral(
    "\n网络连接失败!请尝试以下方法解决：\r\n1.检查网络连接；\r\n2.关闭系统、360及杀毒软件的防火墙；\r\n"
    "3.如安装有加密软件，请联系管理员修改加密策略；\r\n4.请检测windows自带IE浏览器是否正常启动。\r\n");

class Manager : public ChatTest {
protected:
    Manager() { setServiceAddress(m_server.address()); }

    void answerCreate(const QByteArray& id) {
        m_server.answer(createTarget, "{\"code\":200,\"msg\":\"success\",\"data\":\"" + id + "\"}");
    }

    /// Lets the service tell of sessions with one question each.
    void answerHistory(const QList<QByteArray>& ids) {
        QByteArray data;
        for (const QByteArray& id : ids) {
            data += (data.isEmpty() ? "{" : ",{") + QByteArray("\"userChatSessionId\":\"") + id + "\"}";
            m_server.answer(
                readTarget + id,
                "{\"code\":200,\"msg\":\"success\",\"data\":[{\"role\":\"user\",\"message\":\"Q " + id +
                    "\",\"createTime\":5}]}");
        }
        m_server.answer(listTarget, "{\"code\":200,\"msg\":\"success\",\"data\":[" + data + "]}");
    }

    /// Reads a history in, and forgets what that printed and called.
    void loadHistory(const QList<QByteArray>& ids) {
        answerHistory(ids);
        m_manager->initUserData();
        ASSERT_TRUE(waitUntilIdle());
        takePrinted();
        m_calls.clear();
    }

    QStringList sessionIds() const {
        ZR_AiChatSessionList sessions;
        m_manager->getSessions(sessions);
        return idsOf(sessions);
    }

    QStringList current() const {
        ZR_AiChatSingleChatRecord record;
        m_manager->getCurrentRecord(record);
        return messagesOf(record);
    }

    QString currentId() const {
        ZR_AiChatSingleChatRecord record;
        m_manager->getCurrentRecord(record);
        return toQString(record.GetSessionId());
    }

    /// The messages of a listed session.
    QStringList listed(const CString& id) const {
        ZR_AiChatSingleChatRecord record;
        return m_manager->findSession(id, record) ? messagesOf(record)
                                                  : QStringList{QStringLiteral("not listed")};
    }

    int requestsTo(const QByteArray& target) const {
        int count = 0;
        for (int i = 0; i < m_server.requestCount(); ++i) {
            count += m_server.request(i).target == target ? 1 : 0;
        }
        return count;
    }

    FakeHttpServer m_server;
};

}  // namespace

TEST_F(Manager, ComplainsWhenItIsMadeBeforeTheThreadsAndNeverReactsToThem) {
    m_manager = std::make_unique<TestManager>();
    EXPECT_EQ(takePrinted(), QStringLiteral("\n初始化顺序有误,通信线程应先于管理类初始化"));
    makeThreads();
    m_server.answer(chatTarget, "data:a\n\n");
    g_zentriChatThread->start();
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_FALSE(g_zentriCommunicating);
    answerHistory({"a"});
    m_manager->initUserData();
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(takePrinted().isEmpty());
    EXPECT_TRUE(sessionIds().isEmpty());
}

TEST_F(Manager, ComplainsAtTheEndOnlyAboutAnUnfinishedExchange) {
    makeManager();
    m_manager.reset();
    EXPECT_TRUE(takePrinted().isEmpty());

    m_manager = std::make_unique<TestManager>();
    g_zentriExchangeUnfinished = true;
    m_manager.reset();
    g_zentriExchangeUnfinished = false;
    EXPECT_EQ(takePrinted(), QStringLiteral("\n通信线程未正常结束,可能发生错误"));
}

TEST_F(Manager, IsOneObject) {
    makeThreads();
    ZR_AiChatManager& manager = ZR_AiChatManager::instance();
    EXPECT_EQ(&manager, &ZR_AiChatManager::instance());
    EXPECT_TRUE(manager.canCommunicate());
}

TEST_F(Manager, RefusesInTheOrderOfItsGuards) {
    m_manager = std::make_unique<TestManager>();
    takePrinted();
    g_zentriCommunicating = true;
    signOut();
    EXPECT_FALSE(m_manager->canCommunicate());
    EXPECT_EQ(takePrinted(), notSignedIn);
    signIn(_T(""));
    EXPECT_FALSE(m_manager->canCommunicate());
    EXPECT_EQ(takePrinted(), notSignedIn);
    signIn(_T("token-1"));
    EXPECT_FALSE(m_manager->canCommunicate());
    EXPECT_EQ(takePrinted(), noThreads);
    makeThreads();
    m_manager->onReadStart();
    takePrinted();
    EXPECT_FALSE(m_manager->canCommunicate());
    EXPECT_EQ(takePrinted(), busy);
    g_zentriCommunicating = false;
    EXPECT_FALSE(m_manager->canCommunicate());
    EXPECT_EQ(takePrinted(), initialising);
    m_manager->onReadEnd();
    takePrinted();
    EXPECT_TRUE(m_manager->canCommunicate());
    EXPECT_TRUE(takePrinted().isEmpty());
}

TEST_F(Manager, RefusesWithOneOfTheThreadsMissing) {
    makeManager();
    delete g_zentriHistoryThread;
    g_zentriHistoryThread = nullptr;
    EXPECT_FALSE(m_manager->canCommunicate());
    EXPECT_EQ(takePrinted(), noThreads);
}

TEST_F(Manager, RefusesWhileAThreadRuns) {
    makeManager();
    g_zentriChatThread->start();
    ASSERT_TRUE(m_server.waitForRequests(1));
    g_zentriCommunicating = false;
    EXPECT_FALSE(m_manager->canCommunicate());
    EXPECT_EQ(takePrinted(), busy);
    g_zentriChatThread->quit();
    ASSERT_TRUE(waitUntilIdle());
    takePrinted();

    g_zentriHistoryThread->start();
    ASSERT_TRUE(m_server.waitForRequests(2));
    takePrinted();
    EXPECT_FALSE(m_manager->canCommunicate());
    EXPECT_EQ(takePrinted(), initialising);
}

TEST_F(Manager, ReadsTheHistoryOnceSignedIn) {
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
    EXPECT_EQ(takePrinted(), readBegins + readDone);
    EXPECT_EQ(sessionIds(), texts({"b", "a"}));
    EXPECT_EQ(m_calls, texts({"view sessions b a"}));
    EXPECT_TRUE(m_manager->canCommunicate());
}

TEST_F(Manager, PrintsWhyTheHistoryCannotBeReadNow) {
    makeManager();
    g_zentriCommunicating = true;
    m_manager->initUserData();
    EXPECT_EQ(takePrinted(), busy);
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
    EXPECT_EQ(takePrinted(), readBegins + readDone);
}

TEST_F(Manager, ReadsTheHistoryWithoutAnyView) {
    makeManager();
    loadHistory({"a"});
    EXPECT_EQ(sessionIds(), texts({"a"}));
}

TEST_F(Manager, ReplacesItsListByTheHistoryAndBeginsAnEmptyConversation) {
    makeManager();
    answerCreate("new");
    m_server.answer(chatTarget, "");
    m_manager->send(_T("Q"), true, nullptr);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(sessionIds(), texts({"new"}));
    loadHistory({"a"});
    EXPECT_EQ(sessionIds(), texts({"a"}));
    EXPECT_TRUE(currentId().isEmpty());
}

TEST_F(Manager, GivesCopiesOfItsSessions) {
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

TEST_F(Manager, FindsTheFirstOfTwoSessionsWithOneId) {
    makeManager();
    m_server.answer(
        listTarget,
        R"({"code":200,"msg":"success","data":[{"userChatSessionId":"a"},{},{"userChatSessionId":"a"}]})");
    m_server.answer(readTarget + "a",
                    R"({"code":200,"msg":"success","data":[{"role":"user","message":"x"}]})");
    m_server.answer(readTarget, R"({"code":200,"msg":"success","data":[]})");
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

TEST_F(Manager, ProbesTheAddressItWasGiven) {
    makeManager();
    EXPECT_TRUE(m_manager->checkConnection());
    QTcpServer closed;
    ASSERT_TRUE(closed.listen(QHostAddress::LocalHost));
    qputenv("ZR_ZENTRI_PROBE", "http://127.0.0.1:" + QByteArray::number(closed.serverPort()));
    EXPECT_TRUE(m_manager->checkConnection());
    closed.close();
    EXPECT_FALSE(m_manager->checkConnection());
}

TEST_F(Manager, MakesGuidsInUpperCaseWithoutBraces) {
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

TEST_F(Manager, CreatesASessionForTheFirstQuestionOnly) {
    makeManager();
    answerCreate("s1");
    m_server.answer(chatTarget, "data:A\n\n");
    QStringList signalled;
    QObject::connect(
        m_manager.get(), &ZR_AiChatManager::newSessionSet, m_manager.get(), [&](const CString& id) {
            // The session is listed with its question by the time the side bar reads the list again.
            signalled.append(QStringLiteral("new ") + toQString(id) + listed(id).join(QLatin1Char(' ')));
        });
    QObject::connect(
        m_manager.get(), &ZR_AiChatManager::sessionUpdated, m_manager.get(),
        [&](const CString& id) { signalled.append(QStringLiteral("updated ") + toQString(id)); });

    const int logged = LogFile::messages().size();
    m_manager->send(_T("怎样画圆"), true, nullptr);
    EXPECT_TRUE(g_zentriChatThread->isRunning());
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(requestsTo(createTarget), 1);
    EXPECT_EQ(currentId(), QStringLiteral("s1"));
    EXPECT_EQ(m_manager->getLastUserInput(), _T("怎样画圆"));

    m_manager->send(_T("两行\n100%s"), false, nullptr);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(requestsTo(createTarget), 1);
    EXPECT_EQ(requestsTo(chatTarget), 2);
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

TEST_F(Manager, SendsNothingAndSaysNothingWhileNobodyIsSignedIn) {
    makeManager();
    signOut();
    m_manager->send(_T("Q"), true, nullptr);
    m_manager->sendInKnownSession(_T("a"), _T("Q"), true, nullptr);
    EXPECT_TRUE(takePrinted().isEmpty());
    EXPECT_EQ(m_server.requestCount(), 0);
}

TEST_F(Manager, RefusesToSendWithoutTheStreamingThread) {
    makeManager();
    deleteThreads();
    m_manager->send(_T("Q"), true, nullptr);
    EXPECT_EQ(takePrinted(), noChatThread);
    m_manager->sendInKnownSession(_T("a"), _T("Q"), true, nullptr);
    EXPECT_EQ(takePrinted(), noChatThread);
    EXPECT_EQ(m_server.requestCount(), 0);
}

TEST_F(Manager, RefusesToSendDuringAnotherExchange) {
    makeManager();
    g_zentriCommunicating = true;
    m_manager->send(_T("Q"), true, nullptr);
    EXPECT_EQ(takePrinted(), busy);
    m_manager->sendInKnownSession(_T("a"), _T("Q"), true, nullptr);
    EXPECT_EQ(takePrinted(), busy);
    EXPECT_EQ(m_server.requestCount(), 0);
}

TEST_F(Manager, RefusesToSendWithoutNetwork) {
    makeManager();
    answerCreate("s1");
    qputenv("ZR_ZENTRI_PROBE", "http://127.0.0.1:1");
    m_manager->send(_T("Q"), true, nullptr);
    EXPECT_EQ(takePrinted(), networkFailure);
    EXPECT_EQ(m_server.requestCount(), 0);
    EXPECT_TRUE(current().isEmpty());
}

TEST_F(Manager, SaysThatASessionCannotBeCreatedAndIsEmptyThen) {
    makeManager();
    m_server.answer(createTarget, R"({"code":500,"msg":"坏"})");
    m_manager->send(_T("Q"), true, nullptr);
    EXPECT_EQ(takePrinted(), notCreated);
    EXPECT_TRUE(current().isEmpty());
    EXPECT_TRUE(currentId().isEmpty());
    EXPECT_TRUE(sessionIds().isEmpty());
    EXPECT_FALSE(g_zentriChatThread->isRunning());
    EXPECT_TRUE(m_manager->canCommunicate());
}

TEST_F(Manager, SendsNothingInAKnownSessionThatIsNotListed) {
    makeManager();
    loadHistory({"a"});
    m_manager->openSession(_T("a"));
    m_manager->sendInKnownSession(_T("gone"), _T("Q"), true, nullptr);
    EXPECT_TRUE(takePrinted().isEmpty());
    EXPECT_FALSE(g_zentriChatThread->isRunning());
    EXPECT_EQ(requestsTo(chatTarget), 0);
    EXPECT_TRUE(currentId().isEmpty());
    EXPECT_EQ(sessionIds(), texts({"a"}));
}

TEST_F(Manager, MakesAKnownSessionCurrentBeforeItSends) {
    makeManager();
    loadHistory({"a", "b"});
    m_manager->openSession(_T("a"));
    m_server.answer(chatTarget, "");
    m_manager->sendInKnownSession(_T("b"), _T("more"), true, nullptr);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(currentId(), QStringLiteral("b"));
    EXPECT_EQ(listed(_T("b")), texts({"0:Q b", "0:more"}));
    EXPECT_EQ(sessionIds(), texts({"a", "b"}));
}

TEST_F(Manager, FilesTheCurrentConversationForANewOne) {
    makeManager();
    FakeAnswer answer(m_calls);
    answerCreate("s1");
    m_server.answer(chatTarget, "data:A\n\n");
    m_manager->send(_T("Q"), true, &answer);
    ASSERT_TRUE(waitUntilIdle());
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

TEST_F(Manager, FilesTheCurrentConversationInItsPlace) {
    makeManager();
    loadHistory({"a", "b", "c"});
    m_server.answer(chatTarget, "");
    m_manager->openSession(_T("b"));
    m_manager->send(_T("more"), true, nullptr);
    ASSERT_TRUE(waitUntilIdle());
    m_manager->newSession();
    EXPECT_EQ(sessionIds(), texts({"a", "b", "c"}));
    EXPECT_EQ(listed(_T("b")), texts({"0:Q b", "0:more"}));
}

TEST_F(Manager, OpensAListedSessionAndShowsIt) {
    makeManager();
    loadHistory({"a", "b"});
    m_manager->openSession(_T("a"));
    EXPECT_EQ(currentId(), QStringLiteral("a"));
    FakeChatView view(m_calls);
    m_manager->openSession(_T("b"));
    EXPECT_EQ(current(), texts({"0:Q b"}));
    EXPECT_EQ(m_calls, texts({"view show current"}));
}

TEST_F(Manager, OpensAnEmptyConversationForASessionThatIsNotListed) {
    makeManager();
    FakeChatView view(m_calls);
    loadHistory({"a"});
    m_manager->openSession(_T("a"));
    m_manager->openSession(_T("gone"));
    EXPECT_TRUE(currentId().isEmpty());
    EXPECT_TRUE(current().isEmpty());
    EXPECT_EQ(m_calls, texts({"view show current", "view show current"}));
}

TEST_F(Manager, RefusesToOpenASessionWhileTheStreamRuns) {
    makeManager();
    FakeChatView view(m_calls);
    loadHistory({"a", "b"});
    m_manager->openSession(_T("a"));
    m_calls.clear();
    m_manager->send(_T("Q"), true, nullptr);
    m_manager->openSession(_T("b"));
    EXPECT_EQ(takePrinted(), openRefused);
    EXPECT_EQ(currentId(), QStringLiteral("a"));
    EXPECT_FALSE(m_calls.contains(QStringLiteral("view show current")));
}

TEST_F(Manager, OpensASessionWhileTheHistoryIsBeingRead) {
    makeManager();
    loadHistory({"a"});
    const int before = m_server.requestCount();
    m_server.answer(listTarget, R"({"code":200,"msg":"success","data":[{"userChatSessionId":"held"}]})");
    m_manager->initUserData();
    ASSERT_TRUE(m_server.waitForRequests(before + 2));
    m_manager->openSession(_T("a"));
    EXPECT_EQ(currentId(), QStringLiteral("a"));
    EXPECT_FALSE(takePrinted().contains(openRefused));
}

TEST_F(Manager, HoldsOffEverythingWhileItCreatesASession) {
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
    m_server.answer(chatTarget, "");
    m_manager->send(_T("Q"), true, nullptr);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_FALSE(allowed);
    EXPECT_EQ(printed, busy + busy + openRefused + busy);
    EXPECT_EQ(requestsTo(createTarget), 1);
    EXPECT_EQ(listed(_T("s1")), texts({"0:Q"}));
    EXPECT_EQ(sessionIds(), texts({"a", "s1"}));
}

TEST_F(Manager, StopsWhenTheThreadsGoWhileItCreatesASession) {
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
    EXPECT_EQ(takePrinted(), noChatThread);
    EXPECT_TRUE(current().isEmpty());
    EXPECT_TRUE(m_calls.isEmpty());
}
