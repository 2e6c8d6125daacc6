#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "sim/cad/app/Theme.h"

// Platform differences that no SDK call covers: menu colours, and the control interface's screen capture and
// input synthesis. UI thread.

namespace cad::platform {

/// Whether windows can be created; call it before creating the first one. On X11 the connection opened for
/// this check is kept until the program exits, because some X servers reset when their last client
/// disconnects.
bool hasDisplay();

/// Applies the theme's colours to menus and captions, where system colours are private to the program.
void setSystemColors(const Theme& theme);

/// Applies the theme's colours to the window's menus where setSystemColors() cannot. Call it after the menu
/// bar is set and after each change of the theme. The theme must outlive the window.
void setMenuColors(HWND window, const Theme& theme);

/// The command-line arguments in UTF-8, without the program name. `argc` and `argv` are main()'s.
std::vector<std::string> arguments(int argc, char** argv);

/// Pixels as 0x00RRGGBB, row by row from the top.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<unsigned> pixels;
};

struct MessageBoxButton {
    int id = 0;
    std::string text;
};

struct OpenMessageBox {
    HWND window = nullptr;
    std::string caption;
    std::string text;
    std::vector<MessageBoxButton> buttons;
};

/// The open message boxes, topmost last.
std::vector<OpenMessageBox> messageBoxes();
bool answerMessageBox(HWND window, int buttonId);

// Synthesized input, in screen coordinates. False if the system rejects it.
bool movePointer(int x, int y);
/// button: 1 left, 2 middle, 3 right, 4 and 5 wheel up and down.
bool pressPointer(int button, bool down);
bool clickPointer(int x, int y, int button);
bool strokeKey(int virtualKey, bool shift, bool control, bool alt);

/// Sets whether the modifier keys count as held while posted key messages are processed.
void holdModifiers(bool shift, bool control, bool alt);

/// Captures the window as shown on the screen, or the whole screen for null; empty if nothing is visible.
Picture grab(HWND window);
bool savePng(const Picture& picture, const std::string& path);
std::vector<RECT> findColor(const Picture& picture, unsigned color, int tolerance, int minimumPixels,
                            int joinDistance);

}  // namespace cad::platform
