#include "store/VrnFile.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstdio>
#include <cstring>
#include <memory>
#include <unordered_map>
#include <vector>

#include "store/AtomicFile.h"
#include "store/DbObjectBase.h"
#include "store/FileSystem.h"
#include "store/IdentityMgr.h"
#include "store/ModelCopy.h"
#include "store/NameSpaceMgr.h"
#include "store/RowTables.h"
#include "store/StoreDb.h"

using vrn::CFileSystem;
using vrn::CStatement;
using vrn::CStoreDb;
using vrn::QuoteIdentifier;
using vrn::WriteFileAtomically;
using vrn::kRowTableCount;
using vrn::kRowTables;

namespace {

// The managers' tables. They are created with the row tables so that every
// model file has the same set of tables, whatever it holds.
struct CManagerTable {
    const char* name;
    const char* columns;
};

const CManagerTable kManagerTables[] = {
    {"FileInfo", "name TEXT PRIMARY KEY, value TEXT"},
    {"NameSpace", "ns_id INTEGER PRIMARY KEY, text TEXT"},
    {"ObjectType", "type_id INTEGER PRIMARY KEY, name TEXT"},
    {"KeyAllocator", "key_class INTEGER PRIMARY KEY, last_key INTEGER"},
    {"MetaTable", "meta_table_no INTEGER PRIMARY KEY, tech_key INTEGER, table_name TEXT"},
    {"Property",
     "prop_seq INTEGER, owner_kind TEXT, owner_key INTEGER, property_no INTEGER, value_no INTEGER, text TEXT, "
     "int_arg INTEGER"},
    {"Partition", "partition_key INTEGER PRIMARY KEY, owner_kind TEXT, owner_key INTEGER, name TEXT, int_arg INTEGER"},
    {"PropertyValue", "value_no INTEGER PRIMARY KEY, text TEXT"},
};

// Collects a row table's column definitions from its field listing.
class CSchemaRecorder final : public CRowFieldVisitor {
public:
    std::string columns = "row_seq INTEGER NOT NULL";
    int count = 0;
    void Int(const char* column, std::int64_t) override { Add(column, "INTEGER"); }
    void Text(const char* column, const CString&) override { Add(column, "TEXT"); }
    void NameSpaceText(const char* column, const CVrnString&) override { Add(column, "TEXT"); }
    void DateTime(const char* column, const CVrnDateTime&) override { Add(column, "TEXT"); }

private:
    void Add(const char* column, const char* type) {
        columns += ", " + QuoteIdentifier(column) + " " + type + " NOT NULL";
        ++count;
    }
};

// Binds a row's fields to the table's insert statement, in order.
class CRowBinder final : public CRowFieldVisitor {
public:
    CRowBinder(CStatement& stmt, CNameSpaceMgr* nameSpace) : m_stmt(stmt), m_nameSpace(nameSpace) {}
    void Int(const char*, std::int64_t value) override { m_stmt.BindInt(++m_index, value); }
    // The row outlives the statement's run, so its texts are bound without copies.
    void Text(const char*, const CString& text) override {
        m_stmt.BindStaticText(++m_index, text, text.GetLength());
    }
    void NameSpaceText(const char*, const CVrnString& value) override {
        if (m_nameSpace && !value.m_text.IsEmpty()) m_nameSpace->EnterString(value.m_text);
        m_stmt.BindStaticText(++m_index, value.m_text, value.m_text.GetLength());
    }
    void DateTime(const char*, const CVrnDateTime& value) override {
        m_stmt.BindText(++m_index, value.m_dt.FormatIso().c_str());
    }
    int Bound() const { return m_index; }

private:
    CStatement& m_stmt;
    CNameSpaceMgr* m_nameSpace;
    int m_index = 1;  // parameter 1 is row_seq
};

// A file name as a read-only SQLite URI. Every byte but letters, digits,
// '/' and "-._~" is percent-encoded, so that '?', '#', '%', spaces and bytes
// that are not UTF-8 reach the file system as they are. An absolute path gets
// an empty authority ("file://" then the path): a path that starts with "//"
// would otherwise be read as the name of a host.
std::string ReadOnlyUri(const std::string& path) {
    std::string uri = !path.empty() && path[0] == '/' ? "file://" : "file:";
    for (char ch : path) {
        const unsigned char byte = static_cast<unsigned char>(ch);
        const bool plain = (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') || (ch >= '0' && ch <= '9') ||
                           ch == '/' || ch == '-' || ch == '.' || ch == '_' || ch == '~';
        if (plain) {
            uri += ch;
        } else {
            char escaped[4];
            std::snprintf(escaped, sizeof escaped, "%%%02X", byte);
            uri += escaped;
        }
    }
    return uri + "?mode=ro";
}

std::vector<std::string> ColumnNames(CStoreDb& db, const std::string& schema, const std::string& table) {
    std::vector<std::string> names;
    CStatement stmt = db.Prepare("PRAGMA " + schema + ".table_info(" + QuoteIdentifier(table) + ")");
    while (stmt.Step()) names.push_back(stmt.ColumnText(1));
    return names;
}

std::vector<std::string> TableNames(CStoreDb& db) {
    std::vector<std::string> names;
    CStatement stmt = db.Prepare("SELECT name FROM main.sqlite_master WHERE type = 'table' ORDER BY name");
    while (stmt.Step()) names.push_back(stmt.ColumnText(0));
    return names;
}

std::string Quoted(const std::string& path) { return "'" + path + "'"; }

}  // namespace

// The prepared insert of each row table, made on its first row.
struct CVrnFile::CInsert {
    CStatement stmt;
    int columnCount = 0;
};
struct CVrnFile::CInsertCache {
    std::unordered_map<const char*, CInsert> byTable;  // by the address of the table's name
};

CVrnFile::CVrnFile()
    : m_pDb(new CStoreDb), m_pIdentityMgr(new CIdentityMgr(this)), m_pInserts(new CInsertCache) {
    if (!CreateSchema()) m_lastError = "cannot create the model in memory: " + m_pDb->LastError();
}

CVrnFile::~CVrnFile() = default;

bool CVrnFile::Fail(const std::string& reason) {
    m_lastError = reason;
    return false;
}

bool CVrnFile::CreateSchema() {
    for (std::size_t i = 0; i < kRowTableCount; ++i) {
        CSchemaRecorder recorder;
        kRowTables[i].describe(recorder);
        if (!m_pDb->Exec("CREATE TABLE " + QuoteIdentifier(kRowTables[i].tableName) + " (" + recorder.columns + ")"))
            return false;
    }
    for (const CManagerTable& table : kManagerTables)
        if (!m_pDb->Exec("CREATE TABLE " + QuoteIdentifier(table.name) + " (" + table.columns + ")")) return false;
    return true;
}

CVrnFile::CInsert* CVrnFile::InsertFor(const char* table) {
    // Row classes name their table with one constant text each: its address is the key.
    auto found = m_pInserts->byTable.find(table);
    if (found != m_pInserts->byTable.end()) return &found->second;
    CSchemaRecorder recorder;
    for (std::size_t i = 0; i < kRowTableCount; ++i)
        if (std::strcmp(kRowTables[i].tableName, table) == 0) kRowTables[i].describe(recorder);
    if (recorder.count == 0) return nullptr;
    std::string sql = "INSERT INTO " + QuoteIdentifier(table) + " VALUES (?";
    for (int i = 0; i < recorder.count; ++i) sql += ", ?";
    CInsert insert;
    insert.stmt = m_pDb->Prepare(sql + ")");
    insert.columnCount = recorder.count;
    if (!insert.stmt.IsValid()) return nullptr;
    return &m_pInserts->byTable.emplace(table, std::move(insert)).first->second;
}

void CVrnFile::WriteRecord(const char* table, CNameSpaceMgr* nameSpace,
                           const std::function<void(CRowFieldVisitor&)>& listFields) {
    CInsert* insert = InsertFor(table);
    if (!insert) {
        NoteWriteFailure(std::string("cannot write a row of table ") + (table ? table : "(none)") + ": " +
                         m_pDb->LastError());
        return;
    }
    m_pDb->EnsureTransaction();
    insert->stmt.BindInt(1, m_nextRowSeq);
    CRowBinder binder(insert->stmt, nameSpace);
    listFields(binder);
    if (insert->stmt.Run())
        ++m_nextRowSeq;
    else
        NoteWriteFailure(std::string("cannot write a row of table ") + table + ": " + m_pDb->ConnectionError());
    insert->stmt.Rewind();  // every parameter is bound again for the next row
}

void CVrnFile::NoteWriteFailure(const std::string& what) {
    if (m_writeFailure.empty()) m_writeFailure = what;
}

int CVrnFile::Open(const char* path) {
    if (!Attach(path)) return 0;
    if (!CopyAttached(path)) {
        m_pDb->Exec("ROLLBACK");
        m_pDb->Exec("DETACH DATABASE src");
        return 0;
    }
    m_pDb->Exec("DETACH DATABASE src");
    m_bOpened = true;
    m_lastError.clear();
    return 1;
}

int CVrnFile::Check(const char* path) {
    if (!Attach(path)) return 0;
    m_pDb->Exec("DETACH DATABASE src");
    m_lastError.clear();
    return 1;
}

bool CVrnFile::Attach(const char* path) {
    if (!path || !*path) return Fail("cannot open a model file: no path was given");
    const std::string file(path);
    struct stat info {};
    if (::stat(path, &info) != 0) return Fail("cannot open " + Quoted(file) + ": " + std::strerror(errno));
    if (S_ISDIR(info.st_mode)) return Fail("cannot open " + Quoted(file) + ": it is a directory");
    if (info.st_size == 0) return Fail(Quoted(file) + " is not a model file: it is empty");

    static const char kSqliteMagic[16] = "SQLite format 3";
    char header[64] = {};
    std::FILE* in = std::fopen(path, "rb");
    if (!in) return Fail("cannot open " + Quoted(file) + ": " + std::strerror(errno));
    const std::size_t got = std::fread(header, 1, sizeof header, in);
    std::fclose(in);
    if (got < sizeof kSqliteMagic || std::memcmp(header, kSqliteMagic, sizeof kSqliteMagic) != 0)
        return Fail(Quoted(file) + " is not a model file: it is " + DescribeContent(std::string(header, got)) +
                    ", not an SQLite database");

    m_pDb->Commit();
    if (!CheckAttached(file)) {
        m_pDb->Exec("DETACH DATABASE src");
        return false;
    }
    return true;
}

bool CVrnFile::CheckAttached(const std::string& file) {
    CStatement attach = m_pDb->Prepare("ATTACH DATABASE ?1 AS src");
    attach.BindText(1, ReadOnlyUri(file).c_str());
    if (!attach.Run())
        return Fail(Quoted(file) + " is damaged and cannot be read (" + m_pDb->ConnectionError() + ")");

    CStatement check = m_pDb->Prepare("PRAGMA src.quick_check");
    if (!check.IsValid())
        return Fail(Quoted(file) + " is damaged and cannot be read (" + m_pDb->ConnectionError() + ")");
    std::string verdict;
    bool checked = false;
    while (check.Step()) {
        checked = true;
        if (verdict.empty()) verdict = check.ColumnText(0);
    }
    if (!checked || verdict != "ok")
        return Fail(Quoted(file) + " is damaged and cannot be read (" +
                    (checked ? verdict : m_pDb->ConnectionError()) + ")");

    if (m_pDb->QueryInt("SELECT count(*) FROM src.sqlite_master WHERE type = 'table' AND name = 'FileInfo'", 0) == 0)
        return Fail(Quoted(file) + " is not a model file: it is an SQLite database that is not a model");
    std::string format;
    std::int64_t version = -1;
    {
        CStatement info = m_pDb->Prepare("SELECT name, value FROM src.FileInfo");
        while (info.Step()) {
            const std::string name = info.ColumnText(0);
            if (name == "format") format = info.ColumnText(1);
            if (name == "format_version") {
                const std::string text = info.ColumnText(1);
                char* end = nullptr;
                const long long parsed = std::strtoll(text.c_str(), &end, 10);
                if (!text.empty() && end && *end == '\0') version = parsed;
            }
        }
    }
    if (format != kFormatName)
        return Fail(Quoted(file) + " is not a model file: its format is '" + format + "', not '" + kFormatName + "'");
    if (version < 1) return Fail(Quoted(file) + " is not a model file: it has no valid format version");
    if (version > kFormatVersion)
        return Fail(Quoted(file) + " was written by a newer version of the library (format version " +
                    std::to_string(version) + "; this library reads up to " + std::to_string(kFormatVersion) + ")");

    const std::vector<std::string> tables = TableNames(*m_pDb);
    for (const std::string& table : tables) {
        std::vector<std::string> columns = ColumnNames(*m_pDb, "src", table);
        // Rows are copied by position, so a column renamed since reads as its new name.
        if (version == 1 && table == "DbPackage")
            std::replace(columns.begin(), columns.end(), std::string("spec_text"), std::string("header_text"));
        if (columns != ColumnNames(*m_pDb, "main", table))
            return Fail(Quoted(file) + " is not a complete model file: table " + table +
                        " is missing or has other columns");
    }
    return true;
}

bool CVrnFile::CopyAttached(const std::string& file) {
    const std::vector<std::string> tables = TableNames(*m_pDb);
    if (!m_pDb->Exec("BEGIN")) return Fail("cannot load " + Quoted(file) + ": " + m_pDb->LastError());
    for (const std::string& table : tables) {
        const std::string name = QuoteIdentifier(table);
        if (!m_pDb->Exec("INSERT INTO main." + name + " SELECT * FROM src." + name))
            return Fail("cannot load " + Quoted(file) + ": " + m_pDb->LastError());
    }
    if (!m_pDb->Exec("COMMIT")) return Fail("cannot load " + Quoted(file) + ": " + m_pDb->LastError());

    std::int64_t lastRowSeq = 0;
    for (std::size_t i = 0; i < kRowTableCount; ++i) {
        const std::string sql = "SELECT max(row_seq) FROM " + QuoteIdentifier(kRowTables[i].tableName);
        const std::int64_t seq = m_pDb->QueryInt(sql, 0);
        if (seq > lastRowSeq) lastRowSeq = seq;
    }
    m_nextRowSeq = lastRowSeq + 1;
    return true;
}

int CVrnFile::Save(const char* path, int /*flags*/) {
    if (!path || !*path) return Fail("cannot save the model: no path was given");
    const std::string target(path);

    m_pDb->EnsureTransaction();
    CStatement info = m_pDb->Prepare("INSERT OR REPLACE INTO FileInfo (name, value) VALUES (?1, ?2)");
    std::vector<std::pair<const char*, std::string>> entries = {{"format", kFormatName},
                                                                {"format_version", std::to_string(kFormatVersion)}};
    if (m_hasPlatform) entries.emplace_back("platform", std::to_string(m_platform));
    for (const auto& entry : entries) {
        info.BindText(1, entry.first);
        info.BindText(2, entry.second.c_str());
        if (!info.Run()) NoteWriteFailure("cannot write table FileInfo: " + m_pDb->ConnectionError());
        info.Reset();
    }
    if (!m_pDb->Commit()) NoteWriteFailure("cannot complete the model in memory: " + m_pDb->LastError());
    if (!m_writeFailure.empty())
        return Fail("cannot save " + Quoted(target) + ": the model is incomplete (" + m_writeFailure + ")");

    // The committed model is copied page by page into the temporary file
    // that then replaces the target.
    std::string reason;
    const auto copy = [this](vrn::CTemporaryFile& file, std::string* why) {
        return vrn::CopyDatabase(m_pDb->Handle(), file, why);
    };
    if (!WriteFileAtomically(CFileSystem::Default(), target, copy, &reason)) return Fail(reason);
    m_lastError.clear();
    return 1;
}
