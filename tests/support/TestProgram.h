#pragma once

#include <afxext.h>
#include <afxwin.h>

#include <functional>
#include <vector>

#include "tests/support/FakeArxHost.h"

/// The CWinApp of the host tests. Records the message boxes that MFC asks it to show.
class TestApp : public CWinApp {
public:
    TestApp() : CWinApp(_T("Test host")) {}

    BOOL OnIdle(LONG count) override;
    BOOL IsIdleMessage(MSG* message) override;
    BOOL PreTranslateMessage(MSG* message) override;
    /// Records the box and returns `boxAnswer` instead of showing it.
    int DoMessageBox(LPCTSTR prompt, UINT type, UINT helpId) override;

    /// Restores MFC's default behaviour and clears the records.
    void reset();

    // Set by the test.
    std::function<BOOL(LONG)> onIdle;
    std::function<BOOL(MSG*)> isIdleMessage;
    std::function<BOOL(MSG*)> preTranslate;
    int boxAnswer = IDOK;
    /// Called while a box would be open.
    std::function<void()> whileBoxOpen;

    std::vector<CString> boxes;
    /// The MB_ flags of the boxes, as MFC passes them.
    std::vector<UINT> boxTypes;
};

TestApp& testApp();

/// A test's host with real windows: a frame with a menu and a drawing view, and a message loop.
class TestProgram {
public:
    TestProgram();
    ~TestProgram();
    TestProgram(const TestProgram&) = delete;
    TestProgram& operator=(const TestProgram&) = delete;

    CMDIFrameWnd* frame() const { return m_frame; }
    CView* drawingView() const { return m_view; }
    FakeArxHost& host() { return m_host; }

    /// Runs the message loop until the condition holds; false on a timeout.
    static bool pumpUntil(const std::function<bool()>& condition, int timeoutMs = 20000);
    /// Runs the message loop until every posted message and event has been handled.
    static void settle();
    /// Posts a key stroke as the keyboard does: WM_KEYDOWN, which TranslateMessage turns into WM_CHAR, and
    /// WM_KEYUP.
    static void typeKey(HWND window, int virtualKey);

private:
    FakeArxHost m_host;
    CMDIFrameWnd* m_frame;
    CView* m_view;
};
