#pragma once

// Helpers shared by the slice's own files; not part of the API.

#include "windef.h"
#include "winerror.h"

#include <string>
#include <string_view>

namespace win32 {

/// Aborts with a message: an unsupported use of the API must not go unnoticed.
[[noreturn]] void unsupported(const char* call, const char* use);

/// Set the last error; failWith also returns the value that reports the failure.
void setError(DWORD error);
template <typename Result>
Result failWith(DWORD error, Result result) {
    setError(error);
    return result;
}

/// The main thread is the process's first thread, the only one that may create windows.
bool onMainThread();
DWORD mainThreadId();

// Malformed input becomes U+FFFD.
std::string toUtf8(std::u16string_view text);
std::u16string toUtf16(std::string_view text);
TCHAR foldCase(TCHAR character);
bool equalIgnoringCase(std::u16string_view left, std::u16string_view right);

// Paths.
/// The Unix path of a path in Windows or Unix syntax; a relative one stays relative. Empty when the drive
/// does not exist. Components that do not exist as spelt are looked up ignoring case.
std::string toUnixPath(std::u16string_view path);
/// "Z:\…" for an absolute Unix path.
std::u16string toWindowsPath(std::string_view path);

/// Copies the text and returns its length; if the buffer is too small, copies nothing and returns the size
/// needed with the terminator (the convention of GetEnvironmentVariable).
DWORD copySized(const std::u16string& text, LPWSTR buffer, DWORD size);

}  // namespace win32
