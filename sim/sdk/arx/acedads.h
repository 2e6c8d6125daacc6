#pragma once

// Simplified: of the editor's global functions, only acedGetVar.

#include "adsdef.h"

/// Reads a system variable into the result buffer: RTNORM, or RTERROR if there is no such variable. The
/// caller owns the string of an RTSTR result and releases it with acutDelString. UI thread.
int acedGetVar(const ACHAR* name, resbuf* result);
