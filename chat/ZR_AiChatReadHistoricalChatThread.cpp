#include "chat/ZR_AiChatReadHistoricalChatThread.h"

#include <afxcoll.h>

#include "chat/ZR_AiChatService.h"
#include "chat/ZR_AiChatWorkerGuard.h"
#include "host/core/ZR_ZentriAccount.h"

ZR_AiChatReadHistoricalChatThread::ZR_AiChatReadHistoricalChatThread(QObject* parent) : QThread(parent) {}

ZR_AiChatReadHistoricalChatThread::~ZR_AiChatReadHistoricalChatThread() {
    quit();
    wait();
}

bool ZR_AiChatReadHistoricalChatThread::copyResultTo(ZR_AiChatSessionList& sessions) const {
    const std::lock_guard<std::mutex> lock(m_resultMutex);
    if (m_result.IsEmpty()) {
        return false;
    }
    copySessionList(m_result, sessions);
    return true;
}

bool ZR_AiChatReadHistoricalChatThread::isResultOf(const CString& token) const {
    const std::lock_guard<std::mutex> lock(m_resultMutex);
    return m_resultToken == token;
}

void ZR_AiChatReadHistoricalChatThread::run() {
    runAndLogExceptions(_T("历史对话读取线程发生错误:"), _T("历史对话读取线程发生未知错误！"), [this] {
        emit readStart();
        readSessions();
    });
    emit readEnd();
}

void ZR_AiChatReadHistoricalChatThread::readSessions() {
    // One token for the whole run: the ids read for one user must not be used for another.
    const CString token = zentriRequestToken();
    if (token.IsEmpty()) {
        return;
    }
    changeResult([&] {
        m_result.RemoveAll();
        m_resultToken = token;
    });
    CStringArray ids;
    if (!readSessionIds(token, ids)) {
        return;
    }
    for (INT_PTR i = 0; i < ids.GetCount(); ++i) {
        ZR_AiChatSingleChatRecord record;
        if (readSessionChats(token, ids[i], record)) {
            changeResult([&] { m_result.Add(record); });
        }
    }
}
