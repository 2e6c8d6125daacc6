#include "win32_keyboard.h"

#include "win32_queue.h"
#include "win32_support.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <cstring>
#include <utility>

namespace win32 {

namespace {

/// An X key code is the kernel's key code plus eight.
constexpr int kCodeOffset = 8;

struct KeyboardMap {
    xkb_context* context = nullptr;
    xkb_keymap* keymap = nullptr;
    xkb_state* state = nullptr;
};

KeyboardMap& keyboard() {
    static KeyboardMap map;
    if (map.context == nullptr) {
        map.context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    }
    if (map.keymap == nullptr) {
        xcb_connection_t* connection = Display::instance().connection();
        xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                    XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr);
        const auto device = xkb_x11_get_core_keyboard_device_id(connection);
        if (device >= 0) {
            map.keymap =
                xkb_x11_keymap_new_from_device(map.context, connection, device, XKB_KEYMAP_COMPILE_NO_FLAGS);
        }
        if (map.keymap == nullptr) {
            // No XKB extension: use xkbcommon's default layout (US).
            map.keymap = xkb_keymap_new_from_names(map.context, nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS);
        }
        if (map.keymap == nullptr) {
            unsupported("keyboard", "the X server reports no keyboard layout, and there is no default one");
        }
        map.state = xkb_state_new(map.keymap);
    }
    return map;
}

struct SymbolKey {
    xkb_keysym_t symbol;
    int virtualKey;
};

constexpr SymbolKey kSymbolKeys[] = {
    {XKB_KEY_BackSpace, VK_BACK},
    {XKB_KEY_Tab, VK_TAB},
    {XKB_KEY_ISO_Left_Tab, VK_TAB},
    {XKB_KEY_Return, VK_RETURN},
    {XKB_KEY_KP_Enter, VK_RETURN},
    {XKB_KEY_Shift_L, VK_SHIFT},
    {XKB_KEY_Shift_R, VK_SHIFT},
    {XKB_KEY_Control_L, VK_CONTROL},
    {XKB_KEY_Control_R, VK_CONTROL},
    {XKB_KEY_Alt_L, VK_MENU},
    {XKB_KEY_Alt_R, VK_MENU},
    {XKB_KEY_Meta_L, VK_MENU},
    {XKB_KEY_Meta_R, VK_MENU},
    {XKB_KEY_ISO_Level3_Shift, VK_MENU},
    {XKB_KEY_Pause, VK_PAUSE},
    {XKB_KEY_Caps_Lock, VK_CAPITAL},
    {XKB_KEY_Escape, VK_ESCAPE},
    {XKB_KEY_space, VK_SPACE},
    {XKB_KEY_Prior, VK_PRIOR},
    {XKB_KEY_Next, VK_NEXT},
    {XKB_KEY_End, VK_END},
    {XKB_KEY_Home, VK_HOME},
    {XKB_KEY_Left, VK_LEFT},
    {XKB_KEY_Up, VK_UP},
    {XKB_KEY_Right, VK_RIGHT},
    {XKB_KEY_Down, VK_DOWN},
    {XKB_KEY_Print, VK_SNAPSHOT},
    {XKB_KEY_Insert, VK_INSERT},
    {XKB_KEY_Delete, VK_DELETE},
    {XKB_KEY_Help, VK_HELP},
    {XKB_KEY_Super_L, VK_LWIN},
    {XKB_KEY_Super_R, VK_RWIN},
    {XKB_KEY_Menu, VK_APPS},
    {XKB_KEY_KP_Multiply, VK_MULTIPLY},
    {XKB_KEY_KP_Add, VK_ADD},
    {XKB_KEY_KP_Separator, VK_SEPARATOR},
    {XKB_KEY_KP_Subtract, VK_SUBTRACT},
    {XKB_KEY_KP_Decimal, VK_DECIMAL},
    {XKB_KEY_KP_Divide, VK_DIVIDE},
    {XKB_KEY_Num_Lock, VK_NUMLOCK},
    {XKB_KEY_Scroll_Lock, VK_SCROLL},
    {XKB_KEY_semicolon, VK_OEM_1},
    {XKB_KEY_equal, VK_OEM_PLUS},
    {XKB_KEY_plus, VK_OEM_PLUS},
    {XKB_KEY_comma, VK_OEM_COMMA},
    {XKB_KEY_minus, VK_OEM_MINUS},
    {XKB_KEY_period, VK_OEM_PERIOD},
    {XKB_KEY_slash, VK_OEM_2},
    {XKB_KEY_grave, VK_OEM_3},
    {XKB_KEY_bracketleft, VK_OEM_4},
    {XKB_KEY_backslash, VK_OEM_5},
    {XKB_KEY_bracketright, VK_OEM_6},
    {XKB_KEY_apostrophe, VK_OEM_7},
    {XKB_KEY_less, VK_OEM_102},
    {XKB_KEY_KP_Home, VK_HOME},
    {XKB_KEY_KP_Left, VK_LEFT},
    {XKB_KEY_KP_Up, VK_UP},
    {XKB_KEY_KP_Right, VK_RIGHT},
    {XKB_KEY_KP_Down, VK_DOWN},
    {XKB_KEY_KP_Prior, VK_PRIOR},
    {XKB_KEY_KP_Next, VK_NEXT},
    {XKB_KEY_KP_End, VK_END},
    {XKB_KEY_KP_Begin, VK_CLEAR},
    {XKB_KEY_KP_Insert, VK_INSERT},
    {XKB_KEY_KP_Delete, VK_DELETE},
};

bool isKeypadSymbol(xkb_keysym_t symbol) {
    return symbol >= XKB_KEY_KP_Space && symbol <= XKB_KEY_KP_Equal;
}

int virtualKeyOf(xkb_keysym_t symbol) {
    if (symbol >= XKB_KEY_a && symbol <= XKB_KEY_z) {
        return static_cast<int>('A' + (symbol - XKB_KEY_a));
    }
    if ((symbol >= XKB_KEY_A && symbol <= XKB_KEY_Z) || (symbol >= XKB_KEY_0 && symbol <= XKB_KEY_9)) {
        return static_cast<int>(symbol);
    }
    if (symbol >= XKB_KEY_KP_0 && symbol <= XKB_KEY_KP_9) {
        return VK_NUMPAD0 + static_cast<int>(symbol - XKB_KEY_KP_0);
    }
    if (symbol >= XKB_KEY_F1 && symbol <= XKB_KEY_F24) {
        return VK_F1 + static_cast<int>(symbol - XKB_KEY_F1);
    }
    for (const SymbolKey& key : kSymbolKeys) {
        if (key.symbol == symbol) {
            return key.virtualKey;
        }
    }
    return 0;
}

/// The scan code and the extended bit as they are in a key message's lParam. Up to 88 the kernel's key codes
/// equal the PC's scan codes; the table has those with the extended prefix.
DWORD scanBitsOf(xcb_keycode_t code) {
    constexpr DWORD kExtended = 1U << 24;
    constexpr std::pair<int, DWORD> kExtendedKeys[] = {
        {96, 0x1C},  {97, 0x1D},  {98, 0x35},  {100, 0x38}, {102, 0x47}, {103, 0x48},
        {104, 0x49}, {105, 0x4B}, {106, 0x4D}, {107, 0x4F}, {108, 0x50}, {109, 0x51},
        {110, 0x52}, {111, 0x53}, {125, 0x5B}, {126, 0x5C}, {127, 0x5D},
    };
    const int kernelCode = static_cast<int>(code) - kCodeOffset;
    for (const auto& [extended, scan] : kExtendedKeys) {
        if (kernelCode == extended) {
            return scan << 16 | kExtended;
        }
    }
    return (static_cast<DWORD>(kernelCode) & 0xFFU) << 16;
}

void setModifiers(const KeyboardMap& map, std::uint16_t state) {
    // The event's state has the effective modifiers and, in two bits, the layout; held and locked modifiers
    // need not be told apart.
    const xkb_layout_index_t layout = (state >> 13) & 0x3U;
    xkb_state_update_mask(map.state, state & 0xFFU, 0, 0, layout, 0, 0);
}

// What a US keyboard types, for key messages that a program posted.
struct TypedKey {
    int virtualKey;
    TCHAR plain;
    TCHAR shifted;
};
constexpr TypedKey kTypedKeys[] = {
    {'0', u'0', u')'},          {'1', u'1', u'!'},
    {'2', u'2', u'@'},          {'3', u'3', u'#'},
    {'4', u'4', u'$'},          {'5', u'5', u'%'},
    {'6', u'6', u'^'},          {'7', u'7', u'&'},
    {'8', u'8', u'*'},          {'9', u'9', u'('},
    {VK_SPACE, u' ', u' '},     {VK_OEM_1, u';', u':'},
    {VK_OEM_PLUS, u'=', u'+'},  {VK_OEM_COMMA, u',', u'<'},
    {VK_OEM_MINUS, u'-', u'_'}, {VK_OEM_PERIOD, u'.', u'>'},
    {VK_OEM_2, u'/', u'?'},     {VK_OEM_3, u'`', u'~'},
    {VK_OEM_4, u'[', u'{'},     {VK_OEM_5, u'\\', u'|'},
    {VK_OEM_6, u']', u'}'},     {VK_OEM_7, u'\'', u'"'},
    {VK_OEM_102, u'\\', u'|'},  {VK_MULTIPLY, u'*', u'*'},
    {VK_ADD, u'+', u'+'},       {VK_SUBTRACT, u'-', u'-'},
    {VK_DECIMAL, u'.', u'.'},   {VK_DIVIDE, u'/', u'/'},
    {VK_BACK, u'\b', u'\b'},    {VK_TAB, u'\t', u'\t'},
    {VK_RETURN, u'\r', u'\r'},  {VK_ESCAPE, u'\x1B', u'\x1B'},
};

constexpr TCHAR kControlMask = 0x1F;

std::u16string typedText(int virtualKey, bool shift, bool control, bool capsLock) {
    if (virtualKey >= 'A' && virtualKey <= 'Z') {
        if (control) {
            return std::u16string(1, static_cast<TCHAR>(virtualKey & kControlMask));
        }
        const bool upper = shift != capsLock;
        return std::u16string(1, static_cast<TCHAR>(upper ? virtualKey : virtualKey + ('a' - 'A')));
    }
    if (virtualKey >= VK_NUMPAD0 && virtualKey <= VK_NUMPAD9) {
        return control ? std::u16string()
                       : std::u16string(1, static_cast<TCHAR>(u'0' + virtualKey - VK_NUMPAD0));
    }
    for (const TypedKey& key : kTypedKeys) {
        if (key.virtualKey != virtualKey) {
            continue;
        }
        if (!control) {
            return std::u16string(1, shift ? key.shifted : key.plain);
        }
        switch (virtualKey) {
            case VK_BACK:
                return u"\x7F";
            case VK_RETURN:
                return u"\n";
            case VK_SPACE:
                return u" ";
            case VK_ESCAPE:
            case VK_OEM_4:
                return u"\x1B";
            case VK_OEM_5:
                return u"\x1C";
            case VK_OEM_6:
                return u"\x1D";
            default:
                return {};
        }
    }
    return {};
}

/// Whether TranslateMessage was passed the real key event that was last retrieved from the queue.
bool isLastRealKey(const MSG& message, const MSG& last) {
    return last.message == message.message && last.wParam == message.wParam &&
           last.lParam == message.lParam && last.time == message.time;
}

}  // namespace

