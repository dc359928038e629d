#include "reader/TypeNames.h"

#include <cstring>

#include "builder/Platforms.h"

namespace {

constexpr ETypeArguments kNone = ETypeArguments::None;
constexpr ETypeArguments kLength = ETypeArguments::Length;
constexpr ETypeArguments kPrecision = ETypeArguments::PrecisionScale;

}  // namespace

// Columns: SQL Server and Sybase; Oracle; DB2 for Linux, Unix and Windows;
// DB2 for z/OS and AS/400; generic SQL (the names the model itself knows).
const CTypeNameRow kTypeNames[] = {
    {"DC", {{"decimal", kPrecision}, {"NUMBER", kPrecision}, {"DECIMAL", kPrecision}, {"DECIMAL", kPrecision}, {"DECIMAL", kPrecision}}},
    {"CH", {{"char", kLength}, {"CHAR", kLength}, {"CHAR", kLength}, {"CHAR", kLength}, {"CHAR", kLength}}},
    {"VAR", {{"varchar", kLength}, {"VARCHAR2", kLength}, {"VARCHAR", kLength}, {"VARCHAR", kLength}, {"VARCHAR", kLength}}},
    {"INT", {{"int", kNone}, {"INTEGER", kNone}, {"INTEGER", kNone}, {"INTEGER", kNone}, {"INTEGER", kNone}}},
    {"BIT", {{"bit", kNone}, {"NUMBER(1)", kNone}, {"SMALLINT", kNone}, {"SMALLINT", kNone}, {"BIT", kNone}}},
    {"TX", {{"ntext", kNone}, {"NCLOB", kNone}, {"DBCLOB", kNone}, {"DBCLOB", kNone}, {"NCLOB", kNone}}},
    {"FLT", {{"float", kNone}, {"FLOAT", kNone}, {"FLOAT", kNone}, {"FLOAT", kNone}, {"FLOAT", kNone}}},
    {"MN", {{"money", kNone}, {"NUMBER(19,4)", kNone}, {"DECIMAL(19,4)", kNone}, {"DECIMAL(19,4)", kNone}, {"MONEY", kNone}}},
    {"VBN", {{"varbinary", kLength}, {"RAW", kLength}, {"VARCHAR() FOR BIT DATA", kLength}, {"VARCHAR() FOR BIT DATA", kLength}, {"VARBINARY", kLength}}},
    {"BIN", {{"binary", kLength}, {"RAW", kLength}, {"CHAR() FOR BIT DATA", kLength}, {"CHAR() FOR BIT DATA", kLength}, {"BINARY", kLength}}},
    {"DT", {{"datetime", kNone}, {"DATE", kNone}, {"TIMESTAMP", kNone}, {"TIMESTAMP", kNone}, {"DATETIME", kNone}}},
    {"TS", {{"timestamp", kNone}, {"TIMESTAMP", kNone}, {"TIMESTAMP", kNone}, {"TIMESTAMP", kNone}, {"TIMESTAMP", kNone}}},
    {"T", {{"time", kNone}, {"DATE", kNone}, {"TIME", kNone}, {"TIME", kNone}, {"TIME", kNone}}},
    {"DBL", {{"float", kNone}, {"BINARY_DOUBLE", kNone}, {"DOUBLE", kNone}, {"DOUBLE", kNone}, {"DOUBLE PRECISION", kNone}}},
    {"NUM", {{"numeric", kPrecision}, {"NUMBER", kPrecision}, {"NUMERIC", kPrecision}, {"NUMERIC", kPrecision}, {"NUMERIC", kPrecision}}},
    {"PIC", {{"image", kNone}, {"BLOB", kNone}, {"BLOB", kNone}, {"BLOB", kNone}, {"BLOB", kNone}}},
    {"LVA", {{"text", kNone}, {"LONG", kNone}, {"LONG VARCHAR", kNone}, {"LONG VARCHAR", kNone}, {"LONG VARCHAR", kNone}}},
    {"LBN", {{"image", kNone}, {"LONG RAW", kNone}, {"BLOB", kNone}, {"BLOB", kNone}, {"LONG BINARY", kNone}}},
    {"MEM", {{"text", kNone}, {"CLOB", kNone}, {"CLOB", kNone}, {"CLOB", kNone}, {"CLOB", kNone}}},
    {"LVB", {{"image", kNone}, {"LONG RAW", kNone}, {"BLOB", kNone}, {"BLOB", kNone}, {"LONG VARBINARY", kNone}}},
    {"D", {{"date", kNone}, {"DATE", kNone}, {"DATE", kNone}, {"DATE", kNone}, {"DATE", kNone}}},
    {"SI", {{"smallint", kNone}, {"SMALLINT", kNone}, {"SMALLINT", kNone}, {"SMALLINT", kNone}, {"SMALLINT", kNone}}},
    {"SDT", {{"smalldatetime", kNone}, {"DATE", kNone}, {"TIMESTAMP", kNone}, {"TIMESTAMP", kNone}, {"SMALLDATETIME", kNone}}},
    {"CHN", {{"nchar", kLength}, {"NCHAR", kLength}, {"GRAPHIC", kLength}, {"GRAPHIC", kLength}, {"NCHAR", kLength}}},
    {"VAN", {{"nvarchar", kLength}, {"NVARCHAR2", kLength}, {"VARGRAPHIC", kLength}, {"VARGRAPHIC", kLength}, {"NVARCHAR", kLength}}},
    {"DTX", {{"text", kNone}, {"CLOB", kNone}, {"CLOB", kNone}, {"CLOB", kNone}, {"CLOB", kNone}}},
    {"MLS", {{"varchar(255)", kNone}, {"MLSLABEL", kNone}, {"VARCHAR(255)", kNone}, {"VARCHAR(255)", kNone}, {"MLSLABEL", kNone}}},
    {"ROW", {{"varchar(18)", kNone}, {"ROWID", kNone}, {"VARCHAR(40) FOR BIT DATA", kNone}, {"ROWID", kNone}, {"ROWID", kNone}}},
    {"TI", {{"tinyint", kNone}, {"NUMBER(3)", kNone}, {"SMALLINT", kNone}, {"SMALLINT", kNone}, {"TINYINT", kNone}}},
    {"SFL", {{"real", kNone}, {"BINARY_FLOAT", kNone}, {"REAL", kNone}, {"REAL", kNone}, {"REAL", kNone}}},
    {"SMN", {{"smallmoney", kNone}, {"NUMBER(10,4)", kNone}, {"DECIMAL(10,4)", kNone}, {"DECIMAL(10,4)", kNone}, {"SMALLMONEY", kNone}}},
    {"UID", {{"uniqueidentifier", kNone}, {"RAW(16)", kNone}, {"CHAR(16) FOR BIT DATA", kNone}, {"CHAR(16) FOR BIT DATA", kNone}, {"UNIQUEIDENTIFIER", kNone}}},
    {"LIN", {{"bigint", kNone}, {"NUMBER(19)", kNone}, {"BIGINT", kNone}, {"BIGINT", kNone}, {"BIGINT", kNone}}},
    {"VNT", {{"sql_variant", kNone}, {"ANYDATA", kNone}, {"VARCHAR(4000)", kNone}, {"VARCHAR(4000)", kNone}, {"SQL_VARIANT", kNone}}},
    {"ITV", {{"varchar(40)", kNone}, {"INTERVAL DAY TO SECOND", kNone}, {"VARCHAR(40)", kNone}, {"VARCHAR(40)", kNone}, {"INTERVAL", kNone}}},
    {"UNK", {{"varchar(255)", kNone}, {"VARCHAR2(255)", kNone}, {"VARCHAR(255)", kNone}, {"VARCHAR(255)", kNone}, {"VARCHAR(255)", kNone}}},
};
const int kTypeNameCount = sizeof kTypeNames / sizeof kTypeNames[0];

