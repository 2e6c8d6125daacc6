#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "sim/cad/app/Theme.h"

// What differs between the platforms and no SDK call covers: the menus' colours, and the eyes and hands of
// the control interface. UI thread.

namespace cad::platform {

/// Whether windows can be made at all; to be asked before the first one. The connection that finds it out is
/// held until the program's end: some X servers start anew when their only client leaves.
bool hasDisplay();

/// Gives menus and captions the theme's colours, where the program may.
void setSystemColors(const Theme& theme);

/// Gives the menus of the window the theme's colours, where setSystemColors could not; after it has got its
/// menus and at each change. The theme must outlive the window.
void setMenuColors(HWND window, const Theme& theme);

/// The program's arguments without its name, in UTF-8; from what main() was given.
std::vector<std::string> arguments(int argc, char** argv);

/// 0x00RRGGBB pixels, row by row.
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

/// The topmost last.
std::vector<OpenMessageBox> messageBoxes();
bool answerMessageBox(HWND window, int buttonId);

// Real input, at screen coordinates. False when the system refuses.
bool movePointer(int x, int y);
/// button: 1 left, 2 middle, 3 right, 4 and 5 wheel up and down.
bool pressPointer(int button, bool down);
bool clickPointer(int x, int y, int button);
bool strokeKey(int virtualKey, bool shift, bool control, bool alt);

/// Makes the modifier keys count as held, or not, while posted key messages are worked off.
void holdModifiers(bool shift, bool control, bool alt);

/// What the screen shows of the window, or of everything for null; empty when there is nothing to see.
Picture grab(HWND window);
bool savePng(const Picture& picture, const std::string& path);
std::vector<RECT> findColor(const Picture& picture, unsigned color, int tolerance, int minimumPixels,
                            int joinDistance);

}  // namespace cad::platform
