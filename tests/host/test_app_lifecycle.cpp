#include <aced.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPointer>
#include <QSemaphore>
#include <QTextEdit>
#include <QTimer>
#include <map>
#include <stdexcept>
#include <string>
#include <tuple>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatManager.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "host/ZR_ZentriModule.h"
#include "host/ZR_ZentriPalette.h"
#include "host/ZR_ZentriPaletteSet.h"
#include "host/ZR_ZentriSysReactor.h"
#include "host/core/ZR_ZentriAccount.h"
#include "host/core/ZR_ZentriCmdRecorder.h"
#include "host/core/ZR_ZentriHostLoop.h"
#include "host/core/ZR_ZentriModalScope.h"
#include "host/core/ZR_ZentriPaletteAccess.h"
#include "host/qtmfc/QMfcApp.h"
#include "tests/host/ModuleFixture.h"
#include "view/ZR_ZentriPaletteView.h"

namespace {

class AppLifecycle : public ModuleFixture {};

/// Unloading where the SDK's palette set deletes its palettes or does not, and destroys its window or does
/// not.
class AppUnload : public AppLifecycle, public testing::WithParamInterface<std::tuple<bool, bool>> {
protected:
    AppUnload() {
        arxVariant().setDeletesPalettes = std::get<0>(GetParam());
        arxVariant().setDestroysWindow = std::get<1>(GetParam());
    }
};

/// Records, while it exists, the class that each of two windows has when it is destroyed.
class DestructionWatch {
public:
    DestructionWatch(HWND first, HWND second) {
        s_classes = {{first, CString()}, {second, CString()}};
        m_hook = SetWindowsHookExW(WH_CALLWNDPROC, &watch, nullptr, GetCurrentThreadId());
    }
    ~DestructionWatch() { UnhookWindowsHookEx(m_hook); }
    DestructionWatch(const DestructionWatch&) = delete;
    DestructionWatch& operator=(const DestructionWatch&) = delete;

