#include <algorithm>

#include "threadstate_.h"

IMPLEMENT_DYNAMIC(CWinThread, CCmdTarget)
IMPLEMENT_DYNAMIC(CWinApp, CWinThread)

namespace {

// The caret's blink timer, an undocumented message that MFC also filters out.
const UINT kCaretTimerMessage = 0x0118;

}  // namespace

CWinThread::CWinThread() : m_nThreadID(::GetCurrentThreadId()), m_msgCur() {}

CWinThread::~CWinThread() {
    AfxThreadState& state = afxThreadState();
    if (state.currentThread == this) {
        state.currentThread = nullptr;
    }
}

BOOL CWinThread::InitInstance() {
    return FALSE;
}
int CWinThread::ExitInstance() {
    return static_cast<int>(m_msgCur.wParam);
}

int CWinThread::Run() {
    bool idle = true;
    LONG idleCount = 0;
    for (;;) {
        while (idle && !::PeekMessageW(&m_msgCur, nullptr, 0, 0, PM_NOREMOVE)) {
            if (!OnIdle(idleCount++)) {
                idle = false;
            }
        }
        do {
            if (!PumpMessage()) {
                return ExitInstance();
            }
            if (IsIdleMessage(&m_msgCur)) {
                idle = true;
                idleCount = 0;
            }
        } while (::PeekMessageW(&m_msgCur, nullptr, 0, 0, PM_NOREMOVE));
    }
}

BOOL CWinThread::PumpMessage() {
    if (!::GetMessageW(&m_msgCur, nullptr, 0, 0)) {
        return FALSE;
    }
    if (!PreTranslateMessage(&m_msgCur)) {
        ::TranslateMessage(&m_msgCur);
        ::DispatchMessageW(&m_msgCur);
    }
    return TRUE;
}

BOOL CWinThread::PreTranslateMessage(MSG* msg) {
    CWnd* const mainWindow = AfxGetMainWnd();
    if (CWnd::WalkPreTranslateTree(mainWindow == nullptr ? nullptr : mainWindow->m_hWnd, msg)) {
        return TRUE;
    }
    // The main window also gets the messages of windows that are not in its own window tree.
    if (mainWindow != nullptr && msg->hwnd != nullptr) {
        const CWnd* const window = CWnd::FromHandle(msg->hwnd);
        if (window->GetTopLevelParent() != mainWindow) {
            return mainWindow->PreTranslateMessage(msg);
        }
    }
    return FALSE;
}

BOOL CWinThread::OnIdle(LONG count) {
    AfxThreadState& state = afxThreadState();
    if (count <= 0) {
        // Iterate over a copy: a frame may be destroyed, and removed from the list, by its handler.
        const std::vector<CFrameWnd*> frames = state.frames;
        for (CFrameWnd* frame : frames) {
            if (std::find(state.frames.begin(), state.frames.end(), frame) != state.frames.end() &&
                frame->m_hWnd != nullptr) {
                frame->SendMessage(WM_IDLEUPDATECMDUI, TRUE, 0);
            }
        }
    } else {
        CWnd::DeleteTempMap();
    }
    return count < 0;
}

BOOL CWinThread::IsIdleMessage(MSG* msg) {
    if (msg->message == WM_MOUSEMOVE || msg->message == WM_NCMOUSEMOVE) {
        // Windows generates mouse moves without motion when windows change under the pointer.
        if (m_ptCursorLast == msg->pt && msg->message == m_nMsgLast) {
            return FALSE;
        }
        m_ptCursorLast = msg->pt;
        m_nMsgLast = msg->message;
        return TRUE;
    }
    return msg->message != WM_PAINT && msg->message != kCaretTimerMessage;
}

LRESULT CWinThread::ProcessWndProcException(CException* /*e*/, const MSG* msg) {
    if (msg->message == WM_CREATE) {
        return -1;
    }
    if (msg->message == WM_PAINT) {
        // Otherwise WM_PAINT would be generated forever.
        ::ValidateRect(msg->hwnd, nullptr);
    }
    return 0;
}

CWnd* CWinThread::GetMainWnd() {
    if (m_pActiveWnd != nullptr) {
        return m_pActiveWnd;
    }
    if (m_pMainWnd != nullptr) {
        return m_pMainWnd;
    }
    return CWnd::FromHandle(::GetActiveWindow());
}

CWinApp::CWinApp(LPCTSTR appName) : m_appName(appName) {
    AFX_MODULE_STATE* const state = AfxGetAppModuleState();
    ASSERT(state->m_pCurrentWinApp == nullptr);  // only one application object
    state->m_pCurrentWinApp = this;
    afxThreadState().currentThread = this;
    m_pszAppName = appName == nullptr ? nullptr : m_appName.GetString();
}

CWinApp::~CWinApp() {
    AFX_MODULE_STATE* const state = AfxGetAppModuleState();
    if (state->m_pCurrentWinApp == this) {
        *state = AFX_MODULE_STATE();
    }
}

