#include "tests/sim/sdk/win32/TestWindow.h"

#include <win32_control.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

class Input : public testing::Test {
protected:
    void SetUp() override {
        m_frame =
            std::make_unique<TestWindow>(WS_OVERLAPPEDWINDOW, RECT{100, 100, 500, 400}, nullptr, CS_DBLCLKS);
        m_left =
            std::make_unique<TestWindow>(WS_CHILD | WS_VISIBLE, RECT{0, 0, 150, 200}, *m_frame, CS_DBLCLKS);
        m_right = std::make_unique<TestWindow>(WS_CHILD | WS_VISIBLE, RECT{150, 0, 300, 200}, *m_frame);
        ShowWindow(*m_frame, SW_SHOW);
        pumpAll();
        clear();
    }

    void clear() {
        for (TestWindow* window : {m_frame.get(), m_left.get(), m_right.get()}) {
            window->clear();
        }
    }

    static void click(HWND window, int x, int y, int button = 1) {
        POINT point = {x, y};
        ClientToScreen(window, &point);
        ASSERT_TRUE(win32PointerClick(point.x, point.y, button));
    }

    std::unique_ptr<TestWindow> m_frame;
    std::unique_ptr<TestWindow> m_left;
    std::unique_ptr<TestWindow> m_right;
};

}  // namespace

TEST_F(Input, ShownFrameIsActiveAndHasTheFocus) {
    EXPECT_EQ(GetActiveWindow(), m_frame->handle());
    EXPECT_EQ(GetFocus(), m_frame->handle());
}

TEST_F(Input, FocusMessagesCarryTheOtherWindow) {
    SetFocus(*m_left);
    EXPECT_EQ(m_frame->last(WM_KILLFOCUS).wParam, reinterpret_cast<WPARAM>(m_left->handle()));
    EXPECT_EQ(m_left->last(WM_SETFOCUS).wParam, reinterpret_cast<WPARAM>(m_frame->handle()));
    EXPECT_EQ(SetFocus(*m_right), m_left->handle());
    EXPECT_EQ(m_left->last(WM_KILLFOCUS).wParam, reinterpret_cast<WPARAM>(m_right->handle()));
    clear();
    SetFocus(*m_right);
    EXPECT_TRUE(m_right->messages().empty());
}

TEST_F(Input, KillFocusHandlerMayMoveTheFocus) {
    SetFocus(*m_left);
    m_left->setHandler([this](UINT message, WPARAM, LPARAM, LRESULT&) {
        if (message == WM_KILLFOCUS) {
            SetFocus(*m_frame);
        }
        return false;
    });
    SetFocus(*m_right);
    EXPECT_EQ(GetFocus(), m_frame->handle());
    EXPECT_EQ(m_right->count(WM_SETFOCUS), 0);
    m_left->setHandler(nullptr);
}

TEST_F(Input, DisabledWindowGetsNoFocus) {
    EnableWindow(*m_left, FALSE);
    EXPECT_EQ(SetFocus(*m_left), nullptr);
    EXPECT_EQ(GetFocus(), m_frame->handle());
    EXPECT_EQ(m_left->last(WM_ENABLE).wParam, 0U);
}

TEST_F(Input, HidingAChildMovesTheFocusToItsParent) {
    SetFocus(*m_left);
    ShowWindow(*m_left, SW_HIDE);
    EXPECT_EQ(GetFocus(), m_frame->handle());
}

TEST_F(Input, HidingAChildLeavesTheFocusInAChildOfIt) {
    TestWindow inner(WS_CHILD | WS_VISIBLE, RECT{0, 0, 10, 10}, m_left->handle());
    SetFocus(inner);
    ShowWindow(*m_left, SW_HIDE);
    EXPECT_EQ(GetFocus(), inner.handle());
}

TEST_F(Input, DestroyingTheActiveFrameActivatesAnother) {
    auto other = std::make_unique<TestWindow>(WS_OVERLAPPEDWINDOW, RECT{10, 10, 90, 90});
    ShowWindow(*other, SW_SHOW);
    EXPECT_EQ(GetActiveWindow(), other->handle());
    EXPECT_EQ(LOWORD(m_frame->last(WM_ACTIVATE).wParam), WA_INACTIVE);
    other.reset();
    EXPECT_EQ(GetActiveWindow(), m_frame->handle());
    EXPECT_EQ(LOWORD(m_frame->last(WM_ACTIVATE).wParam), WA_ACTIVE);
}

