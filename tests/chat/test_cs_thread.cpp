#include <afxwin.h>

#include <QCoreApplication>
#include <QException>
#include <QLoggingCategory>
#include <QSet>
#include <functional>
#include <mutex>
#include <stdexcept>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatModuleState.h"
#include "host/core/ZR_ZentriText.h"
#include "tests/chat/FakeChat.h"
#include "tests/chat/LogFile.h"
#include "tests/chat/MessageBoxes.h"
#include "tests/chat/ServiceReplies.h"
#include "tests/chat/TimerWatch.h"
#include "tests/support/http/FakeHttpServer.h"

namespace {

class CSThread : public ChatTest {
protected:
    CSThread() {
        setServiceAddress(m_server.address());
        m_thread = std::make_unique<ZR_AiChatCSThread>();
        m_thread->setExchange({QStringLiteral("怎样画圆"), QStringLiteral("sess-1")});
        const ZR_AiChatCSThread* thread = m_thread.get();
        QObject::connect(thread, &ZR_AiChatCSThread::streamStart, &m_receiver,
                         [this] { m_signals.append(QStringLiteral("start")); });
        QObject::connect(thread, &ZR_AiChatCSThread::streamProcess, &m_receiver,
                         [this](const QString& text) { m_signals.append(QStringLiteral("<") + text); });
        QObject::connect(thread, &ZR_AiChatCSThread::streamEnd, &m_receiver,
                         [this] { m_signals.append(QStringLiteral("end")); });
        // On the worker thread, when the signal is emitted.
        QObject::connect(
            thread, &ZR_AiChatCSThread::streamEnd, &m_receiver,
            [this] { m_boxesAtEnd.append(MessageBoxes::instance().count()); }, Qt::DirectConnection);
    }

    bool waitForSignals(std::initializer_list<const char*> expected) {
        return waitFor([&] { return m_signals == texts(expected); });
    }

    /// Waits until the run has ended and its signals have been delivered.
    bool finish() {
        const bool finished = waitFor([this] { return m_thread->isFinished(); });
        QCoreApplication::sendPostedEvents();
        return finished;
    }

    /// Starts a run and an answer that stays open until the test closes it.
    bool startAnswer(int index = 0) {
        m_thread->start();
        if (!m_server.waitForRequests(index + 1)) {
            return false;
        }
        m_server.sendHead(index);
        return true;
    }

    /// Lets the next runs fail before anything is sent: `failure` is called on the worker thread and throws.
    void failAtStart(const std::function<void()>& failure) {
        QObject::connect(m_thread.get(), &ZR_AiChatCSThread::streamStart, m_thread.get(), failure,
                         Qt::DirectConnection);
    }

    /// Runs once and returns the debug output of the run.
    QString tracesOfARun();

    FakeHttpServer m_server;
    QObject m_receiver;
    QStringList m_signals;
    QList<int> m_boxesAtEnd;
    std::unique_ptr<ZR_AiChatCSThread> m_thread;
};

const QString kErrorLogBegin = QStringLiteral("网络请求出错！错误信息为:");

}  // namespace

TEST_F(CSThread, SendsTheExpectedRequest) {
    m_server.answer(kChatTarget, "");
    m_thread->start();
    ASSERT_TRUE(finish());
    ASSERT_EQ(m_server.requestCount(), 1);
    const FakeHttpServer::Request request = m_server.request(0);

    EXPECT_TRUE(request.raw.startsWith("POST /zr/ai/caddraw/chat HTTP/1.1\r\n"));
    EXPECT_EQ(request.header("Host"), m_server.address().toUtf8());
    EXPECT_EQ(request.header("Content-Type"), "application/json");
    EXPECT_EQ(request.header("Accept"), "text/event-stream");
    EXPECT_EQ(request.header("Cache-Control"), "no-cache");
    EXPECT_EQ(request.header("Authorization"), "token-1");
    EXPECT_EQ(request.body,
              "{\n"
              "    \"model\": \"deepseek-chat\",\n"
              "    \"userChatSessionId\": \"sess-1\",\n"
              "    \"userInput\": \"怎样画圆\"\n"
              "}\n");

    QSet<QByteArray> names;
    for (const auto& header : request.headers) {
        names.insert(header.first.toLower());
    }
    // Besides those five, only headers that Qt adds itself.
    names -= {"host",           "content-type", "accept",          "cache-control",   "authorization",
              "content-length", "connection",   "accept-encoding", "accept-language", "user-agent"};
    EXPECT_TRUE(names.isEmpty()) << qPrintable(QString::fromUtf8(names.values().join(' ')));
}

