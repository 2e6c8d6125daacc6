#include <memory>

#include "mfc_app.h"

namespace {

/// A bar with the same size at every edge.
class Bar : public CControlBar {
public:
    explicit Bar(CSize wanted = CSize(0, 0)) : m_wanted(wanted) {}
    BOOL create(CFrameWnd& frame, DWORD barStyle, UINT id, DWORD style = WS_CHILD | WS_VISIBLE) {
        m_dwStyle = barStyle;
        return CWnd::Create(nullptr, nullptr, style, CRect(0, 0, 10, 10), &frame, id);
    }
    CSize CalcFixedLayout(BOOL stretch, BOOL horizontal) override {
        CSize size = CControlBar::CalcFixedLayout(stretch, horizontal);
        size.cx = horizontal ? size.cx : m_wanted.cx;
        size.cy = horizontal ? m_wanted.cy : size.cy;
        return size;
    }
    void OnDockedSizing(CSize& size) override {
        CControlBar::OnDockedSizing(size);
        size.cx = size.cx > 300 ? 300 : size.cx;
    }
    CSize m_wanted;
};

class View : public CView {
public:
    int m_activated = 0;
    int m_commands = 0;

protected:
    void OnActivateView(BOOL activate, CView*, CView*) override { m_activated += activate ? 1 : -1; }
    void OnFirst() { ++m_commands; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(View, CView)
ON_COMMAND(500, &View::OnFirst)
END_MESSAGE_MAP()

class Frame : public CMDIFrameWnd {
public:
    int m_commands = 0;

protected:
    void OnFrameCommand() { ++m_commands; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Frame, CMDIFrameWnd)
ON_COMMAND(501, &Frame::OnFrameCommand)
END_MESSAGE_MAP()

class CommandApp : public TestApp {
public:
    int m_commands = 0;

protected:
    void OnAppCommand() { ++m_commands; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(CommandApp, CWinApp)
ON_COMMAND(502, &CommandApp::OnAppCommand)
END_MESSAGE_MAP()

std::string describe(const CRect& rect) {
    CString text;
    text.Format(_T("%d,%d %dx%d"), rect.left, rect.top, rect.Width(), rect.Height());
    return utf8(text);
}

/// A hidden frame with a pane and a client area of 800 by 600.
class Docking : public ::testing::Test {
protected:
    void SetUp() override {
        m_frame = new Frame;
        ASSERT_TRUE(m_frame->Create(nullptr, _T("frame"), WS_POPUP, CRect(0, 0, 800, 600)));
        m_frame->EnableDocking(CBRS_ALIGN_ANY);
        m_view = new View;
        ASSERT_TRUE(m_view->Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE, CRect(0, 0, 1, 1), m_frame,
                                   AFX_IDW_PANE_FIRST));
        CRect client;
        m_frame->GetClientRect(&client);
        ASSERT_EQ(describe(client), "0,0 800x600");
    }
    void TearDown() override {
        if (m_frame != nullptr) {
            m_frame->DestroyWindow();
        }
    }
    std::string place(const CWnd& window) const {
        CRect rect;
        window.GetWindowRect(&rect);
        m_frame->ScreenToClient(static_cast<LPRECT>(rect));
        return describe(rect);
    }
    void dragFrom(int x, int y, int toX, int toY) {
        m_frame->SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
        m_frame->SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(toX, toY));
        m_frame->SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(toX, toY));
    }

    CommandApp m_app;
    Frame* m_frame = nullptr;
    View* m_view = nullptr;
};

}  // namespace

TEST_F(Docking, WithoutBarsThePaneFillsTheClientArea) {
    m_frame->RecalcLayout();
    EXPECT_EQ(place(*m_view), "0,0 800x600");
    m_frame->SetWindowPos(nullptr, 0, 0, 500, 400, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_EQ(place(*m_view), "0,0 500x400");
}

TEST_F(Docking, BarsTakeTheirEdgesAndThePaneTheRest) {
    Bar status(CSize(0, 20));
    Bar top(CSize(0, 30));
    Bar left(CSize(100, 0));
    Bar right(CSize(50, 0));
    ASSERT_TRUE(status.create(*m_frame, CBRS_BOTTOM, AFX_IDW_STATUS_BAR));
    for (Bar* bar : {&left, &right, &top}) {
        ASSERT_TRUE(bar->create(*m_frame, CBRS_LEFT, 1));
        bar->EnableDocking(CBRS_ALIGN_ANY);
    }
    m_frame->DockControlBar(&left, AFX_IDW_DOCKBAR_LEFT);
    m_frame->DockControlBar(&right, AFX_IDW_DOCKBAR_RIGHT);
    m_frame->DockControlBar(&top, AFX_IDW_DOCKBAR_TOP);
    m_frame->RecalcLayout();
    EXPECT_EQ(place(status), "0,580 800x20");
    EXPECT_EQ(place(top), "0,0 800x30");
    EXPECT_EQ(place(left), "0,30 100x550");
    EXPECT_EQ(place(right), "750,30 50x550");
    EXPECT_EQ(place(*m_view), "100,30 650x550");
    EXPECT_EQ(m_frame->GetControlBar(AFX_IDW_STATUS_BAR), &status);
    EXPECT_EQ(m_frame->GetControlBars().size(), 4U);
}

TEST_F(Docking, WithoutAnEdgeABarDocksWhereItsStyleAllows) {
    Bar bar(CSize(80, 40));
    ASSERT_TRUE(bar.create(*m_frame, 0, 1));
    bar.EnableDocking(CBRS_ALIGN_RIGHT);
    m_frame->DockControlBar(&bar);
    EXPECT_EQ(bar.m_nDockBarID, static_cast<UINT>(AFX_IDW_DOCKBAR_RIGHT));
    EXPECT_EQ(bar.GetBarStyle() & CBRS_ALIGN_ANY, CBRS_ALIGN_RIGHT);
    EXPECT_EQ(bar.GetDockingFrame(), m_frame);
    EXPECT_MFC_THROW(m_frame->DockControlBar(&bar, 0x1234), CInvalidArgException);
}

TEST_F(Docking, AHiddenBarTakesNoSpace) {
    Bar bar(CSize(100, 0));
    ASSERT_TRUE(bar.create(*m_frame, 0, 1, WS_CHILD));
    bar.EnableDocking(CBRS_ALIGN_LEFT);
    m_frame->DockControlBar(&bar, AFX_IDW_DOCKBAR_LEFT);
    m_frame->RecalcLayout();
    EXPECT_FALSE(bar.IsVisible());
    EXPECT_EQ(place(*m_view), "0,0 800x600");
    m_frame->ShowControlBar(&bar, TRUE, FALSE);
    EXPECT_TRUE(bar.IsVisible());
    EXPECT_EQ(place(*m_view), "100,0 700x600");
    m_frame->ShowControlBar(&bar, FALSE, FALSE);
    EXPECT_FALSE(bar.IsVisible());
    EXPECT_EQ(place(*m_view), "0,0 800x600");
}

TEST_F(Docking, DelayedShowIsAppliedInIdleProcessing) {
    Bar bar(CSize(100, 0));
    ASSERT_TRUE(bar.create(*m_frame, 0, 1, WS_CHILD));
    bar.EnableDocking(CBRS_ALIGN_LEFT);
    m_frame->DockControlBar(&bar, AFX_IDW_DOCKBAR_LEFT);
    m_frame->ShowControlBar(&bar, TRUE, TRUE);
    EXPECT_TRUE(bar.IsVisible());
    EXPECT_EQ(bar.GetStyle() & WS_VISIBLE, 0U);
    m_app.OnIdle(0);
    EXPECT_NE(bar.GetStyle() & WS_VISIBLE, 0U);
    EXPECT_EQ(place(*m_view), "100,0 700x600");
    m_frame->ShowControlBar(&bar, FALSE, TRUE);
    EXPECT_FALSE(bar.IsVisible());
    m_app.OnIdle(0);
    EXPECT_EQ(place(*m_view), "0,0 800x600");
}

TEST_F(Docking, ADynamicBarIsResizedByDraggingItsEdge) {
    Bar bar;
    bar.m_sizeDocked = CSize(200, 150);
    ASSERT_TRUE(bar.create(*m_frame, 0, 1));
    bar.EnableDocking(CBRS_ALIGN_LEFT | CBRS_SIZE_DYNAMIC);
    m_frame->DockControlBar(&bar, AFX_IDW_DOCKBAR_LEFT);
    m_frame->RecalcLayout();
    EXPECT_EQ(place(bar), "0,0 200x600");
    EXPECT_EQ(place(*m_view), "205,0 595x600");

    dragFrom(202, 300, 252, 310);
    EXPECT_EQ(place(bar), "0,0 250x600");
    EXPECT_EQ(bar.m_sizeDocked.cx, 250);
    EXPECT_EQ(place(*m_view), "255,0 545x600");
    EXPECT_EQ(GetCapture(), nullptr);

    dragFrom(252, 300, 700, 300);
    EXPECT_EQ(place(bar), "0,0 300x600") << "the bar's own limit";
    dragFrom(302, 300, 0, 300);
    EXPECT_EQ(place(bar), "0,0 20x600");
    m_frame->SendMessage(WM_MOUSEMOVE, 0, MAKELPARAM(400, 300));
    EXPECT_EQ(place(bar), "0,0 20x600") << "the drag has ended";
}

TEST_F(Docking, ABarAtTheRightGrowsToTheLeft) {
    Bar bar;
    bar.m_sizeDocked = CSize(200, 150);
    ASSERT_TRUE(bar.create(*m_frame, 0, 1));
    bar.EnableDocking(CBRS_ALIGN_ANY | CBRS_SIZE_DYNAMIC);
    m_frame->DockControlBar(&bar, AFX_IDW_DOCKBAR_RIGHT);
    m_frame->RecalcLayout();
    EXPECT_EQ(place(bar), "600,0 200x600");
    dragFrom(597, 300, 557, 300);
    EXPECT_EQ(place(bar), "560,0 240x600");
    m_frame->DockControlBar(&bar, AFX_IDW_DOCKBAR_BOTTOM);
    m_frame->RecalcLayout();
    EXPECT_EQ(place(bar), "0,450 800x150");
    dragFrom(10, 447, 10, 437);
    EXPECT_EQ(place(bar), "0,440 800x160");
}

TEST_F(Docking, DraggingLeavesThePaneItsMinimumSize) {
    m_frame->SetWindowPos(nullptr, 0, 0, 300, 600, SWP_NOMOVE | SWP_NOZORDER);
    Bar bar;
    bar.m_sizeDocked = CSize(100, 100);
    ASSERT_TRUE(bar.create(*m_frame, 0, 1));
    bar.EnableDocking(CBRS_ALIGN_ANY | CBRS_SIZE_DYNAMIC);
    m_frame->DockControlBar(&bar, AFX_IDW_DOCKBAR_LEFT);
    m_frame->RecalcLayout();
    dragFrom(102, 300, 299, 300);
    CRect pane;
    m_view->GetWindowRect(&pane);
    EXPECT_EQ(pane.Width(), 80);
}

TEST_F(Docking, ADeletedBarFreesItsSpace) {
    auto bar = std::make_unique<Bar>(CSize(100, 0));
    ASSERT_TRUE(bar->create(*m_frame, 0, 1));
    bar->EnableDocking(CBRS_ALIGN_LEFT);
    m_frame->DockControlBar(bar.get(), AFX_IDW_DOCKBAR_LEFT);
    m_frame->RecalcLayout();
    bar.reset();
    EXPECT_TRUE(m_frame->GetControlBars().empty());
    m_app.OnIdle(0);
    EXPECT_EQ(place(*m_view), "0,0 800x600");
}

TEST_F(Docking, ABarMayOutliveItsFrame) {
    Bar bar(CSize(100, 0));
    ASSERT_TRUE(bar.create(*m_frame, 0, 1));
    bar.EnableDocking(CBRS_ALIGN_LEFT);
    m_frame->DockControlBar(&bar, AFX_IDW_DOCKBAR_LEFT);
    m_frame->DestroyWindow();
    m_frame = nullptr;
    EXPECT_EQ(bar.m_hWnd, nullptr);
    EXPECT_EQ(bar.GetDockingFrame(), nullptr);
}

TEST_F(Docking, CommandsGoToTheViewThenTheFrameThenTheApplication) {
    m_frame->SetActiveView(m_view);
    EXPECT_EQ(m_frame->GetActiveView(), m_view);
    EXPECT_EQ(m_view->m_activated, 1);
    m_frame->SendMessage(WM_COMMAND, 500);
    m_frame->SendMessage(WM_COMMAND, 501);
    m_frame->SendMessage(WM_COMMAND, 502);
    EXPECT_EQ(m_view->m_commands, 1);
    EXPECT_EQ(m_frame->m_commands, 1);
    EXPECT_EQ(m_app.m_commands, 1);
    m_view->DestroyWindow();
    EXPECT_EQ(m_frame->GetActiveView(), nullptr);
    m_frame->SendMessage(WM_COMMAND, 501);
    EXPECT_EQ(m_frame->m_commands, 2);
}

TEST_F(Docking, ClosingTheMainFrameEndsTheMessageLoop) {
    m_app.m_pMainWnd = m_frame;
    m_frame->PostMessage(WM_CLOSE);
    EXPECT_EQ(m_app.Run(), 0);
    EXPECT_EQ(m_app.m_pMainWnd, nullptr);
    m_frame = nullptr;
}
