#pragma once

// From keys of the X server to virtual keys and text. Main thread.

#include "win32_display.h"
#include "winuser.h"

#include <string>

namespace win32 {

struct Key {
    /// 0 when the key has no virtual key.
    int virtualKey = 0;
    /// Scan code and extended bit as in a key message's lParam.
    DWORD scanBits = 0;
    /// What the key types in the keyboard's current state, with control characters for Ctrl; may be empty.
    std::u16string text;
};

/// The key of an event, in the modifier state that the event tells.
Key keyOf(xcb_keycode_t code, std::uint16_t state);
/// The server's key for a virtual key; 0 when the keyboard has none.
xcb_keycode_t codeOf(int virtualKey);
/// The keyboard's layout may have changed.
void reloadKeymap();

}  // namespace win32
