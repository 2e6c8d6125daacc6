#pragma once

#include "windef.h"

#include <cstring>

struct GUID {
    DWORD Data1;
    WORD Data2;
    WORD Data3;
    BYTE Data4[8];
};
using IID = GUID;
using CLSID = GUID;

inline bool IsEqualGUID(const GUID& left, const GUID& right) {
    return std::memcmp(&left, &right, sizeof(GUID)) == 0;
}
inline bool operator==(const GUID& left, const GUID& right) {
    return IsEqualGUID(left, right);
}
inline bool operator!=(const GUID& left, const GUID& right) {
    return !IsEqualGUID(left, right);
}

constexpr GUID GUID_NULL = {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};
