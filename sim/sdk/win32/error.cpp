#include "win32_support.h"
#include "winbase.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace {
thread_local DWORD t_lastError = ERROR_SUCCESS;
}

DWORD GetLastError() {
    return t_lastError;
}

void SetLastError(DWORD error) {
    t_lastError = error;
}

DWORD GetCurrentThreadId() {
    static thread_local const DWORD id = static_cast<DWORD>(syscall(SYS_gettid));
    return id;
}

DWORD GetCurrentProcessId() {
    return static_cast<DWORD>(getpid());
}

namespace win32 {

void unsupported(const char* call, const char* use) {
    std::fprintf(stderr, "win32: %s: not supported by this slice: %s\n", call, use);
    std::abort();
}

void setError(DWORD error) {
    t_lastError = error;
}

// On Linux the main thread's id equals the process id.
DWORD mainThreadId() {
    return GetCurrentProcessId();
}

bool onMainThread() {
    return GetCurrentThreadId() == mainThreadId();
}

}  // namespace win32
