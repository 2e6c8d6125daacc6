#include <accmd.h>
#include <aced.h>
#include <rxdict.h>

#include <QVariant>
#include <QWidget>

#include "host/ZR_ZentriModule.h"
#include "host/ZR_ZentriPalette.h"
#include "host/ZR_ZentriPaletteSet.h"
#include "host/core/ZR_ZentriAccount.h"
#include "tests/host/ModuleFixture.h"
#include "view/ZR_ZentriPaletteView.h"

namespace {

class Commands : public ModuleFixture {
protected:
    Commands() { load(); }

    int theme() const { return view()->property("ZR_ColorTheme").toInt(); }
    bool panelIsOpen() const { return g_zentriPaletteSet->IsVisible() != FALSE; }
};

}  // namespace

TEST_F(Commands, AreRegisteredOnTheCommandStack) {
    AcEdCommand* const open = acedRegCmds->lookupCmd(_T("KQ_AICHAT"), false);
    ASSERT_NE(open, nullptr);
    EXPECT_TRUE(CString(open->groupName()) == _T("ZR_ZENTRI"));
    EXPECT_TRUE(CString(open->globalName()) == _T("KQ_AICHAT"));
    EXPECT_TRUE(CString(open->localName()) == _T("KQ_AICHAT"));
    EXPECT_EQ(open->commandFlags(), 0);
    EXPECT_EQ(open->UIContext(), nullptr);
    EXPECT_EQ(open->fcode(), -1);

    AcEdCommand* const refresh = acedRegCmds->lookupCmd(_T("_refreshChatView"), false);
    ASSERT_NE(refresh, nullptr);
    EXPECT_TRUE(CString(refresh->groupName()) == _T("ZR_ZENTRI"));
    EXPECT_TRUE(CString(refresh->globalName()) == _T("_refreshChatView"));
    EXPECT_EQ(refresh->commandFlags(), 0x00800000);
}

TEST_F(Commands, OpenAndCloseThePanelAndGetTheTokenOnce) {
    openPanel();
    EXPECT_TRUE(panelIsOpen());
    EXPECT_TRUE(g_zentriPaletteSet->IsWindowVisible());
    EXPECT_EQ(FakeAccount::tokenCalls, 1);
    run(_T("KQ_AICHAT"));
    EXPECT_FALSE(panelIsOpen());
    EXPECT_FALSE(g_zentriPaletteSet->IsWindowVisible());
    run(_T("KQ_AICHAT"));
    EXPECT_TRUE(panelIsOpen());
    EXPECT_EQ(FakeAccount::tokenCalls, 1);
    EXPECT_EQ(FakeAccount::signInCalls, 0);
    EXPECT_TRUE(zentriAccessToken() == _T("token"));
}

TEST_F(Commands, TheChatReadsTheUsersSessionsOnce) {
    openPanel();
    run(_T("KQ_AICHAT"));
    run(_T("KQ_AICHAT"));
    TestProgram::settle();
    EXPECT_EQ(service.requestCount(), 1);
    EXPECT_EQ(service.request(0).target, QByteArray("/zr/ai/session/user"));
    EXPECT_EQ(service.request(0).header("Authorization"), QByteArray("token"));
}

TEST_F(Commands, ApplyTheThemeEachTime) {
    program.host().setVar(_T("COLORTHEME"), 0);
    openPanel();
    EXPECT_EQ(theme(), 0);
    // Without notifying the reactor.
    program.host().setVar(_T("COLORTHEME"), 1);
    run(_T("KQ_AICHAT"));
    EXPECT_EQ(theme(), 1);
    program.host().setVar(_T("COLORTHEME"), 0);
    run(_T("KQ_AICHAT"));
    EXPECT_EQ(theme(), 0);
}

TEST_F(Commands, RefusingTheFirstSignInEndsTheCommand) {
    run(_T("KQ_AICHAT"));
    EXPECT_FALSE(panelIsOpen());
    EXPECT_EQ(FakeAccount::signInCalls, 1);
    EXPECT_TRUE(testApp().boxes.empty());
    EXPECT_FALSE(zentriHasAccess());
}

TEST_F(Commands, SigningInOpensThePanel) {
    FakeAccount::signInSucceeds = true;
    FakeAccount::tokenAfterSignIn = _T("fresh");
    run(_T("KQ_AICHAT"));
    EXPECT_TRUE(panelIsOpen());
    EXPECT_TRUE(zentriHasAccess());
    EXPECT_TRUE(zentriAccessToken() == _T("fresh"));
    EXPECT_EQ(FakeAccount::signInCalls, 1);
    EXPECT_TRUE(testApp().boxes.empty());
}

TEST_F(Commands, ASignInWithoutATokenIsExplainedAndOfferedAgain) {
    FakeAccount::signInSucceeds = true;
    testApp().whileBoxOpen = [] { FakeAccount::tokenAfterSignIn = _T("second try"); };
    run(_T("KQ_AICHAT"));
    ASSERT_EQ(testApp().boxes.size(), 1U);
    EXPECT_TRUE(testApp().boxes[0] == _T("\n该功能需要在线登录！"));
    EXPECT_EQ(testApp().boxTypes[0], static_cast<UINT>(MB_OK));
    EXPECT_EQ(FakeAccount::signInCalls, 2);
    EXPECT_TRUE(zentriAccessToken() == _T("second try"));
    EXPECT_TRUE(panelIsOpen());
}

