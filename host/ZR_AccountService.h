#pragma once

#include <afx.h>

/// The host environment's account service, which signs users in and issues their tokens. (The module's own
/// copy of the signed-in state is host/core/ZR_ZentriAccount.h.) It is looked up in the host at each use,
/// since it may come and go with the module that provides it. It is registered as "ZR_ACCOUNT" and has two C
/// functions:
///
///   int zrAccountAccessToken(ACHAR* buffer, int capacity)
///       Copies the signed-in user's access token, null-terminated, and returns its length; 0 when nobody is
///       signed in. If the length is not less than the capacity, the buffer was too small.
///   int zrAccountSignIn()
///       Lets the user sign in now; non-zero when a user is signed in afterwards.
///
/// UI thread.
class ZR_AccountService {
public:
    /// The signed-in user's token; empty when nobody is signed in or the host has no such service.
    static CString accessToken();
    /// False when the user did not sign in or the host has no such service.
    static bool signIn();
};
