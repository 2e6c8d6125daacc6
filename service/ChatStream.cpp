#include "service/ChatStream.h"

#include <algorithm>

#include "service/EventWriter.h"

namespace zentri::service {

namespace {

constexpr std::string_view kEmptyEvent = "data:\n\n";
constexpr std::string_view kInvalidUtf8Event = "data:\xE4\xBD\xFF\xFE\n\n";
constexpr std::chrono::milliseconds kPauseOfNeverEnding{5};
constexpr std::chrono::milliseconds kLookForClient{100};

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

}  // namespace

ChatStream::ChatStream(Connection connection, StopSignal& stop, const RequestFaults& faults)
    : m_connection(std::move(connection)), m_stop(stop), m_faults(faults) {}

bool ChatStream::write(std::string_view piece) {
    if (!begin()) {
        return false;
    }
    const std::string text = m_lineEnds.feed(piece);
    if (text.empty()) {
        return alive();
    }
    if (m_faults.has(FaultKind::HugeEvent)) {
        m_held += text;
        return alive();
    }
    return sendText(text);
}

bool ChatStream::pause(std::chrono::milliseconds time) {
    // Sleep in slices, so that a disconnected client does not occupy its thread for a long pause.
    while (time.count() > 0 && alive()) {
        const std::chrono::milliseconds slice = std::min(time, kLookForClient);
        if (m_stop.waitFor(slice)) {
            break;
        }
        time -= slice;
    }
    return alive();
}

bool ChatStream::alive() {
    if (!m_ended && (m_stop.stopped() || !m_connection.alive())) {
        m_ended = true;
    }
    return !m_ended;
}

ChatStream::End ChatStream::finish() {
    if (begin()) {
        const std::string rest = m_lineEnds.finish();
        if (m_faults.has(FaultKind::HugeEvent)) {
            m_held += rest;
            sendHugeEvent();
        } else if (!rest.empty()) {
            sendText(rest);
        }
        if (!m_ended && m_faults.has(FaultKind::NeverEnding)) {
            repeatForEver();
        }
    }
    return m_ended && !m_endProper ? End::Cut : End::Proper;
}

bool ChatStream::begin() {
    if (m_ended || m_begun) {
        return !m_ended;
    }
    m_begun = true;
    if (m_faults.has(FaultKind::InvalidUtf8) && !sendBytes(kInvalidUtf8Event)) {
        return false;
    }
    for (long i = m_faults.number(FaultKind::EmptyEvents).value_or(0); i > 0; --i) {
        if (!sendBytes(kEmptyEvent)) {
            return false;
        }
    }
    return true;
}

bool ChatStream::sendText(const std::string& text) {
    if (m_faults.has(FaultKind::CrLf)) {
        if (!sendEvent(EventWriter::event(text, "\r\n"))) {
            return false;
        }
    } else {
        for (const std::string& event : EventWriter::eventsOf(text)) {
            if (!sendEvent(event)) {
                return false;
            }
        }
    }
    m_delivered += text;
    return true;
}

bool ChatStream::sendEvent(std::string_view event) {
    if (!alive()) {
        return false;
    }
    if (m_faults.number(FaultKind::CutAfter).value_or(m_events + 1) <= m_events) {
        m_ended = true;
        return false;
    }
    for (const FaultKind kind : {FaultKind::CutInEvent, FaultKind::EndInEvent, FaultKind::CutInChar}) {
        if (m_faults.number(kind).value_or(m_events + 1) > m_events) {
            continue;
        }
        std::size_t cut = event.size() / 2;
        if (kind == FaultKind::CutInChar) {
            cut = 0;
            while (cut < event.size() && !isContinuation(event[cut])) {
                ++cut;
            }
            if (cut == event.size()) {
                break;  // ASCII only: wait for an event with a multi-byte character.
            }
        }
        sendBytes(event.substr(0, cut));
        m_endProper = kind == FaultKind::EndInEvent && !m_ended;
        m_ended = true;
        return false;
    }
    ++m_events;
    return sendBytes(event);
}

bool ChatStream::sendBytes(std::string_view bytes) {
    if (!m_ended && !m_connection.write(bytes)) {
        m_ended = true;
    }
    return !m_ended;
}

bool ChatStream::sendHugeEvent() {
    const auto size = static_cast<std::size_t>(m_faults.number(FaultKind::HugeEvent).value_or(0));
    const std::string answer = m_held.empty() ? "。" : m_held;
    while (m_held.size() < size) {
        m_held += answer;
    }
    return sendText(m_held);
}

bool ChatStream::repeatForEver() {
    const std::string answer = m_delivered.empty() ? "。" : m_delivered;
    const std::vector<std::string> events = EventWriter::eventsOf(answer);
    for (;;) {
        for (const std::string& event : events) {
            if (!sendEvent(event) || !pause(kPauseOfNeverEnding)) {
                return false;
            }
        }
    }
}

}  // namespace zentri::service
