#include "host/ZR_ZentriModule.h"

ZR_ZentriPaletteSet* g_zentriPaletteSet = nullptr;
ZR_ZentriPalette* g_zentriPalette = nullptr;
ZR_ZentriSysReactor* g_zentriSysReactor = nullptr;

ZR_ZentriPalette* zentriPalette() {
    return g_zentriPaletteSet != nullptr ? g_zentriPalette : nullptr;
}

AC_IMPLEMENT_EXTENSION_MODULE(theArxDLL);
