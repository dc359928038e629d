// A catalog reader: the catalog of an SQLite database made into a model file,
// written as a client of the library writes one. Copy it as the start of a
// reader for another catalog: read the catalog whole first, then describe the
// model to the builder in the order it needs.
//
//   sqlite_catalog_reader DATABASE MODEL
//
// It reads tables and views (sqlite_master), columns with their declared
// types and defaults (pragma table_xinfo) and AUTOINCREMENT
// (sqlite3_table_column_metadata), primary keys, unique constraints and
// indexes (pragma index_list, index_xinfo) and foreign keys (pragma
// foreign_key_list). The database is opened read-only.
//
// What it leaves out, and why:
//  - CHECK constraints and triggers. SQLite keeps them only inside the text of
//    their CREATE statement; reading them back means tokenizing SQL (strings,
//    quoted names, comments, nested parentheses), which a template should not
//    carry half-done.
//  - The names of constraints (primary keys, unique constraints, foreign
//    keys): no pragma gives them. The builder names keys and indexes itself;
//    foreign keys stay unnamed.
//  - The expressions of generated columns (the columns are kept) and the
//    conditions of partial indexes (the index is kept whole): the catalog's
//    pragmas give neither. Indexes on expressions are skipped: a model keeps
//    indexes on columns only.
//  - Virtual tables and their shadow tables, which hold an index of the
//    database (full-text search, R-trees) rather than tables of its model.
#include <VrnIntf.h>
#include <sqlite3.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace {

// The platform code of SQLite databases: no vendor's datatype or key rules.
constexpr int kPlatformGeneric = 0;
// Property codes of the builder that this reader sets.
constexpr int kColumnDefaultText = 9;  // SetAttributeStringProperty
constexpr int kColumnIdentity = 82;    // SetAttributeProperty, value 0
constexpr int kIndexUnique = 34;       // SetIndexProperty, 1 or 0
constexpr int kOnDeleteCascade = 77, kOnDeleteRestrict = 78, kOnDeleteSetNull = 79;
constexpr int kOnUpdateCascade = 80, kOnUpdateRestrict = 81;

struct CDatabaseCloser {
    void operator()(sqlite3* db) const { sqlite3_close(db); }
};
using CDatabase = std::unique_ptr<sqlite3, CDatabaseCloser>;

// One prepared statement, finalized when it goes; its one parameter, if it
// has one, is `parameter` (a table's or index's name: SQLite allows any, even
// an empty one). A statement that could not be prepared, or whose step
// failed, keeps SQLite's reason in Error().
class CQuery {
public:
    CQuery(sqlite3* db, const char* sql, const std::string& parameter = std::string()) : m_db(db) {
        if (sqlite3_prepare_v2(db, sql, -1, &m_stmt, nullptr) != SQLITE_OK) {
            m_error = sqlite3_errmsg(db);
            return;
        }
        if (sqlite3_bind_parameter_count(m_stmt) > 0)
            sqlite3_bind_text(m_stmt, 1, parameter.c_str(), -1, SQLITE_TRANSIENT);
    }
    ~CQuery() { sqlite3_finalize(m_stmt); }
    CQuery(const CQuery&) = delete;
    CQuery& operator=(const CQuery&) = delete;

    bool Step() {
        if (!m_stmt) return false;
        const int rc = sqlite3_step(m_stmt);
        if (rc != SQLITE_ROW && rc != SQLITE_DONE) m_error = sqlite3_errmsg(m_db);
        return rc == SQLITE_ROW;
    }
    bool IsNull(int column) const { return sqlite3_column_type(m_stmt, column) == SQLITE_NULL; }
    long Int(int column) const { return static_cast<long>(sqlite3_column_int64(m_stmt, column)); }
    std::string Text(int column) const {
        const unsigned char* text = sqlite3_column_text(m_stmt, column);
        return text ? reinterpret_cast<const char*>(text) : std::string();
    }
    const std::string& Error() const { return m_error; }

private:
    sqlite3* m_db;
    sqlite3_stmt* m_stmt = nullptr;
    std::string m_error;
};

// A table or view of the catalog and the builder's identifier for it.
struct CCatalogObject {
    std::string name;
    std::string sql;
    bool isView = false;
    unsigned long entity = 0;
};

