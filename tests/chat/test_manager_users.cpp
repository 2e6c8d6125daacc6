#include <QCoreApplication>
#include <QSemaphore>
#include <QTimer>
#include <memory>
#include <utility>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "tests/chat/ManagerTest.h"

// What one user has read and asked must not reach the next one, whenever the module is unloaded in between.

namespace {

/// A run that quit() does not end, as when its message box is open.
class StuckThread : public ZR_AiChatCSThread {
public:
    QSemaphore release;

protected:
    void run() override {
        emit streamStart();
        release.acquire();
        emit streamProcess(QStringLiteral("late"));
        emit streamEnd();
    }
};

class ManagerUsers : public ManagerTest {
protected:
    ManagerUsers() { makeManager(); }

    // As the module does: the history reader is kept.
    void unload() {
        signOut();
        delete g_zentriChatThread;
        g_zentriChatThread = nullptr;
        m_manager->forgetUser();
    }
    static void load(const CString& token) {
        g_zentriChatThread = new ZR_AiChatCSThread;
        signIn(token);
    }

    /// Starts to read a history of these sessions, up to the pending request for the first one.
    int readUntilFirst(const QList<QByteArray>& ids) {
        const int before = m_server.requestCount();
        answerList(m_server, ids);
        m_manager->initUserData();
        EXPECT_TRUE(m_server.waitForRequests(before + 2));
        return before + 1;
    }

    /// Answers the pending request for a session with one message.
    void answerPending(int request) {
        const QByteArray body =
            R"({"code":200,"msg":"success","data":[{"role":"user","message":"former","createTime":5}]})";
        m_server.sendHead(request, 200, "application/json",
                          "Content-Length: " + QByteArray::number(body.size()) + "\r\n");
        m_server.sendBytes(request, body);
    }

    /// Unloads the module while a run that cannot be stopped answers a question; null if the run does not
    /// start.
    std::unique_ptr<StuckThread> unloadWithAStuckThread() {
        answerCreate("s1");
        delete g_zentriChatThread;
        auto stuck = std::make_unique<StuckThread>();
        g_zentriChatThread = stuck.get();
        m_manager->send(_T("former"), true, &m_answer);
        const bool started = waitFor([] { return g_zentriCommunicating.load(); });
        g_zentriChatThread = nullptr;
        unload();
        return started ? std::move(stuck) : nullptr;
    }
    /// Lets the run emit its signals and end, and deletes the thread.
    static bool finish(std::unique_ptr<StuckThread> stuck) {
        stuck->release.release();
        return stuck->wait(kWaitLimitMs);
    }

    FakeAnswer m_answer{m_calls};
};

}  // namespace

TEST_F(ManagerUsers, AreForgotten) {
    loadHistory({"a", "b"});
    m_manager->openSession(_T("a"));
    m_manager->forgetUser();
    EXPECT_TRUE(sessionIds().isEmpty());
    EXPECT_TRUE(currentId().isEmpty());
    EXPECT_TRUE(current().isEmpty());
    ZR_AiChatSingleChatRecord record;
    EXPECT_FALSE(m_manager->findSession(_T("a"), record));
}

TEST_F(ManagerUsers, WithoutSessionsGetAnEmptyList) {
    FakeChatView view(m_calls);
    loadHistory({"a", "b"});
    unload();
    load(_T("token-2"));
    answerHistory({});
    m_manager->initUserData();
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(sessionIds().isEmpty());
    EXPECT_EQ(m_calls, texts({"view sessions "}));
}

TEST_F(ManagerUsers, GetTheirHistoryAfterAReloadBeforeTheQueueHasRun) {
    answerCreate("s1");
    m_manager->send(_T("Q"), true, &m_answer);
    ASSERT_TRUE(m_server.waitForRequests(2));
    ASSERT_TRUE(waitFor([] { return g_zentriCommunicating.load(); }));
    m_server.sendHead(1);
    m_server.close(1);
    ASSERT_TRUE(g_zentriChatThread->wait(kWaitLimitMs));
    unload();
    EXPECT_FALSE(g_zentriCommunicating);
    load(_T("token-1"));
    EXPECT_TRUE(currentId().isEmpty());
    answerHistory({"a"});
    EXPECT_TRUE(m_manager->initUserData());
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(sessionIds(), texts({"a"}));
    EXPECT_TRUE(current().isEmpty());
    EXPECT_EQ(takePrinted(), kReadBegins + kReadDone);
}

TEST_F(ManagerUsers, GetTheirHistoryAfterAReloadDuringTheFormersReading) {
    FakeChatView view(m_calls);
    const int pending = readUntilFirst({"held", "next"});
    unload();
    load(_T("token-2"));
    answerHistory({"b"});
    takePrinted();
    EXPECT_TRUE(m_manager->initUserData());
    EXPECT_EQ(takePrinted(), kInitialising);
    answerPending(pending);
    ASSERT_TRUE(waitFor([this] { return sessionIds() == texts({"b"}); }));
    EXPECT_EQ(m_calls, texts({"view sessions ", "view sessions b"}));
    EXPECT_EQ(requestsTo(kReadTarget + "next"), 0) << "a session of the former user";
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(m_manager->canCommunicate());
}