    /// Empty for a window that has not been destroyed.
    static CString classOf(HWND window) { return s_classes[window]; }

private:
    static LRESULT CALLBACK watch(int code, WPARAM wParam, LPARAM lParam) {
        const auto* const call = reinterpret_cast<const CWPSTRUCT*>(lParam);
        const auto found = s_classes.find(call->hwnd);
        if (call->message == WM_DESTROY && found != s_classes.end()) {
            found->second =
                CString(CWnd::FromHandlePermanent(call->hwnd)->GetRuntimeClass()->m_lpszClassName);
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    static std::map<HWND, CString> s_classes;
    HHOOK m_hook;
};
std::map<HWND, CString> DestructionWatch::s_classes;

/// A run that quit() does not end.
class StuckThread : public ZR_AiChatCSThread {
public:
    using ZR_AiChatCSThread::ZR_AiChatCSThread;
    QSemaphore release;

protected:
    void run() override { release.acquire(); }
};

/// Removes an entry from the host's registry while it exists.
class WithoutEntry {
public:
    explicit WithoutEntry(const ACHAR* key) : m_key(key), m_object(acrxSysRegistry()->remove(key)) {}
    ~WithoutEntry() { acrxSysRegistry()->atPut(m_key, m_object); }
    WithoutEntry(const WithoutEntry&) = delete;
    WithoutEntry& operator=(const WithoutEntry&) = delete;

    AcRxObject* object() const { return m_object; }

private:
    const ACHAR* m_key;
    AcRxObject* m_object;
};

}  // namespace

TEST_F(AppLifecycle, LoadingCreatesEveryObject) {
    EXPECT_EQ(load(), AcRx::kRetOK);
    EXPECT_NE(qobject_cast<QMfcApp*>(QCoreApplication::instance()), nullptr);
    ASSERT_NE(g_zentriChatThread, nullptr);
    EXPECT_EQ(g_zentriChatThread->parent(), qApp);
    ASSERT_NE(g_zentriHistoryThread, nullptr);
    EXPECT_EQ(g_zentriHistoryThread->parent(), qApp);
    ASSERT_NE(g_zentriPaletteSet, nullptr);
    EXPECT_NE(palette(), nullptr);
    EXPECT_NE(g_zentriCmdRecorder, nullptr);
    EXPECT_NE(g_zentriSysReactor, nullptr);
    EXPECT_NE(view(), nullptr);
    EXPECT_NE(acedRegCmds->lookupCmd(_T("KQ_AICHAT"), false), nullptr);
    EXPECT_NE(acedRegCmds->lookupCmd(_T("_refreshChatView"), false), nullptr);
}

TEST_F(AppLifecycle, ThePanelIsDockedLeftAndHidden) {
    load();
    EXPECT_FALSE(g_zentriPaletteSet->IsVisible());
    EXPECT_TRUE(g_zentriPaletteSet->GetName() == _T("朔禾CAD Zentri"));
    EXPECT_EQ(g_zentriPaletteSet->RequestedStyle(), 0x00400000U);
    EXPECT_EQ(g_zentriPaletteSet->GetPaletteSetStyle(), 0x2EU);
    EXPECT_EQ(g_zentriPaletteSet->m_nDockBarID, static_cast<UINT>(AFX_IDW_DOCKBAR_LEFT));
    EXPECT_EQ(g_zentriPaletteSet->m_sizeDocked, CSize(700, 500));
    EXPECT_EQ(g_zentriPaletteSet->m_dwDockStyle, 0x1004U);
    EXPECT_EQ(g_zentriPaletteSet->GetDockingFrame(), program.frame());
    EXPECT_EQ(g_zentriPaletteSet->GetPaletteCount(), 1);
    ASSERT_NE(palette(), nullptr);
    EXPECT_EQ(g_zentriPaletteSet->GetActivePalette(), palette());
    EXPECT_TRUE(palette()->GetName() == _T("朔禾 Zentri"));
    EXPECT_EQ(palette()->GetPaletteSet(), g_zentriPaletteSet);
    EXPECT_EQ(palette()->GetPaletteStyle(), 0U);
    EXPECT_EQ(palette()->GetStyle() & 0x50000000U, 0x50000000U);
}

TEST_F(AppLifecycle, TheHostsDockingStateIsRestored) {
    // Hosts of users have stored the docking state under this id.
    program.host().setDockState(_T("{6F2A9D84-3B1C-4E57-9C0E-815D2BF746A3}"),
                                ArxDockState{AFX_IDW_DOCKBAR_RIGHT, 420});
    load();
    EXPECT_EQ(g_zentriPaletteSet->m_nDockBarID, static_cast<UINT>(AFX_IDW_DOCKBAR_RIGHT));
    EXPECT_EQ(g_zentriPaletteSet->m_sizeDocked.cx, 420);
}

TEST_F(AppLifecycle, ASecondInitialisationCreatesNothingTwice) {
    load();
    const auto* const paletteSet = g_zentriPaletteSet;
    const auto* const firstPalette = palette();
    const auto* const recorder = g_zentriCmdRecorder;
    const auto* const reactor = g_zentriSysReactor;
    const auto* const chatThread = g_zentriChatThread;
    const auto* const historyThread = g_zentriHistoryThread;
    EXPECT_EQ(load(), AcRx::kRetOK);
    EXPECT_EQ(g_zentriPaletteSet, paletteSet);
    EXPECT_EQ(palette(), firstPalette);
    EXPECT_EQ(g_zentriCmdRecorder, recorder);
    EXPECT_EQ(g_zentriSysReactor, reactor);
    EXPECT_EQ(g_zentriChatThread, chatThread);
    EXPECT_EQ(g_zentriHistoryThread, historyThread);
    EXPECT_EQ(QCoreApplication::instance(), application);
    EXPECT_EQ(paletteSetsInFrame(), 1);
    EXPECT_EQ(arxEditorReactorCount(), 2);
    EXPECT_EQ(paletteSet->GetPaletteCount(), 1);
}

TEST_F(AppLifecycle, ThePaletteIsCreatedOnlyTogetherWithANewPaletteSet) {
    g_zentriPaletteSet = new ZR_ZentriPaletteSet;
    ASSERT_TRUE(g_zentriPaletteSet->Create(_T("without a palette"), WS_DLGFRAME, CRect(0, 0, 300, 300),
                                           program.frame(), PSS_CLOSE_BUTTON));
    load();
    EXPECT_EQ(zentriPaletteAccess(), nullptr);
    EXPECT_EQ(zentriChatView(), nullptr);
    // Everything that would use the palette works without it.
    arxFireSysVarChanged(_T("COLORTHEME"), true);
    FakeAccount::token = _T("token");
    EXPECT_TRUE(run(_T("KQ_AICHAT")));
    EXPECT_TRUE(g_zentriPaletteSet->IsVisible());
}

TEST_F(AppLifecycle, AFontThatDoesNotLoadIsReportedAndTheModuleStaysUsable) {
    // The fonts are not linked into this test.
    load();
    EXPECT_GE(program.host().printedText().Find(_T("\nZR_Zentri:Load font failed")), 0);
    openPanel();
    EXPECT_TRUE(g_zentriPaletteSet->IsVisible());
}

TEST_F(AppLifecycle, TheResourceHandleIsRestored) {
    const HINSTANCE before = AfxGetResourceHandle();
    theArxDLL.AttachInstance(reinterpret_cast<HINSTANCE>(0x1000));
    load();
    EXPECT_EQ(AfxGetResourceHandle(), before);
    theArxDLL.DetachInstance();
}

TEST(AppFailure, AnExceptionRestoresTheResourceHandleAndPropagates) {
    class ThrowingHost : public FakeArxHost {
    public:
        CMDIFrameWnd* frame() override { throw std::runtime_error("no frame"); }
    };
    ThrowingHost host;
    const HINSTANCE before = AfxGetResourceHandle();
    theArxDLL.AttachInstance(reinterpret_cast<HINSTANCE>(0x1000));
    CZR_ZentriApp app;
    EXPECT_THROW(app.On_kInitAppMsg(&app), std::runtime_error);
    EXPECT_EQ(AfxGetResourceHandle(), before);
    EXPECT_EQ(g_zentriPaletteSet, nullptr);
    theArxDLL.DetachInstance();
    app.On_kUnloadAppMsg(&app);
}

TEST(AppFailure, AHostWithoutAFrameGetsNoPanel) {
    FakeArxHost host;
    CZR_ZentriApp app;
    EXPECT_EQ(app.On_kInitAppMsg(&app), AcRx::kRetOK);
    EXPECT_EQ(g_zentriPaletteSet, nullptr);
    EXPECT_EQ(zentriChatView(), nullptr);
    // The commands work without one.
    setZentriSignedIn(true);
    setZentriAccessToken(_T("token"));
    acedRegCmds->lookupCmd(_T("KQ_AICHAT"), false)->functionAddr()();
    acedRegCmds->lookupCmd(_T("_refreshChatView"), false)->functionAddr()();
    EXPECT_EQ(g_zentriPaletteSet, nullptr);
    app.On_kUnloadAppMsg(&app);
}

TEST_F(AppLifecycle, WithoutAnEditorTheReactorsAreNotAttached) {
    const WithoutEntry editor(_T("AcEditor"));
    EXPECT_EQ(load(), AcRx::kRetOK);
    EXPECT_EQ(arxEditorReactorCount(), 0);
    EXPECT_NE(g_zentriCmdRecorder, nullptr);
    EXPECT_EQ(unload(), AcRx::kRetOK);
}

TEST_F(AppLifecycle, AnotherObjectInPlaceOfTheEditorIsNotUsed) {
    const WithoutEntry editor(_T("AcEditor"));
    acrxSysRegistry()->atPut(_T("AcEditor"), acedRegCmds);
    EXPECT_EQ(load(), AcRx::kRetOK);
    EXPECT_EQ(arxEditorReactorCount(), 0);
    EXPECT_EQ(unload(), AcRx::kRetOK);
}

TEST_P(AppUnload, UnloadingRemovesEverythingFromTheHost) {
    load();
    openPanel();
    EXPECT_EQ(unload(), AcRx::kRetOK);
    EXPECT_EQ(acedRegCmds->lookupCmd(_T("KQ_AICHAT"), false), nullptr);
    EXPECT_EQ(acedRegCmds->lookupCmd(_T("_refreshChatView"), false), nullptr);
    EXPECT_EQ(arxEditorReactorCount(), 0);
    EXPECT_EQ(g_zentriPaletteSet, nullptr);
    EXPECT_EQ(g_zentriChatThread, nullptr);
    EXPECT_EQ(paletteSetsInFrame(), 0);
    EXPECT_EQ(zentriPaletteAccess(), nullptr);
    EXPECT_EQ(zentriChatView(), nullptr);
    EXPECT_FALSE(zentriSignedIn());
    EXPECT_TRUE(zentriAccessToken().IsEmpty());
    // These are kept for the next load.
    EXPECT_NE(g_zentriHistoryThread, nullptr);
    EXPECT_NE(g_zentriCmdRecorder, nullptr);
    EXPECT_NE(g_zentriSysReactor, nullptr);
    EXPECT_NE(QCoreApplication::instance(), nullptr);
}

TEST_P(AppUnload, TheWindowsAreDestroyedWhileTheirObjectsAreWhole) {
    load();
    openPanel();
    const HWND set = g_zentriPaletteSet->m_hWnd;
    const HWND palette = g_zentriPaletteSet->GetPalette(0)->m_hWnd;
    const DestructionWatch watch(set, palette);
    unload();
    EXPECT_TRUE(DestructionWatch::classOf(set) == _T("ZR_ZentriPaletteSet"));
    EXPECT_TRUE(DestructionWatch::classOf(palette) == _T("ZR_ZentriPalette"));
    EXPECT_FALSE(IsWindow(set));
    EXPECT_FALSE(IsWindow(palette));
}

INSTANTIATE_TEST_SUITE_P(EveryFramework, AppUnload, testing::Combine(testing::Bool(), testing::Bool()),
                         [](const auto& test) {
                             return std::string(std::get<0>(test.param) ? "Deletes" : "Leaves") +
                                    "PalettesAnd" + (std::get<1>(test.param) ? "Destroys" : "Leaves") +
                                    "Window";
                         });

TEST_F(AppLifecycle, UnloadingWithoutALoadDoesNothing) {
    EXPECT_EQ(unload(), AcRx::kRetOK);
    load();
    EXPECT_EQ(unload(), AcRx::kRetOK);
    EXPECT_EQ(unload(), AcRx::kRetOK);
}

TEST_P(AppUnload, ReloadingCreatesANewWorkingPanel) {
    load();
    openPanel();
    auto* const recorder = g_zentriCmdRecorder;
    unload();
    program.host().clearPrinted();
    FakeAccount::tokenCalls = 0;

    EXPECT_EQ(load(), AcRx::kRetOK);
    ASSERT_NE(g_zentriPaletteSet, nullptr);
    EXPECT_EQ(paletteSetsInFrame(), 1);
    ASSERT_NE(palette(), nullptr);
    EXPECT_EQ(g_zentriPaletteSet->GetActivePalette(), palette());
    EXPECT_EQ(g_zentriCmdRecorder, recorder);
    EXPECT_EQ(arxEditorReactorCount(), 2);
    arxFireCommandWillStart(_T("LINE"));
    EXPECT_TRUE(g_zentriCmdRecorder->lastCommandName() == _T("LINE"));
    // The token is obtained again, and the sessions are read again.
    openPanel();
    EXPECT_EQ(FakeAccount::tokenCalls, 1);
    EXPECT_TRUE(g_zentriPaletteSet->IsVisible());
}

TEST_F(AppLifecycle, UnloadingWhileAnAnswerStreamsStopsTheThread) {
    load();
    openPanel();
    const int before = service.requestCount();
    inputBox()->setPlainText(QStringLiteral("怎样画圆"));
    view()->sendInput();
    // The session is created, then the question is posted.
    ASSERT_TRUE(TestProgram::pumpUntil([&] { return service.requestCount() == before + 2; }));
    service.sendHead(before + 1);
    service.sendBytes(before + 1, "data:first\n\n");
    ASSERT_TRUE(TestProgram::pumpUntil([] { return g_zentriCommunicating.load(); }));
    const QPointer<QThread> thread = g_zentriChatThread;
    ASSERT_TRUE(thread->isRunning());

    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(unload(), AcRx::kRetOK);
    EXPECT_LT(clock.elapsed(), 5000);
    EXPECT_TRUE(thread.isNull());
    EXPECT_EQ(g_zentriChatThread, nullptr);
    // Signals that the thread has still queued find no view and no bubble.
    TestProgram::settle();
    EXPECT_FALSE(g_zentriCommunicating.load());
}

TEST_F(AppLifecycle, AThreadThatDoesNotStopIsNotDeletedWhileItRuns) {
    load();
    delete g_zentriChatThread;
    auto* const stuck = new StuckThread(qApp);
    const QPointer<QThread> watched = stuck;
    g_zentriChatThread = stuck;
    stuck->start();
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(unload(), AcRx::kRetOK);
    EXPECT_GE(clock.elapsed(), 4900);
    EXPECT_EQ(g_zentriChatThread, nullptr);
    ASSERT_FALSE(watched.isNull());
    EXPECT_TRUE(watched->isRunning());
    // It deletes itself once it ends.
    stuck->release.release();
    EXPECT_TRUE(TestProgram::pumpUntil([&watched] { return watched.isNull(); }));
}

TEST_P(AppUnload, UnloadingInsideAQtEventLoopKeepsTheViewUntilItEnds) {
    load();
    openPanel();
    const QPointer<QWidget> openView = view();
    bool aliveWithinTheLoop = false;
    QEventLoop loop;
    QTimer::singleShot(0, &loop, [&] {
        EXPECT_EQ(unload(), AcRx::kRetOK);
        EXPECT_EQ(g_zentriPaletteSet, nullptr);
        QTimer::singleShot(300, &loop, [&] {
            aliveWithinTheLoop = !openView.isNull();
            loop.quit();
        });
    });
    loop.exec();
    EXPECT_TRUE(aliveWithinTheLoop);
    EXPECT_TRUE(TestProgram::pumpUntil([&openView] { return openView.isNull(); }));
    EXPECT_EQ(paletteSetsInFrame(), 0);
    EXPECT_EQ(zentriPaletteAccess(), nullptr);
}

TEST_P(AppUnload, UnloadingDuringAMessageBoxKeepsTheViewUntilItIsClosed) {
    load();
    openPanel();
    const QPointer<QWidget> openView = view();
    {
        const ZR_ZentriModalScope box;
        unload();
        TestProgram::settle();
        EXPECT_FALSE(openView.isNull());
        EXPECT_TRUE(zentriNestedLoopRuns());
        // Until then it is hidden.
        EXPECT_EQ(paletteSetsInFrame(), 1);
        EXPECT_FALSE(openView->isVisible() && IsWindowVisible(reinterpret_cast<HWND>(openView->winId())));
    }
    EXPECT_TRUE(TestProgram::pumpUntil([&openView] { return openView.isNull(); }));
}

TEST_P(AppUnload, APaletteOfAnEarlierLoadDoesNotUnregisterTheNewOne) {
    load();
    const QPointer<QWidget> oldView = view();
    {
        const ZR_ZentriModalScope box;
        unload();
        load();
    }
    const auto* const newPalette = palette();
    ASSERT_NE(newPalette, nullptr);
    ASSERT_NE(g_zentriPaletteSet, nullptr);
    ASSERT_TRUE(TestProgram::pumpUntil([&oldView] { return oldView.isNull(); }));
    EXPECT_EQ(palette(), newPalette);
    EXPECT_NE(view(), nullptr);
}
