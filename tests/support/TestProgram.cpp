#include "tests/support/TestProgram.h"

namespace {

/// CView's constructor is protected.
class TestView : public CView {};

TestApp g_app;

constexpr UINT kTickMilliseconds = 10;
constexpr int kFrameWidth = 1100;
constexpr int kFrameHeight = 760;
constexpr LPARAM kKeyUp = static_cast<LPARAM>(0xC0000001);

/// Pumps one message like the program's message loop.
void pumpOne() {
    MSG message;
    if (GetMessageW(&message, nullptr, 0, 0) == FALSE) {
        return;
    }
    if (!AfxPreTranslateMessage(&message)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

}  // namespace

BOOL TestApp::OnIdle(LONG count) {
    return onIdle ? onIdle(count) : CWinApp::OnIdle(count);
}

BOOL TestApp::IsIdleMessage(MSG* message) {
    return isIdleMessage ? isIdleMessage(message) : CWinApp::IsIdleMessage(message);
}

BOOL TestApp::PreTranslateMessage(MSG* message) {
    return preTranslate ? preTranslate(message) : CWinApp::PreTranslateMessage(message);
}

int TestApp::DoMessageBox(LPCTSTR prompt, UINT type, UINT) {
    boxes.emplace_back(prompt);
    boxTypes.push_back(type);
    if (whileBoxOpen) {
        whileBoxOpen();
    }
    return boxAnswer;
}

void TestApp::reset() {
    onIdle = nullptr;
    isIdleMessage = nullptr;
    preTranslate = nullptr;
    whileBoxOpen = nullptr;
    boxAnswer = IDOK;
    boxes.clear();
    boxTypes.clear();
}

TestApp& testApp() {
    return g_app;
}

TestProgram::TestProgram() : m_frame(new CMDIFrameWnd), m_view(new TestView) {
    g_app.reset();
    const CRect place(0, 0, kFrameWidth, kFrameHeight);
    m_frame->Create(nullptr, _T("Test host"), WS_OVERLAPPEDWINDOW, place);
    CMenu menu;
    menu.CreateMenu();
    menu.AppendMenu(MF_STRING, 1, _T("&File"));
    m_frame->SetMenu(&menu);
    menu.Detach();
    m_frame->EnableDocking(CBRS_ALIGN_ANY);
    m_view->Create(nullptr, _T(""), WS_CHILD | WS_VISIBLE, place, m_frame, AFX_IDW_PANE_FIRST);
    g_app.m_pMainWnd = m_frame;
    m_frame->ShowWindow(SW_SHOW);
    m_frame->RecalcLayout();
    m_frame->SetFocus();
    m_host.setFrame(m_frame);
    m_host.setDrawingView(m_view);
    settle();
}

TestProgram::~TestProgram() {
    g_app.reset();
    g_app.m_pMainWnd = nullptr;
    m_frame->DestroyWindow();
}

bool TestProgram::pumpUntil(const std::function<bool()>& condition, int timeoutMs) {
    const ULONGLONG start = GetTickCount64();
    // The timer wakes GetMessage, so that the condition is checked even if no other message arrives.
    const UINT_PTR tick = SetTimer(nullptr, 0, kTickMilliseconds, nullptr);
    bool holds = condition();
    while (!holds && GetTickCount64() - start < static_cast<ULONGLONG>(timeoutMs)) {
        pumpOne();
        holds = condition();
    }
    KillTimer(nullptr, tick);
    return holds;
}

void TestProgram::settle() {
    // Several checks in a row must find the queue empty, so that messages posted late are handled as well.
    int quietTicks = 0;
    pumpUntil([&quietTicks] {
        MSG waiting;
        const bool quiet =
            PeekMessageW(&waiting, nullptr, 0, 0, PM_NOREMOVE) == FALSE || waiting.message == WM_TIMER;
        quietTicks = quiet ? quietTicks + 1 : 0;
        return quietTicks > 4;
    });
}

void TestProgram::typeKey(HWND window, int virtualKey) {
    PostMessageW(window, WM_KEYDOWN, static_cast<WPARAM>(virtualKey), 1);
    PostMessageW(window, WM_KEYUP, static_cast<WPARAM>(virtualKey), kKeyUp);
}
