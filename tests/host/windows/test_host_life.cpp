#include <QElapsedTimer>
#include <QRegularExpression>

#include "tests/chat/ServiceReplies.h"
#include "tests/host/windows/ChildHost.h"

// The module's life in a host process, observed from outside.

namespace {

const QString kHost = QStringLiteral(LIFE_HOST);
const QByteArray kLongAnswer = "data:first\ndata:second\ndata:third\ndata:fourth\ndata:fifth\n\n";
constexpr int kStopMilliseconds = 5000;
/// What the heap may retain after fifty rounds although everything has been freed; it is stable after about
/// that many. A leak of the font alone would be as much in every round.
constexpr qint64 kHeapSlack = 4 * 1024 * 1024;

struct Ending {
    const char* name;
    const char* module;
    const char* answer;
    const char* way;
};

void PrintTo(const Ending& ending, std::ostream* out) {
    *out << ending.name;
}

class HostEnding : public ChildHost, public testing::WithParamInterface<Ending> {};

/// The figures that the host has printed after some rounds.
struct Figures {
    explicit Figures(const QString& line) {
        static const QRegularExpression form(QStringLiteral(
            "^handles (\\d+) threads (\\d+) windows (\\d+) user (\\d+) gdi (\\d+) bytes (\\d+)$"));
        const QRegularExpressionMatch match = form.match(line);
        valid = match.hasMatch();
        handles = match.captured(1).toInt();
        threads = match.captured(2).toInt();
        windows = match.captured(3).toInt();
        user = match.captured(4).toInt();
        gdi = match.captured(5).toInt();
        bytes = match.captured(6).toLongLong();
    }

    bool valid;
    int handles;
    int threads;
    int windows;
    int user;
    int gdi;
    qint64 bytes;
};

class HostRounds : public ChildHost {};

}  // namespace

TEST_P(HostEnding, IsQuickAndWithoutErrors) {
    const Ending& ending = GetParam();
    const bool streaming = qstrcmp(ending.answer, "streaming") == 0;
    start(kHost, {QStringLiteral("exit"), QString::fromLatin1(ending.module),
                  QString::fromLatin1(ending.answer), QString::fromLatin1(ending.way)});
    if (streaming) {
        const int question = waitForQuestion();
        ASSERT_GE(question, 0);
        service.sendHead(question);
        service.sendBytes(question, kLongAnswer);
    }
    EXPECT_EQ(readLine(), QStringLiteral("ending")) << child.readAllStandardError().constData();
    QElapsedTimer clock;
    clock.start();
    EXPECT_TRUE(endsWell());
    EXPECT_LT(clock.elapsed(), kStopMilliseconds);
}

INSTANTIATE_TEST_SUITE_P(
    HostLife, HostEnding,
    testing::Values(Ending{"ModuleUnloadedFirst", "unload", "idle", "return"},
                    Ending{"ModuleStillLoaded", "keep", "idle", "return"},
                    Ending{"ModuleUnloadedFirstWhileAnAnswerStreams", "unload", "streaming", "return"},
                    Ending{"ModuleStillLoadedWhileAnAnswerStreams", "keep", "streaming", "return"},
                    Ending{"ModuleUnloadedFirstEndedAtOnce", "unload", "idle", "process"},
                    Ending{"ModuleStillLoadedEndedAtOnce", "keep", "idle", "process"},
                    Ending{"ModuleStillLoadedEndedAtOnceWhileAnAnswerStreams", "keep", "streaming",
                           "process"}),
    [](const testing::TestParamInfo<Ending>& ending) { return std::string(ending.param.name); });

TEST_F(HostRounds, LoadingAskingAndUnloadingFiftyTimesLeaksNothing) {
    service.answer(kChatTarget, kLongAnswer, 200, "text/event-stream");
    // The first rounds fill caches.
    start(kHost, {QStringLiteral("rounds"), QStringLiteral("10"), QStringLiteral("50")});
    const Figures warm(readLine());
    ASSERT_TRUE(warm.valid) << child.readAllStandardError().constData();
    const Figures after(readLine());
    ASSERT_TRUE(after.valid) << child.readAllStandardError().constData();
    EXPECT_TRUE(endsWell());

    EXPECT_EQ(after.windows, warm.windows);
    EXPECT_LE(after.threads, warm.threads);
    EXPECT_LE(after.user, warm.user);
    EXPECT_LE(after.gdi, warm.gdi);
    EXPECT_LE(after.handles, warm.handles);
    EXPECT_LE(after.bytes, warm.bytes + kHeapSlack);
}
