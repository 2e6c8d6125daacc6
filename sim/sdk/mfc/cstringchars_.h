#pragma once

#include <climits>
#include <string>

#include "afx.h"

// Helpers shared by CString's source files.
namespace cstring {

using Traits = std::char_traits<TCHAR>;

inline int lengthOf(LPCTSTR text) {
    if (text == nullptr) {
        return 0;
    }
    const size_t length = Traits::length(text);
    if (length > INT_MAX / 2) {
        AfxThrowMemoryException();
    }
    return static_cast<int>(length);
}

inline TCHAR lower(TCHAR c) {
    return c >= _T('A') && c <= _T('Z') ? static_cast<TCHAR>(c - _T('A') + _T('a')) : c;
}
inline TCHAR upper(TCHAR c) {
    return c >= _T('a') && c <= _T('z') ? static_cast<TCHAR>(c - _T('a') + _T('A')) : c;
}

inline bool isSpace(TCHAR c) {
    // Unicode white space, including the ideographic space of CJK text.
    return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x1680 ||
           (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F ||
           c == 0x3000;
}

inline bool isOneOf(TCHAR c, LPCTSTR characters) {
    return characters != nullptr && c != 0 &&
           Traits::find(characters, Traits::length(characters), c) != nullptr;
}

}  // namespace cstring
