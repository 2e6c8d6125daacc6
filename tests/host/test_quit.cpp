#include <QApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QThread>
#include <QTimer>
#include <functional>

#include "chat/ZR_AiChatService.h"
#include "host/core/ZR_ZentriAccount.h"
#include "host/qtmfc/QMfcApp.h"
#include "sidebar/ZR_AiChatChatBoxPageContentLabel.h"
#include "tests/host/ModuleFixture.h"
#include "view/ZR_ZentriPaletteView.h"
#include "view/bubble/QNChatMessage.h"

// The host is to end while one of the module's Qt loops runs. That loop takes WM_QUIT out of the queue.

namespace {

constexpr int kExitCode = 7;

/// A window of the host whose destruction ends the host.
class MainWindow {
public:
    MainWindow() {
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
            if (message == WM_DESTROY) {
                PostQuitMessage(kExitCode);
            }
            return DefWindowProcW(window, message, wParam, lParam);
        };
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = _T("ZentriTestMainWindow");
        RegisterClassW(&windowClass);
        handle = CreateWindowExW(0, windowClass.lpszClassName, _T("Host"), WS_OVERLAPPEDWINDOW, 0, 0, 200,
                                 100, nullptr, nullptr, windowClass.hInstance, nullptr);
    }

    HWND handle;
};

class Quit : public ModuleFixture {
protected:
    /// Blocks in a call of a service that never replies, and ends the host meanwhile.
    void blockMeanwhile(const std::function<void()>& endHost) {
        FakeHttpServer silent;
        qputenv("ZR_ZENTRI_SERVICE", silent.address().toLatin1());
        setZentriSignedIn(true);
        setZentriAccessToken(_T("token"));
        QTimer during;
        bool ended = false;
        QObject::connect(&during, &QTimer::timeout, &during, [&] {
            if (silent.requestCount() == 1 && !ended) {
                ended = true;
                endHost();
            }
        });
        during.start(1);
        EXPECT_TRUE(createSessionOnServer().IsEmpty());
        EXPECT_TRUE(ended);
    }

    /// Runs the host's loop until it ends, as after some time at the latest.
    static bool hostEnds() {
        constexpr ULONGLONG kLimitMs = 3000;
        constexpr UINT kTickMs = 10;
        const ULONGLONG start = GetTickCount64();
        const UINT_PTR tick = SetTimer(nullptr, 0, kTickMs, nullptr);
        MSG message = {};
        bool running = true;
        while (running && GetTickCount64() - start < kLimitMs) {
            running = GetMessageW(&message, nullptr, 0, 0) != FALSE;
            if (running) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
        }
        KillTimer(nullptr, tick);
        EXPECT_TRUE(running || message.wParam == kExitCode) << message.wParam;
        return !running;
    }
};

}  // namespace

TEST_F(Quit, PostedDuringABlockingCallReachesTheHost) {
    blockMeanwhile([] { PostQuitMessage(kExitCode); });
    EXPECT_TRUE(hostEnds());
}

TEST_F(Quit, OfAMainWindowClosedDuringABlockingCallReachesTheHost) {
    const MainWindow window;
    blockMeanwhile([&window] { PostMessageW(window.handle, WM_SYSCOMMAND, SC_CLOSE, 0); });
    EXPECT_FALSE(IsWindow(window.handle));
    EXPECT_TRUE(hostEnds());
}

TEST_F(Quit, PostedWhileTheEditDialogIsOpenReachesTheHost) {
    load();
    openPanel();
    QNChatMessage bubble;
    bubble.resize(400, 100);
    const QSize size = bubble.fontRect(QStringLiteral("怎样画圆"));
    bubble.setText(QStringLiteral("怎样画圆"), QStringLiteral("0"), size, QNChatMessage::Question);
    bubble.resize(size);
    QTimer when;
    QObject::connect(&when, &QTimer::timeout, &when, [&when] {
        // A window of its kind also processes events while it is being shown.
        if (QApplication::activeModalWidget() != nullptr && QThread::currentThread()->loopLevel() > 0) {
            when.stop();
            PostQuitMessage(kExitCode);
        }
    });
    when.start(1);
    const QPoint place = bubble.rects().editRect.center();
    QMouseEvent press(QEvent::MouseButtonPress, place, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&bubble, &press);
    EXPECT_FALSE(when.isActive());
    EXPECT_TRUE(hostEnds());
}

TEST_F(Quit, PostedWhileASessionsMenuIsOpenReachesTheHost) {
    load();
    openPanel();
    ZR_AiChatChatBoxPageContentLabel entry;
    QTimer when;
    QObject::connect(&when, &QTimer::timeout, &when, [&when] {
        if (qobject_cast<QMenu*>(QApplication::activePopupWidget()) != nullptr) {
            when.stop();
            PostQuitMessage(kExitCode);
        }
    });
    when.start(1);
    entry.toolButton_options_clicked(false);
    EXPECT_FALSE(when.isActive());
    EXPECT_TRUE(hostEnds());
}

TEST_F(Quit, EndsAHostWhoseMainLoopIsQtsOnce) {
    bool blocked = false;
    QTimer::singleShot(0, application, [&] {
        load();
        QTimer::singleShot(0, application, [&] {
            blockMeanwhile([] { PostQuitMessage(kExitCode); });
            blocked = true;
        });
    });
    QApplication::exec();
    EXPECT_TRUE(blocked);
    // A message box of the host, for instance to ask whether to save, would end at once.
    MSG message = {};
    EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) && message.message == WM_QUIT);
}
