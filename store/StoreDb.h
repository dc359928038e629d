// A small RAII layer over one SQLite connection: the model that the
// store services write into, and the statements they run on it. Nothing here
// throws; every failure is a false/0 result with the connection's message kept
// in LastError().
#pragma once

#include <cstdint>
#include <memory>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace vrn {

class CStatement {
public:
    CStatement() = default;
    explicit CStatement(sqlite3_stmt* stmt) : m_stmt(stmt) {}
    ~CStatement();
    CStatement(CStatement&& other) noexcept : m_stmt(other.m_stmt) { other.m_stmt = nullptr; }
    CStatement& operator=(CStatement&& other) noexcept;
    CStatement(const CStatement&) = delete;
    CStatement& operator=(const CStatement&) = delete;

    bool IsValid() const { return m_stmt != nullptr; }
    void BindInt(int index, std::int64_t value);
    void BindText(int index, const char* text);  // null binds SQL NULL
    // REQUIRES: `text` (of `length` bytes, or up to its NUL when -1) stays
    // valid until the statement has run: no copy is made.
    void BindStaticText(int index, const char* text, int length = -1);
    // Runs one step: true while a row is available.
    bool Step();
    // Runs to completion; true when no error occurred.
    bool Run();
    void Reset();
    // Ready to run again, keeping the bindings (for callers that rebind every parameter).
    void Rewind();
    std::int64_t ColumnInt(int column) const;
    std::string ColumnText(int column) const;
    bool ColumnIsNull(int column) const;

private:
    sqlite3_stmt* m_stmt = nullptr;
};

class CStoreDb {
public:
    // Opens a fresh, empty model.
    CStoreDb();
    ~CStoreDb();
    CStoreDb(const CStoreDb&) = delete;
    CStoreDb& operator=(const CStoreDb&) = delete;

    bool IsOpen() const { return m_db != nullptr; }
    bool Exec(const std::string& sql);
    CStatement Prepare(const std::string& sql);
    // The single integer a query yields, or `fallback` when it yields none.
    std::int64_t QueryInt(const std::string& sql, std::int64_t fallback);

    // Writes are batched in one open transaction; readers of the file never
    // see it, because the file is only written by a copy of the whole,
    // committed model.
    void EnsureTransaction();
    bool Commit();

    const std::string& LastError() const { return m_lastError; }
    // The connection's message for its most recent failed call.
    std::string ConnectionError() const;
    sqlite3* Handle() const { return m_db; }

private:
    // The model's page cache, in KiB: what its rows take in memory at most.
    static constexpr int kCacheKiB = 2048;

    void NoteError(const std::string& context);

    sqlite3* m_db = nullptr;
    bool m_inTransaction = false;
    std::string m_lastError;
};

// Quotes an identifier for SQL ("name" with inner quotes doubled).
std::string QuoteIdentifier(const std::string& name);

}  // namespace vrn
