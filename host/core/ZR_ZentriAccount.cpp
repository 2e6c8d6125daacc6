#include "host/core/ZR_ZentriAccount.h"

#include <mutex>

namespace {

struct Account {
    std::mutex mutex;
    bool signedIn = false;
    CString token;
};

Account& account() {
    // Never destroyed: a worker thread may still read it while the process exits.
    static Account* const instance = new Account;
    return *instance;
}

}  // namespace

bool zentriSignedIn() {
    const std::lock_guard<std::mutex> lock(account().mutex);
    return account().signedIn;
}

void setZentriSignedIn(bool signedIn) {
    const std::lock_guard<std::mutex> lock(account().mutex);
    account().signedIn = signedIn;
}

CString zentriAccessToken() {
    const std::lock_guard<std::mutex> lock(account().mutex);
    return account().token;
}

void setZentriAccessToken(const CString& token) {
    const std::lock_guard<std::mutex> lock(account().mutex);
    account().token = token;
}

CString zentriRequestToken() {
    const std::lock_guard<std::mutex> lock(account().mutex);
    return account().signedIn ? account().token : CString();
}

bool zentriHasAccess() {
    return !zentriRequestToken().IsEmpty();
}
