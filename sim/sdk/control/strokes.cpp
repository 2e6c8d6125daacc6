// Clicks and keystrokes, composed of single input events.

#include "win32_control.h"

#include <utility>

bool win32PointerClick(int x, int y, int button) {
    return win32PointerMove(x, y) && win32PointerButton(button, true) && win32PointerButton(button, false);
}

bool win32KeyStroke(int virtualKey, bool shift, bool control, bool alt) {
    const std::pair<bool, int> modifiers[] = {{shift, VK_SHIFT}, {control, VK_CONTROL}, {alt, VK_MENU}};
    bool done = true;
    for (const auto& [wanted, key] : modifiers) {
        done = done && (!wanted || win32KeyEvent(key, true));
    }
    done = done && win32KeyEvent(virtualKey, true) && win32KeyEvent(virtualKey, false);
    for (const auto& [wanted, key] : modifiers) {
        if (wanted) {
            win32KeyEvent(key, false);
        }
    }
    return done;
}
