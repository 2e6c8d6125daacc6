#include <QCoreApplication>
#include <QTimer>
#include <ctime>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatModuleState.h"
#include "host/core/ZR_ZentriText.h"
#include "tests/chat/FakeChat.h"
#include "tests/chat/MessageBoxes.h"
#include "tests/chat/ServiceReplies.h"
#include "tests/support/http/FakeHttpServer.h"

namespace {

/// A pending question: the session exists, the streaming thread's request has arrived and waits for its
/// reply.
class ManagerStream : public ChatTest {
protected:
    ManagerStream() {
        setServiceAddress(m_server.address());
        answerCreate(m_server, "s1");
        makeManager();
        m_view = std::make_unique<FakeChatView>(m_calls);
        m_answer = std::make_unique<FakeAnswer>(m_calls);
    }

    /// Sends a question and returns the index of the pending request.
    int ask(const CString& question = _T("Q")) {
        m_manager->send(question, true, m_answer.get());
        ++m_asked;
        EXPECT_TRUE(m_server.waitForRequests(m_asked + 1));
        EXPECT_TRUE(waitFor([this] { return m_calls.contains(QStringLiteral("view start")); }));
        m_server.sendHead(m_asked);
        return m_asked;
    }

    bool waitForCall(const char* call) {
        return waitFor([&] { return m_calls.contains(QString::fromUtf8(call)); });
    }

    QStringList current() const {
        ZR_AiChatSingleChatRecord record;
        m_manager->getCurrentRecord(record);
        return messagesOf(record);
    }

    FakeHttpServer m_server;
    std::unique_ptr<FakeChatView> m_view;
    std::unique_ptr<FakeAnswer> m_answer;
    int m_asked = 0;
};

}  // namespace

TEST_F(ManagerStream, DrivesTheBubbleAndTheViewInOrder) {
    const int request = ask();
    EXPECT_TRUE(g_zentriCommunicating);
    m_server.sendBytes(request, "data:a\n\n");
    ASSERT_TRUE(waitForCall("view process"));
    EXPECT_EQ(m_calls, texts({"bubble start", "view start", "bubble append a", "view process"}));
    m_server.sendBytes(request, "data:b\n\n");
    ASSERT_TRUE(waitForCall("bubble append b"));
    m_calls.clear();
    m_server.close(request);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(m_calls.mid(0, 2), texts({"bubble stop", "view end"}));
    EXPECT_FALSE(g_zentriCommunicating);
    EXPECT_EQ(current().mid(0, 2), texts({"0:Q", "1:ab"}));
    EXPECT_TRUE(m_manager->canCommunicate());
}

TEST_F(ManagerStream, StoresTheAnswerAgainWhenTheStreamEndsTwice) {
    m_manager->send(_T("Q"), true, m_answer.get());
    m_manager->onStreamStart();
    m_manager->onStreamProcess(QStringLiteral("a"));
    m_manager->onStreamEnd();
    m_manager->onStreamEnd();
    EXPECT_EQ(current(), texts({"0:Q", "1:a", "1:a"}));
    EXPECT_EQ(m_calls.count(QStringLiteral("bubble stop")), 2);
    EXPECT_EQ(m_calls.count(QStringLiteral("view end")), 2);
    EXPECT_FALSE(g_zentriCommunicating);
}

TEST_F(ManagerStream, StoresTheAnswerTwiceWhenTheThreadEndsBeforeTheSlotsRun) {
    const int request = ask();
    m_server.sendBytes(request, "data:a\n\n");
    ASSERT_TRUE(waitForCall("view process"));
    m_server.close(request);
    // No event is delivered while this thread blocks, so the flag is still set when the run ends.
    ASSERT_TRUE(g_zentriChatThread->wait(kWaitLimitMs));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(current(), texts({"0:Q", "1:a", "1:a"}));
}

TEST_F(ManagerStream, StampsQuestionAndAnswerWithTheirTimes) {
    const auto before = static_cast<std::int64_t>(time(nullptr));
    const int request = ask();
    m_server.close(request);
    ASSERT_TRUE(waitUntilIdle());
    const auto after = static_cast<std::int64_t>(time(nullptr));
    ZR_AiChatSingleChatRecord record;
    m_manager->getCurrentRecord(record);
    SingleChatUnitList units;
    record.GetUnits(units);
    ASSERT_GE(units.GetCount(), 2);
    for (INT_PTR i = 0; i < units.GetCount(); ++i) {
        EXPECT_GE(units[i].time, before) << i;
        EXPECT_LE(units[i].time, after) << i;
    }
}

TEST_F(ManagerStream, StoresAPartialAnswerAfterAnError) {
    m_manager->send(_T("Q"), true, m_answer.get());
    ASSERT_TRUE(m_server.waitForRequests(2));
    m_server.sendHead(1, 200, "text/event-stream", "Content-Length: 1000\r\n");
    m_server.sendBytes(1, "data:half\n\n");
    ASSERT_TRUE(waitForCall("view process"));
    m_server.abort(1);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(current().mid(0, 2), texts({"0:Q", "1:half"}));
    EXPECT_EQ(MessageBoxes::instance().count(), 1);
    EXPECT_TRUE(m_manager->canCommunicate());
}

