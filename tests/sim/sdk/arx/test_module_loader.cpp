#include <afxcoll.h>
#include <gtest/gtest.h>
#include <rxdlinkr.h>
#include <rxregsvc.h>

#include <memory>

#include "tests/support/FakeArxHost.h"

namespace {

CString fixture(const char* name) {
    return CString(FIXTURE_FOLDER) + _T("/") + CString(name) + _T(".arx");
}

CString loadedNames() {
    const std::unique_ptr<CStringArray> names(static_cast<CStringArray*>(acrxLoadedApps()));
    CString joined;
    for (INT_PTR i = 0; i < names->GetCount(); ++i) {
        joined += names->GetAt(i) + _T(" ");
    }
    return joined;
}

class ModuleLoader : public testing::Test {
protected:
    ~ModuleLoader() override { arxUnloadAllModules(); }

    CString takePrinted() {
        const CString text = host.printedText();
        host.clearPrinted();
        return text;
    }

    FakeArxHost host;
};

}  // namespace

TEST_F(ModuleLoader, SendsTheMessagesInOrder) {
    ASSERT_TRUE(acrxLoadModule(fixture("good"), false));
    EXPECT_TRUE(takePrinted() == _T("[good init 1][good register][good loadDwg]"));
    ASSERT_TRUE(acrxUnloadModule(fixture("good")));
    EXPECT_TRUE(takePrinted() == _T("[good unloadDwg][good unload]"));
}

TEST_F(ModuleLoader, SendsNoDrawingMessagesWithoutADrawing) {
    host.setDocument(nullptr);
    ASSERT_TRUE(acrxLoadModule(fixture("good"), false));
    ASSERT_TRUE(acrxUnloadModule(_T("good.arx")));
    EXPECT_TRUE(takePrinted() == _T("[good init 1][good register][good unload]"));
}

TEST_F(ModuleLoader, IdentifiesALoadedModuleByItsBaseName) {
    ASSERT_TRUE(acrxLoadModule(fixture("good"), false));
    EXPECT_TRUE(acrxAppIsLoaded(_T("GOOD.arx")));
    EXPECT_TRUE(acrxAppIsLoaded(fixture("good")));
    EXPECT_TRUE(loadedNames() == _T("good.arx "));
    EXPECT_TRUE(acrxUnloadModule(_T("Good.ARX")));
    EXPECT_FALSE(acrxAppIsLoaded(_T("good.arx")));
    EXPECT_TRUE(loadedNames().IsEmpty());
}

TEST_F(ModuleLoader, RejectsASecondLoad) {
    ASSERT_TRUE(acrxLoadModule(fixture("good"), false));
    takePrinted();
    EXPECT_FALSE(acrxLoadModule(fixture("good"), true));
    EXPECT_GE(takePrinted().Find(_T("is already loaded.")), 0);
    EXPECT_TRUE(loadedNames() == _T("good.arx "));
}

TEST_F(ModuleLoader, LoadsAgainAfterAnUnload) {
    ASSERT_TRUE(acrxLoadModule(fixture("good"), false));
    ASSERT_TRUE(acrxUnloadModule(fixture("good")));
    takePrinted();
    ASSERT_TRUE(acrxLoadModule(fixture("good"), false));
    EXPECT_TRUE(takePrinted() == _T("[good init 1][good register][good loadDwg]"));
}

TEST_F(ModuleLoader, DoesNotUnloadALockedModule) {
    ASSERT_TRUE(acrxLoadModule(fixture("locked"), false));
    takePrinted();
    EXPECT_TRUE(acrxDynamicLinker->isApplicationLocked(_T("locked.arx")));
    EXPECT_FALSE(acrxUnloadModule(fixture("locked")));
    EXPECT_TRUE(takePrinted().IsEmpty());
    EXPECT_TRUE(acrxAppIsLoaded(_T("locked.arx")));
}

TEST_F(ModuleLoader, TheBaseClassUnlocksTheModuleAndRegistersItAsMdiAware) {
    ASSERT_TRUE(acrxLoadModule(fixture("good"), false));
    EXPECT_FALSE(acrxDynamicLinker->isApplicationLocked(_T("good.arx")));
    EXPECT_TRUE(acrxDynamicLinker->isAppMDIAware(_T("good.arx")));
}

TEST_F(ModuleLoader, UnmapsAModuleThatFailsToInitialize) {
    EXPECT_FALSE(acrxLoadModule(fixture("refusing"), true));
    EXPECT_GE(takePrinted().Find(_T("cannot be initialized.")), 0);
    EXPECT_FALSE(acrxAppIsLoaded(_T("refusing.arx")));
    EXPECT_EQ(GetModuleHandleW(_T("refusing.arx")), nullptr);
}

