// SQL type names: the model keeps a datatype code with a width and a scale;
// people read types as their platform writes them. One table gives, for
// every datatype code, the type's name in each family of SQL dialects and
// which arguments it takes. Every output of a model spells types through it.
#pragma once

#include <string>

#include "framework/VrnExport.h"

// The dialect families that spell types differently.
enum class ETypeDialect { TransactSql, Oracle, Db2Luw, Db2ZOs, Generic };

// What a type takes in parentheses: nothing, a length, or a precision and a scale.
enum class ETypeArguments { None, Length, PrecisionScale };

struct CTypeSpelling {
    const char* name;  // "()" in a name marks where the arguments go ("VARCHAR() FOR BIT DATA")
    ETypeArguments arguments;
};

struct CTypeNameRow {
    const char* code;  // the model's datatype code
    CTypeSpelling spellings[5];  // by ETypeDialect
};

extern VRN_EXPORT const CTypeNameRow kTypeNames[];
extern VRN_EXPORT const int kTypeNameCount;

// The dialect of a platform code: by the platform table's family, the
// generic one for every other code.
VRN_EXPORT ETypeDialect TypeDialectOf(int platform);
VRN_EXPORT const char* TypeDialectName(ETypeDialect dialect);

// The row of a datatype code, or null for a code the table does not know.
VRN_EXPORT const CTypeNameRow* FindTypeName(const std::string& code);

// The type as `dialect` writes it: "NUMBER(10,2)" for NUM, 10, 2 on Oracle,
// "smallint" for SI on SQL Server. A length or precision of 0 or less is
// left out (Oracle's unsized NUMBER); a scale of 0 or less is left out. An
// unknown code is written as it stands.
VRN_EXPORT std::string SqlTypeName(ETypeDialect dialect, const std::string& code, int width, int scale);
