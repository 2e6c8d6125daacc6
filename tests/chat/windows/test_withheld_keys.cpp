#include <gtest/gtest.h>
#include <windows.h>

#include <QElapsedTimer>
#include <QKeyEvent>
#include <QTest>
#include <QWindow>
#include <functional>

#include "tests/chat/WithheldCall.h"

// On Windows a Qt event loop removes the messages of the whole thread from the queue, the host's too. User
// input that arrives during a blocking call on the main thread is queued in Qt, and the host's own loop never
// asks Qt for it.

namespace {

/// Records the text typed into it.
class TypedWindow : public QWindow {
public:
    QString text;

protected:
    void keyPressEvent(QKeyEvent* event) override { text += event->text(); }
};

/// A host window that is independent of Qt.
class PlainWindow {
public:
    PlainWindow() {
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = &PlainWindow::procedure;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = L"ZentriTestPlainWindow";
        RegisterClassW(&windowClass);
        m_window = CreateWindowExW(0, windowClass.lpszClassName, L"", WS_POPUP, 0, 0, 50, 50, nullptr,
                                   nullptr, windowClass.hInstance, nullptr);
        SetWindowLongPtrW(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
    ~PlainWindow() { DestroyWindow(m_window); }
    PlainWindow(const PlainWindow&) = delete;
    PlainWindow& operator=(const PlainWindow&) = delete;

    HWND handle() const { return m_window; }
    QString text;

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* const self = reinterpret_cast<PlainWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message == WM_CHAR && self != nullptr) {
            self->text += QChar(static_cast<ushort>(wParam));
        }
        return DefWindowProcW(window, message, wParam, lParam);
    }

    HWND m_window;
};

class WithheldKeys : public WithheldCall {
protected:
    /// Runs the host's message loop until the condition holds or the time is up.
    static bool pumpUntil(const std::function<bool()>& condition) {
        QElapsedTimer limit;
        limit.start();
        MSG message = {};
        while (!condition() && !limit.hasExpired(kWaitLimitMs)) {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
        }
        return condition();
    }

    static void type(HWND window, const QString& text) {
        for (const QChar character : text) {
            PostMessageW(window, WM_CHAR, character.unicode(), 1);
        }
    }
};

}  // namespace

TEST_F(WithheldKeys, ReachTheQtWindowOnceTheCallHasReturned) {
    TypedWindow window;
    window.setGeometry(100, 100, 200, 200);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    window.requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const HWND handle = reinterpret_cast<HWND>(window.winId());
    callMeanwhile([&] { type(handle, QStringLiteral("画a")); });
    EXPECT_EQ(window.text, QString());
    EXPECT_TRUE(pumpUntil([&] { return window.text.size() >= 2; }));
    EXPECT_EQ(window.text, QStringLiteral("画a"));
}

TEST_F(WithheldKeys, ReachTheHostsWindowOnceTheCallHasReturned) {
    PlainWindow window;
    callMeanwhile([&] { type(window.handle(), QStringLiteral("LINE")); });
    EXPECT_EQ(window.text, QString());
    EXPECT_TRUE(pumpUntil([&] { return window.text.size() >= 4; }));
    EXPECT_EQ(window.text, QStringLiteral("LINE"));
}
