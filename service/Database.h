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

/// One message of a session. Times are milliseconds since 1970-01-01 UTC throughout the service.
struct Message {
    Role role = Role::User;
    std::string text;
    std::int64_t timeMs = 0;
};

/// A session as listed for its user.
struct Session {
    std::string id;
    std::string title;
    std::int64_t createTimeMs = 0;
    std::int64_t useTimeMs = 0;  ///< Time of the last message, or of creation.
};

/// A complete session to insert with Database::seed().
struct SeededSession {
    std::string id;
    std::string title;  ///< Empty: derived from the first question.
    std::vector<Message> messages;
};

/// Users, sessions and messages in one SQLite file in WAL mode, which several processes may share. All
/// methods may be called from any thread; a mutex serialises them, and none leaves a transaction open. All
/// throw SqliteError when SQLite reports an error.
class Database {
public:
    /// Opens the file, or creates it with this program's schema; ":memory:" opens a private in-memory
    /// database. Throws std::runtime_error with a one-line message that names the file.
    explicit Database(const std::string& path);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// The id of the user with this token; a new token creates a user. Only its SHA-256 digest is stored.
    std::int64_t userOfToken(std::string_view token);

    /// Creates an empty session and returns its id.
    std::string createSession(std::int64_t user, std::int64_t nowMs);

    /// Whether the session exists and belongs to the user.
    bool ownsSession(std::int64_t user, std::string_view sessionId);

    /// The user's sessions, most recently used first.
    std::vector<Session> sessionsOf(std::int64_t user);

    /// The session's messages in the order in which they were added; nullopt when the session is unknown or
    /// belongs to another user.
    std::optional<std::vector<Message>> messagesOf(std::int64_t user, std::string_view sessionId);

    /// Appends a message and updates the session's time of last use. The first question becomes the session's
    /// title. Does not check the owner; throws for an unknown session (foreign key).
    void addMessage(std::string_view sessionId, const Message& message);

    /// Inserts sessions into a user's history once per `key`: a second call with the same key changes nothing
    /// and returns false. Sessions without messages and sessions whose id already exists are skipped.
    bool seed(std::int64_t user, std::string_view key, const std::vector<SeededSession>& sessions);

    /// Totals over all users.
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

/// The session title derived from a question: one line, cut to 30 code points; a placeholder when the
/// question is blank.
std::string titleOfQuestion(std::string_view question);

/// A new random session id, a UUID in lower case.
std::string newSessionId();

/// SHA-256 of the bytes, as lower-case hexadecimal digits. Throws std::runtime_error when OpenSSL fails.
std::string sha256Hex(std::string_view bytes);

}  // namespace zentri::service
