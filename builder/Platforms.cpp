#include "builder/Platforms.h"

#include <cstring>
#include <string>
#include <unordered_map>

#include "framework/AfxString.h"

// {code, name, family, nullable by default, rules, command-line names}
const CPlatformInfo kPlatforms[] = {
    {0, "UNKNOWN", EPlatformFamily::Other, true, 0, "unknown sqlite"},
    {1, "Microsoft SQL Server 4.x", EPlatformFamily::TransactSql, true, 0, ""},
    {2, "Sybase System 10", EPlatformFamily::TransactSql, false, 0, ""},
    {3, "Microsoft SQL Server 6.X", EPlatformFamily::TransactSql, false, 0, ""},
    {4, "Sybase Watcom SQL", EPlatformFamily::Other, true, 0, ""},
    {5, "SQLBase", EPlatformFamily::Other, true, 0, ""},
    {6, "Informix ONLINE", EPlatformFamily::Other, true, 0, ""},
    {7, "Informix SE", EPlatformFamily::Other, true, 0, ""},
    {8, "Oracle 7.x", EPlatformFamily::Oracle, true, kRuleOracleTypes, "oracle7"},
    {9, "IBM DB2 Common Server", EPlatformFamily::Db2Luw, true, 0, ""},
    {10, "InterBase", EPlatformFamily::Other, true, 0, ""},
    {11, "Sybase ASE 11.0", EPlatformFamily::TransactSql, false, 0, ""},
    {12, "Sybase SQL Anywhere 5", EPlatformFamily::Other, true, 0, ""},
    {13, "INGRES", EPlatformFamily::Other, true, 0, ""},
    {14, "Microsoft Access", EPlatformFamily::Other, true, 0, ""},
    {15, "Microsoft Access 2.0", EPlatformFamily::Other, true, 0, ""},
    {16, "Microsoft Access 95", EPlatformFamily::Other, true, 0, ""},
    {17, "FoxPro", EPlatformFamily::Other, true, 0, ""},
    {18, "FoxPro 2.5", EPlatformFamily::Other, true, 0, ""},
    {19, "FoxPro/Windows 2.5", EPlatformFamily::Other, true, 0, ""},
    {20, "Microsoft Visual FoxPro 2.x", EPlatformFamily::Other, true, 0, ""},
    {21, "dBase IV", EPlatformFamily::Other, true, 0, ""},
    {22, "dBase V", EPlatformFamily::Other, true, 0, ""},
    {23, "Visual dBase 5.0", EPlatformFamily::Other, true, 0, ""},
    {24, "Paradox", EPlatformFamily::Other, true, 0, ""},
    {25, "Paradox/Windows 1.0", EPlatformFamily::Other, true, 0, ""},
    {26, "Paradox 5.0", EPlatformFamily::Other, true, 0, ""},
    {27, "Clipper 5.01", EPlatformFamily::Other, true, 0, ""},
    {28, "Microsoft Visual FoxPro 3.x", EPlatformFamily::Other, true, 0, ""},
    {29, "Paradox 7.0", EPlatformFamily::Other, true, 0, ""},
    {30, "Microsoft Access 97", EPlatformFamily::Other, true, 0, ""},
    {31, "Microsoft Visual FoxPro 5.x", EPlatformFamily::Other, true, 0, ""},
    {32, "IBM DB2 UDB 5.x", EPlatformFamily::Db2Luw, true, kRuleConsolidatePrimaryKey, ""},
    {33, "Microsoft SQL Server 7.x", EPlatformFamily::TransactSql, false, 0, ""},
    {34, "Oracle 8.x", EPlatformFamily::Oracle, true, kRuleOracleTypes | kRuleReverseKeyIndexes, "oracle8"},
    {35, "Sybase ASA 6.0", EPlatformFamily::Other, true, 0, ""},
    {36, "Sybase ASE 11.9", EPlatformFamily::TransactSql, false, 0, ""},
    {37, "Sybase ASE 11.5", EPlatformFamily::TransactSql, false, 0, ""},
    {38, "IBM DB2 UDB 6.x", EPlatformFamily::Db2Luw, true, kRuleConsolidatePrimaryKey, ""},
    {39, "IBM DB2 UDB for OS/390 6.x", EPlatformFamily::Db2ZOs, true, kRuleConsolidatePrimaryKey | kRuleKeepNamedPrimaryKey | kRuleAnyBufferPoolName, ""},
    {40, "IBM DB2 UDB for OS/390 5.x", EPlatformFamily::Db2ZOs, true, kRuleConsolidatePrimaryKey | kRuleKeepNamedPrimaryKey | kRuleAnyBufferPoolName, ""},
    {41, "Microsoft SQL Server 2000", EPlatformFamily::TransactSql, false, 0, "sqlserver mssql"},
    {42, "Microsoft Access 2000", EPlatformFamily::Other, true, 0, ""},
    {43, "Sybase ASE 12.0", EPlatformFamily::TransactSql, false, 0, ""},
    {44, "IBM DB2 UDB 7.x", EPlatformFamily::Db2Luw, true, kRuleConsolidatePrimaryKey, "db2 db2luw"},
    {45, "Hitachi HiRDB", EPlatformFamily::Other, true, 0, ""},
    {46, "IBM DB2 UDB for OS/390 7.x", EPlatformFamily::Db2ZOs, true, kRuleConsolidatePrimaryKey | kRuleKeepNamedPrimaryKey | kRuleAnyBufferPoolName, "db2zos os390"},
    {47, "Oracle 9i", EPlatformFamily::Oracle, true, kRuleOracleTypes | kRuleReverseKeyIndexes, "oracle oracle9"},
    {48, "IBM DB2 AS/400 4.x", EPlatformFamily::As400, true, kRuleUnsizedNumberIsZero, "as400"},
    {49, "", EPlatformFamily::Other, true, 0, ""},
    {50, "", EPlatformFamily::Other, true, 0, ""},
    {51, "", EPlatformFamily::Other, true, 0, ""},
    {52, "", EPlatformFamily::Other, true, 0, ""},
    {53, "", EPlatformFamily::Other, true, 0, ""},
    {54, "Sybase ASE 12.5", EPlatformFamily::TransactSql, false, 0, "sybase"},
};
const int kPlatformCount = sizeof kPlatforms / sizeof kPlatforms[0];

