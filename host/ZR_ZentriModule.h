#pragma once

#include <AcExtensionModule.h>

class ZR_ZentriPaletteSet;
class ZR_ZentriSysReactor;

// The module's process-wide objects, each null until initialisation has created it. (The chat's threads are
// in chat/ZR_AiChatModuleState.h, the command recorder and the access to the palette in host/core.) UI thread
// only.

/// Owns the palette. Null again once the module has been unloaded.
extern ZR_ZentriPaletteSet* g_zentriPaletteSet;

/// Attached to the editor while the module is loaded; never deleted.
extern ZR_ZentriSysReactor* g_zentriSysReactor;

/// This module's MFC state.
AC_DECLARE_EXTENSION_MODULE(theArxDLL);
