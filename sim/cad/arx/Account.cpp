#include "sim/cad/arx/Account.h"

#include <acadstrc.h>
#include <adesk.h>
#include <afxwin.h>

#include <algorithm>
#include <utility>

#include "sim/cad/app/WideText.h"

namespace cad {

namespace {

Account* g_account = nullptr;

// The default token for which `zentri-service --seed demo` creates example conversations.
constexpr const char* kDemoToken = "demo";

}  // namespace

extern "C" {

/// Copies the signed-in user's token into `buffer`, truncated to `capacity` and null-terminated. Returns the
/// untruncated length; 0 if no user is signed in.
static int zrAccountAccessToken(ACHAR* buffer, int capacity) {
    const CString token = g_account == nullptr ? CString() : toWide(g_account->token());
    if (buffer != nullptr && capacity > 0) {
        const int copied = std::min(token.GetLength(), capacity - 1);
        std::copy_n(token.GetString(), copied, buffer);
        buffer[copied] = 0;
    }
    return token.GetLength();
}

/// Returns non-zero if a user is signed in afterwards.
static int zrAccountSignIn() {
    return g_account != nullptr && g_account->signIn() ? 1 : 0;
}
}

Account::Account(std::string token, bool mayAsk) : m_token(std::move(token)), m_mayAsk(mayAsk) {
    g_account = this;
}

Account::~Account() {
    g_account = nullptr;
}

void* Account::symbol(const std::string& name) {
    if (name == "zrAccountAccessToken") {
        return reinterpret_cast<void*>(&zrAccountAccessToken);
    }
    if (name == "zrAccountSignIn") {
        return reinterpret_cast<void*>(&zrAccountSignIn);
    }
    return nullptr;
}

bool Account::signIn() {
    if (m_token.empty() && m_mayAsk) {
        const int answer =
            AfxMessageBox(_T("登录云账户？\n\n本机将以演示用户的身份登录。"), MB_YESNO | MB_ICONQUESTION);
        if (answer == IDYES) {
            m_token = kDemoToken;
        }
    }
    return !m_token.empty();
}

}  // namespace cad
