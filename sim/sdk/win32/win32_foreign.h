#pragma once

// Linux only: the interface that a toolkit on the same GLib main loop implements so that its windows work as
// HWNDs. The Qt bridge (qt_bridge.h) is the only implementation.

#include "winuser.h"

/// All functions are called on the main thread.
class Win32ForeignToolkit {
public:
    virtual ~Win32ForeignToolkit() = default;

    /// Whether the window belongs to the toolkit.
    virtual bool owns(HWND window) = 0;
    /// The window's parent or owner, which may be one of the slice's windows; null for none.
    virtual HWND parent(HWND window) = 0;
    /// The window's rectangle in screen pixels; false for a window that is not the toolkit's.
    virtual bool rectangle(HWND window, RECT& screen) = 0;
    /// Processes a message sent or dispatched to one of the toolkit's windows, as its window procedure.
    virtual LRESULT deliver(const MSG& message) = 0;
    /// One of the toolkit's windows has gained or lost the focus. Called while the focus change is in
    /// progress.
    virtual void focusChanged(HWND window, bool focused) = 0;
    /// Translates and dispatches a message retrieved while one of the toolkit's event loops runs. Without a
    /// toolkit the slice calls TranslateMessage and DispatchMessage.
    virtual void dispatchInForeignLoop(MSG& message) = 0;
    /// WM_QUIT has been retrieved while one of the toolkit's event loops runs: that loop should exit. As with
    /// Qt on Windows, the message is then lost to the program's own message loop.
    virtual void quitForeignLoop() = 0;
    /// The slice is about to wait: the toolkit must flush its buffered requests.
    virtual void aboutToWait() = 0;
};

/// Installs the toolkit; null removes it. The caller keeps ownership. Main thread.
WIN32API void win32SetForeignToolkit(Win32ForeignToolkit* toolkit);
