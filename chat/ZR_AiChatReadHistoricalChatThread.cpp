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
    if (m_result.IsEmpty()) {
        return false;
    }
    copySessionList(m_result, sessions);
    return true;
}

void ZR_AiChatReadHistoricalChatThread::run() {
    emit readStart();
    runAndLogExceptions(_T("历史对话读取线程发生错误:"), _T("历史对话读取线程发生未知错误！"),
                        [this] { readSessions(); });
    emit readEnd();
}

void ZR_AiChatReadHistoricalChatThread::readSessions() {
    if (!zentriHasAccess()) {
        return;
    }
    m_result.RemoveAll();
    CStringArray ids;
    if (!readSessionIds(ids)) {
        return;
    }
    for (INT_PTR i = 0; i < ids.GetCount(); ++i) {
        ZR_AiChatSingleChatRecord record;
        if (readSessionChats(ids[i], record)) {
            m_result.Add(record);
        }
    }
}