TEST_F(Commands, ASecondSignInWithoutATokenOpensThePanelAnyway) {
    FakeAccount::signInSucceeds = true;
    run(_T("KQ_AICHAT"));
    EXPECT_EQ(testApp().boxes.size(), 1U);
    EXPECT_EQ(FakeAccount::signInCalls, 2);
    EXPECT_TRUE(panelIsOpen());
    EXPECT_FALSE(zentriHasAccess());
    // Nobody is signed in, so no request was sent, and the next command starts over.
    EXPECT_EQ(service.requestCount(), 0);
    run(_T("KQ_AICHAT"));
    EXPECT_EQ(testApp().boxes.size(), 2U);
    EXPECT_FALSE(panelIsOpen());
}

TEST_F(Commands, RefusingTheSecondSignInLeavesThePanelClosed) {
    FakeAccount::signInSucceeds = true;
    testApp().whileBoxOpen = [] { FakeAccount::signInSucceeds = false; };
    run(_T("KQ_AICHAT"));
    EXPECT_EQ(testApp().boxes.size(), 1U);
    EXPECT_EQ(FakeAccount::signInCalls, 2);
    EXPECT_FALSE(panelIsOpen());
    EXPECT_FALSE(zentriHasAccess());
}

TEST_F(Commands, ARefusedSignInIsOfferedAgainNextTime) {
    run(_T("KQ_AICHAT"));
    FakeAccount::token = _T("later");
    run(_T("KQ_AICHAT"));
    EXPECT_TRUE(panelIsOpen());
    EXPECT_TRUE(zentriAccessToken() == _T("later"));
}

TEST_F(Commands, SurviveUnloadingDuringTheSignInMessageBox) {
    FakeAccount::signInSucceeds = true;
    testApp().whileBoxOpen = [this] {
        unload();
        EXPECT_EQ(paletteSetsInFrame(), 1);
    };
    run(_T("KQ_AICHAT"));
    ASSERT_EQ(testApp().boxes.size(), 1U);
    // The user is not asked to sign in to an unloaded module.
    EXPECT_EQ(FakeAccount::signInCalls, 1);
    EXPECT_EQ(g_zentriPaletteSet, nullptr);
    EXPECT_TRUE(TestProgram::pumpUntil([this] { return paletteSetsInFrame() == 0; }));
}

TEST_F(Commands, SurviveUnloadingDuringTheSignIn) {
    FakeAccount::signInSucceeds = true;
    FakeAccount::tokenAfterSignIn = _T("fresh");
    FakeAccount::whileSigningIn = [this] {
        unload();
        EXPECT_EQ(paletteSetsInFrame(), 1);
    };
    run(_T("KQ_AICHAT"));
    EXPECT_EQ(FakeAccount::signInCalls, 1);
    EXPECT_EQ(g_zentriPaletteSet, nullptr);
    EXPECT_FALSE(zentriHasAccess());
    EXPECT_EQ(service.requestCount(), 0);
    EXPECT_TRUE(TestProgram::pumpUntil([this] { return paletteSetsInFrame() == 0; }));
    // The next load starts with nobody signed in.
    FakeAccount::whileSigningIn = nullptr;
    FakeAccount::tokenCalls = 0;
    load();
    openPanel();
    EXPECT_EQ(FakeAccount::tokenCalls, 1);
}

TEST_F(Commands, ThePanelIsPaintedWhenTheCommandEnds) {
    openPanel();
    run(_T("KQ_AICHAT"));
    g_zentriPaletteSet->Invalidate();
    run(_T("KQ_AICHAT"));
    ASSERT_TRUE(panelIsOpen());
    EXPECT_FALSE(GetUpdateRect(g_zentriPaletteSet->m_hWnd, nullptr, FALSE));
}

TEST_F(Commands, TheHiddenOneRunsWhetherOrNotTheHostStripsItsUnderscore) {
    for (const bool stripped : {true, false}) {
        unload();
        arxVariant().underscoreIsStripped = stripped;
        load();
        EXPECT_TRUE(run(_T("_refreshChatView"))) << stripped;
        EXPECT_TRUE(run(_T("_REFRESHCHATVIEW"))) << stripped;
    }
}

TEST_F(Commands, RefreshChangesNothing) {
    program.host().clearPrinted();
    EXPECT_TRUE(run(_T("_refreshChatView")));
    EXPECT_FALSE(panelIsOpen());
    EXPECT_TRUE(program.host().printed().empty());
    EXPECT_TRUE(program.host().sent().empty());
}

TEST_F(Commands, WithoutACommandStackNothingIsRegistered) {
    unload();
    AcRxObject* const stack = acrxSysRegistry()->remove(_T("ACAD_REGISTERED_COMMANDS"));
    EXPECT_EQ(load(), AcRx::kRetOK);
    EXPECT_EQ(unload(), AcRx::kRetOK);
    acrxSysRegistry()->atPut(_T("ACAD_REGISTERED_COMMANDS"), stack);
    EXPECT_EQ(acedRegCmds->lookupCmd(_T("KQ_AICHAT"), false), nullptr);
}

TEST_F(Commands, AnotherObjectInPlaceOfTheCommandStackIsNotUsed) {
    unload();
    AcRxObject* const stack = acrxSysRegistry()->atPut(_T("ACAD_REGISTERED_COMMANDS"), acedEditor);
    EXPECT_EQ(load(), AcRx::kRetOK);
    EXPECT_EQ(unload(), AcRx::kRetOK);
    acrxSysRegistry()->atPut(_T("ACAD_REGISTERED_COMMANDS"), stack);
    EXPECT_EQ(acedRegCmds->lookupCmd(_T("KQ_AICHAT"), false), nullptr);
}
