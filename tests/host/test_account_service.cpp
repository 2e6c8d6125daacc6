#include <gtest/gtest.h>

#include "host/ZR_AccountService.h"
#include "tests/host/FakeAccount.h"

namespace {

class AccountService : public testing::Test {
protected:
    AccountService() { FakeAccount::reset(); }

    FakeArxHost host;
};

}  // namespace

TEST_F(AccountService, ReturnsTheSignedInUsersToken) {
    FakeAccount::offer(host);
    FakeAccount::token = _T("eyJ.token");
    EXPECT_TRUE(ZR_AccountService::accessToken() == _T("eyJ.token"));
    EXPECT_EQ(FakeAccount::tokenCalls, 1);
}

TEST_F(AccountService, TokenIsEmptyWhenNobodyIsSignedIn) {
    FakeAccount::offer(host);
    EXPECT_TRUE(ZR_AccountService::accessToken().IsEmpty());
}

TEST_F(AccountService, FetchesALongTokenCompletely) {
    FakeAccount::offer(host);
    FakeAccount::token = CString(_T('x'), 10000);
    EXPECT_TRUE(ZR_AccountService::accessToken() == FakeAccount::token);
    EXPECT_EQ(FakeAccount::lastCapacity, 10001);
}

TEST_F(AccountService, FetchesATokenOfAboutTheBufferSizeCompletely) {
    FakeAccount::offer(host);
    for (const int length : {4095, 4096, 4097}) {
        FakeAccount::token = CString(_T('x'), length);
        EXPECT_EQ(ZR_AccountService::accessToken().GetLength(), length);
    }
}

TEST_F(AccountService, IgnoresATokenTooLongForAHeader) {
    FakeAccount::offer(host);
    FakeAccount::token = CString(_T('x'), 3 * 1024 * 1024);
    EXPECT_TRUE(ZR_AccountService::accessToken().IsEmpty());
}

TEST_F(AccountService, TreatsANegativeLengthAsNoToken) {
    host.setService(_T("ZR_ACCOUNT"), "zrAccountAccessToken",
                    reinterpret_cast<void*>(+[](ACHAR* buffer, int) {
                        buffer[0] = _T('x');
                        buffer[1] = 0;
                        return -1;
                    }));
    EXPECT_TRUE(ZR_AccountService::accessToken().IsEmpty());
}

TEST_F(AccountService, ReportsWhetherSignInSucceeded) {
    FakeAccount::offer(host);
    EXPECT_FALSE(ZR_AccountService::signIn());
    FakeAccount::signInSucceeds = true;
    EXPECT_TRUE(ZR_AccountService::signIn());
    EXPECT_EQ(FakeAccount::signInCalls, 2);
}

TEST_F(AccountService, HasNoUserInAHostWithoutTheService) {
    EXPECT_TRUE(ZR_AccountService::accessToken().IsEmpty());
    EXPECT_FALSE(ZR_AccountService::signIn());
}
