// PostgreSQL's own catalog, read in bulk: one query per kind of object for
// every schema read, so that the number of queries does not grow with the
// number of tables (ODBC's own functions take one table at a time).
#include <map>
#include <set>

#include "FamilyCatalog.h"
#include "SqlLexer.h"

namespace {

using namespace familycode;

// The schemas and tables asked for, as a condition on the namespace `n` and the relation `r`.
std::string Where(const COdbcOptions& options, const char* relation) {
    std::string where;
    if (options.schemas.empty()) {
        where = "n.nspname NOT IN ('pg_catalog', 'information_schema') AND n.nspname NOT LIKE 'pg\\_toast%' "
                "AND n.nspname NOT LIKE 'pg\\_temp%'";
    } else {
        for (const std::string& schema : options.schemas)
            where += (where.empty() ? "(" : " OR ") + std::string("n.nspname LIKE ") + Literal(schema);
        where += ")";
    }
    if (!options.tablePattern.empty() && relation)
        where += std::string(" AND ") + relation + ".relname LIKE " + Literal(options.tablePattern);
    return where;
}

int DeleteActionOfCode(const std::string& code) {
    return code == "c" ? kOnDeleteCascade : code == "r" ? kOnDeleteRestrict : code == "n" ? kOnDeleteSetNull : 0;
}
int UpdateActionOfCode(const std::string& code) { return code == "c" ? kOnUpdateCascade : code == "r" ? kOnUpdateRestrict : 0; }

}  // namespace

