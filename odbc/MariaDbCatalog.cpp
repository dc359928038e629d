// MariaDB's and MySQL's information_schema, read in bulk: one query per kind
// of object for every database read, so that the number of queries does not
// grow with the number of tables. A database is what the model calls an
// owner (the ODBC driver names it as the catalog).
#include <map>

#include "FamilyCatalog.h"
#include "SqlLexer.h"

namespace {

using namespace familycode;

// The databases and tables asked for, as a condition on the columns `schema` and `table`.
std::string Where(const COdbcOptions& options, const std::string& schema, const std::string& table) {
    std::string where;
    if (options.schemas.empty()) {
        where = schema + " NOT IN ('mysql', 'information_schema', 'performance_schema', 'sys')";
    } else {
        for (const std::string& name : options.schemas)
            where += (where.empty() ? "(" : " OR ") + schema + " LIKE " + Literal(name);
        where += ")";
    }
    if (!options.tablePattern.empty() && !table.empty()) where += " AND " + table + " LIKE " + Literal(options.tablePattern);
    return where;
}

int DeleteActionOfRule(const std::string& rule) {
    return rule == "CASCADE" ? kOnDeleteCascade : rule == "RESTRICT" ? kOnDeleteRestrict
                                                : rule == "SET NULL" ? kOnDeleteSetNull : 0;
}
int UpdateActionOfRule(const std::string& rule) {
    return rule == "CASCADE" ? kOnUpdateCascade : rule == "RESTRICT" ? kOnUpdateRestrict : 0;
}

}  // namespace

