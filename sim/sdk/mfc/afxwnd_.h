#pragma once

// CWnd. Include <afxwin.h>.
//
// Simplified: no dialogs and controls, no tool tips, no scrolling, no data exchange. Handle maps are per
// thread, as MFC's are.

#include "afxgdi_.h"
#include "afxtarget_.h"

#include "atltypes.h"

class CFrameWnd;
struct CCreateContext;

/// A window. The object exists before and after its handle: creating or attaching joins the two, WM_NCDESTROY
/// parts them and then calls PostNcDestroy.
class CWnd : public CCmdTarget {
    DECLARE_DYNCREATE(CWnd)

public:
    CWnd() = default;
    /// Destroys the window if it still exists.
    ~CWnd() override;

    HWND m_hWnd = nullptr;
    HWND GetSafeHwnd() const { return m_hWnd; }
    operator HWND() const { return m_hWnd; }  // NOLINT(google-explicit-constructor)

    /// The object of a handle; a temporary one, until the next idle time, when there is none. Null for null.
    static CWnd* PASCAL FromHandle(HWND window);
    /// The object that created or attached the handle on this thread, or null.
    static CWnd* PASCAL FromHandlePermanent(HWND window);
    static void PASCAL DeleteTempMap();
    BOOL Attach(HWND window);
    HWND Detach();
    /// Attach, and see the window's messages first.
    BOOL SubclassWindow(HWND window);
    HWND UnsubclassWindow();
    /// Called as soon as the handle is there, before its first message.
    virtual void PreSubclassWindow();

    /// A child window. A null class name takes MFC's own class.
    virtual BOOL Create(LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect, CWnd* parent,
                        UINT id, CCreateContext* context = nullptr);
    BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, int x, int y, int width,
                  int height, HWND parent, HMENU idOrMenu, LPVOID parameter = nullptr);
    BOOL CreateEx(DWORD exStyle, LPCTSTR className, LPCTSTR windowName, DWORD style, const RECT& rect,
                  CWnd* parent, UINT id, LPVOID parameter = nullptr);
    /// May change how the window will be created, or refuse.
    virtual BOOL PreCreateWindow(CREATESTRUCT& cs);
    /// Only on the thread that created the window.
    virtual BOOL DestroyWindow();

    // Messages.
    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    /// True when the message is done with and must not be dispatched.
    virtual BOOL PreTranslateMessage(MSG* msg);
    /// Offers a message to its window, then to that window's parents up to `stop`.
    static BOOL PASCAL WalkPreTranslateTree(HWND stop, MSG* msg);
    BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo) override;

    // Place and looks.
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
    /// What a message first meets: the message maps, then DefWindowProc.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// The default handling of the message being handled, with its own arguments.
    LRESULT Default();
    static const MSG* PASCAL GetCurrentMessage();
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    virtual void PostNcDestroy();

    // Default handlers, for derived classes to call; each does Default().
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
    /// Catches the next window that this thread creates and joins it to the object.
    static LRESULT CALLBACK cbtFilter(int code, WPARAM wParam, LPARAM lParam);
    /// Makes AfxWndProc the handle's procedure and keeps the one it had.
    void hookWindow();

    WNDPROC m_pfnSuper = nullptr;
    bool m_temporary = false;
};

/// Routes a message to its object: the window procedure of every window of MFC.
LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// Calls the object's WindowProc; a CException that leaves it ends in AfxProcessWndProcException.
LRESULT AFXAPI AfxCallWndProc(CWnd* window, HWND handle, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT AFXAPI AfxProcessWndProcException(CException* e, const MSG* msg);

/// Registers a window class with these traits, once, and returns its name (valid until the thread's next
/// call).
LPCTSTR AFXAPI AfxRegisterWndClass(UINT style, HCURSOR cursor = nullptr, HBRUSH background = nullptr,
                                   HICON icon = nullptr);
/// Registers a class unless it is registered already.
BOOL AFXAPI AfxRegisterClass(WNDCLASS* windowClass);
