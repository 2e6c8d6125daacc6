#pragma once

// Simplified: of the utility functions, only acutPrintf.

#include "adsdef.h"

/// Prints on the host's command line; formats as _stprintf does (%s takes wide text). UI thread. Always
/// returns RTNORM.
int acutPrintf(const ACHAR* format, ...);
