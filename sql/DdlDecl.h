// What a DDL statement declares, as plain data: the parser fills these from
// the tokens of one statement and knows nothing of the model; the importer
// applies them through the model builder. Names are kept as the script
// spells them (quoted names without their quotes), texts verbatim.
#pragma once

#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "SqlCursor.h"

// A physical option read through a keyword table: the model builder's
// property code and either a number or a text.
struct COptionValue {
    int code = 0;
    bool isText = false;
    long number = 0;
    std::string text;
};
using COptionList = std::vector<COptionValue>;

enum class EConstraintKind { PrimaryKey, Unique, ForeignKey, Check };

// Referential actions as the model builder's foreign key property codes; 0 for none.
struct CForeignKeyDecl {
    std::string name;
    std::vector<std::string> childColumns;
    CQualifiedName parent;
    std::vector<std::string> parentColumns;  // empty: the parent's primary key
    int onDelete = 0;
    int onUpdate = 0;
};

// A key, foreign key or check, of a table or of one column.
struct CConstraintDecl {
    EConstraintKind kind = EConstraintKind::Check;
    std::string name;                  // empty when unnamed
    std::vector<std::string> columns;  // keys: their columns
    bool clustered = false;
    CForeignKeyDecl reference;         // foreign keys
    std::string checkText;             // checks: the condition without its parentheses
    std::string column;                // a column's own check: that column
};

struct CColumnDecl {
    std::string name;
    std::string datatype;  // empty when the script gives none (SQLite)
    long width = -1;       // -1: not given
    long scale = -1;
    int nullOption = -1;   // 0 NOT NULL, 1 NULL, -1 the platform's default
    std::string defaultText;
    std::string generatedExpression;  // GENERATED ALWAYS AS (expression)
    std::vector<std::pair<int, long>> properties;  // attribute property code and value
    std::vector<CConstraintDecl> constraints;      // in the order they are applied
};

// One element of a table's list: a column or a table constraint.
using CTableElement = std::variant<CColumnDecl, CConstraintDecl>;

struct CPartitionDecl {
    std::string name;
    std::string limit;  // VALUES [LESS THAN] (...) without the parentheses
    std::string storageSpace;
    COptionList options;
};

struct CTableDecl {
    CQualifiedName name;
    CQualifiedName like;  // CREATE TABLE name LIKE other
    std::string ofType;   // CREATE TABLE name OF type
    std::vector<CTableElement> elements;
    std::string storageSpace;  // qualified parts joined by "."
    COptionList options;
    std::vector<std::string> partitionColumns;
    std::vector<CPartitionDecl> partitions;
};

struct CIndexDecl {
    std::string name;
    CQualifiedName table;
    bool unique = false;
    int clustered = -1;  // -1 when not said
    std::vector<std::string> columns;
    std::vector<bool> descending;
    std::string expression;  // the first element that is an expression; such an index is not kept
    std::string condition;   // WHERE of a partial index, which the model cannot keep
    std::string storageSpace;
    COptionList options;
    bool local = false;  // LOCAL: partitioned as its table, or by its own list
    std::vector<CPartitionDecl> partitions;
};

// T-SQL's ALTER TABLE t ADD [CONSTRAINT n] DEFAULT expr FOR column.
struct CColumnDefaultDecl {
    std::string column;
    std::string text;
};
// ALTER TABLE t DROP COLUMN c, or one column of DROP (c, d).
struct CDropColumnDecl {
    std::string column;
};

// ALTER TABLE t DROP CONSTRAINT n, DROP PRIMARY KEY, DROP FOREIGN KEY n,
// DROP UNIQUE n, DROP CHECK n.
struct CDropConstraintDecl {
    std::string name;  // empty for DROP PRIMARY KEY
    bool primaryKey = false;
};

