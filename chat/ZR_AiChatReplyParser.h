#pragma once

#include <afx.h>
#include <afxcoll.h>

#include <QString>

#include "chat/ZR_AiChatSingleChatRecord.h"

// What the replies of the session calls say. Every reply is an envelope {"code", "msg", "data"}, and counts
// as a success only with code 200 and the message "success". Any text may come in: what is missing or of
// another JSON type reads as empty.

/// How the service judged a call.
struct ZR_AiChatReplyStatus {
    bool isSuccess() const;

    int code = 0;
    QString message;
};

/// The id of a created session, empty when the call failed.
CString parseCreatedSession(const QString& body);

/// The ids of all sessions, replacing the content of `ids`; left alone when the call failed.
ZR_AiChatReplyStatus parseSessionIds(const QString& body, CStringArray& ids);

/// Appends the messages of one session; nothing when the call failed. Messages of neither the user nor the
/// assistant are skipped.
ZR_AiChatReplyStatus parseSessionChats(const QString& body, ZR_AiChatSingleChatRecord& record);
