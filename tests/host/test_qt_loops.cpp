#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QMenu>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/qtmfc/QMfcApp.h"
#include "tests/support/TestProgram.h"

namespace {

constexpr UINT kNoted = WM_APP + 20;
constexpr UINT kLast = WM_APP + 21;

/// A child window of the frame that records the messages offered to its PreTranslateMessage() and those that
/// it receives.
class HostWindow : public CWnd {
public:
    explicit HostWindow(CWnd* frame) {
        Create(AfxRegisterWndClass(0), _T("Host window"), WS_CHILD | WS_VISIBLE, CRect(0, 0, 50, 50), frame,
               1);
    }
    ~HostWindow() override { DestroyWindow(); }

    BOOL PreTranslateMessage(MSG* message) override {
        if (message->message == kNoted || message->message == kLast) {
            offered.push_back(message->wParam);
        }
        if (onOffer) {
            onOffer(*message);
        }
        return message->message == kNoted && message->wParam == taken;
    }

    std::vector<WPARAM> offered;
    std::vector<WPARAM> got;
    WPARAM taken = 0;
    std::function<void(const MSG&)> onOffer;
    std::function<void()> onLast;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == kNoted || message == kLast) {
            got.push_back(wParam);
        }
        if (message == kLast && onLast) {
            onLast();
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

/// Embedded Qt and a window of the host.
class QtLoops : public testing::Test {
protected:
    QtLoops() : application(QMfcApp::mfc_instance(&testApp())), window(program.frame()) {}

    void post(UINT message, WPARAM wParam) const { PostMessageW(window.m_hWnd, message, wParam, 0); }

    TestProgram program;
    QApplication* application;
    HostWindow window;
};

}  // namespace

TEST_F(QtLoops, TheHostsLoopAloneDeliversTimersPostedAndQueuedEvents) {
    /// Records the Qt event loop level at which each kind of event arrives; 0 is the host's own loop.
    class Receiver : public QObject {
    public:
        std::vector<int> timer, posted, queued;
        static void note(std::vector<int>& levels) {
            levels.push_back(QThread::currentThread()->loopLevel());
        }
        void timerEvent(QTimerEvent*) override { note(timer); }
        void customEvent(QEvent*) override { note(posted); }
    };
    Receiver receiver;
    receiver.startTimer(5);
    QCoreApplication::postEvent(&receiver, new QEvent(QEvent::User));
    const std::unique_ptr<QThread> worker(QThread::create([&receiver] {
        for (int i = 0; i < 3; ++i) {
            QMetaObject::invokeMethod(
                &receiver, [&receiver] { Receiver::note(receiver.queued); }, Qt::QueuedConnection);
        }
    }));
    worker->start();
    EXPECT_TRUE(TestProgram::pumpUntil([&] {
        return receiver.timer.size() >= 3 && receiver.posted.size() == 1 && receiver.queued.size() == 3;
    }));
    worker->wait();
    for (const std::vector<int>* levels : {&receiver.timer, &receiver.posted, &receiver.queued}) {
        for (const int level : *levels) {
            EXPECT_EQ(level, 0);
        }
    }
}

TEST_F(QtLoops, TheHostsOwnLoopOffersAMessageOnce) {
    post(kNoted, 1);
    window.taken = 2;
    post(kNoted, 2);
    EXPECT_TRUE(TestProgram::pumpUntil([this] { return window.offered.size() == 2; }));
    TestProgram::settle();
    EXPECT_EQ(window.offered, (std::vector<WPARAM>{1, 2}));
    EXPECT_EQ(window.got, (std::vector<WPARAM>{1}));
}

TEST_F(QtLoops, AQtDialogOffersHostWindowsTheirMessagesOnceAndDropsHandledOnes) {
    QDialog dialog;
    window.taken = 2;
    window.onLast = [&dialog] { dialog.accept(); };
    post(kNoted, 1);
    post(kNoted, 2);
    post(kNoted, 3);
    post(kLast, 4);
    EXPECT_EQ(dialog.exec(), static_cast<int>(QDialog::Accepted));
    EXPECT_EQ(window.offered, (std::vector<WPARAM>{1, 2, 3, 4}));
    EXPECT_EQ(window.got, (std::vector<WPARAM>{1, 3, 4}));
}

TEST_F(QtLoops, AQtMenuOffersHostWindowsTheirMessagesOnce) {
    QMenu menu;
    menu.addAction(QStringLiteral("entry"));
    window.onLast = [&menu] { menu.close(); };
    QTimer::singleShot(0, &menu, [this] {
        post(kNoted, 1);
        post(kLast, 2);
    });
    EXPECT_EQ(menu.exec(QPoint(300, 300)), nullptr);
    EXPECT_EQ(window.offered, (std::vector<WPARAM>{1, 2}));
    EXPECT_EQ(window.got, (std::vector<WPARAM>{1, 2}));
}

TEST_F(QtLoops, IdleWorkInAQtDialogWaitsForAnEmptyQueueAndRestartsWithTheNextMessage) {
    std::vector<std::string> trace;
    QDialog dialog;
    testApp().preTranslate = [&](MSG* message) {
        if (message->hwnd == window.m_hWnd && (message->message == kNoted || message->message == kLast)) {
            trace.push_back("message " + std::to_string(message->wParam));
        }
        return FALSE;
    };
    // Only this test's messages trigger idle work.
    testApp().isIdleMessage = [this](MSG* message) {
        return message->hwnd == window.m_hWnd && message->message == kNoted ? TRUE : FALSE;
    };
    testApp().onIdle = [&trace](LONG count) {
        trace.push_back("idle " + std::to_string(count));
        return count < 2 ? TRUE : FALSE;
    };
    // The messages queued when the loop starts are handled in one go, the others after their idle work.
    post(kNoted, 1);
    post(kNoted, 2);
    post(kNoted, 3);
    QTimer later;
    QObject::connect(&later, &QTimer::timeout, &later, [&] {
        const auto done = std::count(trace.begin(), trace.end(), "idle 2");
        if (done == 1 && trace.back() == "idle 2") {
            post(kNoted, 4);
        } else if (done == 2) {
            post(kLast, 5);
        }
        // Idle work runs only with a message for a window that is not Qt's.
        PostMessageW(program.frame()->m_hWnd, WM_NULL, 0, 0);
    });
    later.start(10);
    window.onLast = [&dialog] { dialog.accept(); };
    dialog.exec();
    while (!trace.empty() && trace.back() == "message 5") {
        trace.pop_back();
    }
    EXPECT_EQ(trace, (std::vector<std::string>{"message 1", "message 2", "message 3", "idle 0", "idle 1",
                                               "idle 2", "message 4", "idle 0", "idle 1", "idle 2"}));
}

TEST_F(QtLoops, AnEventLoopInsideTheFilterReentersItHarmlessly) {
    int offeredWithin = 0;
    bool within = false;
    window.onOffer = [&](const MSG& message) {
        offeredWithin += within ? 1 : 0;
        if (message.message != kNoted || message.wParam != 1) {
            return;
        }
        // Like a dialog that MFC opens for an accelerator key.
        within = true;
        QEventLoop loop;
        window.onLast = [&loop] { loop.quit(); };
        post(kNoted, 2);
        post(kLast, 3);
        loop.exec();
        within = false;
    };
    QEventLoop outer;
    QTimer::singleShot(0, &outer, [this] { post(kNoted, 1); });
    window.onLast = nullptr;
    QTimer done;
    QObject::connect(&done, &QTimer::timeout, &outer, [&] {
        if (window.got.size() == 3) {
            window.onLast = [&outer] { outer.quit(); };
            post(kLast, 4);
            done.stop();
        }
    });
    done.start(5);
    outer.exec();
    EXPECT_EQ(offeredWithin, 0);
    // In the inner loop messages go straight to their window; afterwards they are offered again.
    EXPECT_EQ(window.got, (std::vector<WPARAM>{2, 3, 1, 4}));
    EXPECT_EQ(window.offered, (std::vector<WPARAM>{1, 4}));
}
