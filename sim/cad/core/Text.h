#pragma once

#include <optional>
#include <string>
#include <vector>

// Text in the core is UTF-8; only windows and modules use UTF-16.

namespace cad {

/// Malformed sequences become U+FFFD.
std::u32string fromUtf8(const std::string& text);
std::string toUtf8(const std::u32string& text);
std::string toUtf8(char32_t character);

/// For names of commands, keywords and variables: only ASCII letters have case.
std::string upper(std::string text);
bool sameName(const std::string& a, const std::string& b);
std::string trimmed(const std::string& text);
bool startsWith(const std::string& text, const std::string& start);
/// Splits at line feeds and drops carriage returns before them. A final line feed adds no empty line.
std::vector<std::string> splitLines(const std::string& text);
/// Whether the name matches a pattern with * and ?, ignoring case.
bool matches(const std::string& name, const std::string& pattern);

/// The whole text must be a number, whatever the locale.
std::optional<double> parseNumber(const std::string& text);
std::optional<int> parseInteger(const std::string& text);
/// Fixed-point notation with this many decimals, as prompts show values.
std::string formatNumber(double value, int decimals);

/// The contents of the file without a byte order mark; nullopt if it cannot be read.
std::optional<std::string> readTextFile(const std::string& path);

}  // namespace cad
