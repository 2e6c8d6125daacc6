#include "tests/sim/sdk/win32/TestWindow.h"

#include <gtest/gtest.h>

#include <glib.h>
#include <time.h>

#include <atomic>
#include <functional>
#include <thread>
#include <utility>

namespace {

constexpr UINT kFirst = WM_APP + 1;
constexpr UINT kSecond = WM_APP + 2;
/// After this delay the message loop is waiting.
constexpr guint kWaitedMilliseconds = 5;
constexpr ULONGLONG kPatienceMilliseconds = 10000;

/// Tests of the calling thread's message queue.
class Messages : public testing::Test {
protected:
    static void post(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        EXPECT_TRUE(PostThreadMessageW(GetCurrentThreadId(), message, wParam, lParam));
    }

    /// Waits for a message with GetMessage, which returns FALSE only for WM_QUIT.
    static MSG waited(UINT first = 0, UINT last = 0) {
        MSG message{};
        const bool goesOn = GetMessageW(&message, nullptr, first, last) != FALSE;
        EXPECT_EQ(goesOn, message.message != WM_QUIT);
        return message;
    }

    /// Peeks for a message; WM_NULL if there is none.
    static MSG peeked(UINT first, UINT last, UINT remove) {
        MSG message{};
        return PeekMessageW(&message, nullptr, first, last, remove) != FALSE ? message : MSG{};
    }

