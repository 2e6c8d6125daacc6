#include "chat/ZR_AiChatManager.h"

#include <acutads.h>
#include <objbase.h>
#include <wininet.h>

#include <QCoreApplication>
#include <QEvent>
#include <QScopedValueRollback>

#include "chat/ZR_AiChatAnswerInterface.h"
#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatGuid.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "chat/ZR_AiChatService.h"
#include "chat/ZR_AiChatViewInterface.h"
#include "host/core/ZR_ZentriAccount.h"
#include "host/core/ZR_ZentriLogger.h"
#include "host/core/ZR_ZentriPaletteAccess.h"
#include "host/core/ZR_ZentriServiceAddress.h"
#include "host/core/ZR_ZentriText.h"

namespace {

void print(const CString& text) {
    acutPrintf(_T("%s"), text.GetString());
}

CString busyText() {
    return _T("\n已有正在通信的对话，请等待该通信完成...");
}

CString networkFailureText() {
    return _T("\n网络连接失败!请尝试以下方法解决：\r\n")
           _T("1.检查网络连接；\r\n")
           _T("2.关闭系统、360及杀毒软件的防火墙；\r\n")
           _T("3.如安装有加密软件，请联系管理员修改加密策略；\r\n")
           _T("4.请检测windows自带IE浏览器是否正常启动。\r\n");
}

CString noThreadText() {
    return _T("\n对话线程未初始化！");
}

CString notCreatedText() {
    return _T("\n创建新对话失败！");
}

ZR_AiChatManager* g_instance = nullptr;

/// Once this is false, the thread has posted all its signals.
bool runs(QThread* thread) {
    if (thread == nullptr) {
        return false;
    }
    if (thread->isRunning()) {
        return true;
    }
    // The thread is no longer "running" while it still emits finished().
    thread->wait();
    return false;
}

}  // namespace

ZR_AiChatManager::Answer::Answer(ZR_AiChatAnswerInterface* answerBubble)
    : bubble(answerBubble), object(answerBubble != nullptr ? answerBubble->answerObject() : nullptr) {}

ZR_AiChatAnswerInterface* ZR_AiChatManager::Answer::get() const {
    return object.isNull() ? nullptr : bubble;
}

ZR_AiChatManager& ZR_AiChatManager::instance() {
    static ZR_AiChatManager manager;
    g_instance = &manager;
    return manager;
}

ZR_AiChatManager* ZR_AiChatManager::existingInstance() {
    return g_instance;
}

ZR_AiChatManager::ZR_AiChatManager()
    : m_createdAfterThreads(g_zentriChatThread != nullptr && g_zentriHistoryThread != nullptr) {
    if (!m_createdAfterThreads) {
        print(_T("\n初始化顺序有误,通信线程应先于管理类初始化"));
    }
}

ZR_AiChatManager::~ZR_AiChatManager() {
    if (g_zentriExchangeUnfinished) {
        print(_T("\n通信线程未正常结束,可能发生错误"));
    }
    if (g_instance == this) {
        g_instance = nullptr;
    }
}

bool ZR_AiChatManager::canCommunicate() {
    const CString reason = refusal();
    if (!reason.IsEmpty()) {
        print(reason);
    }
    return reason.IsEmpty();
}

CString ZR_AiChatManager::refusal() {
    const Running running = deliverPosted();
    if (!zentriHasAccess()) {
        return _T("\n尚未登录！");
    }
    if (g_zentriChatThread == nullptr || g_zentriHistoryThread == nullptr) {
        return _T("\n通信线程未初始化！");
    }
    if (isExchanging(running)) {
        return busyText();
    }
    if (running.history || m_initialising) {
        return _T("\n正在初始化用户数据，请等待该操作完成...");
    }
    return CString();
}

bool ZR_AiChatManager::initUserData() {
    if (!zentriHasAccess()) {
        return false;
    }
    if (canCommunicate()) {
        readUserData();
        return true;
    }
    if (g_zentriChatThread == nullptr || g_zentriHistoryThread == nullptr) {
        return false;
    }
    m_readPending = true;
    connectThreads();
    return true;
}

void ZR_AiChatManager::readUserData() {
    m_readPending = false;
    startThread(g_zentriHistoryThread);
}

void ZR_AiChatManager::readUserDataIfPending() {
    if (m_readPending && refusal().IsEmpty()) {
        readUserData();
    }
}

void ZR_AiChatManager::forgetUser() {
    if (!m_chatThread.isNull() && m_chatThread != g_zentriChatThread) {
        // It could not be stopped. The signals that it still emits belong to no exchange any more.
        disconnect(m_chatThread, nullptr, this, nullptr);
    }
    deliverPosted();
    if (g_zentriCommunicating) {
        onStreamEnd();
    }
    m_sessions.replaceAll(ZR_AiChatSessionList());
    m_current.Clear();
    m_answer = Answer();
    m_readPending = false;
    ++m_userNumber;
}

