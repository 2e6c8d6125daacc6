#include <win32_control.h>

#include <atomic>
#include <thread>

#include "mfc_app.h"

namespace {

/// A main window with a timer that answers the open message box from the box's modal loop.
class BoxTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_window.CreateEx(0, nullptr, _T("main"), WS_POPUP | WS_VISIBLE, 0, 0, 300, 200, nullptr,
                                      nullptr));
        m_app.m_pMainWnd = &m_window;
        s_test = this;
        m_window.SetTimer(1, 20, &BoxTest::onTimer);
    }
    void TearDown() override {
        s_test = nullptr;
        m_app.m_pMainWnd = nullptr;
        m_window.DestroyWindow();
    }

    static void CALLBACK onTimer(HWND, UINT, UINT_PTR, DWORD) {
        const std::vector<Win32MessageBox> boxes = win32MessageBoxes();
        if (s_test == nullptr || boxes.empty()) {
            return;
        }
        const Win32MessageBox& box = boxes.back();
        s_test->m_caption = CString(box.caption.c_str());
        s_test->m_text = CString(box.text.c_str());
        s_test->m_type = box.type;
        s_test->m_ownerEnabled = ::IsWindowEnabled(s_test->m_window.m_hWnd);
        EXPECT_TRUE(win32AnswerMessageBox(box.window, s_test->m_answer));
    }

    static BoxTest* s_test;
    TestApp m_app;
    CWnd m_window;
    int m_answer = IDOK;
    CString m_caption;
    CString m_text;
    UINT m_type = 0;
    BOOL m_ownerEnabled = TRUE;
};

BoxTest* BoxTest::s_test = nullptr;

}  // namespace

TEST_F(BoxTest, ShowsTheTextAndAppNameOwnedByTheMainWindow) {
    EXPECT_EQ(AfxMessageBox(_T("文字")), IDOK);
    EXPECT_EQ(utf8(m_text), "文字");
    EXPECT_EQ(utf8(m_caption), "MFC test");
    EXPECT_EQ(m_type, MB_OK | MB_ICONEXCLAMATION);
    EXPECT_FALSE(m_ownerEnabled);
    EXPECT_TRUE(m_window.IsWindowEnabled());
}

TEST_F(BoxTest, ReturnsTheButtonAndChoosesADefaultIcon) {
    m_answer = IDNO;
    EXPECT_EQ(AfxMessageBox(_T("?"), MB_YESNO), IDNO);
    EXPECT_EQ(m_type, MB_YESNO | MB_ICONQUESTION);
    m_answer = IDYES;
    EXPECT_EQ(AfxMessageBox(_T("?"), MB_YESNO | MB_ICONWARNING), IDYES);
    EXPECT_EQ(m_type, MB_YESNO | MB_ICONWARNING);
}

TEST_F(BoxTest, HasNoOwnerWhenShownFromAnotherThread) {
    std::atomic<int> answer{0};
    m_answer = IDYES;
    std::thread worker([this, &answer] {
        answer = AfxMessageBox(_T("worker"), MB_YESNO);
        ::PostMessageW(m_window.m_hWnd, WM_NULL, 0, 0);
    });
    while (answer == 0) {
        ASSERT_TRUE(AfxPumpMessage());
    }
    worker.join();
    EXPECT_EQ(answer, IDYES);
    EXPECT_EQ(utf8(m_text), "worker");
    EXPECT_TRUE(m_ownerEnabled);
}

TEST_F(BoxTest, ReportsAnExceptionThatEscapesAHandler) {
    /// Throws from WM_USER.
    class Failing : public CWnd {
    protected:
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
            if (message == WM_USER) {
                AfxThrowFileException(CFileException::fileNotFound, 2, _T("a.dwg"));
            }
            return CWnd::WindowProc(message, wParam, lParam);
        }
    };
    Failing window;
    ASSERT_TRUE(createHidden(window));
    EXPECT_EQ(window.SendMessage(WM_USER), 0);
    EXPECT_EQ(utf8(m_text), "a.dwg was not found.");
    EXPECT_EQ(m_type & MB_ICONMASK, MB_ICONSTOP);
}
