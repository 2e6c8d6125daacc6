#include "mfc_app.h"

namespace {

const UINT kOwnMessage = WM_USER + 9;

std::vector<std::string> g_order;

/// Records PreTranslateMessage ("name") and the dispatched message ("name!").
class Offered : public CWnd {
public:
    explicit Offered(const char* name) : m_name(name) {}
    bool m_take = false;

    BOOL PreTranslateMessage(MSG* msg) override {
        if (msg->message == kOwnMessage) {
            g_order.push_back(m_name);
        }
        return m_take || CWnd::PreTranslateMessage(msg);
    }

protected:
    LRESULT OnOwn(WPARAM, LPARAM) {
        g_order.push_back(m_name + "!");
        return 0;
    }
    DECLARE_MESSAGE_MAP()

private:
    std::string m_name;
};

BEGIN_MESSAGE_MAP(Offered, CWnd)
ON_MESSAGE(kOwnMessage, &Offered::OnOwn)
END_MESSAGE_MAP()

/// A main window with a child and a grandchild, and a second top-level window.
class PreTranslate : public ::testing::Test {
protected:
    void SetUp() override {
        g_order.clear();
        ASSERT_TRUE(createHidden(m_main));
        const RECT rect = {0, 0, 50, 50};
        ASSERT_TRUE(m_child.Create(nullptr, nullptr, 0, rect, &m_main, 2));
        ASSERT_TRUE(m_grandchild.Create(nullptr, nullptr, 0, rect, &m_child, 3));
        ASSERT_TRUE(createHidden(m_elsewhere));
        m_app.m_pMainWnd = &m_main;
    }
    void TearDown() override {
        m_app.m_pMainWnd = nullptr;  // or destroying it would post WM_QUIT to the next test
        m_elsewhere.DestroyWindow();
        m_grandchild.DestroyWindow();
        m_child.DestroyWindow();
        m_main.DestroyWindow();
    }
    std::string pumped(const CWnd& window) {
        g_order.clear();
        ::PostMessageW(window.m_hWnd, kOwnMessage, 0, 0);
        // Other messages may precede it in the queue.
        do {
            EXPECT_TRUE(AfxPumpMessage());
        } while (m_app.GetCurrentMsg().message != kOwnMessage);
        return joined(g_order);
    }

    TestApp m_app;
    Offered m_main{"main"};
    Offered m_child{"child"};
    Offered m_grandchild{"grandchild"};
    Offered m_elsewhere{"elsewhere"};
};

}  // namespace

TEST_F(PreTranslate, WalksUpToTheMainWindowAndThenDispatches) {
    EXPECT_EQ(pumped(m_grandchild), "grandchild child main grandchild!");
    EXPECT_EQ(pumped(m_main), "main main!");
}

TEST_F(PreTranslate, TheFirstHandlerEndsTheWalkAndPreventsDispatch) {
    m_child.m_take = true;
    EXPECT_EQ(pumped(m_grandchild), "grandchild child");
    m_grandchild.m_take = true;
    EXPECT_EQ(pumped(m_grandchild), "grandchild");
}

TEST_F(PreTranslate, TheWalkEndsAtTheStopWindow) {
    MSG msg = {};
    msg.hwnd = m_grandchild.m_hWnd;
    msg.message = kOwnMessage;
    EXPECT_FALSE(CWnd::WalkPreTranslateTree(m_child.m_hWnd, &msg));
    EXPECT_EQ(joined(g_order), "grandchild child");
    g_order.clear();
    EXPECT_FALSE(CWnd::WalkPreTranslateTree(nullptr, &msg));
    EXPECT_EQ(joined(g_order), "grandchild child main");
}

TEST_F(PreTranslate, MessagesOfAnotherTreeReachTheMainWindowLast) {
    EXPECT_EQ(pumped(m_elsewhere), "elsewhere main elsewhere!");
    m_main.m_take = true;
    EXPECT_EQ(pumped(m_elsewhere), "elsewhere main");
}

TEST_F(PreTranslate, WindowsWithoutAnObjectAreSkipped) {
    const RECT rect = {0, 0, 10, 10};
    const HWND plain = CreateWindowExW(0, AfxRegisterWndClass(0), nullptr, WS_CHILD, 0, 0, 10, 10,
                                       m_child.m_hWnd, nullptr, AfxGetInstanceHandle(), nullptr);
    ASSERT_NE(plain, nullptr);
    Offered inner("inner");
    ASSERT_TRUE(inner.CreateEx(0, nullptr, nullptr, WS_CHILD, rect.left, rect.top, 10, 10, plain, nullptr));
    EXPECT_EQ(pumped(inner), "inner child main inner!");
    inner.DestroyWindow();
}
