#pragma once

#include <string_view>
#include <vector>

namespace zentri::service {

/// A data file compiled into the program; the views refer to static storage.
struct EmbeddedFile {
    std::string_view name;  ///< Without the directory.
    std::string_view text;
};

/// All embedded files, ordered by path, which keeps the topics in chapter order.
const std::vector<EmbeddedFile>& embeddedFiles();

/// The text of the file with this name. Throws std::logic_error when there is none.
std::string_view embeddedFile(std::string_view name);

}  // namespace zentri::service
