// The Windows run-time's wide printf.

#include "tchar.h"
#include "win32_support.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

namespace {

enum class Size { Default, Char, Short, Long, LongLong };

struct Directive {
    std::string flags;
    int width = 0;
    int precision = -1;
    Size size = Size::Default;
    bool wideText = false;
    bool narrowText = false;
    TCHAR conversion = 0;
};

/// Where va_list is an array type it cannot be passed by reference portably; a struct member can.
struct Arguments {
    va_list list;
};

int takeNumber(const TCHAR*& format) {
    constexpr int kLimit = 1 << 20;
    int number = 0;
    while (*format >= u'0' && *format <= u'9') {
        number = std::min(kLimit, number * 10 + (*format++ - u'0'));
    }
    return number;
}

void takeSize(const TCHAR*& format, Directive& directive) {
    for (;; ++format) {
        switch (*format) {
            case u'h':
                directive.size = directive.size == Size::Short ? Size::Char : Size::Short;
                directive.narrowText = true;
                break;
            case u'l':
                directive.size = directive.size == Size::Long ? Size::LongLong : Size::Long;
                directive.wideText = true;
                break;
            case u'w':
                directive.wideText = true;
                break;
            case u'L':
                break;
            case u'z':
            case u't':
            case u'j':
                directive.size = Size::LongLong;
                break;
            case u'I':
                directive.size = Size::LongLong;
                if (format[1] == u'6' && format[2] == u'4') {
                    format += 2;
                } else if (format[1] == u'3' && format[2] == u'2') {
                    directive.size = Size::Long;
                    format += 2;
                }
                break;
            default:
                return;
        }
    }
}

Directive takeDirective(const TCHAR*& format, Arguments& arguments) {
    Directive directive;
    while (*format == u'-' || *format == u'+' || *format == u' ' || *format == u'#' || *format == u'0') {
        directive.flags.push_back(static_cast<char>(*format++));
    }
    if (*format == u'*') {
        ++format;
        directive.width = va_arg(arguments.list, int);
        if (directive.width < 0) {
            directive.flags.push_back('-');
            directive.width = -directive.width;
        }
    } else {
        directive.width = takeNumber(format);
    }
    if (*format == u'.') {
        ++format;
        if (*format == u'*') {
            ++format;
            directive.precision = va_arg(arguments.list, int);
        } else {
            directive.precision = takeNumber(format);
        }
    }
    takeSize(format, directive);
    directive.conversion = *format;
    if (*format != 0) {
        ++format;
    }
    return directive;
}

void pad(std::u16string& out, const Directive& directive, const std::u16string& text) {
    const std::size_t width = static_cast<std::size_t>(directive.width);
    const std::size_t missing = text.size() < width ? width - text.size() : 0;
    const bool left = directive.flags.find('-') != std::string::npos;
    if (!left) {
        out.append(missing, directive.flags.find('0') != std::string::npos ? u'0' : u' ');
    }
    out += text;
    if (left) {
        out.append(missing, u' ');
    }
}

/// Formats the number with snprintf: the text is ASCII.
template <typename Value>
void appendNumber(std::u16string& out, const Directive& directive, const char* length, Value value) {
    std::string format = "%" + directive.flags;
    if (directive.width > 0) {
        format += std::to_string(directive.width);
    }
    if (directive.precision >= 0) {
        format += "." + std::to_string(directive.precision);
    }
    format += length;
    format.push_back(static_cast<char>(directive.conversion));
    std::array<char, 128> small{};
    const int needed = std::snprintf(small.data(), small.size(), format.c_str(), value);
    if (needed < 0) {
        return;
    }
    if (static_cast<std::size_t>(needed) < small.size()) {
        out.append(small.begin(), small.begin() + needed);
        return;
    }
    std::string large(static_cast<std::size_t>(needed) + 1, '\0');
    std::snprintf(large.data(), large.size(), format.c_str(), value);
    out.append(large.begin(), large.end() - 1);
}

void appendInteger(std::u16string& out, const Directive& directive, Arguments& arguments, bool isSigned) {
    long long value = 0;
    switch (directive.size) {
        case Size::LongLong:
            value = va_arg(arguments.list, long long);
            break;
        case Size::Char: {
            const int given = va_arg(arguments.list, int);
            value = isSigned ? static_cast<signed char>(given) : static_cast<unsigned char>(given);
            break;
        }
        case Size::Short: {
            const int given = va_arg(arguments.list, int);
            value = isSigned ? static_cast<short>(given) : static_cast<unsigned short>(given);
            break;
        }
        default: {
            // long has 32 bits on Windows.
            const int given = va_arg(arguments.list, int);
            value = isSigned ? static_cast<long long>(given)
                             : static_cast<long long>(static_cast<unsigned>(given));
            break;
        }
    }
    appendNumber(out, directive, "ll", value);
}

void appendString(std::u16string& out, const Directive& directive, Arguments& arguments, bool wide) {
    const std::size_t limit = directive.precision >= 0 ? static_cast<std::size_t>(directive.precision)
                                                       : static_cast<std::size_t>(-1);
    std::u16string text = u"(null)";
    if (wide) {
        if (const auto* given = va_arg(arguments.list, const TCHAR*)) {
            std::size_t length = 0;
            while (length < limit && given[length] != 0) {
                ++length;
            }
            text.assign(given, length);
        }
    } else if (const char* given = va_arg(arguments.list, const char*)) {
        std::size_t length = 0;
        while (length < limit && given[length] != 0) {
            ++length;
        }
        text = win32::toUtf16({given, length});
    }
    pad(out, directive, text.substr(0, limit));
}

std::u16string format(const TCHAR* pattern, va_list list) {
    Arguments arguments;
    va_copy(arguments.list, list);
    std::u16string out;
    while (*pattern != 0) {
        if (*pattern != u'%') {
            out.push_back(*pattern++);
            continue;
        }
        ++pattern;
        if (*pattern == u'%') {
            out.push_back(*pattern++);
            continue;
        }
        const Directive directive = takeDirective(pattern, arguments);
        switch (directive.conversion) {
            case u'd':
            case u'i':
                appendInteger(out, directive, arguments, true);
                break;
            case u'u':
            case u'o':
            case u'x':
            case u'X':
                appendInteger(out, directive, arguments, false);
                break;
            case u'e':
            case u'E':
            case u'f':
            case u'F':
            case u'g':
            case u'G':
            case u'a':
            case u'A':
                appendNumber(out, directive, "", va_arg(arguments.list, double));
                break;
            case u'p': {
                // Sixteen upper-case digits, as on 64-bit Windows.
                Directive pointer = directive;
                pointer.conversion = u'X';
                pointer.precision = 16;
                appendNumber(out, pointer, "ll",
                             reinterpret_cast<std::uintptr_t>(va_arg(arguments.list, void*)));
                break;
            }
            case u's':
                appendString(out, directive, arguments, !directive.narrowText);
                break;
            case u'S':
                appendString(out, directive, arguments, directive.wideText);
                break;
            case u'c':
            case u'C':
                pad(out, directive, std::u16string(1, static_cast<TCHAR>(va_arg(arguments.list, int))));
                break;
            default:
                win32::unsupported("printf", "an unknown conversion in the format");
        }
    }
    va_end(arguments.list);
    return out;
}

}  // namespace