TEST_F(Input, RealKeyGivesKeyDownCharAndKeyUp) {
    SetFocus(*m_left);
    clear();
    ASSERT_TRUE(win32KeyStroke('A'));
    ASSERT_TRUE(pumpUntil([this] { return m_left->count(WM_KEYUP) == 1; }));
    std::vector<UINT> keys;
    for (const MSG& message : m_left->messages()) {
        if (message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST) {
            keys.push_back(message.message);
        }
    }
    const std::vector<UINT> expected = {WM_KEYDOWN, WM_CHAR, WM_KEYUP};
    EXPECT_EQ(keys, expected);
    const MSG down = m_left->last(WM_KEYDOWN);
    EXPECT_EQ(down.wParam, static_cast<WPARAM>('A'));
    EXPECT_EQ(down.lParam, 0x001E0001);
    EXPECT_EQ(m_left->last(WM_CHAR).wParam, static_cast<WPARAM>(u'a'));
    EXPECT_EQ(static_cast<DWORD>(m_left->last(WM_KEYUP).lParam), 0xC01E0001U);
}

TEST_F(Input, RealShiftAndControlChangeTheCharacter) {
    SetFocus(*m_left);
    ASSERT_TRUE(win32KeyStroke('A', true));
    ASSERT_TRUE(pumpUntil([this] { return m_left->count(WM_CHAR) == 1; }));
    EXPECT_EQ(m_left->last(WM_CHAR).wParam, static_cast<WPARAM>(u'A'));
    ASSERT_TRUE(win32KeyStroke('C', false, true));
    ASSERT_TRUE(pumpUntil([this] { return m_left->count(WM_CHAR) == 2; }));
    EXPECT_EQ(m_left->last(WM_CHAR).wParam, 3U);
    pumpAll();
    EXPECT_EQ(GetKeyState(VK_CONTROL) & 0x8000, 0);
}

TEST_F(Input, RealKeysMapToVirtualKeys) {
    SetFocus(*m_left);
    const struct {
        int virtualKey;
        bool extended;
        WPARAM character;
    } keys[] = {
        {VK_RETURN, false, u'\r'},   {VK_BACK, false, u'\b'},
        {VK_TAB, false, u'\t'},      {VK_ESCAPE, false, 0x1B},
        {VK_SPACE, false, u' '},     {VK_LEFT, true, 0},
        {VK_RIGHT, true, 0},         {VK_UP, true, 0},
        {VK_DOWN, true, 0},          {VK_HOME, true, 0},
        {VK_END, true, 0},           {VK_DELETE, true, 0},
        {VK_PRIOR, true, 0},         {VK_NEXT, true, 0},
        {VK_F1, false, 0},           {'7', false, u'7'},
        {VK_OEM_COMMA, false, u','}, {VK_OEM_2, false, u'/'},
        {VK_OEM_MINUS, false, u'-'},
    };
    for (const auto& key : keys) {
        clear();
        ASSERT_TRUE(win32KeyStroke(key.virtualKey)) << key.virtualKey;
        ASSERT_TRUE(pumpUntil([this] { return m_left->count(WM_KEYUP) == 1; })) << key.virtualKey;
        const MSG down = m_left->last(WM_KEYDOWN);
        EXPECT_EQ(down.wParam, static_cast<WPARAM>(key.virtualKey));
        EXPECT_EQ((HIWORD(static_cast<DWORD_PTR>(down.lParam)) & KF_EXTENDED) != 0, key.extended)
            << key.virtualKey;
        EXPECT_EQ(m_left->count(WM_CHAR), key.character != 0 ? 1 : 0) << key.virtualKey;
        if (key.character != 0) {
            EXPECT_EQ(m_left->last(WM_CHAR).wParam, key.character);
        }
    }
}

TEST_F(Input, AltGivesSystemKeyMessages) {
    SetFocus(*m_left);
    ASSERT_TRUE(win32KeyStroke('X', false, false, true));
    ASSERT_TRUE(pumpUntil([this] { return m_left->count(WM_SYSCHAR) == 1; }));
    EXPECT_EQ(m_left->last(WM_SYSCHAR).wParam, static_cast<WPARAM>(u'x'));
    EXPECT_GE(m_left->count(WM_SYSKEYDOWN), 2);
    EXPECT_EQ(m_left->count(WM_KEYDOWN), 0);
}

TEST_F(Input, KeysGoToTheFocusWindowRegardlessOfThePointer) {
    SetFocus(*m_left);
    RECT place;
    GetWindowRect(*m_right, &place);
    ASSERT_TRUE(win32PointerMove(place.left + 5, place.top + 5));
    ASSERT_TRUE(win32KeyStroke('B'));
    ASSERT_TRUE(pumpUntil([this] { return m_left->count(WM_CHAR) == 1; }));
    EXPECT_EQ(m_right->count(WM_KEYDOWN), 0);
}

