#include <ArxHost.h>
#include <dbxEntryPoint.h>
#include <gtest/gtest.h>

#include "host/ZR_ZentriModule.h"

// The module's DllMain, which this program contains and the system does not call.

extern "C" {
BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);
extern BOOL(WINAPI* const _pRawDllMain)(HINSTANCE, DWORD, LPVOID);
}

namespace {
HINSTANCE thisProgram() {
    return GetModuleHandleW(nullptr);
}
}  // namespace

TEST(ModuleEntry, AttachesTheModuleAndInitialisesTheDialogLibrary) {
    ASSERT_EQ(_hdllInstance, nullptr);
    EXPECT_EQ(DllMain(thisProgram(), DLL_PROCESS_ATTACH, nullptr), TRUE);
    EXPECT_EQ(_hdllInstance, thisProgram());
    EXPECT_EQ(theArxDLL.ModuleResourceInstance(), thisProgram());
    EXPECT_EQ(arxDialogLibraryInitialisations(), 1);
}

TEST(ModuleEntry, DetachesTheModule) {
    ASSERT_EQ(DllMain(thisProgram(), DLL_PROCESS_ATTACH, nullptr), TRUE);
    EXPECT_EQ(DllMain(thisProgram(), DLL_PROCESS_DETACH, nullptr), TRUE);
    EXPECT_EQ(theArxDLL.ModuleResourceInstance(), nullptr);
}

TEST(ModuleEntry, RefusesToLoadWhenMfcCannotAttachTheModule) {
    EXPECT_EQ(DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr), FALSE);
    EXPECT_EQ(arxDialogLibraryInitialisations(), 0);
}

TEST(ModuleEntry, DetachesNothingAfterARefusal) {
    ASSERT_EQ(DllMain(nullptr, DLL_PROCESS_ATTACH, nullptr), FALSE);
    theArxDLL.AttachInstance(thisProgram());
    EXPECT_EQ(DllMain(nullptr, DLL_PROCESS_DETACH, nullptr), TRUE);
    EXPECT_EQ(theArxDLL.ModuleResourceInstance(), thisProgram());
}

TEST(ModuleEntry, IgnoresThreads) {
    EXPECT_EQ(DllMain(thisProgram(), DLL_THREAD_ATTACH, nullptr), TRUE);
    EXPECT_EQ(DllMain(thisProgram(), DLL_THREAD_DETACH, nullptr), TRUE);
    EXPECT_EQ(theArxDLL.ModuleResourceInstance(), nullptr);
    EXPECT_EQ(arxDialogLibraryInitialisations(), 0);
}

TEST(ModuleEntry, HasMfcsPartOfIt) {
    ASSERT_NE(_pRawDllMain, nullptr);
    EXPECT_EQ(_pRawDllMain(thisProgram(), DLL_PROCESS_ATTACH, nullptr), TRUE);
}
