#include <cstdlib>

#include "host/core/ZR_ZentriAccount.h"
#include "tests/chat/FakeChat.h"

// The host exits without waiting for the worker threads, so the state that they use must outlive all static
// objects of the module.

namespace {

constexpr int kIntact = 0;
constexpr int kDestroyed = 3;

/// Constructed before the module's static objects, so that it is destroyed after them.
class LastDestroyed {
public:
    ~LastDestroyed() {
        if (checks) {
            std::_Exit(zentriHasAccess() && zentriAccessToken() == _T("token-1") ? kIntact : kDestroyed);
        }
    }

    bool checks = false;
};

LastDestroyed g_lastDestroyed;

class ProcessExit : public ChatTest {
protected:
    ProcessExit() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

}  // namespace

TEST_F(ProcessExit, KeepsTheAccountForThreadsThatStillRun) {
    EXPECT_EXIT(
        {
            g_lastDestroyed.checks = true;
            std::exit(kDestroyed);
        },
        testing::ExitedWithCode(kIntact), "");
}
