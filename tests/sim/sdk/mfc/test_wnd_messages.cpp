#include "mfc_app.h"

namespace {

const UINT kOwnMessage = WM_USER + 7;
UINT g_registered = 0;

/// Records the arguments of its handlers.
class Base : public CWnd {
public:
    std::vector<std::string> m_log;
    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        m_log.clear();
        return SendMessage(message, wParam, lParam);
    }

protected:
    void log(LPCTSTR format, ...) {
        va_list arguments;
        va_start(arguments, format);
        CString text;
        text.FormatV(format, arguments);
        va_end(arguments);
        m_log.push_back(utf8(text));
    }

    void OnSize(UINT type, int cx, int cy) { log(_T("size:%u,%d,%d"), type, cx, cy); }
    void OnMove(int x, int y) { log(_T("move:%d,%d"), x, y); }
    void OnSizing(UINT side, LPRECT rect) {
        log(_T("sizing:%u,%d"), side, rect->right);
        rect->right = 77;
    }
    void OnLButtonDown(UINT flags, CPoint p) { log(_T("ldown:%u,%d,%d"), flags, p.x, p.y); }
    void OnLButtonUp(UINT flags, CPoint p) { log(_T("lup:%u,%d,%d"), flags, p.x, p.y); }
    void OnLButtonDblClk(UINT flags, CPoint p) { log(_T("ldbl:%u,%d,%d"), flags, p.x, p.y); }
    void OnRButtonDown(UINT flags, CPoint p) { log(_T("rdown:%u,%d,%d"), flags, p.x, p.y); }
    void OnMouseMove(UINT flags, CPoint p) { log(_T("move:%u,%d,%d"), flags, p.x, p.y); }
    BOOL OnMouseWheel(UINT flags, short delta, CPoint p) {
        log(_T("wheel:%u,%d,%d,%d"), flags, delta, p.x, p.y);
        return TRUE;
    }
    void OnKeyDown(UINT key, UINT repeats, UINT flags) { log(_T("down:%u,%u,%X"), key, repeats, flags); }
    void OnKeyUp(UINT key, UINT repeats, UINT flags) { log(_T("up:%u,%u,%X"), key, repeats, flags); }
    void OnChar(UINT c, UINT repeats, UINT flags) { log(_T("char:%c,%u,%X"), c, repeats, flags); }
    void OnSysKeyDown(UINT key, UINT repeats, UINT flags) {
        log(_T("sysdown:%u,%u,%X"), key, repeats, flags);
    }
    void OnSysKeyUp(UINT key, UINT repeats, UINT flags) { log(_T("sysup:%u,%u,%X"), key, repeats, flags); }
    void OnTimer(UINT_PTR id) { log(_T("timer:%Iu"), id); }
    void OnSetFocus(CWnd* old) { log(_T("focus:%d"), old == this); }
    void OnKillFocus(CWnd* next) { log(_T("unfocus:%d"), next == nullptr); }
    void OnActivate(UINT state, CWnd* other, BOOL minimized) {
        log(_T("activate:%u,%d,%d"), state, other == this, minimized);
    }
    void OnShowWindow(BOOL show, UINT status) { log(_T("show:%d,%u"), show, status); }
    BOOL OnEraseBkgnd(CDC* dc) {
        log(_T("erase:%d"), dc->GetSafeHdc() == reinterpret_cast<HDC>(UINT_PTR(0x55)));
        return TRUE;
    }
    void OnClose() { log(_T("close")); }
    LRESULT OnOwn(WPARAM wParam, LPARAM lParam) {
        log(_T("own:%u,%d"), static_cast<UINT>(wParam), static_cast<int>(lParam));
        return 99;
    }
    LRESULT OnRegistered(WPARAM wParam, LPARAM) {
        log(_T("registered:%u"), static_cast<UINT>(wParam));
        return 98;
    }
    void OnFirst() { log(_T("command:first")); }
    void OnRange(UINT id) { log(_T("command:range,%u"), id); }
    void OnControl() { log(_T("control")); }

    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Base, CWnd)
ON_WM_SIZE()
ON_WM_MOVE()
ON_WM_SIZING()
ON_WM_LBUTTONDOWN()
ON_WM_LBUTTONUP()
ON_WM_LBUTTONDBLCLK()
ON_WM_RBUTTONDOWN()
ON_WM_MOUSEMOVE()
ON_WM_MOUSEWHEEL()
ON_WM_KEYDOWN()
ON_WM_KEYUP()
ON_WM_CHAR()
ON_WM_SYSKEYDOWN()
ON_WM_SYSKEYUP()
ON_WM_TIMER()
ON_WM_SETFOCUS()
ON_WM_KILLFOCUS()
ON_WM_ACTIVATE()
ON_WM_SHOWWINDOW()
ON_WM_ERASEBKGND()
ON_WM_CLOSE()
ON_MESSAGE(kOwnMessage, &Base::OnOwn)
ON_REGISTERED_MESSAGE(g_registered, &Base::OnRegistered)
ON_COMMAND(100, &Base::OnFirst)
ON_COMMAND_RANGE(200, 209, &Base::OnRange)
ON_CONTROL(5, 300, &Base::OnControl)
END_MESSAGE_MAP()