TEST_F(CSThread, SendsTheTokenAsUtf8WithoutAnyPrefix) {
    signIn(_T("令牌 with blanks=="));
    m_server.answer(kChatTarget, "");
    m_thread->start();
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_server.request(0).header("Authorization"), "令牌 with blanks==");
}

TEST_F(CSThread, SendsNothingWhenTheUserIsSignedOutBeforeItRuns) {
    m_server.answer(kChatTarget, "data:a\n\n");
    // On the worker thread, right before the request is built.
    QObject::connect(
        m_thread.get(), &ZR_AiChatCSThread::streamStart, m_thread.get(), [] { signOut(); },
        Qt::DirectConnection);
    m_thread->start();
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "end"}));
    EXPECT_EQ(m_server.requestCount(), 0);
    EXPECT_EQ(MessageBoxes::instance().count(), 0);
}

TEST_F(CSThread, EscapesSpecialCharactersInJson) {
    m_thread->setExchange({QStringLiteral("a\"b\\c\nd"), QStringLiteral("sess-1")});
    m_server.answer(kChatTarget, "");
    m_thread->start();
    ASSERT_TRUE(finish());
    EXPECT_TRUE(m_server.request(0).body.contains("\"userInput\": \"a\\\"b\\\\c\\nd\"\n"));
}

TEST_F(CSThread, SendsEmptyTextsForAnEmptyExchange) {
    m_thread->setExchange({});
    m_server.answer(kChatTarget, "data:x\n\n");
    m_thread->start();
    ASSERT_TRUE(finish());
    EXPECT_TRUE(m_server.request(0).body.contains("\"userChatSessionId\": \"\",\n    \"userInput\": \"\"\n"));
    EXPECT_EQ(m_signals, texts({"start", "<x", "end"}));
}

TEST_F(CSThread, EmitsTwoEventsOfOneChunkInOrder) {
    ASSERT_TRUE(startAnswer());
    m_server.sendBytes(0, "data:a\n\ndata:b\n\n");
    EXPECT_TRUE(waitForSignals({"start", "<a", "<b"}));
    m_server.close(0);
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "<a", "<b", "end"}));
    EXPECT_EQ(MessageBoxes::instance().count(), 0);
}

TEST_F(CSThread, EmitsASplitEventOnceItIsComplete) {
    ASSERT_TRUE(startAnswer());
    m_server.sendBytes(0, "data:first\n\ndata:sec");
    ASSERT_TRUE(waitForSignals({"start", "<first"}));
    m_server.sendBytes(0, "ond\n");
    m_server.sendBytes(0, "\n");
    EXPECT_TRUE(waitForSignals({"start", "<first", "<second"}));
    m_server.close(0);
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "<first", "<second", "end"}));
}

TEST_F(CSThread, KeepsBlankAfterDataColon) {
    m_server.answer(kChatTarget, "data: 你好\n\ndata:a\ndata:b\n\n", 200, "text/event-stream");
    m_thread->start();
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "< 你好", "<a\nb", "end"}));
}

TEST_F(CSThread, EmitsAnEmptyTextForAnEmptyEvent) {
    m_server.answer(kChatTarget, "\n\ndata:\n\n");
    m_thread->start();
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "<", "<", "end"}));
}

TEST_F(CSThread, DiscardsAnIncompleteLastEvent) {
    m_server.answer(kChatTarget, "data:a\n\ndata:lost\r\n\r\n");
    m_thread->start();
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "<a", "end"}));
}

TEST_F(CSThread, ReadsAChunkedAnswer) {
    m_thread->start();
    ASSERT_TRUE(m_server.waitForRequests(1));
    m_server.sendHead(0, 200, "text/event-stream", "Transfer-Encoding: chunked\r\n");
    m_server.sendBytes(0, "5\r\ndata:\r\n");
    m_server.sendBytes(0, "3\r\na\n\n\r\n");
    ASSERT_TRUE(waitForSignals({"start", "<a"}));
    m_server.sendBytes(0, "0\r\n\r\n");
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "<a", "end"}));
}

