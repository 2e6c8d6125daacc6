#include "tests/host/FakeAccount.h"

CString FakeAccount::token;
CString FakeAccount::tokenAfterSignIn;
bool FakeAccount::signInSucceeds = false;
std::function<void()> FakeAccount::whileGettingToken;
std::function<void()> FakeAccount::whileSigningIn;
int FakeAccount::tokenCalls = 0;
int FakeAccount::signInCalls = 0;
int FakeAccount::lastCapacity = 0;

void FakeAccount::offer(FakeArxHost& host) {
    host.setService(_T("ZR_ACCOUNT"), "zrAccountAccessToken", reinterpret_cast<void*>(&accessToken));
    host.setService(_T("ZR_ACCOUNT"), "zrAccountSignIn", reinterpret_cast<void*>(&signIn));
}

void FakeAccount::reset() {
    token.Empty();
    tokenAfterSignIn.Empty();
    signInSucceeds = false;
    whileGettingToken = nullptr;
    whileSigningIn = nullptr;
    tokenCalls = 0;
    signInCalls = 0;
    lastCapacity = 0;
}

int FakeAccount::accessToken(ACHAR* buffer, int capacity) {
    ++tokenCalls;
    lastCapacity = capacity;
    if (whileGettingToken) {
        whileGettingToken();
    }
    const int copied = token.GetLength() < capacity ? token.GetLength() : capacity - 1;
    for (int i = 0; i < copied; ++i) {
        buffer[i] = token[i];
    }
    buffer[copied] = 0;
    return token.GetLength();
}

int FakeAccount::signIn() {
    ++signInCalls;
    if (whileSigningIn) {
        whileSigningIn();
    }
    if (!signInSucceeds) {
        return 0;
    }
    token = tokenAfterSignIn;
    return 1;
}
