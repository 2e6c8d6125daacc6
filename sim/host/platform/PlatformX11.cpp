// The platform over the Win32 slice for Linux.

#include <win32_control.h>
#include <xcb/xcb.h>

#include <memory>
#include <utility>

#include "sim/host/app/WideText.h"
#include "sim/host/platform/Platform.h"

namespace cad::platform {

namespace {

std::string utf8(const std::u16string& text) {
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

bool hasDisplay() {
    static const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    return xcb_connection_has_error(connection.get()) == 0;
}

void setSystemColors(const Theme& theme) {
    // On this platform the system's colours belong to the program alone.
    const std::pair<int, Color> colors[] = {
        {COLOR_ACTIVECAPTION, theme.caption}, {COLOR_INACTIVECAPTION, theme.caption},
        {COLOR_CAPTIONTEXT, theme.text},      {COLOR_MENU, theme.frame},
        {COLOR_MENUTEXT, theme.text},         {COLOR_HIGHLIGHT, theme.menuHighlight},
        {COLOR_HIGHLIGHTTEXT, theme.text},    {COLOR_WINDOW, theme.popup},
        {COLOR_WINDOWTEXT, theme.text},       {COLOR_BTNFACE, theme.frame},
        {COLOR_BTNTEXT, theme.text},          {COLOR_BTNSHADOW, theme.border},
        {COLOR_GRAYTEXT, theme.mutedText},
    };
    std::vector<INT> indices;
    std::vector<COLORREF> values;
    for (const auto& [index, color] : colors) {
        indices.push_back(index);
        values.push_back(RGB(color >> 16, color >> 8, color));
    }
    ::SetSysColors(static_cast<int>(indices.size()), indices.data(), values.data());
}

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
