#include <gtest/gtest.h>

#include <QApplication>
#include <QPointer>

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
    QPointer<QObject> object = new QObject;
    object->deleteLater();
    PostMessageW(program.frame()->m_hWnd, WM_NULL, 0, 0);
    EXPECT_TRUE(TestProgram::pumpUntil([&object] { return object.isNull(); }));
}

TEST(QMfcAppRun, RunsQtsLoopAndDeletesTheApplicationItMade) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    const UINT_PTR timer = SetTimer(nullptr, 0, 10, [](HWND, UINT, UINT_PTR, DWORD) {
        if (QCoreApplication::instance() != nullptr)
            QCoreApplication::exit(7);
    });
    EXPECT_EQ(QMfcApp::run(&testApp()), 7);
    KillTimer(nullptr, timer);
    EXPECT_EQ(QCoreApplication::instance(), nullptr);
}
