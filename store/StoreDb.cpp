#include "store/StoreDb.h"

#include <sqlite3.h>

namespace vrn {

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
    // URI file names let the model attach an existing file read-only. The
    // connection belongs to one model builder, used from one thread, so it
    // needs no mutex of its own.
    const int flags =
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI | SQLITE_OPEN_MEMORY | SQLITE_OPEN_NOMUTEX;
    if (sqlite3_open_v2(":memory:", &m_db, flags, nullptr) != SQLITE_OK || !HoldInOneImage()) {
        NoteError("cannot open the in-memory model");
        sqlite3_close(m_db);
        m_db = nullptr;
    }
}

// The model is held as one growing image of the file it becomes (SQLite's
// memdb), not as a cache of loose pages: Save hands that image to the file
// as it is, where a plain in-memory database would have to be copied whole
// first, doubling the memory of the largest catalogs at their peak.
bool CStoreDb::HoldInOneImage() {
    if (sqlite3_deserialize(m_db, "main", nullptr, 0, 0,
                            SQLITE_DESERIALIZE_RESIZEABLE | SQLITE_DESERIALIZE_FREEONCLOSE) != SQLITE_OK)
        return false;
    // An image may grow to 1 GiB by default, about 450,000 tables; the
    // model's size is bounded by the machine's memory instead.
    sqlite3_int64 limit = kImageSizeLimit;
    return sqlite3_file_control(m_db, "main", SQLITE_FCNTL_SIZE_LIMIT, &limit) == SQLITE_OK;
}

const unsigned char* CStoreDb::Image(std::int64_t* size) {
    sqlite3_int64 bytes = 0;
    const unsigned char* image = sqlite3_serialize(m_db, "main", &bytes, SQLITE_SERIALIZE_NOCOPY);
    *size = bytes;
    return image;
}

CStoreDb::~CStoreDb() { sqlite3_close_v2(m_db); }

void CStoreDb::NoteError(const std::string& context) {
    m_lastError = context;
    if (m_db) m_lastError += std::string(": ") + sqlite3_errmsg(m_db);
}

std::string CStoreDb::ConnectionError() const { return m_db ? sqlite3_errmsg(m_db) : "no database"; }

bool CStoreDb::Exec(const std::string& sql) {
    if (!m_db) return false;
    char* message = nullptr;
    if (sqlite3_exec(m_db, sql.c_str(), nullptr, nullptr, &message) == SQLITE_OK) return true;
    m_lastError = message ? message : "unknown SQLite error";
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
