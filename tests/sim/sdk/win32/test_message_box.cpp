#include "tests/sim/sdk/win32/TestWindow.h"

#include <win32_control.h>

#include <gtest/gtest.h>

#include <glib.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace {

/// Runs the action once when a message box is open, from a timer in the box's modal loop.
class WhenBoxStands {
public:
    explicit WhenBoxStands(std::function<void(const Win32MessageBox&)> action) : m_action(std::move(action)) {
        s_current = this;
        m_timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, [](HWND, UINT, UINT_PTR, DWORD) {
            const auto boxes = win32MessageBoxes();
            if (!boxes.empty() && s_current != nullptr && !s_current->m_done) {
                s_current->m_done = true;
                s_current->m_action(boxes.back());
            }
        });
    }
    ~WhenBoxStands() {
        KillTimer(nullptr, m_timer);
        s_current = nullptr;
    }
    WhenBoxStands(const WhenBoxStands&) = delete;
    WhenBoxStands& operator=(const WhenBoxStands&) = delete;

private:
    static WhenBoxStands* s_current;

    std::function<void(const Win32MessageBox&)> m_action;
    UINT_PTR m_timer = 0;
    bool m_done = false;
};
WhenBoxStands* WhenBoxStands::s_current = nullptr;

void clickButton(const Win32MessageBox& box, std::size_t index) {
    const RECT& place = box.buttons[index].screenRectangle;
    ASSERT_TRUE(win32PointerClick((place.left + place.right) / 2, (place.top + place.bottom) / 2));
}

std::vector<int> ids(const Win32MessageBox& box) {
    std::vector<int> result;
    for (const Win32MessageBoxButton& button : box.buttons) {
        result.push_back(button.id);
    }
    return result;
}

}  // namespace

TEST(MessageBoxes, OpenBoxCanBeInspectedAndAnswered) {
    const WhenBoxStands when([](const Win32MessageBox& box) {
        EXPECT_EQ(box.caption, u"命令执行");
        EXPECT_EQ(box.text, u"是否取消当前命令？");
        EXPECT_EQ(box.type, static_cast<UINT>(MB_YESNO | MB_ICONWARNING));
        const std::vector<int> expected = {IDYES, IDNO};
        EXPECT_EQ(ids(box), expected);
        EXPECT_FALSE(win32AnswerMessageBox(box.window, IDCANCEL));
        EXPECT_TRUE(win32AnswerMessageBox(box.window, IDYES));
    });
    EXPECT_EQ(MessageBoxW(nullptr, u"是否取消当前命令？", u"命令执行", MB_YESNO | MB_ICONWARNING), IDYES);
    EXPECT_TRUE(win32MessageBoxes().empty());
}

TEST(MessageBoxes, EveryTypeHasItsButtons) {
    const struct {
        UINT type;
        std::vector<int> buttons;
    } kinds[] = {
        {MB_OK, {IDOK}},
        {MB_OKCANCEL, {IDOK, IDCANCEL}},
        {MB_ABORTRETRYIGNORE, {IDABORT, IDRETRY, IDIGNORE}},
        {MB_YESNOCANCEL, {IDYES, IDNO, IDCANCEL}},
        {MB_YESNO, {IDYES, IDNO}},
        {MB_RETRYCANCEL, {IDRETRY, IDCANCEL}},
    };
    for (const auto& kind : kinds) {
        const WhenBoxStands when([&kind](const Win32MessageBox& box) {
            EXPECT_EQ(ids(box), kind.buttons);
            win32AnswerMessageBox(box.window, kind.buttons.back());
        });
        EXPECT_EQ(MessageBoxW(nullptr, u"text", u"caption", kind.type), kind.buttons.back());
    }
}

TEST(MessageBoxes, RealClickChoosesAButton) {
    const WhenBoxStands when([](const Win32MessageBox& box) { clickButton(box, 1); });
    EXPECT_EQ(MessageBoxW(nullptr, u"text", u"caption", MB_YESNO), IDNO);
}

TEST(MessageBoxes, RealKeysChooseAButton) {
    {
        const WhenBoxStands when([](const Win32MessageBox&) { win32KeyStroke(VK_RETURN); });
        EXPECT_EQ(MessageBoxW(nullptr, u"text", u"caption", MB_YESNO | MB_DEFBUTTON2), IDNO);
    }
    {
        const WhenBoxStands when([](const Win32MessageBox&) { win32KeyStroke(VK_ESCAPE); });
        EXPECT_EQ(MessageBoxW(nullptr, u"text", u"caption", MB_OKCANCEL), IDCANCEL);
    }
    {
        const WhenBoxStands when([](const Win32MessageBox&) { win32KeyStroke('N'); });
        EXPECT_EQ(MessageBoxW(nullptr, u"text", u"caption", MB_YESNO), IDNO);
    }
    {
        const WhenBoxStands when([](const Win32MessageBox&) {
            win32KeyStroke(VK_TAB);
            win32KeyStroke(VK_RETURN);
        });
        EXPECT_EQ(MessageBoxW(nullptr, u"text", u"caption", MB_YESNOCANCEL), IDNO);
    }
}

TEST(MessageBoxes, EscapeAndCloseDoNotDismissAYesNoBox) {
    const WhenBoxStands when([](const Win32MessageBox& box) {
        PostMessageW(box.window, WM_KEYDOWN, VK_ESCAPE, 1);
        PostMessageW(box.window, WM_CLOSE, 0, 0);
        PostMessageW(box.window, WM_COMMAND, IDYES, 0);
    });
    EXPECT_EQ(MessageBoxW(nullptr, u"text", u"caption", MB_YESNO), IDYES);
}

