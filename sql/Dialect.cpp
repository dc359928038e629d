#include "Dialect.h"

#include <algorithm>
#include <vector>

namespace {

// The script with its ASCII letters in upper case: the signs of a dialect
// are looked for in one copy of it.
std::string UpperAscii(const std::string& text) {
    std::string upper(text.size(), ' ');
    for (std::size_t i = 0; i < text.size(); ++i) upper[i] = AfxToUpperAscii(text[i]);
    return upper;
}

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

}  // namespace

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
