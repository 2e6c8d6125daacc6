#pragma once

#include <string_view>
#include <vector>

namespace zentri::service {

/// A data file that the build has put into the program.
struct EmbeddedFile {
    std::string_view name;
    std::string_view text;
};

/// All of them, by name.
const std::vector<EmbeddedFile>& embeddedFiles();

/// One file's text. Throws std::logic_error when there is none of that name.
std::string_view embeddedFile(std::string_view name);

}  // namespace zentri::service
