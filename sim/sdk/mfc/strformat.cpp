#include <climits>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

#include "afx.h"

namespace {

enum class Size { standard, shortInt, charInt, longInt, longLong, pointer };

struct Conversion {
    bool left = false;
    bool plus = false;
    bool blank = false;
    bool alternate = false;
    bool zero = false;
    int width = 0;
    int precision = -1;
    Size size = Size::standard;
    bool longDouble = false;
    bool wide = false;    ///< l or w before a text or character
    bool narrow = false;  ///< h before a text or character
};

const int kMaxWidth = 1 << 20;  // keeps a corrupt width from exhausting the memory

/// Interprets a format and its arguments and appends the result to a string.
class Formatter {
public:
    Formatter(CString& text, LPCTSTR format, va_list arguments) : m_text(text), m_at(format) {
        va_copy(m_arguments, arguments);
    }
    ~Formatter() { va_end(m_arguments); }
    Formatter(const Formatter&) = delete;
    Formatter& operator=(const Formatter&) = delete;

    void run() {
        while (*m_at != 0) {
            LPCTSTR literal = m_at;
            while (*m_at != 0 && *m_at != _T('%')) {
                ++m_at;
            }
            m_text.Append(literal, static_cast<int>(m_at - literal));
            if (*m_at == _T('%')) {
                ++m_at;
                convert();
            }
        }
    }

private:
    void convert() {
        Conversion c;
        readFlags(c);
        c.width = readNumber();
        if (c.width < 0) {  // a negative * means left-aligned
            c.left = true;
            c.width = -c.width;
        }
        if (*m_at == _T('.')) {
            ++m_at;
            c.precision = readNumber();
            if (c.precision < 0) {
                c.precision = -1;
            }
        }
        readSize(c);
        const TCHAR type = *m_at;
        if (type == 0) {
            return;
        }
        ++m_at;
        switch (type) {
            case _T('%'):
                m_text.AppendChar(type);
                break;
            case _T('d'):
            case _T('i'):
                signedInteger(c);
                break;
            case _T('u'):
                integer(c, readUnsigned(c.size), 10, false, "");
                break;
            case _T('o'):
                octal(c);
                break;
            case _T('x'):
            case _T('X'):
                hexadecimal(c, type == _T('X'));
                break;
            case _T('p'):
                c.precision = static_cast<int>(2 * sizeof(void*));
                integer(c, reinterpret_cast<uintptr_t>(va_arg(m_arguments, void*)), 16, true, "");
                break;
            case _T('c'):
                character(c, !c.narrow);
                break;
            case _T('C'):
                character(c, c.wide);
                break;
            case _T('s'):
                string(c, !c.narrow);
                break;
            case _T('S'):
                string(c, c.wide);
                break;
            case _T('e'):
            case _T('E'):
            case _T('f'):
            case _T('F'):
            case _T('g'):
            case _T('G'):
            case _T('a'):
            case _T('A'):
                floating(c, static_cast<char>(type));
                break;
            case _T('n'):
                // Windows disables %n by default too.
                static_cast<void>(va_arg(m_arguments, void*));
                break;
            default:
                m_text.AppendChar(type);
                break;
        }
    }

    void readFlags(Conversion& c) {
        for (;; ++m_at) {
            switch (*m_at) {
                case _T('-'):
                    c.left = true;
                    break;
                case _T('+'):
                    c.plus = true;
                    break;
                case _T(' '):
                    c.blank = true;
                    break;
                case _T('#'):
                    c.alternate = true;
                    break;
                case _T('0'):
                    c.zero = true;
                    break;
                default:
                    return;
            }
        }
    }

    /// Reads digits, or an argument for *; 0 if there is neither.
    int readNumber() {
        int number = 0;
        if (*m_at == _T('*')) {
            ++m_at;
            number = va_arg(m_arguments, int);
            return number < -kMaxWidth ? -kMaxWidth : (number > kMaxWidth ? kMaxWidth : number);
        }
        for (; *m_at >= _T('0') && *m_at <= _T('9'); ++m_at) {
            number = number > kMaxWidth / 10 ? kMaxWidth : number * 10 + static_cast<int>(*m_at - _T('0'));
        }
        return number;
    }

