#include "service/Seeder.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "service/Clock.h"
#include "service/EmbeddedFiles.h"
#include "service/File.h"
#include "service/Text.h"

namespace zentri::service {

namespace {

using nlohmann::json;

constexpr const char* kDemo = "demo";
constexpr const char* kConversationsFile = "conversations.txt";
/// A createTime up to this value is in seconds, a greater one in milliseconds.
constexpr std::int64_t kLargestSeconds = 1'000'000'000'000;
constexpr std::int64_t kMsPerSecond = 1000;
/// Gap between messages without a createTime.
constexpr std::int64_t kUntimedStepMs = 20 * kMsPerSecond;

Message messageFromJson(const json& object, std::int64_t fallbackMs) {
    if (!object.is_object()) {
        throw SeedError("a message is not an object");
    }
    const json role = object.value("role", json());
    const json text = object.value("message", json());
    if (!text.is_string() || (role != "user" && role != "assistant")) {
        throw SeedError("a message needs a 'role' ('user' or 'assistant') and a 'message' string");
    }
    Message message;
    message.role = role == "user" ? Role::User : Role::Assistant;
    message.text = text.get<std::string>();
    message.timeMs = fallbackMs;
    if (const auto time = object.find("createTime"); time != object.end()) {
        if (!time->is_number_integer()) {
            throw SeedError("a createTime is not an integer");
        }
        message.timeMs = time->get<std::int64_t>();
        if (message.timeMs <= kLargestSeconds) {
            message.timeMs *= kMsPerSecond;
        }
    }
    return message;
}

}  // namespace

std::string stableSessionId(std::string_view seed, std::string_view token, std::size_t index) {
    const std::string digest =
        sha256Hex(std::string(seed) + '\n' + std::string(token) + '\n' + std::to_string(index));
    return digest.substr(0, 8) + '-' + digest.substr(8, 4) + '-' + digest.substr(12, 4) + '-' +
           digest.substr(16, 4) + '-' + digest.substr(20, 12);
}

std::vector<ScriptedConversation> parseConversations(std::string_view text, const std::string& name) {
    std::vector<ScriptedConversation> conversations;
    int lineNumber = 0;
    const auto fail = [&](const char* what) {
        throw SeedError(name + ":" + std::to_string(lineNumber) + ": " + what);
    };
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        const std::string_view line = trimmed(text.substr(start, end - start));
        start = end + 1;
        ++lineNumber;
        if (line == "== zh" || line == "== en") {
            conversations.push_back({line == "== en", {}});
            continue;
        }
        const std::string_view mark = line.substr(0, 2);
        if (conversations.empty()) {
            if (!line.empty()) {
                fail("text before the first '== zh' or '== en'");
            }
            continue;
        }
        std::vector<Message>& messages = conversations.back().messages;
        if (mark == "Q:" || mark == "A:") {
            messages.push_back(
                {mark == "Q:" ? Role::User : Role::Assistant, std::string(trimmed(line.substr(2))), 0});
        } else if (!messages.empty() && !line.empty()) {
            messages.back().text.append("\n").append(line);
        } else if (!line.empty()) {
            fail("text before the first 'Q:'");
        }
    }
    return conversations;
}

std::vector<SeededSession> parseSeedFile(std::string_view text, std::string_view token, std::int64_t nowMs) {
    const json root = json::parse(text, nullptr, false);
    if (root.is_discarded()) {
        throw SeedError("it is not valid JSON");
    }
    if (!root.is_object() || !root.contains("sessions") || !root["sessions"].is_array()) {
        throw SeedError("it has no array 'sessions'");
    }
    const std::string key = sha256Hex(text);
    std::vector<SeededSession> sessions;
    for (const json& object : root["sessions"]) {
        if (!object.is_object() || !object.contains("messages") || !object["messages"].is_array() ||
            object["messages"].empty()) {
            throw SeedError("a session has no messages");
        }
        SeededSession session;
        session.id = stableSessionId(key, token, sessions.size());
        if (const auto title = object.find("title"); title != object.end()) {
            if (!title->is_string()) {
                throw SeedError("a title is not a string");
            }
            session.title = title->get<std::string>();
        }
        std::int64_t next = nowMs - kUntimedStepMs * static_cast<std::int64_t>(object["messages"].size());
        for (const json& message : object["messages"]) {
            session.messages.push_back(messageFromJson(message, next));
            next = session.messages.back().timeMs + kUntimedStepMs;
        }
        sessions.push_back(std::move(session));
    }
    return sessions;
}

void seedHistory(Database& database, const KnowledgeBase& knowledge, const std::string& seed,
                 const std::string& token, int demoSessions) {
    const std::int64_t user = database.userOfToken(token);
    if (seed == kDemo) {
        const DemoHistory demo(knowledge,
                               parseConversations(embeddedFile(kConversationsFile), kConversationsFile));
        database.seed(user, std::string("demo:") + std::to_string(demoSessions),
                      demo.make(token, demoSessions, nowMs()));
        return;
    }
    const std::optional<std::string> text = readFile(seed);
    if (!text) {
        throw SeedError("cannot read the seed file '" + seed + "'");
    }
    try {
        database.seed(user, "file:" + sha256Hex(*text), parseSeedFile(*text, token, nowMs()));
    } catch (const SeedError& error) {
        throw SeedError("bad seed file '" + seed + "': " + error.what());
    }
}

}  // namespace zentri::service
