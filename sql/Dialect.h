// The SQL dialect a source is read in, chosen once per source: from
// --platform, or from what the script looks like; reported in the import's
// summary and handed to the importer, which reads statements by it.
#pragma once

#include <string>

#include <VrnIntf.h>

struct CDialect {
    EPlatformFamily family = EPlatformFamily::Other;
    int platform = 0;      // the platform code the dialect was chosen by
    bool guessed = false;  // from the script, not from --platform
    // "T-SQL", "Oracle", "DB2 LUW", "DB2 z/OS", "DB2 for AS/400", or "SQL"
    const char* Name() const;
    // T-SQL: a statement also ends where the next one starts on a new line.
    bool EndsStatementsAtNextStart() const { return family == EPlatformFamily::TransactSql; }
};

// The dialect of a platform code.
CDialect DialectOfPlatform(int platform, bool guessed);
// The platform a script looks written for; 0 (unknown) when nothing tells.
int GuessPlatform(const std::string& text);
// The dialect a script is written in when it is one the platform table has
// no platform for (two different signs of it), with the signs found; null otherwise.
const char* ForeignDialect(const std::string& text, std::string& signs);
