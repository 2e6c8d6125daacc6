#include <QEventLoop>
#include <QThread>
#include <QTimer>
#include <atomic>
#include <thread>

#include "chat/ZR_AiChatHttp.h"
#include "chat/ZR_AiChatService.h"
#include "host/core/ZR_ZentriText.h"
#include "tests/chat/FakeChat.h"
#include "tests/chat/LogFile.h"
#include "tests/chat/ServiceReplies.h"
#include "tests/chat/TimerWatch.h"
#include "tests/support/http/FakeHttpServer.h"

namespace {

class Service : public ChatTest {
protected:
    Service() { setServiceAddress(m_server.address()); }

    void expectRequest(int index, const QByteArray& target) {
        const FakeHttpServer::Request request = m_server.request(index);
        EXPECT_TRUE(request.raw.startsWith("POST " + target + " HTTP/1.1\r\n")) << request.raw.constData();
        EXPECT_EQ(request.header("Host"), m_server.address().toUtf8());
        EXPECT_EQ(request.header("Content-Type"), "application/json");
        EXPECT_EQ(request.header("Authorization"), "token-1");
        EXPECT_EQ(request.body, "{}");
        EXPECT_TRUE(request.header("Accept").isNull());
        EXPECT_TRUE(request.header("Cache-Control").isNull());
    }

    FakeHttpServer m_server;
};

ZR_AiChatSingleChatRecord usedRecord() {
    ZR_AiChatSingleChatRecord record;
    record.SetSessionId(_T("old"));
    record.AddUnit(kChatRoleUser, _T("old"));
    return record;
}

}  // namespace

TEST_F(Service, CreatesASession) {
    answerCreate(m_server, "id-9");
    EXPECT_EQ(createSessionOnServer(), _T("id-9"));
    ASSERT_EQ(m_server.requestCount(), 1);
    expectRequest(0, kCreateTarget);
}

TEST_F(Service, CreatesNoSessionAndLogsNothingOnAnyFailure) {
    const int logged = LogFile::messages().size();
    m_server.answer(kCreateTarget, R"({"code":500,"msg":"success","data":"id-9"})");
    EXPECT_TRUE(createSessionOnServer().IsEmpty());
    m_server.answer(kCreateTarget, R"({"code":200,"msg":"no","data":"id-9"})");
    EXPECT_TRUE(createSessionOnServer().IsEmpty());
    m_server.answer(kCreateTarget, R"({"code":200,"msg":"success","data":"id-9"})", 503);
    EXPECT_TRUE(createSessionOnServer().IsEmpty());
    m_server.answer(kCreateTarget, "no JSON");
    EXPECT_TRUE(createSessionOnServer().IsEmpty());
    EXPECT_EQ(LogFile::messages().size(), logged);
    EXPECT_EQ(m_server.requestCount(), 4);
}

TEST_F(Service, ReadsTheIdsInTheServicesOrder) {
    answerList(m_server, {"b", "a"});
    CStringArray ids;
    ids.Add(_T("old"));
    ASSERT_TRUE(readSessionIds(ids));
    ASSERT_EQ(ids.GetCount(), 2);
    EXPECT_EQ(ids[0], _T("b"));
    EXPECT_EQ(ids[1], _T("a"));
    expectRequest(0, kListTarget);
}

TEST_F(Service, SucceedsWithAnEmptyList) {
    answerList(m_server, {});
    CStringArray ids;
    EXPECT_TRUE(readSessionIds(ids));
    EXPECT_EQ(ids.GetCount(), 0);
}

TEST_F(Service, LogsARefusedList) {
    const int logged = LogFile::messages().size();
    m_server.answer(kListTarget, R"({"code":401,"msg":"100%s 未登录","data":[{"userChatSessionId":"b"}]})");
    CStringArray ids;
    ids.Add(_T("old"));
    EXPECT_FALSE(readSessionIds(ids));
    EXPECT_EQ(ids.GetCount(), 0);
    EXPECT_EQ(LogFile::messages().mid(logged),
              QStringList{QStringLiteral("获取用户历史对话记录Id列表失败,返回码:401,错误信息:100%s 未登录")});
}

TEST_F(Service, LogsABodyThatIsNotJsonAsCodeZero) {
    const int logged = LogFile::messages().size();
    m_server.answer(kListTarget, "<html>");
    CStringArray ids;
    EXPECT_FALSE(readSessionIds(ids));
    EXPECT_EQ(LogFile::messages().mid(logged),
              QStringList{QStringLiteral("获取用户历史对话记录Id列表失败,返回码:0,错误信息:")});
}

TEST_F(Service, ReadsASession) {
    m_server.answer(kReadTarget + "s-1", R"({"code":200,"msg":"success","data":[
        {"role":"user","message":"问","createTime":1700000000000},
        {"role":"tool","message":"x","createTime":1},
        {"role":"assistant","message":"答","createTime":1700000005}]})");
    ZR_AiChatSingleChatRecord record = usedRecord();
    ASSERT_TRUE(readSessionChats(_T("s-1"), record));
    EXPECT_EQ(record.GetSessionId(), _T("s-1"));
    EXPECT_EQ(record.GetTitle(), _T("问"));
    EXPECT_EQ(messagesOf(record), texts({"0:问", "1:答"}));
    EXPECT_EQ(record.GetCreateTime(), 1700000000);
    EXPECT_EQ(record.GetUseTime(), 1700000005);
    expectRequest(0, kReadTarget + "s-1");
}

