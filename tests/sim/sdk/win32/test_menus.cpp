#include "tests/sim/sdk/win32/TestWindow.h"

#include <win32_control.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace {

constexpr UINT kOpen = 101;
constexpr UINT kSave = 102;
constexpr UINT kDark = 103;
constexpr UINT kLine = 201;
constexpr UINT kRecent = 301;

std::string text(HMENU menu, UINT item, UINT flags) {
    TCHAR buffer[32];
    GetMenuStringW(menu, item, buffer, 32, flags);
    char narrow[128];
    WideCharToMultiByte(CP_UTF8, 0, buffer, -1, narrow, sizeof narrow, nullptr, nullptr);
    return narrow;
}

class Menus : public testing::Test {
protected:
    void SetUp() override {
        m_recent = CreatePopupMenu();
        AppendMenuW(m_recent, MF_STRING, kRecent, u"&Recent one");
        m_file = CreatePopupMenu();
        AppendMenuW(m_file, MF_STRING, kOpen, u"&Open\tCtrl+O");
        AppendMenuW(m_file, MF_STRING | MF_GRAYED, kSave, u"&Save");
        AppendMenuW(m_file, MF_SEPARATOR, 0, nullptr);
        AppendMenuW(m_file, MF_STRING | MF_CHECKED, kDark, u"深色(&D)");
        AppendMenuW(m_file, MF_POPUP, reinterpret_cast<UINT_PTR>(m_recent), u"&Recent");
        m_draw = CreatePopupMenu();
        AppendMenuW(m_draw, MF_STRING, kLine, u"&Line");
        m_bar = CreateMenu();
        AppendMenuW(m_bar, MF_POPUP, reinterpret_cast<UINT_PTR>(m_file), u"&File");
        AppendMenuW(m_bar, MF_POPUP, reinterpret_cast<UINT_PTR>(m_draw), u"&Draw");
        m_frame = std::make_unique<TestWindow>(WS_OVERLAPPEDWINDOW, RECT{60, 60, 460, 360});
        SetMenu(*m_frame, m_bar);
        ShowWindow(*m_frame, SW_SHOW);
        pumpAll();
        m_frame->clear();
    }

    /// Runs the steps one after the other from a timer, so that they also run inside the menu's modal loop.
    void run(std::vector<std::function<void()>> steps) {
        static std::vector<std::function<void()>> s_steps;
        s_steps = std::move(steps);
        const UINT_PTR timer = SetTimer(nullptr, 0, 80, [](HWND, UINT, UINT_PTR, DWORD) {
            if (!s_steps.empty()) {
                const auto step = std::move(s_steps.front());
                s_steps.erase(s_steps.begin());
                step();
            }
        });
        EXPECT_TRUE(pumpUntil([] { return s_steps.empty(); }));
        KillTimer(nullptr, timer);
        pumpAll();
    }
    std::function<void()> key(int virtualKey, bool alt = false) {
        return [virtualKey, alt] { win32KeyStroke(virtualKey, false, false, alt); };
    }
    std::function<void()> clickBar(int x) {
        return [this, x] {
            POINT origin{};
            ClientToScreen(*m_frame, &origin);
            win32PointerClick(origin.x + x, origin.y - GetSystemMetrics(SM_CYMENU) / 2);
        };
    }
    /// Clicks below a bar item, on the given row of its popup.
    std::function<void()> clickRow(int x, int row) {
        return [this, x, row] {
            POINT origin{};
            ClientToScreen(*m_frame, &origin);
            win32PointerClick(origin.x + x, origin.y + 2 + row * 24 + 12);
        };
    }

    HMENU m_bar = nullptr;
    HMENU m_file = nullptr;
    HMENU m_draw = nullptr;
    HMENU m_recent = nullptr;
    std::unique_ptr<TestWindow> m_frame;
};

}  // namespace

