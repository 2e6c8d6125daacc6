#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zentri::service {

/// Takes a server-sent-event stream apart as the standard says: line ends CR, LF or CR LF, comments, several
/// data lines per event, a byte-order mark, chunks cut anywhere.
class SseParser {
public:
    /// Called with the data of each event that has any.
    using Event = std::function<void(const std::string& data)>;

    explicit SseParser(Event event) : m_event(std::move(event)) {}

    void feed(std::string_view bytes);
    /// The stream is over: an event without its closing empty line is still handed on.
    void finish();

private:
    void endLine();
    void dispatch();

    Event m_event;
    std::string m_line;
    std::string m_data;
    bool m_hasData = false;
    bool m_lastWasCr = false;
    bool m_firstLine = true;
};

/// What one event of a chat-completions stream says.
struct UpstreamDelta {
    std::string text;
    std::string error;      ///< The server's own words when it reports an error.
    bool finished = false;  ///< "[DONE]" or a finish reason.
    bool valid = true;      ///< False: not JSON, or JSON of another shape.
};

UpstreamDelta parseDelta(const std::string& data);

/// A complete reply that came unstreamed although a stream was asked for; also the body of an error.
UpstreamDelta parseCompletion(const std::string& body);

}  // namespace zentri::service
