#include <accmd.h>
#include <aced.h>

#include <QApplication>
#include <QEventLoop>
#include <QPointer>
#include <QThread>
#include <QTimer>
#include <memory>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatManager.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "host/ZR_ZentriModule.h"
#include "host/ZR_ZentriPalette.h"
#include "host/ZR_ZentriPaletteSet.h"
#include "host/core/ZR_ZentriAccount.h"
#include "host/core/ZR_ZentriCmdRecorder.h"
#include "host/core/ZR_ZentriPaletteAccess.h"
#include "host/qtmfc/QMfcApp.h"
#include "tests/host/EmptyService.h"
#include "tests/host/HostCommand.h"
#include "tests/host/ModuleFixture.h"
#include "view/ZR_ZentriPaletteView.h"

// Hosts, or other modules of a host, that have a Qt application of their own.

namespace {

QApplication* makeForeignApplication() {
    static int s_count = 0;
    return new QApplication(s_count, nullptr);
}

class ForeignQt : public ModuleFixture {
protected:
    ForeignQt() : ModuleFixture(makeForeignApplication()) {}
};

using QtMainLoop = ModuleFixture;

/// A test whose Qt application, if any, ends before the test does.
class EndingQt : public testing::Test {
protected:
    EndingQt() {
        FakeAccount::reset();
        FakeAccount::offer(program.host());
        FakeAccount::token = _T("token");
        program.host().setVar(_T("COLORTHEME"), 1);
    }
    ~EndingQt() override { unload(); }

    AcRx::AppRetCode load() { return app.On_kInitAppMsg(&app); }
    AcRx::AppRetCode unload() { return app.On_kUnloadAppMsg(&app); }

    TestProgram program;
    CZR_ZentriApp app;
};

/// A process whose Qt application cannot run the module.
class UnusableQt : public EndingQt {
protected:
    void expectRefusal() {
        EXPECT_EQ(load(), AcRx::kRetError);
        EXPECT_EQ(program.host().printed().size(), 1U);
        EXPECT_EQ(program.host().printedText().Find(_T("\nZR_Zentri:")), 0);
        EXPECT_EQ(acedRegCmds->lookupCmd(_T("KQ_AICHAT"), false), nullptr);
        EXPECT_EQ(arxEditorReactorCount(), 0);
        EXPECT_EQ(g_zentriChatThread, nullptr);
        EXPECT_EQ(g_zentriHistoryThread, nullptr);
        EXPECT_EQ(g_zentriPaletteSet, nullptr);
        EXPECT_EQ(g_zentriCmdRecorder, nullptr);
        EXPECT_EQ(zentriPaletteAccess(), nullptr);
        EXPECT_TRUE(program.frame()->GetControlBars().empty());
        EXPECT_EQ(unload(), AcRx::kRetOK);
    }
};

}  // namespace

TEST_F(ForeignQt, ServesTheModuleForItsWholeLife) {
    ASSERT_EQ(qobject_cast<QMfcApp*>(application), nullptr);
    const QPointer<QApplication> watched = application;
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(load(), AcRx::kRetOK);
        EXPECT_EQ(QCoreApplication::instance(), application);
        EXPECT_EQ(g_zentriChatThread->parent(), application);
        EXPECT_EQ(g_zentriHistoryThread->parent(), application);
        openPanel();
        EXPECT_TRUE(view()->isVisible());
        focusInput();
        TestProgram::typeKey(paletteHandle(), 'A');
        EXPECT_TRUE(typed(QStringLiteral("a")));
        EXPECT_EQ(unload(), AcRx::kRetOK);
        EXPECT_EQ(paletteSetsInFrame(), 0);
        ASSERT_FALSE(watched.isNull());
        EXPECT_EQ(QCoreApplication::instance(), application);
        program.host().clearPrinted();
    }
}

TEST_F(QtMainLoop, UnloadingDeletesThePanel) {
    bool deleted = false;
    QTimer::singleShot(0, application, [&] {
        load();
        const QPointer<QWidget> opened = view();
        unload();
        QTimer::singleShot(500, application, [&, opened] {
            deleted = opened.isNull() && paletteSetsInFrame() == 0;
            QCoreApplication::exit();
        });
    });
    QMfcApp::run(&testApp());
    EXPECT_TRUE(deleted);
}

TEST_F(QtMainLoop, UnloadingDeletesThePanelOfAModuleLoadedBeforeTheLoop) {
    load();
    const QPointer<QWidget> opened = view();
    bool deleted = false;
    QTimer::singleShot(0, application, [&] {
        unload();
        QTimer::singleShot(500, application, [&] {
            deleted = opened.isNull() && paletteSetsInFrame() == 0;
            QCoreApplication::exit();
        });
    });
    QApplication::exec();
    EXPECT_TRUE(deleted);
}

TEST_F(QtMainLoop, UnloadingInsideANestedLoopKeepsTheViewUntilThatLoopEnds) {
    load();
    const QPointer<QWidget> opened = view();
    bool keptInside = false;
    bool deletedAfterwards = false;
    QTimer::singleShot(50, application, [&] {
        QEventLoop nested;
        QTimer::singleShot(0, &nested, [&] {
            unload();
            QTimer::singleShot(300, &nested, [&] {
                keptInside = !opened.isNull();
                nested.quit();
            });
        });
        nested.exec();
        QTimer::singleShot(500, application, [&] {
            deletedAfterwards = opened.isNull();
            QCoreApplication::exit();
        });
    });
    QApplication::exec();
    EXPECT_TRUE(keptInside);
    EXPECT_TRUE(deletedAfterwards);
}

