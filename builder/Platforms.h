/// @file
/// Target database platforms and the model's datatype vocabulary, as data.
#pragma once

#include "framework/VrnExport.h"

/// The families of platforms whose SQL dialects share their forms.
enum class EPlatformFamily {
    Other,        ///< every platform of none of the families below
    TransactSql,  ///< Microsoft SQL Server and Sybase
    Oracle,       ///< Oracle, every version
    Db2Luw,       ///< DB2 for Linux, Unix and Windows (Common Server, UDB)
    Db2ZOs,       ///< DB2 for OS/390 and z/OS
    As400,        ///< DB2 for AS/400 (IBM i)
};

/// The rules of the model builder that depend on the platform, as flags.
enum EPlatformRule : unsigned {
    /// "TEXT" keeps its own code "TX", and integers and unsized decimals
    /// become NUMBER without precision (Oracle).
    kRuleOracleTypes = 1u << 0,
    /// "NUM" without a width gets width and scale 0 (AS/400).
    kRuleUnsizedNumberIsZero = 1u << 1,
    /// At save, a unique index with the primary key's columns stands in for
    /// the primary key (DB2 UDB and DB2 for OS/390).
    kRuleConsolidatePrimaryKey = 1u << 2,
    /// ... except that a named primary key is kept as declared (OS/390).
    kRuleKeepNamedPrimaryKey = 1u << 3,
    /// Index property REVERSE is stored (Oracle 8.x and 9i).
    kRuleReverseKeyIndexes = 1u << 4,
    /// A buffer pool may have any name, not only DEFAULT, KEEP and RECYCLE (OS/390).
    kRuleAnyBufferPoolName = 1u << 5,
};

/// One target platform: its code, names and the builder's rules for it. The entries live in kPlatforms.
struct VRN_EXPORT CPlatformInfo {
    int code;                ///< the platform code a client passes to Initialize
    const char* name;        ///< "" for the unused codes 49 to 53
    EPlatformFamily family;  ///< the SQL dialect family, Other for platforms of none
    bool nullableByDefault;  ///< new attributes admit nulls unless told otherwise
    unsigned rules;          ///< EPlatformRule flags
    const char* aliases;     ///< names a command line may give it by, lower case, space-separated
};

/// One entry per code 0 to 54, index = code.
extern VRN_EXPORT const CPlatformInfo kPlatforms[];
/// The number of entries of kPlatforms: 55, one past the highest code.
extern VRN_EXPORT const int kPlatformCount;

/// The entry of a code, or null for a code outside the table.
VRN_EXPORT const CPlatformInfo* FindPlatform(int code);
/// The entry one of whose aliases is `name` (any case), or null.
VRN_EXPORT const CPlatformInfo* FindPlatformByName(const char* name);

/// True when new attributes of platform `code` admit nulls unless told otherwise. Codes outside the table
/// are accepted and behave like an ordinary platform: nullable by default.
VRN_EXPORT bool PlatformIsNullableByDefault(int code);
/// True when platform `code` follows `rule`; false for every code outside the table, which follows none
/// of the rules.
VRN_EXPORT bool PlatformHasRule(int code, EPlatformRule rule);

/// A datatype name a client may pass (to AddAttribute, AddUserType) and the code it stands for.
struct VRN_EXPORT CDatatypeName {
    const char* name;  ///< a client's bare datatype name, compared without regard to case
    int codeIndex;     ///< index into kDatatypeCodes
};

/// The model's datatype codes ("CH", "VAR", "NUM", ...), the texts the model file stores as a datatype.
/// A code may appear more than once (NUM does): kDatatypeNames refers to codes by index.
extern VRN_EXPORT const char* const kDatatypeCodes[];
/// The number of entries of kDatatypeCodes.
extern VRN_EXPORT const int kDatatypeCodeCount;
/// The datatype names a client may use, each with the index of its code. Searched in order; the first
/// equal name wins.
extern VRN_EXPORT const CDatatypeName kDatatypeNames[];
/// The number of entries of kDatatypeNames.
extern VRN_EXPORT const int kDatatypeNameCount;

/// The datatype code of a bare datatype name on `platform`, compared without regard to case; null for a
/// null or unknown name. "TEXT" is the long text code "DTX" except on platforms with kRuleOracleTypes.
VRN_EXPORT const char* TranslateDatatypeName(const char* name, int platform);
