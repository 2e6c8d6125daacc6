#include "sim/cad/core/Script.h"

#include "sim/cad/core/Text.h"

namespace cad {

std::vector<std::string> parseScript(const std::string& text) {
    std::vector<std::string> typed;
    for (const std::string& line : splitLines(text)) {
        if (!startsWith(line, ";")) {
            typed.push_back(line + "\n");
        }
    }
    return typed;
}

std::optional<std::vector<std::string>> readScript(const std::string& path) {
    const auto text = readTextFile(path);
    if (!text) {
        return std::nullopt;
    }
    return parseScript(*text);
}

}  // namespace cad