// The tables and views of the database, tables first, each in the order it
// was created. Empty with `error` set when the catalog cannot be read.
std::vector<CCatalogObject> ReadCatalog(sqlite3* db, std::string& error) {
    // sqlite_ names are SQLite's own tables ('_' is a wildcard of LIKE, so
    // the prefix is compared as text). Shadow tables are named by
    // pragma table_list, which libraries before 3.37 do not have: there they
    // are read as ordinary tables.
    std::string sql =
        "SELECT type, name, sql FROM sqlite_master WHERE type IN ('table', 'view') "
        "AND substr(name, 1, 7) <> 'sqlite_' AND sql NOT LIKE 'CREATE VIRTUAL%'";
    if (CQuery(db, "SELECT 1 FROM pragma_table_list").Error().empty())
        sql += " AND name NOT IN (SELECT name FROM pragma_table_list WHERE type = 'shadow')";
    sql += " ORDER BY type, rowid";
    std::vector<CCatalogObject> objects;
    CQuery query(db, sql.c_str());
    while (query.Step()) objects.push_back({query.Text(1), query.Text(2), query.Text(0) == "view", 0});
    error = query.Error();
    return objects;
}

// A declared type split as the builder takes it: "DECIMAL(10, 2)" is DECIMAL
// with width 10 and scale 2; -1 where no number is given. The builder knows a
// few names of several words (DOUBLE PRECISION, CHARACTER VARYING); of any
// other such name the first word is the type (INT UNSIGNED is an INT).
struct CDeclaredType {
    std::string name;
    long width = -1;
    long scale = -1;
};

CDeclaredType SplitType(const CVrnAPI& builder, const std::string& declared) {
    CDeclaredType type;
    const std::size_t open = declared.find('(');
    std::string word;
    for (const char c : declared.substr(0, open) + " ") {
        if (c != ' ' && c != '\t' && c != '\n' && c != '\r') {
            word += c;
        } else if (!word.empty()) {
            type.name += (type.name.empty() ? "" : " ") + word;
            word.clear();
        }
    }
    if (type.name.find(' ') != std::string::npos && !builder.GetORVDatatype(type.name.c_str()))
        type.name = type.name.substr(0, type.name.find(' '));
    if (open != std::string::npos) {
        char* end = nullptr;
        const char* from = declared.c_str() + open + 1;
        const long width = std::strtol(from, &end, 10);
        if (end != from) type.width = width;
        while (*end == ' ') ++end;
        if (*end == ',') {
            from = end + 1;
            const long scale = std::strtol(from, &end, 10);
            if (end != from) type.scale = scale;
        }
    }
    return type;
}

// SQLite takes a default without parentheses only when it is one literal or
// name ('text', -1.5, NULL, CURRENT_DATE); any other expression was written
// in parentheses, which the catalog drops. They are put back, so that the
// text still reads as a DEFAULT clause.
std::string DefaultText(const std::string& value) {
    auto quoted = [](const std::string& text, char quote) {
        if (text.size() < 2 || text.front() != quote || text.back() != quote) return false;
        for (std::size_t i = 1; i + 1 < text.size(); ++i)
            if (text[i] == quote && text[++i] != quote) return false;  // a doubled quote stays inside
        return true;
    };
    std::size_t start = value.size() > 1 && (value[0] == '-' || value[0] == '+') ? 1 : 0;
    bool word = start < value.size();
    for (std::size_t i = start; i < value.size(); ++i) {
        const char c = value[i];
        const bool exponentSign = (c == '-' || c == '+') && i > start && (value[i - 1] == 'e' || value[i - 1] == 'E');
        word = word && (std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '.' || exponentSign);
    }
    const bool blob = value.size() > 2 && (value[0] == 'x' || value[0] == 'X') && quoted(value.substr(1), '\'');
    if (word || blob || quoted(value, '\'') || quoted(value, '"')) return value;
    return "(" + value + ")";
}

void AddColumns(CVrnAPI& builder, sqlite3* db, const CCatalogObject& table) {
    // Hidden columns of kind 1 belong to virtual tables; 2 and 3 are
    // generated columns, which are columns of the table.
    CQuery columns(db,
                   "SELECT name, type, \"notnull\", dflt_value FROM pragma_table_xinfo(?1) WHERE hidden <> 1 "
                   "ORDER BY cid",
                   table.name);
    while (columns.Step()) {
        const std::string name = columns.Text(0);
        const CDeclaredType type = SplitType(builder, columns.Text(1));
        // SQLite columns admit nulls unless declared NOT NULL; a column
        // without a type is given none, and the builder takes its default type.
        const unsigned long column =
            builder.AddAttribute(table.entity, name.c_str(), type.name.empty() ? nullptr : type.name.c_str(),
                                 type.width, type.scale, columns.Int(2) ? 0 : 1, 0);
        if (!column) continue;
        if (!columns.IsNull(3))
            builder.SetAttributeStringProperty(column, kColumnDefaultText, DefaultText(columns.Text(3)).c_str());
        int autoIncrement = 0;
        sqlite3_table_column_metadata(db, "main", table.name.c_str(), name.c_str(), nullptr, nullptr, nullptr, nullptr,
                                      &autoIncrement);
        if (autoIncrement) builder.SetAttributeProperty(column, kColumnIdentity, 0);
    }
}

