#include "tests/sim/sdk/win32/TestWindow.h"

#include <gtest/gtest.h>

#include <glib.h>

#include <atomic>
#include <thread>

namespace {

constexpr UINT kFirst = WM_APP + 1;
constexpr UINT kSecond = WM_APP + 2;

MSG peeked(HWND window, UINT first, UINT last, UINT remove) {
    MSG message{};
    return PeekMessageW(&message, window, first, last, remove) != FALSE ? message : MSG{};
}

}  // namespace

TEST(Messages, PostedMessagesComeInOrder) {
    PostThreadMessageW(GetCurrentThreadId(), kFirst, 1, 2);
    PostThreadMessageW(GetCurrentThreadId(), kSecond, 3, 4);
    MSG message;
    ASSERT_TRUE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(message.message, kFirst);
    EXPECT_EQ(message.wParam, 1U);
    EXPECT_EQ(message.lParam, 2);
    ASSERT_TRUE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(message.message, kSecond);
}

TEST(Messages, QuitComesAfterPostedMessagesAndTimers) {
    const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, nullptr);
    Sleep(2 * USER_TIMER_MINIMUM);
    PostQuitMessage(7);
    PostThreadMessageW(GetCurrentThreadId(), kFirst, 0, 0);
    MSG message;
    ASSERT_TRUE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(message.message, kFirst);
    ASSERT_TRUE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(message.message, WM_TIMER);
    EXPECT_EQ(message.wParam, timer);
    KillTimer(nullptr, timer);
    EXPECT_FALSE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(message.message, WM_QUIT);
    EXPECT_EQ(message.wParam, 7U);
}

TEST(Messages, QuitPassesEveryFilterButOnlyOnce) {
    PostQuitMessage(0);
    EXPECT_EQ(peeked(nullptr, kFirst, kFirst, PM_REMOVE).message, WM_QUIT);
    EXPECT_EQ(peeked(nullptr, 0, 0, PM_REMOVE).message, static_cast<UINT>(WM_NULL));
}

TEST(Messages, FilterTakesOnlyItsRangeAndLeavesTheRest) {
    PostThreadMessageW(GetCurrentThreadId(), kFirst, 0, 0);
    PostThreadMessageW(GetCurrentThreadId(), kSecond, 0, 0);
    EXPECT_EQ(peeked(nullptr, kSecond, kSecond, PM_REMOVE).message, kSecond);
    EXPECT_EQ(peeked(nullptr, kSecond, kSecond, PM_REMOVE).message, static_cast<UINT>(WM_NULL));
    EXPECT_EQ(peeked(nullptr, 0, 0, PM_REMOVE).message, kFirst);
}

TEST(Messages, PeekWithoutRemovalLeavesTheMessage) {
    PostThreadMessageW(GetCurrentThreadId(), kFirst, 0, 0);
    EXPECT_EQ(peeked(nullptr, 0, 0, PM_NOREMOVE).message, kFirst);
    EXPECT_EQ(peeked(nullptr, 0, 0, PM_REMOVE).message, kFirst);
    EXPECT_EQ(peeked(nullptr, 0, 0, PM_REMOVE).message, static_cast<UINT>(WM_NULL));
}

TEST(Messages, ThreadWithoutQueueCannotBePostedTo) {
    SetLastError(0);
    EXPECT_FALSE(PostThreadMessageW(0x7FFFFFF0, kFirst, 0, 0));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_THREAD_ID);
}

TEST(Messages, WorkerThreadHasAQueueOfItsOwn) {
    std::atomic<DWORD> workerId{0};
    std::atomic<UINT> got{0};
    std::thread worker([&] {
        MSG message;
        // Asking once makes the queue.
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
        workerId = GetCurrentThreadId();
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

TEST(Messages, WorkerThreadTimerFires) {
    std::thread worker([] {
        const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, nullptr);
        MSG message;
        ASSERT_TRUE(GetMessageW(&message, nullptr, 0, 0));
        EXPECT_EQ(message.message, WM_TIMER);
        EXPECT_EQ(message.wParam, timer);
    });
    worker.join();
}

TEST(Messages, MessagePostedFromAnotherThreadWakesTheLoop) {
    const DWORD mainThread = GetCurrentThreadId();
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
    std::thread worker([mainThread] { PostThreadMessageW(mainThread, kFirst, 0, 0); });
    ASSERT_TRUE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(message.message, kFirst);
    worker.join();
}

TEST(Messages, RegisteredMessagesAreTheSameForTheSameName) {
    const UINT message = RegisterWindowMessageW(u"zr.test.one");
    EXPECT_GE(message, 0xC000U);
    EXPECT_EQ(RegisterWindowMessageW(u"ZR.TEST.ONE"), message);
    EXPECT_NE(RegisterWindowMessageW(u"zr.test.two"), message);
}

TEST(Timers, FireAgainAndAgainUntilKilled) {
    int fired = 0;
    const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, nullptr);
    MSG message;
    while (fired < 3 && GetMessageW(&message, nullptr, 0, 0) != FALSE) {
        fired += message.message == WM_TIMER && message.wParam == timer ? 1 : 0;
    }
    EXPECT_EQ(fired, 3);
    EXPECT_TRUE(KillTimer(nullptr, timer));
    EXPECT_FALSE(KillTimer(nullptr, timer));
    Sleep(2 * USER_TIMER_MINIMUM);
    EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_TIMER, WM_TIMER, PM_REMOVE));
}

