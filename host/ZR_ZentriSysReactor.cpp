#include "host/ZR_ZentriSysReactor.h"

#include <tchar.h>

#include "host/ZR_ZentriModule.h"
#include "host/ZR_ZentriPalette.h"
#include "host/core/ZR_ZentriColorTheme.h"

void ZR_ZentriSysReactor::sysVarChanged(const ACHAR* variableName, bool success) {
    ZR_ZentriPalette* const palette = zentriPalette();
    if (palette == nullptr || _tcscmp(variableName, _T("COLORTHEME")) != 0 || !success) {
        return;
    }
    palette->setColorTheme(readColorTheme());
}
