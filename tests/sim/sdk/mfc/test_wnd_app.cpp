#include "mfc_app.h"

namespace {

/// Records its OnIdle calls and ends its message loop after a given number of idle periods.
class IdleApp : public TestApp {
public:
    std::vector<LONG> m_counts;
    int m_quietTimes = 0;
    int m_wantedQuietTimes = 2;
    int m_exits = 0;

    BOOL OnIdle(LONG count) override {
        m_counts.push_back(count);
        const BOOL more = CWinApp::OnIdle(count);
        if (!more) {
            ++m_quietTimes;
            if (m_quietTimes < m_wantedQuietTimes) {
                ::PostMessageW(m_pMainWnd->m_hWnd, WM_USER, 0, 0);
            } else {
                m_pMainWnd->DestroyWindow();
            }
        }
        return more;
    }
    int ExitInstance() override {
        ++m_exits;
        return CWinApp::ExitInstance();
    }
};

MSG message(UINT number, int x = 0, int y = 0) {
    MSG msg = {};
    msg.message = number;
    msg.pt.x = x;
    msg.pt.y = y;
    return msg;
}

/// IsIdleMessage's results for the messages, in order.
std::string idle(CWinApp& app, std::vector<MSG> messages) {
    std::string answers;
    for (MSG& msg : messages) {
        answers += app.IsIdleMessage(&msg) ? '1' : '0';
    }
    return answers;
}

}  // namespace

TEST(WinApp, ObjectIsRegisteredWithItsNames) {
    EXPECT_EQ(AfxGetApp(), nullptr);
    {
        TestApp app;
        EXPECT_EQ(AfxGetApp(), &app);
        EXPECT_EQ(AfxGetThread(), &app);
        EXPECT_EQ(AfxGetModuleState()->m_pCurrentWinApp, &app);
        EXPECT_EQ(utf8(CString(AfxGetAppName())), "MFC test");
        EXPECT_NE(utf8(CString(app.m_pszExeName)).find("test_sdk_mfc"), std::string::npos);
        EXPECT_EQ(app.m_hInstance, GetModuleHandleW(nullptr));
        EXPECT_EQ(AfxGetInstanceHandle(), app.m_hInstance);
        EXPECT_EQ(AfxGetResourceHandle(), app.m_hInstance);
    }
    EXPECT_EQ(AfxGetApp(), nullptr);
    EXPECT_EQ(AfxGetThread(), nullptr);
}

TEST(WinApp, ResourceHandleBelongsToTheModuleState) {
    TestApp app;
    const auto other = reinterpret_cast<HINSTANCE>(UINT_PTR(0x1230));
    AfxSetResourceHandle(other);
    EXPECT_EQ(AfxGetResourceHandle(), other);
    AFX_MODULE_STATE own;
    {
        AFX_MANAGE_STATE(&own);
        EXPECT_EQ(AfxGetModuleState(), &own);
        EXPECT_EQ(AfxGetApp(), nullptr);
        EXPECT_NE(AfxGetResourceHandle(), other);
    }
    EXPECT_EQ(AfxGetModuleState(), AfxGetStaticModuleState());
    EXPECT_EQ(AfxGetResourceHandle(), other);
}

TEST(WinApp, PaintAndCaretMessagesDoNotRestartIdle) {
    TestApp app;
    EXPECT_EQ(idle(app, {message(WM_PAINT), message(0x0118), message(WM_USER), message(WM_TIMER),
                         message(WM_KEYDOWN)}),
              "00111");
}

TEST(WinApp, RepeatedMouseMovesRestartIdleOnce) {
    TestApp app;
    EXPECT_EQ(
        idle(app, {message(WM_MOUSEMOVE, 5, 5), message(WM_MOUSEMOVE, 5, 5), message(WM_MOUSEMOVE, 5, 6),
                   message(WM_MOUSEMOVE, 5, 6), message(WM_NCMOUSEMOVE, 5, 6), message(WM_NCMOUSEMOVE, 5, 6),
                   message(WM_MOUSEMOVE, 5, 6)}),
        "1010101");
}

TEST(WinApp, OnIdleRequestsExactlyTwoCalls) {
    TestApp app;
    EXPECT_TRUE(app.CWinApp::OnIdle(0));
    EXPECT_FALSE(app.CWinApp::OnIdle(1));
    EXPECT_FALSE(app.CWinApp::OnIdle(2));
}

TEST(WinApp, RunCallsOnIdleOnEmptyQueueAndReturnsTheExitCode) {
    IdleApp app;
    CWnd window;
    ASSERT_TRUE(createHidden(window));
    app.m_pMainWnd = &window;
    app.m_wantedQuietTimes = 3;
    EXPECT_EQ(app.Run(), 0);
    EXPECT_EQ(app.m_exits, 1);
    EXPECT_EQ(app.m_pMainWnd, nullptr);
    EXPECT_EQ(app.m_quietTimes, 3);
    // The count restarts after a message, which may arrive before the second call.
    LONG last = 1;
    int second = 0;
    for (const LONG count : app.m_counts) {
        EXPECT_TRUE(count == 0 || (count == 1 && last == 0)) << count << " after " << last;
        second += count == 1 ? 1 : 0;
        last = count;
    }
    EXPECT_EQ(second, 3);
}

TEST(WinApp, RunReturnsThePostedExitCode) {
    IdleApp app;
    CWnd window;
    ASSERT_TRUE(createHidden(window));
    app.m_pMainWnd = &window;
    app.m_wantedQuietTimes = 1000;
    AfxPostQuitMessage(42);
    EXPECT_EQ(app.Run(), 42);
    app.m_pMainWnd = nullptr;
}

TEST(WinApp, RunWithoutAMainWindowReturnsAtOnce) {
    TestApp app;
    EXPECT_EQ(app.Run(), 0);
}

TEST(WinApp, IdleProcessingDeletesTemporaryObjects) {
    TestApp app;
    const HWND other = CreateWindowExW(0, AfxRegisterWndClass(0), nullptr, WS_POPUP, 0, 0, 10, 10, nullptr,
                                       nullptr, AfxGetInstanceHandle(), nullptr);
    CWnd* const temporary = CWnd::FromHandle(other);
    app.OnIdle(0);
    EXPECT_EQ(CWnd::FromHandle(other), temporary);
    app.OnIdle(1);
    DestroyWindow(other);
    EXPECT_EQ(CWnd::FromHandlePermanent(other), nullptr);
}