TEST_F(ManagerStream, NeverUsesADeletedBubble) {
    const int request = ask();
    m_server.sendBytes(request, "data:a\n\n");
    ASSERT_TRUE(waitForCall("view process"));
    m_answer.reset();
    m_calls.clear();
    m_server.sendBytes(request, "data:b\n\n");
    ASSERT_TRUE(waitForCall("view process"));
    m_server.close(request);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_FALSE(m_calls.join(QLatin1Char(',')).contains(QStringLiteral("bubble")));
    EXPECT_TRUE(m_calls.contains(QStringLiteral("view end")));
    EXPECT_EQ(current(), texts({"0:Q"})) << "without a text there is no answer";
    EXPECT_FALSE(g_zentriCommunicating);
}

TEST_F(ManagerStream, NeverUsesABubbleDeletedBetweenTwoStreamEnds) {
    m_manager->send(_T("Q"), true, m_answer.get());
    m_manager->onStreamStart();
    m_manager->onStreamProcess(QStringLiteral("a"));
    m_manager->onStreamEnd();
    m_answer.reset();
    m_manager->onStreamEnd();
    EXPECT_EQ(current(), texts({"0:Q", "1:a"}));
    EXPECT_EQ(m_calls.count(QStringLiteral("view end")), 2);
}

TEST_F(ManagerStream, StreamsWithoutBubbleOrView) {
    m_answer.reset();
    m_view.reset();
    m_manager->send(_T("Q"), true, nullptr);
    ASSERT_TRUE(m_server.waitForRequests(2));
    m_server.sendHead(1);
    m_server.sendBytes(1, "data:a\n\n");
    m_server.close(1);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(current(), texts({"0:Q"}));
    EXPECT_TRUE(m_calls.isEmpty());
    EXPECT_FALSE(g_zentriCommunicating);
}

TEST_F(ManagerStream, SurvivesDeletionOfTheViewDuringAnAnswer) {
    const int request = ask();
    m_view.reset();
    m_server.sendBytes(request, "data:a\n\n");
    ASSERT_TRUE(waitForCall("bubble append a"));
    m_server.close(request);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(current().mid(0, 2), texts({"0:Q", "1:a"}));
}

TEST_F(ManagerStream, RefusesASecondQuestionUntilTheAnswerIsStored) {
    const int request = ask();
    m_manager->send(_T("second"), true, nullptr);
    EXPECT_EQ(takePrinted(), QStringLiteral("\n已有正在通信的对话，请等待该通信完成..."));
    m_server.close(request);
    ASSERT_TRUE(g_zentriChatThread->wait(kWaitLimitMs));
    // The end is delivered before the manager decides.
    EXPECT_TRUE(m_manager->canCommunicate());
    EXPECT_FALSE(g_zentriCommunicating);
    EXPECT_EQ(current().first(), QStringLiteral("0:Q"));
    EXPECT_EQ(current().value(1), QStringLiteral("1:"));
    EXPECT_FALSE(current().contains(QStringLiteral("0:second")));
}

TEST_F(ManagerStream, SendsTheNewestQuestionAndTheSession) {
    m_server.close(ask(_T("first")));
    ASSERT_TRUE(waitUntilIdle());
    m_server.close(ask(_T("second")));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(m_server.request(1).body.contains("\"userInput\": \"first\""));
    EXPECT_TRUE(m_server.request(2).body.contains("\"userInput\": \"second\""));
    EXPECT_TRUE(m_server.request(2).body.contains("\"userChatSessionId\": \"s1\""));
}

TEST_F(ManagerStream, SendsTheRecordAsItIsWhenTheExchangeStarts) {
    m_manager->send(_T("Q"), true, m_answer.get());
    // newSession() leaves the check for a running exchange to its caller. Without it the request is the same.
    m_manager->newSession();
    ASSERT_TRUE(m_server.waitForRequests(2));
    EXPECT_TRUE(m_server.request(1).body.contains("\"userInput\": \"Q\""));
    EXPECT_TRUE(m_server.request(1).body.contains("\"userChatSessionId\": \"s1\""));
}

TEST_F(ManagerStream, IsIdleAfterUnloadingInterruptedAStream) {
    ask();
    deleteThreads();
    m_answer.reset();
    QCoreApplication::sendPostedEvents();
    EXPECT_FALSE(g_zentriCommunicating);
    EXPECT_EQ(MessageBoxes::instance().count(), 0);
}

