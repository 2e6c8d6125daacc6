#include "chat/ZR_AiChatReadHistoricalChatThread.h"

#include <afxcoll.h>

#include <QString>
#include <exception>

#include "chat/ZR_AiChatService.h"
#include "host/core/ZR_ZentriAccount.h"
#include "host/core/ZR_ZentriLogger.h"
#include "host/core/ZR_ZentriText.h"

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
    const CString unknownError(_T("历史对话读取线程发生未知错误！"));
    try {
        readSessions();
    } catch (const std::exception& error) {
        zentriLog(_T("历史对话读取线程发生错误:") + toCString(QString::fromUtf8(error.what())));
    } catch (CException* error) {
        error->Delete();
        zentriLog(unknownError);
    } catch (...) {
        zentriLog(unknownError);
    }
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
