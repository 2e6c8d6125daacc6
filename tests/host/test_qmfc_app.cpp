#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <vector>

#include "host/core/ZR_ZentriText.h"
#include "host/qtmfc/QMfcApp.h"
#include "tests/host/PanelInFrame.h"
#include "tests/support/TestProgram.h"

namespace {

bool filter(const char* eventType, MSG& message, long* result) {
    QMfcAppEventFilter eventFilter;
    return eventFilter.nativeEventFilter(QByteArray(eventType), &message, result);
}

class QMfcAppTest : public testing::Test {
protected:
    QMfcAppTest() : application(qobject_cast<QMfcApp*>(QMfcApp::mfc_instance(&testApp()))) {}

    // The three ways in which Qt passes a message to a filter.
    /// A Qt event loop has removed it from the queue.
    static bool pumpedFilter(MSG& message) { return filter("windows_generic_MSG", message, nullptr); }
    /// It has reached the hidden window of Qt's event dispatcher.
    static bool dispatcherFilter(MSG& message) {
        long result = 0;
        return filter("windows_dispatcher_MSG", message, &result);
    }
    /// It has reached the window procedure of a Qt window.
    static bool deliveredFilter(MSG& message) {
        long result = 0;
        return filter("windows_generic_MSG", message, &result);
    }

    static MSG messageTo(HWND window, UINT message, WPARAM wParam = 0) {
        MSG result = {};
        result.hwnd = window;
        result.message = message;
        result.wParam = wParam;
        return result;
    }

    TestProgram program;
    QMfcApp* application;
};

/// A frame that records the menu keys sent to it.
class KeyFrame : public CMDIFrameWnd {
public:
    std::vector<UINT> messages;
    std::vector<WPARAM> keys;
    /// Whether the frame had the focus at the last of them.
    bool hadFocus = false;
    std::function<void()> onKey;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_SYSKEYDOWN || message == WM_SYSKEYUP) {
            messages.push_back(message);
            keys.push_back(wParam);
            hadFocus = ::GetFocus() == m_hWnd;
            if (onKey) {
                onKey();
            }
            return 0;
        }
        return CMDIFrameWnd::WindowProc(message, wParam, lParam);
    }
};

/// Records the focus reasons of a widget.
class FocusReasons : public QObject {
public:
    explicit FocusReasons(QObject* watched) { watched->installEventFilter(this); }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::FocusIn) {
            reasons.push_back(static_cast<QFocusEvent*>(event)->reason());
        }
        return false;
    }

    std::vector<Qt::FocusReason> reasons;
};

/// A focused Qt window embedded in a child window of a frame with a menu.
struct MenuKeys : PanelInFrame<KeyFrame> {
    MenuKeys() {
        showView();
        TestProgram::pumpUntil([this] { return GetParent(viewHandle()) == panel.m_hWnd; });
        SetFocus(viewHandle());
        TestProgram::settle();
        frame->messages.clear();
        frame->keys.clear();
    }
};

}  // namespace

TEST_F(QMfcAppTest, HasOneInstancePerProcess) {
    ASSERT_NE(application, nullptr);
    EXPECT_EQ(QCoreApplication::instance(), application);
    EXPECT_EQ(QMfcApp::mfc_instance(&testApp()), application);
    EXPECT_TRUE(QApplication::quitOnLastWindowClosed());
}

TEST_F(QMfcAppTest, ArgumentsAreTheProgramNameAndTheCommandLineSplitAtSpaces) {
    const QStringList arguments = QCoreApplication::arguments();
    const QStringList expected = {toQString(testApp().m_pszExeName), QStringLiteral("-first"), QString(),
                                  QStringLiteral("\"second\"")};
    EXPECT_EQ(arguments, expected);
}

TEST_F(QMfcAppTest, EveryPumpedMessageIsOfferedToMfc) {
    std::vector<UINT> offered;
    testApp().preTranslate = [&offered](MSG* message) {
        offered.push_back(message->message);
        return message->message == WM_APP ? TRUE : FALSE;
    };
    MSG taken = messageTo(program.frame()->m_hWnd, WM_APP);
    MSG left = messageTo(program.frame()->m_hWnd, WM_APP + 1);
    EXPECT_TRUE(pumpedFilter(taken));
    EXPECT_FALSE(pumpedFilter(left));
    EXPECT_EQ(offered, (std::vector<UINT>{WM_APP, WM_APP + 1}));
}

