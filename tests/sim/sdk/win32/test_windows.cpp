#include "tests/sim/sdk/win32/TestWindow.h"

#include <win32_cairo.h>
#include <win32_control.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

std::vector<UINT> numbers(const std::vector<MSG>& messages) {
    std::vector<UINT> result;
    for (const MSG& message : messages) {
        result.push_back(message.message);
    }
    return result;
}

std::string text(HWND window) {
    TCHAR buffer[64];
    GetWindowTextW(window, buffer, 64);
    char narrow[256];
    WideCharToMultiByte(CP_UTF8, 0, buffer, -1, narrow, sizeof narrow, nullptr, nullptr);
    return narrow;
}

}  // namespace

TEST(Windows, CreationSendsItsMessagesInOrder) {
    const TestWindow window(WS_OVERLAPPEDWINDOW);
    const std::vector<UINT> expected = {WM_NCCREATE, WM_CREATE, WM_SIZE, WM_MOVE};
    EXPECT_EQ(numbers(window.messages()), expected);
    EXPECT_TRUE(IsWindow(window));
    EXPECT_FALSE(IsWindowVisible(window));
}

TEST(Windows, ChildNotifiesItsParent) {
    TestWindow parent;
    const TestWindow child(WS_CHILD, {0, 0, 10, 10}, parent);
    const MSG notice = parent.last(WM_PARENTNOTIFY);
    EXPECT_EQ(LOWORD(notice.wParam), WM_CREATE);
    EXPECT_EQ(notice.lParam, reinterpret_cast<LPARAM>(child.handle()));
    EXPECT_EQ(GetParent(child), parent.handle());
    EXPECT_TRUE(IsChild(parent, child));
    EXPECT_FALSE(IsChild(child, parent));
}

TEST(Windows, UnknownClassIsRejected) {
    SetLastError(0);
    EXPECT_EQ(CreateWindowExW(0, u"NoSuchClass", u"", WS_OVERLAPPED, 0, 0, 1, 1, nullptr, nullptr, nullptr,
                              nullptr),
              nullptr);
    EXPECT_EQ(GetLastError(), ERROR_CANNOT_FIND_WND_CLASS);
}

TEST(Windows, ClassNameIsRegisteredOnlyOnce) {
    WNDCLASSW description{};
    description.lpfnWndProc = DefWindowProcW;
    description.lpszClassName = u"ZrOnce";
    EXPECT_NE(RegisterClassW(&description), 0);
    description.lpszClassName = u"ZRONCE";
    EXPECT_EQ(RegisterClassW(&description), 0);
    EXPECT_EQ(GetLastError(), ERROR_CLASS_ALREADY_EXISTS);
    EXPECT_TRUE(UnregisterClassW(u"ZrOnce", nullptr));
    EXPECT_FALSE(UnregisterClassW(u"ZrOnce", nullptr));
    EXPECT_EQ(GetLastError(), ERROR_CLASS_DOES_NOT_EXIST);
}

TEST(Windows, CreationCancelledByWmCreateLeavesNoWindow) {
    WNDCLASSW description{};
    description.lpfnWndProc = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
        return message == WM_CREATE ? -1 : DefWindowProcW(window, message, wParam, lParam);
    };
    description.lpszClassName = u"ZrRefuses";
    ASSERT_NE(RegisterClassW(&description), 0);
    EXPECT_EQ(
        CreateWindowExW(0, u"ZrRefuses", u"", WS_OVERLAPPED, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr),
        nullptr);
    EXPECT_EQ(FindWindowW(u"ZrRefuses", nullptr), nullptr);
}

TEST(Windows, NcDestroyReachesChildrenFirst) {
    TestWindow parent;
    TestWindow child(WS_CHILD, {0, 0, 10, 10}, parent);
    std::vector<std::pair<HWND, UINT>> order;
    const HWND parentHandle = parent;
    const HWND childHandle = child;
    const auto record = [&order](HWND window) {
        return [&order, window](UINT message, WPARAM, LPARAM, LRESULT&) {
            if (message == WM_DESTROY || message == WM_NCDESTROY) {
                order.emplace_back(window, message);
            }
            return false;
        };
    };
    parent.setHandler(record(parentHandle));
    child.setHandler(record(childHandle));
    EXPECT_TRUE(DestroyWindow(parent));
    const std::vector<std::pair<HWND, UINT>> expected = {{parentHandle, WM_DESTROY},
                                                         {childHandle, WM_DESTROY},
                                                         {childHandle, WM_NCDESTROY},
                                                         {parentHandle, WM_NCDESTROY}};
    EXPECT_EQ(order, expected);
    EXPECT_FALSE(IsWindow(childHandle));
    SetLastError(0);
    EXPECT_FALSE(DestroyWindow(parentHandle));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
}