TEST_F(CSThread, EmitsStreamEndOnceWhenTheFlagIsClear) {
    m_server.answer(kChatTarget, "");
    m_thread->start();
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "end"}));
}

TEST_F(CSThread, EmitsStreamEndTwiceWhileTheFlagIsSet) {
    g_zentriCommunicating = true;
    m_server.answer(kChatTarget, "data:a\n\n");
    m_thread->start();
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "<a", "end", "end"}));
}

TEST_F(CSThread, ReportsAnHttpErrorOnce) {
    m_server.answer(kChatTarget, "data:half\n\n", 500, "text/event-stream");
    const int logged = LogFile::messages().size();
    m_thread->start();
    ASSERT_TRUE(finish());

    EXPECT_EQ(m_signals, texts({"start", "<half", "end"})) << "the events of the error's body count too";
    ASSERT_EQ(MessageBoxes::instance().count(), 1);
    EXPECT_EQ(MessageBoxes::instance().boxes().first().text, QStringLiteral("Zentri 通信出错！"));
    EXPECT_EQ(MessageBoxes::instance().boxes().first().type, UINT{MB_OK});
    EXPECT_NE(MessageBoxes::instance().boxes().first().thread, std::this_thread::get_id());
    EXPECT_TRUE(MessageBoxes::instance().boxes().first().lastLogged.startsWith(kErrorLogBegin));
    EXPECT_EQ(m_boxesAtEnd, QList<int>{1}) << "the message box comes before streamEnd";

    const QStringList log = LogFile::messages().mid(logged);
    ASSERT_EQ(log.size(), 1);
    EXPECT_TRUE(log.first().startsWith(kErrorLogBegin)) << qPrintable(log.first());
    EXPECT_TRUE(log.first().contains(m_server.address())) << qPrintable(log.first());
}

TEST_F(CSThread, EmitsStreamEndTwiceOnAnHttpErrorWhileTheFlagIsSet) {
    g_zentriCommunicating = true;
    m_server.answer(kChatTarget, "", 404);
    m_thread->start();
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "end", "end"}));
    EXPECT_EQ(MessageBoxes::instance().count(), 1);
}

TEST_F(CSThread, ReportsAConnectionLostInTheMiddleOfAnEvent) {
    m_thread->start();
    ASSERT_TRUE(m_server.waitForRequests(1));
    m_server.sendHead(0, 200, "text/event-stream", "Content-Length: 1000\r\n");
    m_server.sendBytes(0, "data:a\n\ndata:ha");
    ASSERT_TRUE(waitForSignals({"start", "<a"}));
    m_server.abort(0);
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "<a", "end"}));
    EXPECT_EQ(MessageBoxes::instance().count(), 1);
}

TEST_F(CSThread, ReportsAConnectionClosedWithoutAReply) {
    m_thread->start();
    // Qt repeats the request before it gives up.
    int closed = 0;
    ASSERT_TRUE(waitFor([&] {
        for (; closed < m_server.requestCount(); ++closed) {
            m_server.close(closed);
        }
        return m_thread->isFinished();
    }));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(m_signals, texts({"start", "end"}));
    EXPECT_EQ(MessageBoxes::instance().count(), 1);
}

TEST_F(CSThread, ReportsAnUnreachableService) {
    setServiceAddress(QStringLiteral("127.0.0.1:1"));
    m_thread->start();
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "end"}));
    EXPECT_EQ(MessageBoxes::instance().count(), 1);
}

TEST_F(CSThread, ReportsAnInvalidAddress) {
    setServiceAddress(QStringLiteral("not a host:port"));
    m_thread->start();
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "end"}));
    EXPECT_EQ(MessageBoxes::instance().count(), 1);
}

TEST_F(CSThread, WaitsForAReplyWithoutATimeLimit) {
    const TimerWatch watch;
    auto probe = std::make_unique<QObject>();
    probe->moveToThread(m_thread.get());
    m_thread->start();
    ASSERT_TRUE(m_server.waitForRequests(1));
    EXPECT_EQ(TimerWatch::runningOn(probe.get()), QStringList());
    m_server.sendHead(0);
    m_server.sendBytes(0, "data:a\n\n");
    ASSERT_TRUE(waitForSignals({"start", "<a"}));
    EXPECT_EQ(TimerWatch::runningOn(probe.get()), QStringList());
    m_server.close(0);
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "<a", "end"}));
}

