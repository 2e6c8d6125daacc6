#pragma once

#include <optional>
#include <string>
#include <vector>

namespace cad {

/// The script's lines as they would be typed, each ending in a line feed (Enter). A blank line is Enter
/// alone; a line that starts with a semicolon is a comment and is skipped.
std::vector<std::string> parseScript(const std::string& text);

/// Reads a script in UTF-8, with or without a byte order mark; nullopt if the file cannot be read.
std::optional<std::vector<std::string>> readScript(const std::string& path);

}  // namespace cad
