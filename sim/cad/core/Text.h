#pragma once

#include <optional>
#include <string>
#include <vector>

// The core's texts are UTF-8; only the windows and the module speak UTF-16.

namespace cad {

/// Broken sequences become U+FFFD.
std::u32string fromUtf8(const std::string& text);
std::string toUtf8(const std::u32string& text);
std::string toUtf8(char32_t character);

/// ASCII letters only: names of commands, options and variables.
std::string upper(std::string text);
bool sameName(const std::string& a, const std::string& b);
std::string trimmed(const std::string& text);
bool startsWith(const std::string& text, const std::string& start);
/// Splits at line feeds; carriage returns before them are dropped. No last empty line.
std::vector<std::string> splitLines(const std::string& text);
/// Name patterns with * and ?, without regard to case.
bool matches(const std::string& name, const std::string& pattern);

/// The whole text must be the number; the locale does not matter.
std::optional<double> parseNumber(const std::string& text);
std::optional<int> parseInteger(const std::string& text);
/// Fixed decimals, as prompts show values.
std::string formatNumber(double value, int decimals);

/// The whole file, a byte-order mark dropped; nothing when it cannot be read.
std::optional<std::string> readTextFile(const std::string& path);

}  // namespace cad
