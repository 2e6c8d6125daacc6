#include <accmd.h>
#include <aced.h>

#include <QApplication>
#include <QPointer>
#include <functional>
#include <stdexcept>
#include <utility>

#include "chat/ZR_AiChatModuleState.h"
#include "host/ZR_ZentriModule.h"
#include "host/ZR_ZentriPalette.h"
#include "host/ZR_ZentriPaletteSet.h"
#include "host/core/ZR_ZentriAccount.h"
#include "host/core/ZR_ZentriPaletteAccess.h"
#include "tests/host/ModuleFixture.h"
#include "view/ZR_ZentriPaletteView.h"

// The module is unloaded, or loaded, from within a call that it makes of the host: the host's message loop
// may run in any of them.

namespace {

/// Calls back once, when a window with this title is about to be created.
class OnWindowCreation {
public:
    OnWindowCreation(CString title, std::function<void()> action) {
        s_title = std::move(title);
        s_action = std::move(action);
        m_hook = SetWindowsHookExW(WH_CBT, &OnWindowCreation::filter, nullptr, GetCurrentThreadId());
    }
    ~OnWindowCreation() { UnhookWindowsHookEx(m_hook); }
    OnWindowCreation(const OnWindowCreation&) = delete;
    OnWindowCreation& operator=(const OnWindowCreation&) = delete;

    bool called() const { return s_action == nullptr; }

private:
    static LRESULT CALLBACK filter(int code, WPARAM window, LPARAM parameter) {
        const auto* const creation = reinterpret_cast<CBT_CREATEWNDW*>(parameter);
        if (code == HCBT_CREATEWND && s_action && creation->lpcs->lpszName != nullptr &&
            s_title == creation->lpcs->lpszName) {
            std::exchange(s_action, nullptr)();
        }
        return CallNextHookEx(nullptr, code, window, parameter);
    }

    static CString s_title;
    static std::function<void()> s_action;
    HHOOK m_hook;
};

CString OnWindowCreation::s_title;
std::function<void()> OnWindowCreation::s_action;

/// Calls back once, when the palette set is shown or hidden.
class OnShowWindow {
public:
    explicit OnShowWindow(std::function<void()> action) {
        s_action = std::move(action);
        m_hook = SetWindowsHookExW(WH_CALLWNDPROC, &OnShowWindow::filter, nullptr, GetCurrentThreadId());
    }
    ~OnShowWindow() { UnhookWindowsHookEx(m_hook); }
    OnShowWindow(const OnShowWindow&) = delete;
    OnShowWindow& operator=(const OnShowWindow&) = delete;

    bool called() const { return s_action == nullptr; }

private:
    static LRESULT CALLBACK filter(int code, WPARAM wParam, LPARAM parameter) {
        const auto* const call = reinterpret_cast<CWPSTRUCT*>(parameter);
        if (code == HC_ACTION && s_action && call->message == WM_SHOWWINDOW &&
            dynamic_cast<ZR_ZentriPaletteSet*>(CWnd::FromHandlePermanent(call->hwnd)) != nullptr) {
            std::exchange(s_action, nullptr)();
        }
        return CallNextHookEx(nullptr, code, wParam, parameter);
    }

    static std::function<void()> s_action;
    HHOOK m_hook;
};

std::function<void()> OnShowWindow::s_action;

/// While it exists, embedding the view fails: showing it throws.
class FailingEmbedding : public QObject {
public:
    FailingEmbedding() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Show && qobject_cast<ZR_ZentriPaletteView*>(object) != nullptr) {
            throw std::runtime_error("no room");
        }
        return false;
    }
};

/// Calls back when the palette set is docked.
class DockingHost : public FakeArxHost {
public:
    bool dockState(const CString& toolId, ArxDockState& state) override {
        if (onDocking) {
            std::exchange(onDocking, nullptr)();
        }
        return FakeArxHost::dockState(toolId, state);
    }

    std::function<void()> onDocking;
};

class AppReentrancy : public ModuleFixture {
protected:
    /// Nothing of the module is left in the host, and it can be loaded again.
    void expectUnloaded() {
        EXPECT_EQ(g_zentriPaletteSet, nullptr);
        EXPECT_EQ(g_zentriChatThread, nullptr);
        EXPECT_EQ(acedRegCmds->lookupCmd(_T("KQ_AICHAT"), false), nullptr);
        EXPECT_EQ(arxEditorReactorCount(), 0);
        EXPECT_FALSE(zentriHasAccess());
        EXPECT_TRUE(TestProgram::pumpUntil([this] { return paletteSetsInFrame() == 0; }, 2000));
        EXPECT_EQ(zentriPaletteAccess(), nullptr);

        testApp().whileBoxOpen = nullptr;
        FakeAccount::whileGettingToken = nullptr;
        program.host().clearPrinted();
        EXPECT_EQ(load(), AcRx::kRetOK);
        openPanel();
        EXPECT_EQ(paletteSetsInFrame(), 1);
        EXPECT_EQ(arxEditorReactorCount(), 2);
    }
};

}  // namespace

