#pragma once

#include <map>
#include <optional>
#include <string>

namespace cad {

enum class DockSide { Left, Right };

/// How a palette set was docked when the program last ran.
struct DockedPalette {
    DockSide side = DockSide::Left;
    int width = 0;
};

/// What the program remembers between runs. Invalid parts of the file are treated as absent.
struct HostState {
    struct Window {
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
        bool maximized = false;
    };

    std::optional<Window> window;
    std::optional<int> theme;
    /// By tool id: a GUID in braces.
    std::map<std::string, DockedPalette> palettes;

    static HostState fromJson(const std::string& text);
    std::string toJson() const;

    static HostState load(const std::string& path);
    /// Creates missing folders. False if the file cannot be written; an existing file is then left unchanged.
    bool save(const std::string& path) const;
};

/// The path of the user's default state file.
std::string defaultStateFile();

}  // namespace cad