TEST_F(QtMainLoop, ALoadInsideANestedLoopDoesNotMakeThatLoopTheHosts) {
    // For instance from a dialog of another module, over the host's own loop.
    QEventLoop dialog;
    QTimer::singleShot(0, &dialog, [&] {
        load();
        dialog.quit();
    });
    dialog.exec();
    openPanel();
    const QPointer<QWidget> opened = view();
    bool kept = false;
    QEventLoop nested;
    QTimer::singleShot(0, &nested, [&] {
        unload();
        QTimer::singleShot(300, &nested, [&] {
            kept = !opened.isNull();
            nested.quit();
        });
    });
    nested.exec();
    EXPECT_TRUE(kept);
    EXPECT_TRUE(TestProgram::pumpUntil([&opened] { return opened.isNull(); }));
}

TEST_F(EndingQt, AnApplicationThatEndsBeforeTheUnloadTakesThePanelAndTheThreadsAlong) {
    std::unique_ptr<QApplication> foreign(makeForeignApplication());
    load();
    const QPointer<QWidget> view = dynamic_cast<ZR_ZentriPaletteView*>(zentriChatView());
    const QPointer<QThread> threads[] = {g_zentriChatThread, g_zentriHistoryThread};
    ASSERT_NE(view, nullptr);
    foreign.reset();
    EXPECT_TRUE(view.isNull());
    EXPECT_TRUE(threads[0].isNull());
    EXPECT_TRUE(threads[1].isNull());
    EXPECT_EQ(g_zentriChatThread, nullptr);
    EXPECT_EQ(g_zentriHistoryThread, nullptr);
    EXPECT_EQ(g_zentriPaletteSet, nullptr);
    EXPECT_EQ(zentriPaletteAccess(), nullptr);
    // What the host still calls is safe.
    EXPECT_TRUE(runHostCommand(_T("KQ_AICHAT")));
    arxFireSysVarChanged(_T("COLORTHEME"), true);
    EXPECT_FALSE(ZR_AiChatManager::instance().canCommunicate());
    EXPECT_EQ(unload(), AcRx::kRetOK);
}

TEST_F(EndingQt, ASecondLoadAfterItsEndWorks) {
    {
        const std::unique_ptr<QApplication> foreign(makeForeignApplication());
        load();
        // So that the manager exists.
        EXPECT_FALSE(ZR_AiChatManager::instance().canCommunicate());
    }
    unload();
    EXPECT_EQ(load(), AcRx::kRetOK);
    ASSERT_NE(g_zentriChatThread, nullptr);
    ASSERT_NE(g_zentriHistoryThread, nullptr);
    EXPECT_EQ(g_zentriChatThread->parent(), qApp);
    {
        FakeHttpServer service;
        serveEmptyHistory(service);
        EXPECT_TRUE(runHostCommand(_T("KQ_AICHAT")));
        EXPECT_TRUE(TestProgram::pumpUntil(
            [this] { return program.host().printedText().Find(_T("\nZentri:用户数据初始化完成")) >= 0; }));
        EXPECT_TRUE(g_zentriPaletteSet->IsVisible());
        unload();
        g_zentriHistoryThread->wait();
    }
}

TEST_F(EndingQt, AnApplicationThatEndsWhileTheHistoryIsReadStopsTheReader) {
    std::unique_ptr<QApplication> foreign(makeForeignApplication());
    {
        // Accepts the request and never replies.
        FakeHttpServer service;
        qputenv("ZR_ZENTRI_SERVICE", service.address().toLatin1());
        load();
        EXPECT_TRUE(runHostCommand(_T("KQ_AICHAT")));
        ASSERT_TRUE(TestProgram::pumpUntil([&service] { return service.requestCount() == 1; }));
    }
    ASSERT_NE(g_zentriHistoryThread, nullptr);
    foreign.reset();
    EXPECT_EQ(g_zentriHistoryThread, nullptr);
    EXPECT_EQ(unload(), AcRx::kRetOK);
}

TEST_F(EndingQt, AnApplicationThatEndsAfterTheUnloadTakesTheHistoryReaderAlong) {
    {
        const std::unique_ptr<QApplication> foreign(makeForeignApplication());
        load();
        unload();
        EXPECT_NE(g_zentriHistoryThread, nullptr);
    }
    EXPECT_EQ(g_zentriHistoryThread, nullptr);
    EXPECT_EQ(load(), AcRx::kRetOK);
    EXPECT_NE(g_zentriHistoryThread, nullptr);
}

TEST_F(UnusableQt, WithoutWidgetsTheModuleRefusesToLoad) {
    int count = 0;
    const QCoreApplication application(count, nullptr);
    expectRefusal();
}

TEST_F(UnusableQt, OnAnotherThreadTheModuleRefusesToLoad) {
    QApplication* const application = makeForeignApplication();
    QThread other;
    application->moveToThread(&other);
    expectRefusal();
}
