#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "service/Database.h"

namespace zentri::service {

/// A session's messages, oldest first; the last one is the question to answer.
struct Conversation {
    std::vector<Message> messages;
    std::string model;  ///< Model named in the client's request; may be empty.
};

/// Receives an answer piece by piece, on the thread that called Answerer::answer(). Once a call has returned
/// false, nothing more is sent (the client has disconnected, the service is stopping or a fault has ended the
/// stream), and the answerer should return.
class AnswerSink {
public:
    virtual ~AnswerSink() = default;

    /// Sends the next piece of the answer immediately: any UTF-8, possibly empty.
    virtual bool write(std::string_view piece) = 0;
    /// Sleeps before the next piece; returns early when the stream ends.
    virtual bool pause(std::chrono::milliseconds time) = 0;
    /// Whether the answer is still being read, for use while there is nothing to send.
    virtual bool alive() = 0;
};

/// Answers questions. One instance serves all requests; its methods are called concurrently.
class Answerer {
public:
    virtual ~Answerer() = default;

    /// Writes the whole answer to `sink`. A source that fails is reported to the user in the answer text, not
    /// by an exception.
    virtual void answer(const Conversation& conversation, AnswerSink& sink) = 0;

    /// The source of the answers, in one line for the health page.
    virtual std::string description() const = 0;
};

}  // namespace zentri::service
