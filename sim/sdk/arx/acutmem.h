#pragma once

#include "acadstrc.h"
#include "adsdef.h"

/// Copies a string; the caller releases the copy in `target` with acutDelString.
Acad::ErrorStatus acutNewString(const ACHAR* source, ACHAR*& target);
/// Releases a string and sets the pointer to null.
void acutDelString(ACHAR*& text);
