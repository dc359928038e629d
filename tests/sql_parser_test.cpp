// The DDL parser on its own: small scripts in, the declarations it hands the
// importer out. No model is involved, so every expectation here is about what
// the parser read from the text: names, types, constraints, physical options,
// and how a script is cut into statements.
//
// Each statement is shown as lines of text close to the SQL it came from
// ("kind: what it declares", then one line per column, constraint, item or
// partition), so a case is a script and the lines it must give.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "DdlParser.h"
#include "Dialect.h"
#include "SqlLexer.h"

namespace {

using Strings = std::vector<std::string>;

constexpr long kUnbounded = 2147483647;

CDialect Dialect(const char* platform) {
    const CPlatformInfo* info = FindPlatformByName(platform);
    if (!info) throw std::runtime_error(std::string("no platform named ") + platform);
    return DialectOfPlatform(info->code, false);
}

std::vector<CStatementDecl> Parse(const std::string& sql, const char* platform = "unknown") {
    return ParseScript(sql, Dialect(platform));
}

std::string Join(const Strings& parts, const char* separator = ", ") {
    std::string text;
    for (const std::string& part : parts) text += (text.empty() ? "" : separator) + part;
    return text;
}

std::string Show(const CQualifiedName& name) { return Join(name.parts, "."); }

// The model builder's property codes the parser hands on, by name. They are
// spelled out here rather than taken from the parser's tables so that a code
// moved to the wrong row shows up as a failure.
std::string CodeName(int code) {
    static const std::map<int, std::string> names = {
        {16, "INITIAL"},    {17, "NEXT"},       {18, "FREELISTS"},   {19, "FREELIST GROUPS"}, {20, "MINEXTENTS"},
        {21, "MAXEXTENTS"}, {22, "PCTFREE"},    {23, "PCTUSED"},     {24, "PCTINCREASE"},     {25, "INITRANS"},
        {27, "BUFFERPOOL"}, {28, "LOGGING"},    {30, "CACHE"},       {31, "STOGROUP"},        {33, "ROW MOVEMENT"},
        {35, "COMPRESS"},   {38, "REVERSE"},    {40, "CLUSTER"},     {49, "CLOSE"},           {52, "PIECESIZE"},
        {53, "GBPCACHE"},   {55, "PARALLEL"},   {82, "IDENTITY"},    {84, "GENERATED"},       {97, "FOR BIT DATA"}};
    const auto found = names.find(code);
    return found == names.end() ? "code " + std::to_string(code) : found->second;
}

// Referential actions, on delete and on update apart: each has codes of its own.
std::string Action(const char* event, int code, const std::map<int, std::string>& names) {
    if (code == 0) return "";
    const auto found = names.find(code);
    return std::string(" ON ") + event + " " + (found == names.end() ? "code " + std::to_string(code) : found->second);
}

// Options as {NAME=number, NAME='text'}: a number is never mistaken for a text.
std::string Show(const COptionList& options) {
    Strings shown;
    for (const COptionValue& option : options)
        shown.push_back(CodeName(option.code) + "=" +
                        (option.isText ? "'" + option.text + "'" : std::to_string(option.number)));
    return options.empty() ? "" : " {" + Join(shown) + "}";
}

std::string Show(const CForeignKeyDecl& key) {
    return "FOREIGN KEY (" + Join(key.childColumns) + ") REFERENCES " + Show(key.parent) +
           (key.parentColumns.empty() ? "" : " (" + Join(key.parentColumns) + ")") +
           Action("DELETE", key.onDelete, {{77, "CASCADE"}, {78, "RESTRICT"}, {79, "SET NULL"}}) +
           Action("UPDATE", key.onUpdate, {{80, "CASCADE"}, {81, "RESTRICT"}});
}

std::string Show(const CConstraintDecl& constraint) {
    std::string text = constraint.name.empty() ? "" : "CONSTRAINT " + constraint.name + " ";
    switch (constraint.kind) {
    case EConstraintKind::PrimaryKey: text += "PRIMARY KEY (" + Join(constraint.columns) + ")"; break;
    case EConstraintKind::Unique: text += "UNIQUE (" + Join(constraint.columns) + ")"; break;
    case EConstraintKind::Check:
        text += "CHECK (" + constraint.checkText + ")" + (constraint.column.empty() ? "" : " ON " + constraint.column);
        break;
    case EConstraintKind::ForeignKey:
        text += Show(constraint.reference);
        if (constraint.reference.name != constraint.name)
            text += " (reference named " + constraint.reference.name + ")";
        break;
    }
    return text + (constraint.clustered ? " CLUSTERED" : "");
}

// name TYPE(width,scale) [NOT] NULL DEFAULT text AS (generated) {properties} | constraints
std::string Show(const CColumnDecl& column) {
    std::string text = column.name + (column.datatype.empty() ? "" : " " + column.datatype);
    if (column.width != -1 || column.scale != -1)
        text += "(" + (column.width == kUnbounded ? "MAX" : column.width == -1 ? "*" : std::to_string(column.width)) +
                (column.scale == -1 ? "" : "," + std::to_string(column.scale)) + ")";
    if (column.nullOption >= 0) text += column.nullOption ? " NULL" : " NOT NULL";
    if (!column.defaultText.empty()) text += " DEFAULT " + column.defaultText;
    if (!column.generatedExpression.empty()) text += " AS (" + column.generatedExpression + ")";
    Strings properties;
    for (const auto& property : column.properties)
        properties.push_back(CodeName(property.first) + "=" + std::to_string(property.second));
    if (!properties.empty()) text += " {" + Join(properties) + "}";
    for (const CConstraintDecl& constraint : column.constraints) text += " | " + Show(constraint);
    return text;
}

std::string Show(const CTableElement& element) {
    if (const auto* column = std::get_if<CColumnDecl>(&element)) return Show(*column);
    return Show(std::get<CConstraintDecl>(element));
}

void AddPartitions(const std::vector<CPartitionDecl>& partitions, Strings& lines) {
    for (const CPartitionDecl& partition : partitions)
        lines.push_back("PARTITION " + partition.name +
                        (partition.limit.empty() ? "" : " VALUES (" + partition.limit + ")") +
                        (partition.storageSpace.empty() ? "" : " IN " + partition.storageSpace) +
                        Show(partition.options));
}

std::string Show(const CIndexDecl& index) {
    std::string text = std::string(index.unique ? "UNIQUE " : "") +
                       (index.clustered == 1 ? "CLUSTERED " : index.clustered == 0 ? "NONCLUSTERED " : "") +
                       index.name + " ON " + Show(index.table) + " (";
    for (std::size_t i = 0; i < index.columns.size(); ++i) {
        const bool descending = i < index.descending.size() && index.descending[i];
        text += (i ? ", " : "") + index.columns[i] + (descending ? " DESC" : "");
    }
    text += ")";
    if (index.descending.size() != index.columns.size())
        text += " [" + std::to_string(index.descending.size()) + " sort orders]";
    if (!index.expression.empty()) text += " EXPRESSION " + index.expression;
    if (!index.condition.empty()) text += " " + index.condition;
    if (!index.storageSpace.empty()) text += " IN " + index.storageSpace;
    return text + (index.local ? " LOCAL" : "") + Show(index.options);
}

std::string Show(const CAlterItem& item) {
    if (const auto* column = std::get_if<CColumnDecl>(&item)) return "add " + Show(*column);
    if (const auto* constraint = std::get_if<CConstraintDecl>(&item)) return "add " + Show(*constraint);
    if (const auto* value = std::get_if<CColumnDefaultDecl>(&item))
        return "default " + value->text + " for " + value->column;
    if (const auto* column = std::get_if<CDropColumnDecl>(&item)) return "drop column " + column->column;
    if (const auto* constraint = std::get_if<CDropConstraintDecl>(&item))
        return constraint->primaryKey ? "drop primary key" : "drop constraint " + constraint->name;
    if (const auto* rename = std::get_if<CRenameTableDecl>(&item)) return "rename to " + Show(rename->to);
    const auto& change = std::get<CColumnChangeDecl>(item);
    std::string line = "change " + change.column;
    if (!change.newName.empty()) line += " to " + change.newName;
    if (change.typeGiven)
        line += " type " + change.datatype + "(" + std::to_string(change.width) + "," + std::to_string(change.scale) +
                ")";
    if (change.nullOption >= 0) line += change.nullOption ? " null" : " not null";
    if (change.defaultChange == CColumnChangeDecl::EDefault::Set) line += " default " + change.defaultText;
    if (change.defaultChange == CColumnChangeDecl::EDefault::Drop) line += " drop default";
    return line;
}

// One statement as lines: "kind: declaration", its parts, its warnings. A
// statement that declares nothing is its kind alone.
Strings Show(const CStatementDecl& statement) {
    const CDeclaration& declared = statement.declaration;
    std::string head;
    Strings parts;
    if (const auto* table = std::get_if<CTableDecl>(&declared)) {
        head = Show(table->name) + (table->like.Empty() ? "" : " LIKE " + Show(table->like)) +
               (table->ofType.empty() ? "" : " OF " + table->ofType) +
               (table->storageSpace.empty() ? "" : " IN " + table->storageSpace) +
               (table->partitionColumns.empty() ? "" : " PARTITION BY (" + Join(table->partitionColumns) + ")") +
               Show(table->options);
        for (const CTableElement& element : table->elements) parts.push_back(Show(element));
        AddPartitions(table->partitions, parts);
    } else if (const auto* index = std::get_if<CIndexDecl>(&declared)) {
        head = Show(*index);
        AddPartitions(index->partitions, parts);
    } else if (const auto* alter = std::get_if<CAlterDecl>(&declared)) {
        head = Show(alter->table);
        for (const CAlterItem& item : alter->items) parts.push_back(Show(item));
    } else if (const auto* drop = std::get_if<CDropDecl>(&declared)) {
        static const char* const kinds[] = {"table", "view", "index", "procedure", "function", "trigger", "package",
                                            "package body"};
        Strings names;
        for (const CQualifiedName& name : drop->names) names.push_back(Show(name));
        head = std::string(kinds[static_cast<int>(drop->kind)]) + " " + Join(names) +
               (drop->table.Empty() ? "" : " ON " + Show(drop->table)) + (drop->cascade ? " CASCADE" : "");
    } else if (const auto* view = std::get_if<CViewDecl>(&declared)) {
        head = Show(view->name);
        parts.push_back(view->text);
    } else if (const auto* code = std::get_if<CCodeDecl>(&declared)) {
        static const char* const kinds[] = {"package", "package body", "trigger", "procedure", "function"};
        static const char* const triggerKinds[] = {"", "BEFORE", "AFTER", "INSTEAD OF"};
        head = std::string(kinds[static_cast<int>(code->kind)]) + " " + Show(code->name);
        if (code->kind == ECodeKind::Trigger)
            head += std::string(" ") + triggerKinds[static_cast<int>(code->triggerKind)] + " ON " + Show(code->table);
        parts.push_back(code->text);
    } else if (const auto* object = std::get_if<CStorageObjectDecl>(&declared)) {
        static const char* const kinds[] = {"", "storage group", "database", "tablespace", "bufferpool"};
        head = std::string(kinds[static_cast<int>(object->kind)]) + " " + object->name +
               (object->database.empty() ? "" : " IN " + object->database);
        parts.push_back(object->text);
    } else if (const auto* named = std::get_if<CDefaultOrRuleDecl>(&declared)) {
        head = (named->rule ? "rule " : "default ") + named->name + " AS " + named->text;
    } else if (const auto* type = std::get_if<CUserTypeDecl>(&declared)) {
        head = "type " + type->name + " FROM " + type->base;
    } else if (const auto* objectType = std::get_if<CObjectTypeDecl>(&declared)) {
        head = "object type " + objectType->name;
        for (const CTableElement& element : objectType->attributes) parts.push_back(Show(element));
    } else if (const auto* comment = std::get_if<CCommentDecl>(&declared)) {
        head = "table " + Show(comment->table) + (comment->column.empty() ? "" : " column " + comment->column) +
               " IS '" + comment->text + "'";
    } else if (const auto* binding = std::get_if<CBindingDecl>(&declared)) {
        head = (binding->rule ? "rule " : "default ") + binding->object + " TO " + binding->target;
    } else if (const auto* sqlId = std::get_if<CSqlIdDecl>(&declared)) {
        head = "owner " + sqlId->id;
    }
    Strings lines = {std::holds_alternative<std::monostate>(declared) ? statement.kind : statement.kind + ": " + head};
    lines.insert(lines.end(), parts.begin(), parts.end());
    for (const std::string& warning : statement.warnings) lines.push_back("warning: " + warning);
    return lines;
}

// A script, the lines its statements show, and (when given) the line each
// statement starts on.
struct CCase {
    const char* platform;
    std::string sql;
    Strings shown;
    std::vector<int> startLines = {};
};

void ExpectParsed(const std::vector<CCase>& cases) {
    for (const CCase& c : cases) {
        SCOPED_TRACE(c.sql);
        const std::vector<CStatementDecl> statements = Parse(c.sql, c.platform);
        Strings shown;
        std::vector<int> startLines;
        for (const CStatementDecl& statement : statements) {
            const Strings lines = Show(statement);
            shown.insert(shown.end(), lines.begin(), lines.end());
            startLines.push_back(statement.line);
        }
        EXPECT_EQ(shown, c.shown);
        if (!c.startLines.empty()) {
            EXPECT_EQ(startLines, c.startLines);
        }
    }
}

// ---------------------------------------------------------------------------
// CREATE TABLE

TEST(CreateTable, NamesKeepTheirQualificationWithoutQuotes) {
    const struct {
        const char* sql;
        Strings parts;
        const char* owner;
    } cases[] = {
        {"CREATE TABLE \"Sales\".[Order Lines] (id INT);", {"Sales", "Order Lines"}, "Sales"},
        {"CREATE TABLE IF NOT EXISTS shop.dbo.item (id INT);", {"shop", "dbo", "item"}, "dbo"},
        {"CREATE GLOBAL TEMPORARY TABLE scratch (id INT);", {"scratch"}, ""},
    };
    for (const auto& c : cases) {
        const std::vector<CStatementDecl> statements = Parse(c.sql);
        ASSERT_EQ(statements.size(), 1u) << c.sql;
        const CQualifiedName& name = std::get<CTableDecl>(statements.at(0).declaration).name;
        EXPECT_EQ(name.parts, c.parts) << c.sql;
        EXPECT_EQ(name.Owner(), c.owner) << c.sql;
    }
}

TEST(CreateTable, ColumnTypesSizesNullabilityDefaultsAndGeneratedValues) {
    ExpectParsed({
        // Multi-word types are one type, in upper case whatever the script
        // says, and leave what follows them to be read as itself.
        {"unknown",
         "CREATE TABLE kinds (a DOUBLE PRECISION NOT NULL, b CHARACTER VARYING(40) NULL, c LONG RAW,\n"
         "  d CHAR LARGE OBJECT, e NCHAR LARGE OBJECT, f BINARY LARGE OBJECT, g NATIONAL CHARACTER VARYING(10),\n"
         "  h LONG VARCHAR NOT NULL);",
         {"CREATE TABLE: kinds", "a DOUBLE PRECISION NOT NULL", "b CHARACTER VARYING(40) NULL", "c LONG RAW", "d CLOB",
          "e NCLOB", "f BLOB", "g NATIONAL CHARACTER VARYING(10)", "h LONG VARCHAR NOT NULL"}},
        {"unknown", "create table t (a double precision, b character varying(5), c int)",
         {"CREATE TABLE: t", "a DOUBLE PRECISION", "b CHARACTER VARYING(5)", "c int"}},
        {"unknown",
         "CREATE TABLE sizes (a DECIMAL(10, 2), b VARCHAR2(20 CHAR), c NVARCHAR(MAX), d varbinary(max),"
         " e INT, f NUMBER(*, 0), g CHAR(1))",
         {"CREATE TABLE: sizes", "a DECIMAL(10,2)", "b VARCHAR2(20)", "c NVARCHAR(MAX)", "d varbinary(MAX)", "e INT",
          "f NUMBER(*,0)", "g CHAR(1)"}},
        // DB2 spells large object lengths with K, M or G: 1M is 1048576, not 1.
        {"unknown", "CREATE TABLE docs (body CLOB(1M), image BLOB(64K))",
         {"CREATE TABLE: docs", "body CLOB(1048576)", "image BLOB(65536)"}},
        {"unknown", "CREATE TABLE loose (a, b DEFAULT 1, c INTEGER)",
         {"CREATE TABLE: loose", "a", "b DEFAULT 1", "c INTEGER"}},
        // A named NOT NULL is no constraint of the model.
        {"unknown", "CREATE TABLE n (a INT NOT NULL, b INT NULL, c INT, d NUMBER CONSTRAINT nn_d NOT NULL ENABLE)",
         {"CREATE TABLE: n", "a INT NOT NULL", "b INT NULL", "c INT", "d NUMBER NOT NULL"}},
        // A default is kept as written up to what follows it, which is read as itself.
        {"unknown",
         "CREATE TABLE d (\n"
         "  a VARCHAR(10) DEFAULT 'N/A, none' NOT NULL,\n"
         "  b DATETIME DEFAULT (getdate()),\n"
         "  c INT DEFAULT 1 +  2 CHECK (c > 0),\n"
         "  e TIMESTAMP NOT NULL WITH DEFAULT CURRENT TIMESTAMP,\n"
         "  f INT DEFAULT coalesce(1, 2) UNIQUE,\n"
         "  g VARCHAR(5) DEFAULT 'x' COLLATE Latin1_General_CI_AS,\n"
         "  h INT DEFAULT -1)",
         {"CREATE TABLE: d", "a VARCHAR(10) NOT NULL DEFAULT 'N/A, none'", "b DATETIME DEFAULT (getdate())",
          "c INT DEFAULT 1 +  2 | CHECK (c > 0) ON c", "e TIMESTAMP NOT NULL DEFAULT CURRENT TIMESTAMP",
          "f INT DEFAULT coalesce(1, 2) | UNIQUE (f)", "g VARCHAR(5) DEFAULT 'x'", "h INT DEFAULT -1"}},
        // DEFAULT NULL is a default and leaves the nullability unsaid.
        {"unknown", "CREATE TABLE d (a INT DEFAULT NULL, b INT DEFAULT 0 NULL)",
         {"CREATE TABLE: d", "a INT DEFAULT NULL", "b INT NULL DEFAULT 0"}},
        // The seed and step of an identity are not read as anything else.
        {"unknown", "CREATE TABLE t (id INT IDENTITY(100, 5) NOT NULL)",
         {"CREATE TABLE: t", "id INT NOT NULL {IDENTITY=0}"}},
        {"unknown", "CREATE TABLE t (id BIGINT GENERATED ALWAYS AS IDENTITY (START WITH 1 INCREMENT BY 1) NOT NULL)",
         {"CREATE TABLE: t", "id BIGINT NOT NULL {IDENTITY=0, GENERATED=1}"}},
        {"unknown", "CREATE TABLE t (id INTEGER GENERATED BY DEFAULT AS IDENTITY)",
         {"CREATE TABLE: t", "id INTEGER {IDENTITY=0, GENERATED=0}"}},
        // An expression is kept without its parentheses, and is no identity.
        {"unknown", "CREATE TABLE t (total DECIMAL(10, 2) GENERATED ALWAYS AS (price * (1 + tax)) NOT NULL)",
         {"CREATE TABLE: t", "total DECIMAL(10,2) NOT NULL AS (price * (1 + tax))"}},
        // FOR BIT DATA is a property, not the end of a default.
        {"unknown", "CREATE TABLE t (token CHAR(16) FOR BIT DATA NOT NULL)",
         {"CREATE TABLE: t", "token CHAR(16) NOT NULL {FOR BIT DATA=0}"}},
        {"sqlserver", "CREATE TABLE lines (price MONEY, qty INT, total AS (price * qty) PERSISTED, note VARCHAR(10))",
         {"CREATE TABLE: lines", "price MONEY", "qty INT", "note VARCHAR(10)",
          "warning: computed column total skipped"}},
    });
}

TEST(CreateTable, AColumnsOwnConstraints) {
    ExpectParsed({
        // Keys come first, then checks, then the reference.
        {"unknown",
         "CREATE TABLE t (id INT REFERENCES parent (pid) CHECK (id > 0) NOT NULL CHECK (id < 99) PRIMARY KEY)",
         {"CREATE TABLE: t", "id INT NOT NULL | PRIMARY KEY (id) | CHECK (id > 0) ON id | CHECK (id < 99) ON id"
                             " | FOREIGN KEY (id) REFERENCES parent (pid)"}},
        // Unique and primary keys keep the order written.
        {"unknown", "CREATE TABLE t (code INT CHECK (code <> 0) UNIQUE PRIMARY KEY)",
         {"CREATE TABLE: t", "code INT | UNIQUE (code) | PRIMARY KEY (code) | CHECK (code <> 0) ON code"}},
        // T-SQL clusters a table on a unique constraint as well as on its primary key.
        {"sqlserver",
         "CREATE TABLE c (a INT PRIMARY KEY CLUSTERED, b INT UNIQUE CLUSTERED, c INT PRIMARY KEY NONCLUSTERED)",
         {"CREATE TABLE: c", "a INT | PRIMARY KEY (a) CLUSTERED", "b INT | UNIQUE (b) CLUSTERED",
          "c INT | PRIMARY KEY (c)"}},
        // Without parent columns a reference is to the parent's primary key.
        {"unknown",
         "CREATE TABLE t (owner_id INT CONSTRAINT fk_owner REFERENCES hr.people (person_id) ON DELETE CASCADE,"
         " other_id INT REFERENCES people)",
         {"CREATE TABLE: t",
          "owner_id INT | CONSTRAINT fk_owner FOREIGN KEY (owner_id) REFERENCES hr.people (person_id)"
          " ON DELETE CASCADE",
          "other_id INT | FOREIGN KEY (other_id) REFERENCES people"}},
        // A constraint name belongs to the constraint it precedes only, and a
        // named NOT NULL names nothing after it: two constraints called ck_qty
        // would clash.
        {"unknown", "CREATE TABLE t (qty INT CONSTRAINT pk_q PRIMARY KEY CONSTRAINT ck_q CHECK (qty > 0))",
         {"CREATE TABLE: t", "qty INT | CONSTRAINT pk_q PRIMARY KEY (qty) | CONSTRAINT ck_q CHECK (qty > 0) ON qty"}},
        {"unknown", "CREATE TABLE t (code CHAR(2) CONSTRAINT nn_code NOT NULL UNIQUE)",
         {"CREATE TABLE: t", "code CHAR(2) NOT NULL | UNIQUE (code)"}},
        {"unknown", "CREATE TABLE t (qty INT CONSTRAINT ck_qty CHECK (qty > 0) UNIQUE)",
         {"CREATE TABLE: t", "qty INT | UNIQUE (qty) | CONSTRAINT ck_qty CHECK (qty > 0) ON qty"}},
    });
}

TEST(CreateTable, TableConstraintsAndOtherForms) {
    ExpectParsed({
        {"unknown",
         "CREATE TABLE order_lines (\n"
         "  order_id INT NOT NULL,\n"
         "  CONSTRAINT pk_lines PRIMARY KEY CLUSTERED (order_id, line_no),\n"
         "  line_no INT NOT NULL,\n"
         "  UNIQUE (sku, order_id),\n"
         "  sku VARCHAR(20),\n"
         "  CHECK (line_no > 0 AND sku <> '')\n"
         ")",
         {"CREATE TABLE: order_lines", "order_id INT NOT NULL",
          "CONSTRAINT pk_lines PRIMARY KEY (order_id, line_no) CLUSTERED", "line_no INT NOT NULL",
          "UNIQUE (sku, order_id)", "sku VARCHAR(20)", "CHECK (line_no > 0 AND sku <> '')"}},
        // The model has no SET NULL on update.
        {"unknown",
         "CREATE TABLE child (\n"
         "  a INT, b INT, c INT, d INT,\n"
         "  CONSTRAINT fk_ab FOREIGN KEY (a, b) REFERENCES sales.parent (pa, pb) ON DELETE CASCADE ON UPDATE CASCADE,\n"
         "  FOREIGN KEY (c) REFERENCES other ON DELETE SET NULL,\n"
         "  CONSTRAINT fk_d FOREIGN KEY (d) REFERENCES third (id) ON UPDATE RESTRICT ON DELETE RESTRICT,\n"
         "  CONSTRAINT fk_none FOREIGN KEY (a) REFERENCES fourth (id) ON DELETE NO ACTION ON UPDATE SET NULL\n"
         ")",
         {"CREATE TABLE: child", "a INT", "b INT", "c INT", "d INT",
          "CONSTRAINT fk_ab FOREIGN KEY (a, b) REFERENCES sales.parent (pa, pb) ON DELETE CASCADE ON UPDATE CASCADE",
          "FOREIGN KEY (c) REFERENCES other ON DELETE SET NULL",
          "CONSTRAINT fk_d FOREIGN KEY (d) REFERENCES third (id) ON DELETE RESTRICT ON UPDATE RESTRICT",
          "CONSTRAINT fk_none FOREIGN KEY (a) REFERENCES fourth (id)"}},
        {"unknown", "CREATE TABLE copy AS SELECT * FROM original;",
         {"CREATE TABLE", "warning: table definition without a column list skipped"}},
        {"unknown", "CREATE TABLE hist.orders_2020 LIKE prod.orders;",
         {"CREATE TABLE: hist.orders_2020 LIKE prod.orders"}},
        // OF a type takes its columns from the type and keeps its own constraints.
        {"unknown", "CREATE TABLE people OF hr.person_t (CONSTRAINT pk_people PRIMARY KEY (id)) TABLESPACE users;",
         {"CREATE TABLE: people OF person_t IN users", "CONSTRAINT pk_people PRIMARY KEY (id)"}},
        {"unknown", "CREATE TABLE people OF person_t;", {"CREATE TABLE: people OF person_t"}},
    });
}

// ---------------------------------------------------------------------------
// Physical options of tables, partitions and indexes

TEST(PhysicalOptions, OfTablesInOrderWithTheirStorageSpace) {
    ExpectParsed({
        {"oracle",
         "CREATE TABLE t (id NUMBER)\n"
         "  PCTFREE 10 PCTUSED 40 INITRANS 2 NOLOGGING CACHE PARALLEL\n"
         "  STORAGE (INITIAL 64K NEXT 1M MINEXTENTS 1 MAXEXTENTS UNLIMITED PCTINCREASE 0\n"
         "           FREELISTS 2 FREELIST GROUPS 3 BUFFER_POOL keep)\n"
         "  TABLESPACE users;",
         {"CREATE TABLE: t IN users {PCTFREE=10, PCTUSED=40, INITRANS=2, LOGGING=0, CACHE=1, PARALLEL=0, INITIAL=64,"
          " NEXT=1024, MINEXTENTS=1, MAXEXTENTS=2147483647, PCTINCREASE=0, FREELISTS=2, FREELIST GROUPS=3,"
          " BUFFERPOOL='KEEP'}",
          "id NUMBER"}},
        // Sizes are in kilobytes; PARALLEL takes its degree.
        {"oracle", "CREATE TABLE t (id NUMBER) LOGGING NOCACHE PARALLEL 4 STORAGE (INITIAL 2G NEXT 512K);",
         {"CREATE TABLE: t {LOGGING=1, CACHE=0, PARALLEL=4, INITIAL=2097152, NEXT=512}", "id NUMBER"}},
        // Oracle's extent sizes without a unit are bytes; DB2's space
        // quantities are kilobytes already.
        {"oracle", "CREATE TABLE t (id NUMBER) STORAGE (INITIAL 65536 NEXT 100 MINEXTENTS 2);",
         {"CREATE TABLE: t {INITIAL=64, NEXT=1, MINEXTENTS=2}", "id NUMBER"}},
        {"db2zos", "CREATE INDEX ix ON t (id) PRIQTY 720 SECQTY 48;",
         {"CREATE INDEX: ix ON t (id) {INITIAL=720, NEXT=48}"}},
        // The storage space from TABLESPACE, ON or IN, qualified names joined by dots.
        {"unknown", "CREATE TABLE t (id INT) IN db1.ts1;", {"CREATE TABLE: t IN db1.ts1", "id INT"}},
        {"sqlserver", "CREATE TABLE t (id INT) ON [PRIMARY]", {"CREATE TABLE: t IN PRIMARY", "id INT"}},
        // GO ends a batch only alone on its line; elsewhere it is a name.
        {"sqlserver", "CREATE TABLE t (id INT, go INT)\nGO\n", {"CREATE TABLE: t", "id INT", "go INT"}},
        {"unknown", "CREATE TABLE t (id INT) TABLESPACE \"Data\";", {"CREATE TABLE: t IN Data", "id INT"}},
        // DB2 LUW: IN names the table's space; INDEX IN and LONG IN name others.
        {"db2", "CREATE TABLE t (id INT, doc CLOB) IN data_ts INDEX IN idx_ts LONG IN lob_ts;",
         {"CREATE TABLE: t IN data_ts", "id INT", "doc CLOB"}},
    });
}

TEST(PhysicalOptions, PartitionsWithTheirLimitsSpacesAndOptions) {
    ExpectParsed({
        // The table's own space and options are not taken by its partitions.
        {"oracle",
         "CREATE TABLE sales (id NUMBER, sold DATE, region VARCHAR2(2))\n"
         "TABLESPACE users\n"
         "PARTITION BY RANGE (sold, region) (\n"
         "  PARTITION p2019 VALUES LESS THAN (TO_DATE('2020-01-01', 'YYYY-MM-DD'), 'ZZ') TABLESPACE ts_2019\n"
         "    PCTFREE 5 NOLOGGING STORAGE (INITIAL 1M),\n"
         "  PARTITION p_rest VALUES LESS THAN (MAXVALUE, MAXVALUE) LOGGING\n"
         ") ENABLE ROW MOVEMENT;",
         {"CREATE TABLE: sales IN users PARTITION BY (sold, region) {ROW MOVEMENT=1}", "id NUMBER", "sold DATE",
          "region VARCHAR2(2)",
          "PARTITION p2019 VALUES (TO_DATE('2020-01-01', 'YYYY-MM-DD'), 'ZZ') IN ts_2019"
          " {PCTFREE=5, LOGGING=0, INITIAL=1024}",
          "PARTITION p_rest VALUES (MAXVALUE, MAXVALUE) {LOGGING=1}"}},
        {"oracle",
         "CREATE TABLE c (region CHAR(2)) PARTITION BY LIST (region)"
         " (PARTITION east VALUES ('NY', 'NJ'), PARTITION west VALUES ('CA'));",
         {"CREATE TABLE: c PARTITION BY (region)", "region CHAR(2)", "PARTITION east VALUES ('NY', 'NJ')",
          "PARTITION west VALUES ('CA')"}},
        // Hash partitions by number are named P1 to Pn; STORE IN (...) names no single space.
        {"oracle", "CREATE TABLE h (id NUMBER) PARTITION BY HASH (id) PARTITIONS 4 STORE IN (ts1, ts2);",
         {"CREATE TABLE: h PARTITION BY (id)", "id NUMBER", "PARTITION P1", "PARTITION P2", "PARTITION P3",
          "PARTITION P4"}},
        // Interval partitions keep their first partitions.
        {"oracle",
         "CREATE TABLE s (d DATE) PARTITION BY RANGE (d) INTERVAL (NUMTOYMINTERVAL(1, 'MONTH')) STORE IN (ts1)\n"
         " (PARTITION p0 VALUES LESS THAN (DATE '2020-01-01') TABLESPACE ts0);",
         {"CREATE TABLE: s PARTITION BY (d)", "d DATE", "PARTITION p0 VALUES (DATE '2020-01-01') IN ts0"}},
    });
}

TEST(PhysicalOptions, HashPartitionsByNumberStopAtTheServersLimit) {
    const std::vector<CStatementDecl> statements =
        Parse("CREATE TABLE h (id NUMBER) PARTITION BY HASH (id) PARTITIONS 100000;", "oracle");
    ASSERT_EQ(statements.size(), 1u);
    const CTableDecl& table = std::get<CTableDecl>(statements.at(0).declaration);
    ASSERT_EQ(table.partitions.size(), 4096u);
    EXPECT_EQ(table.partitions.back().name, "P4096");
}

TEST(PhysicalOptions, OfIndexesAndTheirPartitions) {
    ExpectParsed({
        {"oracle",
         "CREATE INDEX ix_name ON people (last_name) PCTFREE 5 INITRANS 4 REVERSE TABLESPACE idx_ts\n"
         "  STORAGE (INITIAL 128K NEXT 2M);",
         {"CREATE INDEX: ix_name ON people (last_name) IN idx_ts"
          " {PCTFREE=5, INITRANS=4, REVERSE=1, INITIAL=128, NEXT=2048}"}},
        // NOT CLUSTER is an option, not the CLUSTERED of the statement.
        {"db2zos",
         "CREATE INDEX ix1 ON t (a) USING STOGROUP sg1 PRIQTY 720 SECQTY 48 BUFFERPOOL BP2 CLOSE NO\n"
         "  PIECESIZE 2G NOT CLUSTER COMPRESS YES GBPCACHE ALL;",
         {"CREATE INDEX: ix1 ON t (a) {STOGROUP='sg1', INITIAL=720, NEXT=48, BUFFERPOOL='BP2', CLOSE='NO',"
          " PIECESIZE='2G', CLUSTER=0, COMPRESS=1, GBPCACHE='ALL'}"}},
        // A local index follows its table's partitions or lists its own.
        {"oracle", "CREATE INDEX ix ON sales (sold) LOCAL;", {"CREATE INDEX: ix ON sales (sold) LOCAL"}},
        {"oracle",
         "CREATE INDEX ix ON sales (sold) LOCAL (PARTITION ip1 TABLESPACE its1 PCTFREE 20, PARTITION ip2)"
         " TABLESPACE idx;",
         {"CREATE INDEX: ix ON sales (sold) IN idx LOCAL", "PARTITION ip1 IN its1 {PCTFREE=20}", "PARTITION ip2"}},
    });
}

// ---------------------------------------------------------------------------
// CREATE INDEX

TEST(CreateIndex, ColumnsExpressionsConditionsAndFilegroups) {
    ExpectParsed({
        {"unknown", "CREATE UNIQUE CLUSTERED INDEX ix_o ON dbo.orders (placed DESC, id ASC, c)",
         {"CREATE INDEX: UNIQUE CLUSTERED ix_o ON dbo.orders (placed DESC, id, c)"}},
        {"sqlserver", "CREATE NONCLUSTERED INDEX ix ON t (a)", {"CREATE INDEX: NONCLUSTERED ix ON t (a)"}},
        // An expression index keeps the (first) expression and no columns.
        {"unknown", "CREATE INDEX ix ON people (lower(name));",
         {"CREATE INDEX: ix ON people () EXPRESSION lower(name)"}},
        {"unknown", "CREATE INDEX ix ON people (id, upper(city), zip);",
         {"CREATE INDEX: ix ON people () EXPRESSION upper(city)"}},
        {"unknown", "CREATE INDEX ix ON t (a + b);", {"CREATE INDEX: ix ON t () EXPRESSION a + b"}},
        // Prefix lengths are not expressions.
        {"unknown", "CREATE INDEX ix ON t (name(10), code DESC);", {"CREATE INDEX: ix ON t (name, code DESC)"}},
        {"unknown", "CREATE UNIQUE INDEX ix ON users (email) WHERE deleted = 0;",
         {"CREATE INDEX: UNIQUE ix ON users (email) WHERE deleted = 0"}},
        // T-SQL puts the filegroup after the filter: it does not belong to the condition.
        {"sqlserver", "CREATE INDEX ix ON dbo.users (email) WHERE email IS NOT NULL ON [INDEXES]",
         {"CREATE INDEX: ix ON dbo.users (email) WHERE email IS NOT NULL IN INDEXES"}},
        {"sqlserver", "CREATE INDEX ix ON dbo.users (email) INCLUDE (name) WHERE email IS NOT NULL",
         {"CREATE INDEX: ix ON dbo.users (email) WHERE email IS NOT NULL"}},
        {"sqlserver", "CREATE INDEX ix ON t (a) INCLUDE (b, c) WITH (FILLFACTOR = 80) ON [INDEXES]",
         {"CREATE INDEX: ix ON t (a) IN INDEXES"}},
    });
}

// ---------------------------------------------------------------------------
// ALTER TABLE and DROP

TEST(AlterTable, AddsColumnsConstraintsAndDefaults) {
    ExpectParsed({
        {"unknown", "ALTER TABLE sales.orders ADD note VARCHAR(200) DEFAULT 'none' NOT NULL;",
         {"ALTER TABLE: sales.orders", "add note VARCHAR(200) NOT NULL DEFAULT 'none'"}},
        {"unknown", "ALTER TABLE orders ADD CONSTRAINT pk_orders PRIMARY KEY (id, region);",
         {"ALTER TABLE: orders", "add CONSTRAINT pk_orders PRIMARY KEY (id, region)"}},
        {"unknown",
         "ALTER TABLE lines ADD CONSTRAINT fk_order FOREIGN KEY (order_id) REFERENCES orders (id)"
         " ON DELETE SET NULL ENABLE NOVALIDATE;",
         {"ALTER TABLE: lines",
          "add CONSTRAINT fk_order FOREIGN KEY (order_id) REFERENCES orders (id) ON DELETE SET NULL"}},
        {"sqlserver", "ALTER TABLE lines WITH NOCHECK ADD CHECK (qty > 0)",
         {"ALTER TABLE: lines", "add CHECK (qty > 0)"}},
        {"sqlserver", "ALTER TABLE [dbo].[lines] ADD CONSTRAINT [df_qty] DEFAULT ((0)) FOR [qty]",
         {"ALTER TABLE: dbo.lines", "default ((0)) for qty"}},
        // Several additions in parentheses, separated by commas, or each with its own ADD (DB2).
        {"oracle", "ALTER TABLE t ADD (a NUMBER, b VARCHAR2(10) NOT NULL, CONSTRAINT u_ab UNIQUE (a, b));",
         {"ALTER TABLE: t", "add a NUMBER", "add b VARCHAR2(10) NOT NULL", "add CONSTRAINT u_ab UNIQUE (a, b)"}},
        {"sqlserver", "ALTER TABLE t ADD a INT NULL, b INT NOT NULL",
         {"ALTER TABLE: t", "add a INT NULL", "add b INT NOT NULL"}},
        {"db2", "ALTER TABLE t ADD COLUMN a INT ADD COLUMN b CHAR(3);",
         {"ALTER TABLE: t", "add a INT", "add b CHAR(3)"}},
        {"sqlserver", "ALTER TABLE t ADD total AS (a * b)", {"ALTER TABLE", "warning: computed column total skipped"}},
        // An alteration of nothing the model holds is no declaration.
        {"unknown", "ALTER TABLE t DROP UNUSED COLUMNS;", {"ALTER TABLE"}},
        {"unknown", "ALTER INDEX ix REBUILD;", {"ALTER INDEX"}},
    });
}

TEST(AlterTable, DropsChangesAndRenamesInEachDialectsForm) {
    ExpectParsed({
        {"oracle", "ALTER TABLE t DROP COLUMN a", {"ALTER TABLE: t", "drop column a"}},
        {"sqlserver", "ALTER TABLE t DROP COLUMN a, b", {"ALTER TABLE: t", "drop column a", "drop column b"}},
        {"oracle", "ALTER TABLE t DROP (a, b) CASCADE CONSTRAINTS",
         {"ALTER TABLE: t", "drop column a", "drop column b"}},
        {"unknown", "ALTER TABLE t DROP COLUMN a, DROP COLUMN IF EXISTS b",
         {"ALTER TABLE: t", "drop column a", "drop column b"}},
        {"unknown", "ALTER TABLE t DROP a", {"ALTER TABLE: t", "drop column a"}},
        {"sqlserver", "ALTER TABLE t DROP CONSTRAINT [fk x]", {"ALTER TABLE: t", "drop constraint fk x"}},
        {"oracle", "ALTER TABLE t DROP PRIMARY KEY CASCADE", {"ALTER TABLE: t", "drop primary key"}},
        {"unknown", "ALTER TABLE t DROP FOREIGN KEY fk1", {"ALTER TABLE: t", "drop constraint fk1"}},
        {"db2", "ALTER TABLE t DROP UNIQUE u1 DROP CHECK c1",
         {"ALTER TABLE: t", "drop constraint u1", "drop constraint c1"}},
        {"sqlserver", "ALTER TABLE t ALTER COLUMN c VARCHAR(20) NOT NULL",
         {"ALTER TABLE: t", "change c type VARCHAR(20,-1) not null"}},
        {"sqlserver", "ALTER TABLE t ALTER COLUMN c DECIMAL(12, 2)", {"ALTER TABLE: t", "change c type DECIMAL(12,2)"}},
        {"db2", "ALTER TABLE t ALTER COLUMN c SET DATA TYPE DECIMAL(12,2) ALTER COLUMN c SET NOT NULL",
         {"ALTER TABLE: t", "change c type DECIMAL(12,2)", "change c not null"}},
        {"unknown", "ALTER TABLE t ALTER COLUMN c TYPE bigint USING c::bigint, ALTER d DROP NOT NULL",
         {"ALTER TABLE: t", "change c type bigint(-1,-1)", "change d null"}},
        {"db2", "ALTER TABLE t ALTER COLUMN c SET WITH DEFAULT CURRENT TIMESTAMP",
         {"ALTER TABLE: t", "change c default CURRENT TIMESTAMP"}},
        {"db2", "ALTER TABLE t ALTER COLUMN c DROP DEFAULT", {"ALTER TABLE: t", "change c drop default"}},
        {"oracle", "ALTER TABLE t MODIFY (c NUMBER(12) DEFAULT 0 NOT NULL, d NULL)",
         {"ALTER TABLE: t", "change c type NUMBER(12,-1) not null default 0", "change d null"}},
        {"oracle", "ALTER TABLE t MODIFY c DEFAULT NULL", {"ALTER TABLE: t", "change c drop default"}},
        {"unknown", "ALTER TABLE t CHANGE COLUMN a b INT NOT NULL",
         {"ALTER TABLE: t", "change a to b type INT(-1,-1) not null"}},
        {"unknown", "ALTER TABLE t RENAME TO u", {"ALTER TABLE: t", "rename to u"}},
        {"oracle", "ALTER TABLE t RENAME COLUMN a TO b", {"ALTER TABLE: t", "change a to b"}},
        {"unknown", "ALTER TABLE t ADD x INT, DROP COLUMN y", {"ALTER TABLE: t", "add x INT", "drop column y"}},
        {"unknown", "ALTER TABLE t ADD COLUMN x INT, ADD COLUMN y INT", {"ALTER TABLE: t", "add x INT", "add y INT"}},
    });
}

TEST(DropStatements, NameWhatTheyDropWithTheirKind) {
    ExpectParsed({
        {"unknown", "DROP TABLE hr.emp CASCADE CONSTRAINTS PURGE", {"DROP TABLE: table hr.emp CASCADE"}},
        {"unknown", "DROP TABLE IF EXISTS a, b", {"DROP TABLE: table a, b"}},
        {"unknown", "DROP INDEX ix ON dbo.t", {"DROP INDEX: index ix ON dbo.t"}},
        {"unknown", "DROP INDEX t.ix", {"DROP INDEX: index t.ix"}},
        {"unknown", "DROP VIEW v", {"DROP VIEW: view v"}},
        {"unknown", "DROP PROCEDURE dbo.p", {"DROP PROCEDURE: procedure dbo.p"}},
        {"unknown", "DROP FUNCTION f(INTEGER), g", {"DROP FUNCTION: function f, g"}},
        {"unknown", "DROP TRIGGER trg", {"DROP TRIGGER: trigger trg"}},
        {"unknown", "DROP PACKAGE BODY pk", {"DROP PACKAGE: package body pk"}},
        {"unknown", "DROP PACKAGE pk", {"DROP PACKAGE: package pk"}},
        {"unknown", "DROP SEQUENCE s", {"DROP SEQUENCE"}},
    });
}

// ---------------------------------------------------------------------------
// Views and code: their name, kind and whole text

TEST(ViewsAndCode, NameKindTriggerTableAndWholeText) {
    ExpectParsed({
        {"unknown", "CREATE OR REPLACE FORCE VIEW hr.v_emp AS\n  SELECT id, name FROM emp;",
         {"CREATE VIEW: hr.v_emp", "CREATE OR REPLACE FORCE VIEW hr.v_emp AS\n  SELECT id, name FROM emp"}},
        {"sqlserver",
         "CREATE PROCEDURE dbo.usp_touch @id int AS\n"
         "BEGIN\n"
         "  UPDATE t SET touched = 1 WHERE id = @id\n"
         "END\n"
         "GO\n"
         "CREATE FUNCTION dbo.fn_one () RETURNS int AS BEGIN RETURN 1 END\n"
         "GO\n",
         {"CREATE PROCEDURE: procedure dbo.usp_touch",
          "CREATE PROCEDURE dbo.usp_touch @id int AS\nBEGIN\n  UPDATE t SET touched = 1 WHERE id = @id\nEND",
          "CREATE FUNCTION: function dbo.fn_one", "CREATE FUNCTION dbo.fn_one () RETURNS int AS BEGIN RETURN 1 END"},
         {1, 6}},
        {"oracle",
         "CREATE OR REPLACE PACKAGE hr.pay AS\n"
         "  PROCEDURE raise(p NUMBER);\n"
         "END pay;\n"
         "/\n"
         "CREATE OR REPLACE PACKAGE BODY hr.pay AS\n"
         "  PROCEDURE raise(p NUMBER) IS BEGIN NULL; END;\n"
         "END pay;\n"
         "/\n",
         {"CREATE PACKAGE: package hr.pay",
          "CREATE OR REPLACE PACKAGE hr.pay AS\n  PROCEDURE raise(p NUMBER);\nEND pay;",
          "CREATE PACKAGE: package body hr.pay",
          "CREATE OR REPLACE PACKAGE BODY hr.pay AS\n  PROCEDURE raise(p NUMBER) IS BEGIN NULL; END;\nEND pay;"},
         {1, 5}},
        {"oracle",
         "CREATE OR REPLACE TRIGGER hr.trg_b BEFORE UPDATE OF salary ON hr.emp\n"
         "REFERENCING NEW AS n FOR EACH ROW\n"
         "BEGIN :n.changed := SYSDATE; END;\n"
         "/\n",
         {"CREATE TRIGGER: trigger hr.trg_b BEFORE ON hr.emp",
          "CREATE OR REPLACE TRIGGER hr.trg_b BEFORE UPDATE OF salary ON hr.emp\nREFERENCING NEW AS n FOR EACH ROW\n"
          "BEGIN :n.changed := SYSDATE; END;"}},
        {"sqlserver", "CREATE TRIGGER trg_a ON dbo.orders AFTER INSERT, UPDATE AS\nBEGIN SELECT 1 END\nGO\n",
         {"CREATE TRIGGER: trigger trg_a AFTER ON dbo.orders",
          "CREATE TRIGGER trg_a ON dbo.orders AFTER INSERT, UPDATE AS\nBEGIN SELECT 1 END"}},
        {"sqlserver", "CREATE TRIGGER trg_f ON orders FOR INSERT AS\nSELECT 1\nGO\n",
         {"CREATE TRIGGER: trigger trg_f AFTER ON orders", "CREATE TRIGGER trg_f ON orders FOR INSERT AS\nSELECT 1"}},
        {"sqlserver", "CREATE TRIGGER trg_i ON v_orders INSTEAD OF DELETE AS\nBEGIN SELECT 1 END\nGO\n",
         {"CREATE TRIGGER: trigger trg_i INSTEAD OF ON v_orders",
          "CREATE TRIGGER trg_i ON v_orders INSTEAD OF DELETE AS\nBEGIN SELECT 1 END"}},
        {"db2",
         "CREATE TRIGGER trg_n NO CASCADE BEFORE INSERT ON app.items REFERENCING NEW AS n\n"
         "FOR EACH ROW MODE DB2SQL SET n.created = CURRENT TIMESTAMP;",
         {"CREATE TRIGGER: trigger trg_n BEFORE ON app.items",
          "CREATE TRIGGER trg_n NO CASCADE BEFORE INSERT ON app.items REFERENCING NEW AS n\n"
          "FOR EACH ROW MODE DB2SQL SET n.created = CURRENT TIMESTAMP"}},
    });
}

// ---------------------------------------------------------------------------
// Storage objects, defaults, rules, types, bindings and comments

TEST(CatalogObjects, StorageObjectsDefaultsRulesUserTypesBindingsAndComments) {
    ExpectParsed({
        {"db2zos",
         "CREATE STOGROUP SG1 VOLUMES ('*') VCAT CAT1;\n"
         "CREATE DATABASE DB1 STOGROUP SG1 BUFFERPOOL BP1;\n"
         "CREATE TABLESPACE TS1 IN DB1 USING STOGROUP SG1 PRIQTY 720;\n"
         "CREATE BUFFERPOOL BP8 SIZE 1000 PAGESIZE 8K;\n"
         "CREATE LOB TABLESPACE LTS1 IN DB1;\n"
         "CREATE TABLESPACE TS2;\n",
         {"CREATE STOGROUP: storage group SG1", "CREATE STOGROUP SG1 VOLUMES ('*') VCAT CAT1",
          "CREATE DATABASE: database DB1", "CREATE DATABASE DB1 STOGROUP SG1 BUFFERPOOL BP1",
          "CREATE TABLESPACE: tablespace TS1 IN DB1", "CREATE TABLESPACE TS1 IN DB1 USING STOGROUP SG1 PRIQTY 720",
          "CREATE BUFFERPOOL: bufferpool BP8", "CREATE BUFFERPOOL BP8 SIZE 1000 PAGESIZE 8K",
          "CREATE LOB: tablespace LTS1 IN DB1", "CREATE LOB TABLESPACE LTS1 IN DB1",
          "CREATE TABLESPACE: tablespace TS2", "CREATE TABLESPACE TS2"}},
        // Defaults and rules keep their name and the text after AS.
        {"sqlserver", "CREATE DEFAULT dbo.df_zero AS 0\nGO\nCREATE RULE r_range AS @value BETWEEN 1 AND 10\nGO\n",
         {"CREATE DEFAULT: default df_zero AS 0", "CREATE RULE: rule r_range AS @value BETWEEN 1 AND 10"}},
        // A user type from or as a base type, without its brackets.
        {"sqlserver", "CREATE TYPE dbo.ssn FROM varchar(11) NOT NULL", {"CREATE TYPE: type ssn FROM varchar(11)"}},
        {"sqlserver", "CREATE TYPE [dbo].[flag] FROM [tinyint] NULL", {"CREATE TYPE: type flag FROM tinyint"}},
        {"unknown", "CREATE DISTINCT TYPE money AS DECIMAL(9, 2) WITH COMPARISONS;",
         {"CREATE TYPE: type money FROM DECIMAL(9, 2)"}},
        {"unknown", "CREATE TYPE ratio AS DOUBLE PRECISION;", {"CREATE TYPE: type ratio FROM DOUBLE PRECISION"}},
        // A table type is no datatype; an object type lists its attributes as columns.
        {"sqlserver", "CREATE TYPE dbo.lines AS TABLE (id INT, qty INT)", {"CREATE TYPE"}},
        {"oracle", "CREATE OR REPLACE TYPE address_t AS OBJECT (street VARCHAR2(40), zip NUMBER(5) NOT NULL);",
         {"CREATE TYPE: object type address_t", "street VARCHAR2(40)", "zip NUMBER(5) NOT NULL"}},
        // Names are handed on as written; the model strips their decorations.
        {"sqlserver", "EXEC sp_addtype ssn, 'varchar(11)', 'NOT NULL'",
         {"EXECUTE SP_ADDTYPE: type ssn FROM varchar(11)"}},
        {"sqlserver", "EXEC dbo.sp_addtype @typename = N'phone', @phystype = N'varchar(20)', @nulltype = N'NULL'",
         {"EXECUTE SP_ADDTYPE: type N'phone' FROM varchar(20)"}},
        {"sqlserver", "sp_addtype birthday, datetime, 'NULL'", {"EXECUTE SP_ADDTYPE: type birthday FROM datetime"}},
        {"sqlserver",
         "EXEC sp_bindrule r_range, 'dbo.items.qty'\n"
         "EXECUTE sp_bindefault @defname = N'df_zero', @objname = N'[dbo].[qty_t]'\n",
         {"EXECUTE SP_BINDRULE: rule r_range TO 'dbo.items.qty'",
          "EXECUTE SP_BINDEFAULT: default N'df_zero' TO N'[dbo].[qty_t]'"}},
        // Other procedures, and too few arguments, declare nothing.
        {"sqlserver", "EXEC sp_addlogin 'bob', 'secret'", {"EXECUTE SP_ADDLOGIN"}},
        {"sqlserver", "EXEC sp_addtype lonely", {"EXECUTE SP_ADDTYPE"}},
        {"unknown",
         "COMMENT ON TABLE hr.emp IS 'People we pay';\n"
         "COMMENT ON COLUMN hr.emp.salary IS 'Monthly, in the employee''s currency';\n"
         "COMMENT ON COLUMN emp.bonus IS 'Yearly';\n",
         {"COMMENT ON: table hr.emp IS 'People we pay'",
          "COMMENT ON: table hr.emp column salary IS 'Monthly, in the employee's currency'",
          "COMMENT ON: table emp column bonus IS 'Yearly'"}},
    });
}

// ---------------------------------------------------------------------------
// Line commands, statements the model has no place for, and how a script is
// cut into statements

TEST(Statements, LineCommandsAndSkippedStatementsGiveTheirKindAndFirstLine) {
    ExpectParsed({
        // SET CURRENT SQLID and SET SCHEMA name the default owner.
        {"db2zos",
         "SET CURRENT SQLID = 'Prod';\n"
         "SET CURRENT SQLID = prod2;\n"
         "SET SCHEMA test\n"
         "SET CURRENT SCHEMA \"Mixed\"\n"
         "CREATE TABLE t (id INT);\n",
         {"SET: owner Prod", "SET: owner PROD2", "SET: owner TEST", "SET: owner Mixed", "CREATE TABLE: t", "id INT"},
         {1, 2, 3, 4, 5}},
        {"oracle", "SET ECHO ON\nCONNECT scott/tiger@orcl\nSPOOL create.log\nCREATE TABLE t (id NUMBER);\nSPOOL OFF\n",
         {"SET", "CONNECT", "SPOOL", "CREATE TABLE: t", "id NUMBER", "SPOOL"},
         {1, 2, 3, 4, 5}},
        {"unknown",
         "-- set up\n"
         "\n"
         "GRANT SELECT\n"
         "  ON emp TO clerk;\n"
         "DROP SEQUENCE old_s;\n"
         "CREATE SEQUENCE s1;\n"
         "/* done */ COMMIT;\n",
         {"GRANT", "DROP SEQUENCE", "CREATE SEQUENCE", "COMMIT"},
         {3, 5, 6, 7}},
    });
}

TEST(Statements, TerminatorsOfEachStyleOfScript) {
    ExpectParsed({
        // T-SQL without GO or semicolons: one declaration per statement, and
        // statements end where the next starts even when some have semicolons.
        {"sqlserver",
         "CREATE TABLE a (id int NOT NULL)\n"
         "CREATE TABLE b (id int,\n"
         "  a_id int)\n"
         "CREATE INDEX ix_b ON b (a_id)\n"
         "ALTER TABLE b ADD CONSTRAINT fk_b FOREIGN KEY (a_id) REFERENCES a (id)\n",
         {"CREATE TABLE: a", "id int NOT NULL", "CREATE TABLE: b", "id int", "a_id int",
          "CREATE INDEX: ix_b ON b (a_id)",
          "ALTER TABLE: b", "add CONSTRAINT fk_b FOREIGN KEY (a_id) REFERENCES a (id)"},
         {1, 2, 4, 5}},
        {"sqlserver", "CREATE TABLE a (id int);\nCREATE TABLE b (id int)\nCREATE TABLE c (id int)\n",
         {"CREATE TABLE: a", "id int", "CREATE TABLE: b", "id int", "CREATE TABLE: c", "id int"}},
        // DB2 scripts ending statements with @.
        {"db2",
         "CREATE TABLE app.items (id INT NOT NULL, qty INT)@\n"
         "CREATE TRIGGER app.trg AFTER INSERT ON app.items\n"
         "FOR EACH ROW\n"
         "BEGIN ATOMIC\n"
         "  UPDATE app.stats SET n = n + 1;\n"
         "  UPDATE app.stats SET m = m + 1;\n"
         "END@\n"
         "CREATE INDEX app.ix_qty ON app.items (qty)@\n",
         {"CREATE TABLE: app.items", "id INT NOT NULL", "qty INT", "CREATE TRIGGER: trigger app.trg AFTER ON app.items",
          "CREATE TRIGGER app.trg AFTER INSERT ON app.items\nFOR EACH ROW\nBEGIN ATOMIC\n"
          "  UPDATE app.stats SET n = n + 1;\n  UPDATE app.stats SET m = m + 1;\nEND",
          "CREATE INDEX: ix_qty ON app.items (qty)"},
         {1, 2, 8}},
        // An announced terminator holds from its line.
        {"db2",
         "CREATE TABLE t (id INT);\n"
         "--#SET TERMINATOR @\n"
         "CREATE PROCEDURE p () BEGIN DECLARE x INT; SET x = 1; END@\n"
         "--#SET TERMINATOR ;\n"
         "CREATE INDEX ix ON t (id);\n",
         {"CREATE TABLE: t", "id INT", "CREATE PROCEDURE: procedure p",
          "CREATE PROCEDURE p () BEGIN DECLARE x INT; SET x = 1; END", "CREATE INDEX: ix ON t (id)"}},
    });
}

// The words a fuzzer splices into scripts come from every table the dialect
// layer reads scripts by, once each, as words are compared: in upper case.
TEST(Statements, TheDialectKeywordsHoldEveryTablesWordsOnce) {
    const std::vector<std::string> words = DialectKeywords();
    const std::set<std::string> once(words.begin(), words.end());
    EXPECT_EQ(once.size(), words.size());
    for (const std::string& word : words) EXPECT_EQ(word, UpperAscii(word));
    // A reserved word, a client command, a T-SQL statement start, a table,
    // an index and a storage option, datatype names of T-SQL and Oracle.
    for (const char* word : {"ROWNUM", "SPOOL", "RAISERROR", "PCTFREE", "BUFFERPOOL", "MAXEXTENTS", "UNIQUEIDENTIFIER",
                             "VARCHAR2"})
        EXPECT_EQ(once.count(word), 1u) << word;
}

}  // namespace
