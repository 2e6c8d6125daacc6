#include <gtest/gtest.h>
#include <windows.h>

#include <QString>

#include "chat/ZR_AiChatManager.h"
#include "host/core/ZR_ZentriText.h"
#include "tests/host/windows/ImportPatch.h"

// The manager's GUIDs come from the system: the tests replace CoCreateGuid.

namespace {

constexpr GUID kGuid = {0x0A1B2C3D, 0x4E5F, 0x4678, {0x89, 0xAB, 0xCD, 0xEF, 0x01, 0x23, 0x45, 0x67}};

/// Replaces CoCreateGuid in this program's imports while it exists.
class CreateGuidPatch : public ImportPatch {
public:
    explicit CreateGuidPatch(HRESULT(WINAPI* function)(GUID*))
        : ImportPatch(GetModuleHandleW(nullptr), "CoCreateGuid", reinterpret_cast<void*>(function)) {}
};

HRESULT WINAPI createKnownGuid(GUID* guid) {
    *guid = kGuid;
    return S_OK;
}

HRESULT WINAPI createNoGuid(GUID*) {
    return E_FAIL;
}

}  // namespace

TEST(SystemGuid, IsReturnedByTheManager) {
    const CreateGuidPatch patch(createKnownGuid);
    EXPECT_EQ(toQString(ZR_AiChatManager::makeGuid()),
              QStringLiteral("0A1B2C3D-4E5F-4678-89AB-CDEF01234567"));
}

TEST(SystemGuid, ComesFromOle32) {
    const CreateGuidPatch patch(createKnownGuid);
    const HMODULE ole = GetModuleHandleW(L"ole32.dll");
    ASSERT_NE(ole, nullptr);
    EXPECT_EQ(patch.former(), reinterpret_cast<void*>(GetProcAddress(ole, "CoCreateGuid")));
}

TEST(SystemGuid, IsEmptyWhenTheSystemFails) {
    const CreateGuidPatch patch(createNoGuid);
    EXPECT_TRUE(ZR_AiChatManager::makeGuid().IsEmpty());
}