TEST_F(Service, LogsARefusedSessionAndLeavesTheRecordEmpty) {
    const int logged = LogFile::messages().size();
    m_server.answer(kReadTarget + "s-1", R"({"code":403,"msg":"无权访问","data":[]})");
    ZR_AiChatSingleChatRecord record = usedRecord();
    EXPECT_FALSE(readSessionChats(_T("s-1"), record));
    EXPECT_TRUE(record.GetSessionId().IsEmpty());
    EXPECT_EQ(record.GetUnitCount(), 0);
    EXPECT_EQ(LogFile::messages().mid(logged),
              QStringList{QStringLiteral("获取用户历史对话记录失败,返回码:403,错误信息:无权访问")});
}

TEST_F(Service, FailsSilentlyOnATransportError) {
    const int logged = LogFile::messages().size();
    m_server.answer(kListTarget, R"({"code":401,"msg":"no"})", 500);
    m_server.answer(kReadTarget + "s-1", R"({"code":401,"msg":"no"})", 404);
    CStringArray ids;
    ids.Add(_T("old"));
    EXPECT_FALSE(readSessionIds(ids));
    EXPECT_EQ(ids.GetCount(), 0);
    ZR_AiChatSingleChatRecord record = usedRecord();
    EXPECT_FALSE(readSessionChats(_T("s-1"), record));
    EXPECT_TRUE(record.GetSessionId().IsEmpty());

    setServiceAddress(QStringLiteral("127.0.0.1:1"));
    EXPECT_FALSE(readSessionIds(ids));
    EXPECT_FALSE(readSessionChats(_T("s-1"), record));
    EXPECT_EQ(LogFile::messages().size(), logged);
}

TEST_F(Service, FailsWithoutARequestWhenNobodyIsSignedIn) {
    for (const bool emptyToken : {false, true}) {
        signOut();
        if (emptyToken) {
            signIn(_T(""));
        }
        CStringArray ids;
        ids.Add(_T("old"));
        ZR_AiChatSingleChatRecord record = usedRecord();
        EXPECT_TRUE(createSessionOnServer().IsEmpty());
        EXPECT_FALSE(readSessionIds(ids));
        EXPECT_FALSE(readSessionChats(_T("s-1"), record));
        EXPECT_EQ(ids.GetCount(), 0);
        EXPECT_TRUE(record.GetSessionId().IsEmpty());
    }
    EXPECT_EQ(m_server.requestCount(), 0);
}

TEST_F(Service, NeverSendsAnEmptyTokenWhileTheUserSignsInAndOut) {
    answerCreate(m_server, "s1");
    answerList(m_server, {});
    answerRead(m_server, "a");
    std::atomic<bool> stop{false};
    std::thread toggling([&stop] {
        while (!stop) {
            signOut();
            signIn(_T("token-1"));
        }
    });
    const int requests = 100;
    while (m_server.requestCount() < requests) {
        createSessionOnServer();
        CStringArray ids;
        readSessionIds(ids);
        ZR_AiChatSingleChatRecord record;
        readSessionChats(_T("a"), record);
    }
    stop = true;
    toggling.join();
    for (int i = 0; i < m_server.requestCount(); ++i) {
        ASSERT_EQ(m_server.request(i).header("Authorization"), "token-1") << i;
    }
}

TEST_F(Service, ReadsForAUserOnlyWhileThatUserIsSignedIn) {
    answerList(m_server, {"a"});
    answerRead(m_server, "a");
    for (const TCHAR* signedIn : {_T(""), _T("token-2")}) {
        signIn(signedIn);
        CStringArray ids;
        ZR_AiChatSingleChatRecord record = usedRecord();
        EXPECT_FALSE(readSessionIds(_T("token-1"), ids));
        EXPECT_FALSE(readSessionChats(_T("token-1"), _T("a"), record));
        EXPECT_TRUE(record.GetSessionId().IsEmpty());
    }
    EXPECT_EQ(m_server.requestCount(), 0);
    CStringArray ids;
    EXPECT_TRUE(readSessionIds(_T("token-2"), ids));
    EXPECT_EQ(m_server.request(0).header("Authorization"), "token-2");
}

TEST_F(Service, KeepsThePortOutOfTheUrl) {
    m_server.answer("/path", "body");
    QString body;
    ASSERT_TRUE(postToZentriService(QStringLiteral("/path"), 8001, _T("token-1"), body));
    EXPECT_EQ(body, QStringLiteral("body"));
    EXPECT_EQ(m_server.request(0).header("Host"), m_server.address().toUtf8());
    EXPECT_EQ(m_server.request(0).target, "/path");
}

