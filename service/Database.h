#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zentri::service {

class SqliteDatabase;

enum class Role { User, Assistant };

/// One message; times are milliseconds since 1970 everywhere in the service.
struct Message {
    Role role = Role::User;
    std::string text;
    std::int64_t timeMs = 0;
};

struct Session {
    std::string id;
    std::string title;
    std::int64_t createTimeMs = 0;
    std::int64_t useTimeMs = 0;
};

/// A whole conversation that is put into the database at once.
struct SeededSession {
    std::string id;
    std::string title;  ///< Empty: made from the first question.
    std::vector<Message> messages;
};

/// Users, sessions and messages in one SQLite file (write-ahead log). Every call may come from any thread;
/// each is one short transaction. All throw SqliteError when the file cannot be used.
class Database {
public:
    /// Opens or creates the file and brings it to this program's schema. Throws std::runtime_error with one
    /// line that names the file.
    explicit Database(const std::string& path);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// The user of a token, made at first sight. Only a digest of the token is stored.
    std::int64_t userOfToken(std::string_view token);

    /// A new, empty session; returns its id.
    std::string createSession(std::int64_t user, std::int64_t nowMs);

    bool ownsSession(std::int64_t user, std::string_view sessionId);

    /// The user's sessions, last used first.
    std::vector<Session> sessionsOf(std::int64_t user);

    /// Oldest first; nothing when the session is unknown or another user's.
    std::optional<std::vector<Message>> messagesOf(std::int64_t user, std::string_view sessionId);

    /// Appends a message and moves the session's time of use. The first question becomes the session's title.
    void addMessage(std::string_view sessionId, const Message& message);

    /// Puts sessions into a user's history once: a second call with the same key changes nothing and returns
    /// false. A session whose id exists already is left as it is.
    bool seed(std::int64_t user, std::string_view key, const std::vector<SeededSession>& sessions);

    std::int64_t userCount();
    std::int64_t sessionCount();

private:
    struct Statements;

    void prepareSchema();
    std::int64_t countOf(const char* table);

    std::mutex m_mutex;
    std::unique_ptr<SqliteDatabase> m_database;
    std::unique_ptr<Statements> m_statements;
};

/// The title made of a question: one line of at most 30 characters.
std::string titleOfQuestion(std::string_view question);

/// A new random session id.
std::string newSessionId();

/// Hexadecimal SHA-256 of some bytes.
std::string sha256Hex(std::string_view bytes);

}  // namespace zentri::service
