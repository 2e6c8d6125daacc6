#include <AdUiPalette.h>
#include <windows.h>

#include <QApplication>
#include <QWidget>
#include <iostream>

#include "tests/host/ModuleLoadFixture.h"

// The view's place in the palette as the system reports it: window rectangles on the screen, not Qt's
// geometry. The tests also run at other resolutions, see test_host_resolution.cpp.

namespace {

constexpr DWORD kPaletteWindowStyle = WS_CHILD | WS_VISIBLE;

/// Sets the DPI awareness that the caller asks for before there is any window, and prints the resolution when
/// all tests have run.
class Host : public testing::Environment {
public:
    void SetUp() override {
        const QByteArray awareness = qgetenv("ZENTRI_TEST_AWARENESS");
        if (awareness == "system") {
            SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_SYSTEM_AWARE);
        } else if (awareness == "monitor") {
            SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE);
        }
    }
    void TearDown() override {
        const HDC screen = GetDC(nullptr);
        std::cout << "screen resolution: " << GetDeviceCaps(screen, LOGPIXELSX)
                  << " dpi\nQt's scale factor: " << s_scaleFactor << std::endl;
        ReleaseDC(nullptr, screen);
    }

    static double s_scaleFactor;
};

double Host::s_scaleFactor = 0;

testing::Environment* const g_host = testing::AddGlobalTestEnvironment(new Host);

class Embedding : public ModuleLoad {
protected:
    void SetUp() override {
        ASSERT_TRUE(load());
        ASSERT_NE(paletteSet(), nullptr);
        Host::s_scaleFactor = LoadedModule::view()->devicePixelRatioF();
    }

    CAdUiPaletteSet* paletteSet() const { return module.paletteSet(); }
    CAdUiPalette* palette() const { return paletteSet()->GetActivePalette(); }
    static HWND viewWindow() { return reinterpret_cast<HWND>(LoadedModule::view()->winId()); }

    /// Resizes the palette below the caption of its set.
    void sizePalette(int width, int height) const { palette()->MoveWindow(0, 26, width, height); }

    bool toggle() const { return LoadedModule::run(_T("KQ_AICHAT")); }

    /// Where Qt scales, the view may be larger by less than one Qt pixel. A view at its minimum size may be
    /// larger, too.
    testing::AssertionResult viewCoversPalette() const {
        const QWidget* const view = LoadedModule::view();
        CRect outer;
        CRect inner;
        CRect client;
        const auto fits = [view](int over, int size, int smallest) {
            return over >= 0 && (over < view->devicePixelRatioF() || size == smallest);
        };
        const auto covers = [&] {
            palette()->GetWindowRect(&outer);
            GetWindowRect(viewWindow(), &inner);
            GetClientRect(viewWindow(), &client);
            return inner.TopLeft() == outer.TopLeft() && client.Size() == inner.Size() &&
                   fits(inner.Width() - outer.Width(), view->width(), view->minimumWidth()) &&
                   fits(inner.Height() - outer.Height(), view->height(), view->minimumHeight());
        };
        const auto text = [](const CRect& rect) {
            return testing::PrintToString(
                std::vector<long>{rect.left, rect.top, rect.Width(), rect.Height()});
        };
        if (GetParent(viewWindow()) != palette()->m_hWnd) {
            return testing::AssertionFailure() << "the view is not the palette's child";
        }
        if (TestProgram::pumpUntil(covers, 5000) && (TestProgram::settle(), covers())) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure() << "palette at " << text(outer) << ", view at " << text(inner)
                                           << ", its client area " << text(client);
    }
};

}  // namespace

TEST_F(Embedding, ViewCoversThePaletteWhenThePanelOpens) {
    ASSERT_TRUE(openPanel());
    EXPECT_TRUE(IsWindowVisible(viewWindow()));
    EXPECT_TRUE(viewCoversPalette());
}

TEST_F(Embedding, ViewCoversThePaletteAtEverySize) {
    ASSERT_TRUE(openPanel());
    for (const CSize size :
         {CSize(700, 500), CSize(533, 322), CSize(401, 601), CSize(1901, 1203), CSize(640, 480)}) {
        sizePalette(size.cx, size.cy);
        EXPECT_TRUE(viewCoversPalette()) << size.cx << " x " << size.cy;
    }
}

TEST_F(Embedding, ViewIsClippedByATooSmallPaletteAndRestored) {
    ASSERT_TRUE(openPanel());
    // The view's layout has a minimum size; the palette, being its parent, clips it to its upper left part.
    for (const CSize size : {CSize(120, 90), CSize(33, 7)}) {
        sizePalette(size.cx, size.cy);
        TestProgram::settle();
        CRect outer;
        CRect inner;
        palette()->GetWindowRect(&outer);
        GetWindowRect(viewWindow(), &inner);
        EXPECT_EQ(outer.Size(), size);
        EXPECT_EQ(inner.TopLeft(), outer.TopLeft());
        EXPECT_GE(inner.Width(), outer.Width());
        EXPECT_GE(inner.Height(), outer.Height());
    }
    sizePalette(0, 0);
    TestProgram::settle();
    sizePalette(510, 410);
    EXPECT_TRUE(viewCoversPalette());
    EXPECT_TRUE(IsWindowVisible(viewWindow()));
}

