#include "tests/host/TypingFixture.h"

#include <QTextEdit>

#include "host/ZR_ZentriModule.h"
#include "host/ZR_ZentriPalette.h"
#include "view/ZR_ZentriPaletteView.h"

TypingFixture::TypingFixture() {
    load();
    openPanel();
}

void TypingFixture::focusInput() {
    view()->activateWindow();
    inputBox()->setFocus(Qt::MouseFocusReason);
    ASSERT_TRUE(TestProgram::pumpUntil([] { return GetFocus() == palette(); }));
    TestProgram::settle();
}

bool TypingFixture::typed(const QString& text) {
    constexpr int kTimeoutMs = 5000;
    if (!TestProgram::pumpUntil([&] { return inputBox()->toPlainText() == text; }, kTimeoutMs)) {
        return false;
    }
    TestProgram::settle();
    return inputBox()->toPlainText() == text;
}

void TypingFixture::postCharacters(UINT message, const QString& text) {
    for (const QChar unit : text) {
        PostMessageW(palette(), message, unit.unicode(), 1);
    }
}

HWND TypingFixture::palette() {
    return g_zentriPalette->m_hWnd;
}
