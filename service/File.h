#pragma once

#include <optional>
#include <string>

namespace zentri::service {

/// A file's bytes; nothing when it cannot be read (missing, not permitted, a folder).
std::optional<std::string> readFile(const std::string& path);

}  // namespace zentri::service
