#pragma once

#include <optional>

#include "sim/cad/app/Canvas.h"
#include "sim/cad/app/Theme.h"
#include "sim/cad/core/Editor.h"

namespace cad {

/// Paints an editor's drawing as its viewport shows it, with grid, axes and what the command in progress
/// would draw. The crosshair stands at the pixel when there is one.
void paintDrawing(Canvas& canvas, Editor& editor, const Theme& theme, std::optional<Point> crosshair);

}  // namespace cad
