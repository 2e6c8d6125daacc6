#include <AdUiPalette.h>
#include <AdUiPaletteSet.h>
#include <gtest/gtest.h>

#include <memory>

#include "tests/support/TestProgram.h"

namespace {

class TestPalette : public CAdUiPalette {
public:
    explicit TestPalette(int* living = nullptr) : m_living(living) {
        if (m_living != nullptr) {
            ++*m_living;
        }
    }
    ~TestPalette() override {
        if (m_living != nullptr) {
            --*m_living;
        }
    }

    BOOL OnSetActive() override {
        ++activations;
        return CAdUiPalette::OnSetActive();
    }

    int activations = 0;

private:
    int* m_living;
};

class TestPaletteSet : public CAdUiPaletteSet {
public:
    bool mayClose = true;

    void GetMinimumSize(CSize& size) override { size = CSize(200, 100); }
    void GetMaximumSize(CSize& size) override { size = CSize(500, 5000); }

protected:
    bool OnClosing() override { return mayClose; }
};

class PaletteSet : public testing::Test {
protected:
    PaletteSet() : set(std::make_unique<TestPaletteSet>()) {
        EXPECT_TRUE(set->Create(_T("Panel"), WS_DLGFRAME, CRect(0, 0, 300, 400), program.frame(),
                                PSS_CLOSE_BUTTON | PSS_SNAP));
        set->EnableDocking(CBRS_ALIGN_LEFT | CBRS_SIZE_DYNAMIC);
    }

    TestPalette* add(LPCTSTR name, int* living = nullptr) {
        auto* const palette = new TestPalette(living);
        EXPECT_TRUE(palette->Create(WS_CHILD | WS_VISIBLE, name, set.get(), 0));
        set->AddPalette(palette);
        return palette;
    }

    void show() {
        program.frame()->ShowControlBar(set.get(), TRUE, FALSE);
        TestProgram::settle();
    }

    /// A palette's rectangle in its set's client coordinates.
    CRect placeOf(const CAdUiPalette* palette) const {
        CRect rect;
        palette->GetWindowRect(&rect);
        set->ScreenToClient(&rect);
        return rect;
    }

    void click(CPoint point) {
        const LPARAM place = MAKELPARAM(point.x, point.y);
        set->SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, place);
        set->SendMessage(WM_LBUTTONUP, 0, place);
    }

    TestProgram program;
    std::unique_ptr<TestPaletteSet> set;
};

}  // namespace

TEST_F(PaletteSet, IsHiddenUntilTheFrameShowsIt) {
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    EXPECT_FALSE(set->IsVisible());
    EXPECT_FALSE(set->IsWindowVisible());
    show();
    EXPECT_TRUE(set->IsVisible());
    EXPECT_TRUE(set->IsWindowVisible());
    program.frame()->ShowControlBar(set.get(), FALSE, FALSE);
    EXPECT_FALSE(set->IsVisible());
}

TEST_F(PaletteSet, CannotBeCreatedWithoutAFrame) {
    CAdUiPaletteSet orphan;
    EXPECT_FALSE(orphan.Create(_T("Panel"), WS_DLGFRAME, CRect(0, 0, 300, 400), nullptr, 0));
}

TEST_F(PaletteSet, DocksAtTheGivenSideWithItsWidth) {
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    show();
    CRect place;
    set->GetWindowRect(&place);
    program.frame()->ScreenToClient(&place);
    EXPECT_EQ(place.left, 0);
    EXPECT_EQ(place.Width(), 300);
    CRect drawing;
    program.drawingView()->GetWindowRect(&drawing);
    program.frame()->ScreenToClient(&drawing);
    EXPECT_GE(drawing.left, place.right);
}

TEST_F(PaletteSet, DocksWhereTheHostRemembersIt) {
    program.host().setDockState(_T("Panel"), ArxDockState{AFX_IDW_DOCKBAR_RIGHT, 350});
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    show();
    CRect place;
    set->GetWindowRect(&place);
    CRect drawing;
    program.drawingView()->GetWindowRect(&drawing);
    EXPECT_EQ(set->m_nDockBarID, static_cast<UINT>(AFX_IDW_DOCKBAR_RIGHT));
    EXPECT_EQ(place.Width(), 350);
    EXPECT_LE(drawing.right, place.left);
}

TEST_F(PaletteSet, ARememberedWidthIsKeptWithinTheLimits) {
    program.host().setDockState(_T("Panel"), ArxDockState{AFX_IDW_DOCKBAR_LEFT, 5000});
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    EXPECT_EQ(set->m_sizeDocked.cx, 500);
    program.host().setDockState(_T("Panel"), ArxDockState{AFX_IDW_DOCKBAR_LEFT, 3});
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    EXPECT_EQ(set->m_sizeDocked.cx, 200);
}

TEST_F(PaletteSet, ReportsItsDockStateToTheHost) {
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    show();
    ASSERT_EQ(program.host().dockStates().count(_T("Panel")), 1U);
    const ArxDockState state = program.host().dockStates().at(_T("Panel"));
    EXPECT_EQ(state.dockBarId, static_cast<UINT>(AFX_IDW_DOCKBAR_LEFT));
    EXPECT_EQ(state.width, 300);
}