TEST_F(Service, ContactsNoOtherHostForAHostileSessionId) {
    for (const char* id : {"../../x", "@127.0.0.1:1/", "a b", "问?x=1#y", "//elsewhere/", "%zz", "\n"}) {
        ZR_AiChatSingleChatRecord record;
        const int before = m_server.requestCount();
        // If a request is sent at all, it must go to the service.
        QTimer answering;
        QObject::connect(&answering, &QTimer::timeout, [&] {
            if (m_server.requestCount() > before) {
                m_server.sendEmptyReply(before, 404);
            }
        });
        answering.start(1);
        EXPECT_FALSE(readSessionChats(toCString(QString::fromUtf8(id)), record)) << id;
    }
    for (int i = 0; i < m_server.requestCount(); ++i) {
        EXPECT_EQ(m_server.request(i).header("Host"), m_server.address().toUtf8());
        EXPECT_TRUE(m_server.request(i).target.startsWith("/zr/ai/"))
            << m_server.request(i).target.constData();
    }
}

TEST_F(Service, ReadsAReplyThatArrivesInPieces) {
    QTimer feeding;
    const QByteArray body = R"({"code":200,"msg":"success","data":"会话"})";
    int sent = -1;
    QObject::connect(&feeding, &QTimer::timeout, [&] {
        if (m_server.requestCount() == 0 || sent >= body.size()) {
            return;
        }
        if (sent < 0) {
            m_server.sendHead(0, 200, "application/json",
                              "Content-Length: " + QByteArray::number(body.size()) + "\r\n");
            sent = 0;
        }
        m_server.sendBytes(0, body.mid(sent, 5));
        sent += 5;
    });
    feeding.start(1);
    EXPECT_EQ(createSessionOnServer(), _T("会话"));
}

TEST_F(Service, DeliversEventsWhileItBlocksTheMainThread) {
    int loopLevel = 0;
    QTimer answering;
    QObject::connect(&answering, &QTimer::timeout, [&] {
        if (m_server.requestCount() == 1 && loopLevel == 0) {
            // From this level the module knows that it must not be torn down now.
            loopLevel = QThread::currentThread()->loopLevel();
            m_server.sendEmptyReply(0, 404);
        }
    });
    answering.start(1);
    EXPECT_TRUE(createSessionOnServer().IsEmpty());
    EXPECT_EQ(loopLevel, 1);
}

TEST_F(Service, AcceptsABodyWithInvalidUtf8) {
    // Decoding replaces the invalid bytes, so the text that is parsed is valid.
    m_server.answer(kCreateTarget, "{\"code\":200,\"msg\":\"success\",\"data\":\"a\xff\xc3z\"}");
    EXPECT_EQ(toQString(createSessionOnServer()), QStringLiteral("a\uFFFD\uFFFDz"));
}

TEST_F(Service, FollowsNoRedirect) {
    answerList(m_server, {"a"});
    CStringArray ids;
    QTimer redirecting;
    QObject::connect(&redirecting, &QTimer::timeout, [&] {
        if (m_server.requestCount() == 1) {
            redirecting.stop();
            m_server.sendHead(0, 307, "text/plain",
                              "Location: http://" + m_server.address().toUtf8() + kListTarget +
                                  "\r\nContent-Length: 0\r\n");
        }
    });
    redirecting.start(1);
    EXPECT_TRUE(createSessionOnServer().IsEmpty());
    EXPECT_EQ(m_server.requestCount(), 1);
}

TEST_F(Service, WaitsForAReplyWithoutATimeLimit) {
    const TimerWatch watch;
    CStringArray ids;
    bool succeeded = false;
    const std::unique_ptr<QThread> worker(QThread::create([&] { succeeded = readSessionIds(ids); }));
    QObject probe;
    probe.moveToThread(worker.get());
    worker->start();
    ASSERT_TRUE(m_server.waitForRequests(1));
    EXPECT_EQ(TimerWatch::runningOn(&probe), QStringList());
    const QByteArray body = R"({"code":200,"msg":"success","data":[]})";
    m_server.sendHead(0, 200, "application/json",
                      "Content-Length: " + QByteArray::number(body.size()) + "\r\n");
    m_server.sendBytes(0, body.left(1));
    EXPECT_EQ(TimerWatch::runningOn(&probe), QStringList());
    m_server.sendBytes(0, body.mid(1));
    ASSERT_TRUE(worker->wait(kWaitLimitMs));
    EXPECT_TRUE(succeeded);
}

TEST_F(Service, QuitMakesACallOnAWorkerThreadFailAtOnce) {
    bool succeeded = true;
    bool secondSucceeded = true;
    const std::unique_ptr<QThread> worker(QThread::create([&] {
        CStringArray ids;
        succeeded = readSessionIds(ids);
        secondSucceeded = readSessionIds(ids);
    }));
    worker->start();
    ASSERT_TRUE(m_server.waitForRequests(1));
    worker->quit();
    ASSERT_TRUE(worker->wait(5000));
    EXPECT_FALSE(succeeded);
    EXPECT_FALSE(secondSucceeded);
    EXPECT_TRUE(waitFor([this] { return m_server.isClosed(0); }));
}
