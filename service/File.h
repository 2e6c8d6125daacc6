#pragma once

#include <optional>
#include <string>

namespace zentri::service {

/// The file's bytes; nullopt when it cannot be read (missing, no permission, a directory).
std::optional<std::string> readFile(const std::string& path);

}  // namespace zentri::service
