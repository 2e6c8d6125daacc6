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

void ZR_AiChatReadHistoricalChatThread::run() {
    runAndLogExceptions(_T("历史对话读取线程发生错误:"), _T("历史对话读取线程发生未知错误！"), [this] {
        emit readStart();
        readSessions();
    });
    emit readEnd();
}

void ZR_AiChatReadHistoricalChatThread::readSessions() {
    if (!zentriHasAccess()) {
        return;
    }
    changeResult([this] { m_result.RemoveAll(); });
    CStringArray ids;
    if (!readSessionIds(ids)) {
        return;
    }
    for (INT_PTR i = 0; i < ids.GetCount(); ++i) {
        ZR_AiChatSingleChatRecord record;
        if (readSessionChats(ids[i], record)) {
            changeResult([&] { m_result.Add(record); });
        }
    }
}
