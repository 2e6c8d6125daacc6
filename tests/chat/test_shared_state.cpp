#include <atomic>
#include <thread>

#include "chat/ZR_AiChatModuleState.h"
#include "tests/chat/FakeChat.h"

// State shared by the UI thread and the streaming thread. The tests do not synchronise through Qt, whose
// locks the thread sanitizer cannot see, so each of its reports is a real race.

namespace {

constexpr int kRounds = 20000;

/// Calls a function repeatedly on a thread of its own while it exists.
class Repeatedly {
public:
    template <typename Function>
    explicit Repeatedly(Function function)
        : m_thread([this, function] {
              while (!m_stop) {
                  function();
                  ++m_count;
              }
          }) {
        while (m_count == 0) {
            std::this_thread::yield();
        }
    }

    ~Repeatedly() {
        m_stop = true;
        m_thread.join();
    }

private:
    std::atomic<bool> m_stop{false};
    std::atomic<int> m_count{0};
    std::thread m_thread;
};

class SharedState : public ChatTest {};

}  // namespace

TEST_F(SharedState, TheFlagMayBeReadWhileItIsWritten) {
    m_manager = std::make_unique<TestManager>();
    std::atomic<int> seen{0};
    const Repeatedly reading([&] { seen += g_zentriCommunicating ? 1 : 0; });
    for (int i = 0; i < kRounds || (seen == 0 && i < 100 * kRounds); ++i) {
        m_manager->onStreamStart();
        m_manager->onStreamEnd();
    }
    EXPECT_GT(seen, 0);
    EXPECT_FALSE(g_zentriCommunicating);
}
