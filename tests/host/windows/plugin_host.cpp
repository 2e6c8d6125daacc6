// A plain Win32 host with a GetMessage loop, without MFC and Qt. It loads the plug-in named on its command
// line and prints what happens, one fact per line.

#include <windows.h>

#include <cstdio>
#include <cwchar>

namespace {

constexpr int kUsageError = 2;
constexpr int kFailure = 3;
constexpr UINT kStep = WM_APP + 1;
constexpr UINT kLoopEnd = WM_APP + 2;

template <typename Function>
Function symbol(HMODULE plugin, const char* name) {
    const auto found = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(plugin, name)));
    if (found == nullptr) {
        std::fprintf(stderr, "no %s\n", name);
        ExitProcess(kFailure);
    }
    return found;
}

void note(const char* fact, int value) {
    std::printf("%s: %d\n", fact, value);
    std::fflush(stdout);
}

/// Dispatches messages until the wanted one arrives.
void takeUpTo(UINT wanted) {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0 && message.message != wanted) {
        DispatchMessageW(&message);
    }
}

void takeOneStep() {
    PostThreadMessageW(GetCurrentThreadId(), kStep, 0, 0);
    takeUpTo(kStep);
}

}  // namespace

int main() {
    int count = 0;
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (arguments == nullptr || count != 2) {
        return kUsageError;
    }
    const HMODULE plugin = LoadLibraryW(arguments[1]);
    if (plugin == nullptr) {
        std::fprintf(stderr, "the plug-in does not load: %lu\n", GetLastError());
        return kFailure;
    }
    const auto start = symbol<int (*)(HINSTANCE)>(plugin, "pluginStart");
    const auto post = symbol<void (*)()>(plugin, "pluginPost");
    const auto delivered = symbol<int (*)()>(plugin, "pluginDelivered");
    const auto postModalLoop = symbol<void (*)(UINT)>(plugin, "pluginPostModalLoop");
    const auto deliveredInLoop = symbol<int (*)()>(plugin, "pluginDeliveredInLoop");
    const auto livedInLoop = symbol<int (*)()>(plugin, "pluginObjectLivedInLoop");
    const auto lives = symbol<int (*)()>(plugin, "pluginObjectLives");

    note("made", start(plugin));
    note("made again", start(plugin));

    post();
    note("delivered before a message", delivered());
    PostThreadMessageW(GetCurrentThreadId(), kStep, 0, 0);
    MSG message;
    GetMessageW(&message, nullptr, 0, 0);
    // Only hooks have seen it so far.
    note("delivered with a message", delivered());
    if (message.message != kStep) {
        DispatchMessageW(&message);
        takeUpTo(kStep);
    }
    note("delivered twice", delivered() - 1);

    postModalLoop(kLoopEnd);
    PostThreadMessageW(GetCurrentThreadId(), kStep, 0, 0);
    PostThreadMessageW(GetCurrentThreadId(), kStep, 0, 0);
    PostThreadMessageW(GetCurrentThreadId(), kLoopEnd, 0, 0);
    takeOneStep();
    note("delivered in the modal loop", deliveredInLoop());
    note("object lives at the modal loop's end", livedInLoop());
    takeOneStep();
    note("object lives afterwards", lives());

    FreeLibrary(plugin);
    note("mapped when freed", GetModuleHandleW(arguments[1]) == plugin ? 1 : 0);
    const int before = delivered();
    post();
    takeOneStep();
    note("delivered when freed", delivered() - before);
    LocalFree(arguments);
    return 0;
}
