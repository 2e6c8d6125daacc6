#pragma once

// The C run-time's generic-text and 64-bit time functions for UTF-16 text. On Windows the time functions are
// in time.h, which tchar.h does not include: include both.
//
// Simplified: the "C" locale only; case mapping covers ASCII, Latin-1, Greek and Cyrillic letters; the _s
// functions abort on an invalid argument, as the Windows run-time's default handler does.

#include "windef.h"

#include <cstdarg>
#include <cstdio>
#include <ctime>

#ifndef _UNICODE
#define _UNICODE
#endif
#ifndef UNICODE
#define UNICODE
#endif

#define __T(text) u##text
#define _T(text) __T(text)
#define _TEXT(text) __T(text)
#define TEXT(text) __T(text)

using errno_t = int;
using _TCHAR = TCHAR;
using __time64_t = std::int64_t;

WIN32API std::size_t _tcslen(const TCHAR* text);
WIN32API std::size_t _tcsnlen(const TCHAR* text, std::size_t limit);
WIN32API int _tcscmp(const TCHAR* left, const TCHAR* right);
WIN32API int _tcsncmp(const TCHAR* left, const TCHAR* right, std::size_t count);
WIN32API int _tcsicmp(const TCHAR* left, const TCHAR* right);
WIN32API int _tcsnicmp(const TCHAR* left, const TCHAR* right, std::size_t count);
WIN32API TCHAR _totlower(TCHAR character);
WIN32API TCHAR _totupper(TCHAR character);
WIN32API int _istspace(TCHAR character);
WIN32API int _istdigit(TCHAR character);
WIN32API int _istalpha(TCHAR character);

WIN32API errno_t _tcscpy_s(TCHAR* target, std::size_t size, const TCHAR* source);
WIN32API errno_t _tcscat_s(TCHAR* target, std::size_t size, const TCHAR* source);
/// Copies at most count code units and terminates the result. With _TRUNCATE for count, copies what fits and
/// returns STRUNCATE if that is not everything.
WIN32API errno_t _tcsncpy_s(TCHAR* target, std::size_t size, const TCHAR* source, std::size_t count);
#define _TRUNCATE (static_cast<std::size_t>(-1))
constexpr errno_t STRUNCATE = 80;

WIN32API int _ttoi(const TCHAR* text);
WIN32API std::int64_t _ttoi64(const TCHAR* text);
WIN32API double _ttof(const TCHAR* text);
/// As wcstol; long has 32 bits on Windows, so the result is clamped to that range.
WIN32API LONG _tcstol(const TCHAR* text, TCHAR** end, int base);
WIN32API double _tcstod(const TCHAR* text, TCHAR** end);

/// Formats as the Windows run-time's wide printf: %s and %c take UTF-16, %hs and %S take UTF-8; %ld has 32
/// bits as long has on Windows, %I64d, %lld, %zd and %Id have 64. Returns the length; -1 when the text does
/// not fit (the _s forms abort).
WIN32API int _vsctprintf(const TCHAR* format, va_list arguments);
WIN32API int _vsntprintf(TCHAR* target, std::size_t size, const TCHAR* format, va_list arguments);
WIN32API int _vstprintf_s(TCHAR* target, std::size_t size, const TCHAR* format, va_list arguments);
WIN32API int _sctprintf(const TCHAR* format, ...);
WIN32API int _stprintf_s(TCHAR* target, std::size_t size, const TCHAR* format, ...);

#define WIN32CPPAPI __attribute__((visibility("default")))

// Const and non-const overloads, as in C++ on Windows, and the array forms of the _s functions.
WIN32CPPAPI const TCHAR* _tcschr(const TCHAR* text, TCHAR character);
WIN32CPPAPI TCHAR* _tcschr(TCHAR* text, TCHAR character);
WIN32CPPAPI const TCHAR* _tcsrchr(const TCHAR* text, TCHAR character);
WIN32CPPAPI TCHAR* _tcsrchr(TCHAR* text, TCHAR character);
WIN32CPPAPI const TCHAR* _tcsstr(const TCHAR* text, const TCHAR* part);
WIN32CPPAPI TCHAR* _tcsstr(TCHAR* text, const TCHAR* part);
WIN32CPPAPI const TCHAR* _tcspbrk(const TCHAR* text, const TCHAR* characters);
WIN32CPPAPI TCHAR* _tcspbrk(TCHAR* text, const TCHAR* characters);
WIN32API std::size_t _tcsspn(const TCHAR* text, const TCHAR* characters);
WIN32API std::size_t _tcscspn(const TCHAR* text, const TCHAR* characters);

template <std::size_t Size>
errno_t _tcscpy_s(TCHAR (&target)[Size], const TCHAR* source) {
    return _tcscpy_s(target, Size, source);
}
template <std::size_t Size>
errno_t _tcscat_s(TCHAR (&target)[Size], const TCHAR* source) {
    return _tcscat_s(target, Size, source);
}
template <std::size_t Size, typename... Arguments>
int _stprintf_s(TCHAR (&target)[Size], const TCHAR* format, Arguments... arguments) {
    return _stprintf_s(static_cast<TCHAR*>(target), Size, format, arguments...);
}

// Time.

/// Seconds since 1970-01-01 UTC; also stored in *result unless that is null.
WIN32API __time64_t _time64(__time64_t* result);
/// Local time; EINVAL for a null argument or a time outside 1970 to 3000, and all fields of the result are
/// -1.
WIN32API errno_t _localtime64_s(std::tm* result, const __time64_t* time);
WIN32API errno_t _gmtime64_s(std::tm* result, const __time64_t* time);
WIN32API __time64_t _mktime64(std::tm* time);
/// As strftime: the length, 0 when the text and its terminator do not fit (or the text is empty).
WIN32API std::size_t _tcsftime(TCHAR* target, std::size_t size, const TCHAR* format, const std::tm* time);