TEST_F(AppReentrancy, UnloadingBehindTheEmbeddingErrorOfTheOpenCommand) {
    load();
    FakeAccount::token = _T("token");
    {
        view()->hide();
        const FailingEmbedding failing;
        testApp().whileBoxOpen = [this] { unload(); };
        EXPECT_TRUE(run(_T("KQ_AICHAT")));
        EXPECT_EQ(testApp().boxes.size(), 1U);
    }
    expectUnloaded();
}

TEST_F(AppReentrancy, UnloadingBehindTheEmbeddingErrorOfTheInitialisation) {
    {
        const FailingEmbedding failing;
        testApp().whileBoxOpen = [this] { unload(); };
        EXPECT_EQ(load(), AcRx::kRetOK);
        EXPECT_EQ(testApp().boxes.size(), 1U);
    }
    expectUnloaded();
}

TEST_F(AppReentrancy, UnloadingWhileTheSetOrThePaletteIsCreated) {
    for (const ACHAR* const title : {_T("朔禾CAD Zentri"), _T("朔禾 Zentri")}) {
        {
            const OnWindowCreation creation(title, [this] { unload(); });
            EXPECT_EQ(load(), AcRx::kRetOK);
            EXPECT_TRUE(creation.called());
        }
        expectUnloaded();
        unload();
    }
}

TEST_F(AppReentrancy, LoadingAgainWhileTheSetOrThePaletteIsCreated) {
    for (const ACHAR* const title : {_T("朔禾CAD Zentri"), _T("朔禾 Zentri")}) {
        const OnWindowCreation creation(title, [this] { load(); });
        EXPECT_EQ(load(), AcRx::kRetOK);
        EXPECT_TRUE(creation.called());
        EXPECT_EQ(paletteSetsInFrame(), 1);
        EXPECT_EQ(arxEditorReactorCount(), 2);
        ASSERT_NE(g_zentriPaletteSet, nullptr);
        EXPECT_EQ(g_zentriPaletteSet->GetPaletteCount(), 1);
        unload();
        TestProgram::settle();
    }
}

TEST_F(AppReentrancy, ReloadingWhileTheSetOrThePaletteIsCreated) {
    for (const ACHAR* const title : {_T("朔禾CAD Zentri"), _T("朔禾 Zentri")}) {
        const OnWindowCreation creation(title, [this] {
            unload();
            load();
        });
        EXPECT_EQ(load(), AcRx::kRetOK);
        EXPECT_TRUE(creation.called());
        EXPECT_TRUE(TestProgram::pumpUntil([this] { return paletteSetsInFrame() == 1; }, 2000));
        EXPECT_EQ(arxEditorReactorCount(), 2);
        ASSERT_NE(g_zentriPaletteSet, nullptr);
        EXPECT_EQ(g_zentriPaletteSet->GetPaletteCount(), 1);
        EXPECT_EQ(g_zentriPaletteSet->GetPalette(0), palette());
        unload();
        TestProgram::settle();
    }
}

TEST_F(AppReentrancy, UnloadingWhileTheSetIsDocked) {
    {
        DockingHost docking;
        docking.setFrame(program.frame());
        bool called = false;
        docking.onDocking = [&] {
            called = true;
            unload();
        };
        EXPECT_EQ(load(), AcRx::kRetOK);
        EXPECT_TRUE(called);
        EXPECT_EQ(g_zentriPaletteSet, nullptr);
    }
    setArxHost(&program.host());
    expectUnloaded();
}

TEST_F(AppReentrancy, UnloadingWhileThePanelIsShownOrHidden) {
    load();
    openPanel();
    for (const bool shown : {true, false}) {
        if (!shown) {
            run(_T("KQ_AICHAT"));
        }
        ASSERT_EQ(g_zentriPaletteSet->IsVisible() != FALSE, shown);
        {
            const OnShowWindow showing([this] { unload(); });
            EXPECT_TRUE(run(_T("KQ_AICHAT")));
            EXPECT_TRUE(showing.called());
        }
        expectUnloaded();
    }
}

TEST_F(AppReentrancy, UnloadingWhileTheAccountServiceIsAskedForTheToken) {
    load();
    FakeAccount::token = _T("token");
    FakeAccount::whileGettingToken = [this] { unload(); };
    EXPECT_TRUE(run(_T("KQ_AICHAT")));
    EXPECT_EQ(FakeAccount::signInCalls, 0);
    EXPECT_EQ(service.requestCount(), 0);
    expectUnloaded();
}

TEST_F(AppReentrancy, TheFrameClosedBehindTheEmbeddingError) {
    load();
    openPanel();
    view()->hide();
    const FailingEmbedding failing;
    testApp().whileBoxOpen = [] { g_zentriPaletteSet->DestroyWindow(); };
    palette()->MoveWindow(0, 26, 444, 333);
    EXPECT_EQ(testApp().boxes.size(), 1U);
    EXPECT_EQ(palette()->GetSafeHwnd(), nullptr);
    unload();
    EXPECT_EQ(zentriPaletteAccess(), nullptr);
}
