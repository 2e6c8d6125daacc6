#pragma once

// Message maps. Include <afxwin.h>.
//
// Simplified: an entry has a function that unpacks the message's arguments, instead of MFC's signature code
// and member function pointer (the macros check a handler's signature as MFC's do); no ON_UPDATE_COMMAND_UI,
// no WM_NOTIFY entries, no message reflection.

#include "afxdefs_.h"

class CCmdTarget;
class CDC;
class CWnd;

/// Unpacks wParam and lParam and calls the handler.
typedef LRESULT (*AFX_PMSG)(CCmdTarget* target, WPARAM wParam, LPARAM lParam);

struct AFX_MSGMAP_ENTRY {
    UINT nMessage;            ///< 0 in the last entry.
    UINT nCode;               ///< For WM_COMMAND: the notification code.
    UINT nID;                 ///< For WM_COMMAND: the first id.
    UINT nLastID;             ///< For WM_COMMAND: the last id.
    const UINT* pRegistered;  ///< For a registered message: its number, known only at run time.
    AFX_PMSG pfn;
};

struct AFX_MSGMAP {
    const AFX_MSGMAP*(PASCAL* pfnGetBaseMap)();  ///< Null at the root.
    const AFX_MSGMAP_ENTRY* lpEntries;
};

/// The notification code of menu and accelerator commands.
#define CN_COMMAND 0

#define DECLARE_MESSAGE_MAP()                            \
protected:                                               \
    static const AFX_MSGMAP* PASCAL GetThisMessageMap(); \
    const AFX_MSGMAP* GetMessageMap() const override;

#define BEGIN_MESSAGE_MAP(theClass, baseClass)                                              \
    const AFX_MSGMAP* theClass::GetMessageMap() const {                                     \
        return GetThisMessageMap();                                                         \
    }                                                                                       \
    const AFX_MSGMAP* PASCAL theClass::GetThisMessageMap() {                                \
        typedef theClass ThisClass;                                                         \
        typedef baseClass TheBaseClass;                                                     \
        static_assert(sizeof(ThisClass) >= sizeof(TheBaseClass), "a map's base is a base"); \
        static const AFX_MSGMAP_ENTRY messageEntries[] = {
#define END_MESSAGE_MAP()                                                                        \
    { 0, 0, 0, 0, nullptr, nullptr }                                                             \
    }                                                                                            \
    ;                                                                                            \
    static const AFX_MSGMAP messageMap = {&TheBaseClass::GetThisMessageMap, &messageEntries[0]}; \
    return &messageMap;                                                                          \
    }

/// Does not compile unless the handler converts to that type; a base class may declare it.
#define AFX_CHECK_HANDLER(type, handler) static_cast<void>(static_cast<type>(handler))

#define AFX_HANDLER(type, handler, call)                              \
    [](CCmdTarget* target, WPARAM wParam, LPARAM lParam) -> LRESULT { \
        AFX_CHECK_HANDLER(type, handler);                             \
        ThisClass* const self = static_cast<ThisClass*>(target);      \
        static_cast<void>(wParam);                                    \
        static_cast<void>(lParam);                                    \
        call                                                          \
    }

#define AFX_WM_ENTRY(message, type, handler, call) \
    {message, 0, 0, 0, nullptr, AFX_HANDLER(type, handler, call)},

/// CWnd::FromHandle, and a call with a temporary CDC that does not own the handle. For the macros below.
CWnd* AFXAPI AfxWndFromHandle(HWND window);
LRESULT AFXAPI AfxWithDC(HDC dc, BOOL (*call)(CWnd* target, CDC* dc), CWnd* target);

#define ON_WM_CREATE()                                                                        \
    AFX_WM_ENTRY(WM_CREATE, int (AFX_MSG_CALL CWnd::*)(LPCREATESTRUCT), &ThisClass::OnCreate, \
                 return self->OnCreate(reinterpret_cast<LPCREATESTRUCT>(lParam));)

#define AFX_WM_VOID(message, name) \
    AFX_WM_ENTRY(message, void (AFX_MSG_CALL CWnd::*)(), &ThisClass::name, self->name(); return 0;)
#define ON_WM_DESTROY() AFX_WM_VOID(WM_DESTROY, OnDestroy)
#define ON_WM_CLOSE() AFX_WM_VOID(WM_CLOSE, OnClose)
#define ON_WM_PAINT() AFX_WM_VOID(WM_PAINT, OnPaint)
#define ON_WM_NCDESTROY() AFX_WM_VOID(WM_NCDESTROY, OnNcDestroy)

#define ON_WM_MOVE()                                                                 \
    AFX_WM_ENTRY(WM_MOVE, void (AFX_MSG_CALL CWnd::*)(int, int), &ThisClass::OnMove, \
                 self->OnMove(AfxX(lParam), AfxY(lParam));                           \
                 return 0;)
