#pragma once

#include <afx.h>
#include <afxcoll.h>

#include <QString>

#include "chat/ZR_AiChatSingleChatRecord.h"

// Parsers for the replies of the session calls. Every reply is an envelope {"code", "msg", "data"}; it is a
// success only with code 200 and the message "success". Any text is accepted: a member that is missing or of
// another JSON type reads as empty.

/// Code and message of a reply.
struct ZR_AiChatReplyStatus {
    bool isSuccess() const;

    int code = 0;
    QString message;
};

/// The id of a created session, empty when the call failed.
CString parseCreatedSession(const QString& body);

/// The ids of all sessions, replacing the content of `ids`; unchanged when the call failed.
ZR_AiChatReplyStatus parseSessionIds(const QString& body, CStringArray& ids);

/// Appends the messages of one session; none when the call failed. Messages with roles other than "user" and
/// "assistant" are skipped.
ZR_AiChatReplyStatus parseSessionChats(const QString& body, ZR_AiChatSingleChatRecord& record);