int _vsctprintf(const TCHAR* pattern, va_list arguments) {
    return static_cast<int>(format(pattern, arguments).size());
}

int _vsntprintf(TCHAR* target, std::size_t size, const TCHAR* pattern, va_list arguments) {
    const std::u16string text = format(pattern, arguments);
    const std::size_t copied = text.copy(target, size);
    if (copied < size) {
        target[copied] = 0;
    }
    return copied == text.size() ? static_cast<int>(copied) : -1;
}

int _vstprintf_s(TCHAR* target, std::size_t size, const TCHAR* pattern, va_list arguments) {
    const std::u16string text = format(pattern, arguments);
    if (text.size() >= size) {
        win32::unsupported("_vstprintf_s", "a buffer that is too small");
    }
    text.copy(target, text.size());
    target[text.size()] = 0;
    return static_cast<int>(text.size());
}

int _sctprintf(const TCHAR* pattern, ...) {
    va_list arguments;
    va_start(arguments, pattern);
    const int length = _vsctprintf(pattern, arguments);
    va_end(arguments);
    return length;
}

int _stprintf_s(TCHAR* target, std::size_t size, const TCHAR* pattern, ...) {
    va_list arguments;
    va_start(arguments, pattern);
    const int length = _vstprintf_s(target, size, pattern, arguments);
    va_end(arguments);
    return length;
}
