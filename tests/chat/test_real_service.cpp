#include <QRegularExpression>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatService.h"
#include "host/core/ZR_ZentriText.h"
#include "tests/chat/FakeChat.h"
#include "tests/chat/LogFile.h"
#include "tests/chat/MessageBoxes.h"
#include "tests/support/service/ServiceProcess.h"

namespace {

/// The chat with the real AI service, run as a program.
class RealService : public ChatTest {
protected:
    RealService() { m_answer = std::make_unique<FakeAnswer>(m_calls); }

    ~RealService() override { deleteThreads(); }

    /// Starts the service and creates the threads and the manager.
    void start(const std::vector<std::string>& options = {"--delay", "0"}) {
        m_service = std::make_unique<ServiceProcess>(options);
        setServiceAddress(QString::fromStdString(m_service->address()));
        makeManager();
    }

    /// Sends a question and waits for the whole answer.
    bool ask(const CString& question) {
        m_manager->send(question, true, m_answer.get());
        return waitUntilIdle();
    }

    QStringList current() const {
        ZR_AiChatSingleChatRecord record;
        m_manager->getCurrentRecord(record);
        return messagesOf(record);
    }

    CString currentId() const {
        ZR_AiChatSingleChatRecord record;
        m_manager->getCurrentRecord(record);
        return record.GetSessionId();
    }

    std::unique_ptr<ServiceProcess> m_service;
    std::unique_ptr<FakeAnswer> m_answer;
};

}  // namespace

TEST_F(RealService, StreamsAnAnswerInPieces) {
    start();
    ASSERT_TRUE(ask(_T("怎样画圆？")));
    EXPECT_TRUE(takePrinted().isEmpty());
    EXPECT_FALSE(currentId().IsEmpty());
    EXPECT_GT(m_calls.filter(QRegularExpression(QStringLiteral("^bubble append "))).size(), 3);
    EXPECT_TRUE(m_answer->answerText().contains(QStringLiteral("【CIRCLE】")))
        << qPrintable(m_answer->answerText());
    const QStringList messages = current();
    ASSERT_GE(messages.size(), 2);
    EXPECT_EQ(messages[0], QStringLiteral("0:怎样画圆？"));
    EXPECT_EQ(messages[1], QStringLiteral("1:") + m_answer->answerText());
}

TEST_F(RealService, ReadsAConversationBack) {
    start();
    ASSERT_TRUE(ask(_T("怎样画圆？")));
    const QString firstAnswer = m_answer->answerText();
    const CString id = currentId();
    ASSERT_TRUE(ask(_T("第二个\n问题 data: \"x\"")));
    const QString secondAnswer = m_answer->answerText();

    ZR_AiChatSingleChatRecord record;
    ASSERT_TRUE(readSessionChats(id, record));
    EXPECT_EQ(record.GetTitle(), _T("怎样画圆？"));
    ASSERT_EQ(record.GetUnitCount(), 4);
    const QStringList messages = messagesOf(record);
    EXPECT_EQ(messages[0], QStringLiteral("0:怎样画圆？"));
    EXPECT_EQ(messages[1], QStringLiteral("1:") + firstAnswer);
    EXPECT_EQ(messages[2], QStringLiteral("0:第二个\n问题 data: \"x\""));
    EXPECT_EQ(messages[3], QStringLiteral("1:") + secondAnswer);
    ZR_AiChatSingleChatRecord own;
    m_manager->getCurrentRecord(own);
    EXPECT_LE(qAbs(record.GetCreateTime() - own.GetCreateTime()), 60);
}

TEST_F(RealService, ListsTheSessionsInTheHistory) {
    start();
    ASSERT_TRUE(ask(_T("一")));
    const CString first = currentId();
    m_manager->newSession();
    ASSERT_TRUE(ask(_T("二")));
    const CString second = currentId();
    EXPECT_NE(first, second);

    m_manager->initUserData();
    ASSERT_TRUE(waitUntilIdle());
    ZR_AiChatSessionList sessions;
    m_manager->getSessions(sessions);
    ASSERT_EQ(sessions.GetCount(), 2);
    ZR_AiChatSingleChatRecord record;
    EXPECT_TRUE(m_manager->findSession(first, record));
    EXPECT_EQ(record.GetTitle(), _T("一"));
    EXPECT_TRUE(m_manager->findSession(second, record));
    EXPECT_EQ(record.GetTitle(), _T("二"));
}

