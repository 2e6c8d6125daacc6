#pragma once

#include <windows.h>

#include <cstring>

/// Redirects a module's calls of an imported function to a replacement as long as it exists, by patching the
/// module's import address table.
class ImportPatch {
public:
    ImportPatch(HMODULE module, const char* function, void* replacement) : m_entry(find(module, function)) {
        if (m_entry != nullptr) {
            m_former = *m_entry;
            write(replacement);
        }
    }
    ~ImportPatch() {
        if (m_entry != nullptr) {
            write(m_former);
        }
    }
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;

    /// The original function; null if the module does not import it, and then nothing is redirected.
    void* former() const { return m_former; }

private:
    template <typename Type>
    static Type* at(HMODULE module, DWORD offset) {
        return reinterpret_cast<Type*>(reinterpret_cast<BYTE*>(module) + offset);
    }

    static void** find(HMODULE module, const char* function) {
        const auto* const dos = at<IMAGE_DOS_HEADER>(module, 0);
        const auto* const headers = at<IMAGE_NT_HEADERS>(module, static_cast<DWORD>(dos->e_lfanew));
        const DWORD imports =
            headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
        for (auto* library = at<IMAGE_IMPORT_DESCRIPTOR>(module, imports); library->Name != 0; ++library) {
            const auto* name = at<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
            auto* address = at<IMAGE_THUNK_DATA>(module, library->FirstThunk);
            for (; name->u1.AddressOfData != 0; ++name, ++address) {
                const auto hint = static_cast<DWORD>(name->u1.AddressOfData);
                if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal) &&
                    std::strcmp(at<IMAGE_IMPORT_BY_NAME>(module, hint)->Name, function) == 0) {
                    return reinterpret_cast<void**>(&address->u1.Function);
                }
            }
        }
        return nullptr;
    }

    void write(void* function) {
        DWORD protection = 0;
        VirtualProtect(m_entry, sizeof *m_entry, PAGE_READWRITE, &protection);
        *m_entry = function;
        VirtualProtect(m_entry, sizeof *m_entry, protection, &protection);
    }

    void** m_entry;
    void* m_former = nullptr;
};
