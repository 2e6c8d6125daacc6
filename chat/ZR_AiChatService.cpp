#include "chat/ZR_AiChatService.h"

#include <QString>

#include "chat/ZR_AiChatHttp.h"
#include "chat/ZR_AiChatReplyParser.h"
#include "host/core/ZR_ZentriAccount.h"
#include "host/core/ZR_ZentriLogger.h"
#include "host/core/ZR_ZentriText.h"

namespace {

constexpr int kServicePort = 8001;

void logRefusal(const CString& what, const ZR_AiChatReplyStatus& status) {
    const QString details = QStringLiteral("返回码:%1,错误信息:%2").arg(status.code).arg(status.message);
    zentriLog(what + toCString(details));
}

/// Posts with this token, unless it is empty or no longer the signed-in user's.
bool post(const QString& path, const CString& token, QString& body) {
    return !token.IsEmpty() && token == zentriRequestToken() &&
           postToZentriService(path, kServicePort, token, body);
}

}  // namespace

CString createSessionOnServer() {
    QString body;
    if (!post(QStringLiteral("/zr/ai/session/create"), zentriRequestToken(), body)) {
        return CString();
    }
    return parseCreatedSession(body);
}

bool readSessionIds(CStringArray& ids) {
    return readSessionIds(zentriRequestToken(), ids);
}

bool readSessionIds(const CString& token, CStringArray& ids) {
    ids.RemoveAll();
    QString body;
    if (!post(QStringLiteral("/zr/ai/session/user"), token, body)) {
        return false;
    }
    const ZR_AiChatReplyStatus status = parseSessionIds(body, ids);
    if (!status.isSuccess()) {
        logRefusal(_T("获取用户历史对话记录Id列表失败,"), status);
    }
    return status.isSuccess();
}

bool readSessionChats(const CString& sessionId, ZR_AiChatSingleChatRecord& record) {
    return readSessionChats(zentriRequestToken(), sessionId, record);
}

bool readSessionChats(const CString& token, const CString& sessionId, ZR_AiChatSingleChatRecord& record) {
    record.Clear();
    QString body;
    const QString path = QStringLiteral("/zr/ai/chat/user/session/") + toQString(sessionId);
    if (!post(path, token, body)) {
        return false;
    }
    const ZR_AiChatReplyStatus status = parseSessionChats(body, record);
    if (!status.isSuccess()) {
        logRefusal(_T("获取用户历史对话记录失败,"), status);
        return false;
    }
    record.SetSessionId(sessionId);
    return true;
}
