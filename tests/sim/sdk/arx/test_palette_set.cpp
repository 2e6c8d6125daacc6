#include <AdUiPalette.h>
#include <AdUiPaletteSet.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>

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

    ~PaletteSet() override {
        if (set != nullptr && !arxVariant().setDeletesPalettes) {
            deletePalettes();
        }
    }

    void deletePalettes() {
        while (CAdUiPalette* const palette = set->GetPalette(0)) {
            set->RemovePalette(0);
            delete palette;
        }
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
    GUID toolId = {0x01234567, 0x89AB, 0xCDEF, {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF}};
    const CString toolIdText = _T("{01234567-89AB-CDEF-0123-456789ABCDEF}");
};

/// Counts the handlers called.
class HandlingPaletteSet : public CAdUiPaletteSet {
public:
    explicit HandlingPaletteSet(int& destroyed) : m_destroyed(destroyed) {}

protected:
    afx_msg void OnDestroy() {
        ++m_destroyed;
        CAdUiPaletteSet::OnDestroy();
    }
    DECLARE_MESSAGE_MAP()

private:
    int& m_destroyed;
};

BEGIN_MESSAGE_MAP(HandlingPaletteSet, CAdUiPaletteSet)
ON_WM_DESTROY()
END_MESSAGE_MAP()

/// A palette set in each kind of framework.
class PaletteSetOwnership : public PaletteSet, public testing::WithParamInterface<std::tuple<bool, bool>> {
protected:
    PaletteSetOwnership() {
        arxVariant().setDeletesPalettes = std::get<0>(GetParam());
        arxVariant().setDestroysWindow = std::get<1>(GetParam());
    }
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
    set->SetToolID(&toolId);
    program.host().setDockState(toolIdText, ArxDockState{AFX_IDW_DOCKBAR_RIGHT, 350});
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
    set->SetToolID(&toolId);
    program.host().setDockState(toolIdText, ArxDockState{AFX_IDW_DOCKBAR_LEFT, 5000});
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    EXPECT_EQ(set->m_sizeDocked.cx, 500);
    program.host().setDockState(toolIdText, ArxDockState{AFX_IDW_DOCKBAR_LEFT, 3});
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    EXPECT_EQ(set->m_sizeDocked.cx, 200);
}

TEST_F(PaletteSet, ReportsItsDockStateToTheHost) {
    set->SetToolID(&toolId);
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    show();
    ASSERT_EQ(program.host().dockStates().count(toolIdText), 1U);
    const ArxDockState state = program.host().dockStates().at(toolIdText);
    EXPECT_EQ(state.dockBarId, static_cast<UINT>(AFX_IDW_DOCKBAR_LEFT));
    EXPECT_EQ(state.width, 300);
}

TEST_F(PaletteSet, ASetWithoutAToolIdIsNotRemembered) {
    program.host().setDockState(_T("Panel"), ArxDockState{AFX_IDW_DOCKBAR_RIGHT, 350});
    program.host().setDockState(CString(), ArxDockState{AFX_IDW_DOCKBAR_RIGHT, 350});
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    show();
    EXPECT_EQ(set->m_nDockBarID, static_cast<UINT>(AFX_IDW_DOCKBAR_LEFT));
    EXPECT_EQ(set->m_sizeDocked.cx, 300);
    EXPECT_EQ(program.host().dockStates().size(), 2U);
    EXPECT_EQ(program.host().dockStates().at(_T("Panel")).width, 350);
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

TEST_P(PaletteSetOwnership, DeletingItDeletesItsPalettesOrLeavesThemToTheirMaker) {
    int living = 0;
    const CAdUiPalette* const first = add(_T("First"), &living);
    const CAdUiPalette* const second = add(_T("Second"), &living);
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    show();
    EXPECT_EQ(living, 2);
    set.reset();
    EXPECT_TRUE(program.frame()->GetControlBars().empty());
    TestProgram::settle();
    if (std::get<0>(GetParam())) {
        EXPECT_EQ(living, 0);
        return;
    }
    EXPECT_EQ(living, 2);
    // Their windows went with the set's.
    EXPECT_EQ(first->GetSafeHwnd(), nullptr);
    EXPECT_EQ(second->GetSafeHwnd(), nullptr);
    delete first;
    delete second;
}

TEST_P(PaletteSetOwnership, DeletingItWithItsWindowCallsNoHandlerOfADerivedClass) {
    int destroyed = 0;
    auto handling = std::make_unique<HandlingPaletteSet>(destroyed);
    ASSERT_TRUE(
        handling->Create(_T("Handling"), WS_DLGFRAME, CRect(0, 0, 300, 400), program.frame(), PSS_SNAP));
    const HWND window = handling->m_hWnd;
    handling.reset();
    EXPECT_EQ(destroyed, 0);
    EXPECT_FALSE(IsWindow(window));
}

TEST_P(PaletteSetOwnership, DestroyingTheWindowFirstCallsThem) {
    int destroyed = 0;
    HandlingPaletteSet handling(destroyed);
    ASSERT_TRUE(
        handling.Create(_T("Handling"), WS_DLGFRAME, CRect(0, 0, 300, 400), program.frame(), PSS_SNAP));
    EXPECT_TRUE(handling.DestroyWindow());
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(program.frame()->GetControlBars().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(EveryFramework, PaletteSetOwnership,
                         testing::Combine(testing::Bool(), testing::Bool()), [](const auto& test) {
                             return std::string(std::get<0>(test.param) ? "Deletes" : "Leaves") +
                                    "PalettesAnd" + (std::get<1>(test.param) ? "Destroys" : "Leaves") +
                                    "Window";
                         });

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

TEST_F(PaletteSet, HidingItWithTheFocusMovesTheFocusToTheFrame) {
    add(_T("First"));
    show();
    set->SetFocus();
    ASSERT_EQ(GetFocus(), set->m_hWnd);
    program.frame()->ShowControlBar(set.get(), FALSE, FALSE);
    EXPECT_EQ(GetFocus(), program.frame()->m_hWnd);
}

TEST_F(PaletteSet, AFocusTakenInsideItWhileItIsHiddenStaysThere) {
    TestPalette* const palette = add(_T("First"));
    palette->SetFocus();
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    TestProgram::settle();
    EXPECT_EQ(GetFocus(), palette->m_hWnd);
}

TEST_F(PaletteSet, ShowingItLeavesTheFocusAlone) {
    add(_T("First"));
    set->RestoreControlBar(AFX_IDW_DOCKBAR_LEFT);
    program.frame()->SetFocus();
    show();
    EXPECT_EQ(GetFocus(), program.frame()->m_hWnd);
}

TEST_F(PaletteSet, APaletteLetsTheFrameTakeTheFocusByDefault) {
    EXPECT_TRUE(add(_T("First"))->CanFrameworkTakeFocus());
}
