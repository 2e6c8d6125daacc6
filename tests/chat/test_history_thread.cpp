#include <functional>
#include <stdexcept>

#include <QCoreApplication>

#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "tests/chat/FakeChat.h"
#include "tests/chat/LogFile.h"
#include "tests/chat/ServiceReplies.h"
#include "tests/support/http/FakeHttpServer.h"

namespace {

class HistoryThread : public ChatTest {
protected:
    HistoryThread() {
        setServiceAddress(m_server.address());
        m_thread = std::make_unique<ZR_AiChatReadHistoricalChatThread>();
        QObject::connect(m_thread.get(), &ZR_AiChatReadHistoricalChatThread::readStart, &m_receiver,
                         [this] { m_signals.append(QStringLiteral("start")); });
        QObject::connect(m_thread.get(), &ZR_AiChatReadHistoricalChatThread::readEnd, &m_receiver,
                         [this] { m_signals.append(QStringLiteral("end")); });
    }

    /// Runs once and copies the result to a list that holds one old record.
    bool run() {
        m_thread->start();
        const bool finished = waitFor([this] { return m_thread->isFinished(); });
        QCoreApplication::sendPostedEvents();
        m_result.RemoveAll();
        ZR_AiChatSingleChatRecord former;
        former.SetSessionId(_T("former"));
        m_result.Add(former);
        m_hasResult = m_thread->copyResultTo(m_result);
        return finished;
    }

    FakeHttpServer m_server;
    QObject m_receiver;
    QStringList m_signals;
    ZR_AiChatSessionList m_result;
    bool m_hasResult = false;
    std::unique_ptr<ZR_AiChatReadHistoricalChatThread> m_thread;
};

}  // namespace

TEST_F(HistoryThread, ReadsAllSessionsInTheServicesOrder) {
    answerList(m_server, {"c", "a", "b"});
    answerRead(m_server, "a");
    answerRead(m_server, "b");
    answerRead(m_server, "c");
    ASSERT_TRUE(run());
    EXPECT_EQ(m_signals, texts({"start", "end"}));
    ASSERT_TRUE(m_hasResult);
    EXPECT_EQ(idsOf(m_result), texts({"c", "a", "b"}));
    EXPECT_EQ(messagesOf(m_result[1]), texts({"0:Q a"}));
    ASSERT_EQ(m_server.requestCount(), 4);
    EXPECT_EQ(m_server.request(1).target, kReadTarget + "c");
    EXPECT_EQ(m_server.request(3).target, kReadTarget + "b");
}

TEST_F(HistoryThread, ReadsSessionsOneAfterAnother) {
    answerList(m_server, {"a", "b"});
    answerRead(m_server, "b");
    m_thread->start();
    ASSERT_TRUE(m_server.waitForRequests(2));
    EXPECT_FALSE(m_server.waitForRequests(3, 100)) << "the second read waits for the first one's reply";
    m_server.sendEmptyReply(1, 500);
    ASSERT_TRUE(waitFor([this] { return m_thread->isFinished(); }));
    EXPECT_EQ(m_server.request(m_server.requestCount() - 1).target, kReadTarget + "b");
}

TEST_F(HistoryThread, SkipsAnUnreadableSession) {
    answerList(m_server, {"a", "b", "c", "d"});
    answerRead(m_server, "a");
    m_server.answer(kReadTarget + "b", R"({"code":500,"msg":"坏","data":[]})");
    m_server.answer(kReadTarget + "c", "", 500);
    answerRead(m_server, "d");
    const int logged = LogFile::messages().size();
    ASSERT_TRUE(run());
    EXPECT_EQ(idsOf(m_result), texts({"a", "d"}));
    EXPECT_EQ(LogFile::messages().mid(logged),
              QStringList{QStringLiteral("获取用户历史对话记录失败,返回码:500,错误信息:坏")});
}

TEST_F(HistoryThread, HasNoResultForAUserWithoutSessions) {
    answerList(m_server, {});
    ASSERT_TRUE(run());
    EXPECT_EQ(m_signals, texts({"start", "end"}));
    EXPECT_FALSE(m_hasResult);
    EXPECT_EQ(idsOf(m_result), texts({"former"})) << "unchanged";
}

