// A minimal module for the tests of the host: commands, reactors and a palette.

#include <AdUiPalette.h>
#include <AdUiPaletteSet.h>
#include <acdocman.h>
#include <aced.h>
#include <adscodes.h>
#include <arxEntryPoint.h>
#include <arxHeaders.h>
#include <rxmfcapi.h>

#include <cstdlib>
#include <thread>

namespace {

const ACHAR* const kGroup = _T("DUMMY");

/// Prints each notification on the command line.
class SayingReactor : public AcEditorReactor {
public:
    void commandWillStart(const ACHAR* name) override { acutPrintf(_T("\n[start %s]"), name); }
    void commandEnded(const ACHAR* name) override { acutPrintf(_T("\n[end %s]"), name); }
    void commandCancelled(const ACHAR* name) override { acutPrintf(_T("\n[cancel %s]"), name); }
    void sysVarChanged(const ACHAR* name, bool success) override {
        resbuf value{};
        acedGetVar(name, &value);
        acutPrintf(success ? _T("\n[changed %s %d]") : _T("\n[refused %s %d]"), name,
                   static_cast<int>(value.resval.rint));
    }
};

/// Prints the characters that reach it and passes none on to the host. Commands set what it answers when the
/// host's frame wants the keyboard focus.
class CountingPalette : public CAdUiPalette {
public:
    bool keepsFocus = false;
    bool yieldsFocus = true;

    BOOL CanFrameworkTakeFocus() override { return yieldsFocus ? TRUE : FALSE; }
    BOOL PreTranslateMessage(MSG* message) override {
        if (message->message == WM_CHAR) {
            acutPrintf(_T("\n[palette char %d]"), static_cast<int>(message->wParam));
            return TRUE;
        }
        return CAdUiPalette::PreTranslateMessage(message);
    }

protected:
    afx_msg LRESULT OnAcadKeepFocus(WPARAM, LPARAM) { return keepsFocus ? TRUE : FALSE; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(CountingPalette, CAdUiPalette)
ON_MESSAGE(WM_ACAD_KEEPFOCUS, &CountingPalette::OnAcadKeepFocus)
END_MESSAGE_MAP()

SayingReactor* g_reactor = nullptr;
CAdUiPaletteSet* g_set = nullptr;
GUID g_toolId = {0x5D0C4B1A, 0x9E37, 0x4F6B, {0x8A, 0x21, 0x3C, 0x54, 0x7D, 0x60, 0x1B, 0xF2}};
CountingPalette* g_palette = nullptr;

void printIt() {
    acutPrintf(_T("\n你好, %s"), _T("dummy"));
}

void showBox() {
    const int answer = AfxMessageBox(_T("继续吗？"), MB_YESNO);
    acutPrintf(_T("\n[answer %d]"), answer);
}

void hidden() {}

void sendCircle() {
    acDocManager->sendStringToExecute(curDoc(), _T("\x03\x03"), true, false, true);
    acDocManager->sendStringToExecute(curDoc(), _T("CIRCLE\n"), true, false, true);
}

void tellAccount() {
    using TokenFunction = int (*)(ACHAR*, int);
    using SignInFunction = int (*)();
    const auto token =
        reinterpret_cast<TokenFunction>(acrxGetServiceSymbolAddr(_T("ZR_ACCOUNT"), "zrAccountAccessToken"));
    const auto signIn =
        reinterpret_cast<SignInFunction>(acrxGetServiceSymbolAddr(_T("ZR_ACCOUNT"), "zrAccountSignIn"));
    ACHAR buffer[16] = {};
    const int length = token(buffer, 16);
    const int signedIn = length > 0 ? 1 : signIn();
    const int after = token(buffer, 16);
    acutPrintf(_T("\n[token %d %d %d %s]"), length, signedIn, after, buffer);
}

void printFromThread() {
    std::thread([] { acutPrintf(_T("\n[from a thread]")); }).join();
}

void throwNumber() {
    throw 1;
}

void throwOfMfc() {
    AfxThrowFileException(CFileException::fileNotFound, -1, _T("lost.txt"));
}

void togglePalette() {
    acedGetAcadFrame()->ShowControlBar(g_set, !g_set->IsVisible(), FALSE);
}

void focusPalette() {
    g_palette->SetFocus();
}

template <bool keeps>
void answerKeepFocus() {
    g_palette->keepsFocus = keeps;
}

template <bool yields>
void answerTakeFocus() {
    g_palette->yieldsFocus = yields;
}

}  // namespace

class DummyApp : public AcRxArxApp {
public:
    void RegisterServerComponents() override {}

