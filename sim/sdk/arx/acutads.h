#pragma once

#include "adsdef.h"

/// Prints on the host's command line; formats as _stprintf does (%s takes wide text). Any thread.
/// Always RTNORM.
int acutPrintf(const ACHAR* format, ...);
