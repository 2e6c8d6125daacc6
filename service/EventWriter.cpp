#include "service/EventWriter.h"

#include <algorithm>

namespace zentri::service {

namespace {

constexpr std::string_view kField = "data:";

}  // namespace

std::vector<std::string> EventWriter::eventsOf(std::string_view text) {
    std::vector<std::string> events;
    while (!text.empty()) {
        const std::size_t literal = text.find(kField);
        // Split before the colon: this event's text ends with "data" and the next one's begins with ":", so
        // neither contains "data:".
        const std::size_t end = literal == std::string_view::npos ? text.size() : literal + kField.size() - 1;
        events.push_back(event(text.substr(0, end), "\n"));
        text.remove_prefix(end);
    }
    return events;
}

std::string EventWriter::event(std::string_view text, std::string_view lineEnd) {
    std::string event;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        event.append(kField).append(text.substr(start, end - start)).append(lineEnd);
        start = end + 1;
    }
    return event.append(lineEnd);
}

}  // namespace zentri::service
