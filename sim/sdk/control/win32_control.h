#pragma once

// Remote control of a program for tests and demos: inspecting and answering message boxes, simulated pointer
// and keyboard input, screenshots. Not part of any SDK; each platform has its own implementation. Main
// thread.

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
    std::basic_string<TCHAR> text;  ///< without the "&" of the access key
    RECT screenRectangle;           ///< in screen coordinates
};

struct Win32MessageBox {
    HWND window;
    std::basic_string<TCHAR> caption;
    std::basic_string<TCHAR> text;
    UINT type;  ///< as passed to MessageBoxW; on Windows only its button and icon bits
    std::vector<Win32MessageBoxButton> buttons;
};

/// The open message boxes, the topmost last.
WIN32CONTROL std::vector<Win32MessageBox> win32MessageBoxes();
/// Chooses a button of an open box as a click would; false if the box is closed or has no such button.
WIN32CONTROL bool win32AnswerMessageBox(HWND window, int buttonId);

// Simulated input that goes through the system's whole input path like a user's (on Linux through the XTEST
// extension). Positions are in screen pixels. False if the system does not accept simulated input or the
// keyboard has no such key.
WIN32CONTROL bool win32PointerMove(int x, int y);
/// button: 1 left, 2 middle, 3 right, 4 and 5 wheel up and down.
WIN32CONTROL bool win32PointerButton(int button, bool down);
WIN32CONTROL bool win32PointerClick(int x, int y, int button = 1);
WIN32CONTROL bool win32KeyEvent(int virtualKey, bool down);
WIN32CONTROL bool win32KeyStroke(int virtualKey, bool shift = false, bool control = false, bool alt = false);

/// An image: rows of 0x00RRGGBB pixels, top-down.
struct Win32Picture {
    int width = 0;
    int height = 0;
    std::vector<DWORD> pixels;

    DWORD at(int x, int y) const {
        return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    }
};

/// Captures the part of the screen where the window is, including whatever covers it; the whole screen for
/// null. Empty if the window is not visible.
WIN32CONTROL Win32Picture win32Grab(HWND window);
WIN32CONTROL bool win32SavePng(const Win32Picture& picture, const std::string& path);

/// Bounding rectangles, in the picture's coordinates and sorted from top to bottom, of the clusters of pixels
/// whose channels differ by at most `tolerance` from a colour 0xRRGGBB. A cluster has at least
/// `minimumPixels` pixels; matching pixels at most `joinDistance` apart belong together.
WIN32CONTROL std::vector<RECT> win32FindClusters(const Win32Picture& picture, DWORD color, int tolerance,
                                                 int minimumPixels, int joinDistance = 1);
