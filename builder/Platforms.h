// Target database platforms and the model's datatype vocabulary, as data.
#pragma once

#include "framework/VrnExport.h"

// The families of platforms whose SQL dialects share their forms.
enum class EPlatformFamily {
    Other,
    TransactSql,  // Microsoft SQL Server and Sybase
    Oracle,
    Db2Luw,       // DB2 for Linux, Unix and Windows (Common Server, UDB)
    Db2ZOs,       // DB2 for OS/390 and z/OS
    As400,        // DB2 for AS/400 (IBM i)
};

// The rules of the model builder that depend on the platform, as flags.
enum EPlatformRule : unsigned {
    // "TEXT" keeps its own code "TX", and integers and unsized decimals
    // become NUMBER without precision (Oracle).
    kRuleOracleTypes = 1u << 0,
    // "NUM" without a width gets width and scale 0 (AS/400).
    kRuleUnsizedNumberIsZero = 1u << 1,
    // At save, a unique index with the primary key's columns stands in for
    // the primary key (DB2 UDB and DB2 for OS/390).
    kRuleConsolidatePrimaryKey = 1u << 2,
    // ... except that a named primary key is kept as declared (OS/390).
    kRuleKeepNamedPrimaryKey = 1u << 3,
    // Index property REVERSE is stored (Oracle 8.x and 9i).
    kRuleReverseKeyIndexes = 1u << 4,
    // A buffer pool may have any name, not only DEFAULT, KEEP and RECYCLE (OS/390).
    kRuleAnyBufferPoolName = 1u << 5,
};

struct VRN_EXPORT CPlatformInfo {
    int code;                 // the platform code a client passes to Initialize
    const char* name;         // "" for the unused codes 49 to 53
    EPlatformFamily family;
    bool nullableByDefault;   // new attributes admit nulls unless told otherwise
    unsigned rules;           // EPlatformRule flags
    const char* aliases;      // names a command line may give it by, lower case, space-separated
};

// One entry per code 0 to 54, index = code.
extern VRN_EXPORT const CPlatformInfo kPlatforms[];
extern VRN_EXPORT const int kPlatformCount;

// The entry of a code, or null for a code outside the table.
VRN_EXPORT const CPlatformInfo* FindPlatform(int code);
// The entry one of whose aliases is `name` (any case), or null.
VRN_EXPORT const CPlatformInfo* FindPlatformByName(const char* name);

// Codes outside the table are accepted and behave like an ordinary platform:
// nullable by default, and none of the rules.
VRN_EXPORT bool PlatformIsNullableByDefault(int code);
VRN_EXPORT bool PlatformHasRule(int code, EPlatformRule rule);

struct VRN_EXPORT CDatatypeName {
    const char* name;  // a client's bare datatype name, compared without regard to case
    int codeIndex;     // index into kDatatypeCodes
};

extern VRN_EXPORT const char* const kDatatypeCodes[];
extern VRN_EXPORT const int kDatatypeCodeCount;
// Searched in order; the first equal name wins.
extern VRN_EXPORT const CDatatypeName kDatatypeNames[];
extern VRN_EXPORT const int kDatatypeNameCount;

// The datatype code of a bare datatype name on `platform`, or null.
VRN_EXPORT const char* TranslateDatatypeName(const char* name, int platform);
