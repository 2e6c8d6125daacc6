#include <cstdlib>

#include "host/core/ZR_ZentriAccount.h"
#include "tests/chat/FakeChat.h"

// The host ends its process without waiting for the worker threads, so what they use must outlive every
// destructor of the module.

namespace {

constexpr int kStillThere = 0;
constexpr int kGone = 3;

/// Made before anything of the module's is, so that it is destroyed after all of that.
class LastToGo {
public:
    ~LastToGo() {
        if (asks) {
            std::_Exit(zentriHasAccess() && zentriAccessToken() == _T("token-1") ? kStillThere : kGone);
        }
    }

    bool asks = false;
};

LastToGo g_lastToGo;

class ProcessExit : public ChatTest {
protected:
    ProcessExit() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

}  // namespace

TEST_F(ProcessExit, LeavesTheAccountToTheThreadsThatStillAskForIt) {
    EXPECT_EXIT(
        {
            g_lastToGo.asks = true;
            std::exit(kGone);
        },
        testing::ExitedWithCode(kStillThere), "");
}
