#pragma once

#include <memory>

#include "sim/cad/core/Command.h"

namespace cad {

std::unique_ptr<Command> makeEraseCommand();
std::unique_ptr<Command> makeUCommand();
std::unique_ptr<Command> makeUndoCommand();
std::unique_ptr<Command> makeRedoCommand();
std::unique_ptr<Command> makeListCommand();

}  // namespace cad