TEST_F(ManagerStream, IsIdleAfterUnloadingBeforeStreamStartWasHandled) {
    m_manager->send(_T("Q"), true, m_answer.get());
    // streamStart is still queued when the thread is deleted, so the thread found the flag clear and emitted
    // no streamEnd.
    deleteThreads();
    QCoreApplication::sendPostedEvents();
    EXPECT_FALSE(g_zentriCommunicating);
    EXPECT_TRUE(m_calls.contains(QStringLiteral("bubble stop")));
}

TEST_F(ManagerStream, ConnectsToTheNewThreadsAfterAReload) {
    m_server.close(ask());
    ASSERT_TRUE(waitUntilIdle());
    deleteThreads();
    makeThreads();
    m_calls.clear();
    const int request = ask(_T("after"));
    m_server.sendBytes(request, "data:b\n\n");
    m_server.close(request);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(m_calls.count(QStringLiteral("bubble append b")), 1);
    EXPECT_TRUE(current().contains(QStringLiteral("0:after")));
}

TEST_F(ManagerStream, IsCommunicatingWhileItNotifiesTheView) {
    QList<bool> communicating;
    m_view->onCall = [&] { communicating.append(g_zentriCommunicating); };
    g_zentriCommunicating = false;
    m_manager->onStreamStart();
    m_manager->onStreamProcess(QStringLiteral("a"));
    m_manager->onStreamEnd();
    EXPECT_EQ(communicating, (QList<bool>{true, true, true}));
    EXPECT_FALSE(g_zentriCommunicating);
}

TEST_F(ManagerStream, IsCommunicatingFromStreamStartOnAndBeforeItTellsTheBubble) {
    QList<bool> communicating;
    m_answer->onCall = [&] { communicating.append(g_zentriCommunicating); };
    m_manager->send(_T("Q"), true, m_answer.get());
    EXPECT_FALSE(g_zentriCommunicating) << "streamStart is still queued";
    ASSERT_TRUE(m_server.waitForRequests(2));
    ASSERT_TRUE(waitForCall("bubble start"));
    m_server.sendHead(1);
    m_server.close(1);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(communicating.mid(0, 2), (QList<bool>{true, true}));
    EXPECT_FALSE(g_zentriCommunicating);
}

TEST_F(ManagerStream, StoresTheAnswerBeforeItTellsTheBubble) {
    m_manager->send(_T("Q"), true, m_answer.get());
    m_manager->onStreamStart();
    m_manager->onStreamProcess(QStringLiteral("a"));
    QStringList stored;
    m_answer->onCall = [&] { stored = current(); };
    m_manager->onStreamEnd();
    EXPECT_EQ(stored, texts({"0:Q", "1:a"}));
}

TEST_F(ManagerStream, StoresTheAnswerBeforeItNotifiesTheView) {
    m_manager->send(_T("Q"), true, m_answer.get());
    m_manager->onStreamStart();
    m_manager->onStreamProcess(QStringLiteral("a"));
    QStringList stored;
    m_view->onCall = [&] { stored = current(); };
    m_manager->onStreamEnd();
    EXPECT_EQ(stored, texts({"0:Q", "1:a"}));
}

TEST_F(ManagerStream, SurvivesABubbleDeletedInAHandlerOfTheView) {
    m_view->onCall = [this] { m_answer.reset(); };
    m_manager->send(_T("Q"), true, m_answer.get());
    m_manager->onStreamStart();
    m_manager->onStreamProcess(QStringLiteral("a"));
    m_manager->onStreamEnd();
    EXPECT_EQ(m_calls, texts({"bubble start", "view start", "view process", "view end"}));
    EXPECT_EQ(current(), texts({"0:Q"}));
}

TEST_F(ManagerStream, SurvivesAPanelDeletedDuringAnAnswer) {
    const int request = ask();
    // An object must not be deleted while one of its functions runs, so the panel is deleted with the next
    // event.
    m_view->onCall = [this] {
        QTimer::singleShot(0, m_manager.get(), [this] {
            m_answer.reset();
            m_view.reset();
        });
    };
    m_server.sendBytes(request, "data:a\n\n");
    ASSERT_TRUE(waitFor([this] { return m_view == nullptr; }));
    m_calls.clear();
    m_server.sendBytes(request, "data:b\n\n");
    m_server.close(request);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(m_calls.isEmpty());
    EXPECT_FALSE(g_zentriCommunicating);
}

TEST_F(ManagerStream, HandlesQueuedSignalsAfterUnloadingWithoutThePanel) {
    const int request = ask();
    m_server.sendBytes(request, "data:a\n\n");
    m_server.sendBytes(request, "data:b\n\n");
    m_server.close(request);
    ASSERT_TRUE(g_zentriChatThread->wait(kWaitLimitMs));
    // All signals are queued now. Unloading deletes the panel first, then the thread.
    m_answer.reset();
    m_view.reset();
    deleteThreads();
    m_calls.clear();
    QCoreApplication::sendPostedEvents();
    EXPECT_TRUE(m_calls.isEmpty());
    EXPECT_FALSE(g_zentriCommunicating);
    EXPECT_EQ(current(), texts({"0:Q"}));
}
