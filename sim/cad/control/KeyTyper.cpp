#include "sim/cad/control/KeyTyper.h"

#include <cstring>
#include <map>
#include <utility>

#include "sim/cad/core/Text.h"
#include "sim/cad/platform/Platform.h"

namespace cad {

namespace {

// TranslateMessage posts a key's WM_CHAR behind the messages already queued, so the stroke takes more than
// one turn to be processed. The modifiers are held until then.
constexpr int kTurnsOfAStroke = 3;
constexpr LPARAM kFirstPress = 0x00000001;
constexpr LPARAM kRelease = static_cast<LPARAM>(0xC0000001);
constexpr LPARAM kAltHeld = 0x20000000;

struct Sign {
    char plain;
    char shifted;
    int virtualKey;
};

constexpr Sign kSigns[] = {
    {'0', ')', '0'},           {'1', '!', '1'},          {'2', '@', '2'},         {'3', '#', '3'},
    {'4', '$', '4'},           {'5', '%', '5'},          {'6', '^', '6'},         {'7', '&', '7'},
    {'8', '*', '8'},           {'9', '(', '9'},          {' ', '\0', VK_SPACE},   {',', '<', VK_OEM_COMMA},
    {'.', '>', VK_OEM_PERIOD}, {'-', '_', VK_OEM_MINUS}, {'=', '+', VK_OEM_PLUS}, {';', ':', VK_OEM_1},
    {'/', '?', VK_OEM_2},      {'`', '~', VK_OEM_3},     {'[', '{', VK_OEM_4},    {'\\', '|', VK_OEM_5},
    {']', '}', VK_OEM_6},      {'\'', '"', VK_OEM_7},    {'\t', '\0', VK_TAB},
};

LPARAM pressed(bool alt) {
    return kFirstPress | (alt ? kAltHeld : 0);
}

}  // namespace

void KeyTyper::typeText(const std::string& text, std::function<void(bool)> done) {
    Job job{{}, std::move(done), 0};
    for (const char32_t character : fromUtf8(text)) {
        if (character != '\r') {
            job.strokes.push_back(strokeOf(character));
        }
    }
    start(std::move(job));
}

void KeyTyper::typeKey(int virtualKey, bool shift, bool control, bool alt, std::function<void(bool)> done) {
    Stroke stroke;
    stroke.virtualKey = virtualKey;
    stroke.shift = shift;
    stroke.control = control;
    stroke.alt = alt;
    start({{stroke}, std::move(done), 0});
}

void KeyTyper::start(Job job) {
    m_jobs.push_back(std::move(job));
    // A single chain of turns processes all jobs.
    if (m_jobs.size() == 1) {
        m_onTurn();
    }
}

void KeyTyper::turn() {
    Job& job = m_jobs.front();
    bool posted = true;
    if (job.turnsToWait > 0) {
        --job.turnsToWait;
        if (job.turnsToWait == 0) {
            platform::holdModifiers(false, false, false);
        }
    } else if (!job.strokes.empty()) {
        posted = post(job.strokes.front());
        job.strokes.pop_front();
        job.turnsToWait = kTurnsOfAStroke - 1;
    }
    if (!posted || (job.strokes.empty() && job.turnsToWait == 0)) {
        const std::function<void(bool)> done = std::move(job.done);
        m_jobs.pop_front();
        done(posted);
    }
    if (!m_jobs.empty()) {
        m_onTurn();
    }
}

KeyTyper::Stroke KeyTyper::strokeOf(char32_t character) {
    Stroke stroke;
    if (character == '\n') {
        stroke.virtualKey = VK_RETURN;
        return stroke;
    }
    if (character >= 'a' && character <= 'z') {
        stroke.virtualKey = static_cast<int>(character - 'a' + 'A');
        return stroke;
    }
    if (character >= 'A' && character <= 'Z') {
        stroke.virtualKey = static_cast<int>(character);
        stroke.shift = true;
        return stroke;
    }
    for (const Sign& sign : kSigns) {
        if (character != 0 && (character == static_cast<char32_t>(sign.plain) ||
                               character == static_cast<char32_t>(sign.shifted))) {
            stroke.virtualKey = sign.virtualKey;
            stroke.shift = character == static_cast<char32_t>(sign.shifted);
            return stroke;
        }
    }
    if (character > 0xFFFF) {
        stroke.units = {static_cast<char16_t>(0xD7C0 + (character >> 10)),
                        static_cast<char16_t>(0xDC00 + (character & 0x3FF))};
    } else {
        stroke.units = std::u16string(1, static_cast<char16_t>(character));
    }
    return stroke;
}

bool KeyTyper::post(const Stroke& stroke) {
    const HWND window = ::GetFocus();
    if (window == nullptr) {
        return false;
    }
    for (const char16_t unit : stroke.units) {
        ::PostMessage(window, WM_CHAR, unit, kFirstPress);
    }
    if (stroke.virtualKey == 0) {
        return true;
    }
    platform::holdModifiers(stroke.shift, stroke.control, stroke.alt);
    const auto key = static_cast<WPARAM>(stroke.virtualKey);
    const UINT down = stroke.alt ? WM_SYSKEYDOWN : WM_KEYDOWN;
    const UINT up = stroke.alt ? WM_SYSKEYUP : WM_KEYUP;
    const std::pair<bool, WPARAM> modifiers[] = {
        {stroke.control, VK_CONTROL}, {stroke.alt, VK_MENU}, {stroke.shift, VK_SHIFT}};
    for (const auto& [held, modifier] : modifiers) {
        if (held) {
            ::PostMessage(window, down, modifier, pressed(stroke.alt));
        }
    }
    ::PostMessage(window, down, key, pressed(stroke.alt));
    ::PostMessage(window, up, key, kRelease | (stroke.alt ? kAltHeld : 0));
    for (const auto& [held, modifier] : modifiers) {
        if (held) {
            ::PostMessage(window, modifier == VK_MENU ? WM_SYSKEYUP : WM_KEYUP, modifier, kRelease);
        }
    }
    return true;
}

int KeyTyper::keyOf(const std::string& name) {
    static const std::map<std::string, int> names = {
        {"RETURN", VK_RETURN}, {"ENTER", VK_RETURN},   {"ESCAPE", VK_ESCAPE}, {"TAB", VK_TAB},
        {"SPACE", VK_SPACE},   {"BACKSPACE", VK_BACK}, {"DELETE", VK_DELETE}, {"INSERT", VK_INSERT},
        {"UP", VK_UP},         {"DOWN", VK_DOWN},      {"LEFT", VK_LEFT},     {"RIGHT", VK_RIGHT},
        {"HOME", VK_HOME},     {"END", VK_END},        {"PAGEUP", VK_PRIOR},  {"PAGEDOWN", VK_NEXT},
        {"ALT", VK_MENU},
    };
    const std::string wanted = upper(name);
    if (wanted.size() == 1 &&
        ((wanted[0] >= 'A' && wanted[0] <= 'Z') || (wanted[0] >= '0' && wanted[0] <= '9'))) {
        return wanted[0];
    }
    if (wanted.size() >= 2 && wanted[0] == 'F') {
        const auto number = parseInteger(wanted.substr(1));
        constexpr int kFunctionKeys = 12;
        if (number && *number >= 1 && *number <= kFunctionKeys) {
            return VK_F1 + *number - 1;
        }
    }
    const auto found = names.find(wanted);
    return found == names.end() ? 0 : found->second;
}

}  // namespace cad