TEST_F(Menus, ItemsAreFoundByPositionAndByCommand) {
    EXPECT_EQ(GetMenuItemCount(m_bar), 2);
    EXPECT_EQ(GetSubMenu(m_bar, 0), m_file);
    EXPECT_EQ(GetMenuItemID(m_file, 0), kOpen);
    EXPECT_EQ(GetMenuItemID(m_bar, 0), 0xFFFFFFFFU);
    EXPECT_EQ(text(m_file, 0, MF_BYPOSITION), "&Open\tCtrl+O");
    EXPECT_EQ(text(m_bar, kRecent, MF_BYCOMMAND), "&Recent one");
    EXPECT_EQ(GetMenuState(m_bar, kSave, MF_BYCOMMAND), static_cast<UINT>(MF_GRAYED));
    EXPECT_EQ(GetMenuState(m_bar, 9999, MF_BYCOMMAND), 0xFFFFFFFFU);
}

TEST_F(Menus, CheckAndEnableStatesChange) {
    EXPECT_EQ(CheckMenuItem(m_bar, kDark, MF_UNCHECKED), static_cast<DWORD>(MF_CHECKED));
    EXPECT_EQ(GetMenuState(m_bar, kDark, MF_BYCOMMAND), 0U);
    EXPECT_EQ(EnableMenuItem(m_bar, kSave, MF_ENABLED), static_cast<BOOL>(MF_GRAYED));
    EXPECT_EQ(EnableMenuItem(m_bar, 9999, MF_ENABLED), -1);
    EXPECT_TRUE(DeleteMenu(m_file, kOpen, MF_BYCOMMAND));
    EXPECT_EQ(GetMenuItemCount(m_file), 4);
}

TEST_F(Menus, DestroyMenuDestroysItsSubmenus) {
    const HMENU bar = CreateMenu();
    const HMENU popup = CreatePopupMenu();
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(popup), u"x");
    EXPECT_TRUE(DestroyMenu(bar));
    EXPECT_FALSE(IsMenu(popup));
    EXPECT_FALSE(DestroyMenu(bar));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_MENU_HANDLE);
}

TEST_F(Menus, MenuBarIsDestroyedWithItsWindow) {
    m_frame.reset();
    EXPECT_FALSE(IsMenu(m_bar));
    EXPECT_FALSE(IsMenu(m_recent));
}

TEST_F(Menus, ClickedItemPostsWmCommand) {
    run({clickBar(20), clickRow(40, 0)});
    ASSERT_EQ(m_frame->count(WM_COMMAND), 1);
    EXPECT_EQ(m_frame->last(WM_COMMAND).wParam, static_cast<WPARAM>(kOpen));
    EXPECT_EQ(m_frame->last(WM_COMMAND).lParam, 0);
    EXPECT_EQ(m_frame->count(WM_INITMENUPOPUP), 1);
    EXPECT_EQ(m_frame->count(WM_EXITMENULOOP), 1);
}

TEST_F(Menus, GrayedItemDoesNothing) {
    run({clickBar(20), clickRow(40, 1), key(VK_ESCAPE)});
    EXPECT_EQ(m_frame->count(WM_COMMAND), 0);
    EXPECT_EQ(m_frame->count(WM_EXITMENULOOP), 1);
}

TEST_F(Menus, ClickElsewhereClosesTheMenu) {
    run({clickBar(20), [this] {
             RECT place;
             GetWindowRect(*m_frame, &place);
             win32PointerClick(place.right - 20, place.bottom - 20);
         }});
    EXPECT_EQ(m_frame->count(WM_COMMAND), 0);
    EXPECT_EQ(m_frame->count(WM_EXITMENULOOP), 1);
}

TEST_F(Menus, MovingToAnotherBarItemOpensItsPopup) {
    run({clickBar(20),
         [this] {
             POINT origin{};
             ClientToScreen(*m_frame, &origin);
             win32PointerMove(origin.x + 60, origin.y - 10);
         },
         clickRow(70, 0)});
    ASSERT_EQ(m_frame->count(WM_COMMAND), 1);
    EXPECT_EQ(m_frame->last(WM_COMMAND).wParam, static_cast<WPARAM>(kLine));
}

