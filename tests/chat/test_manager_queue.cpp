#include <QCoreApplication>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "tests/chat/ManagerTest.h"

// In a foreign message loop posted events wait while there is input, so a click reaches the manager before
// the signals that a thread has already posted. The tests withhold those signals by delivering no events.

namespace {

class ManagerQueue : public ManagerTest {
protected:
    ManagerQueue() {
        makeManager();
        answerCreate("s1");
    }

    /// Asks in the current conversation and waits until the run has ended, without delivering any of its
    /// signals. The flag stays clear meanwhile, so the run emits one streamEnd.
    void askWithheld(const CString& question = _T("Q")) {
        m_server.answer(kChatTarget, "data:A\n\n");
        m_manager->send(question, true, &m_answer);
        ASSERT_TRUE(g_zentriChatThread->wait(kWaitLimitMs));
    }

    /// The same, but streamStart is delivered. The run therefore emits streamEnd twice.
    void askWithheldTwice() {
        const int before = m_server.requestCount();
        m_manager->send(_T("Q"), true, &m_answer);
        ASSERT_TRUE(m_server.waitForRequests(before + 2));
        ASSERT_TRUE(waitFor([] { return g_zentriCommunicating.load(); }));
        m_server.sendHead(before + 1);
        m_server.sendBytes(before + 1, "data:A\n\n");
        m_server.close(before + 1);
        ASSERT_TRUE(g_zentriChatThread->wait(kWaitLimitMs));
    }

    /// Reads a history without delivering any signal.
    void readWithheld(const QList<QByteArray>& ids) {
        answerHistory(ids);
        m_manager->initUserData();
        ASSERT_TRUE(g_zentriHistoryThread->wait(kWaitLimitMs));
    }

    FakeAnswer m_answer{m_calls};
};

}  // namespace

TEST_F(ManagerQueue, OpeningASessionLeavesAPostedAnswerInItsOwn) {
    loadHistory({"a"});
    askWithheld();
    m_manager->openSession(_T("a"));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(current(), texts({"0:Q a"}));
    EXPECT_EQ(listed(_T("s1")), texts({"0:Q", "1:A"}));
    EXPECT_EQ(listed(_T("a")), texts({"0:Q a"}));
}

TEST_F(ManagerQueue, OpeningASessionLeavesAnAnswerThatEndsTwiceInItsOwnTwice) {
    loadHistory({"a"});
    askWithheldTwice();
    m_manager->openSession(_T("a"));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(current(), texts({"0:Q a"}));
    EXPECT_EQ(listed(_T("s1")), texts({"0:Q", "1:A", "1:A"}));
    EXPECT_EQ(listed(_T("a")), texts({"0:Q a"}));
}

TEST_F(ManagerQueue, ANewConversationLeavesAPostedAnswerInItsOwn) {
    askWithheld();
    m_manager->newSession();
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(current().isEmpty());
    EXPECT_EQ(listed(_T("s1")), texts({"0:Q", "1:A"}));
}

TEST_F(ManagerQueue, TheNextQuestionFollowsAPostedAnswer) {
    askWithheld();
    EXPECT_TRUE(m_manager->canCommunicate());
    FakeAnswer second(m_calls);
    m_manager->send(_T("second"), true, &second);
    EXPECT_EQ(current(), texts({"0:Q", "1:A", "0:second"}));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(current().mid(0, 4), texts({"0:Q", "1:A", "0:second", "1:A"}));
    EXPECT_TRUE(takePrinted().isEmpty());
}

TEST_F(ManagerQueue, AQuestionInAKnownSessionFollowsAPostedAnswer) {
    loadHistory({"a"});
    askWithheld();
    m_manager->sendInKnownSession(_T("a"), _T("more"), true, nullptr);
    EXPECT_EQ(listed(_T("s1")), texts({"0:Q", "1:A"}));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(current(), texts({"0:Q a", "0:more"}));
}

TEST_F(ManagerQueue, AQuestionFollowsAPostedHistory) {
    m_server.answer(kChatTarget, "data:A\n\n");
    readWithheld({"a"});
    EXPECT_TRUE(m_manager->canCommunicate());
    EXPECT_EQ(sessionIds(), texts({"a"}));
    m_manager->send(_T("Q"), true, &m_answer);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(currentId(), QStringLiteral("s1"));
    EXPECT_EQ(current().mid(0, 2), texts({"0:Q", "1:A"}));
    EXPECT_EQ(sessionIds(), texts({"a", "s1"}));
}

TEST_F(ManagerQueue, AQuestionThatIsNotCheckedBeforeFollowsAPostedHistoryToo) {
    loadHistory({"a"});
    m_manager->openSession(_T("a"));
    m_server.answer(kChatTarget, "data:A\n\n");
    readWithheld({"a"});
    m_manager->sendInKnownSession(_T("a"), _T("more"), true, &m_answer);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(current().mid(0, 3), texts({"0:Q a", "0:more", "1:A"}));
}

TEST_F(ManagerQueue, OpensASessionOfAPostedHistory) {
    readWithheld({"a"});
    m_manager->openSession(_T("a"));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(currentId(), QStringLiteral("a"));
}

TEST_F(ManagerQueue, TheHistoryIsReadAfterAPostedAnswer) {
    askWithheldTwice();
    readWithheld({});
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(listed(_T("s1")), texts({"0:Q", "1:A", "1:A"}));
    EXPECT_EQ(takePrinted(), kReadBegins + kReadDone);
}

TEST_F(ManagerQueue, ADecisionWithinASlotDeliversTheRestFirst) {
    loadHistory({"a"});
    FakeChatView view(m_calls);
    askWithheldTwice();
    bool opened = false;
    view.onCall = [&] {
        if (!opened && m_calls.last() == QStringLiteral("view end")) {
            opened = true;
            m_manager->openSession(_T("a"));
        }
    };
    ASSERT_TRUE(waitUntilIdle());
    ASSERT_TRUE(opened);
    EXPECT_EQ(current(), texts({"0:Q a"}));
    EXPECT_EQ(listed(_T("s1")), texts({"0:Q", "1:A", "1:A"}));
    EXPECT_EQ(listed(_T("a")), texts({"0:Q a"}));
    EXPECT_FALSE(g_zentriCommunicating);
    EXPECT_TRUE(m_manager->canCommunicate());
}

TEST_F(ManagerQueue, ARefusedReadOfTheHistoryIsTriedAgainAfterTheAnswer) {
    m_manager->send(_T("Q"), true, &m_answer);
    ASSERT_TRUE(m_server.waitForRequests(2));
    answerHistory({"a"});
    m_manager->initUserData();
    EXPECT_EQ(takePrinted(), kBusy);
    m_server.sendHead(1);
    m_server.close(1);
    ASSERT_TRUE(waitFor([this] { return sessionIds() == texts({"a"}); }));
    EXPECT_EQ(takePrinted(), kReadBegins + kReadDone);
}

TEST_F(ManagerQueue, TheListIsNotReplacedWhileTheSideBarReadsIt) {
    FakeChatView view(m_calls);
    int depth = 0;
    int deepest = 0;
    view.onCall = [&] {
        deepest = qMax(deepest, ++depth);
        m_manager->canCommunicate();
        --depth;
    };
    readWithheld({"a"});
    answerHistory({"b"});
    g_zentriHistoryThread->start();
    ASSERT_TRUE(g_zentriHistoryThread->wait(kWaitLimitMs));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(m_calls, texts({"view sessions b", "view sessions b"}));
    EXPECT_EQ(deepest, 1);
}
