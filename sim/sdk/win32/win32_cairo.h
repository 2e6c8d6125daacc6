#pragma once

// Linux only: the cairo context behind a device context, for programs that draw with cairo and pango.

#include "windef.h"

#include <cairo.h>
#include <pango/pangocairo.h>

/// The cairo context of a device context: origin at the client area's top left, clipped to the client area
/// (and, between BeginPaint and EndPaint, drawn to an off-screen picture that EndPaint shows at once). It
/// belongs to the device context and ends with EndPaint or ReleaseDC.
WIN32API cairo_t* win32Cairo(HDC dc);

/// A text layout for that context in the slice's user-interface font. The caller frees it with
/// g_object_unref.
WIN32API PangoLayout* win32TextLayout(HDC dc, LPCWSTR text, int length);
