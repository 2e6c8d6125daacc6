#pragma once

// Simplified: of WinINet, only the connectivity check.

#include "winbase.h"

constexpr DWORD FLAG_ICC_FORCE_CONNECTION = 0x00000001;

/// Whether a TCP connection to the URL's host and port succeeds within a few seconds; if not, FALSE and
/// ERROR_NOT_CONNECTED. Simplified: aborts for a null URL or without FLAG_ICC_FORCE_CONNECTION. Any thread;
/// blocks it.
WIN32API BOOL InternetCheckConnectionW(LPCWSTR url, DWORD flags, DWORD reserved);

#define InternetCheckConnection InternetCheckConnectionW
