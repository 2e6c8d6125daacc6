#pragma once

#include <optional>

#include "sim/cad/app/Canvas.h"
#include "sim/cad/app/Theme.h"
#include "sim/cad/core/Editor.h"

namespace cad {

/// Paints an editor's drawing as seen through its viewport, with grid and axes. `crosshair` is in pixels;
/// without it neither the crosshair nor the preview of the command in progress is painted.
void paintDrawing(Canvas& canvas, Editor& editor, const Theme& theme, std::optional<Point> crosshair);

}  // namespace cad
