#include <windows.h>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatModuleState.h"
#include "tests/chat/ManagerTest.h"

// In a message loop that is not Qt's, Qt delivers posted events only when the thread's message queue is
// empty. So a click that is queued already overtakes the signals that a thread has posted before.

namespace {

constexpr UINT kClick = WM_APP + 30;

class OvertakingInput : public ManagerTest {
protected:
    /// The host's message loop, until a click arrives.
    static void pumpUntilClick() {
        MSG message = {};
        while (GetMessageW(&message, nullptr, 0, 0) > 0 && message.message != kClick) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
};

}  // namespace

TEST_F(OvertakingInput, OpensASessionAndLeavesThePostedAnswerInItsOwn) {
    makeManager();
    FakeAnswer answer(m_calls);
    loadHistory({"a"});
    answerCreate("s1");
    m_server.answer(kChatTarget, "data:A\n\n");
    m_manager->send(_T("Q"), true, &answer);
    ASSERT_TRUE(g_zentriChatThread->wait(kWaitLimitMs));
    PostThreadMessageW(GetCurrentThreadId(), kClick, 0, 0);
    pumpUntilClick();
    EXPECT_TRUE(m_calls.isEmpty()) << "the signals were posted before the click and are still waiting";
    m_manager->openSession(_T("a"));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(current(), texts({"0:Q a"}));
    EXPECT_EQ(listed(_T("s1")), texts({"0:Q", "1:A"}));
}
