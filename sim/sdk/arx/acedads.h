#pragma once

#include "adsdef.h"

/// Reads a system variable into the result buffer: RTNORM, or RTERROR when there is none of that name.
/// The string of an RTSTR result is the caller's, to be released with acutDelString.
int acedGetVar(const ACHAR* name, resbuf* result);
