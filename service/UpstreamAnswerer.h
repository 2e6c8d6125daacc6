#pragma once

#include <chrono>
#include <string>

#include "service/Answerer.h"

namespace zentri::service {

/// Where and how a chat-completions server is asked.
struct UpstreamSettings {
    std::string origin;                ///< "https://host:port"
    std::string path;                  ///< "/v1/chat/completions"
    std::string model;                 ///< Empty: the model the client asks for.
    std::string key;                   ///< Sent as a bearer token when not empty.
    std::string caFile;                ///< Extra certificates to trust; empty: the system's.
    std::chrono::seconds timeout{60};  ///< Longest silence.
};

/// Splits the server's base address and completes its path: ".../v1" gets "/chat/completions", a bare host
/// gets
/// "/v1/chat/completions". Throws std::invalid_argument with a text for the user.
UpstreamSettings upstreamFromUrl(const std::string& url);

/// Has another server answer (any that speaks the OpenAI-compatible chat-completions call) and passes its
/// words on as they come. What goes wrong there is told to the client as the answer.
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
