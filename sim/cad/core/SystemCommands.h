#pragma once

#include <memory>

#include "sim/cad/core/Command.h"

namespace cad {

std::unique_ptr<Command> makeSetvarCommand();
std::unique_ptr<Command> makeArxCommand();
std::unique_ptr<Command> makeScriptCommand();
std::unique_ptr<Command> makeDelayCommand();
std::unique_ptr<Command> makeHelpCommand();
std::unique_ptr<Command> makeQuitCommand();

}  // namespace cad
