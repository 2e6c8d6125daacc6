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

/// A seed that cannot be used; the text is one line for the user.
class SeedError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A conversation written by hand, without times.
struct ScriptedConversation {
    bool english = false;
    std::vector<Message> messages;
};

/// A session id that the same seed, token and place give again.
std::string stableSessionId(std::string_view seed, std::string_view token, std::size_t index);

/// Reads "== zh" or "== en", then turns of "Q: text" and "A: text", each over as many lines as it needs.
/// `name` is for messages. Throws SeedError.
std::vector<ScriptedConversation> parseConversations(std::string_view text, const std::string& name);

/// Makes a believable history: `count` sessions over the two years up to `nowMs`, in working hours, more of
/// them lately, Chinese and English, from one question to a dozen; some of the newest are of today and
/// yesterday. The same arguments give the same history.
class DemoHistory {
public:
    DemoHistory(const KnowledgeBase& knowledge, std::vector<ScriptedConversation> scripted);

    std::vector<SeededSession> make(std::string_view token, int count, std::int64_t nowMs) const;

private:
    const KnowledgeBase& m_knowledge;
    BuiltInAnswerer m_answerer;
    std::vector<ScriptedConversation> m_scripted;
};

/// Reads a seed file:
///     {"sessions": [{"title": "…", "messages": [{"role": "user", "message": "…", "createTime":
///     1700000000}]}]}
/// Title and times may be left out; times are seconds or milliseconds. Throws SeedError.
std::vector<SeededSession> parseSeedFile(std::string_view text, std::string_view token, std::int64_t nowMs);

/// Fills the history of a token's user from "demo" or a file, once. Throws SeedError, SqliteError.
void seedHistory(Database& database, const KnowledgeBase& knowledge, const std::string& seed,
                 const std::string& token, int demoSessions);

}  // namespace zentri::service
