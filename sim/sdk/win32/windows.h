#pragma once

// A slice of the Win32 API for Linux, over X11 (xcb), GLib's default main context and cairo/Pango: what our
// own sources use, with the documented names, values and behaviour.
//
// Simplified: a function that is missing fails at link time, and an unsupported use of one aborts with its
// name. String functions exist in their wide form only (as if UNICODE were defined), except for the module
// functions. tchar.h has the C run-time's wide and time functions, the latter in time.h on Windows.

#include "guiddef.h"
#include "tchar.h"
#include "winbase.h"
#include "windef.h"
#include "winerror.h"
#include "wingdi.h"
#include "winuser.h"
