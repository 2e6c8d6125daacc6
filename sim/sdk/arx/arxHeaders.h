#pragma once

#include <afx.h>
#include <afxext.h>
#include <afxwin.h>

#include "AcExtensionModule.h"
#include "acadstrc.h"
#include "accmd.h"
#include "acdocman.h"
#include "aced.h"
#include "acutmem.h"
#include "adslib.h"
#include "adui.h"
#include "arxEntryPoint.h"
#include "rxdlinkr.h"
#include "rxmfcapi.h"
#include "rxregsvc.h"
