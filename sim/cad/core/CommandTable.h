#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/cad/core/Command.h"

namespace cad {

/// A command implemented by the program itself.
///
/// To add one:
/// 1. Derive it from Command (Command.h) in DrawCommands, ModifyCommands, ViewCommands or
///    SystemCommands, with a make…Command() function in that header. Options are the keywords in
///    the brackets of its prompt (Prompt.h).
/// 2. Add a row to builtInCommands() in CommandTable.cpp: name, aliases, line for HELP, whether
///    transparent.
/// 3. Add it to the list in ../README.md, to a menu in app/MainMenu.cpp if it should have an item,
///    and test it in tests/sim/cad.
struct BuiltInCommand {
    std::string name;
    std::vector<std::string> aliases;
    /// One line for HELP.
    std::string help;
    /// May run inside another command when typed with a leading apostrophe.
    bool transparent = false;
    std::function<std::unique_ptr<Command>()> make;
};

const std::vector<BuiltInCommand>& builtInCommands();
/// Finds a command by name or alias, ignoring case; a leading underscore is allowed. Null if there is none.
const BuiltInCommand* findBuiltIn(const std::string& typedName);

/// A command that a loaded module registered; it runs to completion in one call.
struct ExternalCommand {
    std::string globalName;
    bool transparent = false;
    /// Leaves no trace: prints no line, is not recalled by the arrow keys and not repeated by Enter.
    bool noHistory = false;
    std::function<void()> run;
};

/// The commands of the loaded modules.
class ExternalCommands {
public:
    virtual ~ExternalCommands() = default;
    /// Finds a command by its local name or, with a leading underscore, by its global name, ignoring case.
    virtual std::optional<ExternalCommand> find(const std::string& typedName) const = 0;
};

}  // namespace cad
