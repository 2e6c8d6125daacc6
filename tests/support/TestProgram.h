#pragma once

#include <afxext.h>
#include <afxwin.h>

#include <functional>
#include <vector>

#include "tests/support/FakeArxHost.h"

/// The MFC application object of the host tests. It takes note of what MFC hands it.
class TestApp : public CWinApp {
public:
    TestApp() : CWinApp(_T("Test host")) {}

    BOOL OnIdle(LONG count) override;
    BOOL IsIdleMessage(MSG* message) override;
    BOOL PreTranslateMessage(MSG* message) override;
    /// Answers instead of showing the box.
    int DoMessageBox(LPCTSTR prompt, UINT type, UINT helpId) override;

    /// Back to the defaults of MFC, with nothing noted.
    void reset();

    // What the test sets.
    std::function<BOOL(LONG)> onIdle;
    std::function<BOOL(MSG*)> isIdleMessage;
    std::function<BOOL(MSG*)> preTranslate;
    int boxAnswer = IDOK;
    /// Called while a box is open.
    std::function<void()> whileBoxOpen;

    std::vector<CString> boxes;
    /// Their types, as MFC hands them on.
    std::vector<UINT> boxTypes;
};

TestApp& testApp();

/// The host of a test with real windows: a frame with a menu, a drawing view in it, and the loop.
class TestProgram {
public:
    TestProgram();
    ~TestProgram();
    TestProgram(const TestProgram&) = delete;
    TestProgram& operator=(const TestProgram&) = delete;

    CMDIFrameWnd* frame() const { return m_frame; }
    CView* drawingView() const { return m_view; }
    FakeArxHost& host() { return m_host; }

    /// Runs the loop until the condition holds; false when it does not in time.
    static bool pumpUntil(const std::function<bool()>& condition, int timeoutMs = 20000);
    /// Runs the loop until every posted message and event has been handled.
    static void settle();
    /// Posts a key as the keyboard does: WM_KEYDOWN, which makes the WM_CHAR, and WM_KEYUP.
    static void typeKey(HWND window, int virtualKey);

private:
    FakeArxHost m_host;
    CMDIFrameWnd* m_frame;
    CView* m_view;
};
