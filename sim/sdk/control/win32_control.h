#pragma once

// What a test or a demo does to a program from outside: looking at and answering message boxes, real pointer
// and key input, pictures of windows. No part of any SDK; each platform has its own implementation. Main
// thread, unless said otherwise.

#include <windows.h>

#include <string>
#include <vector>

#ifdef _WIN32
#define WIN32CONTROL
#else
#define WIN32CONTROL __attribute__((visibility("default")))
#endif

struct Win32MessageBoxButton {
    int id;                         ///< IDOK, IDYES…
    std::basic_string<TCHAR> text;  ///< without the access mark
    RECT screenRectangle;           ///< in screen coordinates
};

struct Win32MessageBox {
    HWND window;
    std::basic_string<TCHAR> caption;
    std::basic_string<TCHAR> text;
    UINT type;  ///< as given to MessageBoxW; on Windows only its buttons and its icon
    std::vector<Win32MessageBoxButton> buttons;
};

/// The open message boxes, the topmost last.
WIN32CONTROL std::vector<Win32MessageBox> win32MessageBoxes();
/// Chooses a button of an open box as a click would; false when it has no such button (or is closed).
WIN32CONTROL bool win32AnswerMessageBox(HWND window, int buttonId);

// Real input: it takes the whole way of a user's (on Linux through the X server's test extension). Positions
// are screen pixels. False when the system takes no such input or the keyboard has no key for it.
WIN32CONTROL bool win32PointerMove(int x, int y);
/// button: 1 left, 2 middle, 3 right, 4 and 5 wheel up and down.
WIN32CONTROL bool win32PointerButton(int button, bool down);
WIN32CONTROL bool win32PointerClick(int x, int y, int button = 1);
WIN32CONTROL bool win32KeyEvent(int virtualKey, bool down);
WIN32CONTROL bool win32KeyStroke(int virtualKey, bool shift = false, bool control = false, bool alt = false);

/// A picture: rows of 0x00RRGGBB pixels.
struct Win32Picture {
    int width = 0;
    int height = 0;
    std::vector<DWORD> pixels;

    DWORD at(int x, int y) const {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    }
};

/// What the screen shows of the window (children and what covers it included); null is the whole screen. An
/// empty picture when the window is not on the screen.
WIN32CONTROL Win32Picture win32Grab(HWND window);
WIN32CONTROL bool win32SavePng(const Win32Picture& picture, const std::string& path);

/// Connected groups of pixels within the tolerance (per channel) of a colour 0xRRGGBB, with at least that
/// many pixels, top to bottom; in the picture's coordinates.
WIN32CONTROL std::vector<RECT> win32FindClusters(const Win32Picture& picture, DWORD color, int tolerance,
                                                 int minimumPixels, int joinDistance = 1);
