#pragma once

// Windows, messages, input, timers, hooks, menus and message boxes.
//
// Windows are X windows and can be created on the main thread only; every thread has a message queue.
// GetMessage waits in GLib's default main context, so the context's other sources (Qt's timers, posted events
// and windows) are dispatched from it. The HWND of a foreign window (Qt's) is an X id too: the query
// functions ask the X server about it, and messages to it are delivered to the registered toolkit
// (win32_foreign.h).
//
// Simplified: no dialogs, no controls, no accelerators, no minimizing, no input methods or dead keys; the
// non-client area is a menu bar and, if no window manager runs, a caption that cannot be dragged; no
// WM_NCCALCSIZE; an HWND_MESSAGE window is a hidden top-level window; the update region is one rectangle.

#include "winbase.h"
#include "windef.h"
#include "wingdi.h"
#include "winmsg.h"

using WNDPROC = LRESULT(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);
using TIMERPROC = void(CALLBACK*)(HWND, UINT, UINT_PTR, DWORD);
using HOOKPROC = LRESULT(CALLBACK*)(int, WPARAM, LPARAM);
using WNDENUMPROC = BOOL(CALLBACK*)(HWND, LPARAM);

struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};
using LPMSG = MSG*;
using PMSG = MSG*;
using tagMSG = MSG;

struct WNDCLASSW {
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;
    LPCWSTR lpszMenuName;
    LPCWSTR lpszClassName;
};
using LPWNDCLASSW = WNDCLASSW*;

struct WNDCLASSEXW {
    UINT cbSize;
    UINT style;
    WNDPROC lpfnWndProc;
    int cbClsExtra;
    int cbWndExtra;
    HINSTANCE hInstance;
    HICON hIcon;
    HCURSOR hCursor;
    HBRUSH hbrBackground;
    LPCWSTR lpszMenuName;
    LPCWSTR lpszClassName;
    HICON hIconSm;
};
using LPWNDCLASSEXW = WNDCLASSEXW*;

struct CREATESTRUCTW {
    LPVOID lpCreateParams;
    HINSTANCE hInstance;
    HMENU hMenu;
    HWND hwndParent;
    int cy;
    int cx;
    int y;
    int x;
    LONG style;
    LPCWSTR lpszName;
    LPCWSTR lpszClass;
    DWORD dwExStyle;
};
using LPCREATESTRUCTW = CREATESTRUCTW*;

struct CBT_CREATEWNDW {
    CREATESTRUCTW* lpcs;
    HWND hwndInsertAfter;
};
using LPCBT_CREATEWNDW = CBT_CREATEWNDW*;

struct CWPSTRUCT {
    LPARAM lParam;
    WPARAM wParam;
    UINT message;
    HWND hwnd;
};

struct WINDOWPOS {
    HWND hwnd;
    HWND hwndInsertAfter;
    int x;
    int y;
    int cx;
    int cy;
    UINT flags;
};

struct MINMAXINFO {
    POINT ptReserved;
    POINT ptMaxSize;
    POINT ptMaxPosition;
    POINT ptMinTrackSize;
    POINT ptMaxTrackSize;
};

struct NMHDR {
    HWND hwndFrom;
    UINT_PTR idFrom;
    UINT code;
};
using LPNMHDR = NMHDR*;

struct PAINTSTRUCT {
    HDC hdc;
    BOOL fErase;
    RECT rcPaint;
    BOOL fRestore;
    BOOL fIncUpdate;
    BYTE rgbReserved[32];
};
using LPPAINTSTRUCT = PAINTSTRUCT*;

// Classes and windows. Main thread.
WIN32API ATOM RegisterClassW(const WNDCLASSW* windowClass);
WIN32API ATOM RegisterClassExW(const WNDCLASSEXW* windowClass);
WIN32API BOOL UnregisterClassW(LPCWSTR className, HINSTANCE instance);
WIN32API BOOL GetClassInfoW(HINSTANCE instance, LPCWSTR className, LPWNDCLASSW windowClass);
WIN32API int GetClassNameW(HWND window, LPWSTR buffer, int size);
/// Calls the WH_CBT hooks with HCBT_CREATEWND, then sends WM_NCCREATE, WM_CREATE, WM_SIZE and WM_MOVE.
WIN32API HWND CreateWindowExW(DWORD exStyle, LPCWSTR className, LPCWSTR windowName, DWORD style, int x, int y,
                              int width, int height, HWND parent, HMENU menu, HINSTANCE instance,
                              LPVOID parameter);
