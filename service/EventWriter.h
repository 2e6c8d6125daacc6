#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zentri::service {

/// Writes text as server-sent events for a client whose parser is simpler than the standard's: it splits the
/// stream at each empty line, removes every "data:" from an event, at any position, and strips nothing else.
///
/// Each line of the text is therefore sent as "data:" directly followed by the line (a space after the colon
/// would become part of the answer), and an empty line as a bare "data:" (so that consecutive line feeds do
/// not end the event). A "data:" within the text is split across two events, where the client does not
/// recognise it. The client thus reassembles exactly the text.
class EventWriter {
public:
    /// The events for a text with LF line ends, each with its terminating empty line; none for an empty text.
    static std::vector<std::string> eventsOf(std::string_view text);

    /// The text as a single event with the given line end ("\n", or "\r\n" to test clients). A "data:" within
    /// the text is not split.
    static std::string event(std::string_view text, std::string_view lineEnd);
};

}  // namespace zentri::service
