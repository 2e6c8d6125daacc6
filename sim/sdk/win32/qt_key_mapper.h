#pragma once

// Keyboard messages to Qt key events, by the rules of Qt's Windows port.

#include "winuser.h"

#include <QString>
#include <Qt>

#include <vector>

class QWindow;

class QtKeyMapper {
public:
    /// Delivers a WM_CHAR, WM_KEYDOWN, WM_KEYUP or one of their WM_SYS forms to the window; false for one
    /// that Qt leaves to Windows.
    bool deliver(QWindow* window, const MSG& message);

private:
    /// A key that is down: its release has the text of its press.
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