void reloadKeymap() {
    KeyboardMap& map = keyboard();
    xkb_state_unref(std::exchange(map.state, nullptr));
    xkb_keymap_unref(std::exchange(map.keymap, nullptr));
}

Key keyOf(xcb_keycode_t code, std::uint16_t state) {
    const KeyboardMap& map = keyboard();
    setModifiers(map, state);
    Key key;
    key.scanBits = scanBitsOf(code);
    const xkb_layout_index_t layout = xkb_state_key_get_layout(map.state, code);

    // The unmodified symbol determines the virtual key, except on the keypad (Num Lock). A layout without
    // Latin letters falls back to the first layout.
    const xkb_keysym_t current = xkb_state_key_get_one_sym(map.state, code);
    if (isKeypadSymbol(current)) {
        key.virtualKey = virtualKeyOf(current);
    }
    for (xkb_layout_index_t tried = layout; key.virtualKey == 0; tried = 0) {
        const xkb_keysym_t* symbols = nullptr;
        if (xkb_keymap_key_get_syms_by_level(map.keymap, code, tried, 0, &symbols) > 0) {
            key.virtualKey = virtualKeyOf(symbols[0]);
        }
        if (tried == 0) {
            break;
        }
    }
    if (key.virtualKey == 0) {
        key.virtualKey = virtualKeyOf(current);
    }

    const int size = xkb_state_key_get_utf8(map.state, code, nullptr, 0);
    if (size > 0) {
        std::string utf8(static_cast<std::size_t>(size) + 1, '\0');
        xkb_state_key_get_utf8(map.state, code, utf8.data(), utf8.size());
        utf8.resize(static_cast<std::size_t>(size));
        key.text = toUtf16(utf8);
        if (key.text == u"\x7F" && key.virtualKey == VK_DELETE) {
            // On Windows the Delete key produces no character.
            key.text.clear();
        }
    }
    const bool control = (state & XCB_MOD_MASK_CONTROL) != 0;
    if (control && (key.virtualKey == VK_BACK || key.virtualKey == VK_RETURN)) {
        key.text = typedText(key.virtualKey, false, true, false);
    }
    return key;
}

