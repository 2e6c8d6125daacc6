// Environment, command line and time.

#include "tchar.h"
#include "win32_support.h"
#include "winbase.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <thread>

namespace {

constexpr __time64_t kYear3000 = 32535215999LL;

std::u16string readCommandLine() {
    std::ifstream file("/proc/self/cmdline", std::ios::binary);
    const std::string raw((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    std::string line;
    for (std::size_t start = 0; start < raw.size();) {
        const std::string argument(raw.c_str() + start);
        start += argument.size() + 1;
        if (!line.empty()) {
            line.push_back(' ');
        }
        if (argument.empty() || argument.find_first_of(" \t") != std::string::npos) {
            line += '"' + argument + '"';
        } else {
            line += argument;
        }
    }
    return win32::toUtf16(line);
}

errno_t brokenDown(std::tm* result, const __time64_t* time,
                   std::tm* (*convert)(const std::time_t*, std::tm*)) {
    if (result == nullptr) {
        return EINVAL;
    }
    const bool valid = time != nullptr && *time >= 0 && *time <= kYear3000;
    const std::time_t seconds = valid ? static_cast<std::time_t>(*time) : 0;
    if (!valid || convert(&seconds, result) == nullptr) {
        *result = {};
        result->tm_sec = result->tm_min = result->tm_hour = result->tm_mday = result->tm_mon =
            result->tm_year = result->tm_wday = result->tm_yday = result->tm_isdst = -1;
        return EINVAL;
    }
    return 0;
}

}  // namespace

LPWSTR GetCommandLineW() {
    static std::u16string line = readCommandLine();
    return line.data();
}

DWORD GetEnvironmentVariableW(LPCWSTR name, LPWSTR buffer, DWORD size) {
    const char* value = std::getenv(win32::toUtf8(name).c_str());
    if (value == nullptr) {
        return win32::failWith<DWORD>(ERROR_ENVVAR_NOT_FOUND, 0);
    }
    return win32::copySized(win32::toUtf16(value), buffer, size);
}

BOOL SetEnvironmentVariableW(LPCWSTR name, LPCWSTR value) {
    const std::string variable = win32::toUtf8(name);
    const int result = value != nullptr ? setenv(variable.c_str(), win32::toUtf8(value).c_str(), 1)
                                        : unsetenv(variable.c_str());
    return result == 0 ? TRUE : win32::failWith<BOOL>(ERROR_INVALID_PARAMETER, FALSE);
}

void Sleep(DWORD milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

ULONGLONG GetTickCount64() {
    return static_cast<ULONGLONG>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                      std::chrono::steady_clock::now().time_since_epoch())
                                      .count());
}

DWORD GetTickCount() {
    return static_cast<DWORD>(GetTickCount64());
}

void OutputDebugStringW(LPCWSTR text) {
    std::fputs(win32::toUtf8(text).c_str(), stderr);
}

__time64_t _time64(__time64_t* result) {
    const __time64_t now = std::time(nullptr);
    if (result != nullptr) {
        *result = now;
    }
    return now;
}

errno_t _localtime64_s(std::tm* result, const __time64_t* time) {
    return brokenDown(result, time, localtime_r);
}

errno_t _gmtime64_s(std::tm* result, const __time64_t* time) {
    return brokenDown(result, time, gmtime_r);
}

__time64_t _mktime64(std::tm* time) {
    return std::mktime(time);
}

std::size_t _tcsftime(TCHAR* target, std::size_t size, const TCHAR* format, const std::tm* time) {
    if (target == nullptr || size == 0 || format == nullptr) {
        win32::unsupported("_tcsftime", "a null argument or an empty buffer");
    }
    // strftime copies the bytes of everything but % directives unchanged. A directive expands to a short
    // text, so this buffer is always large enough; the caller's size is checked afterwards.
    constexpr std::size_t kRoomPerUnit = 64;
    const std::string pattern = win32::toUtf8(format);
    std::string narrow(pattern.size() * kRoomPerUnit + 1, '\0');
    narrow.resize(std::strftime(narrow.data(), narrow.size(), pattern.c_str(), time));
    const std::u16string text = win32::toUtf16(narrow);
    if (text.size() >= size) {
        *target = 0;
        return 0;
    }
    text.copy(target, text.size());
    target[text.size()] = 0;
    return text.size();
}