TEST_F(Input, PostedKeysAreTranslatedByTheKeyState) {
    const auto typed = [this](int key) {
        clear();
        PostMessageW(*m_left, WM_KEYDOWN, static_cast<WPARAM>(key), 1);
        PostMessageW(*m_left, WM_KEYUP, static_cast<WPARAM>(key), static_cast<LPARAM>(0xC0000001U));
        pumpAll();
        return m_left->count(WM_CHAR) == 1 ? m_left->last(WM_CHAR).wParam : 0;
    };
    EXPECT_EQ(typed('Q'), static_cast<WPARAM>(u'q'));
    EXPECT_EQ(typed('1'), static_cast<WPARAM>(u'1'));
    EXPECT_EQ(typed(VK_RETURN), static_cast<WPARAM>(u'\r'));
    EXPECT_EQ(typed(VK_LEFT), 0U);
    EXPECT_EQ(typed(VK_DELETE), 0U);
    PostMessageW(*m_left, WM_KEYDOWN, VK_SHIFT, 1);
    EXPECT_EQ(typed('Q'), static_cast<WPARAM>(u'Q'));
    EXPECT_EQ(typed('1'), static_cast<WPARAM>(u'!'));
    EXPECT_NE(GetKeyState(VK_SHIFT) & 0x8000, 0);
    EXPECT_NE(GetKeyState(VK_LSHIFT) & 0x8000, 0);
    PostMessageW(*m_left, WM_KEYUP, VK_SHIFT, 1);
    PostMessageW(*m_left, WM_KEYDOWN, VK_CONTROL, 1);
    EXPECT_EQ(typed('C'), 3U);
    PostMessageW(*m_left, WM_KEYUP, VK_CONTROL, 1);
    EXPECT_EQ(typed('C'), static_cast<WPARAM>(u'c'));
}

TEST_F(Input, KeyStateChangesOnRetrievalNotOnPosting) {
    PostMessageW(*m_left, WM_KEYDOWN, VK_CONTROL, 1);
    EXPECT_EQ(GetKeyState(VK_CONTROL) & 0x8000, 0);
    EXPECT_EQ(takeMessage().message, static_cast<UINT>(WM_KEYDOWN));
    EXPECT_NE(GetKeyState(VK_CONTROL) & 0x8000, 0);
    PostMessageW(*m_left, WM_KEYUP, VK_CONTROL, 1);
    takeMessage();
    EXPECT_EQ(GetKeyState(VK_CONTROL) & 0x8000, 0);
}

TEST_F(Input, CapsLockToggles) {
    for (int i = 0; i < 2; ++i) {
        PostMessageW(*m_left, WM_KEYDOWN, VK_CAPITAL, 1);
        PostMessageW(*m_left, WM_KEYUP, VK_CAPITAL, 1);
        pumpAll();
        EXPECT_EQ(GetKeyState(VK_CAPITAL) & 1, 1 - i);
    }
}

TEST_F(Input, CharactersAreNotTranslatedAgain) {
    const MSG character = {*m_left, WM_CHAR, u'a', 1, 0, {}};
    EXPECT_FALSE(TranslateMessage(&character));
    EXPECT_EQ(takeMessage().message, static_cast<UINT>(WM_NULL));
}

TEST_F(Input, ClickMessagesCarryPositionAndButtons) {
    click(*m_left, 12, 34);
    ASSERT_TRUE(pumpUntil([this] { return m_left->count(WM_LBUTTONUP) == 1; }));
    const MSG down = m_left->last(WM_LBUTTONDOWN);
    EXPECT_EQ(down.lParam, MAKELPARAM(12, 34));
    EXPECT_EQ(down.wParam, MK_LBUTTON);
    EXPECT_EQ(m_left->last(WM_LBUTTONUP).wParam, 0U);
    EXPECT_EQ(m_right->count(WM_LBUTTONDOWN), 0);
}

TEST_F(Input, SecondClickIsADoubleClickOnlyWithCsDblClks) {
    click(*m_left, 12, 34);
    click(*m_left, 12, 34);
    ASSERT_TRUE(pumpUntil([this] { return m_left->count(WM_LBUTTONUP) == 2; }));
    EXPECT_EQ(m_left->count(WM_LBUTTONDOWN), 1);
    EXPECT_EQ(m_left->count(WM_LBUTTONDBLCLK), 1);
    click(*m_right, 12, 34);
    click(*m_right, 12, 34);
    ASSERT_TRUE(pumpUntil([this] { return m_right->count(WM_LBUTTONUP) == 2; }));
    EXPECT_EQ(m_right->count(WM_LBUTTONDOWN), 2);
}

TEST_F(Input, RightClickSendsWmContextMenu) {
    click(*m_left, 5, 5, 3);
    ASSERT_TRUE(pumpUntil([this] { return m_left->count(WM_CONTEXTMENU) == 1; }));
    EXPECT_EQ(m_left->count(WM_RBUTTONDOWN), 1);
    // Unhandled, it is passed to the parent.
    EXPECT_EQ(m_frame->count(WM_CONTEXTMENU), 1);
}

