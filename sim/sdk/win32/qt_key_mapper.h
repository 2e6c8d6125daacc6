#pragma once

// Translates keyboard messages to Qt key events, by the rules of Qt's Windows port.
// Simplified: a US keyboard for the virtual keys; no input methods, no dead keys.

#include "winuser.h"

#include <QString>
#include <Qt>

#include <vector>

class QWindow;

class QtKeyMapper {
public:
    /// Delivers a WM_CHAR, WM_KEYDOWN, WM_KEYUP or one of their WM_SYS forms to the window; false for a
    /// message that Qt would leave to DefWindowProc.
    bool deliver(QWindow* window, const MSG& message);

private:
    /// A key that is down: its release event repeats the text of the press.
    struct HeldKey {
        int virtualKey;
        Qt::KeyboardModifiers modifiers;
        QString text;
    };

    bool keyDown(QWindow* window, const MSG& message, int key, Qt::KeyboardModifiers modifiers);
    bool keyUp(QWindow* window, const MSG& message, int key, Qt::KeyboardModifiers modifiers);
    HeldKey* find(int virtualKey);
    void forget(int virtualKey);

    std::vector<HeldKey> m_held;
};
