#pragma once

#include <string>

namespace cad {

/// The user's account and the host's implementation of the account service "ZR_ACCOUNT". Not to be confused
/// with two parts of the module: ZR_AccountService looks this service up in the host and calls it;
/// ZR_ZentriAccount.h has the module's own signed-in state. One instance at a time; UI thread.
class Account {
public:
    /// With an empty token no user is signed in. With `mayAsk`, signIn() asks the user; otherwise it fails.
    Account(std::string token, bool mayAsk);
    Account(const Account&) = delete;
    Account& operator=(const Account&) = delete;
    ~Account();

    /// The address of an exported function of the service by name; null if there is none.
    static void* symbol(const std::string& name);

    const std::string& token() const { return m_token; }
    /// Shows a message box if no user is signed in. True if a user is signed in afterwards.
    bool signIn();

private:
    std::string m_token;
    bool m_mayAsk;
};

}  // namespace cad
