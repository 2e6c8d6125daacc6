#pragma once

// Linux only: what a toolkit that shares the process's GLib loop tells the slice, so that its windows behave
// as HWNDs. The Qt bridge (qt_bridge.h) is the one user.

#include "winuser.h"

/// All calls come on the main thread.
class Win32ForeignToolkit {
public:
    virtual ~Win32ForeignToolkit() = default;

    /// Whether the window belongs to the toolkit.
    virtual bool owns(HWND window) = 0;
    /// The window's parent (or owner), which may be one of the slice's; null when it has none.
    virtual HWND parent(HWND window) = 0;
    /// Where the window is on the screen; false when it has no place yet.
    virtual bool rectangle(HWND window, RECT& screen) = 0;
    /// A message sent or dispatched to one of the toolkit's windows.
    virtual LRESULT deliver(const MSG& message) = 0;
    /// The slice's focus went to one of the toolkit's windows, or left it. Called in the middle of the
    /// change.
    virtual void focusChanged(HWND window, bool focused) = 0;
    /// A message taken from the queue while a loop of the toolkit runs. The default of the slice, when there
    /// is no toolkit, is TranslateMessage and DispatchMessage.
    virtual void dispatchInForeignLoop(MSG& message) = 0;
    /// WM_QUIT stands in the queue while a loop of the toolkit runs: that loop should end. The message stays
    /// for the program's own loop. Called once for each PostQuitMessage.
    virtual void quitForeignLoop() = 0;
    /// The slice is about to wait: what the toolkit has buffered must go out.
    virtual void aboutToWait() = 0;
};

/// Installs the toolkit; null takes it away. The caller keeps ownership. Main thread.
WIN32API void win32SetForeignToolkit(Win32ForeignToolkit* toolkit);
