#include "service/Database.h"

#include <openssl/evp.h>
#include <uuid/uuid.h>

#include <algorithm>
#include <array>
#include <stdexcept>

#include "service/Sqlite.h"
#include "service/Text.h"

namespace zentri::service {

namespace {

constexpr int kSchemaVersion = 1;
constexpr std::size_t kTitleLength = 30;
constexpr const char* kUntitled = "新对话";

constexpr const char* kSchema = R"sql(
CREATE TABLE users(
    id INTEGER PRIMARY KEY,
    token_digest TEXT NOT NULL UNIQUE);
CREATE TABLE sessions(
    id TEXT PRIMARY KEY,
    user_id INTEGER NOT NULL REFERENCES users(id),
    title TEXT NOT NULL,
    titled INTEGER NOT NULL DEFAULT 0,
    create_time INTEGER NOT NULL,
    use_time INTEGER NOT NULL) WITHOUT ROWID;
CREATE INDEX sessions_of_user ON sessions(user_id, use_time DESC);
CREATE TABLE messages(
    id INTEGER PRIMARY KEY,
    session_id TEXT NOT NULL REFERENCES sessions(id),
    role INTEGER NOT NULL,
    message TEXT NOT NULL,
    create_time INTEGER NOT NULL);
CREATE INDEX messages_of_session ON messages(session_id, id);
CREATE TABLE seeds(
    user_id INTEGER NOT NULL REFERENCES users(id),
    key TEXT NOT NULL,
    PRIMARY KEY(user_id, key)) WITHOUT ROWID;
)sql";

}  // namespace

struct Database::Statements {
    explicit Statements(SqliteDatabase& db)
        : findUser(db.prepare("SELECT id FROM users WHERE token_digest = ?1")),
          addUser(db.prepare("INSERT OR IGNORE INTO users(token_digest) VALUES(?1)")),
          addSession(db.prepare("INSERT INTO sessions(id, user_id, title, titled, create_time, use_time)"
                                " VALUES(?1, ?2, ?3, ?4, ?5, ?6)")),
          sessionOwner(db.prepare("SELECT user_id FROM sessions WHERE id = ?1")),
          listSessions(db.prepare("SELECT id, title, create_time, use_time FROM sessions WHERE user_id = ?1"
                                  " ORDER BY use_time DESC, id")),
          listMessages(db.prepare(
              "SELECT role, message, create_time FROM messages WHERE session_id = ?1 ORDER BY id")),
          addMessage(db.prepare("INSERT INTO messages(session_id, role, message, create_time)"
                                " VALUES(?1, ?2, ?3, ?4)")),
          touchSession(db.prepare("UPDATE sessions SET use_time = max(use_time, ?2) WHERE id = ?1")),
          setTitle(db.prepare("UPDATE sessions SET title = ?2, titled = 1 WHERE id = ?1 AND titled = 0")),
          addSeed(db.prepare("INSERT OR IGNORE INTO seeds(user_id, key) VALUES(?1, ?2) RETURNING 1")) {}

    SqliteStatement findUser;
    SqliteStatement addUser;
    SqliteStatement addSession;
    SqliteStatement sessionOwner;
    SqliteStatement listSessions;
    SqliteStatement listMessages;
    SqliteStatement addMessage;
    SqliteStatement touchSession;
    SqliteStatement setTitle;
    SqliteStatement addSeed;

    std::int64_t ownerOf(std::string_view sessionId) {
        SqliteStatement::Run run(sessionOwner);
        return run.bind(sessionId).step() ? run.integer(0) : 0;
    }

    void insertMessage(std::string_view sessionId, const Message& message) {
        const std::int64_t role = message.role == Role::User ? 0 : 1;
        SqliteStatement::Run(addMessage)
            .bind(sessionId)
            .bind(role)
            .bind(message.text)
            .bind(message.timeMs)
            .step();
    }
};

Database::Database(const std::string& path) {
    try {
        m_database = std::make_unique<SqliteDatabase>(path);
        prepareSchema();
        m_statements = std::make_unique<Statements>(*m_database);
    } catch (const SqliteError& error) {
        throw std::runtime_error("cannot use the database '" + path + "': " + error.what());
    }
}

Database::~Database() = default;

void Database::prepareSchema() {
    // Setting the journal mode is the first access to the file, so a file that is not a database fails here.
    m_database->execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; PRAGMA foreign_keys = ON");
    if (m_database->isReadOnly()) {
        throw SqliteError("it is read-only");
    }
    SqliteTransaction transaction(*m_database);
    SqliteStatement readVersion = m_database->prepare("PRAGMA user_version");
    SqliteStatement readTables = m_database->prepare("SELECT count(*) FROM sqlite_schema");
    std::int64_t version = 0;
    std::int64_t tables = 0;
    {
        SqliteStatement::Run run(readVersion);
        run.step();
        version = run.integer(0);
        SqliteStatement::Run count(readTables);
        count.step();
        tables = count.integer(0);
    }
    if (version > kSchemaVersion) {
        throw SqliteError("it was created by a newer version of this program (schema " +
                          std::to_string(version) + ")");
    }
    if (version == 0) {
        if (tables != 0) {
            throw SqliteError("it belongs to another program");
        }
        m_database->execute(std::string(kSchema) + "PRAGMA user_version = " + std::to_string(kSchemaVersion));
    }
    transaction.commit();
}

