#pragma once

#include <cstddef>
#include <string>

/// What this process holds of the system at one moment.
struct ProcessFigures {
    unsigned long kernelHandles = 0;
    unsigned long threads = 0;
    /// Windows of every kind, those that only take messages too.
    unsigned long windows = 0;
    /// Windows, menus, cursors and icons, and what else the system has of that kind where it counts it.
    unsigned long userObjects = 0;
    unsigned long gdiObjects = 0;
    /// Committed memory that is this process's alone.
    std::size_t privateBytes = 0;

    static ProcessFigures now();
    std::string text() const;
};
