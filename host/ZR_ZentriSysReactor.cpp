#include "host/ZR_ZentriSysReactor.h"

#include <tchar.h>

#include "host/core/ZR_ZentriColorTheme.h"
#include "host/core/ZR_ZentriPaletteAccess.h"

void ZR_ZentriSysReactor::sysVarChanged(const ACHAR* variableName, ZR_SysVarSuccess success) {
    ZR_ZentriPaletteAccess* const palette = zentriPaletteAccess();
    if (palette == nullptr || _tcscmp(variableName, _T("COLORTHEME")) != 0 || !success) {
        return;
    }
    palette->setColorTheme(readColorTheme());
}
