#include <gtest/gtest.h>

#include <QApplication>
#include <QObject>
#include <QStringList>
#include <QWidget>
#include <utility>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatModuleState.h"
#include "chat/ZR_AiChatReadHistoricalChatThread.h"
#include "host/CZR_ZentriApp.h"
#include "host/ZR_ZentriModule.h"
#include "host/ZR_ZentriPalette.h"
#include "host/ZR_ZentriPaletteSet.h"
#include "host/ZR_ZentriSysReactor.h"
#include "host/core/ZR_ZentriCmdRecorder.h"
#include "host/core/ZR_ZentriPaletteAccess.h"
#include "tests/host/HostRecorder.h"
#include "tests/support/TestProgram.h"
#include "view/ZR_ZentriPaletteView.h"

namespace {

const HINSTANCE kModule = reinterpret_cast<HINSTANCE>(0x1000);

/// Until the hook is removed, no window with the palette's name can be created.
HHOOK refusePaletteWindows() {
    return SetWindowsHookExW(
        WH_CBT,
        [](int code, WPARAM window, LPARAM parameter) -> LRESULT {
            const auto* const creation = reinterpret_cast<CBT_CREATEWNDW*>(parameter);
            if (code == HCBT_CREATEWND && creation->lpcs->lpszName != nullptr &&
                CString(creation->lpcs->lpszName) == _T("朔禾 Zentri")) {
                return 1;
            }
            return CallNextHookEx(nullptr, code, window, parameter);
        },
        nullptr, GetCurrentThreadId());
}

/// Reports its calls.
class ReportingHost : public FakeArxHost {
public:
    explicit ReportingHost(std::function<void(const QString&)> report) : m_report(std::move(report)) {}

    void print(const CString& text) override {
        m_report(QStringLiteral("print"));
        FakeArxHost::print(text);
    }
    AcRx::AppRetCode baseInitialised() override {
        m_report(QStringLiteral("base initialised"));
        return baseResult;
    }
    void baseUnloaded() override { m_report(QStringLiteral("base unloaded")); }
    CMDIFrameWnd* frame() override {
        m_report(QStringLiteral("frame"));
        return FakeArxHost::frame();
    }
    bool dockState(const CString& title, ArxDockState& state) override {
        m_report(QStringLiteral("dockState"));
        return FakeArxHost::dockState(title, state);
    }

    AcRx::AppRetCode baseResult = AcRx::kRetOK;

private:
    std::function<void(const QString&)> m_report;
};

/// Loads and unloads the module in a process without a Qt application, and records the module's calls of the
/// host together with the objects that exist at each.
class AppOrder : public testing::Test {
protected:
    AppOrder() : host([this](const QString& call) { note(call); }) {
        host.setFrame(program.frame());
        recorder.onCall = [this](const QString& call) { note(call); };
        theArxDLL.AttachInstance(kModule);
    }
    ~AppOrder() override { theArxDLL.DetachInstance(); }

    void note(const QString& what) {
        QString line = what + QLatin1Char(':');
        if (QCoreApplication::instance() != nullptr) {
            line += QStringLiteral(" Qt");
        }
        if (g_zentriChatThread != nullptr) {
            line += QStringLiteral(" chat");
        }
        if (g_zentriHistoryThread != nullptr) {
            line += QStringLiteral(" history");
        }
        if (g_zentriPaletteSet != nullptr) {
            line += QStringLiteral(" set");
        }
        if (zentriPaletteAccess() != nullptr) {
            line += QStringLiteral(" palette");
        }
        if (g_zentriCmdRecorder != nullptr) {
            line += QStringLiteral(" recorder");
        }
        if (g_zentriSysReactor != nullptr) {
            line += QStringLiteral(" sysReactor");
        }
        steps << line;
        resourceHandles.push_back(AfxGetResourceHandle());
    }

    TestProgram program;
    ReportingHost host;
    HostRecorder recorder;
    CZR_ZentriApp app;
    QStringList steps;
    std::vector<HINSTANCE> resourceHandles;
};

}  // namespace

