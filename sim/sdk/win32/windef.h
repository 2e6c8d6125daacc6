#pragma once

// Basic Win32 types for Linux. WCHAR is char16_t (UTF-16). LONG and DWORD have 32 bits, as on Windows;
// WPARAM, LPARAM and LRESULT have the width of a pointer. A window handle is the X window's id.
// Simplified: a selection of the types and macros; the calling conventions are empty.

#include <cstddef>
#include <cstdint>

/// The API functions are exported from the shared library with C linkage.
#define WIN32API extern "C" __attribute__((visibility("default")))

#define CALLBACK
#define WINAPI
#define APIENTRY
#define FAR
#define CONST const

// The __declspec attributes that our sources use.
#define __declspec(attribute) WIN32_DECLSPEC_##attribute
#define WIN32_DECLSPEC_dllexport __attribute__((visibility("default")))
#define WIN32_DECLSPEC_dllimport
#define WIN32_DECLSPEC_novtable

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using BOOL = int;
using INT = int;
using UINT = unsigned int;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using DWORD = std::uint32_t;
using UINT32 = std::uint32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using DWORDLONG = std::uint64_t;
using INT64 = std::int64_t;
using UINT64 = std::uint64_t;
using DWORD64 = std::uint64_t;
using __int64 = std::int64_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using DWORD_PTR = std::uintptr_t;
using SIZE_T = std::size_t;
using WPARAM = UINT_PTR;
using LPARAM = LONG_PTR;
using LRESULT = LONG_PTR;
using HRESULT = LONG;
using FLOAT = float;
using BOOLEAN = BYTE;
using CHAR = char;
using UCHAR = unsigned char;
using WCHAR = char16_t;
using TCHAR = WCHAR;
using VOID = void;

using LPVOID = void*;
using PVOID = void*;
using LPCVOID = const void*;
using LPBYTE = BYTE*;
using LPBOOL = BOOL*;
using LPINT = int*;
using LPLONG = LONG*;
using PLONG = LONG*;
using LPWORD = WORD*;
using LPDWORD = DWORD*;
using PDWORD = DWORD*;
using LPSTR = CHAR*;
using PSTR = CHAR*;
using LPCSTR = const CHAR*;
using PCSTR = const CHAR*;
using LPWSTR = WCHAR*;
using PWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;
using PCWSTR = const WCHAR*;
using LPTSTR = TCHAR*;
using PTSTR = TCHAR*;
using LPCTSTR = const TCHAR*;
using PCTSTR = const TCHAR*;

using HANDLE = void*;
using ATOM = WORD;
using COLORREF = DWORD;

#define DECLARE_HANDLE(name) \
    struct name##__ {        \
        int unused;          \
    };                       \
    using name = struct name##__* /* NOLINT(bugprone-macro-parentheses): a type */

DECLARE_HANDLE(HWND);
DECLARE_HANDLE(HINSTANCE);
DECLARE_HANDLE(HMENU);
DECLARE_HANDLE(HHOOK);
DECLARE_HANDLE(HDC);
DECLARE_HANDLE(HICON);
DECLARE_HANDLE(HACCEL);
DECLARE_HANDLE(HRSRC);
DECLARE_HANDLE(HRGN);
using HMODULE = HINSTANCE;
using HCURSOR = HICON;
using HGDIOBJ = void*;
DECLARE_HANDLE(HBRUSH);
DECLARE_HANDLE(HPEN);
DECLARE_HANDLE(HFONT);
DECLARE_HANDLE(HBITMAP);
using HGLOBAL = HANDLE;
using HLOCAL = HANDLE;

using FARPROC = INT_PTR (*)();
using PROC = INT_PTR (*)();

struct POINT {
    LONG x;
    LONG y;
};
using LPPOINT = POINT*;
using PPOINT = POINT*;
using POINTL = POINT;

struct SIZE {
    LONG cx;
    LONG cy;
};
using LPSIZE = SIZE*;
using PSIZE = SIZE*;

struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
using LPRECT = RECT*;
using PRECT = RECT*;
using LPCRECT = const RECT*;
using tagPOINT = POINT;
using tagSIZE = SIZE;
using tagRECT = RECT;

struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};

union LARGE_INTEGER {
    struct {
        DWORD LowPart;
        LONG HighPart;
    } u;
    LONGLONG QuadPart;
};
using PLARGE_INTEGER = LARGE_INTEGER*;

static_assert(sizeof(LONG) == 4 && sizeof(DWORD) == 4, "LONG and DWORD have 32 bits");
static_assert(sizeof(WPARAM) == sizeof(void*) && sizeof(LPARAM) == sizeof(void*),
              "message arguments hold pointers");

#define MAX_PATH 260

constexpr WORD LOWORD(DWORD_PTR value) {
    return static_cast<WORD>(value & 0xFFFFU);
}
constexpr WORD HIWORD(DWORD_PTR value) {
    return static_cast<WORD>((value >> 16) & 0xFFFFU);
}
constexpr BYTE LOBYTE(DWORD_PTR value) {
    return static_cast<BYTE>(value & 0xFFU);
}
constexpr BYTE HIBYTE(DWORD_PTR value) {
    return static_cast<BYTE>((value >> 8) & 0xFFU);
}
template <typename Low, typename High>
constexpr LONG MAKELONG(Low low, High high) {
    return static_cast<LONG>((static_cast<DWORD>(low) & 0xFFFFU) |
                             ((static_cast<DWORD>(high) & 0xFFFFU) << 16));
}
template <typename Low, typename High>
constexpr WORD MAKEWORD(Low low, High high) {
    return static_cast<WORD>((static_cast<DWORD>(low) & 0xFFU) | ((static_cast<DWORD>(high) & 0xFFU) << 8));
}
template <typename Low, typename High>
constexpr LPARAM MAKELPARAM(Low low, High high) {
    return static_cast<LPARAM>(static_cast<DWORD>(MAKELONG(low, high)));
}
template <typename Low, typename High>
constexpr WPARAM MAKEWPARAM(Low low, High high) {
    return static_cast<WPARAM>(static_cast<DWORD>(MAKELONG(low, high)));
}
template <typename Low, typename High>
constexpr LRESULT MAKELRESULT(Low low, High high) {
    return static_cast<LRESULT>(static_cast<DWORD>(MAKELONG(low, high)));
}

/// A numeric resource id in place of a name; IS_INTRESOURCE recognises it by its high word of 0.
#define MAKEINTRESOURCEW(id) (reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(static_cast<WORD>(id))))
#define MAKEINTRESOURCE MAKEINTRESOURCEW
#define IS_INTRESOURCE(name) ((reinterpret_cast<ULONG_PTR>(name) >> 16) == 0)

#define UNREFERENCED_PARAMETER(parameter) (static_cast<void>(parameter))
