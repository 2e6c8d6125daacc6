// The side bar with a long history compared with the plain rules: each benchmark runs both and reports how
// many times longer the plain rules take ("ratio"), so the result hardly depends on the machine.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDateTime>
#include <ctime>
#include <functional>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatManager.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "host/core/ZR_ZentriAccount.h"
#include "sidebar/ZR_AiChatHistoricalChatBox.h"
#include "tests/sidebar/PlainHistory.h"
#include "tests/support/http/FakeHttpServer.h"

namespace {

constexpr int kSessions = 2000;
constexpr int kMessagesPerSession = 20;
constexpr qint64 kTwoYears = 2 * 365 * 86400;

/// Processor time of the work, which does not depend on other processes.
double seconds(const std::function<void()>& work) {
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

QByteArray sessionId(int session) {
    return "session-" + QByteArray::number(session);
}

QByteArray envelope(const QByteArray& data) {
    return "{\"code\":200,\"msg\":\"success\",\"data\":[" + data + "]}";
}

QByteArray messages(int session, qint64 time) {
    QByteArray data;
    for (int i = 0; i < kMessagesPerSession; ++i) {
        const bool answer = i % 2 != 0;
        const QByteArray text = answer ? QByteArray("画圆步骤").repeated(50)
                                       : "第 " + QByteArray::number(session) + " 个问题：怎样画圆？";
        data += (i > 0 ? ",{\"role\":\"" : "{\"role\":\"") + QByteArray(answer ? "assistant" : "user") +
                "\",\"createTime\":" + QByteArray::number(time) + ",\"message\":\"" + text + "\"}";
    }
    return data;
}

/// That many sessions, spread over two years. Repeats the 2,000 sessions that the manager has read.
const ZR_AiChatSessionList& history(int sessions) {
    static const bool filled = [] {
        FakeHttpServer server;
        const qint64 now = QDateTime::currentSecsSinceEpoch();
        QByteArray ids;
        for (int i = 0; i < kSessions; ++i) {
            ids +=
                (i > 0 ? ",{\"userChatSessionId\":\"" : "{\"userChatSessionId\":\"") + sessionId(i) + "\"}";
            server.answer("/zr/ai/chat/user/session/" + sessionId(i),
                          envelope(messages(i, now - i * (kTwoYears / kSessions))));
        }
        server.answer("/zr/ai/session/user", envelope(ids));
        qputenv("ZR_ZENTRI_SERVICE", server.address().toUtf8());
        setZentriAccessToken(_T("token"));
        setZentriSignedIn(true);
        g_zentriChatThread = new ZR_AiChatCSThread;
        g_zentriHistoryThread = new ZR_AiChatReadHistoricalChatThread;
        ZR_AiChatManager::instance().initUserData();
        g_zentriHistoryThread->wait();
        QCoreApplication::sendPostedEvents();
        return true;
    }();
    Q_UNUSED(filled)
    static ZR_AiChatSessionList list;
    ZR_AiChatSessionList own;
    ZR_AiChatManager::instance().getSessions(own);
    list.RemoveAll();
    for (int i = 0; i < sessions; ++i) {
        list.Add(own.GetAt(i % own.GetCount()));
    }
    return list;
}

template <typename Box>
void open(Box& box) {
    constexpr int kWidth = 250;
    constexpr int kHeight = 600;
    box.resize(kWidth, kHeight);
    box.show();
    QApplication::processEvents();
}

/// The history is loaded into a visible side bar. The argument is the number of sessions.
void LoadHistory(benchmark::State& state) {
    const auto sessions = static_cast<int>(state.range(0));
    const ZR_AiChatSessionList& list = history(sessions);
    double plainTime = 0;
    if (sessions <= kSessions) {
        PlainHistory plain;
        open(plain);
        plainTime = seconds([&] {
            plain.loadSessions(list, QDateTime::currentSecsSinceEpoch());
            QApplication::processEvents();
        });
    }
    double own = 0;
    int runs = 0;
    for (auto _ : state) {
        ZR_AiChatHistoricalChatBox box;
        open(box);
        const double time = seconds([&] {
            box.loadSessions(list);
            QApplication::processEvents();
        });
        state.SetIterationTime(time);
        own += time;
        ++runs;
    }
    state.counters["us_per_session"] = own / runs / sessions * 1e6;
    if (plainTime > 0) {
        state.counters["plain_us_per_session"] = plainTime / sessions * 1e6;
        state.counters["ratio"] = plainTime / (own / runs);
    }
}
BENCHMARK(LoadHistory)->Arg(500)->Arg(2000)->Arg(8000)->UseManualTime()->Unit(benchmark::kMillisecond);

/// Key strokes in the search box, each of which leaves fewer sessions, and clearing it, which shows all
/// sessions again.
template <typename Box>
void type(Box& box) {
    for (const QString& text : {QStringLiteral("1"), QStringLiteral("12"), QStringLiteral("123"),
                                QStringLiteral("1234"), QStringLiteral("1234x")}) {
        box.applyFilter(text);
        QApplication::processEvents();
    }
    box.showAllEntries();
    QApplication::processEvents();
}
constexpr int kStrokes = 6;

void FilterKeyStroke(benchmark::State& state) {
    const ZR_AiChatSessionList& list = history(kSessions);
    double plainTime = 0;
    {
        PlainHistory plain;
        open(plain);
        plain.loadSessions(list, QDateTime::currentSecsSinceEpoch());
        QApplication::processEvents();
        plainTime = seconds([&] { type(plain); });
    }
    ZR_AiChatHistoricalChatBox box;
    open(box);
    box.loadSessions(list);
    QApplication::processEvents();
    double own = 0;
    int runs = 0;
    for (auto _ : state) {
        own += seconds([&] { type(box); });
        ++runs;
    }
    state.counters["ms_per_stroke"] = own / runs / kStrokes * 1e3;
    state.counters["plain_ms_per_stroke"] = plainTime / kStrokes * 1e3;
    state.counters["ratio"] = plainTime / (own / runs);
}
BENCHMARK(FilterKeyStroke)->Unit(benchmark::kMillisecond);

}  // namespace
