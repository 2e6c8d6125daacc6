#pragma once

// Linux only: the cairo context behind a device context, for programs that draw with cairo and Pango.

#include "windef.h"

#include <cairo.h>
#include <pango/pangocairo.h>

/// The cairo context of a device context: origin at the client area's top left, clipped to the client area.
/// Between BeginPaint and EndPaint it draws into an off-screen buffer, which EndPaint shows at once. The
/// device context owns it; EndPaint or ReleaseDC destroys it.
WIN32API cairo_t* win32Cairo(HDC dc);

/// A text layout for that context in the default user-interface font. The caller owns it (g_object_unref).
WIN32API PangoLayout* win32TextLayout(HDC dc, LPCWSTR text, int length);
