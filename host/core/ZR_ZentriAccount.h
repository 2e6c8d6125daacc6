#pragma once

#include <afx.h>

// The signed-in state as the module has last seen it. (The host's service that it comes from is
// host/ZR_AccountService.h.) The open-chat command writes it on the UI thread, the worker threads read it.
// Unloading resets it while a worker may still run, so each function is thread-safe.

/// True once the open-chat command has obtained a token. Part of the interface; nothing in the module calls
/// it.
bool zentriSignedIn();
void setZentriSignedIn(bool signedIn);

/// The access token, sent to the service as it is. An empty token counts as not signed in. Part of the
/// interface; nothing in the module calls it.
CString zentriAccessToken();
void setZentriAccessToken(const CString& token);

/// The token to send with a request; empty when nobody is signed in. A request must be sent with the very
/// copy that has been checked: the user may have signed out before a second call.
CString zentriRequestToken();

/// Whether there is a token to send.
bool zentriHasAccess();
