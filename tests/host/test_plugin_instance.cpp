#include <gtest/gtest.h>

#include <QApplication>
#include <QMetaObject>
#include <QPointer>
#include <QTimer>
#include <vector>

#include "host/qtmfc/QMfcApp.h"
#include "tests/support/TestProgram.h"

namespace {

class EventCounter : public QObject {
public:
    int events = 0;
    void customEvent(QEvent*) override { ++events; }
};

/// Retrieves a message that is not for Qt's dispatcher, so that nothing but hooks delivers Qt's events.
bool retrieveOwnMessage() {
    PostMessageW(nullptr, WM_APP, 0, 0);
    MSG message;
    return PeekMessageW(&message, nullptr, WM_APP, WM_APP, PM_REMOVE) != FALSE;
}

}  // namespace

// These create the Qt application in other ways than the module does, so each needs a process of its own.

TEST(PluginInstance, CreatesAPlainApplicationOnce) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    EXPECT_TRUE(QMfcApp::pluginInstance());
    ASSERT_NE(qApp, nullptr);
    EXPECT_EQ(qobject_cast<QMfcApp*>(QCoreApplication::instance()), nullptr);
    EXPECT_FALSE(QMfcApp::pluginInstance());
    // A module that is loaded later uses it.
    EXPECT_EQ(QMfcApp::mfc_instance(&testApp()), qApp);
}

TEST(PluginInstance, AHookWithANegativeCodeOnlyCallsTheNextOne) {
    // Hooks run from the newest to the oldest: this one after the plug-in's.
    static std::vector<int> s_codes;
    const HHOOK last = SetWindowsHookExW(
        WH_GETMESSAGE,
        [](int code, WPARAM wParam, LPARAM lParam) -> LRESULT {
            s_codes.push_back(code);
            return CallNextHookEx(nullptr, code, wParam, lParam);
        },
        nullptr, GetCurrentThreadId());
    ASSERT_TRUE(QMfcApp::pluginInstance());
    // And this one before it.
    static bool s_negative = true;
    const HHOOK first = SetWindowsHookExW(
        WH_GETMESSAGE,
        [](int code, WPARAM wParam, LPARAM lParam) -> LRESULT {
            return CallNextHookEx(nullptr, s_negative ? -1 : code, wParam, lParam);
        },
        nullptr, GetCurrentThreadId());
    EventCounter counter;
    QCoreApplication::postEvent(&counter, new QEvent(QEvent::User));
    ASSERT_TRUE(retrieveOwnMessage());
    EXPECT_EQ(counter.events, 0);
    EXPECT_EQ(s_codes, std::vector<int>{-1});
    s_negative = false;
    ASSERT_TRUE(retrieveOwnMessage());
    EXPECT_EQ(counter.events, 1);
    EXPECT_EQ(s_codes, (std::vector<int>{-1, HC_ACTION}));
    UnhookWindowsHookEx(first);
    UnhookWindowsHookEx(last);
}

TEST(PluginInstance, AnApplicationMadeAgainIsServedByOneHook) {
    ASSERT_TRUE(QMfcApp::pluginInstance());
    delete qApp;
    // Runs between the hook of the first call and that of the second, if there are both.
    static EventCounter* s_counter = nullptr;
    static int s_earlier = -1;
    const HHOOK between = SetWindowsHookExW(
        WH_GETMESSAGE,
        [](int code, WPARAM wParam, LPARAM lParam) -> LRESULT {
            s_earlier = s_counter->events;
            QCoreApplication::postEvent(s_counter, new QEvent(QEvent::User));
            return CallNextHookEx(nullptr, code, wParam, lParam);
        },
        nullptr, GetCurrentThreadId());
    ASSERT_TRUE(QMfcApp::pluginInstance());
    EventCounter counter;
    s_counter = &counter;
    QCoreApplication::postEvent(&counter, new QEvent(QEvent::User));
    ASSERT_TRUE(retrieveOwnMessage());
    UnhookWindowsHookEx(between);
    EXPECT_GE(counter.events, 1);
    const bool bothDelivered = s_earlier == 1 && counter.events == 2;
    EXPECT_FALSE(bothDelivered);
}

TEST(PluginInstance, DeliversPostedEventsWithTheHostsMessages) {
    ASSERT_TRUE(QMfcApp::pluginInstance());
    TestProgram program;
    QObject object;
    bool delivered = false;
    QMetaObject::invokeMethod(
        &object, [&delivered] { delivered = true; }, Qt::QueuedConnection);
    PostMessageW(program.frame()->m_hWnd, WM_NULL, 0, 0);
    MSG message;
    // The hook delivers before GetMessage() returns, whatever Qt's dispatcher does.
    while (GetMessageW(&message, nullptr, 0, 0) && message.message != WM_NULL) {
        DispatchMessageW(&message);
    }
    EXPECT_TRUE(delivered);
}

