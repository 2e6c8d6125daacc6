#include <gtest/gtest.h>
#include <windows.h>

#include <QString>
#include <cstring>

#include "chat/ZR_AiChatManager.h"
#include "host/core/ZR_ZentriText.h"

// The manager's GUIDs are the system's own: what this program calls in ole32.dll is put in its place.

namespace {

using CreateGuid = HRESULT(WINAPI*)(GUID*);

constexpr GUID kGuid = {0x0A1B2C3D, 0x4E5F, 0x4678, {0x89, 0xAB, 0xCD, 0xEF, 0x01, 0x23, 0x45, 0x67}};

/// The place in this program's table of imports that holds the address of CoCreateGuid; null when it has
/// none.
CreateGuid* importedCreateGuid() {
    auto* const base = reinterpret_cast<char*>(GetModuleHandleW(nullptr));
    const auto& headers =
        *reinterpret_cast<IMAGE_NT_HEADERS*>(base + reinterpret_cast<IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const DWORD start = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (auto* library = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + start); library->Name != 0;
         ++library) {
        auto* name = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
        auto* address = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++address) {
            if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) {
                continue;
            }
            const auto& function = *reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
            if (std::strcmp(reinterpret_cast<const char*>(function.Name), "CoCreateGuid") == 0) {
                return reinterpret_cast<CreateGuid*>(&address->u1.Function);
            }
        }
    }
    return nullptr;
}

/// Calls of CoCreateGuid lead to the function while it lives.
class CreateGuidReplaced {
public:
    explicit CreateGuidReplaced(CreateGuid function) : m_place(importedCreateGuid()) {
        if (m_place != nullptr) {
            m_former = *m_place;
            put(function);
        }
    }
    ~CreateGuidReplaced() {
        if (m_place != nullptr) {
            put(m_former);
        }
    }
    CreateGuidReplaced(const CreateGuidReplaced&) = delete;
    CreateGuidReplaced& operator=(const CreateGuidReplaced&) = delete;

    CreateGuid former() const { return m_former; }

private:
    void put(CreateGuid function) {
        DWORD protection = 0;
        VirtualProtect(m_place, sizeof *m_place, PAGE_READWRITE, &protection);
        *m_place = function;
        VirtualProtect(m_place, sizeof *m_place, protection, &protection);
    }

    CreateGuid* m_place;
    CreateGuid m_former = nullptr;
};

HRESULT WINAPI createKnownGuid(GUID* guid) {
    *guid = kGuid;
    return S_OK;
}

HRESULT WINAPI createNoGuid(GUID*) {
    return E_FAIL;
}

}  // namespace

TEST(SystemGuid, IsWhatTheManagerMakes) {
    const CreateGuidReplaced replaced(createKnownGuid);
    EXPECT_EQ(toQString(ZR_AiChatManager::makeGuid()),
              QStringLiteral("0A1B2C3D-4E5F-4678-89AB-CDEF01234567"));
}

TEST(SystemGuid, IsOle32s) {
    const CreateGuidReplaced replaced(createKnownGuid);
    const HMODULE ole = GetModuleHandleW(L"ole32.dll");
    ASSERT_NE(ole, nullptr);
    EXPECT_EQ(reinterpret_cast<void*>(replaced.former()),
              reinterpret_cast<void*>(GetProcAddress(ole, "CoCreateGuid")));
}

TEST(SystemGuid, ThatCannotBeMadeIsEmpty) {
    const CreateGuidReplaced replaced(createNoGuid);
    EXPECT_TRUE(ZR_AiChatManager::makeGuid().IsEmpty());
}