TEST_F(AppOrder, LoadingCreatesTheObjectsInOrder) {
    const HINSTANCE before = AfxGetResourceHandle();
    app.On_kInitAppMsg(&app);
    EXPECT_EQ(steps,
              (QStringList{QStringLiteral("base initialised:"),
                           // The log, which has no folder here: the module's file is not loaded.
                           QStringLiteral("print:"), QStringLiteral("addCommand KQ_AICHAT:"),
                           QStringLiteral("addCommand _refreshChatView:"),
                           // The fonts are not linked into this test.
                           QStringLiteral("print: Qt"), QStringLiteral("frame: Qt chat history"),
                           QStringLiteral("dockState: Qt chat history"),
                           QStringLiteral("addReactor: Qt chat history set palette recorder"),
                           QStringLiteral("addReactor: Qt chat history set palette recorder sysReactor")}));
    EXPECT_EQ(recorder.addedReactors,
              (std::vector<AcEditorReactor*>{g_zentriCmdRecorder, g_zentriSysReactor}));
    // The module's resource handle is the current one from step 2 on.
    ASSERT_EQ(resourceHandles.size(), 9U);
    EXPECT_EQ(resourceHandles[0], before);
    EXPECT_EQ(std::vector<HINSTANCE>(resourceHandles.begin() + 1, resourceHandles.end()),
              std::vector<HINSTANCE>(8, kModule));
    EXPECT_EQ(AfxGetResourceHandle(), before);
    app.On_kUnloadAppMsg(&app);
}

TEST_F(AppOrder, UnloadingDestroysThemInReverseOrder) {
    app.On_kInitAppMsg(&app);
    QObject::connect(dynamic_cast<ZR_ZentriPaletteView*>(zentriChatView()), &QObject::destroyed, qApp,
                     [this] { note(QStringLiteral("view deleted")); });
    QObject::connect(g_zentriChatThread, &QObject::destroyed, qApp,
                     [this] { note(QStringLiteral("thread deleted")); });
    QObject::connect(g_zentriHistoryThread, &QObject::destroyed, qApp,
                     [] { ADD_FAILURE() << "The history reader belongs to the Qt application."; });
    steps.clear();
    app.On_kUnloadAppMsg(&app);
    ASSERT_EQ(steps.size(), 6);
    EXPECT_EQ(steps[0], QStringLiteral("base unloaded: Qt chat history set palette recorder sysReactor"));
    EXPECT_EQ(steps[1],
              QStringLiteral("removeGroup ZR_ZENTRI: Qt chat history set palette recorder sysReactor"));
    EXPECT_EQ(steps[2], QStringLiteral("removeReactor: Qt chat history set palette recorder sysReactor"));
    EXPECT_EQ(steps[3], QStringLiteral("removeReactor: Qt chat history set palette recorder sysReactor"));
    EXPECT_EQ(recorder.removedReactors,
              (std::vector<AcEditorReactor*>{g_zentriCmdRecorder, g_zentriSysReactor}));
    EXPECT_TRUE(steps[4].startsWith(QStringLiteral("view deleted: Qt chat history")));
    EXPECT_TRUE(steps[5].startsWith(QStringLiteral("thread deleted")));
    QObject::disconnect(g_zentriHistoryThread, nullptr, qApp, nullptr);
}

TEST_F(AppOrder, LoadingReturnsTheBaseClassesResult) {
    for (const AcRx::AppRetCode result : {AcRx::kRetOK, AcRx::kRetError}) {
        host.baseResult = result;
        EXPECT_EQ(app.On_kInitAppMsg(&app), result);
        EXPECT_EQ(app.On_kUnloadAppMsg(&app), AcRx::kRetOK);
    }
}

