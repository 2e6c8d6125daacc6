#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace zentri::service {

/// A call of SQLite that failed; the text is SQLite's own.
class SqliteError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One prepared statement, kept and used again. Not for use from two threads at once.
class SqliteStatement {
public:
    /// One execution: parameters are bound in order, rows are read, and leaving the scope resets the
    /// statement.
    class Run {
    public:
        explicit Run(SqliteStatement& statement) : m_statement(statement) {}
        ~Run();
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;

        Run& bind(std::string_view text);
        Run& bind(std::int64_t value);
        /// Moves to the next row; false after the last one.
        bool step();
        std::string text(int column) const;
        std::int64_t integer(int column) const;
        double real(int column) const;

    private:
        SqliteStatement& m_statement;
        int m_bound = 0;
    };

    SqliteStatement(sqlite3* database, std::string_view sql);

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

/// An open database file. Closing happens in the destructor, after every statement of it is gone.
class SqliteDatabase {
public:
    /// Opens or creates the file; ":memory:" makes one that lives as long as the object. A lock held by
    /// another process is waited for. Throws SqliteError.
    explicit SqliteDatabase(const std::string& path);

    void execute(const std::string& sql);
    SqliteStatement prepare(std::string_view sql) { return {m_database.get(), sql}; }
    std::int64_t lastInsertedRow() const;
    bool isReadOnly() const;

private:
    struct Close {
        void operator()(sqlite3* database) const;
    };
    std::unique_ptr<sqlite3, Close> m_database;
};

/// Commits on commit(), rolls back when the scope is left without it.
class SqliteTransaction {
public:
    explicit SqliteTransaction(SqliteDatabase& database);
    ~SqliteTransaction();
    SqliteTransaction(const SqliteTransaction&) = delete;
    SqliteTransaction& operator=(const SqliteTransaction&) = delete;

    void commit();

private:
    SqliteDatabase& m_database;
    bool m_open = true;
};

}  // namespace zentri::service
