#pragma once

#include <AcExtensionModule.h>

class ZR_ZentriPalette;
class ZR_ZentriPaletteSet;
class ZR_ZentriSysReactor;

// The module's process-wide objects, each null until initialisation has made it. (The chat's threads are in
// chat/ZR_AiChatModuleState.h, the command recorder is in host/core.) UI thread only.

extern ZR_ZentriPaletteSet* g_zentriPaletteSet;

/// Made together with the palette set, which owns it. It is not cleared when the set goes, so it points to a
/// living palette only while there is a palette set: zentriPalette() tells.
extern ZR_ZentriPalette* g_zentriPalette;

/// Attached to the editor while the module is loaded; never deleted.
extern ZR_ZentriSysReactor* g_zentriSysReactor;

/// The living palette, or null.
ZR_ZentriPalette* zentriPalette();

/// This module's MFC state.
AC_DECLARE_EXTENSION_MODULE(theArxDLL);
