#pragma once

#include <QByteArray>
#include <QList>

#include "tests/support/http/FakeHttpServer.h"

// Request targets of the AI service.
const QByteArray kChatTarget = "/zr/ai/caddraw/chat";
const QByteArray kCreateTarget = "/zr/ai/session/create";
const QByteArray kListTarget = "/zr/ai/session/user";
/// Followed by the session id.
const QByteArray kReadTarget = "/zr/ai/chat/user/session/";

/// Lets the service create sessions with this id.
inline void answerCreate(FakeHttpServer& server, const QByteArray& id) {
    server.answer(kCreateTarget, "{\"code\":200,\"msg\":\"success\",\"data\":\"" + id + "\"}");
}

/// Lets the service list these sessions.
inline void answerList(FakeHttpServer& server, const QList<QByteArray>& ids) {
    QByteArray data;
    for (const QByteArray& id : ids) {
        data += (data.isEmpty() ? "{" : ",{") + QByteArray("\"userChatSessionId\":\"") + id + "\"}";
    }
    server.answer(kListTarget, "{\"code\":200,\"msg\":\"success\",\"data\":[" + data + "]}");
}

/// Lets the service return one question, "Q " and the id, as the messages of this session.
inline void answerRead(FakeHttpServer& server, const QByteArray& id) {
    server.answer(kReadTarget + id,
                  "{\"code\":200,\"msg\":\"success\",\"data\":[{\"role\":\"user\",\"message\":\"Q " + id +
                      "\",\"createTime\":5}]}");
}