TEST_F(CSThread, FollowsNoRedirect) {
    m_server.answer("/elsewhere", "data:a\n\n");
    m_thread->start();
    ASSERT_TRUE(m_server.waitForRequests(1));
    m_server.sendHead(
        0, 307, "text/plain",
        "Location: http://" + m_server.address().toUtf8() + "/elsewhere\r\nContent-Length: 0\r\n");
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "end"}));
    EXPECT_EQ(m_server.requestCount(), 1);
    EXPECT_EQ(MessageBoxes::instance().count(), 0);
}

TEST_F(CSThread, CarriesNothingOverToTheNextRun) {
    ASSERT_TRUE(startAnswer());
    m_server.sendBytes(0, "data:left over");
    m_server.close(0);
    ASSERT_TRUE(finish());
    m_signals.clear();

    m_thread->setExchange({QStringLiteral("second"), QStringLiteral("sess-2")});
    ASSERT_TRUE(startAnswer(1));
    m_server.sendBytes(1, "\n\ndata:b\n\n");
    m_server.close(1);
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "<", "<b", "end"}));
    EXPECT_TRUE(m_server.request(1).body.contains("\"sess-2\""));
}

TEST_F(CSThread, QuitEndsARunningStreamAtOnceAndSilently) {
    ASSERT_TRUE(startAnswer());
    m_server.sendBytes(0, "data:a\n\ndata:b");
    ASSERT_TRUE(waitForSignals({"start", "<a"}));
    const int logged = LogFile::messages().size();
    m_thread->quit();
    ASSERT_TRUE(m_thread->wait(5000));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(m_signals, texts({"start", "<a"})) << "no streamEnd, since the flag is clear";
    EXPECT_EQ(MessageBoxes::instance().count(), 0);
    EXPECT_EQ(LogFile::messages().size(), logged);
    EXPECT_TRUE(waitFor([this] { return m_server.isClosed(0); }));
}

TEST_F(CSThread, QuitEmitsStreamEndWhileTheFlagIsSet) {
    g_zentriCommunicating = true;
    ASSERT_TRUE(startAnswer());
    m_thread->quit();
    ASSERT_TRUE(m_thread->wait(5000));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(m_signals, texts({"start", "end"}));
    EXPECT_EQ(MessageBoxes::instance().count(), 0);
}

TEST_F(CSThread, QuitBeforeTheReplyEndsTheRun) {
    m_thread->start();
    ASSERT_TRUE(m_server.waitForRequests(1));
    m_thread->quit();
    EXPECT_TRUE(m_thread->wait(5000));
    EXPECT_EQ(MessageBoxes::instance().count(), 0);
}

TEST_F(CSThread, QuitRightAfterStartEndsTheRun) {
    for (int i = 0; i < 50; ++i) {
        m_thread->start();
        m_thread->quit();
        ASSERT_TRUE(m_thread->wait(5000)) << i;
    }
    EXPECT_EQ(MessageBoxes::instance().count(), 0);
}

TEST_F(CSThread, RunsAgainAfterQuit) {
    ASSERT_TRUE(startAnswer());
    m_thread->quit();
    ASSERT_TRUE(m_thread->wait(5000));
    QCoreApplication::sendPostedEvents();
    m_signals.clear();
    ASSERT_TRUE(startAnswer(1));
    m_server.sendBytes(1, "data:b\n\n");
    m_server.close(1);
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "<b", "end"}));
}

TEST_F(CSThread, CanBeDeletedWhileItStreams) {
    ASSERT_TRUE(startAnswer());
    m_server.sendBytes(0, "data:a\n\n");
    ASSERT_TRUE(waitForSignals({"start", "<a"}));
    m_thread.reset();
    EXPECT_EQ(MessageBoxes::instance().count(), 0);
}

TEST_F(CSThread, LogsAnExceptionWithItsMessage) {
    const int logged = LogFile::messages().size();
    failAtStart([] { throw std::runtime_error("broken"); });
    m_thread->start();
    ASSERT_TRUE(finish());
    EXPECT_EQ(LogFile::messages().mid(logged), QStringList{QStringLiteral("C/S通信线程发生错误:broken")});
    EXPECT_EQ(MessageBoxes::instance().count(), 0);
    EXPECT_EQ(m_signals, texts({"start"}));
    EXPECT_EQ(m_server.requestCount(), 0);
}

