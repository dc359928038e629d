// The SQL dialect a source is read in, chosen once per source: from
// --platform, or from what the script looks like; reported in the import's
// summary and handed to the importer, which reads statements by it.
#pragma once

#include <string>
#include <vector>

#include <VrnIntf.h>

struct CDialect {
    EPlatformFamily family = EPlatformFamily::Other;
    int platform = 0;      // the platform code the dialect was chosen by
    bool guessed = false;  // from the script, not from --platform
    // "T-SQL", "Oracle", "DB2 LUW", "DB2 z/OS", "DB2 for AS/400", or "SQL"
    const char* Name() const;
    // T-SQL: a statement also ends where the next one starts on a new line.
    bool EndsStatementsAtNextStart() const { return family == EPlatformFamily::TransactSql; }

    // A name as a script of this dialect must spell it: as it stands when it
    // is a plain identifier, else quoted ([name] in T-SQL, "name" elsewhere,
    // with the closing quote doubled inside). A name is quoted when it holds
    // anything but letters, digits and _ (or starts with a digit), is a
    // reserved word, or mixes upper and lower case where the dialect folds
    // unquoted names to upper case (Oracle, DB2); a name in one case is taken
    // as the case-insensitive spelling it was read from.
    std::string Quote(const std::string& name) const;
    // owner.name, or the name alone when the owner is empty (trailing blanks
    // of a catalog's padded owner are not part of it).
    std::string Qualified(const std::string& owner, const std::string& name) const;
    // A text as a string literal: 'it''s'.
    static std::string Literal(const std::string& text);
};

// The dialect of a platform code.
CDialect DialectOfPlatform(int platform, bool guessed);
// The platform a script looks written for; 0 (unknown) when nothing tells.
int GuessPlatform(const std::string& text);
// The dialect a script is written in when it is one the platform table has
// no platform for (two different signs of it), with the signs found; null otherwise.
const char* ForeignDialect(const std::string& text, std::string& signs);

// Every word the dialect layer's tables know, each once, in upper case:
// reserved words, the words that cut scripts, storage and index option
// keywords, and the datatype names of every platform. A fuzzer's dictionary
// is made of them.
std::vector<std::string> DialectKeywords();
