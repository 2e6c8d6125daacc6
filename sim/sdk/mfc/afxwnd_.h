#pragma once

// CWnd. Include <afxwin.h>.
//
// Simplified: no dialogs, controls, tooltips, scrolling or data exchange. The handle maps are per thread, as
// MFC's are.

#include "afxgdi_.h"
#include "afxtarget_.h"

#include "atltypes.h"

class CFrameWnd;
struct CCreateContext;

/// A window. The object is separate from its handle: Create or Attach connects the two, WM_NCDESTROY detaches
/// the handle and calls PostNcDestroy.
class CWnd : public CCmdTarget {
    DECLARE_DYNCREATE(CWnd)

public:
    CWnd() = default;
    /// Destroys the window if it still exists.
    ~CWnd() override;

    HWND m_hWnd = nullptr;
    HWND GetSafeHwnd() const { return m_hWnd; }
    operator HWND() const { return m_hWnd; }  // NOLINT(google-explicit-constructor)

    /// The handle's object, or a temporary one, which is valid until the next idle processing. Null for null.
    static CWnd* PASCAL FromHandle(HWND window);
    /// The handle's permanent object on this thread (created or attached), or null.
    static CWnd* PASCAL FromHandlePermanent(HWND window);
    static void PASCAL DeleteTempMap();
    BOOL Attach(HWND window);
    HWND Detach();
    /// Attaches the handle and replaces its window procedure, so that the message map gets its messages
    /// first.
    BOOL SubclassWindow(HWND window);
    HWND UnsubclassWindow();
    /// Called as soon as the handle is attached, before its first message.
    virtual void PreSubclassWindow();

    /// Creates a child window. A null class name means MFC's default class.
    virtual BOOL Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect, CWnd* parent,
                        UINT id, CCreateContext* context = nullptr);
    BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, int x, int y, int width,
                  int height, HWND parent, HMENU idOrMenu, LPVOID parameter = nullptr);
    BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect,
                  CWnd* parent, UINT id, LPVOID parameter = nullptr);
    /// May change the creation parameters; false cancels the creation.
    virtual BOOL PreCreateWindow(CREATESTRUCT& cs);
    /// To be called on the thread that created the window.
    virtual BOOL DestroyWindow();

    // Messages.
    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    /// True if the message has been handled and must not be dispatched.
    virtual BOOL PreTranslateMessage(MSG* msg);
    /// Calls PreTranslateMessage of the message's window and then of its parents, up to `stop`.
    static BOOL PASCAL WalkPreTranslateTree(HWND stop, MSG* msg);
    BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo) override;

    // Position, style and state.
    void MoveWindow(int x, int y, int width, int height, BOOL repaint = TRUE);
    void MoveWindow(LPCRECT rect, BOOL repaint = TRUE);
    BOOL SetWindowPos(const CWnd* insertAfter, int x, int y, int cx, int cy, UINT flags);
    BOOL ShowWindow(int command);
    void UpdateWindow();
    void Invalidate(BOOL erase = TRUE);
    void InvalidateRect(LPCRECT rect, BOOL erase = TRUE);
    BOOL RedrawWindow(LPCRECT rect = nullptr, UINT flags = RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASE);
    void BringWindowToTop();
    void GetWindowRect(LPRECT rect) const;
    void GetClientRect(LPRECT rect) const;
    void ClientToScreen(LPPOINT point) const;
    void ClientToScreen(LPRECT rect) const;
    void ScreenToClient(LPPOINT point) const;
    void ScreenToClient(LPRECT rect) const;
    DWORD GetStyle() const;
    DWORD GetExStyle() const;
    BOOL ModifyStyle(DWORD remove, DWORD add, UINT flags = 0);
    BOOL IsWindowVisible() const;
    BOOL IsIconic() const;
    BOOL IsZoomed() const;
    BOOL EnableWindow(BOOL enable = TRUE);
    BOOL IsWindowEnabled() const;
    void SetWindowText(LPCTSTR text);
    void GetWindowText(CString& text) const;
    int GetWindowText(LPTSTR buffer, int size) const;
    int GetWindowTextLength() const;
    CMenu* GetMenu() const;
    BOOL SetMenu(CMenu* menu);
    void DrawMenuBar();

    // Relations.
    CWnd* GetParent() const;
    CWnd* SetParent(CWnd* newParent);
    CWnd* GetOwner() const;
    CWnd* GetTopLevelParent() const;
    CFrameWnd* GetParentFrame() const;
    CWnd* GetDlgItem(int id) const;
    int GetDlgCtrlID() const;
    BOOL IsChild(const CWnd* window) const;
    virtual BOOL IsFrameWnd() const;

    // Input.
    CWnd* SetFocus();
    static CWnd* PASCAL GetFocus();
    CWnd* SetCapture();
    static CWnd* PASCAL GetCapture();
    CWnd* SetActiveWindow();
    static CWnd* PASCAL GetActiveWindow();
    BOOL SetForegroundWindow();
    UINT_PTR SetTimer(UINT_PTR id, UINT elapse, void(CALLBACK* procedure)(HWND, UINT, UINT_PTR, DWORD));
    BOOL KillTimer(UINT_PTR id);
    int MessageBox(LPCTSTR text, LPCTSTR caption = nullptr, UINT type = MB_OK);

