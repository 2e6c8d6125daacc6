#include <afx.h>
#include <windows.h>

#include <cstring>
#include <stdexcept>

#include "tests/host/core/FullDisk.h"

// Windows has no file that is always full, so it is the system's function that fails: the one through which
// CFile writes, in the imports of the library that CFile is in.

namespace {

void** g_import = nullptr;
void* g_writeFile = nullptr;

BOOL WINAPI failToWrite(HANDLE, LPCVOID, DWORD, LPDWORD written, LPOVERLAPPED) {
    if (written != nullptr) {
        *written = 0;
    }
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

template <typename Type>
Type* at(HMODULE module, DWORD offset) {
    return reinterpret_cast<Type*>(reinterpret_cast<BYTE*>(module) + offset);
}

/// The place where the module keeps the address of an imported function; null when it does not import it.
void** importOf(HMODULE module, const char* function) {
    const auto* const dos = at<IMAGE_DOS_HEADER>(module, 0);
    const auto* const headers = at<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(dos->e_lfanew));
    const DWORD imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (auto* library = at<IMAGE_IMPORT_DESCRIPTOR>(module, imports); library->Name != 0; ++library) {
        const auto* name = at<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
        auto* address = at<IMAGE_THUNK_DATA>(module, library->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++address) {
            const auto place = static_cast<DWORD>(name->u1.AddressOfData);
            if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal) &&
                std::strcmp(at<IMAGE_IMPORT_BY_NAME>(module, place)->Name, function) == 0) {
                return reinterpret_cast<void**>(&address->u1.Function);
            }
        }
    }
    return nullptr;
}

void set(void** import, void* function) {
    DWORD protection = 0;
    VirtualProtect(import, sizeof *import, PAGE_READWRITE, &protection);
    *import = function;
    VirtualProtect(import, sizeof *import, protection, &protection);
}

}  // namespace

FullDisk::FullDisk(const QString& file) : m_file(file) {
    HMODULE library = nullptr;
    // An object of CFile tells where CFile's code is.
    const CFile anyFile;
    const void* const code = **reinterpret_cast<void* const* const*>(&anyFile);
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<LPCWSTR>(code), &library);
    g_import = library != nullptr ? importOf(library, "WriteFile") : nullptr;
    if (g_import == nullptr) {
        throw std::runtime_error("CFile does not write with WriteFile");
    }
    g_writeFile = *g_import;
    set(g_import, reinterpret_cast<void*>(&failToWrite));
}

FullDisk::~FullDisk() {
    set(g_import, g_writeFile);
}
