#pragma once

// What the slice's own files share. Not for programs.

#include "windef.h"
#include "winerror.h"

#include <string>
#include <string_view>

namespace win32 {

/// Ends the program: a use of the API that the slice does not cover must not pass unnoticed.
[[noreturn]] void unsupported(const char* call, const char* use);

/// Sets the last error and gives the value that reports the failure.
void setError(DWORD error);
template <typename Result>
Result failWith(DWORD error, Result result) {
    setError(error);
    return result;
}

/// The process's first thread, the only one that may own windows.
bool onMainThread();
DWORD mainThreadId();

// Malformed input becomes U+FFFD.
std::string toUtf8(std::u16string_view text);
std::u16string toUtf16(std::string_view text);
TCHAR foldCase(TCHAR character);
bool equalIgnoringCase(std::u16string_view left, std::u16string_view right);

// Paths.
/// The Unix path of a Windows-looking or Unix one, relative ones as they stand; empty when its drive does not
/// exist. Parts that do not exist as spelt are looked for without regard to case.
std::string toUnixPath(std::u16string_view path);
/// "Z:\…" for an absolute Unix path.
std::u16string toWindowsPath(std::string_view path);

/// Copies as GetEnvironmentVariable and its kin do: the length, or the size needed.
DWORD copySized(const std::u16string& text, LPWSTR buffer, DWORD size);

}  // namespace win32
