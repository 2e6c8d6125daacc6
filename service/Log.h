#pragma once

#include <string_view>

namespace zentri::service {

/// One line on standard error, with the program's name; lines of several threads do not mix.
void logLine(std::string_view text);

}  // namespace zentri::service