void AddKeysAndIndexes(CVrnAPI& builder, sqlite3* db, const CCatalogObject& table) {
    // The primary key in its own column order; an INTEGER PRIMARY KEY (the
    // rowid) and the key of a WITHOUT ROWID table are told the same way.
    CQuery keyColumns(db, "SELECT name FROM pragma_table_xinfo(?1) WHERE pk > 0 ORDER BY pk", table.name);
    for (bool first = true; keyColumns.Step(); first = false) {
        if (first) builder.AddPrimaryKey(table.entity, nullptr);
        builder.AddPrimaryKeyColumn(table.entity, keyColumns.Text(0).c_str(), 0);
    }
    // Unique constraints (origin 'u', indexes SQLite made and named itself)
    // and created indexes (origin 'c'), in the order they were declared,
    // which is the order of their rows in sqlite_master. The primary key's
    // own index (origin 'pk') is the key just added.
    CQuery indexes(db,
                   "SELECT i.name, i.\"unique\", i.origin, i.partial FROM pragma_index_list(?1) AS i "
                   "JOIN sqlite_master AS m ON m.name = i.name WHERE i.origin <> 'pk' ORDER BY m.rowid",
                   table.name);
    while (indexes.Step()) {
        const std::string name = indexes.Text(0);
        std::vector<std::pair<std::string, int>> columns;  // name, descending
        bool onExpression = false;
        CQuery parts(db, "SELECT cid, name, \"desc\" FROM pragma_index_xinfo(?1) WHERE key = 1 ORDER BY seqno", name);
        while (parts.Step()) {
            onExpression = onExpression || parts.Int(0) < 0;
            columns.emplace_back(parts.Text(1), parts.Int(2) ? 1 : 0);
        }
        if (onExpression) {
            std::fprintf(stderr, "note: index %s of %s skipped: it indexes an expression\n", name.c_str(),
                         table.name.c_str());
            continue;
        }
        if (indexes.Int(3))
            std::fprintf(stderr, "note: index %s of %s kept without its WHERE condition\n", name.c_str(),
                         table.name.c_str());
        const unsigned long index = builder.AddIndex(table.entity, indexes.Text(2) == "c" ? name.c_str() : nullptr);
        for (const auto& [column, descending] : columns) builder.AddIndexColumn(index, column.c_str(), 0, descending);
        builder.SetIndexProperty(index, kIndexUnique, indexes.Int(1) ? 1 : 0);
    }
}

// SQLite's words for a referential action as the builder's property code; 0
// for none (NO ACTION, SET DEFAULT, and SET NULL on update, which the builder
// has no code for).
int ActionCode(const std::string& action, bool onDelete) {
    if (action == "CASCADE") return onDelete ? kOnDeleteCascade : kOnUpdateCascade;
    if (action == "RESTRICT") return onDelete ? kOnDeleteRestrict : kOnUpdateRestrict;
    if (action == "SET NULL" && onDelete) return kOnDeleteSetNull;
    return 0;
}

