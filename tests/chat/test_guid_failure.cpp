#include <gtest/gtest.h>
#include <sys/random.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "chat/ZR_AiChatManager.h"

// A system without random numbers: the tests replace the function from which the SDK's slice gets them. (On
// Windows the tests replace CoCreateGuid itself.)

namespace {
bool g_fails = false;
}  // namespace

ssize_t getrandom(void* buffer, std::size_t size, unsigned flags) {
    if (g_fails) {
        errno = ENOSYS;
        return -1;
    }
    return syscall(SYS_getrandom, buffer, size, flags);
}

TEST(GuidFailure, GivesAnEmptyText) {
    EXPECT_FALSE(ZR_AiChatManager::makeGuid().IsEmpty());
    g_fails = true;
    EXPECT_TRUE(ZR_AiChatManager::makeGuid().IsEmpty());
    g_fails = false;
}