void ZR_AiChatManager::send(const CString& question, bool flag, ZR_AiChatAnswerInterface* bubble) {
    // Handlers may delete the bubble.
    const Answer answer(bubble);
    deliverPosted();
    const CString sessionId = m_current.GetSessionId();
    if (sessionId.IsEmpty()) {
        sendInNewSession(question, flag, answer);
    } else {
        sendInKnownSession(sessionId, question, flag, answer.get());
    }
}

void ZR_AiChatManager::sendInNewSession(const CString& question, bool flag, const Answer& answer) {
    const Running running = deliverPosted();
    if (!zentriHasAccess()) {
        return;
    }
    fileCurrent();
    if (!mayStartExchange(running)) {
        return;
    }
    const QScopedValueRollback<bool> sending(m_sending, true);
    const int user = m_userNumber;
    const CString sessionId = createSessionOnServer();
    if (sessionId.IsEmpty()) {
        print(notCreatedText());
        return;
    }
    // Events have been delivered meanwhile, so the module may have been unloaded, and loaded again.
    if (g_zentriChatThread == nullptr) {
        print(noThreadText());
        return;
    }
    if (user != m_userNumber) {
        print(notCreatedText());
        return;
    }
    m_current.SetSessionId(sessionId);
    addToCurrent(kChatRoleUser, question);
    m_sessions.put(m_current);
    emit newSessionSet(sessionId);
    startExchange(question, flag, answer);
}

void ZR_AiChatManager::sendInKnownSession(const CString& sessionId, const CString& question, bool flag,
                                          ZR_AiChatAnswerInterface* bubble) {
    const Answer answer(bubble);
    const Running running = deliverPosted();
    if (!zentriHasAccess() || !mayStartExchange(running)) {
        return;
    }
    if (!m_current.IsSession(sessionId)) {
        fileCurrent();
        if (!makeCurrent(sessionId)) {
            return;
        }
    }
    const QScopedValueRollback<bool> sending(m_sending, true);
    addToCurrent(kChatRoleUser, question);
    m_sessions.put(m_current);
    emit sessionUpdated(m_current.GetSessionId());
    startExchange(question, flag, answer);
}

bool ZR_AiChatManager::mayStartExchange(const Running& running) {
    if (g_zentriChatThread == nullptr) {
        print(noThreadText());
        return false;
    }
    if (isExchanging(running)) {
        print(busyText());
        return false;
    }
    if (!checkConnection()) {
        print(networkFailureText());
        return false;
    }
    return true;
}

void ZR_AiChatManager::startExchange(const CString& question, bool flag, const Answer& answer) {
    m_sendFlag = flag;
    m_answer = answer;
    zentriLog(_T("准备发送用户对话,内容如下:\n") + question);
    g_zentriChatThread->setExchange(
        {toQString(m_current.GetLastUserInput()), toQString(m_current.GetSessionId())});
    startThread(g_zentriChatThread);
}

void ZR_AiChatManager::newSession() {
    deliverPosted();
    if (!m_sending) {
        fileCurrent();
    }
}

void ZR_AiChatManager::openSession(const CString& sessionId) {
    if (deliverPosted().chat || m_sending) {
        print(_T("\n当前有正在进行的通信,请等待通信结束..."));
        return;
    }
    fileCurrent();
    makeCurrent(sessionId);
    if (ZR_AiChatViewInterface* view = zentriChatView()) {
        view->showCurrentSession();
    }
}

void ZR_AiChatManager::getCurrentRecord(ZR_AiChatSingleChatRecord& record) const {
    record = m_current;
}

CString ZR_AiChatManager::getLastUserInput() const {
    return m_current.GetLastUserInput();
}

bool ZR_AiChatManager::getSessions(ZR_AiChatSessionList& sessions) const {
    copySessionList(m_sessions.list(), sessions);
    return true;
}

bool ZR_AiChatManager::findSession(const CString& sessionId, ZR_AiChatSingleChatRecord& record) const {
    const ZR_AiChatSingleChatRecord* const found = m_sessions.find(sessionId);
    if (found == nullptr) {
        return false;
    }
    record = *found;
    return true;
}

bool ZR_AiChatManager::searchSessions(const CString& text, ZR_AiChatSessionList& sessions) const {
    sessions.RemoveAll();
    const ZR_AiChatSessionList& all = m_sessions.list();
    for (INT_PTR i = 0; i < all.GetCount(); ++i) {
        if (all[i].ContainsText(text)) {
            sessions.Add(all[i]);
        }
    }
    return !sessions.IsEmpty();
}

bool ZR_AiChatManager::checkConnection() {
    const CString address = toCString(zentriProbeAddress());
    return InternetCheckConnectionW(address.GetString(), FLAG_ICC_FORCE_CONNECTION, 0) != FALSE;
}

CString ZR_AiChatManager::makeGuid() {
    GUID guid;
    return SUCCEEDED(CoCreateGuid(&guid)) ? zentriGuidText(guid) : CString();
}

