#include "sim/cad/app/KeyInput.h"

namespace cad {

namespace {

constexpr UINT kCtrlC = 0x03;
constexpr UINT kBackspace = 0x08;
constexpr UINT kReturn = 0x0D;
constexpr UINT kEscape = 0x1B;
constexpr UINT kDelete = 0x7F;

}  // namespace

void KeyInput::character(UINT unit) {
    const char32_t high = m_highSurrogate;
    m_highSurrogate = 0;
    switch (unit) {
        case kCtrlC:
        case kEscape:
            m_editor.escape();
            return;
        case kBackspace:
            m_editor.typeKey(EditKey::Backspace);
            return;
        case kReturn:
            m_editor.typeKey(EditKey::Enter);
            return;
        default:
            break;
    }
    if (unit >= 0xD800 && unit < 0xDC00) {
        m_highSurrogate = unit;
    } else if (unit >= 0xDC00 && unit < 0xE000) {
        if (high != 0) {
            m_editor.typeCharacter(0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00));
        }
    } else if (unit >= ' ' && unit != kDelete) {
        m_editor.typeCharacter(unit);
    }
}

bool KeyInput::key(UINT virtualKey) {
    switch (virtualKey) {
        case VK_DELETE:
            m_editor.typeKey(EditKey::Delete);
            return true;
        case VK_LEFT:
            m_editor.typeKey(EditKey::Left);
            return true;
        case VK_RIGHT:
            m_editor.typeKey(EditKey::Right);
            return true;
        case VK_HOME:
            m_editor.typeKey(EditKey::Home);
            return true;
        case VK_END:
            m_editor.typeKey(EditKey::End);
            return true;
        case VK_UP:
            m_editor.typeKey(EditKey::Up);
            return true;
        case VK_DOWN:
            m_editor.typeKey(EditKey::Down);
            return true;
        case VK_F1:
            m_editor.sendString(m_editor.isQuiescent() ? "HELP\n" : "'HELP\n");
            return true;
        case VK_F7:
            toggle("GRIDMODE");
            return true;
        case VK_F8:
            toggle("ORTHOMODE");
            return true;
        default:
            return false;
    }
}

void KeyInput::toggle(const char* variable) {
    m_editor.variables().set(variable, 1 - m_editor.variables().integer(variable));
    m_editor.services().wake();
}

}  // namespace cad
