#pragma once

#include <string_view>

namespace zentri::service {

/// Writes one line to standard error, prefixed with the program's name. May be called from any thread; lines
/// do not interleave.
void logLine(std::string_view text);

}  // namespace zentri::service
