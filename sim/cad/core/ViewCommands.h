#pragma once

#include <memory>

#include "sim/cad/core/Command.h"

namespace cad {

std::unique_ptr<Command> makeZoomCommand();
std::unique_ptr<Command> makePanCommand();
std::unique_ptr<Command> makeRedrawCommand();

}  // namespace cad