TEST_F(QMfcAppTest, MessagesDispatchedToQtWindowsAreNotOfferedToMfc) {
    int offered = 0;
    testApp().preTranslate = [&offered](MSG*) {
        ++offered;
        return TRUE;
    };
    MSG message = messageTo(program.frame()->m_hWnd, WM_CHAR, 'a');
    EXPECT_FALSE(deliveredFilter(message));
    EXPECT_EQ(offered, 0);
    EXPECT_TRUE(pumpedFilter(message));
    EXPECT_TRUE(dispatcherFilter(message));
    EXPECT_EQ(offered, 2);
}

TEST_F(QMfcAppTest, EventsOfOtherPlatformsAreIgnored) {
    int offered = 0;
    testApp().preTranslate = [&offered](MSG*) {
        ++offered;
        return TRUE;
    };
    long result = 0;
    QMfcAppEventFilter eventFilter;
    char noMessage[4] = {};
    EXPECT_FALSE(eventFilter.nativeEventFilter("xcb_generic_event_t", noMessage, &result));
    EXPECT_FALSE(eventFilter.nativeEventFilter("mac_generic_NSEvent", noMessage, &result));
    EXPECT_EQ(offered, 0);
}

TEST_F(QMfcAppTest, AReenteredFilterReportsTheMessageAsNotHandled) {
    bool inner = true;
    testApp().preTranslate = [this, &inner](MSG*) {
        MSG nested = messageTo(program.frame()->m_hWnd, WM_APP + 1);
        inner = pumpedFilter(nested);
        return TRUE;
    };
    MSG message = messageTo(program.frame()->m_hWnd, WM_APP);
    EXPECT_TRUE(pumpedFilter(message));
    EXPECT_FALSE(inner);
    // The guard has been reset.
    testApp().preTranslate = [](MSG*) { return TRUE; };
    EXPECT_TRUE(pumpedFilter(message));
}

TEST_F(QMfcAppTest, TheGuardIsResetAfterAnException) {
    testApp().preTranslate = [](MSG*) -> BOOL { throw 1; };
    MSG message = messageTo(program.frame()->m_hWnd, WM_APP);
    EXPECT_THROW(pumpedFilter(message), int);
    testApp().preTranslate = [](MSG*) { return TRUE; };
    EXPECT_TRUE(pumpedFilter(message));
}

TEST_F(QMfcAppTest, IdleWorkRunsUntilOnIdleReturnsFalse) {
    std::vector<LONG> counts;
    testApp().preTranslate = [](MSG*) { return FALSE; };
    testApp().onIdle = [&counts](LONG count) {
        counts.push_back(count);
        return count < 2 ? TRUE : FALSE;
    };
    testApp().isIdleMessage = [](MSG*) { return TRUE; };
    MSG message = messageTo(program.frame()->m_hWnd, WM_APP);
    // The first message sets the idle flag, the second one runs the idle work.
    pumpedFilter(message);
    EXPECT_TRUE(counts.empty());
    pumpedFilter(message);
    EXPECT_EQ(counts, (std::vector<LONG>{0, 1, 2}));
    // The second one has set the flag and reset the count again.
    pumpedFilter(message);
    EXPECT_EQ(counts, (std::vector<LONG>{0, 1, 2, 0, 1, 2}));
}

TEST_F(QMfcAppTest, IdleWorkWaitsUntilTheQueueIsEmpty) {
    int idle = 0;
    testApp().preTranslate = [](MSG*) { return FALSE; };
    testApp().onIdle = [&idle](LONG) {
        ++idle;
        return FALSE;
    };
    testApp().isIdleMessage = [](MSG*) { return TRUE; };
    MSG message = messageTo(program.frame()->m_hWnd, WM_APP);
    pumpedFilter(message);
    PostMessageW(program.frame()->m_hWnd, WM_NULL, 0, 0);
    pumpedFilter(message);
    EXPECT_EQ(idle, 0);
    MSG waiting;
    // The queued message has not been removed.
    EXPECT_TRUE(PeekMessageW(&waiting, program.frame()->m_hWnd, WM_NULL, WM_NULL, PM_NOREMOVE));
    while (PeekMessageW(&waiting, nullptr, 0, 0, PM_REMOVE)) {
    }
    pumpedFilter(message);
    EXPECT_EQ(idle, 1);
}

