#include <acdocman.h>
#include <aced.h>
#include <acedads.h>
#include <acutads.h>
#include <acutmem.h>
#include <arxEntryPoint.h>
#include <gtest/gtest.h>
#include <rxmfcapi.h>
#include <rxregsvc.h>

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/FakeArxHost.h"

TEST(ArxHost, CallingTheSliceWithoutAHostAborts) {
    EXPECT_DEATH(acutPrintf(_T("text")), "no host is installed");
}

TEST(AcutPrintf, FormatsWideTextAndNumbers) {
    FakeArxHost host;
    EXPECT_EQ(acutPrintf(_T("\n%s %d%%"), CString(_T("进度")).GetString(), 42), RTNORM);
    EXPECT_TRUE(host.printedText() == _T("\n进度 42%"));
}

TEST(ArxThreads, EveryCallOffTheUiThreadAbortsWithItsName) {
    const FakeArxHost host;
    AcApDocument* const document = host.document();
    AcApDocManager* const documents = acDocManagerPtr();
    AcRxDictionary* const registry = acrxSysRegistry();
    AcEdCommandStack* const commands = acedRegCmds;
    AcEditor* const editor = acedEditor;
    AcEditorReactor reactor;
    resbuf result = {};
    const std::vector<std::pair<std::string, std::function<void()>>> calls = {
        {"acutPrintf", [] { acutPrintf(_T("text")); }},
        {"acedGetVar", [&] { acedGetVar(_T("COLORTHEME"), &result); }},
        {"acedGetAcadFrame", [] { acedGetAcadFrame(); }},
        {"acedGetAcadDwgView", [] { acedGetAcadDwgView(); }},
        {"acedGetAcadWinApp", [] { acedGetAcadWinApp(); }},
        {"acDocManagerPtr", [] { acDocManagerPtr(); }},
        {"AcApDocManager::curDocument", [=] { documents->curDocument(); }},
        {"AcApDocManager::mdiActiveDocument", [=] { documents->mdiActiveDocument(); }},
        {"AcApDocManager::documentCount", [=] { documents->documentCount(); }},
        {"AcApDocManager::sendStringToExecute",
         [=] { documents->sendStringToExecute(document, _T("LINE\n")); }},
        {"AcApDocument::isQuiescent", [=] { document->isQuiescent(); }},
        {"acrxSysRegistry", [] { acrxSysRegistry(); }},
        {"AcRxDictionary::at", [=] { registry->at(ACED_EDITOR_OBJ); }},
        {"AcRxDictionary::atPut", [=] { registry->atPut(_T("KEY"), editor); }},
        {"AcRxDictionary::remove", [=] { registry->remove(_T("KEY")); }},
        {"AcEdCommandStack::addCommand",
         [=] { commands->addCommand(_T("GROUP"), _T("NAME"), _T("NAME"), ACRX_CMD_MODAL, [] {}); }},
        {"AcEdCommandStack::removeCmd", [=] { commands->removeCmd(_T("GROUP"), _T("NAME")); }},
        {"AcEdCommandStack::removeGroup", [=] { commands->removeGroup(_T("GROUP")); }},
        {"AcEdCommandStack::popGroupToTop", [=] { commands->popGroupToTop(_T("GROUP")); }},
        {"AcEdCommandStack::lookupCmd", [=] { commands->lookupCmd(_T("NAME"), false); }},
        {"AcEdCommandStack::iterator", [=] { commands->iterator(); }},
        {"AcEditor::addReactor", [&] { editor->addReactor(&reactor); }},
        {"AcEditor::removeReactor", [&] { editor->removeReactor(&reactor); }},
        {"acrxLoadModule", [] { acrxLoadModule(_T("missing.arx"), false); }},
        {"acrxUnloadModule", [] { acrxUnloadModule(_T("missing.arx")); }},
        {"acrxAppIsLoaded", [] { acrxAppIsLoaded(_T("missing.arx")); }},
        {"acrxLoadedApps", [] { acrxLoadedApps(); }},
        {"acrxServiceIsRegistered", [] { acrxServiceIsRegistered(_T("ZR_ACCOUNT")); }},
        {"acrxGetServiceSymbolAddr", [] { acrxGetServiceSymbolAddr(_T("ZR_ACCOUNT"), "symbol"); }},
    };
    for (const auto& [name, call] : calls) {
        EXPECT_DEATH(std::thread(call).join(), name + " called on a thread other than the UI thread");
    }
}

TEST(ArxThreads, TextsAreCopiedAndReleasedOnAnyThread) {
    ACHAR* copy = nullptr;
    std::thread([&copy] { acutNewString(_T("图层"), copy); }).join();
    EXPECT_TRUE(CString(copy) == _T("图层"));
    std::thread([&copy] { acutDelString(copy); }).join();
    EXPECT_EQ(copy, nullptr);
}

TEST(AcedGetVar, ReturnsTheValueOrAnError) {
    FakeArxHost host;
    host.setVar(_T("COLORTHEME"), 1);
    resbuf result = {};
    EXPECT_EQ(acedGetVar(_T("COLORTHEME"), &result), RTNORM);
    EXPECT_EQ(result.restype, RTSHORT);
    EXPECT_EQ(result.resval.rint, 1);
    EXPECT_EQ(acedGetVar(_T("NOSUCHVAR"), &result), RTERROR);
    EXPECT_EQ(acedGetVar(nullptr, &result), RTERROR);
    EXPECT_EQ(acedGetVar(_T("COLORTHEME"), nullptr), RTERROR);
}

