// The parts of a catalog that the portable ODBC path reads a table at a
// time, and that a server family with a reader of its own reads in bulk
// through its catalog views: keys and indexes, foreign keys, checks, the
// texts of views and code. Internal to odbc/.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "DdlDecl.h"
#include "OdbcConnection.h"
#include "OdbcSource.h"

// Tables by Key(schema, name), as SQLColumns declared them: a family reader
// adds their keys and checks.
using CDeclaredTables = std::map<std::string, CTableDecl>;

struct CCatalogParts {
    CDeclaredTables* tables = nullptr;
    std::vector<CStatementDecl> indexes, foreignKeys, code;
    std::map<std::string, std::string> viewTexts;  // by Key(schema, name)
};

inline std::string Key(const std::string& schema, const std::string& table) { return schema + '\x1e' + table; }

inline CQualifiedName Name(const std::string& schema, const std::string& name) {
    CQualifiedName qualified;
    if (!schema.empty()) qualified.parts.push_back(schema);
    qualified.parts.push_back(name);
    return qualified;
}

// The model builder's property codes the family readers set.
namespace familycode {
constexpr int kIdentity = 82;
constexpr int kOnDeleteCascade = 77, kOnDeleteRestrict = 78, kOnDeleteSetNull = 79, kOnUpdateCascade = 80,
              kOnUpdateRestrict = 81;
}  // namespace familycode

// A text as an SQL string literal.
inline std::string Literal(const std::string& text) {
    std::string literal = "'";
    for (char ch : text) literal += ch == '\'' ? std::string("''") : std::string(1, ch);
    return literal + "'";
}

inline CColumnDecl* FindColumn(CTableDecl& table, const std::string& name) {
    for (CTableElement& element : table.elements)
        if (auto* column = std::get_if<CColumnDecl>(&element); column && column->name == name) return column;
    return nullptr;
}

// Indexes as catalogs list them, a column to a row in order: a primary
// key's index becomes the key of its table, the others CREATE INDEX
// statements (an index with a part that is an expression is kept so, for the
// importer to say it cannot be held).
class CIndexRows {
public:
    // `column` null: the part is an expression.
    void Add(const std::string& schema, const std::string& table, const std::string& name, bool primary, bool unique,
             const std::string* column, bool descending);
    void MoveTo(CCatalogParts& parts);

private:
    struct CRead {
        std::string schema, table;
        bool primary = false;
        CIndexDecl index;
    };
    std::map<std::string, CRead> m_indexes;
    std::vector<std::string> m_order;
};

// Foreign keys as catalogs list them, a column pair to a row in order: one
// ALTER TABLE ... ADD FOREIGN KEY each, for the tables read.
class CForeignKeyRows {
public:
    // The first pair of a key gives its parent and actions.
    void Add(const std::string& schema, const std::string& table, const std::string& name, const CQualifiedName& parent,
             int onDelete, int onUpdate, const std::string& childColumn, const std::string& parentColumn);
    void MoveTo(CCatalogParts& parts);

private:
    std::map<std::string, CAlterDecl> m_keys;
    std::vector<std::string> m_order;
};

// Each family reader takes `options` with the schemas already chosen
// (empty: every schema but the server's own).

// PostgreSQL: keys, indexes, foreign keys, checks, identity columns, the
// texts of views, functions and procedures, each in one query over
// pg_catalog for all the schemas read. False with the reason at the first
// query the server refuses (the caller then takes the portable path).
bool ReadPostgresCatalog(COdbcConnection& connection, const COdbcOptions& options, CCatalogParts& parts,
                         std::string& why);

// MariaDB and MySQL: keys, indexes with their direction, foreign keys with
// their actions, checks, auto-increment columns, the texts of views and of
// routines, each in one query over information_schema.
bool ReadMariaDbCatalog(COdbcConnection& connection, const COdbcOptions& options, CCatalogParts& parts,
                        std::string& why);
