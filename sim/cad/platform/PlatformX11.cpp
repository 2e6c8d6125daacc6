#include <xcb/xcb.h>

#include <memory>
#include <utility>

#include "sim/cad/platform/Platform.h"

namespace cad::platform {

bool hasDisplay() {
    static const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    return xcb_connection_has_error(connection.get()) == 0;
}

void setSystemColors(const Theme& theme) {
    // The system colours of the Win32 slice are private to the process.
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

void setMenuColors(HWND, const Theme&) {
    // Menus use the system colours.
}

void holdModifiers(bool, bool, bool) {
    // The Win32 slice derives the modifiers from the posted messages.
}

std::vector<std::string> arguments(int argc, char** argv) {
    return {argv + 1, argv + argc};
}

}  // namespace cad::platform
