#include "sim/cad/app/WideText.h"

#include "sim/cad/core/Text.h"

namespace cad {

namespace {

bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}
bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

}  // namespace

CString toWide(const std::string& text) {
    CString wide;
    for (const char32_t c : fromUtf8(text)) {
        if (c > 0xFFFF) {
            wide += static_cast<TCHAR>(0xD7C0 + (c >> 10));
            wide += static_cast<TCHAR>(0xDC00 + (c & 0x3FF));
        } else {
            wide += static_cast<TCHAR>(c);
        }
    }
    return wide;
}

std::string fromWide(const TCHAR* text, int length) {
    std::string utf8;
    for (int i = 0; i < length; ++i) {
        const auto unit = static_cast<char32_t>(text[i]) & 0xFFFFu;
        const char32_t next = i + 1 < length ? static_cast<char32_t>(text[i + 1]) & 0xFFFFu : 0;
        if (isHighSurrogate(unit) && isLowSurrogate(next)) {
            utf8 += toUtf8(0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
            ++i;
        } else {
            utf8 += toUtf8(unit);
        }
    }
    return utf8;
}

std::string fromWide(const CString& text) {
    return fromWide(text.GetString(), text.GetLength());
}

}  // namespace cad
