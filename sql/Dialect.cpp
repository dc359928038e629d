#include "Dialect.h"

#include "OptionKeywords.h"
#include "SqlLexer.h"
#include "SqlScript.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <set>
#include <vector>

namespace {


// The code of the platform the command line calls `name`.
int PlatformNamed(const char* name) {
    const CPlatformInfo* platform = FindPlatformByName(name);
    return platform ? platform->code : 0;
}

// Signs of SQL dialects that the platform table has no platform for. A
// script in one of them would be read wrongly without a word (MySQL's
// "KEY ix (...)" inside a table becomes a column named KEY), so it is
// recognised and refused unless --platform says how to read it.
struct CForeignSign {
    const char* dialect;
    const char* sign;  // upper case; matched anywhere in the upper-cased script
    const char* shown;
};

const CForeignSign kForeignSigns[] = {
    {"MySQL", "`", "backquoted names"},
    {"MySQL", ") ENGINE=", "ENGINE="},
    {"MySQL", ") ENGINE =", "ENGINE="},
    {"MySQL", " AUTO_INCREMENT", "AUTO_INCREMENT"},
    {"MySQL", "DEFAULT CHARSET=", "DEFAULT CHARSET="},
    {"MySQL", " UNSIGNED", "UNSIGNED"},
    {"PostgreSQL", " SERIAL", "SERIAL columns"},
    {"PostgreSQL", " BIGSERIAL", "SERIAL columns"},
    {"PostgreSQL", "::", ":: casts"},
    {"PostgreSQL", "$$", "$$ bodies"},
    {"PostgreSQL", "LANGUAGE PLPGSQL", "LANGUAGE plpgsql"},
    {"PostgreSQL", "CREATE EXTENSION", "CREATE EXTENSION"},
    {"PostgreSQL", " OWNER TO ", "OWNER TO"},
};

// Words that stand for themselves in one dialect or another: a name spelled
// like one of them is quoted in every dialect, which each of them accepts.
const char* const kReservedWords[] = {
    "ACCESS", "ADD", "ALL", "ALTER", "AND", "ANY", "AS", "ASC", "AUDIT", "AUTOINCREMENT", "BEGIN", "BETWEEN", "BY",
    "CASE", "CHECK", "CLUSTER", "COLLATE", "COLUMN", "COMMENT", "COMMIT", "CONNECT", "CONSTRAINT", "CREATE", "CROSS",
    "CURRENT", "DATABASE", "DATE", "DEFAULT", "DEFERRABLE", "DELETE", "DESC", "DISTINCT", "DROP", "ELSE", "END",
    "ESCAPE", "EXCEPT", "EXEC", "EXECUTE", "EXISTS", "FILE", "FOR", "FOREIGN", "FROM", "FULL", "FUNCTION", "GO",
    "GRANT", "GROUP", "HAVING", "IDENTITY", "IF", "IN", "INDEX", "INNER", "INSERT", "INTERSECT", "INTO", "IS",
    "ISNULL", "JOIN", "KEY", "LEFT", "LEVEL", "LIKE", "LIMIT", "LOCK", "LONG", "MODE", "NOT", "NOTHING", "NOTNULL",
    "NULL", "NUMBER", "OF", "ON", "OPTION", "OR", "ORDER", "OUTER", "PERCENT", "PLAN", "PRIMARY", "PROC",
    "PROCEDURE", "PUBLIC", "REFERENCES", "RESOURCE", "RETURNING", "RIGHT", "ROW", "ROWID", "ROWNUM", "ROWS", "RULE",
    "SCHEMA", "SELECT", "SESSION", "SET", "SIZE", "START", "SYSDATE", "TABLE", "THEN", "TO", "TOP", "TRANSACTION",
    "TRIGGER", "UID", "UNION", "UNIQUE", "UPDATE", "USER", "USING", "VALUES", "VIEW", "WHEN", "WHERE", "WITH",
};

bool IsReserved(const std::string& upper) {
    for (const char* word : kReservedWords)
        if (upper == word) return true;
    return false;
}

}  // namespace