    /// Repeats the step until the condition holds; false on timeout.
    static bool repeatUntil(const std::function<bool()>& condition, const std::function<void()>& step) {
        const ULONGLONG end = GetTickCount64() + kPatienceMilliseconds;
        while (!condition() && GetTickCount64() < end) {
            step();
        }
        return condition();
    }
};

/// The CPU time that the calling thread has used.
ULONGLONG cpuMilliseconds() {
    timespec used{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return static_cast<ULONGLONG>(used.tv_sec) * 1000 + static_cast<ULONGLONG>(used.tv_nsec) / 1'000'000;
}
/// A wait of this length that polls instead of blocking uses more CPU time than kIdleMilliseconds, also on a
/// busy machine.
constexpr UINT kWaitMilliseconds = 400;
constexpr ULONGLONG kIdleMilliseconds = 40;

/// A thread timer with the shortest period, whose procedure counts its calls.
class Timers : public Messages {
protected:
    Timers() { s_calls = 0; }
    ~Timers() override {
        if (m_timer != 0) {
            KillTimer(nullptr, m_timer);
        }
    }

    UINT_PTR start(UINT milliseconds = USER_TIMER_MINIMUM, TIMERPROC procedure = nullptr) {
        m_timer = SetTimer(nullptr, 0, milliseconds, procedure);
        return m_timer;
    }
    UINT_PTR startCounting() {
        return start(USER_TIMER_MINIMUM, [](HWND, UINT message, UINT_PTR, DWORD) {
            EXPECT_EQ(message, static_cast<UINT>(WM_TIMER));
            ++s_calls;
        });
    }
    void stop() { EXPECT_TRUE(KillTimer(nullptr, std::exchange(m_timer, 0))); }

    static int calls() { return s_calls; }

private:
    static inline int s_calls = 0;
    UINT_PTR m_timer = 0;
};

/// Tests of the main context's other sources, which represent Qt's timers and posted events.
class Loop : public Timers {};

/// Such a source: a GLib timeout that runs repeatedly until its work returns false.
class OtherSource {
public:
    /// The work returns whether the source continues.
    explicit OtherSource(
        std::function<bool()> work = [] { return false; }, guint delayMilliseconds = 0)
        : m_work(std::move(work)), m_id(g_timeout_add(delayMilliseconds, &OtherSource::run, this)) {}
    ~OtherSource() {
        if (m_id != 0) {
            g_source_remove(m_id);
        }
    }
    OtherSource(const OtherSource&) = delete;
    OtherSource& operator=(const OtherSource&) = delete;

    bool ran() const { return m_ran; }

private:
    static gboolean run(gpointer data) {
        auto* const source = static_cast<OtherSource*>(data);
        source->m_ran = true;
        if (source->m_work()) {
            return G_SOURCE_CONTINUE;
        }
        source->m_id = 0;
        return G_SOURCE_REMOVE;
    }

    std::function<bool()> m_work;
    guint m_id;
    bool m_ran = false;
};

}  // namespace

TEST_F(Messages, PostedMessagesAreRetrievedInOrder) {
    post(kFirst, 1, 2);
    post(kSecond, 3, 4);
    const MSG first = waited();
    EXPECT_EQ(first.message, kFirst);
    EXPECT_EQ(first.wParam, 1U);
    EXPECT_EQ(first.lParam, 2);
    EXPECT_EQ(waited().message, kSecond);
}

TEST_F(Messages, QuitIgnoresTheFilterAndIsRetrievedOnce) {
    PostQuitMessage(0);
    EXPECT_EQ(peeked(kFirst, kFirst, PM_REMOVE).message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(peeked(0, 0, PM_REMOVE).message, static_cast<UINT>(WM_NULL));
}

TEST_F(Messages, FilterRetrievesOnlyItsRange) {
    post(kFirst);
    post(kSecond);
    EXPECT_EQ(peeked(kSecond, kSecond, PM_REMOVE).message, kSecond);
    EXPECT_EQ(peeked(kSecond, kSecond, PM_REMOVE).message, static_cast<UINT>(WM_NULL));
    EXPECT_EQ(peeked(0, 0, PM_REMOVE).message, kFirst);
}

TEST_F(Messages, PeekWithoutRemovalLeavesTheMessage) {
    post(kFirst);
    EXPECT_EQ(peeked(0, 0, PM_NOREMOVE).message, kFirst);
    EXPECT_EQ(peeked(0, 0, PM_REMOVE).message, kFirst);
    EXPECT_EQ(peeked(0, 0, PM_REMOVE).message, static_cast<UINT>(WM_NULL));
}

TEST_F(Messages, PostingToAThreadWithoutAQueueFails) {
    SetLastError(0);
    EXPECT_FALSE(PostThreadMessageW(0x7FFFFFF0, kFirst, 0, 0));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_THREAD_ID);
}

TEST_F(Messages, WorkerThreadHasItsOwnQueue) {
    std::atomic<DWORD> workerId{0};
    std::atomic<UINT> got{0};
    std::thread worker([&] {
        // The first call creates the thread's queue.
        peeked(0, 0, PM_NOREMOVE);
        workerId = GetCurrentThreadId();
        MSG message;
        while (GetMessageW(&message, nullptr, 0, 0) != FALSE) {
            got = message.message;
        }
    });
    while (workerId == 0) {
        std::this_thread::yield();
    }
    EXPECT_TRUE(PostThreadMessageW(workerId, kFirst, 0, 0));
    EXPECT_TRUE(PostThreadMessageW(workerId, WM_QUIT, 0, 0));
    worker.join();
    EXPECT_EQ(got, kFirst);
}

TEST_F(Messages, MessagePostedFromAnotherThreadWakesTheLoop) {
    const DWORD mainThread = GetCurrentThreadId();
    peeked(0, 0, PM_NOREMOVE);
    std::thread worker([mainThread] { PostThreadMessageW(mainThread, kFirst, 0, 0); });
    EXPECT_EQ(waited().message, kFirst);
    worker.join();
}

TEST_F(Messages, RegisteredMessageDependsOnlyOnItsName) {
    const UINT message = RegisterWindowMessageW(u"zr.test.one");
    EXPECT_GE(message, 0xC000U);
    EXPECT_EQ(RegisterWindowMessageW(u"ZR.TEST.ONE"), message);
    EXPECT_NE(RegisterWindowMessageW(u"zr.test.two"), message);
}

TEST_F(Timers, ComeAfterPostedMessagesAndBeforeQuit) {
    const UINT_PTR timer = start();
    Sleep(2 * USER_TIMER_MINIMUM);
    PostQuitMessage(7);
    post(kFirst);
    EXPECT_EQ(waited().message, kFirst);
    const MSG due = waited();
    EXPECT_EQ(due.message, static_cast<UINT>(WM_TIMER));
    EXPECT_EQ(due.wParam, timer);
    stop();
    const MSG quit = waited();
    EXPECT_EQ(quit.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(quit.wParam, 7U);
}

TEST_F(Timers, FireOnAWorkerThread) {
    std::thread worker([this] {
        const UINT_PTR timer = start();
        const MSG due = waited();
        EXPECT_EQ(due.message, static_cast<UINT>(WM_TIMER));
        EXPECT_EQ(due.wParam, timer);
        stop();
    });
    worker.join();
}

TEST_F(Timers, AMessageOutsideTheFilterDoesNotKeepAWorkerBusy) {
    std::thread worker([this] {
        start(kWaitMilliseconds);
        post(kFirst);
        const ULONGLONG before = cpuMilliseconds();
        EXPECT_EQ(waited(WM_TIMER, WM_TIMER).message, static_cast<UINT>(WM_TIMER));
        EXPECT_LT(cpuMilliseconds() - before, kIdleMilliseconds);
        EXPECT_EQ(waited().message, kFirst);
        stop();
    });
    worker.join();
}

TEST_F(Timers, ADueTimerOutsideTheFilterDoesNotKeepAWorkerBusy) {
    std::atomic<DWORD> workerId{0};
    std::thread worker([&] {
        start();
        workerId = GetCurrentThreadId();
        const ULONGLONG before = cpuMilliseconds();
        EXPECT_EQ(waited(kFirst, kFirst).message, kFirst);
        EXPECT_LT(cpuMilliseconds() - before, kIdleMilliseconds);
        stop();
    });
    while (workerId == 0) {
        std::this_thread::yield();
    }
    Sleep(kWaitMilliseconds);
    EXPECT_TRUE(PostThreadMessageW(workerId, kFirst, 0, 0));
    worker.join();
}

TEST_F(Timers, FireRepeatedlyUntilKilled) {
    const UINT_PTR timer = start();
    for (int i = 0; i < 3; ++i) {
        const MSG due = waited();
        EXPECT_EQ(due.message, static_cast<UINT>(WM_TIMER));
        EXPECT_EQ(due.wParam, timer);
    }
    stop();
    EXPECT_FALSE(KillTimer(nullptr, timer));
    Sleep(2 * USER_TIMER_MINIMUM);
    EXPECT_EQ(peeked(WM_TIMER, WM_TIMER, PM_REMOVE).message, static_cast<UINT>(WM_NULL));
}

TEST_F(Timers, MissedPeriodsAreCoalesced) {
    start(1000);
    // Check the queue only after several periods have passed.
    Sleep(2500);
    EXPECT_EQ(peeked(WM_TIMER, WM_TIMER, PM_REMOVE).message, static_cast<UINT>(WM_TIMER));
    EXPECT_EQ(peeked(WM_TIMER, WM_TIMER, PM_REMOVE).message, static_cast<UINT>(WM_NULL));
}

TEST_F(Timers, DispatchMessageCallsTheTimerProcedure) {
    startCounting();
    EXPECT_TRUE(pumpUntil([] { return calls() >= 2; }));
}

TEST_F(Loop, OtherSourcesOfTheMainContextRunWhileGetMessageWaits) {
    const OtherSource source(
        [] {
            post(kFirst);
            return false;
        },
        kWaitedMilliseconds);
    EXPECT_EQ(waited().message, kFirst);
    EXPECT_TRUE(source.ran());
}

TEST_F(Loop, AStreamOfMessagesDoesNotStarveOtherSources) {
    const OtherSource source;
    EXPECT_TRUE(repeatUntil([&] { return source.ran(); },
                            [] {
                                post(kFirst);
                                waited();
                            }));
}

TEST_F(Loop, ADueTimerDoesNotStarveOtherSources) {
    const OtherSource source;
    // Due, but never retrieved: posted messages come first.
    start();
    EXPECT_TRUE(repeatUntil([&] { return source.ran(); },
                            [] {
                                post(kFirst);
                                waited();
                            }));
}

TEST_F(Loop, ADueTimerOutsideTheFilterDoesNotKeepTheLoopBusy) {
    const OtherSource source(
        [] {
            post(kFirst);
            return false;
        },
        kWaitMilliseconds);
    start();
    const ULONGLONG before = cpuMilliseconds();
    EXPECT_EQ(waited(kFirst, kFirst).message, kFirst);
    EXPECT_LT(cpuMilliseconds() - before, kIdleMilliseconds);
}

TEST_F(Loop, APollingLoopRunsOtherSourcesToo) {
    const OtherSource source;
    EXPECT_TRUE(repeatUntil([&] { return source.ran(); }, [] { peeked(0, 0, PM_REMOVE); }));
}

TEST_F(Loop, PeekWithoutRemovalRunsNoOtherSource) {
    const OtherSource source([] { return true; });
    for (int i = 0; i < 100; ++i) {
        peeked(0, 0, PM_NOREMOVE);
    }
    EXPECT_FALSE(source.ran());
}

TEST_F(Loop, AForeignLoopDispatchesMessages) {
    startCounting();
    // The slice attaches its source to the main context on the first wait.
    EXPECT_EQ(waited(WM_TIMER, WM_TIMER).message, static_cast<UINT>(WM_TIMER));
    EXPECT_TRUE(repeatUntil([] { return calls() >= 3; }, [] { g_main_context_iteration(nullptr, TRUE); }));
}

TEST_F(Loop, AForeignLoopInsideAWaitDispatchesMessages) {
    // As when Qt runs a dialog from a timer that GetMessage dispatched.
    const OtherSource source(
        [this] {
            startCounting();
            EXPECT_TRUE(
                repeatUntil([] { return calls() >= 3; }, [] { g_main_context_iteration(nullptr, TRUE); }));
            stop();
            post(kFirst);
            return false;
        },
        kWaitedMilliseconds);
    EXPECT_EQ(waited().message, kFirst);
    EXPECT_EQ(calls(), 3);
}

// As with Qt's dispatcher on Windows, which retrieves WM_QUIT like any other message.
TEST_F(Loop, QuitPostedInAForeignLoopIsLostToTheProgramsLoop) {
    peeked(0, 0, PM_REMOVE);
    PostQuitMessage(3);
    for (int i = 0; i < 20; ++i) {
        g_main_context_iteration(nullptr, FALSE);
    }
    MSG message;
    EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_NOREMOVE));
}