    void readSize(Conversion& c) {
        for (;; ++m_at) {
            switch (*m_at) {
                case _T('h'):
                    c.size = c.size == Size::shortInt ? Size::charInt : Size::shortInt;
                    c.narrow = true;
                    break;
                case _T('l'):
                    c.size = c.size == Size::longInt ? Size::longLong : Size::longInt;
                    c.wide = true;
                    break;
                case _T('w'):
                    c.wide = true;
                    break;
                case _T('L'):
                    c.longDouble = true;
                    break;
                case _T('j'):
                    c.size = Size::longLong;
                    break;
                case _T('z'):
                case _T('t'):
                    c.size = Size::pointer;
                    break;
                case _T('I'):
                    if (m_at[1] == _T('6') && m_at[2] == _T('4')) {
                        c.size = Size::longLong;
                        m_at += 2;
                    } else if (m_at[1] == _T('3') && m_at[2] == _T('2')) {
                        c.size = Size::standard;
                        m_at += 2;
                    } else {
                        c.size = Size::pointer;
                    }
                    break;
                default:
                    return;
            }
        }
    }

    // `long` has 32 bits, as on Windows. On 64-bit platforms every integer argument takes an eight-byte slot,
    // so a 64-bit long of the caller still consumes one argument.
    static_assert(sizeof(INT_PTR) == sizeof(long long), "only 64-bit platforms");
    long long readSigned(Size size) {
        switch (size) {
            case Size::charInt:
                return static_cast<signed char>(va_arg(m_arguments, int));
            case Size::shortInt:
                return static_cast<short>(va_arg(m_arguments, int));
            case Size::longLong:
            case Size::pointer:
                return va_arg(m_arguments, long long);
            default:
                return va_arg(m_arguments, int);
        }
    }
    unsigned long long readUnsigned(Size size) {
        switch (size) {
            case Size::charInt:
                return static_cast<unsigned char>(va_arg(m_arguments, int));
            case Size::shortInt:
                return static_cast<unsigned short>(va_arg(m_arguments, int));
            case Size::longLong:
            case Size::pointer:
                return va_arg(m_arguments, unsigned long long);
            default:
                return va_arg(m_arguments, unsigned);
        }
    }

    void signedInteger(const Conversion& c) {
        const long long value = readSigned(c.size);
        const char* sign = value < 0 ? "-" : (c.plus ? "+" : (c.blank ? " " : ""));
        const auto magnitude = static_cast<unsigned long long>(value);
        integer(c, value < 0 ? 0 - magnitude : magnitude, 10, false, sign);
    }
    void octal(Conversion c) {
        const unsigned long long value = readUnsigned(c.size);
        if (c.alternate) {
            // The alternate form raises the precision until the first digit is 0.
            int digits = 1;
            for (unsigned long long rest = value; rest != 0; rest /= 8) {
                ++digits;
            }
            c.precision = c.precision < digits ? digits : c.precision;
        }
        integer(c, value, 8, false, "");
    }
    void hexadecimal(const Conversion& c, bool upper) {
        const unsigned long long value = readUnsigned(c.size);
        integer(c, value, 16, upper, !c.alternate || value == 0 ? "" : (upper ? "0X" : "0x"));
    }

    void integer(const Conversion& c, unsigned long long value, unsigned base, bool upper,
                 const char* prefix) {
        const char* const digits = upper ? "0123456789ABCDEF" : "0123456789abcdef";
        std::string number;
        for (; value != 0; value /= base) {
            number.insert(number.begin(), digits[value % base]);
        }
        const size_t minimum = c.precision < 0 ? 1 : static_cast<size_t>(c.precision);
        if (number.size() < minimum) {
            number.insert(0, minimum - number.size(), '0');
        }
        put(c, prefix, number, c.zero && c.precision < 0);
    }

