#pragma once

#include <afx.h>

#include <cstddef>
#include <string_view>

// A text is its full length: an embedded null character, which the service may send, is a character like any
// other. CString's own comparisons and searches stop at one, so the module compares and searches texts with
// sameText and containsText. Only where the host takes a null-terminated string does the text end at its
// first null: terminatedText.

/// All the text's units. Valid until the text is changed or destroyed.
inline std::basic_string_view<TCHAR> unitsOf(const CString& text) {
    return {text.GetString(), static_cast<std::size_t>(text.GetLength())};
}

/// Whether the texts are equal, unit by unit.
inline bool sameText(const CString& left, const CString& right) {
    return unitsOf(left) == unitsOf(right);
}

/// Whether the part occurs in the text, case-sensitively. An empty part always does.
inline bool containsText(const CString& text, const CString& part) {
    return unitsOf(text).find(unitsOf(part)) != std::basic_string_view<TCHAR>::npos;
}

/// The text up to its first null character.
inline CString terminatedText(const CString& text) {
    return CString(text.GetString());
}
