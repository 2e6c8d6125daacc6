#pragma once

#include <string>

namespace cad {

/// The user's account, as the account service of the program offers it to modules. UI thread.
class Account {
public:
    /// With `mayAsk` a sign-in asks the user; otherwise it is refused.
    Account(std::string token, bool mayAsk);
    Account(const Account&) = delete;
    Account& operator=(const Account&) = delete;
    ~Account();

    /// The address of a function of the service, or null.
    static void* symbol(const std::string& name);

    const std::string& token() const { return m_token; }
    /// True when somebody is signed in afterwards.
    bool signIn();

private:
    std::string m_token;
    bool m_mayAsk;
};

}  // namespace cad