TEST(MessageBoxes, OwnerIsDisabledWhileTheBoxIsOpenAndActiveAfterwards) {
    TestWindow owner;
    const TestWindow child(WS_CHILD | WS_VISIBLE, {0, 0, 50, 50}, owner);
    ShowWindow(owner, SW_SHOW);
    pumpAll();
    const WhenBoxStands when([&owner](const Win32MessageBox& box) {
        EXPECT_FALSE(IsWindowEnabled(owner));
        EXPECT_EQ(GetActiveWindow(), box.window);
        win32AnswerMessageBox(box.window, IDOK);
    });
    // For a child the top-level window becomes the owner.
    EXPECT_EQ(MessageBoxW(child, u"text", u"caption", MB_OK), IDOK);
    EXPECT_TRUE(IsWindowEnabled(owner));
    EXPECT_EQ(GetActiveWindow(), owner.handle());
}

TEST(MessageBoxes, BoxWithoutOwnerDisablesNoWindow) {
    TestWindow other;
    ShowWindow(other, SW_SHOW);
    const WhenBoxStands when([&other](const Win32MessageBox& box) {
        EXPECT_TRUE(IsWindowEnabled(other));
        win32AnswerMessageBox(box.window, IDOK);
    });
    MessageBoxW(nullptr, u"text", u"caption", MB_OK);
}

TEST(MessageBoxes, InvalidOwnerShowsNoBox) {
    EXPECT_EQ(MessageBoxW(reinterpret_cast<HWND>(std::uintptr_t{0x7FFFFF}), u"text", u"caption", MB_OK), 0);
}

TEST(MessageBoxes, TimersAndOtherSourcesRunWhileABoxIsOpen) {
    static int windowTimer = 0;
    static int source = 0;
    windowTimer = source = 0;
    TestWindow window;
    window.setHandler([](UINT message, WPARAM, LPARAM, LRESULT&) {
        windowTimer += message == WM_TIMER ? 1 : 0;
        return false;
    });
    SetTimer(window, 1, USER_TIMER_MINIMUM, nullptr);
    g_timeout_add(
        5,
        [](gpointer) -> gboolean {
            ++source;
            const auto boxes = win32MessageBoxes();
            if (windowTimer >= 3 && source >= 3 && !boxes.empty()) {
                win32AnswerMessageBox(boxes.back().window, IDOK);
                return G_SOURCE_REMOVE;
            }
            return G_SOURCE_CONTINUE;
        },
        nullptr);
    EXPECT_EQ(MessageBoxW(nullptr, u"text", u"caption", MB_OK), IDOK);
    EXPECT_GE(windowTimer, 3);
}

TEST(MessageBoxes, NestedBoxReturnsFirst) {
    int inner = 0;
    const WhenBoxStands when([&inner](const Win32MessageBox& outerBox) {
        static HWND s_outer;
        s_outer = outerBox.window;
        const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, [](HWND, UINT, UINT_PTR, DWORD) {
            const auto boxes = win32MessageBoxes();
            if (boxes.size() == 2) {
                win32AnswerMessageBox(boxes[0].window, IDCANCEL);
                win32AnswerMessageBox(boxes[1].window, IDRETRY);
            }
        });
        inner = MessageBoxW(s_outer, u"inner", u"inner", MB_RETRYCANCEL);
        KillTimer(nullptr, timer);
    });
    EXPECT_EQ(MessageBoxW(nullptr, u"outer", u"outer", MB_OKCANCEL), IDCANCEL);
    EXPECT_EQ(inner, IDRETRY);
}

TEST(MessageBoxes, WorkerThreadBlocksWhileTheMainLoopRuns) {
    std::atomic<int> answer{0};
    std::atomic<bool> finished{false};
    const DWORD mainThread = GetCurrentThreadId();
    int messages = 0;
    TestWindow window;
    window.setHandler([&messages](UINT message, WPARAM, LPARAM, LRESULT&) {
        messages += message == WM_APP ? 1 : 0;
        return false;
    });
    const WhenBoxStands when([&](const Win32MessageBox& box) {
        EXPECT_EQ(GetCurrentThreadId(), mainThread);
        EXPECT_FALSE(finished);
        // The main thread's message loop still runs while the box is open.
        SendMessageW(window, WM_APP, 0, 0);
        PostMessageW(window, WM_APP, 0, 0);
        win32AnswerMessageBox(box.window, IDCANCEL);
    });
    std::thread worker([&] {
        answer = MessageBoxW(nullptr, u"从工作线程", u"caption", MB_OKCANCEL);
        finished = true;
    });
    EXPECT_TRUE(pumpUntil([&finished] { return finished.load(); }));
    worker.join();
    EXPECT_EQ(answer, IDCANCEL);
    EXPECT_EQ(messages, 2);
}

TEST(MessageBoxes, QuitClosesTheBoxAndReachesTheMessageLoop) {
    const WhenBoxStands when([](const Win32MessageBox&) { PostQuitMessage(4); });
    EXPECT_EQ(MessageBoxW(nullptr, u"text", u"caption", MB_OKCANCEL), IDCANCEL);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) != FALSE) {
    }
    EXPECT_EQ(message.wParam, 4U);
}

TEST(MessageBoxes, LongTextIsWrapped) {
    std::u16string text;
    for (int i = 0; i < 200; ++i) {
        text += u"很长的文字";
    }
    const WhenBoxStands when([](const Win32MessageBox& box) {
        RECT place;
        GetWindowRect(box.window, &place);
        EXPECT_LT(place.right - place.left, 600);
        EXPECT_GT(place.bottom - place.top, 300);
        win32AnswerMessageBox(box.window, IDOK);
    });
    MessageBoxW(nullptr, text.c_str(), u"caption", MB_OK | MB_ICONINFORMATION);
}