TEST_F(AppOrder, TheCommandsHaveNoContextNoFunctionCodeAndNoResources) {
    app.On_kInitAppMsg(&app);
    ASSERT_EQ(recorder.commands.size(), 2U);
    for (const HostRecorder::AddedCommand& command : recorder.commands) {
        EXPECT_TRUE(command.group == _T("ZR_ZENTRI"));
        EXPECT_TRUE(command.localName == command.globalName);
        EXPECT_EQ(command.uiContext, nullptr);
        EXPECT_EQ(command.functionCode, -1);
        EXPECT_FALSE(command.hasResources);
    }
    EXPECT_EQ(recorder.commands[0].flags, 0);
    EXPECT_EQ(recorder.commands[1].flags, 0x00800000);
    app.On_kUnloadAppMsg(&app);
}

TEST_F(AppOrder, AReactorIsAttachedOncePerLoad) {
    app.On_kInitAppMsg(&app);
    app.On_kInitAppMsg(&app);
    EXPECT_EQ(recorder.addedReactors.size(), 2U);
    app.On_kUnloadAppMsg(&app);
    // After unloading they are attached again.
    app.On_kInitAppMsg(&app);
    EXPECT_EQ(recorder.addedReactors.size(), 4U);
    app.On_kUnloadAppMsg(&app);
}

TEST_F(AppOrder, APaletteWhoseDefaultCreationFailsIsNotCreated) {
    // MFC makes a class for these attributes unless there is one of its name; its window procedure does the
    // default handling.
    const CString name(AfxRegisterWndClass(CS_DBLCLKS, LoadCursorW(nullptr, IDC_ARROW)));
    WNDCLASSW windowClass = {};
    ASSERT_TRUE(GetClassInfoW(AfxGetInstanceHandle(), name, &windowClass));
    ASSERT_TRUE(UnregisterClassW(name, AfxGetInstanceHandle()));
    windowClass.lpszClassName = name;
    windowClass.lpfnWndProc = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
        const auto* const creation = reinterpret_cast<CREATESTRUCTW*>(lParam);
        if (message == WM_CREATE && CString(creation->lpszName) == _T("朔禾 Zentri")) {
            return -1;
        }
        return DefWindowProcW(window, message, wParam, lParam);
    };
    ASSERT_NE(RegisterClassW(&windowClass), 0);
    EXPECT_EQ(app.On_kInitAppMsg(&app), AcRx::kRetOK);
    ASSERT_NE(g_zentriPaletteSet, nullptr);
    EXPECT_EQ(g_zentriPaletteSet->GetPaletteCount(), 0);
    EXPECT_EQ(zentriPaletteAccess(), nullptr);
    app.On_kUnloadAppMsg(&app);
}

TEST_F(AppOrder, APaletteWindowThatCannotBeCreatedLeavesTheSetEmpty) {
    const HHOOK hook = refusePaletteWindows();
    EXPECT_EQ(app.On_kInitAppMsg(&app), AcRx::kRetOK);
    UnhookWindowsHookEx(hook);
    ASSERT_NE(g_zentriPaletteSet, nullptr);
    EXPECT_EQ(g_zentriPaletteSet->GetPaletteCount(), 0);
    EXPECT_EQ(zentriPaletteAccess(), nullptr);
    EXPECT_EQ(zentriChatView(), nullptr);
    EXPECT_EQ(recorder.addedReactors.size(), 2U);
    EXPECT_EQ(app.On_kUnloadAppMsg(&app), AcRx::kRetOK);
}

TEST_F(AppOrder, ThePaletteOfAnEarlierLoadIsNotUsedWithANewSet) {
    app.On_kInitAppMsg(&app);
    app.On_kUnloadAppMsg(&app);
    const HHOOK hook = refusePaletteWindows();
    app.On_kInitAppMsg(&app);
    UnhookWindowsHookEx(hook);
    ASSERT_NE(g_zentriPaletteSet, nullptr);
    EXPECT_EQ(zentriPaletteAccess(), nullptr);
    arxFireSysVarChanged(_T("COLORTHEME"), true);
    app.On_kUnloadAppMsg(&app);
}