TEST_F(PaletteSet, TheFirstPaletteIsActiveAndFillsTheFrame) {
    TestPalette* const palette = add(_T("First"));
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    show();
    EXPECT_EQ(set->GetActivePalette(), palette);
    EXPECT_EQ(palette->activations, 1);
    EXPECT_EQ(palette->GetPaletteSet(), set.get());
    CRect client;
    set->GetClientRect(&client);
    const CRect expected = set->PaletteRect();
    EXPECT_EQ(expected.left, client.left);
    EXPECT_EQ(expected.right, client.right);
    EXPECT_EQ(expected.bottom, client.bottom);
    EXPECT_GT(expected.top, client.top);
    EXPECT_EQ(placeOf(palette), expected);
}

TEST_F(PaletteSet, ThePaletteFollowsTheSetsSize) {
    TestPalette* const palette = add(_T("First"));
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    show();
    program.frame()->MoveWindow(0, 0, 800, 500);
    TestProgram::settle();
    EXPECT_EQ(placeOf(palette), set->PaletteRect());
}

TEST_F(PaletteSet, OnlyTheActivePaletteIsShown) {
    TestPalette* const first = add(_T("First"));
    TestPalette* const second = add(_T("Second"));
    EXPECT_EQ(set->GetPaletteCount(), 2);
    show();
    EXPECT_TRUE(first->IsWindowVisible());
    EXPECT_FALSE(second->IsWindowVisible());
    EXPECT_TRUE(set->SetActivePalette(1));
    EXPECT_FALSE(first->IsWindowVisible());
    EXPECT_TRUE(second->IsWindowVisible());
    EXPECT_EQ(second->activations, 1);
    EXPECT_FALSE(set->SetActivePalette(2));
    EXPECT_EQ(set->GetActivePalette(), second);
}

TEST_F(PaletteSet, ATabSwitchesThePalette) {
    add(_T("First"));
    TestPalette* const second = add(_T("Second"));
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    show();
    CRect client;
    set->GetClientRect(&client);
    click(CPoint(130, client.bottom - 5));
    EXPECT_EQ(set->GetActivePalette(), second);
    EXPECT_EQ(placeOf(second), set->PaletteRect());
}

TEST_F(PaletteSet, ARemovedPaletteIsOwnedByTheCaller) {
    const std::unique_ptr<TestPalette> first(add(_T("First")));
    TestPalette* const second = add(_T("Second"));
    EXPECT_TRUE(set->RemovePalette(0));
    EXPECT_EQ(set->GetPaletteCount(), 1);
    EXPECT_EQ(set->GetActivePalette(), second);
    EXPECT_FALSE(set->RemovePalette(5));
    EXPECT_EQ(set->GetPalette(1), nullptr);
}

TEST_F(PaletteSet, APaletteWithoutAWindowIsRejected) {
    TestPalette palette;
    EXPECT_EQ(set->AddPalette(&palette), -1);
    EXPECT_EQ(set->AddPalette(nullptr), -1);
    EXPECT_FALSE(palette.OnSetActive());
    TestPaletteSet unmade;
    EXPECT_FALSE(palette.Create(WS_CHILD, _T("No set"), &unmade, 0));
}

TEST_F(PaletteSet, DeletingItDeletesItsPalettesAndRemovesItFromTheFrame) {
    int living = 0;
    add(_T("First"), &living);
    add(_T("Second"), &living);
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    show();
    EXPECT_EQ(living, 2);
    set.reset();
    EXPECT_EQ(living, 0);
    EXPECT_TRUE(program.frame()->GetControlBars().empty());
    TestProgram::settle();
}

TEST_F(PaletteSet, TheCloseButtonHidesItUnlessOnClosingRefuses) {
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    show();
    set->mayClose = false;
    click(set->CloseButtonRect().CenterPoint());
    EXPECT_TRUE(set->IsVisible());
    set->mayClose = true;
    click(CPoint(5, 5));
    EXPECT_TRUE(set->IsVisible());
    click(set->CloseButtonRect().CenterPoint());
    EXPECT_FALSE(set->IsVisible());
}

TEST_F(PaletteSet, WithoutTheStyleThereIsNoCloseButton) {
    TestPaletteSet plain;
    ASSERT_TRUE(plain.Create(_T("Plain"), WS_DLGFRAME, CRect(0, 0, 300, 400), program.frame(), PSS_SNAP));
    EXPECT_TRUE(plain.CloseButtonRect().IsRectEmpty());
    EXPECT_EQ(plain.GetPaletteSetStyle(), static_cast<DWORD>(PSS_SNAP));
}

TEST_F(PaletteSet, HidingItMovesTheFocusToTheFrame) {
    TestPalette* const palette = add(_T("First"));
    show();
    palette->SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
    ASSERT_EQ(GetFocus(), palette->m_hWnd);
    program.frame()->ShowControlBar(set.get(), FALSE, FALSE);
    EXPECT_NE(GetFocus(), palette->m_hWnd);
}
