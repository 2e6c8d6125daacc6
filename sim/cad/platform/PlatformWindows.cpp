// Must come first: <shellapi.h> needs it.
#include <windows.h>

#include <shellapi.h>

#include <cwchar>

#include "sim/cad/app/WideText.h"
#include "sim/cad/platform/MenuLookWindows.h"
#include "sim/cad/platform/Platform.h"

namespace cad::platform {

bool hasDisplay() {
    USEROBJECTFLAGS flags{};
    return ::GetUserObjectInformationW(::GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags,
                                       nullptr) != FALSE &&
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

void setSystemColors(const Theme&) {
    // On Windows, system colours are shared by all programs.
}

void setMenuColors(HWND window, const Theme& theme) {
    MenuLook::of(window).setTheme(theme);
}

void holdModifiers(bool shift, bool control, bool alt) {
    // Posted messages do not update the keyboard state, which TranslateMessage reads.
    constexpr BYTE kDown = 0x80;
    BYTE keys[256];
    ::GetKeyboardState(keys);
    const auto set = [&keys](int either, int left, bool down) {
        keys[either] = keys[left] = down ? kDown : BYTE{0};
    };
    set(VK_SHIFT, VK_LSHIFT, shift);
    set(VK_CONTROL, VK_LCONTROL, control);
    set(VK_MENU, VK_LMENU, alt);
    ::SetKeyboardState(keys);
}

std::vector<std::string> arguments(int, char**) {
    // main()'s arguments are in the ANSI code page, which lacks most characters.
    int count = 0;
    wchar_t** const wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    std::vector<std::string> list;
    for (int i = 1; i < count; ++i) {
        list.push_back(fromWide(wide[i], static_cast<int>(std::wcslen(wide[i]))));
    }
    ::LocalFree(wide);
    return list;
}

}  // namespace cad::platform
