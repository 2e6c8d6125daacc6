#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QEventLoop>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatManager.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "host/core/ZR_ZentriAccount.h"
#include "host/core/ZR_ZentriText.h"
#include "tests/support/http/FakeHttpServer.h"

namespace {

constexpr int kSessionCount = 2000;
constexpr int kMessagesPerSession = 20;
constexpr int kAnswerLength = 400;

QByteArray sessionId(int session) {
    return "session-" + QByteArray::number(session);
}

QByteArray envelope(const QByteArray& data) {
    return "{\"code\":200,\"msg\":\"success\",\"data\":[" + data + "]}";
}

QByteArray messages(int session) {
    QByteArray data;
    for (int i = 0; i < kMessagesPerSession; ++i) {
        const bool answer = i % 2 != 0;
        const QByteArray text = answer ? QByteArray("画圆步骤").repeated(kAnswerLength / 4)
                                       : "问题 " + QByteArray::number(session * kMessagesPerSession + i);
        data += (i > 0 ? ",{\"role\":\"" : "{\"role\":\"") + QByteArray(answer ? "assistant" : "user") +
                "\",\"createTime\":1700000000,\"message\":\"" + text + "\"}";
    }
    return data;
}

/// The manager, after reading a large history from a service.
ZR_AiChatManager& filledManager() {
    static ZR_AiChatManager* const manager = [] {
        FakeHttpServer server;
        QByteArray ids;
        for (int i = 0; i < kSessionCount; ++i) {
            ids +=
                (i > 0 ? ",{\"userChatSessionId\":\"" : "{\"userChatSessionId\":\"") + sessionId(i) + "\"}";
            server.answer("/zr/ai/chat/user/session/" + sessionId(i), envelope(messages(i)));
        }
        server.answer("/zr/ai/session/user", envelope(ids));
        qputenv("ZR_ZENTRI_SERVICE", server.address().toUtf8());
        setZentriAccessToken(_T("token"));
        setZentriSignedIn(true);

        g_zentriChatThread = new ZR_AiChatCSThread;
        g_zentriHistoryThread = new ZR_AiChatReadHistoricalChatThread;
        ZR_AiChatManager& made = ZR_AiChatManager::instance();
        made.initUserData();
        g_zentriHistoryThread->wait();
        QCoreApplication::sendPostedEvents();
        return &made;
    }();
    return *manager;
}

/// No message contains the text, so every message is searched.
void searchMessages(benchmark::State& state) {
    const ZR_AiChatManager& manager = filledManager();
    ZR_AiChatSessionList found;
    for ([[maybe_unused]] auto _ : state) {
        if (manager.searchSessions(_T("画圆弧"), found)) {
            state.SkipWithError("the text should not be found");
            return;
        }
    }
    state.SetItemsProcessed(state.iterations() * kSessionCount);
}
BENCHMARK(searchMessages)->Unit(benchmark::kMillisecond);

/// Every session matches and is copied.
void searchMessagesOfAll(benchmark::State& state) {
    const ZR_AiChatManager& manager = filledManager();
    ZR_AiChatSessionList found;
    for ([[maybe_unused]] auto _ : state) {
        manager.searchSessions(_T("画圆"), found);
        if (found.GetCount() != kSessionCount) {
            state.SkipWithError("every session should be found");
            return;
        }
    }
    state.SetItemsProcessed(state.iterations() * kSessionCount);
}
BENCHMARK(searchMessagesOfAll)->Unit(benchmark::kMillisecond);

/// Every session is looked up once by its id, as a filter of the side bar does.
void findEverySession(benchmark::State& state) {
    const ZR_AiChatManager& manager = filledManager();
    QList<CString> ids;
    for (int i = 0; i < kSessionCount; ++i) {
        ids.append(toCString(QString::fromLatin1(sessionId(i))));
    }
    ZR_AiChatSingleChatRecord record;
    for ([[maybe_unused]] auto _ : state) {
        for (const CString& id : qAsConst(ids)) {
            if (!manager.findSession(id, record)) {
                state.SkipWithError("every session should be found");
                return;
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * kSessionCount);
}
BENCHMARK(findEverySession)->Unit(benchmark::kMillisecond);

}  // namespace