#define ON_WM_SIZE()                                                                       \
    AFX_WM_ENTRY(WM_SIZE, void (AFX_MSG_CALL CWnd::*)(UINT, int, int), &ThisClass::OnSize, \
                 self->OnSize(static_cast<UINT>(wParam), AfxX(lParam), AfxY(lParam));      \
                 return 0;)
#define ON_WM_SIZING()                                                                        \
    AFX_WM_ENTRY(WM_SIZING, void (AFX_MSG_CALL CWnd::*)(UINT, LPRECT), &ThisClass::OnSizing,  \
                 self->OnSizing(static_cast<UINT>(wParam), reinterpret_cast<LPRECT>(lParam)); \
                 return TRUE;)

#define AFX_WM_MOUSE(message, name)                                                         \
    AFX_WM_ENTRY(message, void (AFX_MSG_CALL CWnd::*)(UINT, CPoint), &ThisClass::name,      \
                 self->name(static_cast<UINT>(wParam), CPoint(AfxX(lParam), AfxY(lParam))); \
                 return 0;)
#define ON_WM_LBUTTONDOWN() AFX_WM_MOUSE(WM_LBUTTONDOWN, OnLButtonDown)
#define ON_WM_LBUTTONUP() AFX_WM_MOUSE(WM_LBUTTONUP, OnLButtonUp)
#define ON_WM_LBUTTONDBLCLK() AFX_WM_MOUSE(WM_LBUTTONDBLCLK, OnLButtonDblClk)
#define ON_WM_RBUTTONDOWN() AFX_WM_MOUSE(WM_RBUTTONDOWN, OnRButtonDown)
#define ON_WM_RBUTTONUP() AFX_WM_MOUSE(WM_RBUTTONUP, OnRButtonUp)
#define ON_WM_MBUTTONDOWN() AFX_WM_MOUSE(WM_MBUTTONDOWN, OnMButtonDown)
#define ON_WM_MBUTTONUP() AFX_WM_MOUSE(WM_MBUTTONUP, OnMButtonUp)
#define ON_WM_MOUSEMOVE() AFX_WM_MOUSE(WM_MOUSEMOVE, OnMouseMove)
#define ON_WM_MOUSEWHEEL()                                                                                  \
    AFX_WM_ENTRY(WM_MOUSEWHEEL, BOOL (AFX_MSG_CALL CWnd::*)(UINT, short, CPoint), &ThisClass::OnMouseWheel, \
                 return self->OnMouseWheel(LOWORD(wParam), static_cast<short>(HIWORD(wParam)),              \
                                           CPoint(AfxX(lParam), AfxY(lParam)));)
#define ON_WM_MOUSEACTIVATE()                                                                   \
    AFX_WM_ENTRY(WM_MOUSEACTIVATE, int (AFX_MSG_CALL CWnd::*)(CWnd*, UINT, UINT),               \
                 &ThisClass::OnMouseActivate,                                                   \
                 return self->OnMouseActivate(AfxWndFromHandle(reinterpret_cast<HWND>(wParam)), \
                                              AfxLow(lParam), AfxHigh(lParam));)
#define ON_WM_SETCURSOR()                                                                                   \
    AFX_WM_ENTRY(WM_SETCURSOR, BOOL (AFX_MSG_CALL CWnd::*)(CWnd*, UINT, UINT), &ThisClass::OnSetCursor,     \
                 return self->OnSetCursor(AfxWndFromHandle(reinterpret_cast<HWND>(wParam)), AfxLow(lParam), \
                                          AfxHigh(lParam));)

#define AFX_WM_OTHERWINDOW(message, name, handle)                               \
    AFX_WM_ENTRY(message, void (AFX_MSG_CALL CWnd::*)(CWnd*), &ThisClass::name, \
                 self->name(AfxWndFromHandle(reinterpret_cast<HWND>(handle)));  \
                 return 0;)
#define ON_WM_SETFOCUS() AFX_WM_OTHERWINDOW(WM_SETFOCUS, OnSetFocus, wParam)
#define ON_WM_KILLFOCUS() AFX_WM_OTHERWINDOW(WM_KILLFOCUS, OnKillFocus, wParam)
#define ON_WM_CAPTURECHANGED() AFX_WM_OTHERWINDOW(WM_CAPTURECHANGED, OnCaptureChanged, lParam)
#define ON_WM_ACTIVATE()                                                                                    \
    AFX_WM_ENTRY(                                                                                           \
        WM_ACTIVATE, void (AFX_MSG_CALL CWnd::*)(UINT, CWnd*, BOOL), &ThisClass::OnActivate,                \
        self->OnActivate(LOWORD(wParam), AfxWndFromHandle(reinterpret_cast<HWND>(lParam)), HIWORD(wParam)); \
        return 0;)
#define ON_WM_SHOWWINDOW()                                                                         \
    AFX_WM_ENTRY(WM_SHOWWINDOW, void (AFX_MSG_CALL CWnd::*)(BOOL, UINT), &ThisClass::OnShowWindow, \
                 self->OnShowWindow(wParam != 0, static_cast<UINT>(lParam));                       \
                 return 0;)