ETypeDialect TypeDialectOf(int platform) {
    const CPlatformInfo* info = FindPlatform(platform);
    switch (info ? info->family : EPlatformFamily::Other) {
        case EPlatformFamily::TransactSql: return ETypeDialect::TransactSql;
        case EPlatformFamily::Oracle: return ETypeDialect::Oracle;
        case EPlatformFamily::Db2Luw: return ETypeDialect::Db2Luw;
        case EPlatformFamily::Db2ZOs:
        case EPlatformFamily::As400: return ETypeDialect::Db2ZOs;
        case EPlatformFamily::Other: break;
    }
    return ETypeDialect::Generic;
}

const char* TypeDialectName(ETypeDialect dialect) {
    static const char* const kNames[] = {"T-SQL", "Oracle", "DB2 LUW", "DB2 z/OS and AS/400", "generic SQL"};
    return kNames[static_cast<int>(dialect)];
}

const CTypeNameRow* FindTypeName(const std::string& code) {
    for (const CTypeNameRow& row : kTypeNames)
        if (code == row.code) return &row;
    return nullptr;
}

std::string SqlTypeName(ETypeDialect dialect, const std::string& code, int width, int scale) {
    const CTypeNameRow* row = FindTypeName(code);
    if (!row) return code;
    const CTypeSpelling& spelling = row->spellings[static_cast<int>(dialect)];
    std::string arguments;
    if (spelling.arguments != ETypeArguments::None && width > 0) {
        arguments = "(" + std::to_string(width);
        if (spelling.arguments == ETypeArguments::PrecisionScale && scale > 0) arguments += "," + std::to_string(scale);
        arguments += ")";
    }
    std::string name = spelling.name;
    const std::size_t slot = name.find("()");
    if (slot != std::string::npos) return name.replace(slot, 2, arguments);
    return name + arguments;
}
