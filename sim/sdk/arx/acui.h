#pragma once

#include "adui.h"

/// Prepares the dialog library's resources for the calling module; DllMain calls it when the module is
/// attached. Simplified: keeps count only.
void InitAcUiDLL();