#define ON_WM_ENABLE()                                                               \
    AFX_WM_ENTRY(WM_ENABLE, void (AFX_MSG_CALL CWnd::*)(BOOL), &ThisClass::OnEnable, \
                 self->OnEnable(wParam != 0);                                        \
                 return 0;)
#define ON_WM_GETMINMAXINFO()                                                                             \
    AFX_WM_ENTRY(WM_GETMINMAXINFO, void (AFX_MSG_CALL CWnd::*)(MINMAXINFO*), &ThisClass::OnGetMinMaxInfo, \
                 self->OnGetMinMaxInfo(reinterpret_cast<MINMAXINFO*>(lParam));                            \
                 return 0;)
#define ON_WM_ERASEBKGND()                                                                                   \
    AFX_WM_ENTRY(                                                                                            \
        WM_ERASEBKGND, BOOL (AFX_MSG_CALL CWnd::*)(CDC*), &ThisClass::OnEraseBkgnd,                          \
        return AfxWithDC(                                                                                    \
            reinterpret_cast<HDC>(wParam),                                                                   \
            [](CWnd* window, CDC* dc) -> BOOL { return static_cast<ThisClass*>(window)->OnEraseBkgnd(dc); }, \
            self);)
#define ON_WM_TIMER()                                                                  \
    AFX_WM_ENTRY(WM_TIMER, void (AFX_MSG_CALL CWnd::*)(UINT_PTR), &ThisClass::OnTimer, \
                 self->OnTimer(static_cast<UINT_PTR>(wParam));                         \
                 return 0;)

#define AFX_WM_KEY(message, name)                                                          \
    AFX_WM_ENTRY(message, void (AFX_MSG_CALL CWnd::*)(UINT, UINT, UINT), &ThisClass::name, \
                 self->name(static_cast<UINT>(wParam), AfxLow(lParam), AfxHigh(lParam));   \
                 return 0;)
#define ON_WM_KEYDOWN() AFX_WM_KEY(WM_KEYDOWN, OnKeyDown)
#define ON_WM_KEYUP() AFX_WM_KEY(WM_KEYUP, OnKeyUp)
#define ON_WM_CHAR() AFX_WM_KEY(WM_CHAR, OnChar)
#define ON_WM_SYSKEYDOWN() AFX_WM_KEY(WM_SYSKEYDOWN, OnSysKeyDown)
#define ON_WM_SYSKEYUP() AFX_WM_KEY(WM_SYSKEYUP, OnSysKeyUp)
#define ON_WM_SYSCHAR() AFX_WM_KEY(WM_SYSCHAR, OnSysChar)

#define ON_MESSAGE(message, memberFxn)                                               \
    AFX_WM_ENTRY(message, LRESULT (AFX_MSG_CALL CWnd::*)(WPARAM, LPARAM), memberFxn, \
                 return (self->*(memberFxn))(wParam, lParam);)
#define ON_REGISTERED_MESSAGE(nMessageVariable, memberFxn)                         \
    {                                                                              \
        0xC000, 0, 0, 0, &(nMessageVariable),                                      \
            AFX_HANDLER(LRESULT (AFX_MSG_CALL CWnd::*)(WPARAM, LPARAM), memberFxn, \
                        return (self->*(memberFxn))(wParam, lParam);)              \
    }                                                                              \
    ,

#define ON_COMMAND(id, memberFxn) ON_CONTROL(CN_COMMAND, id, memberFxn)
#define ON_COMMAND_RANGE(id, idLast, memberFxn)                                            \
    {                                                                                      \
        WM_COMMAND, CN_COMMAND, static_cast<UINT>(id), static_cast<UINT>(idLast), nullptr, \
            AFX_HANDLER(void (AFX_MSG_CALL CCmdTarget::*)(UINT), memberFxn,                \
                        (self->*(memberFxn))(static_cast<UINT>(wParam));                   \
                        return 0;)                                                         \
    }                                                                                      \
    ,
#define ON_CONTROL(wNotifyCode, id, memberFxn)                                                             \
    {                                                                                                      \
        WM_COMMAND, static_cast<UINT>(wNotifyCode), static_cast<UINT>(id), static_cast<UINT>(id), nullptr, \
            AFX_HANDLER(void (AFX_MSG_CALL CCmdTarget::*)(), memberFxn, (self->*(memberFxn))(); return 0;) \
    }                                                                                                      \
    ,

constexpr WORD AfxLow(LPARAM lParam) {
    return LOWORD(static_cast<DWORD_PTR>(lParam));
}
constexpr WORD AfxHigh(LPARAM lParam) {
    return HIWORD(static_cast<DWORD_PTR>(lParam));
}
/// Signed coordinates from lParam's words.
constexpr int AfxX(LPARAM lParam) {
    return static_cast<short>(AfxLow(lParam));
}
constexpr int AfxY(LPARAM lParam) {
    return static_cast<short>(AfxHigh(lParam));
}
