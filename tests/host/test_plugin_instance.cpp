#include <gtest/gtest.h>

#include <QApplication>
#include <QMetaObject>
#include <QTimer>

#include "host/qtmfc/QMfcApp.h"
#include "tests/support/TestProgram.h"

// These make the process's Qt application in other ways than the module does, so each needs a process of its
// own.

TEST(PluginInstance, MakesAPlainApplicationOnce) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    EXPECT_TRUE(QMfcApp::pluginInstance());
    ASSERT_NE(qApp, nullptr);
    EXPECT_EQ(qobject_cast<QMfcApp*>(QCoreApplication::instance()), nullptr);
    EXPECT_FALSE(QMfcApp::pluginInstance());
    // A later module takes it as it is.
    EXPECT_EQ(QMfcApp::mfc_instance(&testApp()), qApp);
}

TEST(PluginInstance, PostedEventsAreDeliveredWithTheHostsMessages) {
    ASSERT_TRUE(QMfcApp::pluginInstance());
    TestProgram program;
    QObject object;
    bool delivered = false;
    QMetaObject::invokeMethod(
        &object, [&delivered] { delivered = true; }, Qt::QueuedConnection);
    PostMessageW(program.frame()->m_hWnd, WM_NULL, 0, 0);
    MSG message;
    // The hook delivers before the message is handed over, whatever Qt's dispatcher does.
    while (GetMessageW(&message, nullptr, 0, 0) && message.message != WM_NULL)
        DispatchMessageW(&message);
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
    while (GetMessageW(&message, nullptr, 0, 0) && message.message != WM_NULL)
        DispatchMessageW(&message);
    QMfcApp::exitModalLoop();
    EXPECT_TRUE(delivered);
}

TEST(QMfcAppRun, RunsQtsLoopAndDeletesTheApplicationItMade) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    qAddPreRoutine([] { QTimer::singleShot(50, [] { QCoreApplication::exit(7); }); });
    EXPECT_EQ(QMfcApp::run(&testApp()), 7);
    EXPECT_EQ(QCoreApplication::instance(), nullptr);
}