TEST(PluginInstance, TheHookWorksInAModalLoopToo) {
    ASSERT_TRUE(QMfcApp::pluginInstance());
    TestProgram program;
    QObject object;
    bool delivered = false;
    QMfcApp::enterModalLoop();
    QMetaObject::invokeMethod(
        &object, [&delivered] { delivered = true; }, Qt::QueuedConnection);
    PostMessageW(program.frame()->m_hWnd, WM_NULL, 0, 0);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) && message.message != WM_NULL) {
        DispatchMessageW(&message);
    }
    QMfcApp::exitModalLoop();
    EXPECT_TRUE(delivered);
}

TEST(PluginInstance, DeferredDeletesWaitUntilTheLastModalLoopHasEnded) {
    ASSERT_TRUE(QMfcApp::pluginInstance());
    TestProgram program;
    QPointer<QObject> object;
    bool asked = false;
    QMetaObject::invokeMethod(
        qApp,
        [&] {
            asked = true;
            object = new QObject;
            object->deleteLater();
            QMfcApp::enterModalLoop();
            QMfcApp::enterModalLoop();
        },
        Qt::QueuedConnection);
    ASSERT_TRUE(TestProgram::pumpUntil([&asked] { return asked; }));
    TestProgram::settle();
    EXPECT_NE(object, nullptr);
    QMfcApp::exitModalLoop();
    TestProgram::settle();
    EXPECT_NE(object, nullptr);
    QMfcApp::exitModalLoop();
    EXPECT_TRUE(TestProgram::pumpUntil([&object] { return object == nullptr; }));
}

TEST(PluginInstance, TheHookCallsTheNextOne) {
    static int s_messages = 0;
    const HHOOK earlier = SetWindowsHookExW(
        WH_GETMESSAGE,
        [](int code, WPARAM wParam, LPARAM lParam) -> LRESULT {
            ++s_messages;
            return CallNextHookEx(nullptr, code, wParam, lParam);
        },
        nullptr, GetCurrentThreadId());
    ASSERT_TRUE(QMfcApp::pluginInstance());
    PostMessageW(nullptr, WM_APP, 0, 0);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) && message.message != WM_APP) {
        DispatchMessageW(&message);
    }
    UnhookWindowsHookEx(earlier);
    EXPECT_GT(s_messages, 0);
}

TEST(PluginInstance, ThePluginStaysInMemory) {
    const CString file(MODULE_ANCHOR);
    const HMODULE plugin = LoadLibraryW(file);
    ASSERT_NE(plugin, nullptr);
    ASSERT_TRUE(QMfcApp::pluginInstance(plugin));
    FreeLibrary(plugin);
    EXPECT_EQ(GetModuleHandleW(file), plugin);
}

TEST(PluginInstance, TheEventFilterIgnoresAnotherKindOfApplication) {
    ASSERT_TRUE(QMfcApp::pluginInstance());
    int offered = 0;
    testApp().preTranslate = [&offered](MSG*) {
        ++offered;
        return TRUE;
    };
    MSG message = {};
    message.message = WM_APP;
    long result = 0;
    QMfcAppEventFilter filter;
    EXPECT_FALSE(filter.nativeEventFilter("windows_dispatcher_MSG", &message, &result));
    EXPECT_FALSE(filter.nativeEventFilter("windows_generic_MSG", &message, &result));
    EXPECT_EQ(offered, 0);
}

TEST(QMfcAppCreated, QuitsOnLastWindowClosedOnPurpose) {
    // Whatever was set before.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QMfcApp::mfc_instance(&testApp());
    EXPECT_TRUE(QGuiApplication::quitOnLastWindowClosed());
}

TEST(QMfcAppCreated, IgnoresMessagesWithoutAnMfcApplication) {
    int count = 0;
    QMfcApp application(nullptr, count, nullptr);
    MSG message = {};
    message.message = WM_APP;
    long result = 0;
    EXPECT_FALSE(application.winEventFilter(&message, &result));
    EXPECT_FALSE(application.winEventFilter(&message, &result));
}

TEST(QMfcAppRun, KeepsAnExistingApplication) {
    QApplication* const application = QMfcApp::mfc_instance(&testApp());
    QTimer::singleShot(0, application, [] { QCoreApplication::exit(3); });
    EXPECT_EQ(QMfcApp::run(&testApp()), 3);
    EXPECT_EQ(QCoreApplication::instance(), application);
}

TEST(QMfcAppRun, RunsTheQtLoopAndDeletesTheApplicationItCreated) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    qAddPreRoutine([] { QTimer::singleShot(50, [] { QCoreApplication::exit(7); }); });
    EXPECT_EQ(QMfcApp::run(&testApp()), 7);
    EXPECT_EQ(QCoreApplication::instance(), nullptr);
}