const CPlatformInfo* FindPlatform(int code) { return code >= 0 && code < kPlatformCount ? &kPlatforms[code] : nullptr; }

const CPlatformInfo* FindPlatformByName(const char* name) {
    if (!name || !*name) return nullptr;
    for (const CPlatformInfo& platform : kPlatforms) {
        for (const char* alias = platform.aliases; *alias;) {
            const char* end = std::strchr(alias, ' ');
            const std::string word(alias, end ? end - alias : std::strlen(alias));
            if (AfxCompareNoCase(word.c_str(), name) == 0) return &platform;
            alias = end ? end + 1 : alias + word.size();
        }
    }
    return nullptr;
}

bool PlatformIsNullableByDefault(int code) {
    const CPlatformInfo* platform = FindPlatform(code);
    return !platform || platform->nullableByDefault;
}

bool PlatformHasRule(int code, EPlatformRule rule) {
    const CPlatformInfo* platform = FindPlatform(code);
    return platform && (platform->rules & rule) != 0;
}

// The model's datatype codes. "NUM" stands twice (14 and 16); "PIC" (15) is
// reached by BLOB and IMAGE, while 16, "MEM" (19) and "UNK" (36) are reached
// by no name.
const char* const kDatatypeCodes[] = {
    "DC",  "CH",  "VAR", "INT", "BIT", "TX",  "FLT", "MN",  "VBN", "BIN", "DT",  "TS",  "T",
    "DBL", "NUM", "PIC", "NUM", "LVA", "LBN", "MEM", "LVB", "D",   "SI",  "SDT", "CHN", "VAN",
    "DTX", "MLS", "ROW", "TI",  "SFL", "SMN", "UID", "LIN", "VNT", "ITV", "UNK",
};
const int kDatatypeCodeCount = sizeof kDatatypeCodes / sizeof kDatatypeCodes[0];
constexpr int kLongTextCode = 26;  // "DTX"

