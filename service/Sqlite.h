#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace zentri::service {

/// A failed SQLite call; what() is SQLite's error message.
class SqliteError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A prepared statement for repeated use. Not thread-safe. Methods that fail throw SqliteError.
class SqliteStatement {
public:
    /// One execution: binds the parameters in order, reads the rows, and resets the statement when it goes
    /// out of scope. A statement has at most one Run at a time and must outlive it.
    class Run {
    public:
        explicit Run(SqliteStatement& statement) : m_statement(statement) {}
        ~Run();
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;

        /// Bind the next parameter; text is UTF-8 and is copied.
        Run& bind(std::string_view text);
        Run& bind(std::int64_t value);
        /// Advances to the next row; false after the last one.
        bool step();
        /// Columns of the current row, counted from 0; NULL reads as an empty text or 0.
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

/// A database connection. The destructor closes it; SQLite defers that until its last statement is finalised.
class SqliteDatabase {
public:
    /// Opens or creates the file; ":memory:" opens an in-memory database that lives as long as the
    /// connection. Statements wait up to five seconds for another connection's lock. Throws SqliteError.
    explicit SqliteDatabase(const std::string& path);

    /// Runs one or more SQL statements without parameters. Throws SqliteError.
    void execute(const std::string& sql);
    SqliteStatement prepare(std::string_view sql) { return {m_database.get(), sql}; }
    /// The rowid of the last successful INSERT on this connection.
    std::int64_t lastInsertedRow() const;
    bool isReadOnly() const;

private:
    struct Close {
        void operator()(sqlite3* database) const;
    };
    std::unique_ptr<sqlite3, Close> m_database;
};

/// A write transaction: rolled back at the end of the scope unless it was committed. The constructor and
/// commit() throw SqliteError.
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
