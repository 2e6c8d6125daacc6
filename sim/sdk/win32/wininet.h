#pragma once

// Of WinINet, only the connectivity check.

#include "winbase.h"

constexpr DWORD FLAG_ICC_FORCE_CONNECTION = 0x00000001;

/// With FLAG_ICC_FORCE_CONNECTION: whether a TCP connection to the URL's host and port can be made within a
/// few seconds; FALSE and ERROR_NOT_CONNECTED otherwise. The slice supports no other use and ends the program
/// on one: a null URL, or a call without the flag. Blocks the calling thread; any thread.
WIN32API BOOL InternetCheckConnectionW(LPCWSTR url, DWORD flags, DWORD reserved);

#define InternetCheckConnection InternetCheckConnectionW
