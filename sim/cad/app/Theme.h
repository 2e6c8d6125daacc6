#pragma once

#include "sim/cad/app/Canvas.h"

namespace cad {

/// The colours of the program's windows in the light or the dark theme.
struct Theme {
    Color frame;
    Color caption;
    Color popup;
    Color menuHighlight;
    Color text;
    Color mutedText;
    Color border;
    Color view;
    Color gridMinor;
    Color gridMajor;
    Color axisX;
    Color axisY;
    Color crosshair;
    Color entity;
    Color preview;
    Color accent;
    Color history;
    Color input;
    Color inputText;
};

/// The theme for a value of COLORTHEME: 1 light, 0 dark.
const Theme& themeFor(int colorTheme);

}  // namespace cad
