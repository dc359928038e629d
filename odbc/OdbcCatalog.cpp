#include "OdbcCatalog.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>

#include <VrnIntf.h>

#include "FamilyCatalog.h"
#include "SqlLexer.h"

namespace {

using namespace familycode;

bool StartsWith(const std::string& text, const char* prefix) {
    return UpperAscii(text).rfind(prefix, 0) == 0;
}

// A standard name for an ODBC SQL type: the fallback when the driver's own
// type name has no datatype code on the platform.
const char* StandardTypeName(long sqlType) {
    switch (sqlType) {
        case SQL_CHAR: return "CHAR";
        case SQL_VARCHAR: return "VARCHAR";
        case SQL_LONGVARCHAR: return "CLOB";
        case SQL_WCHAR: return "NCHAR";
        case SQL_WVARCHAR: return "NVARCHAR";
        case SQL_WLONGVARCHAR: return "NCLOB";
        case SQL_DECIMAL: return "DECIMAL";
        case SQL_NUMERIC: return "NUMERIC";
        case SQL_SMALLINT: return "SMALLINT";
        case SQL_INTEGER: return "INTEGER";
        case SQL_BIGINT: return "BIGINT";
        case SQL_TINYINT: return "TINYINT";
        case SQL_REAL: return "REAL";
        case SQL_FLOAT: return "FLOAT";
        case SQL_DOUBLE: return "DOUBLE PRECISION";
        case SQL_BIT: return "BIT";
        case SQL_BINARY: return "BINARY";
        case SQL_VARBINARY: return "VARBINARY";
        case SQL_LONGVARBINARY: return "BLOB";
        case SQL_TYPE_DATE: case SQL_DATE: return "DATE";
        case SQL_TYPE_TIME: case SQL_TIME: return "TIME";
        case SQL_TYPE_TIMESTAMP: case SQL_TIMESTAMP: return "TIMESTAMP";
        default: return nullptr;
    }
}

// Whether a type of this SQL type is written with a length (characters,
// binary) or a precision and scale (decimals).
bool Sized(long sqlType) {
    switch (sqlType) {
        case SQL_CHAR: case SQL_VARCHAR: case SQL_WCHAR: case SQL_WVARCHAR: case SQL_BINARY: case SQL_VARBINARY:
        case SQL_DECIMAL: case SQL_NUMERIC:
            return true;
        default:
            return false;
    }
}

bool Scaled(long sqlType) { return sqlType == SQL_DECIMAL || sqlType == SQL_NUMERIC; }

int DeleteAction(long rule) {
    switch (rule) {
        case SQL_CASCADE: return kOnDeleteCascade;
        case SQL_RESTRICT: return kOnDeleteRestrict;
        case SQL_SET_NULL: return kOnDeleteSetNull;
        default: return 0;  // NO ACTION, SET DEFAULT: the model has no property for them
    }
}

int UpdateAction(long rule) {
    switch (rule) {
        case SQL_CASCADE: return kOnUpdateCascade;
        case SQL_RESTRICT: return kOnUpdateRestrict;
        default: return 0;
    }
}

// Schemas a server keeps for itself, left out unless asked for by name.
bool IsSystemSchema(const std::string& schema) {
    static const char* const kSystem[] = {"INFORMATION_SCHEMA", "PG_CATALOG", "PG_TOAST", "SYS", "SYSIBM",
                                          "SYSCAT", "SYSSTAT", "SYSTOOLS", "MYSQL", "PERFORMANCE_SCHEMA"};
    const std::string upper = UpperAscii(schema);
    for (const char* system : kSystem)
        if (upper == system) return true;
    return upper.rfind("PG_TEMP_", 0) == 0;
}

// The owner of a row of a catalog function, from its schema column (the
// catalog column just before it on a server whose databases are catalogs).
std::string Owner(const COdbcConnection& connection, COdbcRows& rows, int schemaColumn) {
    return rows.Text(connection.CatalogsAsSchemas() ? schemaColumn - 1 : schemaColumn);
}

struct CTableRef {
    std::string schema, name;
    bool view = false;
};

// Keys, indexes and foreign keys: ODBC asks for them one table at a time.
void ReadPerTable(COdbcConnection& connection, const std::vector<CTableRef>& found, CCatalogParts& parts,
                  std::vector<std::string>& warnings) {
    std::vector<CStatementDecl>& indexes = parts.indexes;
    std::vector<CStatementDecl>& foreignKeys = parts.foreignKeys;
    for (const CTableRef& table : found) {
        if (table.view) continue;
        CTableDecl& decl = (*parts.tables)[Key(table.schema, table.name)];
        const std::string what = "table " + table.name;
        std::vector<std::pair<long, std::string>> keyColumns;
        std::string keyName;
        if (std::unique_ptr<COdbcRows> rows = connection.PrimaryKeys(table.schema, table.name)) {
            while (rows->Next()) {
                keyColumns.emplace_back(rows->Number(5), rows->Text(4));
                keyName = rows->Text(6);
            }
        } else {
            warnings.push_back(what + ": primary key not read: " + connection.Error());
        }
        std::sort(keyColumns.begin(), keyColumns.end());
        CConstraintDecl key;
        key.kind = EConstraintKind::PrimaryKey;
        key.name = keyName;
        for (const auto& column : keyColumns) key.columns.push_back(column.second);
        if (!key.columns.empty()) decl.elements.emplace_back(key);

        std::map<std::string, CIndexDecl> byName;
        std::vector<std::string> order;
        if (std::unique_ptr<COdbcRows> rows = connection.Statistics(table.schema, table.name)) {
            std::map<std::string, std::vector<std::pair<long, std::pair<std::string, bool>>>> columns;
            while (rows->Next()) {
                if (rows->Number(7) == SQL_TABLE_STAT || rows->IsNull(6)) continue;
                const std::string name = rows->Text(6);
                auto [index, added] = byName.emplace(name, CIndexDecl());
                if (added) {
                    order.push_back(name);
                    index->second.name = name;
                    index->second.table = Name(table.schema, table.name);
                    index->second.unique = rows->Number(4, 1) == 0;
                }
                columns[name].emplace_back(rows->Number(8), std::make_pair(rows->Text(9), UpperAscii(rows->Text(10)) == "D"));
            }
            for (auto& [name, list] : columns) {
                std::sort(list.begin(), list.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
                for (const auto& column : list) {
                    byName[name].columns.push_back(column.second.first);
                    byName[name].descending.push_back(column.second.second);
                }
            }
        } else {
            warnings.push_back(what + ": indexes not read: " + connection.Error());
        }
        for (const std::string& name : order) {
            CIndexDecl& index = byName[name];
            // The index that carries the primary key is the key's own.
            if (index.unique && index.columns == key.columns) continue;
            CStatementDecl statement;
            statement.kind = "CREATE INDEX";
            statement.declaration = std::move(index);
            indexes.push_back(std::move(statement));
        }

        if (std::unique_ptr<COdbcRows> rows = connection.ForeignKeys(table.schema, table.name)) {
            std::map<std::string, std::vector<std::pair<long, std::pair<std::string, std::string>>>> pairs;
            std::map<std::string, CForeignKeyDecl> keys;
            std::vector<std::string> keyOrder;
            while (rows->Next()) {
                // Unnamed keys (some drivers) are told apart by their parent.
                const std::string parentSchema = Owner(connection, *rows, 2), parentTable = rows->Text(3);
                const std::string name = rows->IsNull(12) ? "\x1f" + Key(parentSchema, parentTable) : rows->Text(12);
                auto [entry, added] = keys.emplace(name, CForeignKeyDecl());
                if (added) {
                    keyOrder.push_back(name);
                    entry->second.name = name[0] == '\x1f' ? std::string() : name;
                    entry->second.parent = Name(parentSchema, parentTable);
                    entry->second.onUpdate = UpdateAction(rows->Number(10, SQL_NO_ACTION));
                    entry->second.onDelete = DeleteAction(rows->Number(11, SQL_NO_ACTION));
                }
                pairs[name].emplace_back(rows->Number(9), std::make_pair(rows->Text(8), rows->Text(4)));
            }
            for (const std::string& name : keyOrder) {
                auto& list = pairs[name];
                std::sort(list.begin(), list.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
                CConstraintDecl constraint;
                constraint.kind = EConstraintKind::ForeignKey;
                constraint.reference = keys[name];
                constraint.name = constraint.reference.name;
                for (const auto& pair : list) {
                    constraint.reference.childColumns.push_back(pair.second.first);
                    constraint.reference.parentColumns.push_back(pair.second.second);
                }
                CAlterDecl alter;
                alter.table = Name(table.schema, table.name);
                alter.items.emplace_back(std::move(constraint));
                CStatementDecl statement;
                statement.kind = "ALTER TABLE";
                statement.declaration = std::move(alter);
                foreignKeys.push_back(std::move(statement));
            }
        } else {
            warnings.push_back(what + ": foreign keys not read: " + connection.Error());
        }
    }
}

// Procedures and functions by name: ODBC gives no text.
void ReadProcedures(COdbcConnection& connection, const std::vector<std::string>& schemas, CCatalogParts& parts,
                    std::vector<std::string>& warnings) {
    for (const std::string& schema : schemas) {
        std::unique_ptr<COdbcRows> rows = connection.Procedures(schema);
        if (!rows) {
            warnings.push_back("procedures not read: " + connection.Error());
            break;
        }
        while (rows->Next()) {
            const std::string owner = Owner(connection, *rows, 2);
            if (schema.empty() && IsSystemSchema(owner)) continue;
            CCodeDecl code;
            code.kind = rows->Number(8) == SQL_PT_FUNCTION ? ECodeKind::Function : ECodeKind::Procedure;
            code.name = Name(owner, rows->Text(3));
            CStatementDecl statement;
            statement.kind = code.kind == ECodeKind::Function ? "CREATE FUNCTION" : "CREATE PROCEDURE";
            statement.declaration = std::move(code);
            parts.code.push_back(std::move(statement));
        }
    }
}

}  // namespace

int PlatformOfServer(const std::string& name, const std::string& version) {
    const std::string upper = UpperAscii(name);
    const auto code = [](const char* platform) { return FindPlatformByName(platform)->code; };
    if (upper.find("SQL SERVER") != std::string::npos) return code("sqlserver");
    if (upper.find("ADAPTIVE SERVER ENTERPRISE") != std::string::npos || upper.rfind("SYBASE", 0) == 0)
        return code("sybase");
    if (upper.rfind("ORACLE", 0) == 0) {
        const int major = std::atoi(version.c_str());
        return major == 7 ? code("oracle7") : major == 8 ? code("oracle8") : code("oracle");
    }
    if (upper.rfind("DB2/400", 0) == 0 || upper.rfind("DB2 FOR I", 0) == 0) return code("as400");
    // DB2 for z/OS names itself DB2 with a version of the form DSNvvrrm; DB2 for LUW as DB2/LINUX, DB2/NT, ...
    if (upper.rfind("DB2", 0) == 0) return StartsWith(version, "DSN") || upper == "DB2" ? code("db2zos") : code("db2");
    if (upper.find("INFORMIX") != std::string::npos) return 6;
    return 0;
}

COdbcServer DescribeServer(COdbcConnection& connection) {
    COdbcServer server;
    server.name = connection.Info(SQL_DBMS_NAME);
    server.version = connection.Info(SQL_DBMS_VER);
    server.driver = connection.Info(SQL_DRIVER_NAME);
    server.platform = PlatformOfServer(server.name, server.version);
    return server;
}

bool ReadOdbcCatalog(COdbcConnection& connection, const COdbcServer& server, const COdbcOptions& options,
                     COdbcCatalog& catalog, std::string& error) {
    // A server without schemas (MariaDB, MySQL) names its databases as
    // catalogs; without --schema its current database is read.
    connection.UseCatalogsAsSchemas(connection.InfoNumber(SQL_SCHEMA_USAGE) == 0 &&
                                    connection.InfoNumber(SQL_CATALOG_USAGE) != 0);
    std::vector<std::string> schemas = options.schemas.empty() ? std::vector<std::string>{""} : options.schemas;
    if (connection.CatalogsAsSchemas() && options.schemas.empty()) {
        const std::string current = connection.Info(SQL_DATABASE_NAME);
        if (!current.empty()) schemas = {current};
    }
    const std::string tables = options.tablePattern.empty() ? "%" : options.tablePattern;

    // Tables and views, one call per schema pattern.
    std::vector<CTableRef> found;
    std::set<std::string> known;
    for (const std::string& schema : schemas) {
        std::unique_ptr<COdbcRows> rows = connection.Tables(schema, tables, "TABLE,VIEW");
        if (!rows) {
            error = connection.Error();
            return false;
        }
        while (rows->Next()) {
            CTableRef table{Owner(connection, *rows, 2), rows->Text(3), UpperAscii(rows->Text(4)) == "VIEW"};
            if (schema.empty() && IsSystemSchema(table.schema)) continue;
            if (known.insert(Key(table.schema, table.name)).second) found.push_back(table);
        }
        if (!rows->Error().empty()) catalog.warnings.push_back("the list of tables ended early: " + rows->Error());
    }
    if (found.empty()) {
        error = "no table or view " + std::string(options.schemas.empty() ? "" : "in the schemas asked for ") +
                "is readable on the server" + (options.tablePattern.empty() ? "" : " matching " + options.tablePattern);
        return false;
    }

    // Columns of every table, one call per schema pattern, in each table's order.
    std::map<std::string, CTableDecl> declared;
    for (const CTableRef& table : found) {
        CTableDecl decl;
        decl.name = Name(table.schema, table.name);
        declared.emplace(Key(table.schema, table.name), std::move(decl));
    }
    for (const std::string& schema : schemas) {
        std::unique_ptr<COdbcRows> rows = connection.Columns(schema, tables);
        if (!rows) {
            catalog.warnings.push_back("columns not read: " + connection.Error());
            break;
        }
        std::map<std::string, std::vector<std::pair<long, CColumnDecl>>> columns;
        while (rows->Next()) {
            const auto table = declared.find(Key(Owner(connection, *rows, 2), rows->Text(3)));
            if (table == declared.end()) continue;
            CColumnDecl column;
            column.name = rows->Text(4);
            const long sqlType = rows->Number(5);
            std::string type = rows->Text(6);
            if (Sized(sqlType) && !rows->IsNull(7)) column.width = rows->Number(7);
            if (Scaled(sqlType) && !rows->IsNull(9)) column.scale = rows->Number(9);
            // Some drivers (SQLite's) give the type as it was declared, with
            // its length or precision and scale: those are the column's.
            const std::size_t open = type.find('(');
            if (open != std::string::npos) {
                long sizes[2] = {-1, -1};
                std::sscanf(type.c_str() + open, "(%ld,%ld", &sizes[0], &sizes[1]);
                if (sizes[0] >= 0) column.width = sizes[0];
                column.scale = sizes[1];
                type = type.substr(0, type.find_last_not_of(' ', open - 1) + 1);
            }
            // The driver's type name when the platform has a datatype code for it, else the standard name.
            if (!TranslateDatatypeName(type.c_str(), server.platform))
                if (const char* standard = StandardTypeName(sqlType)) type = standard;
            column.datatype = type;
            const long nullable = rows->Number(11, SQL_NULLABLE_UNKNOWN);
            if (nullable != SQL_NULLABLE_UNKNOWN) column.nullOption = nullable == SQL_NO_NULLS ? 0 : 1;
            // No default is the word NULL.
            const std::string defaultText = rows->Text(13);
            if (UpperAscii(defaultText) != "NULL") column.defaultText = defaultText;
            columns[table->first].emplace_back(rows->Number(17, 0), std::move(column));
        }
        if (!rows->Error().empty()) catalog.warnings.push_back("the list of columns ended early: " + rows->Error());
        for (auto& [key, list] : columns) {
            std::stable_sort(list.begin(), list.end(),
                             [](const auto& a, const auto& b) { return a.first < b.first; });
            for (auto& entry : list) declared[key].elements.emplace_back(std::move(entry.second));
        }
    }

    // Keys, indexes, foreign keys and code: in bulk through the server's own
    // catalog where its family is known, else through ODBC a table at a time.
    CCatalogParts parts;
    parts.tables = &declared;
    bool bulk = false;
    static const struct {
        const char* name;  // in SQL_DBMS_NAME, upper case
        const char* family;
        bool (*read)(COdbcConnection&, const COdbcOptions&, CCatalogParts&, std::string&);
    } kFamilies[] = {
        {"POSTGRESQL", "PostgreSQL", &ReadPostgresCatalog},
        {"MARIADB", "MariaDB", &ReadMariaDbCatalog},
        {"MYSQL", "MySQL", &ReadMariaDbCatalog},
    };
    COdbcOptions chosen = options;  // the schemas as chosen above; none for every schema
    chosen.schemas.clear();
    for (const std::string& schema : schemas)
        if (!schema.empty()) chosen.schemas.push_back(schema);
    for (const auto& family : kFamilies) {
        if (UpperAscii(server.name).find(family.name) == std::string::npos) continue;
        // Read into a copy: a reading refused half-way leaves the tables as they were.
        CDeclaredTables copy = declared;
        CCatalogParts read;
        read.tables = &copy;
        std::string why;
        if (family.read(connection, chosen, read, why)) {
            declared = std::move(copy);
            parts = std::move(read);
            parts.tables = &declared;
            bulk = true;
        } else {
            catalog.warnings.push_back(std::string("the ") + family.family + " catalog could not be read (" + why +
                                       "): keys, indexes and foreign keys are read through ODBC, a table at a time");
        }
        break;
    }
    if (!bulk) {
        ReadPerTable(connection, found, parts, catalog.warnings);
        ReadProcedures(connection, schemas, parts, catalog.warnings);
    }

    for (const CTableRef& table : found) {
        CStatementDecl statement;
        if (table.view) {
            statement.kind = "CREATE VIEW";
            const auto text = parts.viewTexts.find(Key(table.schema, table.name));
            statement.declaration =
                CViewDecl{Name(table.schema, table.name), text == parts.viewTexts.end() ? std::string() : text->second};
        } else {
            statement.kind = "CREATE TABLE";
            statement.declaration = std::move(declared[Key(table.schema, table.name)]);
        }
        catalog.statements.push_back(std::move(statement));
    }
    for (auto* list : {&parts.indexes, &parts.foreignKeys, &parts.code})
        for (CStatementDecl& statement : *list) catalog.statements.push_back(std::move(statement));
    return true;
}