TEST_F(Input, WheelGoesToTheWindowUnderThePointer) {
    click(*m_right, 5, 5, 4);
    ASSERT_TRUE(pumpUntil([this] { return m_right->count(WM_MOUSEWHEEL) == 1; }));
    EXPECT_EQ(GET_WHEEL_DELTA_WPARAM(m_right->last(WM_MOUSEWHEEL).wParam), WHEEL_DELTA);
    click(*m_right, 5, 5, 5);
    ASSERT_TRUE(pumpUntil([this] { return m_right->count(WM_MOUSEWHEEL) == 2; }));
    EXPECT_EQ(GET_WHEEL_DELTA_WPARAM(m_right->last(WM_MOUSEWHEEL).wParam), -WHEEL_DELTA);
}

TEST_F(Input, CaptureWindowGetsPointerEventsOutsideIt) {
    SetCapture(*m_left);
    EXPECT_EQ(GetCapture(), m_left->handle());
    RECT place;
    GetWindowRect(*m_left, &place);
    ASSERT_TRUE(win32PointerMove(place.left - 50, place.top + 10));
    ASSERT_TRUE(pumpUntil([this] { return m_left->count(WM_MOUSEMOVE) > 0; }));
    EXPECT_EQ(GET_X_LPARAM(m_left->last(WM_MOUSEMOVE).lParam), -50);
    ReleaseCapture();
    EXPECT_EQ(m_left->count(WM_CAPTURECHANGED), 1);
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(Input, DisabledFrameGetsNoInput) {
    EnableWindow(*m_frame, FALSE);
    clear();
    click(*m_left, 5, 5);
    ASSERT_TRUE(win32KeyStroke('A'));
    pumpAll();
    EXPECT_EQ(m_left->count(WM_LBUTTONDOWN) + m_left->count(WM_KEYDOWN) + m_frame->count(WM_KEYDOWN), 0);
    EnableWindow(*m_frame, TRUE);
}

TEST_F(Input, ClickSendsWmMouseActivateAndActivatesTheFrame) {
    TestWindow other(WS_OVERLAPPEDWINDOW, {550, 100, 700, 200});
    ShowWindow(other, SW_SHOW);
    pumpAll();
    EXPECT_EQ(GetActiveWindow(), other.handle());
    clear();
    click(*m_left, 5, 5);
    ASSERT_TRUE(pumpUntil([this] { return m_left->count(WM_LBUTTONDOWN) == 1; }));
    EXPECT_EQ(GetActiveWindow(), m_frame->handle());
    EXPECT_EQ(m_left->count(WM_MOUSEACTIVATE), 1);
    EXPECT_EQ(LOWORD(m_frame->last(WM_ACTIVATE).wParam), WA_CLICKACTIVE);
}

TEST_F(Input, AnAnswerToWmMouseActivateMayEatTheClick) {
    const struct {
        LRESULT answer;
        bool activates;
        bool eats;
    } answers[] = {{MA_NOACTIVATE, false, false},
                   {MA_NOACTIVATEANDEAT, false, true},
                   {MA_ACTIVATEANDEAT, true, true},
                   {MA_ACTIVATE, true, false}};
    TestWindow other(WS_OVERLAPPEDWINDOW, {550, 100, 700, 200});
    for (const auto& expected : answers) {
        ShowWindow(other, SW_SHOW);
        SetActiveWindow(other);
        pumpAll();
        clear();
        m_right->setHandler([&expected](UINT message, WPARAM, LPARAM, LRESULT& result) {
            result = expected.answer;
            return message == WM_MOUSEACTIVATE;
        });
        click(*m_right, 5, 5);
        ASSERT_TRUE(pumpUntil([this] { return m_right->count(WM_LBUTTONUP) == 1; })) << expected.answer;
        EXPECT_EQ(m_right->count(WM_LBUTTONDOWN), expected.eats ? 0 : 1) << expected.answer;
        EXPECT_EQ(GetActiveWindow() == m_frame->handle(), expected.activates) << expected.answer;
    }
    m_right->setHandler(nullptr);
}

TEST_F(Input, QueuedMouseMovesAreCoalesced) {
    RECT place;
    GetWindowRect(*m_left, &place);
    for (int i = 1; i <= 5; ++i) {
        ASSERT_TRUE(win32PointerMove(place.left + i, place.top + i));
    }
    pumpAll();
    EXPECT_LT(m_left->count(WM_MOUSEMOVE), 5);
    EXPECT_EQ(m_left->last(WM_MOUSEMOVE).lParam, MAKELPARAM(5, 5));
}
