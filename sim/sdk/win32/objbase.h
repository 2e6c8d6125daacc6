#pragma once

// Simplified: of COM, only CoCreateGuid.

#include "guiddef.h"
#include "winerror.h"

/// Makes a random (version 4) GUID; E_INVALIDARG for null. Any thread.
WIN32API HRESULT CoCreateGuid(GUID* guid);
