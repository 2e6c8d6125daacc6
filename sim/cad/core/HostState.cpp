#include "sim/cad/core/HostState.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "sim/cad/core/Text.h"

namespace cad {

namespace {

using nlohmann::json;

constexpr int kFarthest = 100000;

int integer(const json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || !found->is_number_integer()) {
        return 0;
    }
    const auto value = found->get<long long>();
    return value < -kFarthest || value > kFarthest ? 0 : static_cast<int>(value);
}

/// Whether the text is a tool id, "{01234567-89AB-CDEF-0123-456789ABCDEF}".
bool isToolId(const std::string& text) {
    const std::string model = "{hhhhhhhh-hhhh-hhhh-hhhh-hhhhhhhhhhhh}";
    return std::equal(text.begin(), text.end(), model.begin(), model.end(), [](char c, char expected) {
        return expected == 'h' ? std::isxdigit(static_cast<unsigned char>(c)) != 0 : c == expected;
    });
}

std::string environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

}  // namespace

HostState HostState::fromJson(const std::string& text) {
    HostState state;
    const json root = json::parse(text, nullptr, false);
    if (!root.is_object()) {
        return state;
    }
    if (const auto window = root.find("window"); window != root.end() && window->is_object()) {
        Window read;
        read.x = integer(*window, "x");
        read.y = integer(*window, "y");
        read.width = integer(*window, "width");
        read.height = integer(*window, "height");
        read.maximized = window->value("maximized", json(false)) == json(true);
        if (read.width > 0 && read.height > 0) {
            state.window = read;
        }
    }
    if (const auto theme = root.find("theme"); theme != root.end() && (*theme == 0 || *theme == 1)) {
        state.theme = theme->get<int>();
    }
    if (const auto palettes = root.find("palettes"); palettes != root.end() && palettes->is_object()) {
        for (const auto& [toolId, value] : palettes->items()) {
            // Earlier versions kept palettes by their titles; whose they were cannot be told.
            if (isToolId(toolId) && value.is_object() && integer(value, "width") > 0) {
                const bool right = value.value("side", json("left")) == json("right");
                state.palettes[toolId] = {right ? DockSide::Right : DockSide::Left, integer(value, "width")};
            }
        }
    }
    return state;
}

std::string HostState::toJson() const {
    json root = json::object();
    if (window) {
        root["window"] = {{"x", window->x},
                          {"y", window->y},
                          {"width", window->width},
                          {"height", window->height},
                          {"maximized", window->maximized}};
    }
    if (theme) {
        root["theme"] = *theme;
    }
    for (const auto& [toolId, palette] : palettes) {
        root["palettes"][toolId] = {{"side", palette.side == DockSide::Right ? "right" : "left"},
                                    {"width", palette.width}};
    }
    return root.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}

HostState HostState::load(const std::string& path) {
    const auto text = readTextFile(path);
    return text ? fromJson(*text) : HostState();
}

bool HostState::save(const std::string& path) const {
    const auto file = std::filesystem::u8path(path);
    std::error_code error;
    if (file.has_parent_path()) {
        std::filesystem::create_directories(file.parent_path(), error);
    }
    // Written to a temporary file and renamed, so that a crash leaves either the old state or the new one.
    auto draft = file;
    draft += ".new";
    {
        std::ofstream stream(draft, std::ios::binary | std::ios::trunc);
        stream << toJson();
        if (!stream.flush()) {
            return false;
        }
    }
    std::filesystem::rename(draft, file, error);
    return !error;
}

std::string defaultStateFile() {
    const char* const name = "/zentri-host/state.json";
    for (const char* const variable : {"XDG_CONFIG_HOME", "APPDATA"}) {
        if (const std::string folder = environment(variable); !folder.empty()) {
            return folder + name;
        }
    }
    return environment("HOME") + "/.config" + name;
}

}  // namespace cad