TEST_F(CSThread, LogsAnExceptionWithoutMessage) {
    const int logged = LogFile::messages().size();
    std::function<void()> failure = [] { throw 7; };
    failAtStart([&failure] { failure(); });
    m_thread->start();
    ASSERT_TRUE(finish());
    failure = [] { AfxThrowMemoryException(); };
    m_thread->start();
    ASSERT_TRUE(finish());
    const QString unknown = QStringLiteral("C/S通信线程发生未知错误！");
    EXPECT_EQ(LogFile::messages().mid(logged), (QStringList{unknown, unknown}));
}

TEST_F(CSThread, EmitsStreamEndAfterAnExceptionWhileTheFlagIsSet) {
    g_zentriCommunicating = true;
    failAtStart([] { throw QException(); });
    m_thread->start();
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals, texts({"start", "end"}));
}

TEST_F(CSThread, LogsAnExceptionOfAReceiverDuringAnAnswer) {
    const int logged = LogFile::messages().size();
    QObject::connect(
        m_thread.get(), &ZR_AiChatCSThread::streamProcess, m_thread.get(),
        [] { throw std::runtime_error("receiver"); }, Qt::DirectConnection);
    ASSERT_TRUE(startAnswer());
    m_server.sendBytes(0, "data:a\n\ndata:b\n\n");
    ASSERT_TRUE(finish());
    EXPECT_EQ(LogFile::messages().mid(logged), QStringList{QStringLiteral("C/S通信线程发生错误:receiver")});
    EXPECT_EQ(m_signals, texts({"start", "<a"})) << "no streamEnd, since the flag is clear";
    EXPECT_EQ(MessageBoxes::instance().count(), 0);
    EXPECT_TRUE(waitFor([this] { return m_server.isClosed(0); }));
}

TEST_F(CSThread, LogsAnExceptionOfAReceiverAtTheEndOfAnAnswer) {
    const int logged = LogFile::messages().size();
    QObject::connect(
        m_thread.get(), &ZR_AiChatCSThread::streamEnd, m_thread.get(), [] { throw 7; }, Qt::DirectConnection);
    m_server.answer(kChatTarget, "data:a\n\n");
    m_thread->start();
    ASSERT_TRUE(finish());
    EXPECT_EQ(LogFile::messages().mid(logged), QStringList{QStringLiteral("C/S通信线程发生未知错误！")});
    EXPECT_EQ(m_signals, texts({"start", "<a", "end"}));
}

TEST_F(CSThread, DeclaresItsSignalsInOrder) {
    EXPECT_EQ(signalsOf(ZR_AiChatCSThread::staticMetaObject),
              texts({"streamStart()", "streamProcess(QString)", "streamEnd()"}));
}

namespace {

std::mutex g_traceMutex;
QStringList g_traces;

void keepTrace(QtMsgType, const QMessageLogContext&, const QString& text) {
    const std::lock_guard<std::mutex> lock(g_traceMutex);
    g_traces.append(text);
}

/// Enables and records the debug output while it exists.
class Traces {
public:
    Traces() : m_former(qInstallMessageHandler(keepTrace)) {
        g_traces.clear();
        QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, true);
    }
    ~Traces() { qInstallMessageHandler(m_former); }

private:
    QtMessageHandler m_former;
};

}  // namespace

QString CSThread::tracesOfARun() {
    const Traces traces;
    m_thread->start();
    EXPECT_TRUE(finish());
    m_thread->wait();
    return g_traces.join(QLatin1Char('\n'));
}

TEST_F(CSThread, TracesReceivedData) {
    m_server.answer(kChatTarget, "data:a\n\nrest");
    const QString all = tracesOfARun();
    EXPECT_TRUE(all.contains(QStringLiteral("CurrentBuffer: \"data:a\\n\\nrest\""))) << qPrintable(all);
    EXPECT_TRUE(all.contains(QStringLiteral("Data Read: \"a\""))) << qPrintable(all);
    EXPECT_TRUE(all.contains(QStringLiteral("Connect finished!"))) << qPrintable(all);
    EXPECT_TRUE(all.contains(QStringLiteral("Loop end: \"Unknown error\""))) << qPrintable(all);
    EXPECT_FALSE(all.contains(QStringLiteral("Connection error:"))) << qPrintable(all);
}

