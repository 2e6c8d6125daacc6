#pragma once

#include <optional>
#include <string>
#include <vector>

namespace cad {

/// What the command line asked for.
struct Options {
    std::vector<std::string> modules;
    std::string script;
    std::string token;
    /// Empty: the user's own state file, unless `noState`.
    std::string stateFile;
    bool noState = false;
    bool noSignIn = false;
    /// 0 asks for any free port.
    std::optional<int> controlPort;
    /// 0: as remembered, or the default.
    int width = 0;
    int height = 0;
    /// The value for COLORTHEME.
    std::optional<int> theme;
    std::string logFile;
    bool echo = false;
    bool help = false;
    bool version = false;
};

/// Reads the arguments after the program's name. Otherwise returns nothing and puts one line into `error`.
std::optional<Options> parseOptions(const std::vector<std::string>& arguments, std::string& error);

/// What --help prints.
std::string optionsHelp();

}  // namespace cad
