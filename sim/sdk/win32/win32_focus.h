#pragma once

// Focus and capture as the X event handling uses them. Main thread.

#include "win32_window.h"

namespace win32 {

/// FocusIn: the X input focus has moved to the top-level window (onProxy: to its focus proxy, as it should).
/// The event's sequence number reveals a stale one, superseded by our own later request.
void serverFocusIn(Window& topLevel, unsigned sequence, bool onProxy);
void serverFocusOut(Window& topLevel, unsigned sequence);
/// A top-level window on the screen was unmapped or destroyed. Without a window manager the X focus may then
/// have reverted to the root (when a Qt dialog was closed); our last active window takes it back.
void reclaimServerFocus();

HWND focusWindow();
HWND captureWindow();
void captureLost();

}  // namespace win32
