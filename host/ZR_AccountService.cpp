#include "host/ZR_AccountService.h"

#include <adesk.h>
#include <rxregsvc.h>
#include <tchar.h>

namespace {

constexpr const ACHAR* kServiceName = _T("ZR_ACCOUNT");
constexpr int kUsualCapacity = 4096;
/// A longer token is treated as none: no HTTP header could carry it.
constexpr int kMaxCapacity = 1024 * 1024;

using AccessTokenFunction = int (*)(ACHAR* buffer, int capacity);
using SignInFunction = int (*)();

template <typename Function>
Function lookUp(const char* symbol) {
    return reinterpret_cast<Function>(acrxGetServiceSymbolAddr(kServiceName, symbol));
}

}  // namespace

CString ZR_AccountService::accessToken() {
    const auto copyToken = lookUp<AccessTokenFunction>("zrAccountAccessToken");
    if (copyToken == nullptr) {
        return CString();
    }
    int capacity = kUsualCapacity;
    while (capacity <= kMaxCapacity) {
        CString token;
        const int length = copyToken(token.GetBuffer(capacity), capacity);
        token.ReleaseBuffer(length > 0 && length < capacity ? length : 0);
        if (length < capacity) {
            return token;
        }
        capacity = length < kMaxCapacity ? length + 1 : kMaxCapacity + 1;
    }
    return CString();
}

bool ZR_AccountService::signIn() {
    const auto signInNow = lookUp<SignInFunction>("zrAccountSignIn");
    return signInNow != nullptr && signInNow() != 0;
}