bool ReadPostgresCatalog(COdbcConnection& connection, const COdbcOptions& options, CCatalogParts& parts,
                         std::string& why) {
    auto query = [&](const std::string& sql) {
        std::unique_ptr<COdbcRows> rows = connection.Query(sql);
        if (!rows) why = connection.Error();
        return rows;
    };
    CDeclaredTables& tables = *parts.tables;

    // Indexes, the primary keys' among them, with their columns in order
    // and their direction; an index on an expression has a column without a name.
    std::unique_ptr<COdbcRows> rows = query(
        "SELECT n.nspname, t.relname, i.relname, x.indisprimary, x.indisunique, a.attname, x.indoption[k.n - 1] & 1 "
        "FROM pg_index x JOIN pg_class i ON i.oid = x.indexrelid JOIN pg_class t ON t.oid = x.indrelid "
        "JOIN pg_namespace n ON n.oid = t.relnamespace "
        "CROSS JOIN LATERAL unnest(x.indkey) WITH ORDINALITY AS k(attnum, n) "
        "LEFT JOIN pg_attribute a ON a.attrelid = x.indrelid AND a.attnum = k.attnum AND k.attnum > 0 "
        "WHERE t.relkind IN ('r', 'p') AND " + Where(options, "t") + " ORDER BY 1, 2, 3, k.n");
    if (!rows) return false;
    CIndexRows indexes;
    while (rows->Next()) {
        const std::string column = rows->Text(6);
        indexes.Add(rows->Text(1), rows->Text(2), rows->Text(3), rows->Number(4) != 0, rows->Number(5) != 0,
                    rows->IsNull(6) ? nullptr : &column, rows->Number(7) != 0);
    }
    if (!rows->Error().empty()) {
        why = rows->Error();
        return false;
    }
    indexes.MoveTo(parts);

    // Foreign keys with their column pairs in order and their actions.
    rows = query(
        "SELECT n.nspname, c.relname, con.conname, pn.nspname, p.relname, ca.attname, pa.attname, "
        "con.confdeltype, con.confupdtype FROM pg_constraint con JOIN pg_class c ON c.oid = con.conrelid "
        "JOIN pg_namespace n ON n.oid = c.relnamespace JOIN pg_class p ON p.oid = con.confrelid "
        "JOIN pg_namespace pn ON pn.oid = p.relnamespace "
        "CROSS JOIN LATERAL unnest(con.conkey, con.confkey) WITH ORDINALITY AS k(ck, pk, n) "
        "JOIN pg_attribute ca ON ca.attrelid = con.conrelid AND ca.attnum = k.ck "
        "JOIN pg_attribute pa ON pa.attrelid = con.confrelid AND pa.attnum = k.pk "
        "WHERE con.contype = 'f' AND " + Where(options, "c") + " ORDER BY 1, 2, 3, k.n");
    if (!rows) return false;
    CForeignKeyRows keys;
    while (rows->Next())
        keys.Add(rows->Text(1), rows->Text(2), rows->Text(3), Name(rows->Text(4), rows->Text(5)),
                 DeleteActionOfCode(rows->Text(8)), UpdateActionOfCode(rows->Text(9)), rows->Text(6), rows->Text(7));
    if (!rows->Error().empty()) {
        why = rows->Error();
        return false;
    }
    keys.MoveTo(parts);

    // Checks, as the server spells them back; one on a single column is that column's.
    rows = query(
        "SELECT n.nspname, c.relname, con.conname, pg_get_constraintdef(con.oid), "
        "CASE WHEN array_length(con.conkey, 1) = 1 THEN (SELECT attname FROM pg_attribute WHERE attrelid = "
        "con.conrelid AND attnum = con.conkey[1]) END FROM pg_constraint con JOIN pg_class c ON c.oid = con.conrelid "
        "JOIN pg_namespace n ON n.oid = c.relnamespace WHERE con.contype = 'c' AND " + Where(options, "c") +
        " ORDER BY 1, 2, 3");
    if (!rows) return false;
    while (rows->Next()) {
        const auto table = tables.find(Key(rows->Text(1), rows->Text(2)));
        if (table == tables.end()) continue;
        std::string text = rows->Text(4);  // CHECK ((condition))
        const std::size_t open = text.find('('), close = text.rfind(')');
        if (open == std::string::npos || close == std::string::npos || close <= open) continue;
        CConstraintDecl check;
        check.kind = EConstraintKind::Check;
        check.name = rows->Text(3);
        check.checkText = text.substr(open + 1, close - open - 1);
        check.column = rows->Text(5);
        table->second.elements.emplace_back(std::move(check));
    }

    // Identity columns, and serial ones (a default that takes the next value of the column's own sequence).
    rows = query(
        "SELECT n.nspname, c.relname, a.attname FROM pg_attribute a JOIN pg_class c ON c.oid = a.attrelid "
        "JOIN pg_namespace n ON n.oid = c.relnamespace WHERE a.attnum > 0 AND NOT a.attisdropped AND "
        "(a.attidentity IN ('a', 'd') OR pg_get_serial_sequence(quote_ident(n.nspname) || '.' || "
        "quote_ident(c.relname), a.attname) IS NOT NULL) AND c.relkind IN ('r', 'p') AND " + Where(options, "c"));
    if (!rows) return false;
    while (rows->Next()) {
        const auto table = tables.find(Key(rows->Text(1), rows->Text(2)));
        if (table == tables.end()) continue;
        if (CColumnDecl* column = FindColumn(table->second, rows->Text(3))) column->properties.emplace_back(kIdentity, 0);
    }

    // The texts of views.
    rows = query("SELECT n.nspname, c.relname, pg_get_viewdef(c.oid) FROM pg_class c JOIN pg_namespace n ON n.oid = "
                 "c.relnamespace WHERE c.relkind IN ('v', 'm') AND " + Where(options, "c"));
    if (!rows) return false;
    while (rows->Next()) {
        const std::string name = rows->Text(2);
        parts.viewTexts[Key(rows->Text(1), name)] = "CREATE VIEW " + name + " AS\n" + rows->Text(3);
    }

    // Functions and procedures with their whole definitions.
    rows = query("SELECT n.nspname, p.proname, p.prokind, pg_get_functiondef(p.oid) FROM pg_proc p JOIN "
                 "pg_namespace n ON n.oid = p.pronamespace WHERE p.prokind IN ('f', 'p') AND " +
                 Where(options, nullptr) + " ORDER BY 1, 2");
    if (!rows) return false;
    while (rows->Next()) {
        CCodeDecl code;
        code.kind = rows->Text(3) == "p" ? ECodeKind::Procedure : ECodeKind::Function;
        code.name = Name(rows->Text(1), rows->Text(2));
        code.text = rows->Text(4);
        CStatementDecl statement;
        statement.kind = code.kind == ECodeKind::Function ? "CREATE FUNCTION" : "CREATE PROCEDURE";
        statement.declaration = std::move(code);
        parts.code.push_back(std::move(statement));
    }
    return true;
}