/// Overrides some of its base class's handlers.
class Derived : public Base {
protected:
    void OnSize(UINT type, int cx, int cy) {
        log(_T("derived"));
        Base::OnSize(type, cx, cy);
    }
    void OnFirst() { log(_T("command:derived")); }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Derived, Base)
ON_WM_SIZE()
ON_COMMAND(100, &Derived::OnFirst)
END_MESSAGE_MAP()

/// Throws from its handlers.
class Thrower : public CWnd {
public:
    enum class What { user, file } m_what = What::user;
    bool m_failCreate = false;
    bool m_throwInCreate = false;
    int m_handled = 0;
    int m_ended = 0;

protected:
    int OnCreate(LPCREATESTRUCT createStruct) {
        if (m_throwInCreate) {
            AfxThrowUserException();
        }
        return m_failCreate ? -1 : CWnd::OnCreate(createStruct);
    }
    void OnPaint() { AfxThrowUserException(); }
    LRESULT OnOwn(WPARAM, LPARAM) {
        ++m_handled;
        AfxThrowUserException();
    }
    void PostNcDestroy() override { ++m_ended; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Thrower, CWnd)
ON_WM_CREATE()
ON_WM_PAINT()
ON_MESSAGE(kOwnMessage, &Thrower::OnOwn)
END_MESSAGE_MAP()

/// Calls the base class's handler with other arguments; the default handling must use the original ones.
class Defaulter : public CWnd {
public:
    WPARAM m_seen = 0;

protected:
    void OnSize(UINT type, int cx, int cy) { CWnd::OnSize(type + 1, cx, cy); }
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_SIZE) {
            m_seen = wParam;
        }
        return CWnd::DefWindowProc(message, wParam, lParam);
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Defaulter, CWnd)
ON_WM_SIZE()
END_MESSAGE_MAP()

class EmptyMap : public CWnd {
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(EmptyMap, CWnd)
END_MESSAGE_MAP()

LPARAM point(int x, int y) {
    return MAKELPARAM(static_cast<WORD>(x), static_cast<WORD>(y));
}

}  // namespace

TEST(MessageMap, HandlersReceiveTheirArguments) {
    TestApp app;
    Base window;
    ASSERT_TRUE(createHidden(window));
    const auto entry = [&window](UINT message, WPARAM wParam, LPARAM lParam) {
        window.send(message, wParam, lParam);
        return joined(window.m_log);
    };
    EXPECT_EQ(entry(WM_SIZE, SIZE_MAXIMIZED, point(640, 480)), "size:2,640,480");
    EXPECT_EQ(entry(WM_MOVE, 0, point(-5, 7)), "move:-5,7");
    EXPECT_EQ(entry(WM_LBUTTONDOWN, MK_LBUTTON, point(3, -4)), "ldown:1,3,-4");
    EXPECT_EQ(entry(WM_LBUTTONUP, 0, point(3, 4)), "lup:0,3,4");
    EXPECT_EQ(entry(WM_LBUTTONDBLCLK, 0, point(3, 4)), "ldbl:0,3,4");
    EXPECT_EQ(entry(WM_RBUTTONDOWN, 0, point(-1, -1)), "rdown:0,-1,-1");
    EXPECT_EQ(entry(WM_MOUSEMOVE, 0, point(9, 9)), "move:0,9,9");
    EXPECT_EQ(entry(WM_MOUSEWHEEL, MAKEWPARAM(8, static_cast<WORD>(-120)), point(-3, 4)),
              "wheel:8,-120,-3,4");
    EXPECT_EQ(entry(WM_KEYDOWN, 'A', MAKELPARAM(2, 0x1E)), "down:65,2,1E");
    EXPECT_EQ(entry(WM_KEYUP, 'A', MAKELPARAM(1, 0xC01E)), "up:65,1,C01E");
    EXPECT_EQ(entry(WM_CHAR, 0x6714, MAKELPARAM(1, 0)), "char:朔,1,0");
    EXPECT_EQ(entry(WM_SYSKEYDOWN, VK_MENU, MAKELPARAM(1, 0x2038)), "sysdown:18,1,2038");
    EXPECT_EQ(entry(WM_SYSKEYUP, VK_MENU, MAKELPARAM(1, 0xC038)), "sysup:18,1,C038");
    EXPECT_EQ(entry(WM_TIMER, 5, 0), "timer:5");
    EXPECT_EQ(entry(WM_SETFOCUS, reinterpret_cast<WPARAM>(window.m_hWnd), 0), "focus:1");
    EXPECT_EQ(entry(WM_KILLFOCUS, 0, 0), "unfocus:1");
    EXPECT_EQ(entry(WM_ACTIVATE, MAKEWPARAM(1, 1), reinterpret_cast<LPARAM>(window.m_hWnd)),
              "activate:1,1,1");
    EXPECT_EQ(entry(WM_SHOWWINDOW, TRUE, 3), "show:1,3");
    EXPECT_EQ(entry(WM_ERASEBKGND, 0x55, 0), "erase:1");
    EXPECT_EQ(entry(WM_CLOSE, 0, 0), "close");
    RECT rect = {0, 0, 10, 10};
    EXPECT_EQ(entry(WM_SIZING, 2, reinterpret_cast<LPARAM>(&rect)), "sizing:2,10");
    EXPECT_EQ(rect.right, 77);
}

