#pragma once

#include "AdUiPalette.h"
#include "AdUiPaletteSet.h"