protected:
    /// The entry point for each message: tries the message maps, then DefWindowProc.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// Calls DefWindowProc for the message being handled, with its original arguments.
    LRESULT Default();
    static const MSG* PASCAL GetCurrentMessage();
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    virtual void PostNcDestroy();

    // Default handlers, for derived classes to call; each calls Default().
    afx_msg int OnCreate(LPCREATESTRUCT createStruct);
    afx_msg void OnDestroy();
    afx_msg void OnClose();
    afx_msg void OnPaint();
    afx_msg BOOL OnEraseBkgnd(CDC* dc);
    afx_msg void OnNcDestroy();
    afx_msg void OnMove(int x, int y);
    afx_msg void OnSize(UINT type, int cx, int cy);
    afx_msg void OnSizing(UINT side, LPRECT rect);
    afx_msg void OnShowWindow(BOOL show, UINT status);
    afx_msg void OnEnable(BOOL enable);
    afx_msg void OnGetMinMaxInfo(MINMAXINFO* info);
    afx_msg void OnActivate(UINT state, CWnd* other, BOOL minimized);
    afx_msg void OnSetFocus(CWnd* oldWindow);
    afx_msg void OnKillFocus(CWnd* newWindow);
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    afx_msg void OnLButtonUp(UINT flags, CPoint point);
    afx_msg void OnLButtonDblClk(UINT flags, CPoint point);
    afx_msg void OnRButtonDown(UINT flags, CPoint point);
    afx_msg void OnRButtonUp(UINT flags, CPoint point);
    afx_msg void OnMButtonDown(UINT flags, CPoint point);
    afx_msg void OnMButtonUp(UINT flags, CPoint point);
    afx_msg void OnMouseMove(UINT flags, CPoint point);
    afx_msg BOOL OnMouseWheel(UINT flags, short delta, CPoint point);
    afx_msg int OnMouseActivate(CWnd* topLevel, UINT hitTest, UINT message);
    afx_msg BOOL OnSetCursor(CWnd* window, UINT hitTest, UINT message);
    afx_msg void OnCaptureChanged(CWnd* newWindow);
    afx_msg void OnTimer(UINT_PTR id);
    afx_msg void OnKeyDown(UINT key, UINT repeats, UINT flags);
    afx_msg void OnKeyUp(UINT key, UINT repeats, UINT flags);
    afx_msg void OnChar(UINT character, UINT repeats, UINT flags);
    afx_msg void OnSysKeyDown(UINT key, UINT repeats, UINT flags);
    afx_msg void OnSysKeyUp(UINT key, UINT repeats, UINT flags);
    afx_msg void OnSysChar(UINT character, UINT repeats, UINT flags);

    DECLARE_MESSAGE_MAP()

    friend LRESULT AFXAPI AfxCallWndProc(CWnd*, HWND, UINT, WPARAM, LPARAM);

private:
    /// CBT hook that attaches the next window created on this thread to its object.
    static LRESULT CALLBACK cbtFilter(int code, WPARAM wParam, LPARAM lParam);
    /// Sets AfxWndProc as the window procedure and remembers the previous one.
    void hookWindow();

    WNDPROC m_pfnSuper = nullptr;
    bool m_temporary = false;
};

/// The window procedure of all MFC windows: passes the message to the window's object.
LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// Calls the object's WindowProc; a CException that it lets escape goes to AfxProcessWndProcException.
LRESULT AFXAPI AfxCallWndProc(CWnd* window, HWND handle, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT AFXAPI AfxProcessWndProcException(CException* e, const MSG* msg);

/// Registers a window class with these attributes, unless it exists, and returns its name (valid until the
/// thread's next call).
LPCTSTR AFXAPI AfxRegisterWndClass(UINT style, HCURSOR cursor = nullptr, HBRUSH background = nullptr,
                                   HICON icon = nullptr);
/// Registers a class unless it is already registered.
BOOL AFXAPI AfxRegisterClass(WNDCLASS* windowClass);
