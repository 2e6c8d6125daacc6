#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zentri::service {

/// Writes text as server-sent events for a client that is simpler than the standard's: it cuts the stream at
/// each empty line, removes every "data:" from an event, wherever it stands, and strips nothing else.
///
/// So each line of a text goes out as "data:" directly followed by the line (a blank after the colon would
/// stay in the answer), an empty line as a bare "data:" (which keeps the two line feeds apart), and a "data:"
/// that belongs to the text is cut in two, half in one event and half in the next, where the client cannot
/// see it. What the client puts together is then exactly the text.
class EventWriter {
public:
    /// The events of a text, each complete with its empty line; none for an empty text. The text's line ends
    /// are LF.
    static std::vector<std::string> eventsOf(std::string_view text);

    /// One event of several lines with the line end that is asked for ("\n", or "\r\n" to test a client).
    static std::string event(std::string_view text, std::string_view lineEnd);
};

}  // namespace zentri::service