TEST_F(CSThread, TracesInOrder) {
    const Traces traces;
    // On the worker thread, so that each signal has its place among the traces.
    QObject::connect(
        m_thread.get(), &ZR_AiChatCSThread::streamProcess, &m_receiver,
        [](const QString& text) { keepTrace(QtDebugMsg, {}, QStringLiteral("streamProcess ") + text); },
        Qt::DirectConnection);
    QObject::connect(
        m_thread.get(), &ZR_AiChatCSThread::streamEnd, &m_receiver,
        [] { keepTrace(QtDebugMsg, {}, QStringLiteral("streamEnd")); }, Qt::DirectConnection);
    ASSERT_TRUE(startAnswer());
    m_server.sendBytes(0, "data:a\n\ndata:b\n\nda");
    ASSERT_TRUE(waitForSignals({"start", "<a", "<b"}));
    m_server.sendBytes(0, "ta:c\n\n");
    ASSERT_TRUE(waitForSignals({"start", "<a", "<b", "<c"}));
    m_server.close(0);
    ASSERT_TRUE(finish());
    EXPECT_EQ(g_traces, texts({R"(CurrentBuffer: "data:a\n\ndata:b\n\nda")", R"(Data Read: "a")",
                               "streamProcess a", R"(Data Read: "b")", "streamProcess b",
                               R"(CurrentBuffer: "data:c\n\n")", R"(Data Read: "c")", "streamProcess c",
                               "Connect finished!", "streamEnd", R"(Loop end: "Unknown error")"}));
}

TEST_F(CSThread, TracesAnErrorInOrder) {
    const Traces traces;
    QObject::connect(
        m_thread.get(), &ZR_AiChatCSThread::streamEnd, &m_receiver,
        [] { keepTrace(QtDebugMsg, {}, QStringLiteral("streamEnd")); }, Qt::DirectConnection);
    MessageBoxes::instance().setOnBox([] { keepTrace(QtDebugMsg, {}, QStringLiteral("box")); });
    m_server.answer(kChatTarget, "", 404);
    m_thread->start();
    ASSERT_TRUE(finish());
    const QString reason = LogFile::messages().last().mid(kErrorLogBegin.size());
    EXPECT_EQ(g_traces,
              (QStringList{QStringLiteral("Connection error: \"%1\"").arg(reason), QStringLiteral("box"),
                           QStringLiteral("streamEnd"), QStringLiteral("Loop end: \"%1\"").arg(reason)}));
}

TEST_F(CSThread, TracesAnError) {
    m_server.answer(kChatTarget, "", 404);
    const QString all = tracesOfARun();
    const QString reason = MessageBoxes::instance().boxes().value(0).lastLogged.mid(kErrorLogBegin.size());
    EXPECT_FALSE(reason.isEmpty());
    EXPECT_TRUE(all.contains(QStringLiteral("Connection error: \"") + reason)) << qPrintable(all);
    EXPECT_TRUE(all.contains(QStringLiteral("Loop end: \"") + reason)) << qPrintable(all);
    EXPECT_FALSE(all.contains(QStringLiteral("Connect finished!"))) << qPrintable(all);
}

TEST_F(CSThread, TracesOnlyTheEndOfALongBuffer) {
    const int limit = 4096;
    m_server.answer(kChatTarget, QByteArray(10 * limit, 'x') + "y");
    const QString all = tracesOfARun();
    EXPECT_TRUE(
        all.contains(QLatin1Char('"') + QString(limit - 1, QLatin1Char('x')) + QStringLiteral("y\"")));
    EXPECT_FALSE(all.contains(QString(limit + 1, QLatin1Char('x'))));
}

TEST_F(CSThread, ReceivesALargeAnswerInSmallPieces) {
    const QByteArray line = QByteArray("数据").repeated(50);
    QString expected;
    ASSERT_TRUE(startAnswer());
    const int lines = 400;
    for (int i = 0; i < lines; ++i) {
        m_server.sendBytes(0, "data:" + line + "\n");
        expected += (i > 0 ? QStringLiteral("\n") : QString()) + QString::fromUtf8(line);
    }
    m_server.sendBytes(0, "\n");
    m_server.close(0);
    ASSERT_TRUE(finish());
    EXPECT_EQ(m_signals,
              (QStringList{QStringLiteral("start"), QLatin1Char('<') + expected, QStringLiteral("end")}));
}