TEST_F(RealService, ReadsASeededHistory) {
    start({"--seed", "demo", "--seed-token", "token-1", "--seed-sessions", "60"});
    m_manager->initUserData();
    ASSERT_TRUE(waitUntilIdle());
    ZR_AiChatSessionList sessions;
    m_manager->getSessions(sessions);
    EXPECT_EQ(sessions.GetCount(), 60);
    for (INT_PTR i = 0; i < sessions.GetCount(); ++i) {
        EXPECT_FALSE(sessions[i].GetTitle().IsEmpty());
        EXPECT_GT(sessions[i].GetCreateTime(), 1000000000);
        EXPECT_LT(sessions[i].GetUseTime(), 10000000000);
    }
}

TEST_F(RealService, CannotReadAnotherUsersSession) {
    start();
    ASSERT_TRUE(ask(_T("secret")));
    const CString id = currentId();
    signIn(_T("token-2"));
    const int logged = LogFile::messages().size();
    ZR_AiChatSingleChatRecord record;
    EXPECT_FALSE(readSessionChats(id, record));
    EXPECT_EQ(record.GetUnitCount(), 0);
    ASSERT_EQ(LogFile::messages().size(), logged + 1);
    EXPECT_TRUE(LogFile::messages().last().startsWith(QStringLiteral("获取用户历史对话记录失败,返回码:")));
    CStringArray ids;
    EXPECT_TRUE(readSessionIds(ids));
    EXPECT_EQ(ids.GetCount(), 0);
}

TEST_F(RealService, StoresThePartialAnswerOfALostConnection) {
    start({"--delay", "0", "--fault", "chat:cut-in-char=3"});
    ASSERT_TRUE(ask(_T("怎样画圆？")));
    // Qt does not always detect that a chunked reply was truncated, so there is one message box or none.
    EXPECT_LE(MessageBoxes::instance().count(), 1);
    EXPECT_FALSE(m_answer->answerText().isEmpty());
    EXPECT_EQ(current().value(1), QStringLiteral("1:") + m_answer->answerText());
    EXPECT_TRUE(m_manager->canCommunicate());
}

TEST_F(RealService, SurvivesAFailedRequest) {
    start({"--delay", "0", "--fault", "chat:status=503,times=1"});
    ASSERT_TRUE(ask(_T("怎样画圆？")));
    EXPECT_EQ(MessageBoxes::instance().count(), 1);
    ASSERT_TRUE(ask(_T("怎样画圆？")));
    EXPECT_EQ(MessageBoxes::instance().count(), 1);
    EXPECT_FALSE(m_answer->answerText().isEmpty());
}

TEST_F(RealService, ReceivesAHugeEvent) {
    const int size = 1 << 20;
    start({"--delay", "0", "--fault", "chat:huge-event=1048576"});
    ASSERT_TRUE(ask(_T("怎样画圆？")));
    EXPECT_GE(m_answer->answerText().toUtf8().size(), size - 4);
    EXPECT_EQ(MessageBoxes::instance().count(), 0);
}

TEST_F(RealService, ReceivesInvalidUtf8AndEmptyEvents) {
    start({"--delay", "0", "--fault", "chat:invalid-utf8", "--fault", "chat:empty-events=3"});
    ASSERT_TRUE(ask(_T("怎样画圆？")));
    EXPECT_TRUE(m_answer->answerText().contains(QStringLiteral("【CIRCLE】")));
    EXPECT_TRUE(m_calls.contains(QStringLiteral("bubble append ")));
}

TEST_F(RealService, CreatesNoSessionFromABrokenReply) {
    start({"--delay", "0", "--fault", "create:broken-json"});
    ASSERT_TRUE(ask(_T("Q")));
    EXPECT_EQ(takePrinted(), QStringLiteral("\n创建新对话失败！"));
    EXPECT_TRUE(current().isEmpty());
}

TEST_F(RealService, StopsAtOnceInTheMiddleOfAnAnswer) {
    start({"--fault", "chat:never-ending"});
    m_manager->send(_T("怎样画圆？"), true, m_answer.get());
    ASSERT_TRUE(waitFor([this] { return !m_answer->answerText().isEmpty(); }));
    g_zentriChatThread->quit();
    ASSERT_TRUE(g_zentriChatThread->wait(5000));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(MessageBoxes::instance().count(), 0);
    EXPECT_TRUE(m_manager->canCommunicate());
}
