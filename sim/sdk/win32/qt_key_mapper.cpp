#include "qt_key_mapper.h"

#include <QAbstractEventDispatcher>
#include <QKeyEvent>
#include <QPointer>
#include <QWindow>

#include <algorithm>

// Exported by Qt Gui for Qt Test but declared in no public header. Delivers the event synchronously.
Q_GUI_EXPORT bool qt_handleKeyEvent(QWindow* window, QEvent::Type type, int key,
                                    Qt::KeyboardModifiers modifiers, const QString& text = QString(),
                                    bool autoRepeat = false, ushort count = 1);

namespace {

constexpr LPARAM kExtended = 0x1000000;

bool isDown(int virtualKey) {
    return (GetKeyState(virtualKey) & 0x8000) != 0;
}

Qt::KeyboardModifiers currentModifiers() {
    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::ShiftModifier, isDown(VK_SHIFT));
    modifiers.setFlag(Qt::ControlModifier, isDown(VK_CONTROL));
    modifiers.setFlag(Qt::AltModifier, isDown(VK_MENU));
    modifiers.setFlag(Qt::MetaModifier, isDown(VK_LWIN) || isDown(VK_RWIN));
    return modifiers;
}

struct NamedKey {
    int virtualKey;
    int key;
};
constexpr NamedKey kNamedKeys[] = {
    {VK_CANCEL, Qt::Key_Cancel},
    {VK_BACK, Qt::Key_Backspace},
    {VK_TAB, Qt::Key_Tab},
    {VK_CLEAR, Qt::Key_Clear},
    {VK_RETURN, Qt::Key_Return},
    {VK_SHIFT, Qt::Key_Shift},
    {VK_CONTROL, Qt::Key_Control},
    {VK_MENU, Qt::Key_Alt},
    {VK_PAUSE, Qt::Key_Pause},
    {VK_CAPITAL, Qt::Key_CapsLock},
    {VK_ESCAPE, Qt::Key_Escape},
    {VK_PRIOR, Qt::Key_PageUp},
    {VK_NEXT, Qt::Key_PageDown},
    {VK_END, Qt::Key_End},
    {VK_HOME, Qt::Key_Home},
    {VK_LEFT, Qt::Key_Left},
    {VK_UP, Qt::Key_Up},
    {VK_RIGHT, Qt::Key_Right},
    {VK_DOWN, Qt::Key_Down},
    {VK_SNAPSHOT, Qt::Key_Print},
    {VK_INSERT, Qt::Key_Insert},
    {VK_DELETE, Qt::Key_Delete},
    {VK_HELP, Qt::Key_Help},
    {VK_LWIN, Qt::Key_Meta},
    {VK_RWIN, Qt::Key_Meta},
    {VK_APPS, Qt::Key_Menu},
    {VK_NUMLOCK, Qt::Key_NumLock},
    {VK_SCROLL, Qt::Key_ScrollLock},
    {VK_LSHIFT, Qt::Key_Shift},
    {VK_RSHIFT, Qt::Key_Shift},
    {VK_LCONTROL, Qt::Key_Control},
    {VK_RCONTROL, Qt::Key_Control},
    {VK_LMENU, Qt::Key_Alt},
    {VK_RMENU, Qt::Key_Alt},
};

struct PrintableKey {
    int virtualKey;
    char plain;
    char shifted;
};
// A US keyboard, the same as in the slice's TranslateMessage.
constexpr PrintableKey kPrintableKeys[] = {
    {VK_SPACE, ' ', ' '},    {'0', '0', ')'},          {'1', '1', '!'},          {'2', '2', '@'},
    {'3', '3', '#'},         {'4', '4', '$'},          {'5', '5', '%'},          {'6', '6', '^'},
    {'7', '7', '&'},         {'8', '8', '*'},          {'9', '9', '('},          {VK_OEM_1, ';', ':'},
    {VK_OEM_PLUS, '=', '+'}, {VK_OEM_COMMA, ',', '<'}, {VK_OEM_MINUS, '-', '_'}, {VK_OEM_PERIOD, '.', '>'},
    {VK_OEM_2, '/', '?'},    {VK_OEM_3, '`', '~'},     {VK_OEM_4, '[', '{'},     {VK_OEM_5, '\\', '|'},
    {VK_OEM_6, ']', '}'},    {VK_OEM_7, '\'', '"'},    {VK_OEM_102, '\\', '|'},  {VK_MULTIPLY, '*', '*'},
    {VK_ADD, '+', '+'},      {VK_SUBTRACT, '-', '-'},  {VK_DECIMAL, '.', '.'},   {VK_DIVIDE, '/', '/'},
};

