#include <benchmark/benchmark.h>

#include <chrono>

#include "chat/ZR_AiChatEventSplitter.h"
#include "tests/chat/PlainEventSplitter.h"

namespace {

constexpr int kNetworkChunk = 512;

/// One event of about a million bytes.
QByteArray largeEvent() {
    return "data:" + QByteArray("画圆 CIRCLE\n").repeated(60000) + "\n\n";
}

/// About as many bytes, in events of a few characters each.
QByteArray manySmallEvents() {
    return QByteArray("data:画圆\n\n").repeated(75000);
}

int splitPlainly(const QByteArray& stream, int chunkSize) {
    PlainEventSplitter splitter;
    int characters = 0;
    for (int at = 0; at < stream.size(); at += chunkSize) {
        for (const QString& text : splitter.takeChunk(stream.mid(at, chunkSize))) {
            characters += text.size();
        }
    }
    return characters;
}

int split(const QByteArray& stream, int chunkSize) {
    ZR_AiChatEventSplitter splitter;
    QString text;
    int characters = 0;
    for (int at = 0; at < stream.size(); at += chunkSize) {
        splitter.append(stream.mid(at, chunkSize));
        while (splitter.takeEvent(text)) {
            characters += text.size();
        }
    }
    return characters;
}

/// Times the module's splitter and, once, the plain rule. "times_faster" compares the two in one run, so that
/// it does not depend on the machine.
void compare(benchmark::State& state, const QByteArray& stream, int chunkSize) {
    using Clock = std::chrono::steady_clock;
    const auto plainStart = Clock::now();
    const int expected = splitPlainly(stream, chunkSize);
    const std::chrono::duration<double> plain = Clock::now() - plainStart;

    std::chrono::duration<double> own{0};
    for ([[maybe_unused]] auto _ : state) {
        const auto start = Clock::now();
        const int characters = split(stream, chunkSize);
        own += Clock::now() - start;
        if (characters != expected) {
            state.SkipWithError("the results differ");
            return;
        }
    }
    state.SetBytesProcessed(state.iterations() * stream.size());
    state.counters["times_faster"] = plain.count() / (own.count() / static_cast<double>(state.iterations()));
}

void largeEventInNetworkChunks(benchmark::State& state) {
    compare(state, largeEvent(), kNetworkChunk);
}
BENCHMARK(largeEventInNetworkChunks)->Unit(benchmark::kMillisecond);

void smallEventsInNetworkChunks(benchmark::State& state) {
    compare(state, manySmallEvents(), kNetworkChunk);
}
BENCHMARK(smallEventsInNetworkChunks)->Unit(benchmark::kMillisecond);

/// All events arrive at once: removing one from the front must not move the rest every time.
void smallEventsInOneChunk(benchmark::State& state) {
    const QByteArray stream = manySmallEvents();
    compare(state, stream, stream.size());
}
BENCHMARK(smallEventsInOneChunk)->Unit(benchmark::kMillisecond);

}  // namespace
