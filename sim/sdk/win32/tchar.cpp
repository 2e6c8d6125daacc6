#include "tchar.h"

#include "win32_support.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <limits>
#include <string>

using win32::foldCase;

namespace {

using Traits = std::char_traits<TCHAR>;

/// The leading ASCII characters, for the numeric conversions: a number has no others.
std::string narrowPrefix(const TCHAR* text) {
    std::string narrow;
    for (; *text > 0 && *text < 0x80; ++text) {
        narrow.push_back(static_cast<char>(*text));
    }
    return narrow;
}

}  // namespace

std::size_t _tcslen(const TCHAR* text) {
    return Traits::length(text);
}

std::size_t _tcsnlen(const TCHAR* text, std::size_t limit) {
    const TCHAR* end = Traits::find(text, limit, TCHAR{});
    return end != nullptr ? static_cast<std::size_t>(end - text) : limit;
}

int _tcscmp(const TCHAR* left, const TCHAR* right) {
    return _tcsncmp(left, right, std::numeric_limits<std::size_t>::max());
}

int _tcsncmp(const TCHAR* left, const TCHAR* right, std::size_t count) {
    for (; count > 0; --count, ++left, ++right) {
        if (*left != *right) {
            return *left < *right ? -1 : 1;
        }
        if (*left == 0) {
            break;
        }
    }
    return 0;
}

int _tcsicmp(const TCHAR* left, const TCHAR* right) {
    return _tcsnicmp(left, right, std::numeric_limits<std::size_t>::max());
}

int _tcsnicmp(const TCHAR* left, const TCHAR* right, std::size_t count) {
    for (; count > 0; --count, ++left, ++right) {
        const TCHAR a = foldCase(*left);
        const TCHAR b = foldCase(*right);
        if (a != b) {
            return a < b ? -1 : 1;
        }
        if (a == 0) {
            break;
        }
    }
    return 0;
}

TCHAR _totlower(TCHAR character) {
    return foldCase(character);
}

TCHAR _totupper(TCHAR character) {
    for (const int distance : {0x20, 0x50}) {
        if (character >= distance) {
            const auto upper = static_cast<TCHAR>(character - distance);
            if (upper != character && foldCase(upper) == character) {
                return upper;
            }
        }
    }
    return character;
}

int _istspace(TCHAR character) {
    return character == u' ' || (character >= u'\t' && character <= u'\r') || character == 0x85 ||
           character == 0xA0 || character == 0x3000 || (character >= 0x2000 && character <= 0x200A);
}

int _istdigit(TCHAR character) {
    return character >= u'0' && character <= u'9';
}

int _istalpha(TCHAR character) {
    return foldCase(character) != character || _totupper(character) != character ||
           (character >= 0x4E00 && character <= 0x9FFF);
}

errno_t _tcsncpy_s(TCHAR* target, std::size_t size, const TCHAR* source, std::size_t count) {
    if (target == nullptr || size == 0 || source == nullptr) {
        win32::unsupported("_tcsncpy_s", "a null argument or an empty buffer");
    }
    const bool truncate = count == _TRUNCATE;
    const std::size_t length = _tcsnlen(source, truncate ? std::numeric_limits<std::size_t>::max() : count);
    if (length >= size && !truncate) {
        win32::unsupported("_tcsncpy_s", "a buffer that is too small");
    }
    const std::size_t copied = std::min(length, size - 1);
    Traits::move(target, source, copied);
    target[copied] = 0;
    return copied == length ? 0 : STRUNCATE;
}

errno_t _tcscpy_s(TCHAR* target, std::size_t size, const TCHAR* source) {
    if (source == nullptr) {
        win32::unsupported("_tcscpy_s", "a null argument");
    }
    return _tcsncpy_s(target, size, source, _tcslen(source));
}

errno_t _tcscat_s(TCHAR* target, std::size_t size, const TCHAR* source) {
    const std::size_t length = _tcsnlen(target, size);
    return _tcscpy_s(target + length, size - length, source);
}

int _ttoi(const TCHAR* text) {
    return _tcstol(text, nullptr, 10);
}

std::int64_t _ttoi64(const TCHAR* text) {
    return std::strtoll(narrowPrefix(text).c_str(), nullptr, 10);
}

double _ttof(const TCHAR* text) {
    return _tcstod(text, nullptr);
}

LONG _tcstol(const TCHAR* text, TCHAR** end, int base) {
    const std::string narrow = narrowPrefix(text);
    char* narrowEnd = nullptr;
    const long long value = std::strtoll(narrow.c_str(), &narrowEnd, base);
    if (end != nullptr) {
        *end = const_cast<TCHAR*>(text + (narrowEnd - narrow.c_str()));
    }
    constexpr long long kLow = std::numeric_limits<LONG>::min();
    constexpr long long kHigh = std::numeric_limits<LONG>::max();
    if (value < kLow || value > kHigh) {
        errno = ERANGE;
    }
    return static_cast<LONG>(std::clamp(value, kLow, kHigh));
}

double _tcstod(const TCHAR* text, TCHAR** end) {
    const std::string narrow = narrowPrefix(text);
    char* narrowEnd = nullptr;
    const double value = std::strtod(narrow.c_str(), &narrowEnd);
    if (end != nullptr) {
        *end = const_cast<TCHAR*>(text + (narrowEnd - narrow.c_str()));
    }
    return value;
}

const TCHAR* _tcschr(const TCHAR* text, TCHAR character) {
    return Traits::find(text, _tcslen(text) + 1, character);
}

const TCHAR* _tcsrchr(const TCHAR* text, TCHAR character) {
    for (const TCHAR* current = text + _tcslen(text);; --current) {
        if (*current == character) {
            return current;
        }
        if (current == text) {
            return nullptr;
        }
    }
}

const TCHAR* _tcsstr(const TCHAR* text, const TCHAR* part) {
    const std::size_t found = std::u16string_view(text).find(part);
    return found != std::u16string_view::npos ? text + found : nullptr;
}

std::size_t _tcscspn(const TCHAR* text, const TCHAR* characters) {
    const std::size_t found = std::u16string_view(text).find_first_of(characters);
    return found != std::u16string_view::npos ? found : _tcslen(text);
}

std::size_t _tcsspn(const TCHAR* text, const TCHAR* characters) {
    const std::size_t found = std::u16string_view(text).find_first_not_of(characters);
    return found != std::u16string_view::npos ? found : _tcslen(text);
}

const TCHAR* _tcspbrk(const TCHAR* text, const TCHAR* characters) {
    const TCHAR* found = text + _tcscspn(text, characters);
    return *found != 0 ? found : nullptr;
}

TCHAR* _tcschr(TCHAR* text, TCHAR character) {
    return const_cast<TCHAR*>(_tcschr(static_cast<const TCHAR*>(text), character));
}

TCHAR* _tcsrchr(TCHAR* text, TCHAR character) {
    return const_cast<TCHAR*>(_tcsrchr(static_cast<const TCHAR*>(text), character));
}

TCHAR* _tcsstr(TCHAR* text, const TCHAR* part) {
    return const_cast<TCHAR*>(_tcsstr(static_cast<const TCHAR*>(text), part));
}

TCHAR* _tcspbrk(TCHAR* text, const TCHAR* characters) {
    return const_cast<TCHAR*>(_tcspbrk(static_cast<const TCHAR*>(text), characters));
}
