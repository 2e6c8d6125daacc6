#pragma once

// CWinThread and CWinApp. Include <afxwin.h>.
//
// Simplified: no AfxBeginThread (the application is the only CWinThread), no documents, no registry, no
// accelerators and no modeless state.

#include "afxtarget_.h"

#include "atltypes.h"

class CWnd;

/// A thread with a message loop.
class CWinThread : public CCmdTarget {
    DECLARE_DYNAMIC(CWinThread)

public:
    CWinThread();
    ~CWinThread() override;

    CWnd* m_pMainWnd = nullptr;
    CWnd* m_pActiveWnd = nullptr;
    DWORD m_nThreadID = 0;

    virtual BOOL InitInstance();
    virtual int ExitInstance();
    /// Runs the message loop until WM_QUIT, with idle processing while the queue is empty; returns
    /// ExitInstance's result.
    virtual int Run();
    /// Retrieves one message and, unless PreTranslateMessage handles it, dispatches it. False at WM_QUIT.
    virtual BOOL PumpMessage();
    /// Offers the message to its window and that window's parents, up to the main window.
    virtual BOOL PreTranslateMessage(MSG* msg);
    /// Idle processing. `count` is the number of calls since the last message; false ends the idle processing
    /// until the next message.
    virtual BOOL OnIdle(LONG count);
    /// Whether this message restarts idle processing: not WM_PAINT, not the caret's timer (0x118), and not a
    /// mouse move to the same position.
    virtual BOOL IsIdleMessage(MSG* msg);
    /// Called with an exception that a message handler has let escape; returns the message's result.
    virtual LRESULT ProcessWndProcException(CException* e, const MSG* msg);
    virtual CWnd* GetMainWnd();

    /// The message that PumpMessage has retrieved last.
    const MSG& GetCurrentMsg() const { return m_msgCur; }

protected:
    MSG m_msgCur;

private:
    CPoint m_ptCursorLast;
    UINT m_nMsgLast = WM_NULL;
};

/// The application: the process has exactly one, usually a global object.
class CWinApp : public CWinThread {
    DECLARE_DYNAMIC(CWinApp)

public:
    explicit CWinApp(LPCTSTR appName = nullptr);
    ~CWinApp() override;

    HINSTANCE m_hInstance = nullptr;
    LPTSTR m_lpCmdLine = nullptr;
    int m_nCmdShow = 0;
    LPCTSTR m_pszAppName = nullptr;  ///< The caption of message boxes.
    LPCTSTR m_pszExeName = nullptr;  ///< The program's file name without folder and extension.

    virtual BOOL InitApplication();
    BOOL InitInstance() override;
    int ExitInstance() override;
    int Run() override;
    BOOL OnIdle(LONG count) override;
    LRESULT ProcessWndProcException(CException* e, const MSG* msg) override;
    /// Shows AfxMessageBox's message box.
    virtual int DoMessageBox(LPCTSTR prompt, UINT type, UINT helpId);

    /// Sets the names and the module state's handles; called by AfxWinInit.
    void SetCurrentHandles();

private:
    CString m_appName;
    CString m_exeName;
};

/// Null before the application object exists.
CWinApp* AFXAPI AfxGetApp();
/// The calling thread's CWinThread; null on a thread without one.
CWinThread* AFXAPI AfxGetThread();
/// The calling thread's main window, or null.
CWnd* AFXAPI AfxGetMainWnd();
LPCTSTR AFXAPI AfxGetAppName();

/// Shows a message box owned by the main window. Any thread; on other than the main thread the box has no
/// owner. Without an icon in `type` the buttons determine the icon.
int AFXAPI AfxMessageBox(LPCTSTR text, UINT type = MB_OK, UINT helpId = 0);

BOOL AFXAPI AfxPreTranslateMessage(MSG* msg);
BOOL AFXAPI AfxPumpMessage();
void AFXAPI AfxPostQuitMessage(int exitCode);

/// Initializes MFC and the application object with WinMain's arguments.
BOOL AFXAPI AfxWinInit(HINSTANCE instance, HINSTANCE previous, LPTSTR commandLine, int show);
/// Runs the application: AfxWinInit, InitApplication, InitInstance, Run. Returns the exit code for WinMain.
int AFXAPI AfxWinMain(HINSTANCE instance, HINSTANCE previous, LPTSTR commandLine, int show);