// Some mappings look surprising and are deliberate: BLOB and IMAGE give "PIC",
// NCLOB gives "TX" while CLOB gives "DTX", REAL gives "SFL" while FLOAT gives
// "FLT", LONG VARGRAPHIC gives "TX".
const CDatatypeName kDatatypeNames[] = {
    {"BINARY", 9},
    {"BIT", 4},
    {"BLOB", 15},
    {"CHAR", 1},
    {"CLOB", 26},
    {"DEC", 0},
    {"DECIMAL", 0},
    {"DATE", 21},
    {"DATETIME", 10},
    {"DOUBLE", 13},
    {"DOUBLE PRECISION", 13},
    {"FLOAT", 6},
    {"INTEGER", 3},
    {"INT", 3},
    {"INTERVAL", 35},
    {"IMAGE", 15},
    {"LONG", 17},
    {"LONG BINARY", 18},
    {"LONG RAW", 18},
    {"LONG VARCHAR", 17},
    {"LONG VARBINARY", 20},
    {"MLSLABEL", 27},
    {"MONEY", 7},
    {"NCHAR", 24},
    {"NCLOB", 5},
    {"NVARCHAR2", 25},
    {"NUMERIC", 14},
    {"NUMBER", 14},
    {"RAW", 9},
    {"REAL", 30},
    {"ROWID", 28},
    {"SMALLINT", 22},
    {"SMALLDATETIME", 23},
    {"SMALLMONEY", 31},
    {"TEXT", 5},
    {"TIME", 12},
    {"TIMESTAMP", 11},
    {"TINYINT", 29},
    {"VARBINARY", 8},
    {"VARCHAR", 2},
    {"VARCHAR2", 2},
    {"NVARCHAR", 25},
    {"NTEXT", 5},
    {"uniqueidentifier", 32},
    {"BIGINT", 33},
    {"sql_variant", 34},
    {"LONG VARGRAPHIC", 5},
    {"VARGRAPHIC", 25},
    {"GRAPHIC", 24},
    {"CHARACTER", 1},
    {"CHAR VARYING", 2},
    {"CHARACTER VARYING", 2},
    {"NATIONAL CHAR", 24},
    {"NATIONAL CHARACTER", 24},
    {"NCHAR VARYING", 25},
    {"NATIONAL CHAR VARYING", 25},
    {"NATIONAL CHARACTER VARYING", 25},
};
const int kDatatypeNameCount = sizeof kDatatypeNames / sizeof kDatatypeNames[0];

namespace {

// The translation table by upper-cased name; the first entry of a name wins,
// as a walk of the table in order would find it.
const std::unordered_map<std::string, const char*>& DatatypeCodesByName() {
    static const std::unordered_map<std::string, const char*> byName = [] {
        std::unordered_map<std::string, const char*> map;
        for (const CDatatypeName& entry : kDatatypeNames) {
            std::string key(entry.name);
            for (char& ch : key) ch = AfxToUpperAscii(ch);
            map.emplace(key, kDatatypeCodes[entry.codeIndex]);
        }
        return map;
    }();
    return byName;
}

}  // namespace

const char* TranslateDatatypeName(const char* name, int platform) {
    if (!name) return nullptr;  // a null name is no name: nothing to translate
    std::string key(name);
    for (char& ch : key) ch = AfxToUpperAscii(ch);
    // Outside Oracle, TEXT is the long character type, not Oracle's TEXT.
    if (key == "TEXT" && !PlatformHasRule(platform, kRuleOracleTypes)) return kDatatypeCodes[kLongTextCode];
    const auto& byName = DatatypeCodesByName();
    const auto found = byName.find(key);
    return found == byName.end() ? nullptr : found->second;
}