WIN32API BOOL DestroyWindow(HWND window);
WIN32API BOOL ShowWindow(HWND window, int command);
WIN32API BOOL UpdateWindow(HWND window);
WIN32API BOOL InvalidateRect(HWND window, const RECT* rectangle, BOOL erase);
WIN32API BOOL ValidateRect(HWND window, const RECT* rectangle);
WIN32API BOOL RedrawWindow(HWND window, const RECT* rectangle, HRGN region, UINT flags);
WIN32API BOOL GetUpdateRect(HWND window, LPRECT rectangle, BOOL erase);
WIN32API BOOL MoveWindow(HWND window, int x, int y, int width, int height, BOOL repaint);
WIN32API BOOL SetWindowPos(HWND window, HWND insertAfter, int x, int y, int width, int height, UINT flags);
WIN32API BOOL BringWindowToTop(HWND window);
WIN32API BOOL GetWindowRect(HWND window, LPRECT rectangle);
WIN32API BOOL GetClientRect(HWND window, LPRECT rectangle);
WIN32API BOOL AdjustWindowRectEx(LPRECT rectangle, DWORD style, BOOL menu, DWORD exStyle);
WIN32API BOOL ClientToScreen(HWND window, LPPOINT point);
WIN32API BOOL ScreenToClient(HWND window, LPPOINT point);
WIN32API int MapWindowPoints(HWND from, HWND to, LPPOINT points, UINT count);
WIN32API HWND GetParent(HWND window);
WIN32API HWND SetParent(HWND window, HWND newParent);
WIN32API HWND GetAncestor(HWND window, UINT kind);
WIN32API HWND GetWindow(HWND window, UINT relation);
WIN32API HWND GetTopWindow(HWND window);
WIN32API HWND GetDlgItem(HWND window, int id);
WIN32API int GetDlgCtrlID(HWND window);
WIN32API BOOL EnumChildWindows(HWND window, WNDENUMPROC callback, LPARAM parameter);
WIN32API BOOL EnumThreadWindows(DWORD threadId, WNDENUMPROC callback, LPARAM parameter);
WIN32API HWND FindWindowW(LPCWSTR className, LPCWSTR windowName);
WIN32API HWND WindowFromPoint(POINT point);
WIN32API HWND GetDesktopWindow();
WIN32API DWORD GetWindowThreadProcessId(HWND window, LPDWORD processId);
WIN32API BOOL IsChild(HWND parent, HWND window);
WIN32API BOOL IsWindow(HWND window);
WIN32API BOOL IsWindowVisible(HWND window);
WIN32API BOOL IsIconic(HWND window);
WIN32API BOOL IsZoomed(HWND window);
WIN32API BOOL EnableWindow(HWND window, BOOL enable);
WIN32API BOOL IsWindowEnabled(HWND window);
WIN32API LONG_PTR GetWindowLongPtrW(HWND window, int index);
WIN32API LONG_PTR SetWindowLongPtrW(HWND window, int index, LONG_PTR value);
WIN32API LONG GetWindowLongW(HWND window, int index);
WIN32API LONG SetWindowLongW(HWND window, int index, LONG value);
WIN32API HANDLE GetPropW(HWND window, LPCWSTR name);
WIN32API BOOL SetPropW(HWND window, LPCWSTR name, HANDLE value);
WIN32API HANDLE RemovePropW(HWND window, LPCWSTR name);
WIN32API int GetWindowTextW(HWND window, LPWSTR buffer, int size);
WIN32API int GetWindowTextLengthW(HWND window);
WIN32API BOOL SetWindowTextW(HWND window, LPCWSTR text);

