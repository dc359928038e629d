/// @file
/// SQL type names: the model keeps a datatype code with a width and a scale;
/// people read types as their platform writes them. One table gives, for
/// every datatype code, the type's name in each family of SQL dialects and
/// which arguments it takes. Every output of a model spells types through it.
#pragma once

#include <string>

#include "framework/VrnExport.h"

/// The dialect families that spell types differently: T-SQL (SQL Server and Sybase), Oracle, DB2 for
/// Linux, Unix and Windows, DB2 for z/OS (which AS/400 shares), and a generic SQL for every other platform.
enum class ETypeDialect { TransactSql, Oracle, Db2Luw, Db2ZOs, Generic };

/// What a type takes in parentheses: nothing, a length, or a precision and a scale.
enum class ETypeArguments { None, Length, PrecisionScale };

/// How one dialect spells one datatype code.
struct CTypeSpelling {
    const char* name;          ///< "()" in a name marks where the arguments go ("VARCHAR() FOR BIT DATA")
    ETypeArguments arguments;  ///< which of width and scale it takes in parentheses
};

/// One row of the type name table: a datatype code and its spelling in each dialect.
struct CTypeNameRow {
    const char* code;            ///< the model's datatype code
    CTypeSpelling spellings[5];  ///< by ETypeDialect
};

/// The type name table, one row per distinct code of kDatatypeCodes.
extern VRN_EXPORT const CTypeNameRow kTypeNames[];
/// The number of rows of kTypeNames.
extern VRN_EXPORT const int kTypeNameCount;

/// The dialect of a platform code: by the platform table's family, the
/// generic one for every other code.
VRN_EXPORT ETypeDialect TypeDialectOf(int platform);
/// The dialect's name for people: "T-SQL", "Oracle", "DB2 LUW", "DB2 z/OS and AS/400" or "generic SQL".
/// REQUIRES: `dialect` is one of the enumerators.
VRN_EXPORT const char* TypeDialectName(ETypeDialect dialect);

/// The row of a datatype code, or null for a code the table does not know.
VRN_EXPORT const CTypeNameRow* FindTypeName(const std::string& code);

/// The type as `dialect` writes it: "NUMBER(10,2)" for NUM, 10, 2 on Oracle,
/// "smallint" for SI on SQL Server. A length or precision of 0 or less is
/// left out (Oracle's unsized NUMBER); a scale of 0 or less is left out. An
/// unknown code is written as it stands.
VRN_EXPORT std::string SqlTypeName(ETypeDialect dialect, const std::string& code, int width, int scale);