    AcRx::AppRetCode On_kInitAppMsg(void* packet) override {
        const AcRx::AppRetCode result = AcRxArxApp::On_kInitAppMsg(packet);
        AcEdCommandStack* const stack = acedRegCmds;
        stack->addCommand(kGroup, _T("DUMMY_PRINT"), _T("DPRINT"), ACRX_CMD_MODAL, printIt);
        stack->addCommand(kGroup, _T("DUMMY_BOX"), _T("DBOX"), ACRX_CMD_MODAL, showBox);
        stack->addCommand(kGroup, _T("_dummyHidden"), _T("_dummyHidden"), ACRX_CMD_NOHISTORY, hidden);
        stack->addCommand(kGroup, _T("DUMMY_SEND"), _T("DSEND"), ACRX_CMD_MODAL, sendCircle);
        stack->addCommand(kGroup, _T("DUMMY_ACCOUNT"), _T("DACCOUNT"), ACRX_CMD_MODAL, tellAccount);
        stack->addCommand(kGroup, _T("DUMMY_THREAD"), _T("DTHREAD"), ACRX_CMD_MODAL, printFromThread);
        stack->addCommand(kGroup, _T("DUMMY_THROW"), _T("DTHROW"), ACRX_CMD_MODAL, throwNumber);
        stack->addCommand(kGroup, _T("DUMMY_THROW_MFC"), _T("DTHROWMFC"), ACRX_CMD_MODAL, throwOfMfc);
        stack->addCommand(kGroup, _T("DUMMY_PALETTE"), _T("DPALETTE"), ACRX_CMD_MODAL, togglePalette);
        stack->addCommand(kGroup, _T("DUMMY_FOCUS"), _T("DFOCUS"), ACRX_CMD_MODAL, focusPalette);
        stack->addCommand(kGroup, _T("DUMMY_KEEP0"), _T("DKEEP0"), ACRX_CMD_MODAL, answerKeepFocus<false>);
        stack->addCommand(kGroup, _T("DUMMY_KEEP1"), _T("DKEEP1"), ACRX_CMD_MODAL, answerKeepFocus<true>);
        stack->addCommand(kGroup, _T("DUMMY_YIELD0"), _T("DYIELD0"), ACRX_CMD_MODAL, answerTakeFocus<false>);
        stack->addCommand(kGroup, _T("DUMMY_YIELD1"), _T("DYIELD1"), ACRX_CMD_MODAL, answerTakeFocus<true>);
        g_reactor = new SayingReactor;
        acedEditor->addReactor(g_reactor);

        g_set = new CAdUiPaletteSet;
        g_set->Create(_T("测试面板"), WS_DLGFRAME, CRect(0, 0, 320, 500), acedGetAcadFrame(),
                      PSS_CLOSE_BUTTON | PSS_SNAP);
        g_set->SetToolID(&g_toolId);
        g_set->EnableDocking(CBRS_ALIGN_LEFT | CBRS_ALIGN_RIGHT);
        g_set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
        g_palette = new CountingPalette;
        g_palette->Create(WS_CHILD | WS_VISIBLE, _T("测试页"), g_set, 0);
        g_set->AddPalette(g_palette);
        if (std::getenv("ZR_DUMMY_TAKES_FOCUS") != nullptr) {
            focusPalette();
        }
        acutPrintf(_T("\n[dummy loaded]"));
        return result;
    }

    AcRx::AppRetCode On_kUnloadAppMsg(void* packet) override {
        AcEdCommandStack* const stack = acedRegCmds;
        stack->removeGroup(kGroup);
        acedEditor->removeReactor(g_reactor);
        delete g_reactor;
        // Does not rely on the set to delete the palette or to destroy its window.
        g_set->RemovePalette(0);
        delete g_palette;
        g_set->DestroyWindow();
        delete g_set;
        acutPrintf(_T("\n[dummy unloaded]"));
        return AcRxArxApp::On_kUnloadAppMsg(packet);
    }
};

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) {
    return TRUE;
}

IMPLEMENT_ARX_ENTRYPOINT(DummyApp)