xcb_keycode_t codeOf(int virtualKey) {
    const KeyboardMap& map = keyboard();
    xcb_keycode_t onKeypad = 0;
    const xkb_keycode_t last = xkb_keymap_max_keycode(map.keymap);
    for (xkb_keycode_t code = xkb_keymap_min_keycode(map.keymap); code <= last && code <= 0xFF; ++code) {
        const xkb_keysym_t* symbols = nullptr;
        if (xkb_keymap_key_get_syms_by_level(map.keymap, code, 0, 0, &symbols) == 0 ||
            virtualKeyOf(symbols[0]) != virtualKey) {
            continue;
        }
        if (!isKeypadSymbol(symbols[0])) {
            return static_cast<xcb_keycode_t>(code);
        }
        onKeypad = static_cast<xcb_keycode_t>(code);
    }
    return onKeypad;
}

}  // namespace win32

using namespace win32;

BOOL TranslateMessage(const MSG* message) {
    if (message->message != WM_KEYDOWN && message->message != WM_SYSKEYDOWN) {
        return message->message == WM_KEYUP || message->message == WM_SYSKEYUP ? TRUE : FALSE;
    }
    Queue& queue = Queue::current();
    const auto& keys = queue.keyState();
    const auto down = [&keys](int key) { return (keys[static_cast<std::size_t>(key)] & 0x80) != 0; };
    const InputMessage& last = queue.lastKey();
    std::u16string text;
    if (message->wParam == VK_PACKET) {
        text.assign(1, static_cast<TCHAR>(HIWORD(static_cast<DWORD_PTR>(message->lParam))));
    } else if (isLastRealKey(*message, last.message)) {
        text = last.keyText;
    } else {
        text = typedText(static_cast<int>(message->wParam), down(VK_SHIFT),
                         down(VK_CONTROL) && !(down(VK_MENU) && message->message == WM_KEYDOWN),
                         (keys[VK_CAPITAL] & 0x01) != 0);
    }
    for (TCHAR unit : text) {
        MSG character = *message;
        character.message = message->message == WM_KEYDOWN ? WM_CHAR : WM_SYSCHAR;
        character.wParam = unit;
        queue.post(character);
    }
    return TRUE;
}

SHORT GetKeyState(int virtualKey) {
    const BYTE state = Queue::current().keyState()[static_cast<std::size_t>(virtualKey & 0xFF)];
    return static_cast<SHORT>(((state & 0x80) != 0 ? 0x8000 : 0) | (state & 0x01));
}

SHORT GetAsyncKeyState(int virtualKey) {
    // The physical keyboard is not queried: a key event that has not been retrieved is not reflected.
    return static_cast<SHORT>(GetKeyState(virtualKey) & 0x8000);
}
