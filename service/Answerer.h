#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "service/Database.h"

namespace zentri::service {

/// A session's messages, oldest first; the last one is the question to be answered.
struct Conversation {
    std::vector<Message> messages;
    std::string model;  ///< The model the client asked for; may be empty.
};

/// Where an answer goes. Once a call returned false nobody listens any more, and the answerer should return.
class AnswerSink {
public:
    virtual ~AnswerSink() = default;

    /// Sends the next piece of the answer at once (any UTF-8, also empty).
    virtual bool write(std::string_view piece) = 0;
    /// Waits before the next piece.
    virtual bool pause(std::chrono::milliseconds time) = 0;
    /// For looking whether anybody still listens while there is nothing to send.
    virtual bool alive() = 0;
};

/// Answers questions. One object serves all requests, from several threads at once.
class Answerer {
public:
    virtual ~Answerer() = default;

    /// Writes the whole answer. What goes wrong is told in the answer itself; nothing is thrown for that.
    virtual void answer(const Conversation& conversation, AnswerSink& sink) = 0;

    /// One line for the health page.
    virtual std::string description() const = 0;
};

}  // namespace zentri::service