    void floating(const Conversion& c, char type) {
        char format[16];
        std::snprintf(format, sizeof format, "%%%s.*%c", c.alternate ? "#" : "", type);
        double value = c.longDouble ? static_cast<double>(va_arg(m_arguments, long double))
                                    : va_arg(m_arguments, double);
        const bool negative = std::signbit(value);
        value = negative ? -value : value;
        const bool hexadecimalFloat = type == 'a' || type == 'A';
        const int precision = c.precision < 0 && !hexadecimalFloat ? 6 : c.precision;
        const int length = std::snprintf(nullptr, 0, format, precision, value);
        std::string number(static_cast<size_t>(length), '\0');
        std::snprintf(&number[0], number.size() + 1, format, precision, value);
        const char* const point = std::localeconv()->decimal_point;
        const size_t at = number.find(point);
        if (at != std::string::npos) {
            number.replace(at, std::strlen(point), ".");
        }
        put(c, negative ? "-" : (c.plus ? "+" : (c.blank ? " " : "")), number,
            c.zero && std::isfinite(value));
    }

    void character(const Conversion& c, bool wide) {
        const int value = va_arg(m_arguments, int);
        if (wide) {
            const auto unit = static_cast<TCHAR>(value);
            padded(c, &unit, 1);
        } else {
            const char unit = static_cast<char>(value);
            const CString text(&unit, 1);
            padded(c, text.GetString(), text.GetLength());
        }
    }

    void string(const Conversion& c, bool wide) {
        if (wide) {
            LPCTSTR text = va_arg(m_arguments, LPCTSTR);
            if (text == nullptr) {
                text = _T("(null)");
            }
            padded(c, text, limitedLength(text, c.precision));
        } else {
            const char* text = va_arg(m_arguments, const char*);
            if (text == nullptr) {
                text = "(null)";
            }
            // The precision counts bytes of narrow text.
            const CString converted(text, limitedLength(text, c.precision));
            padded(c, converted.GetString(), converted.GetLength());
        }
    }

    /// The string's length, at most `limit`: a string limited by a precision need not be terminated.
    template <typename Char>
    static int limitedLength(const Char* text, int limit) {
        int length = 0;
        while ((limit < 0 || length < limit) && length < INT_MAX / 2 && text[length] != 0) {
            ++length;
        }
        return length;
    }

    void padded(const Conversion& c, LPCTSTR text, int length) {
        const int padding = c.width > length ? c.width - length : 0;
        if (!c.left) {
            pad(c.zero ? _T('0') : _T(' '), padding);
        }
        m_text.Append(text, length);
        if (c.left) {
            pad(_T(' '), padding);
        }
    }

    void put(const Conversion& c, const char* prefix, const std::string& number, bool zeroPadded) {
        const int length = static_cast<int>(std::strlen(prefix) + number.size());
        const int padding = c.width > length ? c.width - length : 0;
        if (!c.left && !zeroPadded) {
            pad(_T(' '), padding);
        }
        appendAscii(prefix, std::strlen(prefix));
        if (!c.left && zeroPadded) {
            pad(_T('0'), padding);
        }
        appendAscii(number.data(), number.size());
        if (c.left) {
            pad(_T(' '), padding);
        }
    }

    void pad(TCHAR character, int count) {
        for (int i = 0; i < count; ++i) {
            m_text.AppendChar(character);
        }
    }
    void appendAscii(const char* text, size_t length) {
        for (size_t i = 0; i < length; ++i) {
            m_text.AppendChar(static_cast<TCHAR>(text[i]));
        }
    }

    CString& m_text;
    LPCTSTR m_at;
    va_list m_arguments;
};

}  // namespace

void AFXAPI AfxFormatV(CString& text, LPCTSTR format, va_list arguments) {
    if (format == nullptr) {
        AfxThrowInvalidArgException();
    }
    // Arguments may point into the string itself, so replace it only at the end.
    CString result;
    Formatter(result, format, arguments).run();
    text = std::move(result);
}
