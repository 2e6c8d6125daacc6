#pragma once

// MFC and the vendor's SDK in the order of the SDK's own projects. Their headers want others before them that
// each of the slices brings itself, and they use words that Qt's headers turn into macros (signals, slots,
// emit), so they come before all else.

#include <afxwin.h>

#include <afxext.h>
#include <afxtempl.h>

#include <arxHeaders.h>

#include <adui.h>

#include <AdUiPalette.h>
#include <AdUiPaletteSet.h>
