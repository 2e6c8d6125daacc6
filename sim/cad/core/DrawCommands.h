#pragma once

#include <memory>

#include "sim/cad/core/Command.h"

namespace cad {

std::unique_ptr<Command> makeLineCommand();
std::unique_ptr<Command> makePolylineCommand();
std::unique_ptr<Command> makeCircleCommand();
std::unique_ptr<Command> makeRectangleCommand();

}  // namespace cad
