#include "sim/cad/platform/Platform.h"

#include <win32_control.h>

#include "sim/cad/app/WideText.h"

namespace cad::platform {

namespace {

std::string utf8(const std::basic_string<TCHAR>& text) {
    return fromWide(text.data(), static_cast<int>(text.size()));
}

Win32Picture toWin32(const Picture& picture) {
    Win32Picture copy;
    copy.width = picture.width;
    copy.height = picture.height;
    copy.pixels.assign(picture.pixels.begin(), picture.pixels.end());
    return copy;
}

}  // namespace

std::vector<OpenMessageBox> messageBoxes() {
    std::vector<OpenMessageBox> boxes;
    for (const Win32MessageBox& box : win32MessageBoxes()) {
        OpenMessageBox open{box.window, utf8(box.caption), utf8(box.text), {}};
        for (const Win32MessageBoxButton& button : box.buttons) {
            open.buttons.push_back({button.id, utf8(button.text)});
        }
        boxes.push_back(open);
    }
    return boxes;
}

bool answerMessageBox(HWND window, int buttonId) {
    return win32AnswerMessageBox(window, buttonId);
}

bool movePointer(int x, int y) {
    return win32PointerMove(x, y);
}

bool pressPointer(int button, bool down) {
    return win32PointerButton(button, down);
}

bool clickPointer(int x, int y, int button) {
    return win32PointerClick(x, y, button);
}

bool strokeKey(int virtualKey, bool shift, bool control, bool alt) {
    return win32KeyStroke(virtualKey, shift, control, alt);
}

Picture grab(HWND window) {
    const Win32Picture picture = win32Grab(window);
    return {picture.width, picture.height, {picture.pixels.begin(), picture.pixels.end()}};
}

bool savePng(const Picture& picture, const std::string& path) {
    return win32SavePng(toWin32(picture), path);
}

std::vector<RECT> findColor(const Picture& picture, unsigned color, int tolerance, int minimumPixels,
                            int joinDistance) {
    return win32FindClusters(toWin32(picture), color, tolerance, minimumPixels, joinDistance);
}

}  // namespace cad::platform