TEST_F(HistoryThread, ClearsItsResultWhenTheListFails) {
    answerList(m_server, {"a"});
    answerRead(m_server, "a");
    ASSERT_TRUE(run());
    ASSERT_TRUE(m_hasResult);
    m_server.answer(kListTarget, "", 500);
    ASSERT_TRUE(run());
    EXPECT_FALSE(m_hasResult);
    EXPECT_EQ(m_signals, texts({"start", "end", "start", "end"}));
}

TEST_F(HistoryThread, EmitsBothSignalsAndKeepsItsResultWhenNobodyIsSignedIn) {
    answerList(m_server, {"a"});
    answerRead(m_server, "a");
    ASSERT_TRUE(run());
    const int requests = m_server.requestCount();
    signOut();
    ASSERT_TRUE(run());
    EXPECT_EQ(m_signals, texts({"start", "end", "start", "end"}));
    EXPECT_EQ(m_server.requestCount(), requests);
    EXPECT_TRUE(m_hasResult);
    EXPECT_EQ(idsOf(m_result), texts({"a"}));
}

TEST_F(HistoryThread, ReturnsACopyOfItsResult) {
    answerList(m_server, {"a"});
    answerRead(m_server, "a");
    ASSERT_TRUE(run());
    m_result[0].AddUnit(kChatRoleAssistant, _T("more"));
    ZR_AiChatSessionList again;
    ASSERT_TRUE(m_thread->copyResultTo(again));
    EXPECT_EQ(again[0].GetUnitCount(), 1);
}

TEST_F(HistoryThread, CanBeDeletedWhileItReads) {
    answerList(m_server, {"a", "b", "c"});
    m_thread->start();
    ASSERT_TRUE(m_server.waitForRequests(2));
    m_thread.reset();
    EXPECT_TRUE(waitFor([this] { return m_server.isClosed(1); }));
}

TEST_F(HistoryThread, ReadsALargeHistory) {
    const int sessions = 300;
    QList<QByteArray> ids;
    for (int i = 0; i < sessions; ++i) {
        ids.append("s" + QByteArray::number(i));
        answerRead(m_server, ids.last());
    }
    answerList(m_server, ids);
    ASSERT_TRUE(run());
    ASSERT_EQ(m_result.GetCount(), sessions);
    EXPECT_EQ(m_result[sessions - 1].GetTitle(), _T("Q s299"));
}

TEST_F(HistoryThread, LogsAnExceptionAndEmitsReadEnd) {
    std::function<void()> failure;
    QObject::connect(
        m_thread.get(), &ZR_AiChatReadHistoricalChatThread::readStart, m_thread.get(), [&] { failure(); },
        Qt::DirectConnection);
    const int logged = LogFile::messages().size();
    failure = [] { throw std::runtime_error("broken"); };
    ASSERT_TRUE(run());
    failure = [] { throw 7; };
    ASSERT_TRUE(run());
    EXPECT_EQ(LogFile::messages().mid(logged),
              texts({"历史对话读取线程发生错误:broken", "历史对话读取线程发生未知错误！"}));
    EXPECT_EQ(m_signals, texts({"start", "end", "start", "end"}));
    EXPECT_EQ(m_server.requestCount(), 0);
}

TEST_F(HistoryThread, ReturnsThePartialResultDuringARun) {
    answerList(m_server, {"a", "b"});
    answerRead(m_server, "a");
    m_thread->start();
    ASSERT_TRUE(m_server.waitForRequests(3));
    ZR_AiChatSessionList soFar;
    ASSERT_TRUE(m_thread->copyResultTo(soFar));
    EXPECT_EQ(idsOf(soFar), texts({"a"}));
}

TEST_F(HistoryThread, SendsNoFurtherRequestOnceDeleted) {
    QList<QByteArray> ids;
    for (int i = 0; i < 200; ++i) {
        ids.append("s" + QByteArray::number(i));
    }
    answerList(m_server, ids);
    m_thread->start();
    ASSERT_TRUE(m_server.waitForRequests(2));
    m_thread.reset();
    EXPECT_EQ(m_server.requestCount(), 2);
    EXPECT_FALSE(m_server.waitForRequests(3, 100));
}

TEST_F(HistoryThread, DeclaresItsSignalsInOrder) {
    EXPECT_EQ(signalsOf(ZR_AiChatReadHistoricalChatThread::staticMetaObject),
              texts({"readStart()", "readEnd()"}));
}
