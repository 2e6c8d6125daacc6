#include "service/UpstreamParser.h"

#include <nlohmann/json.hpp>

namespace zentri::service {

namespace {

using nlohmann::json;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kDone = "[DONE]";

std::string stringAt(const json& object, const char* key) {
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

/// "error" is an object with a message on most servers, a plain string on some.
std::string errorText(const json& object) {
    const auto error = object.find("error");
    if (error == object.end() || error->is_null()) {
        return {};
    }
    if (error->is_string()) {
        return error->get<std::string>();
    }
    const std::string message = error->is_object() ? stringAt(*error, "message") : std::string();
    return message.empty() ? error->dump() : message;
}

UpstreamDelta parseReply(const std::string& text, const char* member) {
    UpstreamDelta delta;
    const json object = json::parse(text, nullptr, false);
    if (!object.is_object()) {
        delta.valid = false;
        return delta;
    }
    delta.error = errorText(object);
    const auto choices = object.find("choices");
    if (choices == object.end() || !choices->is_array()) {
        delta.valid = !delta.error.empty();
        return delta;
    }
    // The last event may carry only usage statistics, so empty choices are not an error.
    if (choices->empty() || !choices->front().is_object()) {
        return delta;
    }
    const json& choice = choices->front();
    const auto content = choice.find(member);
    if (content != choice.end() && content->is_object()) {
        delta.text = stringAt(*content, "content");
    }
    delta.finished = !stringAt(choice, "finish_reason").empty();
    return delta;
}

}  // namespace

void SseParser::feed(std::string_view bytes) {
    for (const char c : bytes) {
        const bool afterCr = m_lastWasCr;
        m_lastWasCr = c == '\r';
        if (c == '\n' && afterCr) {
            continue;
        }
        if (c == '\r' || c == '\n') {
            endLine();
        } else {
            m_line += c;
        }
    }
}

void SseParser::finish() {
    if (!m_line.empty()) {
        endLine();
    }
    dispatch();
}

void SseParser::endLine() {
    std::string_view line = m_line;
    if (m_firstLine && line.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        line.remove_prefix(kByteOrderMark.size());
    }
    m_firstLine = false;
    if (line.empty()) {
        dispatch();
    } else {
        const std::size_t colon = line.find(':');
        // A comment begins with the colon, so its field name is empty; fields other than data are ignored.
        if (line.substr(0, colon) == "data") {
            std::string_view value =
                colon == std::string_view::npos ? std::string_view() : line.substr(colon + 1);
            if (!value.empty() && value.front() == ' ') {
                value.remove_prefix(1);
            }
            if (m_hasData) {
                m_data += '\n';
            }
            m_data += value;
            m_hasData = true;
        }
    }
    m_line.clear();
}

void SseParser::dispatch() {
    if (!m_hasData) {
        return;
    }
    const std::string data = std::move(m_data);
    m_data.clear();
    m_hasData = false;
    m_event(data);
}

UpstreamDelta parseDelta(const std::string& data) {
    if (data == kDone) {
        UpstreamDelta done;
        done.finished = true;
        return done;
    }
    return parseReply(data, "delta");
}

UpstreamDelta parseCompletion(const std::string& body) {
    return parseReply(body, "message");
}

}  // namespace zentri::service
