#include "tests/sim/sdk/win32/TestWindow.h"

#include <gtest/gtest.h>

namespace {

constexpr UINT kMessage = WM_APP + 1;

struct Call {
    int hook;
    WPARAM wParam;
    UINT message;
    bool operator==(const Call& other) const {
        return hook == other.hook && wParam == other.wParam && message == other.message;
    }
};
std::vector<Call> g_calls;
HHOOK g_selfRemoving = nullptr;

template <int Number>
LRESULT CALLBACK record(int code, WPARAM wParam, LPARAM lParam) {
    EXPECT_EQ(code, HC_ACTION);
    g_calls.push_back({Number, wParam, reinterpret_cast<const MSG*>(lParam)->message});
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

LRESULT CALLBACK swallow(int, WPARAM wParam, LPARAM lParam) {
    g_calls.push_back({9, wParam, reinterpret_cast<const MSG*>(lParam)->message});
    return 0;
}

LRESULT CALLBACK removeItself(int code, WPARAM wParam, LPARAM lParam) {
    UnhookWindowsHookEx(g_selfRemoving);
    g_calls.push_back({8, wParam, reinterpret_cast<const MSG*>(lParam)->message});
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

LRESULT CALLBACK change(int code, WPARAM wParam, LPARAM lParam) {
    auto* message = reinterpret_cast<MSG*>(lParam);
    if (message->message == kMessage) {
        message->message = WM_NULL;
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

HHOOK install(HOOKPROC procedure) {
    return SetWindowsHookExW(WH_GETMESSAGE, procedure, nullptr, GetCurrentThreadId());
}

class Hooks : public testing::Test {
protected:
    void SetUp() override {
        g_calls.clear();
        PostThreadMessageW(GetCurrentThreadId(), kMessage, 0, 0);
    }

    void TearDown() override {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        }
    }
};

}  // namespace

TEST_F(Hooks, LastInstalledHookIsCalledFirst) {
    const HHOOK first = install(record<1>);
    const HHOOK second = install(record<2>);
    MSG message;
    ASSERT_TRUE(GetMessageW(&message, nullptr, 0, 0));
    const std::vector<Call> expected = {{2, PM_REMOVE, kMessage}, {1, PM_REMOVE, kMessage}};
    EXPECT_EQ(g_calls, expected);
    EXPECT_TRUE(UnhookWindowsHookEx(first));
    EXPECT_TRUE(UnhookWindowsHookEx(second));
}

TEST_F(Hooks, PeekPassesItsRemoveFlagToTheHook) {
    const HHOOK hook = install(record<1>);
    MSG message;
    ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE));
    ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    const std::vector<Call> expected = {{1, PM_NOREMOVE, kMessage}, {1, PM_REMOVE, kMessage}};
    EXPECT_EQ(g_calls, expected);
    EXPECT_FALSE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(g_calls.size(), 2U);
    UnhookWindowsHookEx(hook);
}

TEST_F(Hooks, HookWithoutCallNextHookExHidesOlderHooks) {
    const HHOOK first = install(record<1>);
    const HHOOK second = install(swallow);
    MSG message;
    // GetMessage still returns the message.
    ASSERT_TRUE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(message.message, kMessage);
    const std::vector<Call> expected = {{9, PM_REMOVE, kMessage}};
    EXPECT_EQ(g_calls, expected);
    UnhookWindowsHookEx(second);
    UnhookWindowsHookEx(first);
}

TEST_F(Hooks, HookMayChangeTheMessage) {
    const HHOOK hook = install(change);
    MSG message;
    ASSERT_TRUE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_NULL));
    UnhookWindowsHookEx(hook);
}

TEST_F(Hooks, HookThatRemovesItselfCanStillCallTheNext) {
    const HHOOK first = install(record<1>);
    g_selfRemoving = install(removeItself);
    MSG message;
    ASSERT_TRUE(GetMessageW(&message, nullptr, 0, 0));
    PostThreadMessageW(GetCurrentThreadId(), kMessage, 0, 0);
    ASSERT_TRUE(GetMessageW(&message, nullptr, 0, 0));
    const std::vector<Call> expected = {
        {8, PM_REMOVE, kMessage}, {1, PM_REMOVE, kMessage}, {1, PM_REMOVE, kMessage}};
    EXPECT_EQ(g_calls, expected);
    UnhookWindowsHookEx(first);
}

TEST_F(Hooks, RemovedHookIsNotCalled) {
    const HHOOK hook = install(record<1>);
    EXPECT_TRUE(UnhookWindowsHookEx(hook));
    SetLastError(0);
    EXPECT_FALSE(UnhookWindowsHookEx(hook));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HOOK_HANDLE);
    MSG message;
    ASSERT_TRUE(GetMessageW(&message, nullptr, 0, 0));
    EXPECT_TRUE(g_calls.empty());
}

TEST_F(Hooks, GlobalHookNeedsAModule) {
    SetLastError(0);
    EXPECT_EQ(SetWindowsHookExW(WH_GETMESSAGE, record<1>, nullptr, 0), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_HOOK_NEEDS_HMOD);
}

TEST_F(Hooks, HooksSeeWmQuit) {
    MSG message;
    ASSERT_TRUE(GetMessageW(&message, nullptr, 0, 0));
    const HHOOK hook = install(record<1>);
    PostQuitMessage(0);
    EXPECT_FALSE(GetMessageW(&message, nullptr, 0, 0));
    const std::vector<Call> expected = {{1, PM_REMOVE, WM_QUIT}};
    EXPECT_EQ(g_calls, expected);
    UnhookWindowsHookEx(hook);
}
