#pragma once

// Basic types of the ObjectARX slice. ACHAR is TCHAR: UTF-16 on every platform.

#include <tchar.h>
#include <windows.h>

#include <cstdint>

typedef TCHAR ACHAR;

#define ACRX_T(text) _T(text)

class Adesk {
public:
    typedef std::int8_t Int8;
    typedef std::int16_t Int16;
    typedef std::int32_t Int32;
    typedef std::uint8_t UInt8;
    typedef std::uint16_t UInt16;
    typedef std::uint32_t UInt32;
    typedef bool Boolean;

    static constexpr bool kTrue = true;
    static constexpr bool kFalse = false;
};