TEST_F(ModuleLoader, AModuleThatThrowsIsNotLoadedButStaysMapped) {
    EXPECT_FALSE(acrxLoadModule(fixture("throwing"), true));
    const CString printed = takePrinted();
    EXPECT_GE(printed.Find(_T("\nthrowing.arx failed.")), 0);
    EXPECT_GE(printed.Find(_T("cannot be initialized.")), 0);
    EXPECT_FALSE(acrxAppIsLoaded(_T("throwing.arx")));
    // Functions that it registered before may still be called.
    EXPECT_NE(GetModuleHandleW(_T("throwing.arx")), nullptr);
}

TEST_F(ModuleLoader, AModuleThatThrowsOnUnloadIsDroppedButStaysMapped) {
    ASSERT_TRUE(acrxLoadModule(fixture("throwinglate"), false));
    takePrinted();
    EXPECT_TRUE(acrxUnloadModule(fixture("throwinglate")));
    EXPECT_TRUE(takePrinted() ==
                _T("[throwinglate unloadDwg][throwinglate unload]\nthrowinglate.arx failed."));
    EXPECT_TRUE(loadedNames().IsEmpty());
    EXPECT_NE(GetModuleHandleW(_T("throwinglate.arx")), nullptr);
}

TEST_F(ModuleLoader, AModuleUnloadedWhileItIsInitializedIsUnmappedWhenItsEntryPointReturns) {
    EXPECT_FALSE(acrxLoadModule(fixture("leaving"), true));
    const CString printed = takePrinted();
    EXPECT_GE(printed.Find(_T("[leaving unload]")), 0);
    EXPECT_LT(printed.Find(_T("[leaving loadDwg]")), 0);
    EXPECT_GE(printed.Find(_T("cannot be initialized.")), 0);
    EXPECT_FALSE(acrxAppIsLoaded(_T("leaving.arx")));
    EXPECT_EQ(GetModuleHandleW(_T("leaving.arx")), nullptr);
}

TEST_F(ModuleLoader, AModuleUnloadedByItsOwnMessageHandlerIsUnmappedWhenItsEntryPointReturns) {
    ASSERT_TRUE(acrxLoadModule(fixture("leavinglate"), false));
    arxSendToModules(AcRx::kQuitMsg);
    EXPECT_FALSE(acrxAppIsLoaded(_T("leavinglate.arx")));
    EXPECT_EQ(GetModuleHandleW(_T("leavinglate.arx")), nullptr);
}

TEST_F(ModuleLoader, RejectsAnotherReleaseWithoutCallingIt) {
    EXPECT_FALSE(acrxLoadModule(fixture("old"), true));
    const CString printed = takePrinted();
    EXPECT_GE(printed.Find(_T("is not a module for this release.")), 0);
    EXPECT_LT(printed.Find(_T("[old called]")), 0);
    EXPECT_EQ(GetModuleHandleW(_T("old.arx")), nullptr);
}

TEST_F(ModuleLoader, RejectsALibraryWithoutTheExports) {
    EXPECT_FALSE(acrxLoadModule(fixture("nomodule"), true));
    EXPECT_GE(takePrinted().Find(_T("is not a module for this release.")), 0);
}

TEST_F(ModuleLoader, RejectsAMissingFile) {
    EXPECT_FALSE(acrxLoadModule(fixture("missing"), true));
    EXPECT_GE(takePrinted().Find(_T("cannot be loaded.")), 0);
    EXPECT_FALSE(acrxLoadModule(fixture("missing"), false));
    EXPECT_TRUE(takePrinted().IsEmpty());
    EXPECT_FALSE(acrxLoadModule(_T(""), false));
    EXPECT_FALSE(acrxLoadModule(nullptr, false));
}

TEST_F(ModuleLoader, UnloadingWhatIsNotLoadedFails) {
    EXPECT_FALSE(acrxUnloadModule(_T("good.arx")));
    EXPECT_FALSE(acrxUnloadModule(nullptr));
}

TEST_F(ModuleLoader, ProgramExitNotifiesAllAndUnloadsInReverseOrder) {
    ASSERT_TRUE(acrxLoadModule(fixture("good"), false));
    ASSERT_TRUE(acrxLoadModule(fixture("locked"), false));
    takePrinted();
    arxSendToModules(AcRx::kQuitMsg);
    arxUnloadAllModules();
    EXPECT_TRUE(takePrinted() ==
                _T("[good quit][locked quit][locked unloadDwg][locked unload][good unloadDwg][good unload]"));
    EXPECT_TRUE(loadedNames().IsEmpty());
}

TEST_F(ModuleLoader, UserInterfaceMessagesReachTheirHandlers) {
    ASSERT_TRUE(acrxLoadModule(fixture("good"), false));
    takePrinted();
    arxSendToModules(AcRx::kSuspendMsg);
    arxSendToModules(AcRx::kCfgMsg);
    EXPECT_TRUE(takePrinted() == _T("[good suspend]"));
}
