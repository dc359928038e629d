#include "builder/Platforms.h"

#include <string>
#include <unordered_map>

#include "framework/AfxString.h"

// {code, name, nullable by default, Oracle}
const CPlatformInfo kPlatforms[] = {
    {0, "UNKNOWN", true, false},
    {1, "Microsoft SQL Server 4.x", true, false},
    {2, "Sybase System 10", false, false},
    {3, "Microsoft SQL Server 6.X", false, false},
    {4, "Sybase Watcom SQL", true, false},
    {5, "SQLBase", true, false},
    {6, "Informix ONLINE", true, false},
    {7, "Informix SE", true, false},
    {8, "Oracle 7.x", true, true},
    {9, "IBM DB2 Common Server", true, false},
    {10, "InterBase", true, false},
    {11, "Sybase ASE 11.0", false, false},
    {12, "Sybase SQL Anywhere 5", true, false},
    {13, "INGRES", true, false},
    {14, "Microsoft Access", true, false},
    {15, "Microsoft Access 2.0", true, false},
    {16, "Microsoft Access 95", true, false},
    {17, "FoxPro", true, false},
    {18, "FoxPro 2.5", true, false},
    {19, "FoxPro/Windows 2.5", true, false},
    {20, "Microsoft Visual FoxPro 2.x", true, false},
    {21, "dBase IV", true, false},
    {22, "dBase V", true, false},
    {23, "Visual dBase 5.0", true, false},
    {24, "Paradox", true, false},
    {25, "Paradox/Windows 1.0", true, false},
    {26, "Paradox 5.0", true, false},
    {27, "Clipper 5.01", true, false},
    {28, "Microsoft Visual FoxPro 3.x", true, false},
    {29, "Paradox 7.0", true, false},
    {30, "Microsoft Access 97", true, false},
    {31, "Microsoft Visual FoxPro 5.x", true, false},
    {32, "IBM DB2 UDB 5.x", true, false},
    {33, "Microsoft SQL Server 7.x", false, false},
    {34, "Oracle 8.x", true, true},
    {35, "Sybase ASA 6.0", true, false},
    {36, "Sybase ASE 11.9", false, false},
    {37, "Sybase ASE 11.5", false, false},
    {38, "IBM DB2 UDB 6.x", true, false},
    {39, "IBM DB2 UDB for OS/390 6.x", true, false},
    {40, "IBM DB2 UDB for OS/390 5.x", true, false},
    {41, "Microsoft SQL Server 2000", false, false},
    {42, "Microsoft Access 2000", true, false},
    {43, "Sybase ASE 12.0", false, false},
    {44, "IBM DB2 UDB 7.x", true, false},
    {45, "Hitachi HiRDB", true, false},
    {46, "IBM DB2 UDB for OS/390 7.x", true, false},
    {47, "Oracle 9i", true, true},
    {48, "IBM DB2 AS/400 4.x", true, false},
    {49, "", true, false},
    {50, "", true, false},
    {51, "", true, false},
    {52, "", true, false},
    {53, "", true, false},
    {54, "Sybase ASE 12.5", false, false},
};
const int kPlatformCount = sizeof kPlatforms / sizeof kPlatforms[0];

bool PlatformIsNullableByDefault(int code) {
    return code < 0 || code >= kPlatformCount || kPlatforms[code].nullableByDefault;
}

bool PlatformIsOracle(int code) { return code >= 0 && code < kPlatformCount && kPlatforms[code].isOracle; }

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
    if (key == "TEXT" && !PlatformIsOracle(platform)) return kDatatypeCodes[kLongTextCode];
    const auto& byName = DatatypeCodesByName();
    const auto found = byName.find(key);
    return found == byName.end() ? nullptr : found->second;
}
