#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/cad/core/Command.h"

namespace cad {

/// A command that the program itself brings along.
struct BuiltInCommand {
    std::string name;
    std::vector<std::string> aliases;
    /// One line for HELP.
    std::string help;
    /// May run inside another command with a leading apostrophe.
    bool transparent = false;
    std::function<std::unique_ptr<Command>()> make;
};

const std::vector<BuiltInCommand>& builtInCommands();
/// By name or alias, without regard to case; a leading underscore is allowed. Null when there is none.
const BuiltInCommand* findBuiltIn(const std::string& typedName);

/// A command that a loaded module registered; it runs to its end in one call.
struct ExternalCommand {
    std::string globalName;
    bool transparent = false;
    /// Leaves nothing in the history: no line, no recall, no repetition.
    bool noHistory = false;
    std::function<void()> run;
};

/// The commands of the loaded modules.
class ExternalCommands {
public:
    virtual ~ExternalCommands() = default;
    /// By the name as typed, local or, with a leading underscore, global; without regard to case.
    virtual std::optional<ExternalCommand> find(const std::string& typedName) const = 0;
};

}  // namespace cad
