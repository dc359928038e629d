#include "store/StoreDb.h"

#include <sqlite3.h>

#include <cstring>

namespace vrn {

namespace {

// The model spills into a temporary file: when that fails, the file
// system's reason (a full disk, a file size limit) is the useful part. ""
// when the last failure was not the file system's.
std::string FileSystemReason(sqlite3* db) {
    const int primary = sqlite3_errcode(db) & 0xff;
    const int code = sqlite3_system_errno(db);
    if (code == 0 || (primary != SQLITE_IOERR && primary != SQLITE_CANTOPEN && primary != SQLITE_FULL)) return "";
    return std::string(": ") + std::strerror(code);
}

}  // namespace

CStatement::~CStatement() { sqlite3_finalize(m_stmt); }

CStatement& CStatement::operator=(CStatement&& other) noexcept {
    if (this != &other) {
        sqlite3_finalize(m_stmt);
        m_stmt = other.m_stmt;
        other.m_stmt = nullptr;
    }
    return *this;
}

void CStatement::BindInt(int index, std::int64_t value) { sqlite3_bind_int64(m_stmt, index, value); }

void CStatement::BindStaticText(int index, const char* text, int length) {
    sqlite3_bind_text(m_stmt, index, text ? text : "", text ? length : 0, SQLITE_STATIC);
}

void CStatement::BindText(int index, const char* text) {
    if (text)
        sqlite3_bind_text(m_stmt, index, text, -1, SQLITE_TRANSIENT);
    else
        sqlite3_bind_null(m_stmt, index);
}

bool CStatement::Step() { return m_stmt && sqlite3_step(m_stmt) == SQLITE_ROW; }

bool CStatement::Run() {
    if (!m_stmt) return false;
    int rc;
    while ((rc = sqlite3_step(m_stmt)) == SQLITE_ROW) {
    }
    return rc == SQLITE_DONE;
}

void CStatement::Reset() {
    sqlite3_reset(m_stmt);
    sqlite3_clear_bindings(m_stmt);
}

void CStatement::Rewind() { sqlite3_reset(m_stmt); }

std::int64_t CStatement::ColumnInt(int column) const { return sqlite3_column_int64(m_stmt, column); }

std::string CStatement::ColumnText(int column) const {
    const unsigned char* text = sqlite3_column_text(m_stmt, column);
    return text ? reinterpret_cast<const char*>(text) : std::string();
}

bool CStatement::ColumnIsNull(int column) const { return sqlite3_column_type(m_stmt, column) == SQLITE_NULL; }

CStoreDb::CStoreDb() {
    // The model is SQLite's temporary database (an empty file name): its
    // pages live in a cache of bounded size and, beyond it, in a file that
    // SQLite makes in the temporary directory, unreadable to others and
    // deleted with the model. A large catalog's rows thus never sit in memory
    // beside the objects they come from; a small model never touches the
    // disk. URI file names let the model attach an existing file read-only.
    // The connection belongs to one model builder, used from one thread, so
    // it needs no mutex of its own.
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX;
    if (sqlite3_open_v2("", &m_db, flags, nullptr) != SQLITE_OK ||
        !Exec("PRAGMA cache_size = -" + std::to_string(kCacheKiB))) {
        NoteError("cannot open the model");
        sqlite3_close(m_db);
        m_db = nullptr;
    }
}

CStoreDb::~CStoreDb() { sqlite3_close_v2(m_db); }

void CStoreDb::NoteError(const std::string& context) {
    m_lastError = context;
    if (m_db) m_lastError += ": " + ConnectionError();
}

std::string CStoreDb::ConnectionError() const {
    if (!m_db) return "no database";
    return sqlite3_errmsg(m_db) + FileSystemReason(m_db);
}

bool CStoreDb::Exec(const std::string& sql) {
    if (!m_db) return false;
    char* message = nullptr;
    if (sqlite3_exec(m_db, sql.c_str(), nullptr, nullptr, &message) == SQLITE_OK) return true;
    m_lastError = message ? message : "unknown SQLite error";
    m_lastError += FileSystemReason(m_db);
    sqlite3_free(message);
    return false;
}

CStatement CStoreDb::Prepare(const std::string& sql) {
    sqlite3_stmt* stmt = nullptr;
    if (!m_db || sqlite3_prepare_v2(m_db, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
        NoteError("cannot prepare statement");
        sqlite3_finalize(stmt);
        return CStatement();
    }
    return CStatement(stmt);
}

std::int64_t CStoreDb::QueryInt(const std::string& sql, std::int64_t fallback) {
    CStatement stmt = Prepare(sql);
    if (!stmt.Step() || stmt.ColumnIsNull(0)) return fallback;
    return stmt.ColumnInt(0);
}

void CStoreDb::EnsureTransaction() {
    if (!m_inTransaction && Exec("BEGIN")) m_inTransaction = true;
}

bool CStoreDb::Commit() {
    if (!m_inTransaction) return true;
    m_inTransaction = false;
    return Exec("COMMIT");
}

std::string QuoteIdentifier(const std::string& name) {
    std::string quoted = "\"";
    for (char ch : name) {
        if (ch == '"') quoted += '"';
        quoted += ch;
    }
    return quoted + "\"";
}

}  // namespace vrn