/// The character of the key without modifiers, letters in upper case; 0 for none.
ushort plainCharacter(int virtualKey) {
    if (virtualKey >= 'A' && virtualKey <= 'Z') {
        return static_cast<ushort>(virtualKey);
    }
    if (virtualKey >= VK_NUMPAD0 && virtualKey <= VK_NUMPAD9) {
        return static_cast<ushort>('0' + virtualKey - VK_NUMPAD0);
    }
    switch (virtualKey) {
        case VK_BACK:
        case VK_TAB:
        case VK_RETURN:
        case VK_ESCAPE:
            // The virtual key equals the control character.
            return static_cast<ushort>(virtualKey);
        case VK_DELETE:
            return 0x7F;
        default:
            break;
    }
    for (const PrintableKey& key : kPrintableKeys) {
        if (key.virtualKey == virtualKey) {
            return static_cast<ushort>(key.plain);
        }
    }
    return 0;
}

/// The Qt::Key. With Shift, a printable key gives its shifted character.
int qtKey(int virtualKey, Qt::KeyboardModifiers modifiers) {
    for (const NamedKey& key : kNamedKeys) {
        if (key.virtualKey == virtualKey) {
            return key.key;
        }
    }
    if (virtualKey >= VK_F1 && virtualKey <= VK_F24) {
        return Qt::Key_F1 + virtualKey - VK_F1;
    }
    for (const PrintableKey& key : kPrintableKeys) {
        if (key.virtualKey == virtualKey) {
            return modifiers.testFlag(Qt::ShiftModifier) ? key.shifted : key.plain;
        }
    }
    return plainCharacter(virtualKey);
}

bool isKeypadKey(int key) {
    switch (key) {
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
        case Qt::Key_Home:
        case Qt::Key_End:
        case Qt::Key_Insert:
        case Qt::Key_Delete:
        case Qt::Key_Asterisk:
        case Qt::Key_Plus:
        case Qt::Key_Minus:
        case Qt::Key_Period:
        case Qt::Key_Comma:
            return true;
        default:
            return key >= Qt::Key_0 && key <= Qt::Key_9;
    }
}

/// Adds Qt::KeypadModifier for keypad keys: the extended bit distinguishes them from their main-block
/// counterparts.
Qt::KeyboardModifiers withKeypad(Qt::KeyboardModifiers modifiers, int key, const MSG& message) {
    const int virtualKey = static_cast<int>(message.wParam);
    bool keypad = false;
    if ((message.lParam & kExtended) == 0) {
        const bool mainKey =
            (virtualKey >= '0' && virtualKey <= '9') || (virtualKey >= VK_OEM_PLUS && virtualKey <= VK_OEM_3);
        keypad = isKeypadKey(key) && !mainKey;
    } else {
        keypad = key == Qt::Key_Enter || key == Qt::Key_Slash || key == Qt::Key_NumLock;
    }
    return keypad ? modifiers | Qt::KeypadModifier : modifiers;
}

}  // namespace

QtKeyMapper::HeldKey* QtKeyMapper::find(int virtualKey) {
    const auto found = std::find_if(m_held.begin(), m_held.end(), [virtualKey](const HeldKey& held) {
        return held.virtualKey == virtualKey;
    });
    return found != m_held.end() ? &*found : nullptr;
}

void QtKeyMapper::forget(int virtualKey) {
    m_held.erase(std::remove_if(m_held.begin(), m_held.end(),
                                [virtualKey](const HeldKey& held) { return held.virtualKey == virtualKey; }),
                 m_held.end());
}

