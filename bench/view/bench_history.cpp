// The side bar with a history of 2,000 sessions.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDateTime>

#include "host/core/ZR_ZentriText.h"
#include "sidebar/ZR_AiChatHistoricalChatBox.h"

namespace {

constexpr int kSessions = 2000;
constexpr qint64 kTwoYears = 2 * 365 * 86400;

void fill(ZR_AiChatSessionList& list) {
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    for (int i = 0; i < kSessions; ++i) {
        ZR_AiChatSingleChatRecord record;
        record.SetSessionId(toCString(QString::number(i)));
        record.AddUnit(chatRoleUser, toCString(QStringLiteral("第 %1 个问题：怎样画圆？").arg(i)),
                       now - i * (kTwoYears / kSessions));
        list.Add(record);
    }
}

void LoadHistory(benchmark::State& state) {
    ZR_AiChatSessionList list;
    fill(list);
    for (auto _ : state) {
        ZR_AiChatHistoricalChatBox box;
        box.resize(250, 600);
        box.show();
        box.loadSessions(list);
        QApplication::processEvents();
    }
}
BENCHMARK(LoadHistory)->Unit(benchmark::kMillisecond);

/// One key stroke in the search box, as far as the widgets are concerned: all entries go, and all come back.
void FilterHistory(benchmark::State& state) {
    ZR_AiChatHistoricalChatBox box;
    box.resize(250, 600);
    box.show();
    ZR_AiChatSessionList list;
    fill(list);
    box.loadSessions(list);
    QApplication::processEvents();
    for (auto _ : state) {
        box.applyFilter(QStringLiteral("nothing like it"));
        box.showAllEntries();
        QApplication::processEvents();
    }
}
BENCHMARK(FilterHistory)->Unit(benchmark::kMillisecond);

}  // namespace
