#include "tests/host/ModuleFixture.h"

#include <afxext.h>

#include <QApplication>
#include <QTextEdit>

#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "host/ZR_ZentriModule.h"
#include "host/ZR_ZentriPalette.h"
#include "host/ZR_ZentriPaletteSet.h"
#include "host/core/ZR_ZentriPaletteAccess.h"
#include "host/qtmfc/QMfcApp.h"
#include "tests/host/EmptyService.h"
#include "tests/host/HostCommand.h"
#include "view/ZR_ZentriPaletteView.h"

ModuleFixture::ModuleFixture(QApplication* existing)
    : application(existing != nullptr ? existing : QMfcApp::mfc_instance(&testApp())) {
    serveEmptyHistory(service);
    FakeAccount::reset();
    FakeAccount::offer(program.host());
    program.host().setVar(_T("COLORTHEME"), 1);
}

ModuleFixture::~ModuleFixture() {
    unload();
    // The history reader survives the unloading, but must end before the fake service does.
    if (g_zentriHistoryThread != nullptr) {
        g_zentriHistoryThread->quit();
        g_zentriHistoryThread->wait();
    }
    TestProgram::settle();
}

bool ModuleFixture::run(const CString& command) {
    return runHostCommand(command);
}

void ModuleFixture::openPanel() {
    FakeAccount::token = _T("token");
    ASSERT_TRUE(run(_T("KQ_AICHAT")));
    ASSERT_TRUE(TestProgram::pumpUntil([this] {
        return program.host().printedText().Find(_T("\nZentri:用户数据初始化完成")) >= 0 &&
               !g_zentriHistoryThread->isRunning();
    }));
}

int ModuleFixture::paletteSetsInFrame() const {
    int count = 0;
    for (const CControlBar* bar : program.frame()->GetControlBars()) {
        count += bar->IsKindOf(RUNTIME_CLASS(ZR_ZentriPaletteSet)) ? 1 : 0;
    }
    return count;
}

ZR_ZentriPalette* ModuleFixture::palette() {
    return dynamic_cast<ZR_ZentriPalette*>(zentriPaletteAccess());
}

HWND ModuleFixture::paletteHandle() {
    return palette()->m_hWnd;
}

ZR_ZentriPaletteView* ModuleFixture::view() const {
    return dynamic_cast<ZR_ZentriPaletteView*>(zentriChatView());
}

QTextEdit* ModuleFixture::inputBox() const {
    return view()->findChild<QTextEdit*>(QStringLiteral("textEdit_userInput"));
}

void ModuleFixture::focusInput() {
    view()->activateWindow();
    inputBox()->setFocus(Qt::MouseFocusReason);
    ASSERT_TRUE(TestProgram::pumpUntil([] { return GetFocus() == paletteHandle(); }));
    TestProgram::settle();
}

bool ModuleFixture::typed(const QString& text) {
    constexpr int kTimeoutMs = 5000;
    if (!TestProgram::pumpUntil([&] { return inputBox()->toPlainText() == text; }, kTimeoutMs)) {
        return false;
    }
    TestProgram::settle();
    return inputBox()->toPlainText() == text;
}
