#include "objbase.h"

#include <sys/random.h>

HRESULT CoCreateGuid(GUID* guid) {
    if (guid == nullptr) {
        return E_INVALIDARG;
    }
    if (getrandom(guid, sizeof *guid, 0) != static_cast<ssize_t>(sizeof *guid)) {
        return E_FAIL;
    }
    constexpr unsigned kVersion = 4;
    guid->Data3 = static_cast<WORD>((guid->Data3 & 0x0FFFU) | kVersion << 12);
    guid->Data4[0] = static_cast<BYTE>((guid->Data4[0] & 0x3FU) | 0x80U);
    return S_OK;
}
