#pragma once

#include <afx.h>

#include <gtest/gtest.h>

#include <ostream>
#include <string>

/// The text in UTF-8; lone surrogates become replacement characters.
inline std::string utf8(const CString& text) {
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, text.GetString(), text.GetLength(), nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<size_t>(size), '\0');
    if (size > 0) {
        WideCharToMultiByte(CP_UTF8, 0, text.GetString(), text.GetLength(), &result[0], size, nullptr,
                            nullptr);
    }
    return result;
}

/// Lets GoogleTest print a CString.
inline void PrintTo(const CString& text, std::ostream* stream) {
    *stream << '"' << utf8(text) << '"';
}

// NOLINTBEGIN(bugprone-macro-parentheses): the argument is a class name.
/// Expects the statement to throw a pointer to an exception of this class, and deletes the exception.
#define EXPECT_MFC_THROW(statement, Exception)            \
    try {                                                 \
        statement;                                        \
        ADD_FAILURE() << #statement << " does not throw"; \
    } catch (Exception * e) {                             \
        e->Delete();                                      \
    }
// NOLINTEND(bugprone-macro-parentheses)
