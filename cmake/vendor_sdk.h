#pragma once

// MFC and the vendor's SDK in the order of the SDK's own projects. They come before all other headers,
// because the SDK's headers do not include what they need (the slices' do) and use identifiers that Qt's
// headers define as macros (signals, slots, emit).

// GDI+ calls min and max unqualified and relies on the macros of windows.h, which NOMINMAX removes. Unsure:
// whether the SDK's headers rely on them too. If so, undefine NOMINMAX around those headers and the two
// macros after them.
#include <algorithm>

namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus

// MFC's core and what the classes of the dialog library (adui.h) derive from: control bars, OLE drag and
// drop, common controls, common dialogs and property sheets.
#include <afxwin.h>

#include <afxext.h>

#include <afxole.h>

#include <afxodlgs.h>

#include <afxcmn.h>

#include <afxdlgs.h>

#include <afxtempl.h>

#include <arxHeaders.h>

#include <acui.h>

#include <adui.h>

#include <AdUiPalette.h>
#include <AdUiPaletteSet.h>