TEST(Timers, MissedPeriodsAreOneMessage) {
    const UINT_PTR timer = SetTimer(nullptr, 0, 1000, nullptr);
    // The queue is looked at only after several periods have gone by.
    Sleep(2500);
    MSG message;
    EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_TIMER, WM_TIMER, PM_REMOVE));
    EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_TIMER, WM_TIMER, PM_REMOVE));
    KillTimer(nullptr, timer);
}

TEST(Timers, ProcedureIsCalledByDispatch) {
    static int calls = 0;
    calls = 0;
    const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, [](HWND, UINT message, UINT_PTR, DWORD) {
        EXPECT_EQ(message, WM_TIMER);
        ++calls;
    });
    EXPECT_TRUE(pumpUntil([] { return calls >= 2; }));
    KillTimer(nullptr, timer);
}

TEST(Loop, OtherSourcesOfTheMainContextRunWhileGetMessageWaits) {
    // Stands for Qt's timers and posted events.
    static bool ran = false;
    ran = false;
    g_timeout_add(
        5,
        [](gpointer) -> gboolean {
            ran = true;
            PostThreadMessageW(GetCurrentThreadId(), kFirst, 0, 0);
            return G_SOURCE_REMOVE;
        },
        nullptr);
    MSG message;
    ASSERT_TRUE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_TRUE(ran);
    EXPECT_EQ(message.message, kFirst);
}

TEST(Loop, AStreamOfMessagesDoesNotStarveOtherSources) {
    static bool ran = false;
    ran = false;
    g_idle_add(
        [](gpointer) -> gboolean {
            ran = true;
            return G_SOURCE_REMOVE;
        },
        nullptr);
    const ULONGLONG end = GetTickCount64() + 10000;
    MSG message;
    while (!ran && GetTickCount64() < end) {
        PostThreadMessageW(GetCurrentThreadId(), kFirst, 0, 0);
        GetMessageW(&message, nullptr, 0, 0);
    }
    EXPECT_TRUE(ran);
}

TEST(Loop, ADueTimerDoesNotStarveOtherSources) {
    static bool ran = false;
    ran = false;
    g_idle_add(
        [](gpointer) -> gboolean {
            ran = true;
            return G_SOURCE_REMOVE;
        },
        nullptr);
    // Due, but never retrieved: there is always a posted message first.
    const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, nullptr);
    const ULONGLONG end = GetTickCount64() + 10000;
    MSG message;
    while (!ran && GetTickCount64() < end) {
        PostThreadMessageW(GetCurrentThreadId(), kFirst, 0, 0);
        GetMessageW(&message, nullptr, 0, 0);
    }
    EXPECT_TRUE(ran);
    KillTimer(nullptr, timer);
}

TEST(Loop, APollingLoopRunsOtherSourcesToo) {
    static bool ran = false;
    ran = false;
    g_idle_add(
        [](gpointer) -> gboolean {
            ran = true;
            return G_SOURCE_REMOVE;
        },
        nullptr);
    const ULONGLONG end = GetTickCount64() + 10000;
    MSG message;
    while (!ran && GetTickCount64() < end) {
        PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);
    }
    EXPECT_TRUE(ran);
}

TEST(Loop, LookingAtTheQueueRunsNoOtherSource) {
    static bool ran = false;
    ran = false;
    const guint source = g_idle_add(
        [](gpointer) -> gboolean {
            ran = true;
            return G_SOURCE_CONTINUE;
        },
        nullptr);
    MSG message;
    for (int i = 0; i < 100; ++i) {
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
    }
    EXPECT_FALSE(ran);
    g_source_remove(source);
}

TEST(Loop, AForeignLoopDispatchesMessages) {
    static int timerCalls = 0;
    timerCalls = 0;
    const UINT_PTR timer =
        SetTimer(nullptr, 0, USER_TIMER_MINIMUM, [](HWND, UINT, UINT_PTR, DWORD) { ++timerCalls; });
    MSG message;
    // The slice attaches itself on its first wait.
    ASSERT_TRUE(GetMessageW(&message, nullptr, WM_TIMER, WM_TIMER));
    const ULONGLONG end = GetTickCount64() + 10000;
    while (timerCalls < 3 && GetTickCount64() < end) {
        g_main_context_iteration(nullptr, TRUE);
    }
    EXPECT_GE(timerCalls, 3);
    KillTimer(nullptr, timer);
}

TEST(Loop, AForeignLoopInsideAWaitDispatchesMessages) {
    // As when Qt runs a dialog from one of its timers, which itself ran from GetMessage.
    static int timerCalls = 0;
    static bool nestedEnded = false;
    timerCalls = 0;
    nestedEnded = false;
    g_timeout_add(
        1,
        [](gpointer) -> gboolean {
            const UINT_PTR timer =
                SetTimer(nullptr, 0, USER_TIMER_MINIMUM, [](HWND, UINT, UINT_PTR, DWORD) { ++timerCalls; });
            while (timerCalls < 3) {
                g_main_context_iteration(nullptr, TRUE);
            }
            KillTimer(nullptr, timer);
            nestedEnded = true;
            PostThreadMessageW(GetCurrentThreadId(), kFirst, 0, 0);
            return G_SOURCE_REMOVE;
        },
        nullptr);
    MSG message;
    ASSERT_TRUE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(message.message, kFirst);
    EXPECT_TRUE(nestedEnded);
    EXPECT_EQ(timerCalls, 3);
}

TEST(Loop, QuitPostedInAForeignLoopReachesTheProgramsLoop) {
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);
    PostQuitMessage(3);
    for (int i = 0; i < 20; ++i) {
        g_main_context_iteration(nullptr, FALSE);
    }
    EXPECT_FALSE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(message.wParam, 3U);
}
