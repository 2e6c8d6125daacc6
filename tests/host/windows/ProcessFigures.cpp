#include "tests/host/windows/ProcessFigures.h"

#include <windows.h>
// Must come after windows.h.
#include <psapi.h>
#include <winternl.h>

#include <sstream>
#include <vector>

namespace {

constexpr int kHandleIndexes = 0x10000;
constexpr ULONG_PTR kFirstUserIndex = 0x20;
constexpr NTSTATUS kLengthMismatch = static_cast<NTSTATUS>(0xC0000004);

/// Reads the system's record of this process. GetProcessHandleCount() would suffice for the handles, but in
/// Wine it always returns zero.
void readProcessRecord(ProcessFigures& figures) {
    std::vector<char> buffer(0x10000);
    ULONG needed = 0;
    NTSTATUS status = kLengthMismatch;
    while (status == kLengthMismatch) {
        buffer.resize(buffer.size() * 2);
        status = NtQuerySystemInformation(SystemProcessInformation, buffer.data(),
                                          static_cast<ULONG>(buffer.size()), &needed);
    }
    const char* place = buffer.data();
    while (NT_SUCCESS(status)) {
        const auto* const process = reinterpret_cast<const SYSTEM_PROCESS_INFORMATION*>(place);
        if (reinterpret_cast<ULONG_PTR>(process->UniqueProcessId) == GetCurrentProcessId()) {
            figures.kernelHandles = process->HandleCount;
            // The first field that is not documented.
            figures.threads = *reinterpret_cast<const ULONG*>(place + sizeof(ULONG));
            return;
        }
        if (process->NextEntryOffset == 0) {
            return;
        }
        place += process->NextEntryOffset;
    }
}

unsigned long g_windows = 0;

BOOL CALLBACK countChild(HWND, LPARAM) {
    ++g_windows;
    return TRUE;
}

BOOL CALLBACK countWindow(HWND window, LPARAM) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId()) {
        ++g_windows;
        EnumChildWindows(window, countChild, 0);
    }
    return TRUE;
}

unsigned long countWindows() {
    g_windows = 0;
    EnumWindows(countWindow, 0);
    HWND window = FindWindowExW(HWND_MESSAGE, nullptr, nullptr, nullptr);
    for (; window != nullptr; window = FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr)) {
        countWindow(window, 0);
    }
    return g_windows;
}

bool isIcon(HICON handle) {
    ICONINFO parts = {};
    if (GetIconInfo(handle, &parts) == FALSE) {
        return false;
    }
    // GetIconInfo() has created copies.
    DeleteObject(parts.hbmMask);
    DeleteObject(parts.hbmColor);
    return true;
}

unsigned long countUserObjects(unsigned long windows) {
    const DWORD counted = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    if (counted != 0) {
        return counted;
    }
    // As with the GDI objects below. Windows are not counted by index, since those of other processes have
    // one here too.
    unsigned long count = windows;
    for (ULONG_PTR index = kFirstUserIndex; index < kHandleIndexes; index += 2) {
        count +=
            IsMenu(reinterpret_cast<HMENU>(index)) != FALSE || isIcon(reinterpret_cast<HICON>(index)) ? 1 : 0;
    }
    return count;
}

unsigned long countGdiObjects() {
    const DWORD counted = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    if (counted != 0) {
        return counted;
    }
    // Wine always returns zero, but accepts the bare index of an object as its handle.
    unsigned long count = 0;
    for (ULONG_PTR index = 1; index < kHandleIndexes; ++index) {
        count += GetObjectType(reinterpret_cast<HGDIOBJ>(index)) != 0 ? 1 : 0;
    }
    return count;
}

}  // namespace

ProcessFigures ProcessFigures::now() {
    ProcessFigures figures;
    readProcessRecord(figures);
    figures.windows = countWindows();
    figures.userObjects = countUserObjects(figures.windows);
    figures.gdiObjects = countGdiObjects();
    PROCESS_MEMORY_COUNTERS memory = {};
    memory.cb = sizeof memory;
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    // The commit charge; Wine provides no other private figure.
    figures.privateBytes = memory.PagefileUsage;
    return figures;
}

std::string ProcessFigures::text() const {
    std::ostringstream out;
    out << "handles " << kernelHandles << " threads " << threads << " windows " << windows << " user "
        << userObjects << " gdi " << gdiObjects << " bytes " << privateBytes;
    return out.str();
}
