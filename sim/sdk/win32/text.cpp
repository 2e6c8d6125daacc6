// Conversion between UTF-16 and UTF-8, and string comparison.

#include "win32_support.h"
#include "winbase.h"

#include <algorithm>
#include <cstring>

namespace win32 {

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kFirstSupplementary = 0x10000;

bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void appendUtf8(std::string& target, char32_t character) {
    const auto put = [&target](char32_t byte) { target.push_back(static_cast<char>(byte)); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0 | character >> 6);
        put(0x80 | (character & 0x3F));
    } else if (character < kFirstSupplementary) {
        put(0xE0 | character >> 12);
        put(0x80 | (character >> 6 & 0x3F));
        put(0x80 | (character & 0x3F));
    } else {
        put(0xF0 | character >> 18);
        put(0x80 | (character >> 12 & 0x3F));
        put(0x80 | (character >> 6 & 0x3F));
        put(0x80 | (character & 0x3F));
    }
}

/// Removes one character from the front of the text. For malformed UTF-8 it removes at least one byte,
/// returns U+FFFD and sets valid to false.
char32_t nextCharacter(std::string_view& text, bool& valid) {
    const auto byteAt = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byteAt(0);
    if (first < 0x80) {
        text.remove_prefix(1);
        return first;
    }
    const std::size_t length = first >= 0xF0 && first <= 0xF4   ? 4
                               : first >= 0xE0 && first <= 0xEF ? 3
                               : first >= 0xC2 && first <= 0xDF ? 2
                                                                : 0;
    char32_t character = length == 0 ? 0 : first & (0x7FU >> length);
    std::size_t taken = 1;
    for (; taken < length && taken < text.size(); ++taken) {
        const unsigned byte = byteAt(taken);
        // The second byte has a narrower range where it would make an overlong form, a surrogate or a code
        // point above U+10FFFF.
        const unsigned low = taken != 1 ? 0x80 : first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
        const unsigned high = taken != 1 ? 0xBF : first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
        if (byte < low || byte > high) {
            break;
        }
        character = character << 6 | (byte & 0x3F);
    }
    valid = length != 0 && taken == length;
    text.remove_prefix(taken);
    return valid ? character : kReplacement;
}

std::u16string decode(std::string_view text, bool& valid) {
    std::u16string result;
    result.reserve(text.size());
    valid = true;
    while (!text.empty()) {
        bool characterValid = true;
        const char32_t character = nextCharacter(text, characterValid);
        valid = valid && characterValid;
        if (character >= kFirstSupplementary) {
            result.push_back(static_cast<char16_t>(0xD7C0 + (character >> 10)));
            result.push_back(static_cast<char16_t>(0xDC00 | (character & 0x3FF)));
        } else {
            result.push_back(static_cast<char16_t>(character));
        }
    }
    return result;
}

std::string encode(std::u16string_view text, bool& valid) {
    std::string result;
    result.reserve(text.size());
    valid = true;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t character = text[i];
        if (isHighSurrogate(character) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
            character = kFirstSupplementary + ((character - 0xD800) << 10) + (text[++i] - 0xDC00U);
        } else if (isHighSurrogate(character) || isLowSurrogate(character)) {
            character = kReplacement;
            valid = false;
        }
        appendUtf8(result, character);
    }
    return result;
}

}  // namespace

std::u16string toUtf16(std::string_view text) {
    bool valid = true;
    return decode(text, valid);
}

std::string toUtf8(std::u16string_view text) {
    bool valid = true;
    return encode(text, valid);
}

TCHAR foldCase(TCHAR character) {
    const auto in = [character](int first, int last) { return character >= first && character <= last; };
    if (in('A', 'Z') || (in(0xC0, 0xDE) && character != 0xD7) || (in(0x391, 0x3A9) && character != 0x3A2) ||
        in(0x410, 0x42F)) {
        return static_cast<TCHAR>(character + 0x20);
    }
    return in(0x400, 0x40F) ? static_cast<TCHAR>(character + 0x50) : character;
}

bool equalIgnoringCase(std::u16string_view left, std::u16string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](TCHAR a, TCHAR b) { return foldCase(a) == foldCase(b); });
}

DWORD copySized(const std::u16string& text, LPWSTR buffer, DWORD size) {
    const auto length = static_cast<DWORD>(text.size());
    if (buffer == nullptr || size <= length) {
        return length + 1;
    }
    std::copy(text.begin(), text.end(), buffer);
    buffer[length] = 0;
    return length;
}

namespace {

/// Copies the result of a conversion to the buffer and returns its length; for size 0 only returns the
/// length.
template <typename Text, typename Unit>
int deliver(const Text& text, bool terminated, Unit* buffer, int size) {
    const int count = static_cast<int>(text.size()) + (terminated ? 1 : 0);
    if (size == 0) {
        return count;
    }
    if (count > size) {
        return failWith(ERROR_INSUFFICIENT_BUFFER, 0);
    }
    std::copy(text.begin(), text.end(), buffer);
    if (terminated) {
        buffer[text.size()] = 0;
    }
    return count;
}

void requireUtf8(UINT codePage, const char* call) {
    if (codePage != CP_ACP && codePage != CP_UTF8) {
        unsupported(call, "a code page other than UTF-8");
    }
}

}  // namespace

}  // namespace win32

using namespace win32;

int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int bytes, LPWSTR buffer, int size) {
    requireUtf8(codePage, "MultiByteToWideChar");
    if (text == nullptr || bytes == 0 || size < 0) {
        return failWith(ERROR_INVALID_PARAMETER, 0);
    }
    const auto source =
        bytes < 0 ? std::string_view(text) : std::string_view(text, static_cast<std::size_t>(bytes));
    bool valid = true;
    const std::u16string converted = decode(source, valid);
    if (!valid && (flags & MB_ERR_INVALID_CHARS) != 0) {
        return failWith(ERROR_NO_UNICODE_TRANSLATION, 0);
    }
    return deliver(converted, bytes < 0, buffer, size);
}

int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int units, LPSTR buffer, int size,
                        LPCSTR defaultChar, LPBOOL usedDefault) {
    requireUtf8(codePage, "WideCharToMultiByte");
    // For UTF-8 the default-character arguments must be null, as documented.
    if (text == nullptr || units == 0 || size < 0 || defaultChar != nullptr || usedDefault != nullptr) {
        return failWith(ERROR_INVALID_PARAMETER, 0);
    }
    const auto source =
        units < 0 ? std::u16string_view(text) : std::u16string_view(text, static_cast<std::size_t>(units));
    bool valid = true;
    const std::string converted = encode(source, valid);
    if (!valid && (flags & WC_ERR_INVALID_CHARS) != 0) {
        return failWith(ERROR_NO_UNICODE_TRANSLATION, 0);
    }
    return deliver(converted, units < 0, buffer, size);
}

int lstrlenW(LPCWSTR text) {
    return text != nullptr ? static_cast<int>(std::u16string_view(text).size()) : 0;
}

int lstrcmpW(LPCWSTR left, LPCWSTR right) {
    return std::u16string_view(left).compare(right);
}

int lstrcmpiW(LPCWSTR left, LPCWSTR right) {
    while (*left != 0 && foldCase(*left) == foldCase(*right)) {
        ++left;
        ++right;
    }
    return foldCase(*left) - foldCase(*right);
}