TEST(AcutMem, CopiesAndReleasesStrings) {
    ACHAR* copy = nullptr;
    ASSERT_EQ(acutNewString(_T("图层"), copy), Acad::eOk);
    EXPECT_TRUE(CString(copy) == _T("图层"));
    acutDelString(copy);
    EXPECT_EQ(copy, nullptr);
    EXPECT_EQ(acutNewString(nullptr, copy), Acad::eNullPtr);
}

TEST(DocManager, QueuesStringsOnTheHost) {
    FakeArxHost host;
    AcApDocument* const document = acDocManager->curDocument();
    ASSERT_EQ(document, host.document());
    EXPECT_EQ(acDocManager->mdiActiveDocument(), document);
    EXPECT_EQ(acDocManager->documentCount(), 1);
    EXPECT_EQ(acDocManager->sendStringToExecute(document, _T("LINE\n"), true, false, true), Acad::eOk);
    ASSERT_EQ(host.sent().size(), 1U);
    EXPECT_EQ(host.sent()[0].document, document);
    EXPECT_TRUE(host.sent()[0].text == _T("LINE\n"));
    EXPECT_TRUE(host.sent()[0].activate);
    EXPECT_FALSE(host.sent()[0].wrapUpInactiveDocument);
    EXPECT_TRUE(host.sent()[0].echo);
}

TEST(DocManager, RejectsANullDocumentAndNullText) {
    FakeArxHost host;
    EXPECT_EQ(acDocManager->sendStringToExecute(nullptr, _T("LINE\n")), Acad::eNoDocument);
    EXPECT_EQ(acDocManager->sendStringToExecute(host.document(), nullptr), Acad::eInvalidInput);
    EXPECT_TRUE(host.sent().empty());
}

TEST(DocManager, DocumentIsQuiescentWhenTheHostSaysSo) {
    FakeArxHost host;
    EXPECT_TRUE(curDoc()->isQuiescent());
    host.document()->quiescent = false;
    EXPECT_FALSE(curDoc()->isQuiescent());
}

TEST(DocManager, TellsItsReactorsOfADocumentBeforeItIsClosed) {
    class Reactor : public AcApDocManagerReactor {
    public:
        void documentToBeDestroyed(AcApDocument* document) override {
            titles.emplace_back(document->docTitle());
        }
        std::vector<CString> titles;
    };
    FakeArxHost host;
    Reactor reactor;
    acDocManager->addReactor(&reactor);
    acDocManager->addReactor(&reactor);
    host.switchToDocument(std::make_unique<FakeArxDocument>(_T("second")));
    EXPECT_TRUE(reactor.titles.empty());
    host.closeFormerDocument();
    EXPECT_EQ(reactor.titles, std::vector<CString>{_T("Drawing1.dwg")});
    acDocManager->removeReactor(&reactor);
    host.setDocument(nullptr);
    EXPECT_EQ(reactor.titles.size(), 1U);
}

TEST(DocManager, ThereMayBeNoDocument) {
    FakeArxHost host;
    host.setDocument(nullptr);
    EXPECT_EQ(curDoc(), nullptr);
    EXPECT_EQ(acDocManager->documentCount(), 0);
}

TEST(Services, SymbolsAreLookedUpInTheHost) {
    FakeArxHost host;
    int function = 0;
    host.setService(_T("ZR_ACCOUNT"), "zrAccountSignIn", &function);
    EXPECT_TRUE(acrxServiceIsRegistered(_T("ZR_ACCOUNT")));
    EXPECT_FALSE(acrxServiceIsRegistered(_T("OTHER")));
    EXPECT_EQ(acrxGetServiceSymbolAddr(_T("ZR_ACCOUNT"), "zrAccountSignIn"), &function);
    EXPECT_EQ(acrxGetServiceSymbolAddr(_T("ZR_ACCOUNT"), "other"), nullptr);
    EXPECT_EQ(acrxGetServiceSymbolAddr(_T("OTHER"), "zrAccountSignIn"), nullptr);
    EXPECT_EQ(acrxGetServiceSymbolAddr(nullptr, nullptr), nullptr);
}

// As in a module.
AC_DECLARE_EXTENSION_MODULE(g_testModule);
AC_IMPLEMENT_EXTENSION_MODULE(g_testModule);

TEST(ModuleResourceOverride, SwitchesAndRestoresTheHandle) {
    const HINSTANCE mine = reinterpret_cast<HINSTANCE>(0x1000);
    const HINSTANCE before = AfxGetResourceHandle();
    g_testModule.AttachInstance(mine);
    try {
        CAcModuleResourceOverride resources;
        EXPECT_EQ(AfxGetResourceHandle(), mine);
        throw 1;
    } catch (int) {
        EXPECT_EQ(AfxGetResourceHandle(), before);
    }
    g_testModule.DetachInstance();
    EXPECT_EQ(g_testModule.ModuleResourceInstance(), nullptr);
}