TEST(MessageMap, HandlerResultsAreReturned) {
    TestApp app;
    Base window;
    ASSERT_TRUE(createHidden(window));
    EXPECT_EQ(window.send(kOwnMessage, 3, -4), 99);
    EXPECT_EQ(joined(window.m_log), "own:3,-4");
    g_registered = RegisterWindowMessageW(_T("zentri.test.message"));
    EXPECT_GE(g_registered, 0xC000U);
    EXPECT_EQ(window.send(g_registered, 6), 98);
    EXPECT_EQ(joined(window.m_log), "registered:6");
    EXPECT_EQ(window.send(WM_ERASEBKGND, 0x55), TRUE);
}

TEST(MessageMap, TheDerivedMapIsSearchedBeforeItsBase) {
    TestApp app;
    Derived window;
    ASSERT_TRUE(createHidden(window));
    window.send(WM_SIZE, 0, point(1, 2));
    EXPECT_EQ(joined(window.m_log), "derived size:0,1,2");
    window.send(WM_TIMER, 8);
    EXPECT_EQ(joined(window.m_log), "timer:8");
    window.send(WM_COMMAND, 100);
    EXPECT_EQ(joined(window.m_log), "command:derived");
}

TEST(MessageMap, CommandsAreRoutedByIdAndCode) {
    TestApp app;
    Base window;
    ASSERT_TRUE(createHidden(window));
    window.send(WM_COMMAND, 100);
    EXPECT_EQ(joined(window.m_log), "command:first");
    window.send(WM_COMMAND, 205);
    EXPECT_EQ(joined(window.m_log), "command:range,205");
    window.send(WM_COMMAND, 210);
    EXPECT_EQ(joined(window.m_log), "");
    // From a control: the notification code must match.
    window.send(WM_COMMAND, MAKEWPARAM(300, 5), reinterpret_cast<LPARAM>(window.m_hWnd));
    EXPECT_EQ(joined(window.m_log), "control");
    window.send(WM_COMMAND, MAKEWPARAM(300, 6), reinterpret_cast<LPARAM>(window.m_hWnd));
    EXPECT_EQ(joined(window.m_log), "");
}

TEST(MessageMap, DefaultUsesTheOriginalArguments) {
    TestApp app;
    Defaulter window;
    ASSERT_TRUE(createHidden(window));
    window.SendMessage(WM_SIZE, SIZE_MAXIMIZED, point(1, 1));
    EXPECT_EQ(window.m_seen, static_cast<WPARAM>(SIZE_MAXIMIZED));
}

TEST(MessageMap, AnEmptyMapPassesEverythingToTheBase) {
    TestApp app;
    EmptyMap window;
    ASSERT_TRUE(createHidden(window));
    window.SetWindowText(_T("标题"));
    CString text;
    window.GetWindowText(text);
    EXPECT_EQ(utf8(text), "标题");
}

TEST(HandlerException, IsCaughtInTheWindowProcedure) {
    TestApp app;
    Thrower window;
    ASSERT_TRUE(createHidden(window));
    EXPECT_EQ(window.SendMessage(kOwnMessage), 0);
    EXPECT_EQ(window.SendMessage(kOwnMessage), 0);
    EXPECT_EQ(window.m_handled, 2);
    EXPECT_TRUE(IsWindow(window.m_hWnd));
}

TEST(HandlerException, InCreationCancelsTheWindow) {
    TestApp app;
    Thrower window;
    window.m_throwInCreate = true;
    EXPECT_FALSE(createHidden(window));
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(window.m_ended, 1);
}

