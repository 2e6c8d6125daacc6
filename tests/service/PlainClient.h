#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zentri::service {

/// The client's parser for the stream, in its plainest form: collects bytes, splits them at each empty line
/// and removes every "data:" from an event. Bytes after the last empty line are never delivered.
class PlainClient {
public:
    void receive(std::string_view bytes) {
        m_buffer += bytes;
        for (std::size_t end = m_buffer.find("\n\n"); end != std::string::npos; end = m_buffer.find("\n\n")) {
            std::string event = m_buffer.substr(0, end);
            for (std::size_t at = event.find("data:"); at != std::string::npos;
                 at = event.find("data:", at)) {
                event.erase(at, 5);
            }
            m_buffer.erase(0, end + 2);
            m_events.push_back(event);
        }
    }

    const std::vector<std::string>& events() const { return m_events; }
    const std::string& unfinished() const { return m_buffer; }

    std::string answer() const {
        std::string text;
        for (const std::string& event : m_events) {
            text += event;
        }
        return text;
    }

private:
    std::string m_buffer;
    std::vector<std::string> m_events;
};

}  // namespace zentri::service