// Messages. GetMessage and PeekMessage process sent messages first, then retrieve posted messages, input,
// WM_PAINT and WM_TIMER, in this order, and WM_QUIT when nothing else is left.
WIN32API BOOL GetMessageW(LPMSG message, HWND window, UINT first, UINT last);
WIN32API BOOL PeekMessageW(LPMSG message, HWND window, UINT first, UINT last, UINT remove);
WIN32API BOOL WaitMessage();
/// Posts WM_CHAR or WM_SYSCHAR for a key message that has a character: for a real key event its text, for a
/// message that a program made what a US keyboard types with the current Shift, Ctrl and Caps Lock states.
WIN32API BOOL TranslateMessage(const MSG* message);
WIN32API LRESULT DispatchMessageW(const MSG* message);
WIN32API BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
WIN32API BOOL PostThreadMessageW(DWORD threadId, UINT message, WPARAM wParam, LPARAM lParam);
WIN32API void PostQuitMessage(int exitCode);
WIN32API LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
WIN32API BOOL InSendMessage();
WIN32API LRESULT DefWindowProcW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
WIN32API LRESULT CallWindowProcW(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam);
WIN32API UINT RegisterWindowMessageW(LPCWSTR name);
WIN32API LONG GetMessageTime();
WIN32API DWORD GetMessagePos();

// Focus and input. Main thread.
WIN32API HWND SetFocus(HWND window);
WIN32API HWND GetFocus();
WIN32API HWND SetActiveWindow(HWND window);
WIN32API HWND GetActiveWindow();
WIN32API BOOL SetForegroundWindow(HWND window);
WIN32API HWND GetForegroundWindow();
WIN32API HWND SetCapture(HWND window);
WIN32API BOOL ReleaseCapture();
WIN32API HWND GetCapture();
/// The state as of the last key message that the calling thread retrieved, whether real or posted.
WIN32API SHORT GetKeyState(int virtualKey);
WIN32API SHORT GetAsyncKeyState(int virtualKey);
WIN32API BOOL GetCursorPos(LPPOINT point);
WIN32API BOOL SetCursorPos(int x, int y);
WIN32API HCURSOR LoadCursorW(HINSTANCE instance, LPCWSTR name);
WIN32API HCURSOR SetCursor(HCURSOR cursor);
WIN32API UINT GetDoubleClickTime();

// Timers, with or without a window.
constexpr UINT USER_TIMER_MINIMUM = 0x0000000A;
WIN32API UINT_PTR SetTimer(HWND window, UINT_PTR id, UINT milliseconds, TIMERPROC procedure);
WIN32API BOOL KillTimer(HWND window, UINT_PTR id);

// Hooks of the calling thread: WH_GETMESSAGE, WH_CALLWNDPROC and, of WH_CBT, HCBT_CREATEWND and
// HCBT_DESTROYWND. The last one installed is called first; it calls the next one with CallNextHookEx.
WIN32API HHOOK SetWindowsHookExW(int kind, HOOKPROC procedure, HINSTANCE module, DWORD threadId);
WIN32API BOOL UnhookWindowsHookEx(HHOOK hook);
WIN32API LRESULT CallNextHookEx(HHOOK hook, int code, WPARAM wParam, LPARAM lParam);

// Menus: menu bars and popups; a choice posts WM_COMMAND. In an item's text "&" marks the access key, and
// "\t" separates the shortcut.
WIN32API HMENU CreateMenu();
WIN32API HMENU CreatePopupMenu();
WIN32API BOOL DestroyMenu(HMENU menu);
WIN32API BOOL IsMenu(HMENU menu);
WIN32API BOOL AppendMenuW(HMENU menu, UINT flags, UINT_PTR idOrPopup, LPCWSTR text);
WIN32API BOOL DeleteMenu(HMENU menu, UINT item, UINT flags);
WIN32API int GetMenuItemCount(HMENU menu);
WIN32API HMENU GetSubMenu(HMENU menu, int position);
WIN32API UINT GetMenuItemID(HMENU menu, int position);
WIN32API int GetMenuStringW(HMENU menu, UINT item, LPWSTR buffer, int size, UINT flags);
WIN32API UINT GetMenuState(HMENU menu, UINT item, UINT flags);
WIN32API BOOL EnableMenuItem(HMENU menu, UINT item, UINT flags);
WIN32API DWORD CheckMenuItem(HMENU menu, UINT item, UINT flags);
WIN32API BOOL SetMenu(HWND window, HMENU menu);
WIN32API HMENU GetMenu(HWND window);
WIN32API BOOL DrawMenuBar(HWND window);
/// Runs the popup in a modal loop. With TPM_RETURNCMD returns the chosen id, else posts WM_COMMAND.
WIN32API BOOL TrackPopupMenu(HMENU menu, UINT flags, int x, int y, int reserved, HWND window,
                             const RECT* unused);