TEST_F(QMfcAppTest, FinishedIdleWorkIsNotRepeatedForANonIdleMessage) {
    int idle = 0;
    bool idleMessage = true;
    testApp().preTranslate = [](MSG*) { return FALSE; };
    testApp().onIdle = [&idle](LONG) {
        ++idle;
        return FALSE;
    };
    testApp().isIdleMessage = [&idleMessage](MSG*) { return idleMessage ? TRUE : FALSE; };
    MSG message = messageTo(program.frame()->m_hWnd, WM_APP);
    pumpedFilter(message);
    idleMessage = false;
    pumpedFilter(message);
    pumpedFilter(message);
    EXPECT_EQ(idle, 1);
}

TEST_F(QMfcAppTest, ANonIdleMessageTriggersNoIdleWork) {
    int idle = 0;
    testApp().preTranslate = [](MSG*) { return FALSE; };
    testApp().onIdle = [&idle](LONG) {
        ++idle;
        return FALSE;
    };
    testApp().isIdleMessage = [](MSG*) { return FALSE; };
    MSG message = messageTo(program.frame()->m_hWnd, WM_APP);
    pumpedFilter(message);
    pumpedFilter(message);
    EXPECT_EQ(idle, 0);
}

TEST_F(QMfcAppTest, MessagesToQtWindowsTriggerNoIdleWork) {
    int idle = 0;
    testApp().preTranslate = [](MSG*) { return FALSE; };
    testApp().onIdle = [&idle](LONG) {
        ++idle;
        return FALSE;
    };
    testApp().isIdleMessage = [](MSG*) { return TRUE; };
    QWidget widget;
    MSG toQt = messageTo(reinterpret_cast<HWND>(widget.winId()), WM_APP);
    pumpedFilter(toQt);
    pumpedFilter(toQt);
    EXPECT_EQ(idle, 0);
}

TEST_F(QMfcAppTest, ReleasingAltInAQtWindowReachesTheFrameWithTheMenu) {
    MenuKeys keys;
    MSG message = messageTo(keys.viewHandle(), WM_SYSKEYUP, VK_MENU);
    EXPECT_TRUE(pumpedFilter(message));
    EXPECT_EQ(keys.frame->messages, (std::vector<UINT>{WM_SYSKEYUP}));
    EXPECT_EQ(keys.frame->keys, (std::vector<WPARAM>{VK_MENU}));
    EXPECT_TRUE(keys.frame->hadFocus);
}

TEST_F(QMfcAppTest, TheQtWindowRegainsTheFocusAfterAlt) {
    MenuKeys keys;
    QLineEdit field(&keys.view);
    field.show();
    field.setFocus();
    TestProgram::settle();
    ASSERT_TRUE(field.hasFocus());
    MSG message = messageTo(keys.viewHandle(), WM_SYSKEYUP, VK_MENU);
    EXPECT_TRUE(pumpedFilter(message));
    EXPECT_TRUE(keys.frame->hadFocus);
    EXPECT_EQ(GetFocus(), keys.viewHandle());
    TestProgram::settle();
    EXPECT_TRUE(field.hasFocus());
    EXPECT_EQ(GetFocus(), keys.viewHandle());
}

TEST_F(QMfcAppTest, AQtWindowWithoutAFocusWidgetGetsTheFocusWithOtherFocusReason) {
    MenuKeys keys;
    keys.view.clearFocus();
    ASSERT_EQ(keys.view.focusWidget(), nullptr);
    const FocusReasons reasons(&keys.view);
    MSG message = messageTo(keys.viewHandle(), WM_SYSKEYUP, VK_MENU);
    EXPECT_TRUE(pumpedFilter(message));
    EXPECT_TRUE(keys.view.hasFocus());
    EXPECT_EQ(reasons.reasons, (std::vector<Qt::FocusReason>{Qt::OtherFocusReason}));
}

TEST_F(QMfcAppTest, AWidgetDeletedWhileTheMenuIsOpenGetsNoFocus) {
    MenuKeys keys;
    auto* const field = new QLineEdit(&keys.view);
    field->show();
    field->setFocus();
    ASSERT_EQ(keys.view.focusWidget(), field);
    keys.frame->onKey = [field] { delete field; };
    MSG message = messageTo(keys.viewHandle(), WM_SYSKEYUP, VK_MENU);
    EXPECT_TRUE(pumpedFilter(message));
    EXPECT_EQ(GetFocus(), keys.frame->m_hWnd);
}

TEST_F(QMfcAppTest, TheResultOfAHandledMenuKeyIsZero) {
    MenuKeys keys;
    for (const UINT id : {WM_SYSKEYUP, WM_SYSKEYDOWN}) {
        MSG message = messageTo(keys.viewHandle(), id, id == WM_SYSKEYUP ? VK_MENU : 'F');
        SetFocus(keys.viewHandle());
        long result = 42;
        EXPECT_TRUE(application->winEventFilter(&message, &result));
        EXPECT_EQ(result, 0);
    }
}

