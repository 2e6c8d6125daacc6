#pragma once

#include <chrono>
#include <string>

#include "service/Answerer.h"

namespace zentri::service {

/// Address and parameters of a chat-completions server.
struct UpstreamSettings {
    std::string origin;                ///< "https://host:port"
    std::string path;                  ///< "/v1/chat/completions"
    std::string model;                 ///< Empty: the model the client names.
    std::string key;                   ///< Sent as a bearer token when not empty.
    std::string caFile;                ///< CA certificates to trust (PEM); empty: the system's.
    std::chrono::seconds timeout{60};  ///< Longest time without data.
};

/// Splits the server's base URL and completes its path: "/v1" becomes "/v1/chat/completions", as does an
/// empty path. Throws std::invalid_argument with a message for the user.
UpstreamSettings upstreamFromUrl(const std::string& url);

/// Forwards questions to an OpenAI-compatible chat-completions server and passes its answer on as it arrives.
/// Failures of that server are reported to the user in the answer text. Each answer() uses a connection and a
/// thread of its own.
class UpstreamAnswerer : public Answerer {
public:
    explicit UpstreamAnswerer(UpstreamSettings settings) : m_settings(std::move(settings)) {}

    void answer(const Conversation& conversation, AnswerSink& sink) override;
    std::string description() const override;

private:
    std::string requestBody(const Conversation& conversation) const;

    const UpstreamSettings m_settings;
};

}  // namespace zentri::service
