// The connectivity check.

#include "win32_support.h"
#include "wininet.h"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string>

namespace {

constexpr int kConnectMilliseconds = 5000;

struct Target {
    std::string host;
    std::string port;
};

/// Host and port of "scheme://user@host:port/path"; the host is empty when the URL is malformed.
Target targetOf(const std::string& url) {
    const std::size_t schemeEnd = url.find("://");
    if (schemeEnd == std::string::npos) {
        return {};
    }
    const std::string scheme = url.substr(0, schemeEnd);
    const std::size_t start = schemeEnd + 3;
    std::string authority = url.substr(start, url.find_first_of("/?#", start) - start);
    if (const std::size_t user = authority.find_last_of('@'); user != std::string::npos) {
        authority.erase(0, user + 1);
    }
    Target target;
    target.port = scheme == "https" ? "443" : scheme == "ftp" ? "21" : "80";
    std::size_t portMark = authority.find_last_of(':');
    if (!authority.empty() && authority.front() == '[') {
        const std::size_t close = authority.find(']');
        if (close == std::string::npos) {
            return {};
        }
        target.host = authority.substr(1, close - 1);
        portMark =
            close + 1 < authority.size() && authority[close + 1] == ':' ? close + 1 : std::string::npos;
    } else {
        target.host = authority.substr(0, portMark);
    }
    if (portMark != std::string::npos) {
        target.port = authority.substr(portMark + 1);
    }
    return target;
}

bool connects(const addrinfo& address) {
    const int descriptor =
        socket(address.ai_family, address.ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, address.ai_protocol);
    if (descriptor < 0) {
        return false;
    }
    bool connected = connect(descriptor, address.ai_addr, address.ai_addrlen) == 0;
    if (!connected && errno == EINPROGRESS) {
        pollfd waiting{descriptor, POLLOUT, 0};
        int error = 0;
        socklen_t size = sizeof error;
        connected = poll(&waiting, 1, kConnectMilliseconds) == 1 &&
                    getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0;
    }
    close(descriptor);
    return connected;
}

}  // namespace

BOOL InternetCheckConnectionW(LPCWSTR url, DWORD flags, DWORD) {
    if (url == nullptr || (flags & FLAG_ICC_FORCE_CONNECTION) == 0) {
        win32::unsupported("InternetCheckConnection", "anything but a forced check of an address");
    }
    const Target target = targetOf(win32::toUtf8(url));
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (target.host.empty() || getaddrinfo(target.host.c_str(), target.port.c_str(), &hints, &found) != 0) {
        return win32::failWith<BOOL>(ERROR_NOT_CONNECTED, FALSE);
    }
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> addresses(found, &freeaddrinfo);
    for (const addrinfo* address = addresses.get(); address != nullptr; address = address->ai_next) {
        if (connects(*address)) {
            return TRUE;
        }
    }
    return win32::failWith<BOOL>(ERROR_NOT_CONNECTED, FALSE);
}
