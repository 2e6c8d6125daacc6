#pragma once

#include <afx.h>

// The signed-in state of the module's user. The open-chat command writes it on the UI thread, the worker
// threads read it. Unloading forgets it while a reader may still run, so each call is safe on any thread.

/// True once the open-chat command has obtained a token.
bool zentriSignedIn();
void setZentriSignedIn(bool signedIn);

/// The access token, sent to the service as it is. An empty token counts as not signed in.
CString zentriAccessToken();
void setZentriAccessToken(const CString& token);

/// Signed in and in possession of a token: the one test every request starts with.
bool zentriHasAccess();
