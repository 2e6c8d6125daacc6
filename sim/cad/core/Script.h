#pragma once

#include <optional>
#include <string>
#include <vector>

namespace cad {

/// A script's lines as they would be typed, each with its Enter: a blank line is a lone Enter, a line that
/// begins with a semicolon is a remark and left out.
std::vector<std::string> parseScript(const std::string& text);

/// Nothing when the file cannot be read. UTF-8, with or without a byte-order mark.
std::optional<std::vector<std::string>> readScript(const std::string& path);

}  // namespace cad