void AddForeignKeys(CVrnAPI& builder, sqlite3* db, const CCatalogObject& table) {
    // SQLite numbers a table's foreign keys from the last declared; read in
    // declaration order. A parent the model does not hold is given by name
    // only, and the key waits in the builder's pending list for resolution.
    CQuery pairs(db,
                 "SELECT id, \"table\", \"from\", \"to\", on_update, on_delete FROM pragma_foreign_key_list(?1) "
                 "ORDER BY id DESC, seq",
                 table.name);
    long current = -1;
    unsigned long key = 0;
    while (pairs.Step()) {
        const std::string parent = pairs.Text(1);
        if (pairs.Int(0) != current) {
            current = pairs.Int(0);
            key = builder.AddForeignKey(builder.FindEntity(parent.c_str(), nullptr, 0), table.entity, nullptr,
                                        parent.c_str(), nullptr);
            if (const int onUpdate = ActionCode(pairs.Text(4), false)) builder.SetForeignKeyProperty(key, onUpdate, 1);
            if (const int onDelete = ActionCode(pairs.Text(5), true)) builder.SetForeignKeyProperty(key, onDelete, 1);
        }
        if (!key) continue;  // the builder took no foreign key: its pairs have nowhere to go
        // No parent column: the parent's primary key columns, in order.
        const std::string from = pairs.Text(2), to = pairs.Text(3);
        if (!builder.AddForeignKeyColumnPair(key, pairs.IsNull(3) ? nullptr : to.c_str(), from.c_str(), 0))
            std::fprintf(stderr, "note: foreign key of %s to %s: column %s to %s not added\n", table.name.c_str(),
                         parent.c_str(), from.c_str(), pairs.IsNull(3) ? "its primary key" : to.c_str());
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: sqlite_catalog_reader DATABASE MODEL\n");
        return 2;
    }
    const std::string databasePath = argv[1];
    const char* modelPath = argv[2];
    std::error_code sameFileError;
    if (std::filesystem::equivalent(databasePath, modelPath, sameFileError)) {
        std::fprintf(stderr, "sqlite_catalog_reader: the model would replace the database %s\n", argv[1]);
        return 1;
    }

    // Read-only: a catalog reader never changes what it reads. A name that
    // starts with "file:" would be read as a URI by libraries built to.
    sqlite3* raw = nullptr;
    const std::string fileName = databasePath.compare(0, 5, "file:") == 0 ? "./" + databasePath : databasePath;
    const int opened = sqlite3_open_v2(fileName.c_str(), &raw, SQLITE_OPEN_READONLY, nullptr);
    CDatabase db(raw);
    if (opened != SQLITE_OK) {
        std::fprintf(stderr, "sqlite_catalog_reader: cannot open %s: %s\n", argv[1],
                     raw ? sqlite3_errmsg(raw) : "out of memory");
        return 1;
    }
    // The whole catalog is read before a model is made: a file that is no
    // database fails here, on its first read.
    std::string error;
    std::vector<CCatalogObject> objects = ReadCatalog(db.get(), error);
    if (!error.empty()) {
        std::fprintf(stderr, "sqlite_catalog_reader: cannot read the catalog of %s: %s\n", argv[1], error.c_str());
        return 1;
    }
    if (objects.empty()) {
        std::fprintf(stderr, "sqlite_catalog_reader: %s holds no tables or views\n", argv[1]);
        return 1;
    }

    // The host's texts: the names of the model's own rows, and the formats
    // of the messages of relationship resolution.
    AfxSetResourceString(kHostTextProductName, "sqlite_catalog_reader");
    AfxSetResourceString(kHostTextModelName, "Physical model");
    AfxSetResourceString(kHostTextDiagramName, "Main diagram");
    AfxSetResourceString(kHostTextParentNotFound, "Parent table %1 was not found.");
    AfxSetResourceString(kHostTextUnnamedKeyNotAdded, "A foreign key without a name was not added.");
    AfxSetResourceString(kHostTextForeignKeyNotAdded, "Foreign key %1 was not added.");
    AfxSetResourceString(kHostTextColumnPairNotAdded, "Foreign key %1: a column pair from %2 to %3 was not added.");

    CVrnAPI builder;
    if (!builder.Initialize(kPlatformGeneric, nullptr)) {
        std::fprintf(stderr, "sqlite_catalog_reader: no model could be made: %s\n",
                     builder.GetVrnFile()->GetLastError());
        return 1;
    }
    // Every table before any key: a key names its columns, and a foreign key
    // its parent table, which must be in the model by then.
    for (CCatalogObject& object : objects) {
        object.entity = builder.AddEntity(object.name.c_str(), nullptr, 0, object.isView ? 1 : 0);
        if (object.isView && object.entity) builder.GetEntityPtr(object.entity)->SetViewSQL(object.sql.c_str());
    }
    for (const CCatalogObject& object : objects)
        if (!object.isView && object.entity) AddColumns(builder, db.get(), object);
    for (const CCatalogObject& object : objects)
        if (!object.isView && object.entity) AddKeysAndIndexes(builder, db.get(), object);
    for (const CCatalogObject& object : objects)
        if (!object.isView && object.entity) AddForeignKeys(builder, db.get(), object);

    // Foreign keys whose parent was not found are attached now or dropped;
    // each problem is a message.
    CStringList messages;
    builder.ResolveForeignKeyConstraints(messages);
    for (POSITION pos = messages.GetHeadPosition(); pos;)
        std::fprintf(stderr, "sqlite_catalog_reader: %s\n", messages.GetNext(pos).GetString());

    builder.SaveToFile(modelPath);
    const std::string saveError = builder.GetVrnFile()->GetLastError();
    if (!saveError.empty()) {
        std::fprintf(stderr, "sqlite_catalog_reader: the model was not saved: %s\n", saveError.c_str());
        return 1;
    }
    std::printf("%s: %zu tables and views of %s\n", modelPath, objects.size(), argv[1]);
    return 0;
}
