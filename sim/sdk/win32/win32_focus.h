#pragma once

// How events of the X server reach the focus and the capture. Main thread.

#include "win32_window.h"

namespace win32 {

/// The server's focus came to the top-level window (onProxy: to its proxy, where it belongs). The event's
/// sequence number tells events that our own later request has overtaken.
void serverFocusIn(Window& topLevel, unsigned sequence, bool onProxy);
void serverFocusOut(Window& topLevel, unsigned sequence);
/// Some window of the screen went away: where no window manager cares for it, the focus may have fallen to
/// the root (a dialog of Qt was closed), and then our last active window takes it.
void reclaimServerFocus();

HWND focusWindow();
HWND captureWindow();
void captureLost();

}  // namespace win32
