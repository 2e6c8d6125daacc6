#pragma once

// CWinThread and CWinApp. Include <afxwin.h>.
//
// Simplified: no threads of MFC's own (one CWinThread, the application), no documents, no registry, no
// accelerators and no modeless state.

#include "afxtarget_.h"

#include "atltypes.h"

class CWnd;

/// The message loop.
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
    /// Pumps until WM_QUIT, doing idle work whenever the queue is empty; returns what ExitInstance does.
    virtual int Run();
    /// Gets one message, offers it to PreTranslateMessage and dispatches it. False at WM_QUIT.
    virtual BOOL PumpMessage();
    /// Offers the message to its window and that window's parents, up to the main window.
    virtual BOOL PreTranslateMessage(MSG* msg);
    /// Work for a quiet time. `count` is how often it was called since the last message; false: no more is
    /// needed.
    virtual BOOL OnIdle(LONG count);
    /// Whether idle work is due again after this message: not after painting, not after the caret's timer
    /// (0x118) and not after a mouse move that moves nothing.
    virtual BOOL IsIdleMessage(MSG* msg);
    /// Called with an exception that left a message handler; the result becomes the message's.
    virtual LRESULT ProcessWndProcException(CException* e, const MSG* msg);
    virtual CWnd* GetMainWnd();

    /// The message that PumpMessage got last.
    const MSG& GetCurrentMsg() const { return m_msgCur; }

protected:
    MSG m_msgCur;

private:
    CPoint m_ptCursorLast;
    UINT m_nMsgLast = WM_NULL;
};

/// The application: one object for the process, a static of the program.
class CWinApp : public CWinThread {
    DECLARE_DYNAMIC(CWinApp)

public:
    explicit CWinApp(LPCTSTR appName = nullptr);
    ~CWinApp() override;

    HINSTANCE m_hInstance = nullptr;
    LPTSTR m_lpCmdLine = nullptr;
    int m_nCmdShow = 0;
    LPCTSTR m_pszAppName = nullptr;  ///< As in message boxes' captions.
    LPCTSTR m_pszExeName = nullptr;  ///< The program's file name, without folder and extension.

    virtual BOOL InitApplication();
    BOOL InitInstance() override;
    int ExitInstance() override;
    int Run() override;
    BOOL OnIdle(LONG count) override;
    LRESULT ProcessWndProcException(CException* e, const MSG* msg) override;
    /// What AfxMessageBox shows.
    virtual int DoMessageBox(LPCTSTR prompt, UINT type, UINT helpId);

    /// Fills the names in; called by AfxWinInit.
    void SetCurrentHandles();

private:
    CString m_appName;
    CString m_exeName;
};

/// Null before there is an application.
CWinApp* AFXAPI AfxGetApp();
/// The calling thread's CWinThread; null on threads that MFC does not know.
CWinThread* AFXAPI AfxGetThread();
/// The calling thread's main window, or null.
CWnd* AFXAPI AfxGetMainWnd();
LPCTSTR AFXAPI AfxGetAppName();

/// Shows a message box over the main window; callable from any thread, and then without an owner. An icon
/// that is not asked for is chosen by the buttons.
int AFXAPI AfxMessageBox(LPCTSTR text, UINT type = MB_OK, UINT helpId = 0);

BOOL AFXAPI AfxPreTranslateMessage(MSG* msg);
BOOL AFXAPI AfxPumpMessage();
void AFXAPI AfxPostQuitMessage(int exitCode);

/// Tells MFC and the application object how the program was started.
BOOL AFXAPI AfxWinInit(HINSTANCE instance, HINSTANCE previous, LPTSTR commandLine, int show);
/// Runs the application object: AfxWinInit, InitApplication, InitInstance, Run. What main or WinMain returns.
int AFXAPI AfxWinMain(HINSTANCE instance, HINSTANCE previous, LPTSTR commandLine, int show);
