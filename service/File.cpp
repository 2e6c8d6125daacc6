#include "service/File.h"

#include <array>
#include <cstdio>
#include <memory>

namespace zentri::service {

std::optional<std::string> readFile(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), &std::fclose);
    if (!file) {
        return std::nullopt;
    }
    std::string text;
    std::array<char, 65536> block{};
    while (const std::size_t count = std::fread(block.data(), 1, block.size(), file.get())) {
        text.append(block.data(), count);
    }
    // fopen() succeeds on a directory; reading it fails.
    if (std::ferror(file.get()) != 0) {
        return std::nullopt;
    }
    return text;
}

}  // namespace zentri::service
