#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zentri::service {

/// Parses a stream of server-sent events as the standard defines it: line ends CR, LF or CR LF, comments,
/// several data lines per event, a byte-order mark, chunk boundaries anywhere.
class SseParser {
public:
    /// Called from feed() and finish() with the data of each event that has any.
    using Event = std::function<void(const std::string& data)>;

    explicit SseParser(Event event) : m_event(std::move(event)) {}

    void feed(std::string_view bytes);
    /// Ends the stream. Unlike the standard, this still delivers an event without its terminating empty line.
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

/// The content of one event of a chat-completions stream.
struct UpstreamDelta {
    std::string text;
    std::string error;      ///< The server's message when it reports an error.
    bool finished = false;  ///< "[DONE]" or a finish reason.
    bool valid = true;      ///< False: not JSON, or JSON of another shape.
};

/// Parses the data of one event. Does not throw on malformed data.
UpstreamDelta parseDelta(const std::string& data);

/// Parses a complete reply, from a server that did not stream as requested, or the body of an error.
UpstreamDelta parseCompletion(const std::string& body);

}  // namespace zentri::service