TEST_F(QMfcAppTest, MenuKeysOfOtherWindowsAreIgnored) {
    MenuKeys keys;
    keys.frame->SetFocus();
    MSG message = messageTo(keys.frame->m_hWnd, WM_SYSKEYDOWN, 'F');
    EXPECT_FALSE(pumpedFilter(message));
    EXPECT_TRUE(keys.frame->messages.empty());
}

TEST_F(QMfcAppTest, OtherKeysOfAQtWindowAreNotMenuKeys) {
    MenuKeys keys;
    for (const UINT id : {WM_KEYDOWN, WM_KEYUP, WM_CHAR}) {
        MSG message = messageTo(keys.viewHandle(), id, VK_MENU);
        EXPECT_FALSE(pumpedFilter(message));
    }
    MSG released = messageTo(keys.viewHandle(), WM_SYSKEYUP, 'F');
    EXPECT_FALSE(pumpedFilter(released));
    EXPECT_TRUE(keys.frame->messages.empty());
}

TEST_F(QMfcAppTest, AHandledMenuKeyIsNotOfferedToMfc) {
    MenuKeys keys;
    int offered = 0;
    testApp().preTranslate = [&offered](MSG*) {
        ++offered;
        return FALSE;
    };
    MSG message = messageTo(keys.viewHandle(), WM_SYSKEYDOWN, 'F');
    EXPECT_TRUE(pumpedFilter(message));
    EXPECT_EQ(offered, 0);
    // Another message to a Qt window is offered.
    MSG other = messageTo(keys.viewHandle(), WM_APP);
    EXPECT_FALSE(pumpedFilter(other));
    EXPECT_EQ(offered, 1);
}

TEST_F(QMfcAppTest, AKeyWithAltInAQtWindowReachesTheFrameWithTheMenu) {
    MenuKeys keys;
    MSG message = messageTo(keys.viewHandle(), WM_SYSKEYDOWN, 'F');
    EXPECT_TRUE(pumpedFilter(message));
    EXPECT_EQ(keys.frame->messages, (std::vector<UINT>{WM_SYSKEYDOWN, WM_SYSKEYUP}));
    EXPECT_EQ(keys.frame->keys, (std::vector<WPARAM>{'F', VK_MENU}));
}

TEST_F(QMfcAppTest, PressingAltAloneIsNotForwarded) {
    MenuKeys keys;
    MSG message = messageTo(keys.viewHandle(), WM_SYSKEYDOWN, VK_MENU);
    EXPECT_FALSE(pumpedFilter(message));
    EXPECT_TRUE(keys.frame->messages.empty());
}

TEST_F(QMfcAppTest, MenuKeysOfAQtWindowWithoutTheFocusAreNotForwarded) {
    MenuKeys keys;
    keys.frame->SetFocus();
    MSG message = messageTo(keys.viewHandle(), WM_SYSKEYDOWN, 'F');
    EXPECT_FALSE(pumpedFilter(message));
    EXPECT_TRUE(keys.frame->messages.empty());
}

TEST_F(QMfcAppTest, MenuKeysAreNotForwardedToAFrameWithoutAMenu) {
    MenuKeys keys;
    keys.frame->SetMenu(nullptr);
    MSG message = messageTo(keys.viewHandle(), WM_SYSKEYDOWN, 'F');
    EXPECT_FALSE(pumpedFilter(message));
    EXPECT_TRUE(keys.frame->messages.empty());
}

TEST_F(QMfcAppTest, TheHostsLoopDeliversPostedEventsTimersAndDeferredDeletes) {
    QPointer<QObject> object = new QObject;
    bool queued = false;
    QMetaObject::invokeMethod(
        object, [&queued] { queued = true; }, Qt::QueuedConnection);
    // Qt executes a deferred delete after the event that posted it.
    QTimer::singleShot(10, object, [&object] { object->deleteLater(); });
    EXPECT_TRUE(TestProgram::pumpUntil([&object] { return object.isNull(); }));
    EXPECT_TRUE(queued);
}

TEST_F(QMfcAppTest, PluginInstanceKeepsAnExistingApplication) {
    EXPECT_FALSE(QMfcApp::pluginInstance());
    EXPECT_EQ(QCoreApplication::instance(), application);
}
