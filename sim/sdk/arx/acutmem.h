#pragma once

#include "acadstrc.h"
#include "adsdef.h"

/// Copies a string into memory of its own; the copy in `target` is released with acutDelString.
Acad::ErrorStatus acutNewString(const ACHAR* source, ACHAR*& target);
/// Releases a string and clears the pointer.
void acutDelString(ACHAR*& text);