std::int64_t Database::userOfToken(std::string_view token) {
    const std::string digest = sha256Hex(token);
    const std::lock_guard lock(m_mutex);
    const auto find = [&]() -> std::int64_t {
        SqliteStatement::Run run(m_statements->findUser);
        return run.bind(digest).step() ? run.integer(0) : 0;
    };
    if (const std::int64_t known = find()) {
        return known;
    }
    // Another process that shares the file may insert the user first; the insert is then ignored, and find()
    // returns that row.
    SqliteStatement::Run(m_statements->addUser).bind(digest).step();
    return find();
}

std::string Database::createSession(std::int64_t user, std::int64_t nowMs) {
    std::string id = newSessionId();
    const std::lock_guard lock(m_mutex);
    SqliteStatement::Run(m_statements->addSession)
        .bind(id)
        .bind(user)
        .bind(std::string_view(kUntitled))
        .bind(std::int64_t{0})
        .bind(nowMs)
        .bind(nowMs)
        .step();
    return id;
}

bool Database::ownsSession(std::int64_t user, std::string_view sessionId) {
    const std::lock_guard lock(m_mutex);
    return m_statements->ownerOf(sessionId) == user;
}

std::vector<Session> Database::sessionsOf(std::int64_t user) {
    const std::lock_guard lock(m_mutex);
    std::vector<Session> sessions;
    SqliteStatement::Run run(m_statements->listSessions);
    run.bind(user);
    while (run.step()) {
        sessions.push_back({run.text(0), run.text(1), run.integer(2), run.integer(3)});
    }
    return sessions;
}

std::optional<std::vector<Message>> Database::messagesOf(std::int64_t user, std::string_view sessionId) {
    const std::lock_guard lock(m_mutex);
    if (m_statements->ownerOf(sessionId) != user) {
        return std::nullopt;
    }
    std::vector<Message> messages;
    SqliteStatement::Run run(m_statements->listMessages);
    run.bind(sessionId);
    while (run.step()) {
        messages.push_back({run.integer(0) == 0 ? Role::User : Role::Assistant, run.text(1), run.integer(2)});
    }
    return messages;
}

void Database::addMessage(std::string_view sessionId, const Message& message) {
    const std::lock_guard lock(m_mutex);
    SqliteTransaction transaction(*m_database);
    m_statements->insertMessage(sessionId, message);
    SqliteStatement::Run(m_statements->touchSession).bind(sessionId).bind(message.timeMs).step();
    if (message.role == Role::User) {
        SqliteStatement::Run(m_statements->setTitle)
            .bind(sessionId)
            .bind(titleOfQuestion(message.text))
            .step();
    }
    transaction.commit();
}

bool Database::seed(std::int64_t user, std::string_view key, const std::vector<SeededSession>& sessions) {
    const std::lock_guard lock(m_mutex);
    SqliteTransaction transaction(*m_database);
    if (!SqliteStatement::Run(m_statements->addSeed).bind(user).bind(key).step()) {
        return false;
    }
    for (const SeededSession& session : sessions) {
        if (session.messages.empty() || m_statements->ownerOf(session.id) != 0) {
            continue;
        }
        std::int64_t created = session.messages.front().timeMs;
        std::int64_t used = created;
        std::string title = session.title;
        for (const Message& message : session.messages) {
            created = std::min(created, message.timeMs);
            used = std::max(used, message.timeMs);
            if (title.empty() && message.role == Role::User) {
                title = titleOfQuestion(message.text);
            }
        }
        SqliteStatement::Run(m_statements->addSession)
            .bind(session.id)
            .bind(user)
            .bind(title.empty() ? std::string_view(kUntitled) : std::string_view(title))
            .bind(std::int64_t{1})
            .bind(created)
            .bind(used)
            .step();
        for (const Message& message : session.messages) {
            m_statements->insertMessage(session.id, message);
        }
    }
    transaction.commit();
    return true;
}

std::int64_t Database::userCount() {
    return countOf("users");
}

std::int64_t Database::sessionCount() {
    return countOf("sessions");
}

std::int64_t Database::countOf(const char* table) {
    const std::lock_guard lock(m_mutex);
    SqliteStatement count = m_database->prepare(std::string("SELECT count(*) FROM ") + table);
    SqliteStatement::Run run(count);
    run.step();
    return run.integer(0);
}

std::string titleOfQuestion(std::string_view question) {
    const std::string line = oneLine(question);
    const std::string_view cut = firstCodePoints(line, kTitleLength);
    std::string title(cut);
    if (cut.size() < line.size()) {
        title += "…";
    }
    return title.empty() ? kUntitled : title;
}

std::string newSessionId() {
    uuid_t id;
    uuid_generate_random(id);
    std::array<char, UUID_STR_LEN> text{};
    uuid_unparse_lower(id, text.data());
    return text.data();
}

std::string sha256Hex(std::string_view bytes) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int length = 0;
    if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), &length, EVP_sha256(), nullptr) != 1) {
        throw std::runtime_error("SHA-256 is not available");
    }
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string hex;
    for (unsigned int i = 0; i < length; ++i) {
        hex.push_back(kDigits[digest[i] >> 4U]);
        hex.push_back(kDigits[digest[i] & 0xFU]);
    }
    return hex;
}

}  // namespace zentri::service