void ZR_AiChatManager::onStreamStart() {
    g_zentriCommunicating = true;
    if (ZR_AiChatAnswerInterface* bubble = m_answer.get()) {
        bubble->startAnswerLoading();
    }
    if (ZR_AiChatViewInterface* view = zentriChatView()) {
        view->onStreamStart();
    }
}

void ZR_AiChatManager::onStreamProcess(const QString& text) {
    if (ZR_AiChatAnswerInterface* bubble = m_answer.get()) {
        bubble->appendAnswerText(text);
    }
    if (ZR_AiChatViewInterface* view = zentriChatView()) {
        view->onStreamProcess();
    }
}

void ZR_AiChatManager::onStreamEnd() {
    // If the bubble has been deleted, so has its text, and there is no answer to store.
    if (ZR_AiChatAnswerInterface* bubble = m_answer.get()) {
        addToCurrent(kChatRoleAssistant, toCString(bubble->answerText()));
        bubble->stopAnswerLoading();
    }
    if (ZR_AiChatViewInterface* view = zentriChatView()) {
        view->onStreamEnd();
    }
    g_zentriCommunicating = false;
}

void ZR_AiChatManager::onThreadFinished() {
    // A run that was asked to quit, or failed, before its streamStart was handled found the flag clear and
    // emitted no streamEnd. finished() is queued behind the run's other signals, so if the flag is still set
    // now, nothing else will ever clear it.
    if (g_zentriCommunicating) {
        onStreamEnd();
    }
    readUserDataIfPending();
}

void ZR_AiChatManager::onReadStart() {
    m_initialising = true;
    print(_T("\nZentri:开始初始化用户数据..."));
}

void ZR_AiChatManager::onReadEnd() {
    fileCurrent();
    ZR_AiChatSessionList history;
    // The run may have been started for a user who has signed out meanwhile.
    if (g_zentriHistoryThread != nullptr && g_zentriHistoryThread->isResultOf(zentriRequestToken()) &&
        g_zentriHistoryThread->copyResultTo(history)) {
        m_sessions.replaceAll(history);
    }
    if (ZR_AiChatViewInterface* view = zentriChatView()) {
        const QScopedValueRollback<bool> inUse(m_listInUse, true);
        view->updateSideBarSessions(m_sessions.list());
    }
    m_initialising = false;
    print(_T("\nZentri:用户数据初始化完成"));
}

void ZR_AiChatManager::startThread(QThread* thread) {
    connectThreads();
    thread->start();
}

void ZR_AiChatManager::connectThreads() {
    if (!m_createdAfterThreads || g_zentriChatThread == nullptr || g_zentriHistoryThread == nullptr) {
        return;
    }
    m_chatThread = g_zentriChatThread;
    const auto once = static_cast<Qt::ConnectionType>(Qt::AutoConnection | Qt::UniqueConnection);
    using Chat = ZR_AiChatCSThread;
    using History = ZR_AiChatReadHistoricalChatThread;
    connect(g_zentriChatThread, &Chat::streamStart, this, &ZR_AiChatManager::onStreamStart, once);
    connect(g_zentriChatThread, &Chat::streamProcess, this, &ZR_AiChatManager::onStreamProcess, once);
    connect(g_zentriChatThread, &Chat::streamEnd, this, &ZR_AiChatManager::onStreamEnd, once);
    connect(g_zentriChatThread, &Chat::finished, this, &ZR_AiChatManager::onThreadFinished, once);
    connect(g_zentriHistoryThread, &History::readStart, this, &ZR_AiChatManager::onReadStart, once);
    connect(g_zentriHistoryThread, &History::readEnd, this, &ZR_AiChatManager::onReadEnd, once);
    connect(g_zentriHistoryThread, &History::finished, this, &ZR_AiChatManager::readUserDataIfPending, once);
}

ZR_AiChatManager::Running ZR_AiChatManager::deliverPosted() {
    // A thread posts its last signals before it ends, so this must be asked before they are delivered.
    const Running before = {runs(g_zentriChatThread), runs(g_zentriHistoryThread)};
    if (!m_listInUse) {
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    }
    // A slot may have started another run.
    return {before.chat || runs(g_zentriChatThread), before.history || runs(g_zentriHistoryThread)};
}

bool ZR_AiChatManager::isExchanging(const Running& running) const {
    return running.chat || g_zentriCommunicating || m_sending;
}

void ZR_AiChatManager::fileCurrent() {
    if (!m_current.GetSessionId().IsEmpty()) {
        m_sessions.put(m_current);
    }
    m_current.Clear();
}

bool ZR_AiChatManager::makeCurrent(const CString& sessionId) {
    const ZR_AiChatSingleChatRecord* const found = m_sessions.find(sessionId);
    if (found == nullptr) {
        return false;
    }
    m_current = *found;
    return true;
}

void ZR_AiChatManager::addToCurrent(std::uint32_t role, const CString& text) {
    m_current.AddUnit(role, text);
}
