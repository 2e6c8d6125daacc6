#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "service/Options.h"

namespace zentri::service {

/// A service that cannot start; the text is one line for the user.
class StartError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The whole service, as the program and tests run it. Construct, start, stop; each once, from one thread.
class Service {
public:
    /// Opens the database, reads the topics and fills the seed history. Throws StartError.
    explicit Service(const Options& options);
    ~Service();
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    /// Binds the address and serves on threads of its own; requests are accepted when this returns. Throws
    /// StartError.
    void start();

    /// Cuts the running streams, lets the other requests finish and joins every thread.
    void stop();

    /// False before start, after stop, and when the listening socket broke.
    bool isRunning() const;

    int port() const;
    /// "http://127.0.0.1:8090", with the real port.
    std::string url() const;

    /// The built-in answer to one question.
    std::string answerTo(const std::string& question) const;

private:
    struct Parts;

    const Options m_options;
    std::unique_ptr<Parts> m_parts;
};

}  // namespace zentri::service
