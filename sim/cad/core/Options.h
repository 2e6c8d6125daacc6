#pragma once

#include <optional>
#include <string>
#include <vector>

namespace cad {

/// The program's command-line options.
struct Options {
    std::vector<std::string> modules;
    std::string script;
    std::string token;
    /// Empty for the user's default state file; unused with `noState`.
    std::string stateFile;
    bool noState = false;
    bool noSignIn = false;
    /// 0 for any free port; no control interface without a value.
    std::optional<int> controlPort;
    /// In pixels; 0 for the remembered or default size.
    int width = 0;
    int height = 0;
    /// The value for COLORTHEME.
    std::optional<int> theme;
    std::string logFile;
    bool echo = false;
    bool help = false;
    bool version = false;
};

/// Parses the arguments after the program name. On failure returns nullopt and sets `error` to one line.
std::optional<Options> parseOptions(const std::vector<std::string>& arguments, std::string& error);

/// What --help prints.
std::string optionsHelp();

}  // namespace cad
