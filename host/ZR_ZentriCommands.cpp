#include "host/ZR_ZentriCommands.h"

#include <accmd.h>
#include <afxwin.h>
#include <rxdict.h>
#include <rxmfcapi.h>
#include <tchar.h>

#include "chat/ZR_AiChatManager.h"
#include "host/ZR_AccountService.h"
#include "host/ZR_ZentriModule.h"
#include "host/ZR_ZentriPaletteSet.h"
#include "host/core/ZR_ZentriAccount.h"
#include "host/core/ZR_ZentriColorTheme.h"
#include "host/core/ZR_ZentriHostLoop.h"
#include "host/core/ZR_ZentriModalScope.h"
#include "host/core/ZR_ZentriPaletteAccess.h"

namespace {

constexpr const ACHAR* kGroup = _T("ZR_ZENTRI");
constexpr const ACHAR* kOpenChat = _T("KQ_AICHAT");
constexpr const ACHAR* kRefresh = _T("_refreshChatView");
constexpr int kNoFunctionCode = -1;

/// True while the module is loaded.
bool g_registered = false;
/// True once the chat manager has taken the token.
bool g_tokenHandedOver = false;

AcEdCommandStack* commandStack() {
    AcRxObject* const object = acrxSysRegistry()->at(_T("ACAD_REGISTERED_COMMANDS"));
    return AcEdCommandStack::cast(object);
}

void addCommand(AcEdCommandStack& stack, const ACHAR* name, Adesk::Int32 flags, AcRxFunctionPtr function) {
    // Without resources, which is the default: the type of that argument depends on the release of the SDK.
    stack.addCommand(kGroup, name, name, flags, function, nullptr, kNoFunctionCode);
}

/// Gets the signed-in user's token from the account service and initialises the chat with it. False when
/// nobody is signed in.
bool obtainToken() {
    const CString token = ZR_AccountService::accessToken();
    if (token.IsEmpty() || !g_registered) {
        return false;
    }
    setZentriAccessToken(token);
    setZentriSignedIn(true);
    g_tokenHandedOver = ZR_AiChatManager::instance().initUserData();
    return true;
}

/// Lets the user sign in now. True if sign-in succeeded, even if there is no token afterwards, and the module
/// is still loaded.
bool signIn() {
    if (!g_registered || !ZR_AccountService::signIn() || !g_registered) {
        return false;
    }
    obtainToken();
    return true;
}

void togglePanel() {
    if (ZR_ZentriPaletteAccess* const palette = zentriPaletteAccess()) {
        palette->setColorTheme(readColorTheme());
    }
    ZR_ZentriPaletteSet* const paletteSet = g_zentriPaletteSet;
    const BOOL show = paletteSet->IsVisible() ? FALSE : TRUE;
    acedGetAcadFrame()->ShowControlBar(paletteSet, show, FALSE);
    // Showing the panel may have run the host's message loop, behind the message box of a failed embedding.
    if (g_zentriPaletteSet == paletteSet && paletteSet->GetSafeHwnd() != nullptr) {
        paletteSet->UpdateWindow();
        if (show == FALSE) {
            // Again, since a host that hides its bars with SetWindowPos sends them no WM_SHOWWINDOW.
            paletteSet->yieldFocus();
        }
        paletteSet->refresh();
    }
}

void openChat() {
    checkZentriHostLoops();
    // The account service, the message box and the frame may run the host's message loop, and the module may
    // be unloaded meanwhile. The next load then asks for the token again.
    const ZR_ZentriModalScope busy;
    const bool initialised = zentriHasAccess() && g_tokenHandedOver;
    if (!initialised && !obtainToken() && !signIn()) {
        return;
    }
    if (!zentriHasAccess()) {
        AfxMessageBox(_T("\n该功能需要在线登录！"), MB_OK);
        if (!signIn()) {
            return;
        }
    }
    if (g_zentriPaletteSet != nullptr) {
        togglePanel();
    }
}

void refreshChatView() {
    if (g_zentriPaletteSet != nullptr) {
        g_zentriPaletteSet->refresh();
    }
}

}  // namespace

void registerZentriCommands() {
    g_registered = true;
    AcEdCommandStack* const stack = commandStack();
    if (stack == nullptr) {
        return;
    }
    addCommand(*stack, kOpenChat, ACRX_CMD_MODAL, &openChat);
    addCommand(*stack, kRefresh, ACRX_CMD_NOHISTORY, &refreshChatView);
}

void removeZentriCommands() {
    g_registered = false;
    if (AcEdCommandStack* const stack = commandStack()) {
        stack->removeGroup(kGroup);
    }
    setZentriSignedIn(false);
    setZentriAccessToken(CString());
    g_tokenHandedOver = false;
}
