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

/// What the program remembers from one run to the next. Anything unreadable in the file counts as absent.
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
    std::map<std::string, DockedPalette> palettes;

    static HostState fromJson(const std::string& text);
    std::string toJson() const;

    static HostState load(const std::string& path);
    /// Makes the folder when it does not exist. False when the file cannot be written; an old one then stays.
    bool save(const std::string& path) const;
};

/// The user's own state file.
std::string defaultStateFile();

}  // namespace cad
