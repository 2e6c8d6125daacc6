#include "tests/chat/FakeChat.h"

#include <QCoreApplication>
#include <QMetaMethod>
#include <QTest>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "host/core/ZR_ZentriAccount.h"
#include "host/core/ZR_ZentriText.h"
#include "tests/chat/LogFile.h"
#include "tests/chat/MessageBoxes.h"

namespace {
MessageBoxes g_messageBoxes;
}  // namespace

MessageBoxes& MessageBoxes::instance() {
    return g_messageBoxes;
}

int MessageBoxes::DoMessageBox(LPCTSTR text, UINT type, UINT helpId) {
    Q_UNUSED(helpId)
    const std::lock_guard<std::mutex> lock(m_mutex);
    const QStringList log = LogFile::messages();
    m_boxes.append({toQString(CString(text)), type, std::this_thread::get_id(), log.value(log.size() - 1)});
    if (m_onBox) {
        m_onBox();
    }
    return IDOK;
}

void FakeAnswer::startAnswerLoading() {
    m_text.clear();
    take(QStringLiteral("bubble start"));
}

void FakeAnswer::appendAnswerText(const QString& piece) {
    m_calls.append(QStringLiteral("bubble append ") + piece);
    m_text += piece;
}

void FakeAnswer::stopAnswerLoading() {
    take(QStringLiteral("bubble stop"));
}

void FakeAnswer::take(const QString& call) {
    m_calls.append(call);
    if (onCall) {
        onCall();
    }
}

void FakeChatView::updateSideBarSessions(const ZR_AiChatSessionList& sessions) {
    take(QStringLiteral("view sessions ") + idsOf(sessions).join(QLatin1Char(' ')));
}

void FakeChatView::take(const QString& call) {
    m_calls.append(call);
    if (onCall) {
        onCall();
    }
}

ChatTest::ChatTest() {
    signIn(_T("token-1"));
    MessageBoxes::instance().clear();
}

ChatTest::~ChatTest() {
    deleteThreads();
    m_manager.reset();
    g_zentriCommunicating = false;
    signOut();
}

void ChatTest::setServiceAddress(const QString& address) {
    qputenv("ZR_ZENTRI_SERVICE", address.toUtf8());
    qputenv("ZR_ZENTRI_PROBE", "http://" + address.toUtf8());
}

void ChatTest::signIn(const CString& token) {
    setZentriAccessToken(token);
    setZentriSignedIn(true);
}

void ChatTest::signOut() {
    setZentriSignedIn(false);
    setZentriAccessToken(CString());
}

void ChatTest::makeThreads() {
    g_zentriChatThread = new ZR_AiChatCSThread;
    g_zentriHistoryThread = new ZR_AiChatReadHistoricalChatThread;
}

void ChatTest::deleteThreads() {
    delete g_zentriChatThread;
    g_zentriChatThread = nullptr;
    delete g_zentriHistoryThread;
    g_zentriHistoryThread = nullptr;
}

TestManager& ChatTest::makeManager() {
    makeThreads();
    m_manager = std::make_unique<TestManager>();
    return *m_manager;
}

bool ChatTest::waitUntilIdle() const {
    const bool finished =
        waitFor([] { return !g_zentriChatThread->isRunning() && !g_zentriHistoryThread->isRunning(); });
    // The signals of a finished thread have been posted by now.
    QCoreApplication::sendPostedEvents();
    return finished;
}

QString ChatTest::takePrinted() {
    const QString text = toQString(m_host.printedText());
    m_host.clearPrinted();
    return text;
}

bool ChatTest::waitFor(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, kWaitLimitMs);
}

QStringList texts(std::initializer_list<const char*> utf8) {
    QStringList result;
    for (const char* text : utf8) {
        result.append(QString::fromUtf8(text));
    }
    return result;
}

QStringList messagesOf(const ZR_AiChatSingleChatRecord& record) {
    QStringList messages;
    SingleChatUnitList units;
    record.GetUnits(units);
    for (INT_PTR i = 0; i < units.GetCount(); ++i) {
        messages.append(QString::number(units[i].role) + QLatin1Char(':') + toQString(units[i].message));
    }
    return messages;
}

QStringList signalsOf(const QMetaObject& metaObject) {
    QStringList signatures;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
        if (metaObject.method(i).methodType() == QMetaMethod::Signal) {
            signatures.append(QString::fromLatin1(metaObject.method(i).methodSignature()));
        }
    }
    return signatures;
}

QStringList idsOf(const ZR_AiChatSessionList& sessions) {
    QStringList ids;
    for (INT_PTR i = 0; i < sessions.GetCount(); ++i) {
        ids.append(toQString(sessions[i].GetSessionId()));
    }
    return ids;
}