TEST(HandlerException, InPaintingValidatesTheWindow) {
    TestApp app;
    Thrower window;
    ASSERT_TRUE(
        window.CreateEx(0, nullptr, _T("shown"), WS_POPUP | WS_VISIBLE, 0, 0, 100, 100, nullptr, nullptr));
    window.Invalidate();
    window.UpdateWindow();
    EXPECT_FALSE(GetUpdateRect(window.m_hWnd, nullptr, FALSE));
}

TEST(WindowLife, CreationCancelledByOnCreateDestroysTheWindow) {
    TestApp app;
    Thrower window;
    window.m_failCreate = true;
    EXPECT_FALSE(createHidden(window));
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(window.m_ended, 1);
    window.m_failCreate = false;
    EXPECT_TRUE(createHidden(window));
}

TEST(WindowLife, AnUnknownClassCreatesNoWindow) {
    TestApp app;
    Thrower window;
    EXPECT_FALSE(window.CreateEx(0, _T("no such class"), nullptr, WS_POPUP, 0, 0, 1, 1, nullptr, nullptr));
    EXPECT_EQ(window.m_ended, 1);
    // The next window is still attached to its own object.
    EXPECT_TRUE(createHidden(window));
    EXPECT_EQ(CWnd::FromHandlePermanent(window.m_hWnd), &window);
}

TEST(WindowLife, DestroyingDetachesAndCallsPostNcDestroy) {
    TestApp app;
    Thrower window;
    ASSERT_TRUE(createHidden(window));
    const HWND handle = window.m_hWnd;
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), &window);
    EXPECT_TRUE(window.DestroyWindow());
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(window.m_ended, 1);
    EXPECT_EQ(CWnd::FromHandlePermanent(handle), nullptr);
    EXPECT_FALSE(IsWindow(handle));
    EXPECT_FALSE(window.DestroyWindow());
}

TEST(WindowLife, TheDestructorDestroysTheWindow) {
    TestApp app;
    HWND handle = nullptr;
    {
        CWnd window;
        ASSERT_TRUE(createHidden(window));
        handle = window.m_hWnd;
    }
    EXPECT_FALSE(IsWindow(handle));
}

TEST(HandleMap, OtherHandlesGetTemporaryObjects) {
    TestApp app;
    CWnd window;
    ASSERT_TRUE(createHidden(window));
    EXPECT_EQ(CWnd::FromHandle(window.m_hWnd), &window);
    const HWND other = CreateWindowExW(0, AfxRegisterWndClass(0), _T("other"), WS_POPUP, 0, 0, 10, 10,
                                       nullptr, nullptr, AfxGetInstanceHandle(), nullptr);
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(other), nullptr);
    CWnd* const temporary = CWnd::FromHandle(other);
    ASSERT_NE(temporary, nullptr);
    EXPECT_EQ(temporary->m_hWnd, other);
    EXPECT_EQ(CWnd::FromHandle(other), temporary);
    CWnd::DeleteTempMap();
    EXPECT_TRUE(IsWindow(other));  // only the object is deleted
    EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
    DestroyWindow(other);
}

TEST(HandleMap, AttachedWindowsAreMappedButNotSubclassed) {
    TestApp app;
    const HWND other = CreateWindowExW(0, AfxRegisterWndClass(0), _T("other"), WS_POPUP, 0, 0, 10, 10,
                                       nullptr, nullptr, AfxGetInstanceHandle(), nullptr);
    Base window;
    ASSERT_TRUE(window.Attach(other));
    EXPECT_EQ(CWnd::FromHandlePermanent(other), &window);
    window.send(WM_TIMER, 1);
    EXPECT_TRUE(window.m_log.empty());
    EXPECT_EQ(window.Detach(), other);
    EXPECT_EQ(CWnd::FromHandlePermanent(other), nullptr);

    ASSERT_TRUE(window.SubclassWindow(other));
    window.send(WM_TIMER, 1);
    EXPECT_EQ(joined(window.m_log), "timer:1");
    EXPECT_EQ(window.UnsubclassWindow(), other);
    SendMessageW(other, WM_TIMER, 2, 0);
    EXPECT_EQ(joined(window.m_log), "timer:1");
    DestroyWindow(other);
}

TEST(WindowClass, EqualAttributesShareAName) {
    TestApp app;
    const CString first(AfxRegisterWndClass(CS_DBLCLKS));
    const CString second(AfxRegisterWndClass(CS_HREDRAW));
    EXPECT_TRUE(first == AfxRegisterWndClass(CS_DBLCLKS));
    EXPECT_TRUE(first != second);
    EXPECT_EQ(utf8(first.Left(4)), "Afx:");
}
