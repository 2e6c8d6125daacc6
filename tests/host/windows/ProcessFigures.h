#pragma once

#include <cstddef>
#include <string>

/// The system resources that this process holds at one moment.
struct ProcessFigures {
    unsigned long kernelHandles = 0;
    unsigned long threads = 0;
    /// All windows, including message-only windows.
    unsigned long windows = 0;
    /// Windows, menus, cursors, icons, and other USER objects where the system counts them.
    unsigned long userObjects = 0;
    unsigned long gdiObjects = 0;
    /// Private committed memory.
    std::size_t privateBytes = 0;

    static ProcessFigures now();
    std::string text() const;
};