void CWinApp::SetCurrentHandles() {
    AFX_MODULE_STATE* const state = AfxGetAppModuleState();
    state->m_hCurrentInstanceHandle = m_hInstance;
    state->m_hCurrentResourceHandle = m_hInstance;

    CString path;
    const DWORD size = 32768;  // the maximum length of a path
    const DWORD length = ::GetModuleFileNameW(m_hInstance, path.GetBuffer(static_cast<int>(size)), size);
    path.ReleaseBuffer(static_cast<int>(length));
    m_exeName = path.Mid(path.ReverseFind(_T('\\')) + 1);
    const int dot = m_exeName.ReverseFind(_T('.'));
    if (dot > 0) {
        m_exeName = m_exeName.Left(dot);
    }
    m_pszExeName = m_exeName.GetString();
    if (m_pszAppName == nullptr) {
        m_appName = m_exeName;
        m_pszAppName = m_appName.GetString();
    }
    state->m_lpszCurrentAppName = m_pszAppName;
}

BOOL CWinApp::InitApplication() {
    return TRUE;
}
BOOL CWinApp::InitInstance() {
    return TRUE;
}
int CWinApp::ExitInstance() {
    return CWinThread::ExitInstance();
}

int CWinApp::Run() {
    if (m_pMainWnd == nullptr) {
        // Without a main window nothing would ever end the message loop.
        AfxPostQuitMessage(0);
    }
    return CWinThread::Run();
}

BOOL CWinApp::OnIdle(LONG count) {
    if (count <= 1) {
        CWinThread::OnIdle(count);
    }
    return count < 1;
}

LRESULT CWinApp::ProcessWndProcException(CException* e, const MSG* msg) {
    if (msg->message == WM_CREATE || msg->message == WM_PAINT) {
        return CWinThread::ProcessWndProcException(e, msg);
    }
    if (e->IsKindOf(RUNTIME_CLASS(CMemoryException))) {
        e->ReportError(MB_ICONEXCLAMATION | MB_SYSTEMMODAL);
    } else if (!e->IsKindOf(RUNTIME_CLASS(CUserException))) {
        e->ReportError(MB_ICONSTOP);
    }
    return msg->message == WM_COMMAND ? TRUE : 0;
}

int CWinApp::DoMessageBox(LPCTSTR prompt, UINT type, UINT /*helpId*/) {
    if ((type & MB_ICONMASK) == 0) {
        switch (type & MB_TYPEMASK) {
            case MB_YESNO:
            case MB_YESNOCANCEL:
                type |= MB_ICONQUESTION;
                break;
            default:
                type |= MB_ICONEXCLAMATION;
                break;
        }
    }
    // The main window can be the owner on its own thread only. If it is disabled (another modal box is open),
    // the new box has no owner.
    const CWnd* const mainWindow = AfxGetMainWnd();
    HWND owner = mainWindow == nullptr ? nullptr : mainWindow->m_hWnd;
    if (owner != nullptr && !::IsWindowEnabled(owner)) {
        owner = nullptr;
    }
    return ::MessageBoxW(owner, prompt, AfxGetAppName(), type);
}

CWinApp* AFXAPI AfxGetApp() {
    return AfxGetModuleState()->m_pCurrentWinApp;
}
CWinThread* AFXAPI AfxGetThread() {
    return afxThreadState().currentThread;
}

CWnd* AFXAPI AfxGetMainWnd() {
    CWinThread* const thread = AfxGetThread();
    return thread == nullptr ? nullptr : thread->GetMainWnd();
}

LPCTSTR AFXAPI AfxGetAppName() {
    const CWinApp* const app = AfxGetApp();
    return app == nullptr || app->m_pszAppName == nullptr ? _T("") : app->m_pszAppName;
}

int AFXAPI AfxMessageBox(LPCTSTR text, UINT type, UINT helpId) {
    CWinApp* const app = AfxGetApp();
    return app == nullptr ? ::MessageBoxW(nullptr, text, _T(""), type)
                          : app->DoMessageBox(text, type, helpId);
}

BOOL AFXAPI AfxPreTranslateMessage(MSG* msg) {
    CWinThread* const thread = AfxGetThread();
    return thread != nullptr && thread->PreTranslateMessage(msg);
}

BOOL AFXAPI AfxPumpMessage() {
    CWinThread* const thread = AfxGetThread();
    return thread != nullptr && thread->PumpMessage();
}

void AFXAPI AfxPostQuitMessage(int exitCode) {
    ::PostQuitMessage(exitCode);
}

BOOL AFXAPI AfxWinInit(HINSTANCE instance, HINSTANCE /*previous*/, LPTSTR commandLine, int show) {
    CWinApp* const app = AfxGetApp();
    if (app == nullptr) {
        return FALSE;
    }
    app->m_hInstance = instance == nullptr ? ::GetModuleHandleW(nullptr) : instance;
    app->m_lpCmdLine = commandLine;
    app->m_nCmdShow = show;
    app->SetCurrentHandles();
    return TRUE;
}

int AFXAPI AfxWinMain(HINSTANCE instance, HINSTANCE previous, LPTSTR commandLine, int show) {
    if (!AfxWinInit(instance, previous, commandLine, show)) {
        return -1;
    }
    CWinApp* const app = AfxGetApp();
    if (!app->InitApplication()) {
        return -1;
    }
    if (!app->InitInstance()) {
        if (app->m_pMainWnd != nullptr) {
            app->m_pMainWnd->DestroyWindow();
        }
        return app->ExitInstance();
    }
    return app->Run();
}
