#include "host/core/ZR_ZentriColorTheme.h"

#include <acedads.h>
#include <tchar.h>

int readColorTheme() {
    resbuf result = {};
    acedGetVar(_T("COLORTHEME"), &result);
    return result.resval.rint;
}