bool ReadMariaDbCatalog(COdbcConnection& connection, const COdbcOptions& options, CCatalogParts& parts,
                        std::string& why) {
    auto query = [&](const std::string& sql) {
        std::unique_ptr<COdbcRows> rows = connection.Query(sql);
        if (!rows) why = connection.Error();
        return rows;
    };
    auto ended = [&](COdbcRows& rows) {
        if (rows.Error().empty()) return true;
        why = rows.Error();
        return false;
    };
    CDeclaredTables& tables = *parts.tables;

    // Indexes, PRIMARY among them, with their columns in order and their direction.
    std::unique_ptr<COdbcRows> rows =
        query("SELECT TABLE_SCHEMA, TABLE_NAME, INDEX_NAME, NON_UNIQUE, COLUMN_NAME, COLLATION FROM "
              "information_schema.STATISTICS WHERE " + Where(options, "TABLE_SCHEMA", "TABLE_NAME") +
              " ORDER BY TABLE_SCHEMA, TABLE_NAME, INDEX_NAME, SEQ_IN_INDEX");
    if (!rows) return false;
    CIndexRows indexes;
    while (rows->Next()) {
        const std::string name = rows->Text(3), column = rows->Text(5);
        indexes.Add(rows->Text(1), rows->Text(2), name, name == "PRIMARY", rows->Number(4, 1) == 0,
                    rows->IsNull(5) ? nullptr : &column, rows->Text(6) == "D");
    }
    if (!ended(*rows)) return false;
    indexes.MoveTo(parts);

    // Foreign keys with their column pairs in order and their rules.
    rows = query(
        "SELECT k.TABLE_SCHEMA, k.TABLE_NAME, k.CONSTRAINT_NAME, k.REFERENCED_TABLE_SCHEMA, k.REFERENCED_TABLE_NAME, "
        "k.COLUMN_NAME, k.REFERENCED_COLUMN_NAME, r.DELETE_RULE, r.UPDATE_RULE FROM information_schema.KEY_COLUMN_USAGE "
        "k JOIN information_schema.REFERENTIAL_CONSTRAINTS r ON r.CONSTRAINT_SCHEMA = k.CONSTRAINT_SCHEMA AND "
        "r.CONSTRAINT_NAME = k.CONSTRAINT_NAME AND r.TABLE_NAME = k.TABLE_NAME WHERE k.REFERENCED_TABLE_NAME IS NOT "
        "NULL AND " + Where(options, "k.TABLE_SCHEMA", "k.TABLE_NAME") +
        " ORDER BY k.TABLE_SCHEMA, k.TABLE_NAME, k.CONSTRAINT_NAME, k.ORDINAL_POSITION");
    if (!rows) return false;
    CForeignKeyRows keys;
    while (rows->Next())
        keys.Add(rows->Text(1), rows->Text(2), rows->Text(3), Name(rows->Text(4), rows->Text(5)),
                 DeleteActionOfRule(rows->Text(8)), UpdateActionOfRule(rows->Text(9)), rows->Text(6), rows->Text(7));
    if (!ended(*rows)) return false;
    keys.MoveTo(parts);

    // Checks; one declared with a column is that column's (MariaDB names it after the column).
    rows = query("SELECT CONSTRAINT_SCHEMA, TABLE_NAME, CONSTRAINT_NAME, CHECK_CLAUSE, LEVEL FROM "
                 "information_schema.CHECK_CONSTRAINTS WHERE " + Where(options, "CONSTRAINT_SCHEMA", "TABLE_NAME") +
                 " ORDER BY 1, 2, 3");
    if (!rows) return false;
    while (rows->Next()) {
        const auto table = tables.find(Key(rows->Text(1), rows->Text(2)));
        if (table == tables.end()) continue;
        CConstraintDecl check;
        check.kind = EConstraintKind::Check;
        check.name = rows->Text(3);
        check.checkText = rows->Text(4);
        if (UpperAscii(rows->Text(5)) == "COLUMN") {
            check.column = check.name;
            check.name.clear();
        }
        table->second.elements.emplace_back(std::move(check));
    }
    if (!ended(*rows)) return false;

    // Auto-increment columns.
    rows = query("SELECT TABLE_SCHEMA, TABLE_NAME, COLUMN_NAME FROM information_schema.COLUMNS WHERE EXTRA LIKE "
                 "'%auto_increment%' AND " + Where(options, "TABLE_SCHEMA", "TABLE_NAME"));
    if (!rows) return false;
    while (rows->Next()) {
        const auto table = tables.find(Key(rows->Text(1), rows->Text(2)));
        if (table == tables.end()) continue;
        if (CColumnDecl* column = FindColumn(table->second, rows->Text(3))) column->properties.emplace_back(kIdentity, 0);
    }
    if (!ended(*rows)) return false;

    // The texts of views.
    rows = query("SELECT TABLE_SCHEMA, TABLE_NAME, VIEW_DEFINITION FROM information_schema.VIEWS WHERE " +
                 Where(options, "TABLE_SCHEMA", "TABLE_NAME"));
    if (!rows) return false;
    while (rows->Next()) {
        const std::string name = rows->Text(2);
        parts.viewTexts[Key(rows->Text(1), name)] = "CREATE VIEW " + name + " AS " + rows->Text(3);
    }
    if (!ended(*rows)) return false;

    // Procedures and functions: their statements made again from their
    // parameters, result type and body.
    rows = query(
        "SELECT r.ROUTINE_SCHEMA, r.ROUTINE_NAME, r.ROUTINE_TYPE, r.DTD_IDENTIFIER, r.ROUTINE_DEFINITION, "
        "(SELECT GROUP_CONCAT(CONCAT(IF(r.ROUTINE_TYPE = 'PROCEDURE', CONCAT(p.PARAMETER_MODE, ' '), ''), "
        "p.PARAMETER_NAME, ' ', p.DTD_IDENTIFIER) ORDER BY p.ORDINAL_POSITION SEPARATOR ', ') FROM "
        "information_schema.PARAMETERS p WHERE p.SPECIFIC_SCHEMA = r.ROUTINE_SCHEMA AND p.SPECIFIC_NAME = "
        "r.SPECIFIC_NAME AND p.ORDINAL_POSITION > 0) FROM information_schema.ROUTINES r WHERE " +
        Where(options, "r.ROUTINE_SCHEMA", "") + " ORDER BY 1, 2");
    if (!rows) return false;
    while (rows->Next()) {
        CCodeDecl code;
        const bool function = UpperAscii(rows->Text(3)) == "FUNCTION";
        code.kind = function ? ECodeKind::Function : ECodeKind::Procedure;
        code.name = Name(rows->Text(1), rows->Text(2));
        code.text = std::string(function ? "CREATE FUNCTION " : "CREATE PROCEDURE ") + rows->Text(2) + "(" +
                    rows->Text(6) + ")" + (function ? " RETURNS " + rows->Text(4) : std::string()) + "\n" +
                    rows->Text(5);
        CStatementDecl statement;
        statement.kind = function ? "CREATE FUNCTION" : "CREATE PROCEDURE";
        statement.declaration = std::move(code);
        parts.code.push_back(std::move(statement));
    }
    return ended(*rows);
}
