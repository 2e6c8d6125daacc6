#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "service/Options.h"

namespace zentri::service {

/// The service cannot start; what() is one line for the user.
class StartError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The complete service, as run by the program and the tests. Construct, start() and stop() it once each, all
/// from one thread.
class Service {
public:
    /// Opens the database, loads the topics and seeds the history. Throws StartError.
    explicit Service(const Options& options);
    /// Stops the service if it is running.
    ~Service();
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    /// Binds the address and starts the server's threads; requests are accepted once it returns. Throws
    /// StartError.
    void start();

    /// Cuts the running streams, lets the other requests finish and joins all threads.
    void stop();

    /// False before start(), after stop() and when the listening socket has failed.
    bool isRunning() const;

    /// The bound port, also for a requested port of 0; valid after start().
    int port() const;
    /// The base URL with the bound port, such as "http://127.0.0.1:8090"; valid after start().
    std::string url() const;

    /// The built-in answer to one question; does not need start().
    std::string answerTo(const std::string& question) const;

private:
    struct Parts;

    const Options m_options;
    std::unique_ptr<Parts> m_parts;
};

}  // namespace zentri::service
