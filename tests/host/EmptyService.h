#pragma once

#include <QtGlobal>

#include "tests/chat/ServiceReplies.h"

/// Lets the server be the module's AI service: it has no sessions and creates one with a fixed id.
inline void serveEmptyHistory(FakeHttpServer& server) {
    answerList(server, {});
    answerCreate(server, "session-1");
    qputenv("ZR_ZENTRI_SERVICE", server.address().toLatin1());
    qputenv("ZR_ZENTRI_PROBE", "http://" + server.address().toLatin1());
}
