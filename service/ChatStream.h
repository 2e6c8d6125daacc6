#pragma once

#include <functional>
#include <string>

#include "service/Answerer.h"
#include "service/FaultPlan.h"
#include "service/StopSignal.h"
#include "service/Text.h"

namespace zentri::service {

/// The reply to one chat request: writes the pieces of an answer to the connection as events, one write per
/// event, records what was sent and applies the chat faults. Used only by the thread that serves the request.
class ChatStream : public AnswerSink {
public:
    /// The underlying connection. Both functions return false once the client has disconnected.
    struct Connection {
        std::function<bool(std::string_view)> write;
        std::function<bool()> alive;
    };

    /// How to end the reply: with the terminating chunk, or by closing the connection without it.
    enum class End { Proper, Cut };

    /// `stop` must outlive the stream.
    ChatStream(Connection connection, StopSignal& stop, const RequestFaults& faults);

    bool write(std::string_view piece) override;
    bool pause(std::chrono::milliseconds time) override;
    bool alive() override;

    /// Sends what is still held back. To be called once, after the answerer has returned.
    End finish();

    /// The part of the answer that was sent, with LF line ends; this is what the history stores.
    const std::string& delivered() const { return m_delivered; }

private:
    bool sendText(const std::string& text);
    bool sendEvent(std::string_view event);
    bool sendBytes(std::string_view bytes);
    bool begin();
    bool sendHugeEvent();
    bool repeatForEver();

    Connection m_connection;
    StopSignal& m_stop;
    RequestFaults m_faults;
    LineEndNormalizer m_lineEnds;
    std::string m_delivered;
    std::string m_held;    ///< The answer so far, held back for the huge-event fault.
    long m_events = 0;     ///< Whole events of the answer that were sent.
    bool m_begun = false;  ///< The faults that precede the answer were applied.
    bool m_ended = false;  ///< A fault ended the stream, the client disconnected or the service is stopping.
    bool m_endProper = false;  ///< The fault that ended the stream lets the reply end properly.
};

}  // namespace zentri::service