TEST_F(ManagerUsers, WithoutSessionsAreNotGivenTheFormersLateHistory) {
    const int pending = readUntilFirst({"held"});
    unload();
    load(_T("token-2"));
    answerHistory({});
    m_manager->initUserData();
    answerPending(pending);
    ASSERT_TRUE(waitFor([this] { return requestsTo(kListTarget) == 2; }));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(sessionIds().isEmpty());
}

TEST_F(ManagerUsers, AreNotGivenTheFormersHistoryWithoutAReadOfTheirOwn) {
    const int pending = readUntilFirst({"held"});
    unload();
    answerPending(pending);
    ASSERT_TRUE(g_zentriHistoryThread->wait(kWaitLimitMs));
    load(_T("token-2"));
    EXPECT_TRUE(m_manager->canCommunicate());
    EXPECT_TRUE(sessionIds().isEmpty());
}

TEST_F(ManagerUsers, AreNotReadForAfterTheyHaveGone) {
    readUntilFirst({"held"});
    m_manager->initUserData();
    unload();
    m_server.sendEmptyReply(1, 404);
    ASSERT_TRUE(g_zentriHistoryThread->wait(kWaitLimitMs));
    load(_T("token-2"));
    QCoreApplication::sendPostedEvents();
    EXPECT_FALSE(g_zentriHistoryThread->isRunning());
    EXPECT_EQ(requestsTo(kListTarget), 1);
}

TEST_F(ManagerUsers, AreNotDisturbedByAThreadThatCouldNotBeStopped) {
    std::unique_ptr<StuckThread> stuck = unloadWithAStuckThread();
    ASSERT_NE(stuck, nullptr);
    EXPECT_FALSE(g_zentriCommunicating);

    load(_T("token-2"));
    EXPECT_TRUE(m_manager->canCommunicate());
    FakeAnswer answer(m_calls);
    m_manager->send(_T("Q"), true, &answer);
    ASSERT_TRUE(m_server.waitForRequests(3));
    ASSERT_TRUE(waitFor([] { return g_zentriCommunicating.load(); }));
    m_calls.clear();
    ASSERT_TRUE(finish(std::move(stuck)));
    QCoreApplication::sendPostedEvents();
    EXPECT_TRUE(m_calls.isEmpty());
    EXPECT_TRUE(g_zentriCommunicating);
    EXPECT_EQ(current(), texts({"0:Q"}));
    m_server.sendHead(2);
    m_server.close(2);
    ASSERT_TRUE(waitUntilIdle());
}

TEST_F(ManagerUsers, HearNothingOfAThreadThatEndsAfterTheyHaveGone) {
    std::unique_ptr<StuckThread> stuck = unloadWithAStuckThread();
    ASSERT_NE(stuck, nullptr);
    FakeChatView view(m_calls);
    m_calls.clear();
    ASSERT_TRUE(finish(std::move(stuck)));
    QCoreApplication::sendPostedEvents();
    EXPECT_TRUE(m_calls.isEmpty());
}

TEST_F(ManagerUsers, AreNotGivenASessionThatWasBeingCreatedForTheFormer) {
    QTimer during;
    QObject::connect(&during, &QTimer::timeout, [&] {
        if (m_server.requestCount() == 0) {
            return;
        }
        during.stop();
        unload();
        load(_T("token-2"));
        const QByteArray body = R"({"code":200,"msg":"success","data":"former"})";
        m_server.sendHead(0, 200, "application/json",
                          "Content-Length: " + QByteArray::number(body.size()) + "\r\n");
        m_server.sendBytes(0, body);
    });
    during.start(1);
    m_manager->send(_T("Q"), true, &m_answer);
    EXPECT_EQ(takePrinted(), kNotCreated);
    EXPECT_TRUE(currentId().isEmpty());
    EXPECT_TRUE(current().isEmpty());
    EXPECT_TRUE(sessionIds().isEmpty());
    EXPECT_FALSE(g_zentriChatThread->isRunning());
    EXPECT_TRUE(m_manager->canCommunicate());
}

TEST_F(ManagerUsers, AreReadForOnlyWhenTheManagerCan) {
    signOut();
    EXPECT_FALSE(m_manager->initUserData());
    signIn(_T("token-1"));
    deleteThreads();
    EXPECT_FALSE(m_manager->initUserData());
    EXPECT_EQ(takePrinted(), kNoThreads);
    makeThreads();
    answerHistory({});
    EXPECT_TRUE(m_manager->initUserData());
    ASSERT_TRUE(waitUntilIdle());
}