TEST_F(Menus, AltWithAccessKeyOpensAPopupAndKeysChoose) {
    run({key('F', true), key('O')});
    ASSERT_EQ(m_frame->count(WM_COMMAND), 1);
    EXPECT_EQ(m_frame->last(WM_COMMAND).wParam, static_cast<WPARAM>(kOpen));
    m_frame->clear();
    run({key('F', true), key(VK_RIGHT), key(VK_DOWN), key(VK_RETURN)});
    ASSERT_EQ(m_frame->count(WM_COMMAND), 1);
    EXPECT_EQ(m_frame->last(WM_COMMAND).wParam, static_cast<WPARAM>(kLine));
    m_frame->clear();
    run({key('F', true), key(VK_UP), key(VK_RIGHT), key(VK_RETURN)});
    ASSERT_EQ(m_frame->count(WM_COMMAND), 1);
    EXPECT_EQ(m_frame->last(WM_COMMAND).wParam, static_cast<WPARAM>(kRecent));
}

TEST_F(Menus, AltAloneOpensTheMenuBar) {
    run({[] {
             win32KeyEvent(VK_MENU, true);
             win32KeyEvent(VK_MENU, false);
         },
         key(VK_DOWN), key(VK_RETURN)});
    ASSERT_EQ(m_frame->count(WM_COMMAND), 1);
    EXPECT_EQ(m_frame->last(WM_COMMAND).wParam, static_cast<WPARAM>(kOpen));
}

TEST_F(Menus, TrackPopupMenuReturnsTheChosenCommand) {
    BOOL chosen = 0;
    bool done = false;
    run({[&] {
             chosen = TrackPopupMenu(m_draw, TPM_RETURNCMD, 200, 200, 0, *m_frame, nullptr);
             done = true;
         },
         key(VK_DOWN), key(VK_RETURN)});
    EXPECT_TRUE(pumpUntil([&done] { return done; }));
    EXPECT_EQ(chosen, static_cast<BOOL>(kLine));
    EXPECT_EQ(m_frame->count(WM_COMMAND), 0);
}

TEST_F(Menus, TimersFireWhileAMenuIsOpen) {
    SetTimer(*m_frame, 1, USER_TIMER_MINIMUM, nullptr);
    int before = 0;
    run({clickBar(20), [&] { before = m_frame->count(WM_TIMER); }, [] {}, [] {},
         [&] { EXPECT_GT(m_frame->count(WM_TIMER), before); }, key(VK_ESCAPE)});
    KillTimer(*m_frame, 1);
}

TEST_F(Menus, FrameStaysActiveWhileAMenuIsOpen) {
    run({clickBar(20),
         [this] {
             EXPECT_EQ(GetActiveWindow(), m_frame->handle());
             EXPECT_EQ(GetFocus(), m_frame->handle());
         },
         key(VK_ESCAPE)});
}

TEST_F(Menus, MessageBoxOverTheFrameClosesItsMenu) {
    run({clickBar(20), [this] {
             const UINT_PTR timer = SetTimer(nullptr, 0, 50, [](HWND, UINT, UINT_PTR, DWORD) {
                 for (const Win32MessageBox& box : win32MessageBoxes()) {
                     EXPECT_EQ(FindWindowW(u"#32768", nullptr) != nullptr &&
                                   IsWindowVisible(FindWindowW(u"#32768", nullptr)) != FALSE,
                               false);
                     win32AnswerMessageBox(box.window, IDOK);
                 }
             });
             MessageBoxW(*m_frame, u"text", u"caption", MB_OK);
             KillTimer(nullptr, timer);
         }});
    EXPECT_EQ(m_frame->count(WM_COMMAND), 0);
    EXPECT_EQ(m_frame->count(WM_EXITMENULOOP), 1);
}

TEST_F(Menus, DestroyingTheOwnerEndsTheMenuLoop) {
    run({clickBar(20), [this] { DestroyWindow(*m_frame); }});
    EXPECT_EQ(m_frame->handle(), nullptr);
    EXPECT_FALSE(IsMenu(m_bar));
}
