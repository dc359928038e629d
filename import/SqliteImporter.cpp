#include "SqliteImporter.h"

#include <sqlite3.h>

#include <cstring>
#include <set>
#include <fstream>
#include <memory>
#include <vector>

#include "DdlImporter.h"

namespace {

struct CSqliteCloser {
    void operator()(sqlite3* db) const { sqlite3_close(db); }
};

// `path` as a name that SQLite takes for a plain file: this SQLite reads
// names that start with "file:" as URIs, where '?', '#' and '%' mean more.
std::string SqliteFileName(const std::string& path) {
    return path.compare(0, 5, "file:") == 0 ? "./" + path : path;
}

struct CStatementCloser {
    void operator()(sqlite3_stmt* stmt) const { sqlite3_finalize(stmt); }
};
using CDatabase = std::unique_ptr<sqlite3, CSqliteCloser>;
using CQuery = std::unique_ptr<sqlite3_stmt, CStatementCloser>;

CQuery Prepare(sqlite3* db, const std::string& sql) {
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, nullptr);
    return CQuery(stmt);
}

std::string Text(sqlite3_stmt* stmt, int column) {
    const unsigned char* text = sqlite3_column_text(stmt, column);
    return text ? reinterpret_cast<const char*>(text) : std::string();
}
}  // namespace

bool IsSqliteFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    char header[16] = {};
    in.read(header, sizeof header);
    return in.gcount() == sizeof header && std::memcmp(header, "SQLite format 3", 16) == 0;
}

bool ImportSqliteDatabase(const std::string& path, CDdlImporter& ddl, std::string& error) {
    sqlite3* raw = nullptr;
    const int rc = sqlite3_open_v2(SqliteFileName(path).c_str(), &raw, SQLITE_OPEN_READONLY, nullptr);
    CDatabase db(raw);
    if (rc != SQLITE_OK) {
        error = "cannot open '" + path + "': " + (raw ? sqlite3_errmsg(raw) : "out of memory");
        return false;
    }
    CQuery objects = Prepare(db.get(), "SELECT type, name, sql FROM sqlite_master WHERE sql IS NOT NULL AND "
                                       "name NOT LIKE 'sqlite_%' ORDER BY CASE type WHEN 'table' THEN 0 WHEN "
                                       "'view' THEN 1 WHEN 'index' THEN 2 ELSE 3 END, rowid");
    if (!objects) {
        error = "cannot read the catalog of '" + path + "': " + sqlite3_errmsg(db.get());
        return false;
    }
    // The shadow tables of a virtual table (full-text search, R-trees) hold
    // its index, not the user's data: they go with the virtual table, which
    // the model cannot hold. SQLite names them in pragma_table_list; older
    // libraries are asked by the names the modules give them.
    std::set<std::string> shadows;
    std::vector<std::string> virtuals;
    if (CQuery list = Prepare(db.get(), "SELECT name, type FROM pragma_table_list WHERE schema = 'main'")) {
        while (sqlite3_step(list.get()) == SQLITE_ROW) {
            const std::string type = Text(list.get(), 1);
            if (type == "shadow") shadows.insert(Text(list.get(), 0));
            if (type == "virtual") virtuals.push_back(Text(list.get(), 0));
        }
    } else {
        static const char* const kShadowSuffixes[] = {"_data", "_idx",     "_content", "_docsize", "_config", "_segments",
                                                      "_segdir", "_stat", "_node",    "_rowid",   "_parent"};
        CQuery named = Prepare(db.get(), "SELECT name FROM sqlite_master WHERE type = 'table' AND sql LIKE 'CREATE VIRTUAL%'");
        while (named && sqlite3_step(named.get()) == SQLITE_ROW) virtuals.push_back(Text(named.get(), 0));
        for (const std::string& name : virtuals)
            for (const char* suffix : kShadowSuffixes) shadows.insert(name + suffix);
    }
    for (const std::string& name : virtuals) {
        std::size_t count = 0;
        for (const std::string& shadow : shadows) count += shadow.compare(0, name.size() + 1, name + "_") == 0 ? 1 : 0;
        ddl.Note(path + ": virtual table " + name + " and its " + std::to_string(count) +
                 " shadow tables skipped: they hold an index of the database, not tables of its model");
    }
    // The stored CREATE statements are the catalog's own definitions: read
    // them as one script so that types, defaults, keys, checks and indexes
    // come out exactly as declared.
    std::string script;
    while (sqlite3_step(objects.get()) == SQLITE_ROW) {
        if (shadows.count(Text(objects.get(), 1))) continue;
        script += Text(objects.get(), 2);
        script += ";\n";
    }
    if (script.empty()) {
        error = "'" + path + "' holds no tables";
        return false;
    }
    ddl.ImportScript(path, script);
    return true;
}