bool QtKeyMapper::deliver(QWindow* window, const MSG& message) {
    Qt::KeyboardModifiers modifiers = currentModifiers();
    if (message.message == WM_CHAR) {
        // A WM_CHAR without a WM_KEYDOWN: key 0 with the text, pressed and released.
        const QChar character(static_cast<ushort>(message.wParam));
        const QString text = character.isNull() ? QString() : QString(character);
        const QPointer<QWindow> alive(window);
        qt_handleKeyEvent(window, QEvent::KeyPress, 0, modifiers, text);
        if (alive != nullptr) {
            qt_handleKeyEvent(window, QEvent::KeyRelease, 0, modifiers, text);
        }
        return true;
    }
    if (message.message == WM_SYSCHAR) {
        return false;
    }
    const int virtualKey = static_cast<int>(message.wParam);
    if (virtualKey <= 0 || virtualKey >= 0xFF || virtualKey == VK_PROCESSKEY) {
        return true;
    }
    int key = qtKey(virtualKey, modifiers);
    // The event of a modifier key does not include its own modifier.
    switch (key) {
        case Qt::Key_Control:
            modifiers ^= Qt::ControlModifier;
            break;
        case Qt::Key_Shift:
            modifiers ^= Qt::ShiftModifier;
            break;
        case Qt::Key_Alt:
            modifiers ^= Qt::AltModifier;
            break;
        case Qt::Key_Return:
            if ((message.lParam & kExtended) != 0) {
                key = Qt::Key_Enter;
            }
            break;
        default:
            break;
    }
    modifiers = withKeypad(modifiers, key, message);
    const bool down = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
    return down ? keyDown(window, message, key, modifiers) : keyUp(window, message, key, modifiers);
}

bool QtKeyMapper::keyDown(QWindow* window, const MSG& message, int key, Qt::KeyboardModifiers modifiers) {
    const int virtualKey = static_cast<int>(message.wParam);
    const bool system = message.message == WM_SYSKEYDOWN;
    if (const HeldKey* const stale = find(virtualKey); stale != nullptr && stale->modifiers != modifiers) {
        // Its release was not delivered to Qt.
        forget(virtualKey);
    }
    // As Qt's Windows port does, take a character message in the queue for this key's: TranslateMessage
    // posted it before the key was dispatched.
    QChar character;
    MSG translated;
    const UINT characterMessage = system ? WM_SYSCHAR : WM_CHAR;
    if (PeekMessageW(&translated, nullptr, characterMessage, characterMessage, PM_REMOVE) != FALSE &&
        translated.message == characterMessage) {
        long result = 0;
        QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
        if (dispatcher != nullptr &&
            dispatcher->filterNativeEvent("windows_generic_MSG", &translated, &result)) {
            return true;
        }
        character = QChar(static_cast<ushort>(translated.wParam));
        if (system && character.isLetter()) {
            character = character.toLower();
        }
    } else if (!system || key == 0) {
        character = QChar(plainCharacter(virtualKey));
    }
    if (modifiers == Qt::AltModifier &&
        (key == Qt::Key_Escape || key == Qt::Key_Tab || key == Qt::Key_Enter || key == Qt::Key_F4)) {
        return false;
    }
    if (key == Qt::Key_Tab && modifiers.testFlag(Qt::ShiftModifier)) {
        key = Qt::Key_Backtab;
    }
    // Not looked up before: the filter above may have delivered other keys.
    if (const HeldKey* const held = find(virtualKey)) {
        // Pressed again without a release: auto-repeat.
        if (key < Qt::Key_Shift || key > Qt::Key_ScrollLock) {
            const QString text = held->text;
            const QPointer<QWindow> alive(window);
            qt_handleKeyEvent(window, QEvent::KeyRelease, key, modifiers, text, true);
            if (alive != nullptr) {
                qt_handleKeyEvent(window, QEvent::KeyPress, key, modifiers, text, true);
            }
        }
        return true;
    }
    const QString text = character.isNull() ? QString() : QString(character);
    m_held.push_back({virtualKey, modifiers, text});
    qt_handleKeyEvent(window, QEvent::KeyPress, key, modifiers, text);
    return true;
}

bool QtKeyMapper::keyUp(QWindow* window, const MSG& message, int key, Qt::KeyboardModifiers modifiers) {
    const int virtualKey = static_cast<int>(message.wParam);
    const HeldKey* held = find(virtualKey);
    const bool modifierKey =
        key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Meta || key == Qt::Key_Alt;
    if (held == nullptr && !modifierKey) {
        // Its press was not delivered to Qt.
        return false;
    }
    const QString text = held != nullptr ? held->text : QString();
    forget(virtualKey);
    if (key == Qt::Key_Tab && modifiers.testFlag(Qt::ShiftModifier)) {
        key = Qt::Key_Backtab;
    }
    qt_handleKeyEvent(window, QEvent::KeyRelease, key, modifiers, text);
    // Let Alt open the menu bar of the surrounding window.
    return key != Qt::Key_Alt;
}
