#pragma once

#include <afx.h>

#include <functional>

#include "tests/support/FakeArxHost.h"

/// A host's account service, as the module looks it up. The module calls plain C functions, so the state is
/// static: a fixture calls reset(), then offer() with its host, then sets the members (ModuleFixture does).
class FakeAccount {
public:
    /// Registers the service in the host.
    static void offer(FakeArxHost& host);
    static void reset();

    static CString token;
    /// The result of signing in: the token afterwards, and whether it succeeds.
    static CString tokenAfterSignIn;
    static bool signInSucceeds;
    /// Called while the service is asked for the token, and while the user signs in.
    static std::function<void()> whileGettingToken;
    static std::function<void()> whileSigningIn;

    static int tokenCalls;
    static int signInCalls;
    /// The capacity of the last call for the token.
    static int lastCapacity;

private:
    static int accessToken(ACHAR* buffer, int capacity);
    static int signIn();
};