TEST_F(Embedding, ViewCoversThePaletteResizedBeforeThePanelIsOpened) {
    sizePalette(444, 555);
    EXPECT_TRUE(viewCoversPalette());
    EXPECT_FALSE(IsWindowVisible(viewWindow()));
    ASSERT_TRUE(openPanel());
    EXPECT_TRUE(viewCoversPalette());
}

TEST_F(Embedding, ViewCoversThePaletteResizedWhileThePanelIsHidden) {
    ASSERT_TRUE(openPanel());
    ASSERT_TRUE(toggle());
    EXPECT_FALSE(IsWindowVisible(viewWindow()));
    for (const CSize size : {CSize(480, 300), CSize(655, 487)}) {
        sizePalette(size.cx, size.cy);
        EXPECT_TRUE(viewCoversPalette()) << size.cx << " x " << size.cy;
        EXPECT_FALSE(IsWindowVisible(viewWindow()));
    }
    ASSERT_TRUE(toggle());
    EXPECT_TRUE(viewCoversPalette());
    EXPECT_TRUE(IsWindowVisible(viewWindow()));
}

TEST_F(Embedding, ViewFollowsTheFrame) {
    ASSERT_TRUE(openPanel());
    program.frame()->MoveWindow(40, 60, 900, 520);
    EXPECT_TRUE(viewCoversPalette());
    program.frame()->ShowWindow(SW_MINIMIZE);
    TestProgram::settle();
    program.frame()->ShowWindow(SW_RESTORE);
    EXPECT_TRUE(viewCoversPalette());
    program.frame()->ShowWindow(SW_MAXIMIZE);
    EXPECT_TRUE(viewCoversPalette());
}

TEST_F(Embedding, ViewFollowsThePanelToTheOtherSide) {
    ASSERT_TRUE(openPanel());
    CRect left;
    paletteSet()->GetWindowRect(&left);
    program.frame()->DockControlBar(paletteSet(), AFX_IDW_DOCKBAR_RIGHT);
    program.frame()->RecalcLayout();
    CRect right;
    paletteSet()->GetWindowRect(&right);
    EXPECT_GT(right.left, left.left);
    EXPECT_TRUE(viewCoversPalette());
}

TEST_F(Embedding, ViewFollowsThePanelWhenItFloatsAndDocksAgain) {
    ASSERT_TRUE(openPanel());
    const HWND set = paletteSet()->m_hWnd;
    // A floating panel is in a small frame of its own, as in the host.
    CFrameWnd floating;
    ASSERT_TRUE(floating.Create(nullptr, _T("Zentri"), WS_POPUP | WS_CAPTION | WS_THICKFRAME,
                                CRect(500, 120, 1100, 620), program.frame()));
    floating.ShowWindow(SW_SHOWNOACTIVATE);
    SetParent(set, floating.m_hWnd);
    CRect inside;
    for (const CSize size : {CSize(600, 500), CSize(433, 611), CSize(800, 450)}) {
        floating.SetWindowPos(nullptr, 420, 90, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
        floating.GetClientRect(&inside);
        MoveWindow(set, 0, 0, inside.Width(), inside.Height(), TRUE);
        EXPECT_TRUE(viewCoversPalette()) << size.cx << " x " << size.cy;
    }
    CRect panel;
    palette()->GetWindowRect(&panel);
    EXPECT_EQ(panel.Width(), inside.Width());
    EXPECT_TRUE(IsWindowVisible(viewWindow()));

    SetParent(set, program.frame()->m_hWnd);
    floating.DestroyWindow();
    program.frame()->RecalcLayout();
    EXPECT_TRUE(viewCoversPalette());
}

TEST_F(Embedding, ViewMovesIntoThePalettesNewWindow) {
    ASSERT_TRUE(openPanel());
    for (const CSize size : {CSize(520, 430), CSize(377, 599)}) {
        CAdUiPalette* const made = palette();
        const CString name = made->GetName();
        made->DestroyWindow();
        TestProgram::settle();
        ASSERT_NE(LoadedModule::view(), nullptr);
        EXPECT_FALSE(IsWindowVisible(viewWindow()));
        ASSERT_TRUE(made->Create(kPaletteWindowStyle, name, paletteSet(), 0));
        sizePalette(size.cx, size.cy);
        EXPECT_TRUE(viewCoversPalette());
        EXPECT_TRUE(IsWindowVisible(viewWindow()));
    }
}

TEST_F(Embedding, ViewHasNoWindowFrame) {
    ASSERT_TRUE(openPanel());
    const auto style = static_cast<DWORD>(GetWindowLongPtrW(viewWindow(), GWL_STYLE));
    EXPECT_EQ(style & (WS_CHILD | WS_POPUP), static_cast<DWORD>(WS_CHILD));
    EXPECT_EQ(style & (WS_CAPTION | WS_THICKFRAME), 0U);
}

TEST_F(Embedding, ThePaletteHasNoOtherChildWindow) {
    ASSERT_TRUE(openPanel());
    sizePalette(512, 384);
    ASSERT_TRUE(toggle());
    ASSERT_TRUE(toggle());
    EXPECT_EQ(GetWindow(palette()->m_hWnd, GW_CHILD), viewWindow());
    EXPECT_EQ(GetWindow(viewWindow(), GW_HWNDNEXT), nullptr);
}
