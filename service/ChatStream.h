#pragma once

#include <functional>
#include <string>

#include "service/Answerer.h"
#include "service/FaultPlan.h"
#include "service/StopSignal.h"
#include "service/Text.h"

namespace zentri::service {

/// The reply of one chat request: turns the pieces of an answer into events on the connection, one write per
/// event, keeps what has been sent, and makes the faults of the stream happen.
class ChatStream : public AnswerSink {
public:
    /// The connection below. Both return false when the client has gone.
    struct Connection {
        std::function<bool(std::string_view)> write;
        std::function<bool()> alive;
    };

    /// How the reply is to be ended.
    enum class End { Proper, Cut };

    ChatStream(Connection connection, StopSignal& stop, const RequestFaults& faults);

    bool write(std::string_view piece) override;
    bool pause(std::chrono::milliseconds time) override;
    bool alive() override;

    /// To be called once, when the answerer is done.
    End finish();

    /// The answer as far as it has been sent, with LF line ends: what belongs into the history.
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
    std::string m_held;  ///< The answer so far, when it is to go out as one huge event.
    long m_events = 0;
    bool m_begun = false;
    bool m_ended = false;      ///< A fault ended the stream, or the client has gone.
    bool m_endProper = false;  ///< The fault that ended it lets the reply end properly.
};

}  // namespace zentri::service