TEST(Windows, OwnedWindowsAreDestroyedWithTheirOwner) {
    TestWindow owner;
    const TestWindow owned(WS_POPUP, {0, 0, 10, 10}, owner);
    const HWND handle = owned;
    EXPECT_EQ(GetWindow(handle, GW_OWNER), owner.handle());
    EXPECT_EQ(GetParent(handle), owner.handle());
    const TestWindow overlapped(WS_OVERLAPPED, {0, 0, 10, 10}, owner);
    EXPECT_EQ(GetWindow(overlapped, GW_OWNER), owner.handle());
    EXPECT_EQ(GetParent(overlapped), nullptr);
    DestroyWindow(owner);
    EXPECT_FALSE(IsWindow(handle));
}

TEST(Windows, MoveAndSizeMessagesReportOnlyChanges) {
    TestWindow parent;
    TestWindow child(WS_CHILD | WS_VISIBLE, {5, 6, 105, 56}, parent);
    child.clear();
    MoveWindow(child, 7, 8, 100, 50, FALSE);
    EXPECT_EQ(child.count(WM_SIZE), 0);
    EXPECT_EQ(child.last(WM_MOVE).lParam, MAKELPARAM(7, 8));
    child.clear();
    SetWindowPos(child, nullptr, 0, 0, 30, 20, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_EQ(child.count(WM_MOVE), 0);
    const MSG size = child.last(WM_SIZE);
    EXPECT_EQ(size.wParam, static_cast<WPARAM>(SIZE_RESTORED));
    EXPECT_EQ(size.lParam, MAKELPARAM(30, 20));
    child.clear();
    MoveWindow(child, 7, 8, 30, 20, FALSE);
    EXPECT_EQ(child.count(WM_SIZE) + child.count(WM_MOVE), 0);
}

TEST(Windows, ChildrenArePositionedInTheClientArea) {
    TestWindow frame(WS_OVERLAPPEDWINDOW, {50, 60, 450, 360});
    const TestWindow child(WS_CHILD | WS_VISIBLE, {10, 20, 110, 70}, frame);
    ShowWindow(frame, SW_SHOW);
    POINT origin{};
    ASSERT_TRUE(ClientToScreen(frame, &origin));
    RECT place;
    ASSERT_TRUE(GetWindowRect(child, &place));
    EXPECT_EQ(place.left, origin.x + 10);
    EXPECT_EQ(place.top, origin.y + 20);
    EXPECT_EQ(WindowFromPoint({place.left + 1, place.top + 1}), child.handle());
    POINT back = {place.left, place.top};
    ScreenToClient(frame, &back);
    EXPECT_EQ(back.x, 10);
    EXPECT_EQ(back.y, 20);
}

TEST(Windows, MenuBarMovesTheClientArea) {
    TestWindow frame(WS_OVERLAPPEDWINDOW, {50, 60, 450, 360});
    RECT before;
    GetClientRect(frame, &before);
    const HMENU menu = CreateMenu();
    AppendMenuW(menu, MF_STRING, 1, u"&File");
    frame.clear();
    ASSERT_TRUE(SetMenu(frame, menu));
    RECT after;
    GetClientRect(frame, &after);
    EXPECT_EQ(before.bottom - after.bottom, GetSystemMetrics(SM_CYMENU));
    EXPECT_EQ(frame.last(WM_SIZE).lParam, MAKELPARAM(after.right, after.bottom));
    EXPECT_EQ(GetMenu(frame), menu);
}

TEST(Windows, MaximizedWindowFillsTheScreenAndCanBeRestored) {
    TestWindow frame(WS_OVERLAPPEDWINDOW, {50, 60, 450, 360});
    ShowWindow(frame, SW_SHOWMAXIMIZED);
    RECT place;
    GetWindowRect(frame, &place);
    EXPECT_EQ(place.right - place.left, GetSystemMetrics(SM_CXSCREEN));
    EXPECT_EQ(frame.last(WM_SIZE).wParam, static_cast<WPARAM>(SIZE_MAXIMIZED));
    EXPECT_TRUE(IsZoomed(frame));
    ShowWindow(frame, SW_RESTORE);
    GetWindowRect(frame, &place);
    EXPECT_EQ(place.left, 50);
    EXPECT_EQ(place.right, 450);
}

TEST(Windows, WindowTextIsStoredAndTruncatedToTheBuffer) {
    const TestWindow window;
    EXPECT_TRUE(SetWindowTextW(window, u"朔禾CAD"));
    EXPECT_EQ(text(window), "朔禾CAD");
    EXPECT_EQ(GetWindowTextLengthW(window), 5);
    TCHAR small[3];
    EXPECT_EQ(GetWindowTextW(window, small, 3), 2);
    EXPECT_EQ(std::u16string(small), u"朔禾");
}

TEST(Windows, WindowLongsAreExchanged) {
    const TestWindow window;
    EXPECT_EQ(SetWindowLongPtrW(window, GWLP_ID, 5), 0);
    EXPECT_EQ(GetWindowLongPtrW(window, GWLP_ID), 5);
    EXPECT_NE(GetWindowLongPtrW(window, GWL_STYLE) & static_cast<LONG_PTR>(WS_CAPTION), 0);
    SetLastError(0);
    EXPECT_EQ(GetWindowLongPtrW(window, 8), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_INDEX);
}

TEST(Windows, PaintComesAfterPostedMessagesAndOnlyOnce) {
    TestWindow window;
    ShowWindow(window, SW_SHOW);
    pumpAll();
    window.clear();
    InvalidateRect(window, nullptr, TRUE);
    InvalidateRect(window, nullptr, TRUE);
    PostMessageW(window, WM_APP, 0, 0);
    const MSG first = takeMessage();
    EXPECT_EQ(first.message, WM_APP);
    const MSG second = takeMessage();
    EXPECT_EQ(second.message, static_cast<UINT>(WM_PAINT));
    DispatchMessageW(&second);
    pumpAll();
    EXPECT_EQ(window.count(WM_PAINT), 1);
    EXPECT_EQ(window.count(WM_ERASEBKGND), 1);
}

TEST(Windows, HiddenWindowIsNotPainted) {
    TestWindow window;
    InvalidateRect(window, nullptr, TRUE);
    pumpAll();
    EXPECT_EQ(window.count(WM_PAINT), 0);
}

TEST(Windows, PaintedPixelsAreOnTheScreen) {
    TestWindow window(WS_POPUP, {100, 100, 300, 250});
    window.setHandler([&window](UINT message, WPARAM, LPARAM, LRESULT&) {
        if (message != WM_PAINT) {
            return false;
        }
        PAINTSTRUCT paint;
        const HDC dc = BeginPaint(window, &paint);
        cairo_t* cairo = win32Cairo(dc);
        cairo_set_source_rgb(cairo, 1, 0, 0);
        cairo_rectangle(cairo, 20, 30, 40, 50);
        cairo_fill(cairo);
        EndPaint(window, &paint);
        return true;
    });
    ShowWindow(window, SW_SHOW);
    pumpAll();
    const auto clusters = win32FindClusters(win32Grab(window), 0xFF0000, 0, 100);
    ASSERT_EQ(clusters.size(), 1U);
    EXPECT_EQ(clusters[0].left, 20);
    EXPECT_EQ(clusters[0].top, 30);
    EXPECT_EQ(clusters[0].right, 60);
    EXPECT_EQ(clusters[0].bottom, 80);
    window.setHandler(nullptr);
}

TEST(Windows, CaptionIsDrawnWithoutAWindowManager) {
    TestWindow window(WS_OVERLAPPEDWINDOW, {100, 100, 400, 300});
    ShowWindow(window, SW_SHOW);
    pumpAll();
    POINT origin{};
    ClientToScreen(window, &origin);
    EXPECT_EQ(origin.y, 100 + GetSystemMetrics(SM_CYCAPTION));
    const COLORREF color = GetSysColor(COLOR_ACTIVECAPTION);
    const DWORD pixel = static_cast<DWORD>(GetRValue(color)) << 16 |
                        static_cast<DWORD>(GetGValue(color)) << 8 | static_cast<DWORD>(GetBValue(color));
    EXPECT_FALSE(win32FindClusters(win32Grab(window), pixel, 0, 1000).empty());
    // Its close button closes the window.
    ASSERT_TRUE(win32PointerClick(400 - 8, 100 + 8));
    EXPECT_TRUE(pumpUntil([&window] { return window.handle() == nullptr; }));
}

TEST(Windows, CrossThreadSendRunsOnTheWindowsThread) {
    TestWindow window;
    const DWORD mainThread = GetCurrentThreadId();
    std::atomic<bool> answered{false};
    window.setHandler([&](UINT message, WPARAM wParam, LPARAM, LRESULT& result) {
        if (message != WM_APP + 1) {
            return false;
        }
        EXPECT_EQ(GetCurrentThreadId(), mainThread);
        EXPECT_TRUE(InSendMessage());
        result = static_cast<LRESULT>(wParam) * 2;
        return true;
    });
    std::atomic<LRESULT> result{0};
    std::thread worker([&] {
        result = SendMessageW(window, WM_APP + 1, 21, 0);
        answered = true;
    });
    EXPECT_TRUE(pumpUntil([&answered] { return answered.load(); }));
    worker.join();
    EXPECT_EQ(result, 42);
    EXPECT_FALSE(InSendMessage());
}

TEST(Windows, SentMessageIsHandledBeforePostedOnes) {
    TestWindow window;
    std::vector<UINT> order;
    window.setHandler([&order](UINT message, WPARAM, LPARAM, LRESULT&) {
        if (message >= WM_APP) {
            order.push_back(message);
        }
        return false;
    });
    PostMessageW(window, WM_APP + 1, 0, 0);
    std::atomic<bool> sending{false};
    std::thread worker([&] {
        sending = true;
        SendMessageW(window, WM_APP + 2, 0, 0);
    });
    while (!sending) {
        std::this_thread::yield();
    }
    // Give the worker time to get from setting its flag into SendMessage.
    Sleep(200);
    pumpAll();
    worker.join();
    const std::vector<UINT> expected = {WM_APP + 2, WM_APP + 1};
    EXPECT_EQ(order, expected);
}

TEST(Windows, MessageToADestroyedWindowFails) {
    HWND handle = nullptr;
    {
        const TestWindow window;
        handle = window;
        PostMessageW(handle, WM_APP, 0, 0);
    }
    SetLastError(0);
    EXPECT_FALSE(PostMessageW(handle, WM_APP, 0, 0));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
    EXPECT_EQ(SendMessageW(handle, WM_APP, 0, 0), 0);
    // Messages posted before the window was destroyed are discarded.
    EXPECT_EQ(takeMessage().message, static_cast<UINT>(WM_NULL));
}

TEST(Windows, WindowTimersAreRemovedWithTheWindow) {
    UINT_PTR id = 0;
    {
        const TestWindow window;
        id = SetTimer(window, 4, USER_TIMER_MINIMUM, nullptr);
        EXPECT_EQ(id, 4U);
    }
    Sleep(3 * USER_TIMER_MINIMUM);
    EXPECT_EQ(takeMessage().message, static_cast<UINT>(WM_NULL));
}

TEST(Windows, BroadcastReachesTopLevelWindowsOnly) {
    TestWindow first;
    TestWindow second;
    TestWindow child(WS_CHILD, {0, 0, 10, 10}, first);
    PostMessageW(HWND_BROADCAST, WM_APP + 3, 0, 0);
    pumpAll();
    EXPECT_EQ(first.count(WM_APP + 3), 1);
    EXPECT_EQ(second.count(WM_APP + 3), 1);
    EXPECT_EQ(child.count(WM_APP + 3), 0);
}

TEST(Windows, WindowFilterIncludesItsChildren) {
    TestWindow first;
    TestWindow second;
    const TestWindow child(WS_CHILD, {0, 0, 10, 10}, first);
    PostMessageW(second, WM_APP, 0, 0);
    PostMessageW(child, WM_APP, 0, 0);
    MSG message;
    ASSERT_TRUE(PeekMessageW(&message, first, WM_APP, WM_APP, PM_REMOVE));
    EXPECT_EQ(message.hwnd, child.handle());
    EXPECT_FALSE(PeekMessageW(&message, first, WM_APP, WM_APP, PM_REMOVE));
}
