#include "service/Sqlite.h"

#include <sqlite3.h>

namespace zentri::service {

namespace {

constexpr int kBusyTimeoutMs = 5000;

[[noreturn]] void fail(sqlite3* database) {
    throw SqliteError(database != nullptr ? sqlite3_errmsg(database) : "out of memory");
}

}  // namespace

void SqliteStatement::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

SqliteStatement::SqliteStatement(sqlite3* database, std::string_view sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v3(database, sql.data(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT,
                           &statement, nullptr) != SQLITE_OK) {
        fail(database);
    }
    m_statement.reset(statement);
}

SqliteStatement::Run::~Run() {
    sqlite3_reset(m_statement.m_statement.get());
    sqlite3_clear_bindings(m_statement.m_statement.get());
}

SqliteStatement::Run& SqliteStatement::Run::bind(std::string_view text) {
    sqlite3_stmt* statement = m_statement.m_statement.get();
    // The data() of an empty view may be null, which SQLite would bind as NULL.
    const char* bytes = text.empty() ? "" : text.data();
    if (sqlite3_bind_text64(statement, ++m_bound, bytes, text.size(), SQLITE_TRANSIENT, SQLITE_UTF8) !=
        SQLITE_OK) {
        fail(sqlite3_db_handle(statement));
    }
    return *this;
}

SqliteStatement::Run& SqliteStatement::Run::bind(std::int64_t value) {
    sqlite3_stmt* statement = m_statement.m_statement.get();
    if (sqlite3_bind_int64(statement, ++m_bound, value) != SQLITE_OK) {
        fail(sqlite3_db_handle(statement));
    }
    return *this;
}

bool SqliteStatement::Run::step() {
    sqlite3_stmt* statement = m_statement.m_statement.get();
    const int result = sqlite3_step(statement);
    if (result == SQLITE_ROW) {
        return true;
    }
    if (result != SQLITE_DONE) {
        fail(sqlite3_db_handle(statement));
    }
    return false;
}

std::string SqliteStatement::Run::text(int column) const {
    sqlite3_stmt* statement = m_statement.m_statement.get();
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    if (bytes == nullptr) {
        return {};
    }
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

std::int64_t SqliteStatement::Run::integer(int column) const {
    return sqlite3_column_int64(m_statement.m_statement.get(), column);
}

double SqliteStatement::Run::real(int column) const {
    return sqlite3_column_double(m_statement.m_statement.get(), column);
}

void SqliteDatabase::Close::operator()(sqlite3* database) const {
    sqlite3_close_v2(database);
}

SqliteDatabase::SqliteDatabase(const std::string& path) {
    sqlite3* database = nullptr;
    const int result =
        sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    m_database.reset(database);
    if (result != SQLITE_OK) {
        fail(database);
    }
    sqlite3_busy_timeout(database, kBusyTimeoutMs);
}

void SqliteDatabase::execute(const std::string& sql) {
    if (sqlite3_exec(m_database.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        fail(m_database.get());
    }
}

std::int64_t SqliteDatabase::lastInsertedRow() const {
    return sqlite3_last_insert_rowid(m_database.get());
}

bool SqliteDatabase::isReadOnly() const {
    return sqlite3_db_readonly(m_database.get(), "main") != 0;
}

SqliteTransaction::SqliteTransaction(SqliteDatabase& database) : m_database(database) {
    // Acquire the write lock up front: upgrading a read transaction can fail with SQLITE_BUSY at once.
    m_database.execute("BEGIN IMMEDIATE");
}

SqliteTransaction::~SqliteTransaction() {
    if (!m_open) {
        return;
    }
    try {
        m_database.execute("ROLLBACK");
    } catch (const SqliteError&) {
        // After some errors SQLite has already rolled back, and ROLLBACK fails for want of a transaction.
    }
}

void SqliteTransaction::commit() {
    m_database.execute("COMMIT");
    m_open = false;
}

}  // namespace zentri::service
