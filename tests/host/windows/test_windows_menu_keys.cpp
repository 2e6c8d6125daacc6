#include <gtest/gtest.h>
#include <win32_control.h>

#include <QApplication>
#include <QEventLoop>
#include <QLineEdit>
#include <QTimer>
#include <functional>
#include <vector>

#include "host/qtmfc/QMfcApp.h"
#include "tests/host/PanelInFrame.h"
#include "tests/support/TestProgram.h"

namespace {

/// A frame that records the menu keys it receives, and whether it had the focus then.
class RecordingFrame : public CMDIFrameWnd {
public:
    struct Key {
        UINT message;
        WPARAM key;
        bool frameHadFocus;
    };
    std::vector<Key> keys;

    bool got(UINT message, WPARAM key) const {
        for (const Key& each : keys) {
            if (each.message == message && each.key == key) {
                return true;
            }
        }
        return false;
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_SYSKEYDOWN || message == WM_SYSKEYUP) {
            keys.push_back({message, wParam, ::GetFocus() == m_hWnd});
        }
        return CMDIFrameWnd::WindowProc(message, wParam, lParam);
    }
};

/// The user's Alt key while a field of an embedded Qt view has the focus and a Qt event loop runs.
class WindowsMenuKeys : public testing::Test {
protected:
    struct FocusedField : PanelInFrame<RecordingFrame> {
        FocusedField() : field(new QLineEdit(&view)) {
            showView();
            frame->SetForegroundWindow();
            SetFocus(viewHandle());
            field->setFocus();
            TestProgram::pumpUntil([this] { return field->hasFocus() && GetFocus() == viewHandle(); });
            TestProgram::settle();
            frame->keys.clear();
        }
        QLineEdit* field;
    };

    HWND viewHandle() const { return window.viewHandle(); }

    /// Runs a Qt event loop until the condition holds; false on timeout.
    static bool inQtLoop(const std::function<bool()>& condition) {
        constexpr int kTickMs = 10;
        constexpr int kTimeoutMs = 5000;
        QEventLoop loop;
        QTimer tick;
        bool held = false;
        QObject::connect(&tick, &QTimer::timeout, &loop, [&] {
            held = condition();
            if (held) {
                loop.quit();
            }
        });
        tick.start(kTickMs);
        QTimer::singleShot(kTimeoutMs, &loop, &QEventLoop::quit);
        loop.exec();
        return held;
    }

    TestProgram program;
    QApplication* application = QMfcApp::mfc_instance(&testApp());
    FocusedField window;
    RecordingFrame* frame = window.frame;
    QLineEdit* field = window.field;
};

}  // namespace

TEST_F(WindowsMenuKeys, ReleasingAltReachesTheFrameAndTheFieldRegainsTheFocus) {
    ASSERT_EQ(GetFocus(), viewHandle());
    ASSERT_TRUE(win32KeyEvent(VK_MENU, true));
    ASSERT_TRUE(win32KeyEvent(VK_MENU, false));
    EXPECT_TRUE(inQtLoop([this] { return frame->got(WM_SYSKEYUP, VK_MENU); }));
    ASSERT_EQ(frame->keys.size(), 1U);
    EXPECT_TRUE(frame->keys[0].frameHadFocus);
    EXPECT_EQ(GetFocus(), viewHandle());
    EXPECT_TRUE(inQtLoop([this] { return field->hasFocus(); }));
    // The next key goes to the field.
    ASSERT_TRUE(win32KeyStroke('A'));
    EXPECT_TRUE(inQtLoop([this] { return field->text() == QStringLiteral("a"); }));
}

TEST_F(WindowsMenuKeys, AKeyPressedWithAltReachesTheFrameFollowedByAltsRelease) {
    ASSERT_EQ(GetFocus(), viewHandle());
    ASSERT_TRUE(win32KeyEvent(VK_MENU, true));
    ASSERT_TRUE(win32KeyEvent('Q', true));
    EXPECT_TRUE(inQtLoop([this] { return frame->got(WM_SYSKEYUP, VK_MENU); }));
    ASSERT_EQ(frame->keys.size(), 2U);
    EXPECT_EQ(frame->keys[0].message, static_cast<UINT>(WM_SYSKEYDOWN));
    EXPECT_EQ(frame->keys[0].key, static_cast<WPARAM>('Q'));
    EXPECT_EQ(GetFocus(), viewHandle());
    EXPECT_TRUE(field->text().isEmpty());
    win32KeyEvent('Q', false);
    win32KeyEvent(VK_MENU, false);
    EXPECT_TRUE(inQtLoop([] { return GetKeyState(VK_MENU) >= 0; }));
    EXPECT_EQ(frame->keys.size(), 2U);
    EXPECT_EQ(GetFocus(), viewHandle());
}