// What ALTER COLUMN, MODIFY, CHANGE or RENAME COLUMN says of a column that
// exists; what it does not say stays as it was.
struct CColumnChangeDecl {
    enum class EDefault { Keep, Set, Drop };
    std::string column;
    std::string newName;  // RENAME COLUMN c TO n, CHANGE c n ...; empty when kept
    bool typeGiven = false;
    std::string datatype;
    long width = -1;
    long scale = -1;
    int nullOption = -1;  // -1: kept
    EDefault defaultChange = EDefault::Keep;
    std::string defaultText;
};

// ALTER TABLE t RENAME TO n.
struct CRenameTableDecl {
    CQualifiedName to;
};

using CAlterItem = std::variant<CColumnDecl, CConstraintDecl, CColumnDefaultDecl, CDropColumnDecl,
                                CDropConstraintDecl, CColumnChangeDecl, CRenameTableDecl>;

// ALTER TABLE: what it adds, drops and changes, in the statement's order.
struct CAlterDecl {
    CQualifiedName table;
    std::vector<CAlterItem> items;
};

enum class EDropKind { Table, View, Index, Procedure, Function, Trigger, Package, PackageBody };

// DROP TABLE / VIEW / INDEX / PROCEDURE / FUNCTION / TRIGGER / PACKAGE [BODY].
struct CDropDecl {
    EDropKind kind = EDropKind::Table;
    std::vector<CQualifiedName> names;  // DROP TABLE a, b drops both
    CQualifiedName table;               // DROP INDEX i ON t
    bool cascade = false;               // CASCADE [CONSTRAINTS]: the foreign keys that refer to it go too
};

struct CViewDecl {
    CQualifiedName name;
    std::string text;
};

enum class ECodeKind { Package, PackageBody, Trigger, Procedure, Function };

// The client's own numbering of trigger kinds, as the model keeps them.
enum class ETriggerKind { Before = 1, After = 2, InsteadOf = 3 };

struct CCodeDecl {
    ECodeKind kind = ECodeKind::Procedure;
    CQualifiedName name;
    std::string text;  // the whole statement
    ETriggerKind triggerKind = ETriggerKind::After;
    CQualifiedName table;  // a trigger's table
};

// The client's own numbering of storage object kinds, as the model keeps them.
enum class EStorageObjectKind { StorageGroup = 1, Database = 2, Tablespace = 3, BufferPool = 4 };

struct CStorageObjectDecl {
    std::string name;
    std::string database;  // a tablespace's IN database
    std::string text;
    EStorageObjectKind kind = EStorageObjectKind::Tablespace;
};

struct CDefaultOrRuleDecl {
    std::string name;
    std::string text;
    bool rule = false;
};

// A user datatype: CREATE TYPE ... FROM / AS base, or sp_addtype.
struct CUserTypeDecl {
    std::string name;
    std::string base;
};

// An Oracle object type: the columns of the tables made OF it.
struct CObjectTypeDecl {
    std::string name;
    std::vector<CTableElement> attributes;
};

struct CCommentDecl {
    CQualifiedName table;
    std::string column;  // empty for a comment on the table
    std::string text;
};

// sp_bindefault / sp_bindrule.
struct CBindingDecl {
    bool rule = false;
    std::string object;
    std::string target;  // table.column or a user datatype
};

// SET CURRENT SQLID / SCHEMA: the default owner of what follows.
struct CSqlIdDecl {
    std::string id;
};

using CDeclaration = std::variant<std::monostate, CTableDecl, CIndexDecl, CAlterDecl, CViewDecl, CCodeDecl,
                                  CStorageObjectDecl, CDefaultOrRuleDecl, CUserTypeDecl, CObjectTypeDecl,
                                  CCommentDecl, CBindingDecl, CSqlIdDecl, CDropDecl>;

// One statement as parsed. A statement without a declaration (monostate)
// is one the model has no place for, counted as skipped by its kind.
struct CStatementDecl {
    int line = 0;
    std::string kind;  // "CREATE TABLE", "GRANT", ...
    CDeclaration declaration;
    std::vector<std::string> warnings;  // what the parser passed over in a statement it read
};
