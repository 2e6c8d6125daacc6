#include "tests/view/support/ServiceTest.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatManager.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"

const QByteArray kChatTarget = "/zr/ai/caddraw/chat";

namespace {

QByteArray envelope(const QJsonValue& data) {
    return QJsonDocument(QJsonObject{{QStringLiteral("code"), 200},
                                     {QStringLiteral("msg"), QStringLiteral("success")},
                                     {QStringLiteral("data"), data}})
        .toJson();
}

}  // namespace

ServiceTest::ServiceTest() {
    const QByteArray address = m_server.address().toUtf8();
    qputenv("ZR_ZENTRI_SERVICE", address);
    qputenv("ZR_ZENTRI_PROBE", "http://" + address);
    // The manager lives as long as the process; an earlier test may have left a current session.
    ZR_AiChatManager::instance().newSession();
}

ServiceTest::~ServiceTest() {
    waitUntilIdle();
}

void ServiceTest::answerCreate(const QString& id) {
    m_server.answer("/zr/ai/session/create", envelope(id));
}

void ServiceTest::answerChat(const QByteArray& events) {
    m_server.answer(kChatTarget, events, 200, "text/event-stream");
}

void ServiceTest::loadHistory(const QList<Stored>& sessions) {
    QJsonArray list;
    for (const Stored& session : sessions) {
        list.append(QJsonObject{{QStringLiteral("userChatSessionId"), session.id}});
        QJsonArray messages;
        bool user = true;
        for (const QString& message : session.messages) {
            messages.append(QJsonObject{
                {QStringLiteral("role"), user ? QStringLiteral("user") : QStringLiteral("assistant")},
                {QStringLiteral("message"), message},
                {QStringLiteral("createTime"), session.time}});
            user = !user;
        }
        m_server.answer("/zr/ai/chat/user/session/" + session.id.toUtf8(), envelope(messages));
    }
    m_server.answer("/zr/ai/session/user", envelope(list));
    ZR_AiChatManager::instance().initUserData();
    EXPECT_TRUE(waitUntilIdle());
}

bool ServiceTest::waitUntilIdle() {
    const bool idle =
        waitFor([] { return !g_zentriChatThread->isRunning() && !g_zentriHistoryThread->isRunning(); });
    // Deliver the queued signals of the finished threads.
    QCoreApplication::sendPostedEvents();
    return idle;
}