// Painting.
WIN32API HDC BeginPaint(HWND window, LPPAINTSTRUCT paint);
WIN32API BOOL EndPaint(HWND window, const PAINTSTRUCT* paint);
WIN32API HDC GetDC(HWND window);
WIN32API int ReleaseDC(HWND window, HDC dc);
WIN32API HWND WindowFromDC(HDC dc);

/// Shows a message box and runs a modal loop until a button is chosen; the owner is disabled meanwhile. For a
/// caller on another thread the main thread shows the box (its message loop must be running) while the caller
/// waits.
WIN32API int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT type);
WIN32API BOOL MessageBeep(UINT type);

WIN32API int GetSystemMetrics(int index);

// Rectangles.
WIN32API BOOL SetRect(LPRECT rectangle, int left, int top, int right, int bottom);
WIN32API BOOL SetRectEmpty(LPRECT rectangle);
WIN32API BOOL CopyRect(LPRECT target, const RECT* source);
WIN32API BOOL IsRectEmpty(const RECT* rectangle);
WIN32API BOOL EqualRect(const RECT* left, const RECT* right);
WIN32API BOOL PtInRect(const RECT* rectangle, POINT point);
WIN32API BOOL OffsetRect(LPRECT rectangle, int x, int y);
WIN32API BOOL InflateRect(LPRECT rectangle, int x, int y);
WIN32API BOOL IntersectRect(LPRECT result, const RECT* left, const RECT* right);
WIN32API BOOL UnionRect(LPRECT result, const RECT* left, const RECT* right);

constexpr int GET_X_LPARAM(LPARAM lParam) {
    return static_cast<SHORT>(LOWORD(static_cast<DWORD_PTR>(lParam)));
}
constexpr int GET_Y_LPARAM(LPARAM lParam) {
    return static_cast<SHORT>(HIWORD(static_cast<DWORD_PTR>(lParam)));
}
constexpr SHORT GET_WHEEL_DELTA_WPARAM(WPARAM wParam) {
    return static_cast<SHORT>(HIWORD(wParam));
}
constexpr WORD GET_KEYSTATE_WPARAM(WPARAM wParam) {
    return LOWORD(wParam);
}

// The generic names, which map to the wide functions.
using WNDCLASS = WNDCLASSW;
using WNDCLASSEX = WNDCLASSEXW;
using CREATESTRUCT = CREATESTRUCTW;
using LPCREATESTRUCT = LPCREATESTRUCTW;
using tagCREATESTRUCTW = CREATESTRUCTW;
using CBT_CREATEWND = CBT_CREATEWNDW;
#define RegisterClass RegisterClassW
#define RegisterClassEx RegisterClassExW
#define UnregisterClass UnregisterClassW
#define GetClassInfo GetClassInfoW
#define GetClassName GetClassNameW
#define CreateWindowEx CreateWindowExW
#define CreateWindowW(className, name, style, x, y, width, height, parent, menu, instance, parameter) \
    CreateWindowExW(0, className, name, style, x, y, width, height, parent, menu, instance, parameter)
#define CreateWindow CreateWindowW
#define FindWindow FindWindowW
#define GetWindowLongPtr GetWindowLongPtrW
#define SetWindowLongPtr SetWindowLongPtrW
#define GetWindowLong GetWindowLongW
#define SetWindowLong SetWindowLongW
#define GetProp GetPropW
#define SetProp SetPropW
#define RemoveProp RemovePropW
#define GetWindowText GetWindowTextW
#define GetWindowTextLength GetWindowTextLengthW
#define SetWindowText SetWindowTextW
#define GetMessage GetMessageW
#define PeekMessage PeekMessageW
#define DispatchMessage DispatchMessageW
#define PostMessage PostMessageW
#define PostThreadMessage PostThreadMessageW
#define SendMessage SendMessageW
#define DefWindowProc DefWindowProcW
#define CallWindowProc CallWindowProcW
#define RegisterWindowMessage RegisterWindowMessageW
#define LoadCursor LoadCursorW
#define SetWindowsHookEx SetWindowsHookExW
#define AppendMenu AppendMenuW
#define GetMenuString GetMenuStringW
#define MessageBox MessageBoxW
