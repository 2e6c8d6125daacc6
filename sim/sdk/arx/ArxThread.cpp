#include "ArxThread.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>

namespace {
const DWORD kUiThread = GetCurrentThreadId();
}

void arxRequireUiThread(const char* call) {
    if (GetCurrentThreadId() != kUiThread) {
        std::fprintf(stderr, "ObjectARX slice: %s called on a thread other than the UI thread\n", call);
        std::abort();
    }
}
