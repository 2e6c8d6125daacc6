#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "service/BuiltInAnswerer.h"
#include "service/Database.h"
#include "service/KnowledgeBase.h"

namespace zentri::service {

/// An unusable seed; what() is one line for the user.
class SeedError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A hand-written conversation; its messages have no times yet.
struct ScriptedConversation {
    bool english = false;
    std::vector<Message> messages;
};

/// A session id in the form of a UUID, always the same for the same seed, token and index.
std::string stableSessionId(std::string_view seed, std::string_view token, std::size_t index);

/// Parses hand-written conversations: a line "== zh" or "== en" begins one, followed by turns of "Q: text"
/// and "A: text" of one or more lines each. `name` is the file name for error messages. Throws SeedError.
std::vector<ScriptedConversation> parseConversations(std::string_view text, const std::string& name);

/// Generates a realistic history: `count` sessions over the two years before `nowMs`, during the day, denser
/// towards the end, in Chinese and English, with one to about a dozen questions each; the newest are from
/// today and yesterday. The same arguments give the same history in the same time zone.
class DemoHistory {
public:
    /// `knowledge` must outlive this object.
    DemoHistory(const KnowledgeBase& knowledge, std::vector<ScriptedConversation> scripted);

    std::vector<SeededSession> make(std::string_view token, int count, std::int64_t nowMs) const;

private:
    const KnowledgeBase& m_knowledge;
    BuiltInAnswerer m_answerer;
    std::vector<ScriptedConversation> m_scripted;
};

/// Parses a seed file:
///
///     {"sessions": [{"title": "…",
///                    "messages": [{"role": "user", "message": "…", "createTime": 1700000000}]}]}
///
/// Titles and times may be omitted; times are seconds or milliseconds since 1970. `token` enters into the
/// session ids, and `nowMs` into the times that are missing. Throws SeedError.
std::vector<SeededSession> parseSeedFile(std::string_view text, std::string_view token, std::int64_t nowMs);

/// Seeds the history of the token's user from "demo" or a seed file, once per seed. `demoSessions` is the
/// number of sessions that "demo" generates. Throws SeedError, SqliteError.
void seedHistory(Database& database, const KnowledgeBase& knowledge, const std::string& seed,
                 const std::string& token, int demoSessions);

}  // namespace zentri::service
