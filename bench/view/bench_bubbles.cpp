// The cost of a bubble compared with the plain rules: each benchmark runs both and reports how many times
// longer the plain rules take ("ratio"), so the result hardly depends on the machine.

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <functional>

#include "tests/view/support/PlainBubblePainter.h"
#include "tests/view/support/PlainTextMeasure.h"
#include "tests/view/support/RandomText.h"
#include "view/bubble/ChatTextMeasure.h"
#include "view/bubble/QNChatMessage.h"

namespace {

constexpr int kWidth = 600;
constexpr int kTextWidth = 426;
constexpr int kSpace = 174;
constexpr int kAnswerBytes = 20000;
constexpr int kPiece = 12;
constexpr int kPageHeight = 600;

QFont bubbleFont() {
    return QNChatMessage().font();
}

double seconds(const std::function<void()>& work) {
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

/// An answer of 20 kB in UTF-8, in lines of about 80 characters or as a single line.
QString answer(RandomText::Kind kind, bool singleLine) {
    RandomText random(1);
    QString text;
    while (text.toUtf8().size() < kAnswerBytes) {
        text += random.text(kind, 80);
        if (!singleLine) {
            text += QLatin1Char('\n');
        }
    }
    if (singleLine) {
        text.remove(QLatin1Char('\n'));
    }
    return text;
}

/// Measures a text that grows piece by piece. The plain rules are run for every `plainStep`-th piece only;
/// their time is extrapolated.
void stream(benchmark::State& state, RandomText::Kind kind, bool singleLine, int plainStep) {
    const QString text = answer(kind, singleLine);
    const QFont font = bubbleFont();
    const int pieces = text.size() / kPiece;
    double plain = 0;
    for (int i = plainStep; i <= pieces; i += plainStep) {
        const QString soFar = text.left(i * kPiece);
        plain += seconds(
            [&] { benchmark::DoNotOptimize(PlainTextMeasure::measure(soFar, font, kTextWidth, kSpace)); });
    }
    plain *= plainStep;

    double own = 0;
    double firstHalf = 0;
    int runs = 0;
    for (auto _ : state) {
        ChatTextMeasure measure;
        double half = 0;
        const double all = seconds([&] {
            QString soFar;
            QElapsedTimer timer;
            timer.start();
            for (int i = 0; i < pieces; ++i) {
                soFar += text.midRef(i * kPiece, kPiece);
                benchmark::DoNotOptimize(measure.measureText(soFar, font, kTextWidth, kSpace));
                if (i == pieces / 2) {
                    half = static_cast<double>(timer.nsecsElapsed()) / 1e9;
                }
            }
        });
        own += all;
        firstHalf += half;
        ++runs;
    }
    state.counters["pieces"] = pieces;
    state.counters["us_per_piece"] = own / runs / pieces * 1e6;
    state.counters["plain_us_per_piece"] = plain / pieces * 1e6;
    state.counters["ratio"] = plain / (own / runs);
    // 1 if a late piece costs as much as an early one.
    state.counters["late_to_early"] = (own - firstHalf) / firstHalf;
}

void StreamLines(benchmark::State& state) {
    stream(state, RandomText::Cjk, false, 40);
}
BENCHMARK(StreamLines)->Unit(benchmark::kMillisecond);

void StreamLatinLines(benchmark::State& state) {
    stream(state, RandomText::Latin, false, 40);
}
BENCHMARK(StreamLatinLines)->Unit(benchmark::kMillisecond);

void StreamSingleLine(benchmark::State& state) {
    stream(state, RandomText::Cjk, true, 80);
}
BENCHMARK(StreamSingleLine)->Unit(benchmark::kMillisecond);

void StreamSingleLatinLine(benchmark::State& state) {
    stream(state, RandomText::Latin, true, 160);
}
BENCHMARK(StreamSingleLatinLine)->Unit(benchmark::kMillisecond);

/// A stored answer is measured once.
void MeasureWhole(benchmark::State& state) {
    const QString text = answer(RandomText::Mixed, false);
    const QFont font = bubbleFont();
    const double plain = seconds([&] { PlainTextMeasure::measure(text, font, kTextWidth, kSpace); });
    double own = 0;
    int runs = 0;
    for (auto _ : state) {
        ChatTextMeasure measure;
        own +=
            seconds([&] { benchmark::DoNotOptimize(measure.measureText(text, font, kTextWidth, kSpace)); });
        ++runs;
    }
    state.counters["ratio"] = plain / (own / runs);
}
BENCHMARK(MeasureWhole)->Unit(benchmark::kMillisecond);

/// One page of a long bubble is painted, as when scrolling.
void paintPage(benchmark::State& state, bool loading) {
    RandomText random(2);
    QString text;
    while (text.size() < kAnswerBytes / 3) {
        text += random.text(RandomText::Links, 60).remove(QLatin1Char('\n')) + QLatin1Char('\n');
    }
    QNChatMessage bubble;
    bubble.setFixedWidth(kWidth);
    bubble.startAnswerLoading();
    bubble.appendAnswerText(text);
    if (!loading) {
        bubble.stopAnswerLoading();
    }
    const double plain =
        seconds([&] { benchmark::DoNotOptimize(PlainBubblePainter::paint(bubble, Qt::white).width()); });

    const QRect page(0, bubble.height() / 2, kWidth, kPageHeight);
    QImage image(page.size(), QImage::Format_ARGB32_Premultiplied);
    const auto paint = [&] {
        QPainter painter(&image);
        bubble.render(&painter, QPoint(), QRegion(page), QWidget::RenderFlags());
    };
    const double first = seconds(paint);
    double own = 0;
    int runs = 0;
    for (auto _ : state) {
        own += seconds(paint);
        ++runs;
    }
    state.counters["first_ms"] = first * 1e3;
    state.counters["plain_ms"] = plain * 1e3;
    state.counters["ratio"] = plain / (own / runs);
}

void PaintPage(benchmark::State& state) {
    paintPage(state, false);
}
BENCHMARK(PaintPage)->Unit(benchmark::kMillisecond);

void PaintPageWhileLoading(benchmark::State& state) {
    paintPage(state, true);
}
BENCHMARK(PaintPageWhileLoading)->Unit(benchmark::kMillisecond);

}  // namespace
