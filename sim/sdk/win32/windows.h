#pragma once

// A slice of the Win32 API for Linux: what our own sources use, with the documented names, values and
// behaviour, over X11 (xcb), GLib's default main context and cairo/pango. What is missing fails at link time;
// a use that is not supported ends the program with the call's name. Text calls exist in their wide form only
// (as if UNICODE were defined), but for the module functions. The C run-time's wide and time functions are in
// tchar.h, which on Windows are spread over tchar.h and time.h.

#include "guiddef.h"
#include "tchar.h"
#include "winbase.h"
#include "windef.h"
#include "winerror.h"
#include "wingdi.h"
#include "winuser.h"
