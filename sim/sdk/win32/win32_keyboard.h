#pragma once

// Maps X key codes to virtual keys and text. Main thread.

#include "win32_display.h"
#include "winuser.h"

#include <string>

namespace win32 {

struct Key {
    /// 0 when the key has no virtual key.
    int virtualKey = 0;
    /// Scan code and extended bit as in a key message's lParam.
    DWORD scanBits = 0;
    /// The text of the key with the current modifiers, a control character with Ctrl; may be empty.
    std::u16string text;
};

/// The key of an X event; state is the event's modifier and layout state.
Key keyOf(xcb_keycode_t code, std::uint16_t state);
/// The X key code for a virtual key; 0 when the keyboard has none.
xcb_keycode_t codeOf(int virtualKey);
/// To be called when the keyboard mapping may have changed.
void reloadKeymap();

}  // namespace win32
