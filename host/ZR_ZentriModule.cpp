#include "host/ZR_ZentriModule.h"

ZR_ZentriPaletteSet* g_zentriPaletteSet = nullptr;
ZR_ZentriSysReactor* g_zentriSysReactor = nullptr;

AC_IMPLEMENT_EXTENSION_MODULE(theArxDLL);
