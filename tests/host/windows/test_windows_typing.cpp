#include <win32_control.h>
#include <windows.h>

#include <QTextEdit>
#include <cstring>
#include <vector>

#include "tests/host/TypingFixture.h"
#include "view/ZR_ZentriPaletteView.h"

namespace {

const QString kTextOfAnInputMethod = QStringLiteral("画\U00020BB7圆\U0001F600");

/// What only real Windows has: messages of input methods, injected characters, its clipboard.
class WindowsTyping : public TypingFixture {
protected:
    WindowsTyping() { focusInput(); }

    /// Injects characters without keys, as a handwriting panel or an on-screen keyboard does.
    static bool inject(const QString& text) {
        std::vector<INPUT> inputs;
        for (const QChar unit : text) {
            for (const DWORD flags : {DWORD{KEYEVENTF_UNICODE}, DWORD{KEYEVENTF_UNICODE | KEYEVENTF_KEYUP}}) {
                INPUT input{};
                input.type = INPUT_KEYBOARD;
                input.ki.wScan = unit.unicode();
                input.ki.dwFlags = flags;
                inputs.push_back(input);
            }
        }
        const auto count = static_cast<UINT>(inputs.size());
        return SendInput(count, inputs.data(), sizeof(INPUT)) == count;
    }

    static bool putOnClipboard(const QString& text) {
        const auto bytes = static_cast<std::size_t>(text.size() + 1) * sizeof(wchar_t);
        const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
        std::memcpy(GlobalLock(memory), text.utf16(), bytes);
        GlobalUnlock(memory);
        if (OpenClipboard(nullptr) == FALSE) {
            return false;
        }
        EmptyClipboard();
        const bool done = SetClipboardData(CF_UNICODETEXT, memory) != nullptr;
        CloseClipboard();
        return done;
    }
};

/// Counts the menu loops of this thread and leaves each with the Escape key.
class MenuLoops {
public:
    MenuLoops() {
        s_entered = 0;
        s_left = 0;
        m_hook = SetWindowsHookExW(WH_CALLWNDPROC, &MenuLoops::watch, nullptr, GetCurrentThreadId());
    }
    ~MenuLoops() { UnhookWindowsHookEx(m_hook); }
    MenuLoops(const MenuLoops&) = delete;
    MenuLoops& operator=(const MenuLoops&) = delete;

    static int entered() { return s_entered; }
    static int left() { return s_left; }

private:
    static LRESULT CALLBACK watch(int code, WPARAM wParam, LPARAM lParam) {
        const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(lParam);
        if (code == HC_ACTION && sent.message == WM_ENTERMENULOOP) {
            ++s_entered;
            win32KeyStroke(VK_ESCAPE);
        }
        s_left += code == HC_ACTION && sent.message == WM_EXITMENULOOP ? 1 : 0;
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    static int s_entered;
    static int s_left;
    HHOOK m_hook;
};
int MenuLoops::s_entered = 0;
int MenuLoops::s_left = 0;

}  // namespace

TEST_F(WindowsTyping, TextOfAnInputMethodArrivesOnce) {
    // The system turns each into a WM_CHAR.
    postCharacters(WM_IME_CHAR, kTextOfAnInputMethod);
    EXPECT_TRUE(typed(kTextOfAnInputMethod)) << inputBox()->toPlainText().toStdString();
    EXPECT_TRUE(program.host().sent().empty());
}

TEST_F(WindowsTyping, InjectedCharactersArriveOnce) {
    ASSERT_TRUE(inject(kTextOfAnInputMethod));
    EXPECT_TRUE(typed(kTextOfAnInputMethod)) << inputBox()->toPlainText().toStdString();
    EXPECT_TRUE(program.host().sent().empty());
}

TEST_F(WindowsTyping, AnotherProgramsTextIsPastedOnce) {
    ASSERT_TRUE(putOnClipboard(kTextOfAnInputMethod));
    ASSERT_TRUE(win32KeyStroke('V', false, true));
    EXPECT_TRUE(typed(kTextOfAnInputMethod)) << inputBox()->toPlainText().toStdString();
}

TEST_F(WindowsTyping, AltOpensTheHostsMenuAndTheFieldRegainsTheKeyboard) {
    const MenuLoops loops;
    ASSERT_TRUE(win32KeyEvent(VK_MENU, true));
    ASSERT_TRUE(win32KeyEvent(VK_MENU, false));
    EXPECT_TRUE(TestProgram::pumpUntil([] { return MenuLoops::left() == 1; }, 5000));
    EXPECT_EQ(MenuLoops::entered(), 1);
    TestProgram::settle();
    EXPECT_EQ(GetFocus(), paletteHandle());
    ASSERT_TRUE(win32KeyStroke('A'));
    EXPECT_TRUE(typed(QStringLiteral("a"))) << inputBox()->toPlainText().toStdString();
}