std::string CDialect::Quote(const std::string& name) const {
    // Oracle and DB2 names start with a letter; T-SQL and SQLite take a leading _ too.
    const bool foldsCase = family != EPlatformFamily::TransactSql && family != EPlatformFamily::Other;
    bool plain = !name.empty() && !std::isdigit(static_cast<unsigned char>(name[0])) && !(foldsCase && name[0] == '_');
    bool upper = false, lower = false;
    for (char ch : name) {
        const unsigned char c = static_cast<unsigned char>(ch);
        plain = plain && (std::isalnum(c) || c == '_');
        upper = upper || std::isupper(c);
        lower = lower || std::islower(c);
    }
    if (plain && !IsReserved(UpperAscii(name)) && !(foldsCase && upper && lower)) return name;
    const char open = family == EPlatformFamily::TransactSql ? '[' : '"';
    const char close = family == EPlatformFamily::TransactSql ? ']' : '"';
    std::string quoted(1, open);
    for (char ch : name) {
        quoted += ch;
        if (ch == close) quoted += close;
    }
    return quoted + close;
}

std::string CDialect::Qualified(const std::string& owner, const std::string& name) const {
    const std::size_t end = owner.find_last_not_of(' ');
    if (end == std::string::npos) return Quote(name);
    return Quote(owner.substr(0, end + 1)) + "." + Quote(name);
}

std::string CDialect::Literal(const std::string& text) {
    std::string literal = "'";
    for (char ch : text) {
        literal += ch;
        if (ch == '\'') literal += '\'';
    }
    return literal + "'";
}

int GuessPlatform(const std::string& text) {
    const std::string upper = UpperAscii(text);
    const auto has = [&](const char* word) { return upper.find(word) != std::string::npos; };
    if (has("STOGROUP") || has("CURRENT SQLID") || has("CCSID")) return PlatformNamed("db2zos");
    if (has("DB2LOOK") || has("ORGANIZE BY") || has("CODEUNITS")) return PlatformNamed("db2");
    if (has("VARCHAR2") || has("NUMBER(") || has("\n/\n")) return PlatformNamed("oracle");
    if (has("\nGO\n") || has("SP_ADDTYPE") || has("NVARCHAR") || has("IDENTITY("))
        return PlatformNamed(has("SP_BINDRULE") && !has("SYS.SP_") ? "sybase" : "sqlserver");
    return PlatformNamed("unknown");
}

const char* ForeignDialect(const std::string& text, std::string& signs) {
    const std::string upper = UpperAscii(text);
    for (const char* dialect : {"MySQL", "PostgreSQL"}) {
        std::vector<std::string> found;
        for (const CForeignSign& sign : kForeignSigns)
            if (std::string(sign.dialect) == dialect && upper.find(sign.sign) != std::string::npos &&
                std::find(found.begin(), found.end(), sign.shown) == found.end())
                found.push_back(sign.shown);
        if (found.size() < 2) continue;
        signs.clear();
        for (const std::string& shown : found) signs += (signs.empty() ? "" : ", ") + shown;
        return dialect;
    }
    return nullptr;
}

const char* CDialect::Name() const {
    switch (family) {
        case EPlatformFamily::TransactSql: return "T-SQL";
        case EPlatformFamily::Oracle: return "Oracle";
        case EPlatformFamily::Db2Luw: return "DB2 LUW";
        case EPlatformFamily::Db2ZOs: return "DB2 z/OS";
        case EPlatformFamily::As400: return "DB2 for AS/400";
        case EPlatformFamily::Other: break;
    }
    return "SQL";
}

CDialect DialectOfPlatform(int platform, bool guessed) {
    CDialect dialect;
    const CPlatformInfo* info = FindPlatform(platform);
    dialect.family = info ? info->family : EPlatformFamily::Other;
    dialect.platform = platform;
    dialect.guessed = guessed;
    return dialect;
}

std::vector<std::string> DialectKeywords() {
    std::vector<std::string> words(std::begin(kReservedWords), std::end(kReservedWords));
    AppendScriptWords(words);
    for (const COptionKeyword* table : {kTableOptions, kIndexOptions, kPartitionOptions, kStorageOptions})
        for (const COptionKeyword* option = table; option->words; ++option) words.push_back(option->words);
    for (int i = 0; i < kDatatypeNameCount; ++i) words.push_back(kDatatypeNames[i].name);
    std::set<std::string> seen;
    std::vector<std::string> once;
    for (const std::string& word : words)
        if (seen.insert(UpperAscii(word)).second) once.push_back(UpperAscii(word));
    return once;
}
