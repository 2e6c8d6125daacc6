#include <afx.h>
#include <windows.h>

#include <memory>
#include <stdexcept>

#include "tests/host/core/FullDisk.h"
#include "tests/host/windows/ImportPatch.h"

// Windows has no file that is always full, so the WriteFile import of the library that contains CFile is
// replaced with a function that fails.

namespace {

std::unique_ptr<ImportPatch> g_patch;

BOOL WINAPI failToWrite(HANDLE, LPCVOID, DWORD, LPDWORD written, LPOVERLAPPED) {
    if (written != nullptr) {
        *written = 0;
    }
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

/// The library that contains CFile, found by the code in its virtual table; null on failure.
HMODULE libraryOfCFile() {
    HMODULE library = nullptr;
    const CFile anyFile;
    const void* const code = **reinterpret_cast<void* const* const*>(&anyFile);
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<LPCWSTR>(code), &library);
    return library;
}

}  // namespace

FullDisk::FullDisk(const QString& file) : m_file(file) {
    const HMODULE library = libraryOfCFile();
    if (library != nullptr) {
        g_patch = std::make_unique<ImportPatch>(library, "WriteFile", reinterpret_cast<void*>(&failToWrite));
    }
    if (g_patch == nullptr || g_patch->former() == nullptr) {
        throw std::runtime_error("CFile does not write with WriteFile");
    }
}

FullDisk::~FullDisk() {
    g_patch.reset();
}
