// The DDL parser on its own: small scripts in, the declarations it hands the
// importer out. No model is involved, so every expectation here is about what
// the parser read from the text: names, types, constraints, physical options,
// and how a script is cut into statements.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "DdlParser.h"

namespace {

// The model builder's property codes the parser hands on. They are spelled
// out here rather than taken from the parser's tables so that a code moved to
// the wrong row shows up as a failure.
constexpr int kIdentity = 82, kGenerated = 84, kForBitData = 97;
constexpr int kOnDeleteCascade = 77, kOnDeleteRestrict = 78, kOnDeleteSetNull = 79, kOnUpdateCascade = 80,
              kOnUpdateRestrict = 81;
constexpr int kInitial = 16, kNext = 17, kFreeLists = 18, kFreeListGroups = 19, kMinExtents = 20, kMaxExtents = 21,
              kPctFree = 22, kPctUsed = 23, kPctIncrease = 24, kIniTrans = 25, kBufferPool = 27, kLogging = 28,
              kCache = 30, kStorageGroup = 31, kCompress = 35, kReverse = 38, kCluster = 40, kClose = 49,
              kPieceSize = 52, kGbpCache = 53, kParallel = 55, kRowMovement = 33;
constexpr long kUnbounded = 2147483647;

CDialect Dialect(const char* platform) {
    const CPlatformInfo* info = FindPlatformByName(platform);
    if (!info) throw std::runtime_error(std::string("no platform named ") + platform);
    return DialectOfPlatform(info->code, false);
}

std::vector<CStatementDecl> Parse(const std::string& sql, const char* platform = "unknown") {
    return ParseScript(sql, Dialect(platform));
}

CStatementDecl One(const std::string& sql, const char* platform = "unknown") {
    std::vector<CStatementDecl> statements = Parse(sql, platform);
    if (statements.size() != 1)
        throw std::runtime_error("expected one statement, got " + std::to_string(statements.size()));
    return statements.front();
}

// The declaration of a statement as the kind the test expects; a failure
// (thrown, so reported by the test) when the parser declared something else.
template <class T>
T As(const CStatementDecl& statement) {
    if (const T* declaration = std::get_if<T>(&statement.declaration)) return *declaration;
    throw std::runtime_error("statement '" + statement.kind + "' declared alternative " +
                             std::to_string(statement.declaration.index()));
}

template <class T>
T Declared(const std::string& sql, const char* platform = "unknown") {
    return As<T>(One(sql, platform));
}

const CColumnDecl& ColumnAt(const CTableDecl& table, std::size_t at) {
    if (at >= table.elements.size()) throw std::runtime_error("no element " + std::to_string(at));
    if (const auto* column = std::get_if<CColumnDecl>(&table.elements[at])) return *column;
    throw std::runtime_error("element " + std::to_string(at) + " is a constraint");
}

const CConstraintDecl& ConstraintAt(const CTableDecl& table, std::size_t at) {
    if (at >= table.elements.size()) throw std::runtime_error("no element " + std::to_string(at));
    if (const auto* constraint = std::get_if<CConstraintDecl>(&table.elements[at])) return *constraint;
    throw std::runtime_error("element " + std::to_string(at) + " is a column");
}

CColumnDecl SingleColumn(const std::string& columnText) {
    const CTableDecl table = Declared<CTableDecl>("CREATE TABLE t (" + columnText + ");");
    if (table.elements.size() != 1) throw std::runtime_error("expected one element");
    return ColumnAt(table, 0);
}

std::vector<std::string> Names(const std::vector<CTableElement>& elements) {
    std::vector<std::string> names;
    for (const CTableElement& element : elements) {
        if (const auto* column = std::get_if<CColumnDecl>(&element))
            names.push_back(column->name);
        else
            names.push_back("constraint " + std::get<CConstraintDecl>(element).name);
    }
    return names;
}

// Options as "code=number" or "code='text'", so a whole list compares at once
// and a number is never mistaken for a text.
std::vector<std::string> Describe(const COptionList& options) {
    std::vector<std::string> out;
    for (const COptionValue& option : options)
        out.push_back(std::to_string(option.code) + "=" +
                      (option.isText ? "'" + option.text + "'" : std::to_string(option.number)));
    return out;
}

std::string Num(int code, long number) { return std::to_string(code) + "=" + std::to_string(number); }
std::string Text(int code, const std::string& text) { return std::to_string(code) + "='" + text + "'"; }

using Strings = std::vector<std::string>;
using Properties = std::vector<std::pair<int, long>>;

// ---------------------------------------------------------------------------
// CREATE TABLE: names and columns

TEST(CreateTableColumns, NamesKeepTheirQualificationWithoutQuotes) {
    const CTableDecl quoted = Declared<CTableDecl>("CREATE TABLE \"Sales\".[Order Lines] (id INT);");
    EXPECT_EQ(quoted.name.parts, (Strings{"Sales", "Order Lines"}));
    EXPECT_EQ(quoted.name.Owner(), "Sales");

    const CTableDecl withDatabase = Declared<CTableDecl>("CREATE TABLE IF NOT EXISTS shop.dbo.item (id INT);");
    EXPECT_EQ(withDatabase.name.parts, (Strings{"shop", "dbo", "item"}));
    EXPECT_EQ(withDatabase.name.Owner(), "dbo");

    const CTableDecl plain = Declared<CTableDecl>("CREATE GLOBAL TEMPORARY TABLE scratch (id INT);");
    EXPECT_EQ(plain.name.parts, (Strings{"scratch"}));
    EXPECT_EQ(plain.name.Owner(), "");
}

TEST(CreateTableColumns, MultiWordTypesAreOneTypeAndLeaveWhatFollows) {
    const CTableDecl table = Declared<CTableDecl>(
        "CREATE TABLE kinds (\n"
        "  a DOUBLE PRECISION NOT NULL,\n"
        "  b CHARACTER VARYING(40) NULL,\n"
        "  c LONG RAW,\n"
        "  d CHAR LARGE OBJECT,\n"
        "  e NCHAR LARGE OBJECT,\n"
        "  f BINARY LARGE OBJECT,\n"
        "  g NATIONAL CHARACTER VARYING(10),\n"
        "  h LONG VARCHAR NOT NULL\n"
        ");");
    ASSERT_EQ(table.elements.size(), 8u);
    const Strings expected = {"DOUBLE PRECISION", "CHARACTER VARYING", "LONG RAW", "CLOB",
                              "NCLOB", "BLOB", "NATIONAL CHARACTER VARYING", "LONG VARCHAR"};
    for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(ColumnAt(table, i).datatype, expected[i]) << i;
    EXPECT_EQ(ColumnAt(table, 0).nullOption, 0);
    EXPECT_EQ(ColumnAt(table, 1).width, 40);
    EXPECT_EQ(ColumnAt(table, 1).nullOption, 1);
    EXPECT_EQ(ColumnAt(table, 2).width, -1);
    EXPECT_EQ(ColumnAt(table, 6).width, 10);
    EXPECT_EQ(ColumnAt(table, 7).nullOption, 0);
}

TEST(CreateTableColumns, WidthScaleAndMax) {
    const CTableDecl table = Declared<CTableDecl>(
        "CREATE TABLE sizes (a DECIMAL(10, 2), b VARCHAR2(20 CHAR), c NVARCHAR(MAX), d varbinary(max),"
        " e INT, f NUMBER(*, 0), g CHAR(1))");
    ASSERT_EQ(table.elements.size(), 7u);
    const std::vector<std::pair<long, long>> expected = {{10, 2}, {20, -1}, {kUnbounded, -1}, {kUnbounded, -1},
                                                         {-1, -1}, {-1, 0},  {1, -1}};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(ColumnAt(table, i).width, expected[i].first) << ColumnAt(table, i).name;
        EXPECT_EQ(ColumnAt(table, i).scale, expected[i].second) << ColumnAt(table, i).name;
    }
    EXPECT_EQ(ColumnAt(table, 3).datatype, "varbinary");
}

TEST(CreateTableColumns, MultiWordTypesAreSpelledInUpperCaseWhateverTheScriptSays) {
    const CTableDecl table = Declared<CTableDecl>("create table t (a double precision, b character varying(5), c int)");
    ASSERT_EQ(table.elements.size(), 3u);
    EXPECT_EQ(ColumnAt(table, 0).datatype, "DOUBLE PRECISION");
    EXPECT_EQ(ColumnAt(table, 1).datatype, "CHARACTER VARYING");
    EXPECT_EQ(ColumnAt(table, 2).datatype, "int");  // one word stays as written
}

TEST(CreateTableColumns, LobLengthsWithAUnitAreCountedInThatUnit) {
    // DB2 spells large object lengths with K, M or G: 1M is 1048576, not 1.
    const CTableDecl table = Declared<CTableDecl>("CREATE TABLE docs (body CLOB(1M), image BLOB(64K))");
    ASSERT_EQ(table.elements.size(), 2u);
    EXPECT_EQ(ColumnAt(table, 0).width, 1048576);
    EXPECT_EQ(ColumnAt(table, 1).width, 65536);
}

TEST(CreateTableColumns, ColumnsWithoutATypeKeepAnEmptyType) {
    const CTableDecl table = Declared<CTableDecl>("CREATE TABLE loose (a, b DEFAULT 1, c INTEGER)");
    ASSERT_EQ(table.elements.size(), 3u);
    EXPECT_EQ(ColumnAt(table, 0).datatype, "");
    EXPECT_EQ(ColumnAt(table, 1).datatype, "");
    EXPECT_EQ(ColumnAt(table, 1).defaultText, "1");
    EXPECT_EQ(ColumnAt(table, 2).datatype, "INTEGER");
}

TEST(CreateTableColumns, NullabilityIsNotNullNullOrUnspecified) {
    const CTableDecl table = Declared<CTableDecl>(
        "CREATE TABLE n (a INT NOT NULL, b INT NULL, c INT, d NUMBER CONSTRAINT nn_d NOT NULL ENABLE)");
    ASSERT_EQ(table.elements.size(), 4u);
    EXPECT_EQ(ColumnAt(table, 0).nullOption, 0);
    EXPECT_EQ(ColumnAt(table, 1).nullOption, 1);
    EXPECT_EQ(ColumnAt(table, 2).nullOption, -1);
    EXPECT_EQ(ColumnAt(table, 3).nullOption, 0);
    EXPECT_TRUE(ColumnAt(table, 3).constraints.empty());  // a named NOT NULL is no constraint of the model
}

TEST(CreateTableColumns, DefaultIsKeptAsWrittenUpToWhatFollowsIt) {
    const CTableDecl table = Declared<CTableDecl>(
        "CREATE TABLE d (\n"
        "  a VARCHAR(10) DEFAULT 'N/A, none' NOT NULL,\n"
        "  b DATETIME DEFAULT (getdate()),\n"
        "  c INT DEFAULT 1 +  2 CHECK (c > 0),\n"
        "  e TIMESTAMP NOT NULL WITH DEFAULT CURRENT TIMESTAMP,\n"
        "  f INT DEFAULT coalesce(1, 2) UNIQUE,\n"
        "  g VARCHAR(5) DEFAULT 'x' COLLATE Latin1_General_CI_AS,\n"
        "  h INT DEFAULT -1)");
    ASSERT_EQ(table.elements.size(), 7u);
    const Strings expected = {"'N/A, none'", "(getdate())", "1 +  2", "CURRENT TIMESTAMP", "coalesce(1, 2)", "'x'",
                              "-1"};
    for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(ColumnAt(table, i).defaultText, expected[i]) << i;
    // What stopped the default was read as itself.
    EXPECT_EQ(ColumnAt(table, 0).nullOption, 0);
    ASSERT_EQ(ColumnAt(table, 2).constraints.size(), 1u);
    EXPECT_EQ(ColumnAt(table, 2).constraints[0].checkText, "c > 0");
    EXPECT_EQ(ColumnAt(table, 3).nullOption, 0);
    ASSERT_EQ(ColumnAt(table, 4).constraints.size(), 1u);
    EXPECT_EQ(ColumnAt(table, 4).constraints[0].kind, EConstraintKind::Unique);
    EXPECT_EQ(ColumnAt(table, 6).defaultText, "-1");
}

TEST(CreateTableColumns, IdentityAndGeneratedIdentitySetTheirProperties) {
    const CColumnDecl identity = SingleColumn("id INT IDENTITY(100, 5) NOT NULL");
    EXPECT_EQ(identity.properties, (Properties{{kIdentity, 0}}));
    EXPECT_EQ(identity.nullOption, 0);  // the seed and step are not read as anything else
    EXPECT_EQ(identity.width, -1);

    const CColumnDecl always =
        SingleColumn("id BIGINT GENERATED ALWAYS AS IDENTITY (START WITH 1 INCREMENT BY 1) NOT NULL");
    EXPECT_EQ(always.properties, (Properties{{kIdentity, 0}, {kGenerated, 1}}));
    EXPECT_EQ(always.nullOption, 0);
    EXPECT_EQ(always.generatedExpression, "");

    const CColumnDecl byDefault = SingleColumn("id INTEGER GENERATED BY DEFAULT AS IDENTITY");
    EXPECT_EQ(byDefault.properties, (Properties{{kIdentity, 0}, {kGenerated, 0}}));
}

TEST(CreateTableColumns, GeneratedExpressionIsKeptWithoutItsParentheses) {
    const CColumnDecl column = SingleColumn("total DECIMAL(10, 2) GENERATED ALWAYS AS (price * (1 + tax)) NOT NULL");
    EXPECT_EQ(column.datatype, "DECIMAL");
    EXPECT_EQ(column.generatedExpression, "price * (1 + tax)");
    EXPECT_TRUE(column.properties.empty());  // not an identity
    EXPECT_EQ(column.nullOption, 0);
}

TEST(CreateTableColumns, DefaultNullIsADefaultAndLeavesTheNullabilityUnsaid) {
    const CTableDecl table = Declared<CTableDecl>("CREATE TABLE d (a INT DEFAULT NULL, b INT DEFAULT 0 NULL)");
    ASSERT_EQ(table.elements.size(), 2u);
    EXPECT_EQ(ColumnAt(table, 0).defaultText, "NULL");
    EXPECT_EQ(ColumnAt(table, 0).nullOption, -1);
    EXPECT_EQ(ColumnAt(table, 1).defaultText, "0");
    EXPECT_EQ(ColumnAt(table, 1).nullOption, 1);
}

TEST(CreateTableColumns, ForBitDataIsAPropertyNotADefaultEnd) {
    const CColumnDecl column = SingleColumn("token CHAR(16) FOR BIT DATA NOT NULL");
    EXPECT_EQ(column.datatype, "CHAR");
    EXPECT_EQ(column.width, 16);
    EXPECT_EQ(column.properties, (Properties{{kForBitData, 0}}));
    EXPECT_EQ(column.nullOption, 0);
}

TEST(CreateTableColumns, ComputedColumnIsSkippedWithAWarning) {
    const CStatementDecl statement =
        One("CREATE TABLE lines (price MONEY, qty INT, total AS (price * qty) PERSISTED, note VARCHAR(10))",
            "sqlserver");
    const CTableDecl table = As<CTableDecl>(statement);
    EXPECT_EQ(Names(table.elements), (Strings{"price", "qty", "note"}));
    EXPECT_EQ(statement.warnings, (Strings{"computed column total skipped"}));
    EXPECT_EQ(ColumnAt(table, 2).width, 10);
}

// ---------------------------------------------------------------------------
// CREATE TABLE: a column's own constraints

TEST(ColumnConstraints, KeysComeFirstThenChecksThenTheReference) {
    const CColumnDecl column =
        SingleColumn("id INT REFERENCES parent (pid) CHECK (id > 0) NOT NULL CHECK (id < 99) PRIMARY KEY");
    ASSERT_EQ(column.constraints.size(), 4u);
    EXPECT_EQ(column.constraints[0].kind, EConstraintKind::PrimaryKey);
    EXPECT_EQ(column.constraints[0].columns, (Strings{"id"}));
    EXPECT_EQ(column.constraints[1].kind, EConstraintKind::Check);
    EXPECT_EQ(column.constraints[1].checkText, "id > 0");
    EXPECT_EQ(column.constraints[1].column, "id");
    EXPECT_EQ(column.constraints[2].checkText, "id < 99");
    EXPECT_EQ(column.constraints[3].kind, EConstraintKind::ForeignKey);
    EXPECT_EQ(column.nullOption, 0);
}

TEST(ColumnConstraints, UniqueAndPrimaryKeyKeepTheOrderWritten) {
    const CColumnDecl column = SingleColumn("code INT CHECK (code <> 0) UNIQUE PRIMARY KEY");
    ASSERT_EQ(column.constraints.size(), 3u);
    EXPECT_EQ(column.constraints[0].kind, EConstraintKind::Unique);
    EXPECT_EQ(column.constraints[1].kind, EConstraintKind::PrimaryKey);
    EXPECT_EQ(column.constraints[2].kind, EConstraintKind::Check);
}

// T-SQL clusters a table on a unique constraint as well as on its primary
// key, written on the column or for the table alike.
TEST(ColumnConstraints, ClusteredIsKeptForPrimaryAndUniqueColumnsAlike) {
    const CTableDecl table = Declared<CTableDecl>(
        "CREATE TABLE c (a INT PRIMARY KEY CLUSTERED, b INT UNIQUE CLUSTERED, c INT PRIMARY KEY NONCLUSTERED)",
        "sqlserver");
    ASSERT_EQ(table.elements.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) ASSERT_EQ(ColumnAt(table, i).constraints.size(), 1u) << i;
    EXPECT_TRUE(ColumnAt(table, 0).constraints[0].clustered);
    EXPECT_EQ(ColumnAt(table, 1).constraints[0].kind, EConstraintKind::Unique);
    EXPECT_TRUE(ColumnAt(table, 1).constraints[0].clustered);
    EXPECT_FALSE(ColumnAt(table, 2).constraints[0].clustered);
}

TEST(ColumnConstraints, ReferenceNamesItsParentColumnsAndActions) {
    const CColumnDecl column =
        SingleColumn("owner_id INT CONSTRAINT fk_owner REFERENCES hr.people (person_id) ON DELETE CASCADE");
    ASSERT_EQ(column.constraints.size(), 1u);
    const CForeignKeyDecl& reference = column.constraints[0].reference;
    EXPECT_EQ(column.constraints[0].kind, EConstraintKind::ForeignKey);
    EXPECT_EQ(reference.name, "fk_owner");
    EXPECT_EQ(reference.childColumns, (Strings{"owner_id"}));
    EXPECT_EQ(reference.parent.parts, (Strings{"hr", "people"}));
    EXPECT_EQ(reference.parentColumns, (Strings{"person_id"}));
    EXPECT_EQ(reference.onDelete, kOnDeleteCascade);
    EXPECT_EQ(reference.onUpdate, 0);

    const CColumnDecl toKey = SingleColumn("owner_id INT REFERENCES people");
    ASSERT_EQ(toKey.constraints.size(), 1u);
    EXPECT_TRUE(toKey.constraints[0].reference.parentColumns.empty());  // the parent's primary key
    EXPECT_EQ(toKey.constraints[0].reference.name, "");
}

TEST(ColumnConstraints, NamedConstraintsKeepTheirNames) {
    const CColumnDecl column = SingleColumn("qty INT CONSTRAINT pk_q PRIMARY KEY CONSTRAINT ck_q CHECK (qty > 0)");
    ASSERT_EQ(column.constraints.size(), 2u);
    EXPECT_EQ(column.constraints[0].name, "pk_q");
    EXPECT_EQ(column.constraints[1].name, "ck_q");
}

TEST(ColumnConstraints, ANamedNotNullNamesNothingAfterIt) {
    const CColumnDecl column = SingleColumn("code CHAR(2) CONSTRAINT nn_code NOT NULL UNIQUE");
    EXPECT_EQ(column.nullOption, 0);
    ASSERT_EQ(column.constraints.size(), 1u);
    EXPECT_EQ(column.constraints[0].kind, EConstraintKind::Unique);
    EXPECT_EQ(column.constraints[0].name, "");
}

TEST(ColumnConstraints, AConstraintNameBelongsToTheConstraintItPrecedesOnly) {
    // The UNIQUE is not named: the server names it, and two constraints
    // called ck_qty would clash.
    const CColumnDecl column = SingleColumn("qty INT CONSTRAINT ck_qty CHECK (qty > 0) UNIQUE");
    ASSERT_EQ(column.constraints.size(), 2u);
    EXPECT_EQ(column.constraints[0].kind, EConstraintKind::Unique);
    EXPECT_EQ(column.constraints[0].name, "");
    EXPECT_EQ(column.constraints[1].name, "ck_qty");
}

// ---------------------------------------------------------------------------
// CREATE TABLE: table constraints and other forms of the statement

TEST(TableConstraints, NamedUnnamedAndCompositeKeysAndChecks) {
    const CTableDecl table = Declared<CTableDecl>(
        "CREATE TABLE order_lines (\n"
        "  order_id INT NOT NULL,\n"
        "  CONSTRAINT pk_lines PRIMARY KEY CLUSTERED (order_id, line_no),\n"
        "  line_no INT NOT NULL,\n"
        "  UNIQUE (sku, order_id),\n"
        "  sku VARCHAR(20),\n"
        "  CHECK (line_no > 0 AND sku <> '')\n"
        ")");
    EXPECT_EQ(Names(table.elements),
              (Strings{"order_id", "constraint pk_lines", "line_no", "constraint ", "sku", "constraint "}));
    const CConstraintDecl& key = ConstraintAt(table, 1);
    EXPECT_EQ(key.kind, EConstraintKind::PrimaryKey);
    EXPECT_EQ(key.columns, (Strings{"order_id", "line_no"}));
    EXPECT_TRUE(key.clustered);
    const CConstraintDecl& unique = ConstraintAt(table, 3);
    EXPECT_EQ(unique.kind, EConstraintKind::Unique);
    EXPECT_EQ(unique.columns, (Strings{"sku", "order_id"}));
    EXPECT_FALSE(unique.clustered);
    const CConstraintDecl& check = ConstraintAt(table, 5);
    EXPECT_EQ(check.kind, EConstraintKind::Check);
    EXPECT_EQ(check.checkText, "line_no > 0 AND sku <> ''");
    EXPECT_EQ(check.column, "");
}

TEST(TableConstraints, ForeignKeysCarryTheirReferentialActions) {
    const CTableDecl table = Declared<CTableDecl>(
        "CREATE TABLE child (\n"
        "  a INT, b INT, c INT, d INT,\n"
        "  CONSTRAINT fk_ab FOREIGN KEY (a, b) REFERENCES sales.parent (pa, pb) ON DELETE CASCADE ON UPDATE CASCADE,\n"
        "  FOREIGN KEY (c) REFERENCES other ON DELETE SET NULL,\n"
        "  CONSTRAINT fk_d FOREIGN KEY (d) REFERENCES third (id) ON UPDATE RESTRICT ON DELETE RESTRICT,\n"
        "  CONSTRAINT fk_none FOREIGN KEY (a) REFERENCES fourth (id) ON DELETE NO ACTION ON UPDATE SET NULL\n"
        ")");
    ASSERT_EQ(table.elements.size(), 8u);
    const CConstraintDecl& cascade = ConstraintAt(table, 4);
    EXPECT_EQ(cascade.kind, EConstraintKind::ForeignKey);
    EXPECT_EQ(cascade.name, "fk_ab");
    EXPECT_EQ(cascade.reference.name, "fk_ab");
    EXPECT_EQ(cascade.reference.childColumns, (Strings{"a", "b"}));
    EXPECT_EQ(cascade.reference.parent.parts, (Strings{"sales", "parent"}));
    EXPECT_EQ(cascade.reference.parentColumns, (Strings{"pa", "pb"}));
    EXPECT_EQ(cascade.reference.onDelete, kOnDeleteCascade);
    EXPECT_EQ(cascade.reference.onUpdate, kOnUpdateCascade);

    const CForeignKeyDecl& setNull = ConstraintAt(table, 5).reference;
    EXPECT_EQ(setNull.name, "");
    EXPECT_TRUE(setNull.parentColumns.empty());
    EXPECT_EQ(setNull.onDelete, kOnDeleteSetNull);
    EXPECT_EQ(setNull.onUpdate, 0);

    const CForeignKeyDecl& restrict = ConstraintAt(table, 6).reference;
    EXPECT_EQ(restrict.onDelete, kOnDeleteRestrict);
    EXPECT_EQ(restrict.onUpdate, kOnUpdateRestrict);

    const CForeignKeyDecl& none = ConstraintAt(table, 7).reference;
    EXPECT_EQ(none.onDelete, 0);
    EXPECT_EQ(none.onUpdate, 0);  // the model has no SET NULL on update
}

TEST(CreateTableForms, ATableWithoutAColumnListIsNoDeclarationAndWarns) {
    const CStatementDecl statement = One("CREATE TABLE copy AS SELECT * FROM original;");
    EXPECT_TRUE(std::holds_alternative<std::monostate>(statement.declaration));
    EXPECT_EQ(statement.kind, "CREATE TABLE");
    EXPECT_EQ(statement.warnings, (Strings{"table definition without a column list skipped"}));
}

TEST(CreateTableForms, LikeNamesTheTableToCopy) {
    const CTableDecl table = Declared<CTableDecl>("CREATE TABLE hist.orders_2020 LIKE prod.orders;");
    EXPECT_EQ(table.name.parts, (Strings{"hist", "orders_2020"}));
    EXPECT_EQ(table.like.parts, (Strings{"prod", "orders"}));
    EXPECT_TRUE(table.elements.empty());
    EXPECT_EQ(table.ofType, "");
}

TEST(CreateTableForms, OfTypeTakesItsColumnsFromTheTypeAndKeepsItsOwnConstraints) {
    const CTableDecl withList = Declared<CTableDecl>(
        "CREATE TABLE people OF hr.person_t (CONSTRAINT pk_people PRIMARY KEY (id)) TABLESPACE users;");
    EXPECT_EQ(withList.ofType, "person_t");
    EXPECT_TRUE(withList.like.Empty());
    ASSERT_EQ(withList.elements.size(), 1u);
    EXPECT_EQ(ConstraintAt(withList, 0).name, "pk_people");
    EXPECT_EQ(ConstraintAt(withList, 0).columns, (Strings{"id"}));
    EXPECT_EQ(withList.storageSpace, "users");

    const CTableDecl bare = Declared<CTableDecl>("CREATE TABLE people OF person_t;");
    EXPECT_EQ(bare.ofType, "person_t");
    EXPECT_TRUE(bare.elements.empty());
}

// ---------------------------------------------------------------------------
// Physical options of tables, partitions and indexes

TEST(PhysicalOptions, TableOptionsAndItsStorageClauseInOrder) {
    const CTableDecl table = Declared<CTableDecl>(
        "CREATE TABLE t (id NUMBER)\n"
        "  PCTFREE 10 PCTUSED 40 INITRANS 2 NOLOGGING CACHE PARALLEL\n"
        "  STORAGE (INITIAL 64K NEXT 1M MINEXTENTS 1 MAXEXTENTS UNLIMITED PCTINCREASE 0\n"
        "           FREELISTS 2 FREELIST GROUPS 3 BUFFER_POOL keep)\n"
        "  TABLESPACE users;",
        "oracle");
    EXPECT_EQ(Describe(table.options),
              (Strings{Num(kPctFree, 10), Num(kPctUsed, 40), Num(kIniTrans, 2), Num(kLogging, 0), Num(kCache, 1),
                       Num(kParallel, 0), Num(kInitial, 64), Num(kNext, 1024), Num(kMinExtents, 1),
                       Num(kMaxExtents, kUnbounded), Num(kPctIncrease, 0), Num(kFreeLists, 2), Num(kFreeListGroups, 3),
                       Text(kBufferPool, "KEEP")}));
    EXPECT_EQ(table.storageSpace, "users");
}

TEST(PhysicalOptions, SizesAreInKilobytesAndParallelTakesItsDegree) {
    const CTableDecl table = Declared<CTableDecl>(
        "CREATE TABLE t (id NUMBER) LOGGING NOCACHE PARALLEL 4 STORAGE (INITIAL 2G NEXT 512K);", "oracle");
    EXPECT_EQ(Describe(table.options),
              (Strings{Num(kLogging, 1), Num(kCache, 0), Num(kParallel, 4), Num(kInitial, 2097152), Num(kNext, 512)}));
}

// Oracle's extent sizes without a unit are bytes; DB2's space quantities
// are kilobytes already.
TEST(PhysicalOptions, ExtentSizesWithoutAUnitAreBytesAndQuantitiesAreKilobytes) {
    const CTableDecl table =
        Declared<CTableDecl>("CREATE TABLE t (id NUMBER) STORAGE (INITIAL 65536 NEXT 100 MINEXTENTS 2);", "oracle");
    EXPECT_EQ(Describe(table.options), (Strings{Num(kInitial, 64), Num(kNext, 1), Num(kMinExtents, 2)}));
    const CIndexDecl index = Declared<CIndexDecl>("CREATE INDEX ix ON t (id) PRIQTY 720 SECQTY 48;", "db2zos");
    EXPECT_EQ(Describe(index.options), (Strings{Num(kInitial, 720), Num(kNext, 48)}));
}

TEST(PhysicalOptions, StorageSpaceFromTablespaceOnOrInWithQualifiedNamesJoinedByDots) {
    EXPECT_EQ(Declared<CTableDecl>("CREATE TABLE t (id INT) IN db1.ts1;").storageSpace, "db1.ts1");
    EXPECT_EQ(Declared<CTableDecl>("CREATE TABLE t (id INT) ON [PRIMARY]", "sqlserver").storageSpace, "PRIMARY");
    EXPECT_EQ(Declared<CTableDecl>("CREATE TABLE t (id INT) TABLESPACE \"Data\";").storageSpace, "Data");
    EXPECT_EQ(Declared<CTableDecl>("CREATE TABLE t (id INT);").storageSpace, "");
}

TEST(PhysicalOptions, TheTableStaysInItsOwnSpaceWhenIndexesAndLobsGoElsewhere) {
    // DB2 LUW: IN names the table's space; INDEX IN and LONG IN name others.
    const CTableDecl table =
        Declared<CTableDecl>("CREATE TABLE t (id INT, doc CLOB) IN data_ts INDEX IN idx_ts LONG IN lob_ts;", "db2");
    EXPECT_EQ(table.storageSpace, "data_ts");
}

TEST(PhysicalOptions, RangePartitionsWithLimitsSpacesAndOptions) {
    const CTableDecl table = Declared<CTableDecl>(
        "CREATE TABLE sales (id NUMBER, sold DATE, region VARCHAR2(2))\n"
        "TABLESPACE users\n"
        "PARTITION BY RANGE (sold, region) (\n"
        "  PARTITION p2019 VALUES LESS THAN (TO_DATE('2020-01-01', 'YYYY-MM-DD'), 'ZZ') TABLESPACE ts_2019\n"
        "    PCTFREE 5 NOLOGGING STORAGE (INITIAL 1M),\n"
        "  PARTITION p_rest VALUES LESS THAN (MAXVALUE, MAXVALUE) LOGGING\n"
        ") ENABLE ROW MOVEMENT;",
        "oracle");
    EXPECT_EQ(table.partitionColumns, (Strings{"sold", "region"}));
    ASSERT_EQ(table.partitions.size(), 2u);
    EXPECT_EQ(table.partitions[0].name, "p2019");
    EXPECT_EQ(table.partitions[0].limit, "TO_DATE('2020-01-01', 'YYYY-MM-DD'), 'ZZ'");
    EXPECT_EQ(table.partitions[0].storageSpace, "ts_2019");
    EXPECT_EQ(Describe(table.partitions[0].options), (Strings{Num(kPctFree, 5), Num(kLogging, 0), Num(kInitial, 1024)}));
    EXPECT_EQ(table.partitions[1].name, "p_rest");
    EXPECT_EQ(table.partitions[1].limit, "MAXVALUE, MAXVALUE");
    EXPECT_EQ(table.partitions[1].storageSpace, "");
    EXPECT_EQ(Describe(table.partitions[1].options), (Strings{Num(kLogging, 1)}));
    // The table's own space and options are not taken by its partitions.
    EXPECT_EQ(table.storageSpace, "users");
    EXPECT_EQ(Describe(table.options), (Strings{Num(kRowMovement, 1)}));
}

TEST(PhysicalOptions, ListPartitionsTakeTheirValues) {
    const CTableDecl table = Declared<CTableDecl>(
        "CREATE TABLE c (region CHAR(2)) PARTITION BY LIST (region)"
        " (PARTITION east VALUES ('NY', 'NJ'), PARTITION west VALUES ('CA'));",
        "oracle");
    ASSERT_EQ(table.partitions.size(), 2u);
    EXPECT_EQ(table.partitions[0].limit, "'NY', 'NJ'");
    EXPECT_EQ(table.partitions[1].name, "west");
    EXPECT_EQ(table.partitions[1].limit, "'CA'");
}

TEST(PhysicalOptions, HashPartitionsByNumberAreNamedP1ToPn) {
    const CTableDecl table =
        Declared<CTableDecl>("CREATE TABLE h (id NUMBER) PARTITION BY HASH (id) PARTITIONS 4 STORE IN (ts1, ts2);",
                             "oracle");
    EXPECT_EQ(table.partitionColumns, (Strings{"id"}));
    Strings names;
    for (const CPartitionDecl& partition : table.partitions) {
        names.push_back(partition.name);
        EXPECT_EQ(partition.limit, "");
    }
    EXPECT_EQ(names, (Strings{"P1", "P2", "P3", "P4"}));
    EXPECT_EQ(table.storageSpace, "");  // STORE IN (...) names no single space
}

TEST(PhysicalOptions, IntervalPartitionsKeepTheirFirstPartitions) {
    const CTableDecl table = Declared<CTableDecl>(
        "CREATE TABLE s (d DATE) PARTITION BY RANGE (d) INTERVAL (NUMTOYMINTERVAL(1, 'MONTH')) STORE IN (ts1)\n"
        " (PARTITION p0 VALUES LESS THAN (DATE '2020-01-01') TABLESPACE ts0);",
        "oracle");
    EXPECT_EQ(table.partitionColumns, (Strings{"d"}));
    ASSERT_EQ(table.partitions.size(), 1u);
    EXPECT_EQ(table.partitions[0].name, "p0");
    EXPECT_EQ(table.partitions[0].limit, "DATE '2020-01-01'");
    EXPECT_EQ(table.partitions[0].storageSpace, "ts0");
}

TEST(PhysicalOptions, HashPartitionsByNumberStopAtTheServersLimit) {
    const CTableDecl table =
        Declared<CTableDecl>("CREATE TABLE h (id NUMBER) PARTITION BY HASH (id) PARTITIONS 100000;", "oracle");
    ASSERT_EQ(table.partitions.size(), 4096u);
    EXPECT_EQ(table.partitions.back().name, "P4096");
}

TEST(PhysicalOptions, IndexOptionsAndStorageOfAnOracleIndex) {
    const CIndexDecl index = Declared<CIndexDecl>(
        "CREATE INDEX ix_name ON people (last_name) PCTFREE 5 INITRANS 4 REVERSE TABLESPACE idx_ts\n"
        "  STORAGE (INITIAL 128K NEXT 2M);",
        "oracle");
    EXPECT_EQ(Describe(index.options),
              (Strings{Num(kPctFree, 5), Num(kIniTrans, 4), Num(kReverse, 1), Num(kInitial, 128), Num(kNext, 2048)}));
    EXPECT_EQ(index.storageSpace, "idx_ts");
    EXPECT_EQ(index.clustered, -1);
}

TEST(PhysicalOptions, IndexOptionsOfADb2Index) {
    const CIndexDecl index = Declared<CIndexDecl>(
        "CREATE INDEX ix1 ON t (a) USING STOGROUP sg1 PRIQTY 720 SECQTY 48 BUFFERPOOL BP2 CLOSE NO\n"
        "  PIECESIZE 2G NOT CLUSTER COMPRESS YES GBPCACHE ALL;",
        "db2zos");
    EXPECT_EQ(Describe(index.options),
              (Strings{Text(kStorageGroup, "sg1"), Num(kInitial, 720), Num(kNext, 48), Text(kBufferPool, "BP2"),
                       Text(kClose, "NO"), Text(kPieceSize, "2G"), Num(kCluster, 0), Num(kCompress, 1), Text(kGbpCache, "ALL")}));
    EXPECT_EQ(index.clustered, -1);  // an option, not the CLUSTERED of the statement
}

TEST(PhysicalOptions, LocalIndexFollowsItsTableOrListsItsOwnPartitions) {
    const CIndexDecl follows = Declared<CIndexDecl>("CREATE INDEX ix ON sales (sold) LOCAL;", "oracle");
    EXPECT_TRUE(follows.local);
    EXPECT_TRUE(follows.partitions.empty());

    const CIndexDecl own = Declared<CIndexDecl>(
        "CREATE INDEX ix ON sales (sold) LOCAL (PARTITION ip1 TABLESPACE its1 PCTFREE 20,"
        " PARTITION ip2) TABLESPACE idx;",
        "oracle");
    EXPECT_TRUE(own.local);
    ASSERT_EQ(own.partitions.size(), 2u);
    EXPECT_EQ(own.partitions[0].name, "ip1");
    EXPECT_EQ(own.partitions[0].storageSpace, "its1");
    EXPECT_EQ(Describe(own.partitions[0].options), (Strings{Num(kPctFree, 20)}));
    EXPECT_EQ(own.partitions[1].name, "ip2");
    EXPECT_EQ(own.storageSpace, "idx");

    EXPECT_FALSE(Declared<CIndexDecl>("CREATE INDEX ix ON sales (sold);").local);
}

// ---------------------------------------------------------------------------
// CREATE INDEX

TEST(CreateIndex, UniqueClusteredDescendingColumnsOnAQualifiedTable) {
    const CStatementDecl statement = One("CREATE UNIQUE CLUSTERED INDEX ix_o ON dbo.orders (placed DESC, id ASC, c)");
    EXPECT_EQ(statement.kind, "CREATE INDEX");
    const CIndexDecl index = As<CIndexDecl>(statement);
    EXPECT_EQ(index.name, "ix_o");
    EXPECT_EQ(index.table.parts, (Strings{"dbo", "orders"}));
    EXPECT_TRUE(index.unique);
    EXPECT_EQ(index.clustered, 1);
    EXPECT_EQ(index.columns, (Strings{"placed", "id", "c"}));
    EXPECT_EQ(index.descending, (std::vector<bool>{true, false, false}));
    EXPECT_EQ(index.expression, "");
    EXPECT_EQ(index.condition, "");
}

TEST(CreateIndex, ClusteringIsSaidOrNot) {
    const CIndexDecl nonClustered = Declared<CIndexDecl>("CREATE NONCLUSTERED INDEX ix ON t (a)", "sqlserver");
    EXPECT_EQ(nonClustered.clustered, 0);
    EXPECT_FALSE(nonClustered.unique);
    const CIndexDecl unsaid = Declared<CIndexDecl>("CREATE INDEX ix ON t (a);");
    EXPECT_EQ(unsaid.clustered, -1);
    EXPECT_FALSE(unsaid.unique);
}

TEST(CreateIndex, AnExpressionIndexKeepsTheExpressionAndNoColumns) {
    const CIndexDecl call = Declared<CIndexDecl>("CREATE INDEX ix ON people (lower(name));");
    EXPECT_EQ(call.expression, "lower(name)");
    EXPECT_TRUE(call.columns.empty());

    const CIndexDecl afterAColumn = Declared<CIndexDecl>("CREATE INDEX ix ON people (id, upper(city), zip);");
    EXPECT_EQ(afterAColumn.expression, "upper(city)");
    EXPECT_TRUE(afterAColumn.columns.empty());

    const CIndexDecl arithmetic = Declared<CIndexDecl>("CREATE INDEX ix ON t (a + b);");
    EXPECT_EQ(arithmetic.expression, "a + b");
}

TEST(CreateIndex, PrefixLengthsAreNotExpressions) {
    const CIndexDecl index = Declared<CIndexDecl>("CREATE INDEX ix ON t (name(10), code DESC);");
    EXPECT_EQ(index.expression, "");
    EXPECT_EQ(index.columns, (Strings{"name", "code"}));
    EXPECT_EQ(index.descending, (std::vector<bool>{false, true}));
}

TEST(CreateIndex, APartialIndexKeepsItsWhere) {
    const CIndexDecl index = Declared<CIndexDecl>("CREATE UNIQUE INDEX ix ON users (email) WHERE deleted = 0;");
    EXPECT_EQ(index.columns, (Strings{"email"}));
    EXPECT_EQ(index.condition, "WHERE deleted = 0");
    EXPECT_TRUE(index.unique);
}

TEST(CreateIndex, AFilteredIndexStillNamesItsFilegroup) {
    // T-SQL puts the filegroup after the filter: it does not belong to the condition.
    const CIndexDecl index =
        Declared<CIndexDecl>("CREATE INDEX ix ON dbo.users (email) WHERE email IS NOT NULL ON [INDEXES]", "sqlserver");
    EXPECT_EQ(index.condition, "WHERE email IS NOT NULL");
    EXPECT_EQ(index.storageSpace, "INDEXES");
}

TEST(CreateIndex, AFilteredIndexWithIncludedColumnsKeepsItsWhere) {
    const CIndexDecl index = Declared<CIndexDecl>(
        "CREATE INDEX ix ON dbo.users (email) INCLUDE (name) WHERE email IS NOT NULL", "sqlserver");
    EXPECT_EQ(index.columns, (Strings{"email"}));
    EXPECT_EQ(index.condition, "WHERE email IS NOT NULL");
}

TEST(CreateIndex, StorageSpaceOnAFilegroup) {
    const CIndexDecl index =
        Declared<CIndexDecl>("CREATE INDEX ix ON t (a) INCLUDE (b, c) WITH (FILLFACTOR = 80) ON [INDEXES]",
                             "sqlserver");
    EXPECT_EQ(index.columns, (Strings{"a"}));
    EXPECT_EQ(index.storageSpace, "INDEXES");
    EXPECT_TRUE(index.options.empty());
}

// ---------------------------------------------------------------------------
// ALTER TABLE

TEST(AlterTable, AddsAColumn) {
    const CStatementDecl statement = One("ALTER TABLE sales.orders ADD note VARCHAR(200) DEFAULT 'none' NOT NULL;");
    EXPECT_EQ(statement.kind, "ALTER TABLE");
    const CAlterDecl alter = As<CAlterDecl>(statement);
    EXPECT_EQ(alter.table.parts, (Strings{"sales", "orders"}));
    ASSERT_EQ(alter.items.size(), 1u);
    const auto* column = std::get_if<CColumnDecl>(&alter.items[0]);
    ASSERT_NE(column, nullptr);
    EXPECT_EQ(column->name, "note");
    EXPECT_EQ(column->datatype, "VARCHAR");
    EXPECT_EQ(column->width, 200);
    EXPECT_EQ(column->defaultText, "'none'");
    EXPECT_EQ(column->nullOption, 0);
}

TEST(AlterTable, AddsNamedConstraints) {
    const CAlterDecl key = Declared<CAlterDecl>("ALTER TABLE orders ADD CONSTRAINT pk_orders PRIMARY KEY (id, region);");
    ASSERT_EQ(key.items.size(), 1u);
    const auto* primary = std::get_if<CConstraintDecl>(&key.items[0]);
    ASSERT_NE(primary, nullptr);
    EXPECT_EQ(primary->kind, EConstraintKind::PrimaryKey);
    EXPECT_EQ(primary->name, "pk_orders");
    EXPECT_EQ(primary->columns, (Strings{"id", "region"}));

    const CAlterDecl foreign = Declared<CAlterDecl>(
        "ALTER TABLE lines ADD CONSTRAINT fk_order FOREIGN KEY (order_id) REFERENCES orders (id)"
        " ON DELETE SET NULL ENABLE NOVALIDATE;");
    ASSERT_EQ(foreign.items.size(), 1u);
    const auto* reference = std::get_if<CConstraintDecl>(&foreign.items[0]);
    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->kind, EConstraintKind::ForeignKey);
    EXPECT_EQ(reference->reference.name, "fk_order");
    EXPECT_EQ(reference->reference.childColumns, (Strings{"order_id"}));
    EXPECT_EQ(reference->reference.parentColumns, (Strings{"id"}));
    EXPECT_EQ(reference->reference.onDelete, kOnDeleteSetNull);

    const CAlterDecl check = Declared<CAlterDecl>("ALTER TABLE lines WITH NOCHECK ADD CHECK (qty > 0)", "sqlserver");
    ASSERT_EQ(check.items.size(), 1u);
    const auto* condition = std::get_if<CConstraintDecl>(&check.items[0]);
    ASSERT_NE(condition, nullptr);
    EXPECT_EQ(condition->kind, EConstraintKind::Check);
    EXPECT_EQ(condition->checkText, "qty > 0");
}

TEST(AlterTable, TransactSqlDefaultForAColumn) {
    const CAlterDecl alter =
        Declared<CAlterDecl>("ALTER TABLE [dbo].[lines] ADD CONSTRAINT [df_qty] DEFAULT ((0)) FOR [qty]", "sqlserver");
    EXPECT_EQ(alter.table.parts, (Strings{"dbo", "lines"}));
    ASSERT_EQ(alter.items.size(), 1u);
    const auto* columnDefault = std::get_if<CColumnDefaultDecl>(&alter.items[0]);
    ASSERT_NE(columnDefault, nullptr);
    EXPECT_EQ(columnDefault->column, "qty");
    EXPECT_EQ(columnDefault->text, "((0))");
}

TEST(AlterTable, SeveralAdditionsInParenthesesOrSeparatedByCommas) {
    const CAlterDecl oracle = Declared<CAlterDecl>(
        "ALTER TABLE t ADD (a NUMBER, b VARCHAR2(10) NOT NULL, CONSTRAINT u_ab UNIQUE (a, b));", "oracle");
    ASSERT_EQ(oracle.items.size(), 3u);
    ASSERT_TRUE(std::holds_alternative<CColumnDecl>(oracle.items[0]));
    EXPECT_EQ(std::get<CColumnDecl>(oracle.items[0]).name, "a");
    ASSERT_TRUE(std::holds_alternative<CColumnDecl>(oracle.items[1]));
    EXPECT_EQ(std::get<CColumnDecl>(oracle.items[1]).nullOption, 0);
    ASSERT_TRUE(std::holds_alternative<CConstraintDecl>(oracle.items[2]));
    EXPECT_EQ(std::get<CConstraintDecl>(oracle.items[2]).columns, (Strings{"a", "b"}));

    const CAlterDecl tsql = Declared<CAlterDecl>("ALTER TABLE t ADD a INT NULL, b INT NOT NULL", "sqlserver");
    ASSERT_EQ(tsql.items.size(), 2u);
    ASSERT_TRUE(std::holds_alternative<CColumnDecl>(tsql.items[1]));
    EXPECT_EQ(std::get<CColumnDecl>(tsql.items[0]).nullOption, 1);
    EXPECT_EQ(std::get<CColumnDecl>(tsql.items[1]).name, "b");
}

TEST(AlterTable, SeveralAddClausesInOneStatement) {
    // DB2 repeats ADD for each column, without commas between them.
    const CAlterDecl alter = Declared<CAlterDecl>("ALTER TABLE t ADD COLUMN a INT ADD COLUMN b CHAR(3);", "db2");
    ASSERT_EQ(alter.items.size(), 2u);
    ASSERT_TRUE(std::holds_alternative<CColumnDecl>(alter.items[1]));
    EXPECT_EQ(std::get<CColumnDecl>(alter.items[0]).name, "a");
    EXPECT_EQ(std::get<CColumnDecl>(alter.items[1]).name, "b");
    EXPECT_EQ(std::get<CColumnDecl>(alter.items[1]).width, 3);
}

TEST(AlterTable, AnAddedComputedColumnIsSkippedWithAWarning) {
    const CStatementDecl statement = One("ALTER TABLE t ADD total AS (a * b)", "sqlserver");
    EXPECT_TRUE(std::holds_alternative<std::monostate>(statement.declaration));
    EXPECT_EQ(statement.warnings, (Strings{"computed column total skipped"}));
}

TEST(AlterTable, AnAlterationOfNothingTheModelHoldsIsNoDeclaration) {
    const CStatementDecl unused = One("ALTER TABLE t DROP UNUSED COLUMNS;");
    EXPECT_EQ(unused.kind, "ALTER TABLE");
    EXPECT_TRUE(std::holds_alternative<std::monostate>(unused.declaration));

    const CStatementDecl index = One("ALTER INDEX ix REBUILD;");
    EXPECT_EQ(index.kind, "ALTER INDEX");
    EXPECT_TRUE(std::holds_alternative<std::monostate>(index.declaration));
}

// What an ALTER TABLE's items say, one line each, for the tables below.
std::string Items(const CStatementDecl& statement) {
    const auto* alter = std::get_if<CAlterDecl>(&statement.declaration);
    if (!alter) return "(no declaration)";
    std::string text;
    for (const CAlterItem& item : alter->items) {
        std::string line;
        if (const auto* column = std::get_if<CColumnDecl>(&item)) line = "add column " + column->name;
        if (const auto* constraint = std::get_if<CConstraintDecl>(&item)) line = "add constraint " + constraint->name;
        if (const auto* value = std::get_if<CColumnDefaultDecl>(&item)) line = "default " + value->text + " for " + value->column;
        if (const auto* column = std::get_if<CDropColumnDecl>(&item)) line = "drop column " + column->column;
        if (const auto* constraint = std::get_if<CDropConstraintDecl>(&item))
            line = constraint->primaryKey ? "drop primary key" : "drop constraint " + constraint->name;
        if (const auto* rename = std::get_if<CRenameTableDecl>(&item)) line = "rename to " + rename->to.Name();
        if (const auto* change = std::get_if<CColumnChangeDecl>(&item)) {
            line = "change " + change->column;
            if (!change->newName.empty()) line += " to " + change->newName;
            if (change->typeGiven)
                line += " type " + change->datatype + "(" + std::to_string(change->width) + "," +
                        std::to_string(change->scale) + ")";
            if (change->nullOption >= 0) line += change->nullOption ? " null" : " not null";
            if (change->defaultChange == CColumnChangeDecl::EDefault::Set) line += " default " + change->defaultText;
            if (change->defaultChange == CColumnChangeDecl::EDefault::Drop) line += " drop default";
        }
        text += (text.empty() ? "" : "; ") + line;
    }
    return text;
}

TEST(AlterTable, DropsChangesAndRenamesInEachDialectsForm) {
    const struct {
        const char* platform;
        const char* sql;
        const char* items;
    } cases[] = {
        {"oracle", "ALTER TABLE t DROP COLUMN a", "drop column a"},
        {"sqlserver", "ALTER TABLE t DROP COLUMN a, b", "drop column a; drop column b"},
        {"oracle", "ALTER TABLE t DROP (a, b) CASCADE CONSTRAINTS", "drop column a; drop column b"},
        {"unknown", "ALTER TABLE t DROP COLUMN a, DROP COLUMN IF EXISTS b", "drop column a; drop column b"},
        {"unknown", "ALTER TABLE t DROP a", "drop column a"},
        {"sqlserver", "ALTER TABLE t DROP CONSTRAINT [fk x]", "drop constraint fk x"},
        {"oracle", "ALTER TABLE t DROP PRIMARY KEY CASCADE", "drop primary key"},
        {"unknown", "ALTER TABLE t DROP FOREIGN KEY fk1", "drop constraint fk1"},
        {"db2", "ALTER TABLE t DROP UNIQUE u1 DROP CHECK c1", "drop constraint u1; drop constraint c1"},
        {"sqlserver", "ALTER TABLE t ALTER COLUMN c VARCHAR(20) NOT NULL", "change c type VARCHAR(20,-1) not null"},
        {"sqlserver", "ALTER TABLE t ALTER COLUMN c DECIMAL(12, 2)", "change c type DECIMAL(12,2)"},
        {"db2", "ALTER TABLE t ALTER COLUMN c SET DATA TYPE DECIMAL(12,2) ALTER COLUMN c SET NOT NULL",
         "change c type DECIMAL(12,2); change c not null"},
        {"unknown", "ALTER TABLE t ALTER COLUMN c TYPE bigint USING c::bigint, ALTER d DROP NOT NULL",
         "change c type bigint(-1,-1); change d null"},
        {"db2", "ALTER TABLE t ALTER COLUMN c SET WITH DEFAULT CURRENT TIMESTAMP",
         "change c default CURRENT TIMESTAMP"},
        {"db2", "ALTER TABLE t ALTER COLUMN c DROP DEFAULT", "change c drop default"},
        {"oracle", "ALTER TABLE t MODIFY (c NUMBER(12) DEFAULT 0 NOT NULL, d NULL)",
         "change c type NUMBER(12,-1) not null default 0; change d null"},
        {"oracle", "ALTER TABLE t MODIFY c DEFAULT NULL", "change c drop default"},
        {"unknown", "ALTER TABLE t CHANGE COLUMN a b INT NOT NULL", "change a to b type INT(-1,-1) not null"},
        {"unknown", "ALTER TABLE t RENAME TO u", "rename to u"},
        {"oracle", "ALTER TABLE t RENAME COLUMN a TO b", "change a to b"},
        {"unknown", "ALTER TABLE t ADD x INT, DROP COLUMN y", "add column x; drop column y"},
        {"unknown", "ALTER TABLE t ADD COLUMN x INT, ADD COLUMN y INT", "add column x; add column y"},
    };
    for (const auto& c : cases) EXPECT_EQ(Items(One(c.sql, c.platform)), c.items) << c.sql;
}

TEST(DropStatements, NameWhatTheyDropWithTheirKind) {
    const struct {
        const char* sql;
        EDropKind kind;
        const char* kindText;
        Strings names;  // each as owner.name or name
        const char* table;
        bool cascade;
    } cases[] = {
        {"DROP TABLE hr.emp CASCADE CONSTRAINTS PURGE", EDropKind::Table, "DROP TABLE", {"hr.emp"}, "", true},
        {"DROP TABLE IF EXISTS a, b", EDropKind::Table, "DROP TABLE", {"a", "b"}, "", false},
        {"DROP INDEX ix ON dbo.t", EDropKind::Index, "DROP INDEX", {"ix"}, "dbo.t", false},
        {"DROP INDEX t.ix", EDropKind::Index, "DROP INDEX", {"t.ix"}, "", false},
        {"DROP VIEW v", EDropKind::View, "DROP VIEW", {"v"}, "", false},
        {"DROP PROCEDURE dbo.p", EDropKind::Procedure, "DROP PROCEDURE", {"dbo.p"}, "", false},
        {"DROP FUNCTION f(INTEGER), g", EDropKind::Function, "DROP FUNCTION", {"f", "g"}, "", false},
        {"DROP TRIGGER trg", EDropKind::Trigger, "DROP TRIGGER", {"trg"}, "", false},
        {"DROP PACKAGE BODY pk", EDropKind::PackageBody, "DROP PACKAGE", {"pk"}, "", false},
        {"DROP PACKAGE pk", EDropKind::Package, "DROP PACKAGE", {"pk"}, "", false},
    };
    auto spelled = [](const CQualifiedName& name) { return name.Owner().empty() ? name.Name() : name.Owner() + "." + name.Name(); };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sql);
        const CStatementDecl statement = One(c.sql);
        EXPECT_EQ(statement.kind, c.kindText);
        const CDropDecl drop = As<CDropDecl>(statement);
        EXPECT_EQ(drop.kind, c.kind);
        Strings names;
        for (const CQualifiedName& name : drop.names) names.push_back(spelled(name));
        EXPECT_EQ(names, c.names);
        EXPECT_EQ(drop.table.Empty() ? std::string() : spelled(drop.table), c.table);
        EXPECT_EQ(drop.cascade, c.cascade);
    }
    EXPECT_TRUE(std::holds_alternative<std::monostate>(One("DROP SEQUENCE s").declaration));
}

// ---------------------------------------------------------------------------
// Views and code

TEST(ViewsAndCode, AViewKeepsItsNameAndWholeText) {
    const CStatementDecl statement = One("CREATE OR REPLACE FORCE VIEW hr.v_emp AS\n  SELECT id, name FROM emp;");
    EXPECT_EQ(statement.kind, "CREATE VIEW");
    const CViewDecl view = As<CViewDecl>(statement);
    EXPECT_EQ(view.name.parts, (Strings{"hr", "v_emp"}));
    EXPECT_EQ(view.text, "CREATE OR REPLACE FORCE VIEW hr.v_emp AS\n  SELECT id, name FROM emp");
}

TEST(ViewsAndCode, ProceduresAndFunctionsAreCodeWithTheirWholeText) {
    const std::vector<CStatementDecl> statements = Parse(
        "CREATE PROCEDURE dbo.usp_touch @id int AS\n"
        "BEGIN\n"
        "  UPDATE t SET touched = 1 WHERE id = @id\n"
        "END\n"
        "GO\n"
        "CREATE FUNCTION dbo.fn_one () RETURNS int AS BEGIN RETURN 1 END\n"
        "GO\n",
        "sqlserver");
    ASSERT_EQ(statements.size(), 2u);
    EXPECT_EQ(statements[0].kind, "CREATE PROCEDURE");
    const CCodeDecl procedure = As<CCodeDecl>(statements[0]);
    EXPECT_EQ(procedure.kind, ECodeKind::Procedure);
    EXPECT_EQ(procedure.name.parts, (Strings{"dbo", "usp_touch"}));
    EXPECT_EQ(procedure.text,
              "CREATE PROCEDURE dbo.usp_touch @id int AS\nBEGIN\n  UPDATE t SET touched = 1 WHERE id = @id\nEND");
    const CCodeDecl function = As<CCodeDecl>(statements[1]);
    EXPECT_EQ(function.kind, ECodeKind::Function);
    EXPECT_EQ(function.name.parts, (Strings{"dbo", "fn_one"}));
    EXPECT_EQ(statements[1].line, 6);
}

TEST(ViewsAndCode, PackagesAndPackageBodies) {
    const std::vector<CStatementDecl> statements = Parse(
        "CREATE OR REPLACE PACKAGE hr.pay AS\n"
        "  PROCEDURE raise(p NUMBER);\n"
        "END pay;\n"
        "/\n"
        "CREATE OR REPLACE PACKAGE BODY hr.pay AS\n"
        "  PROCEDURE raise(p NUMBER) IS BEGIN NULL; END;\n"
        "END pay;\n"
        "/\n",
        "oracle");
    ASSERT_EQ(statements.size(), 2u);
    const CCodeDecl package = As<CCodeDecl>(statements[0]);
    EXPECT_EQ(package.kind, ECodeKind::Package);
    EXPECT_EQ(package.name.parts, (Strings{"hr", "pay"}));
    const CCodeDecl body = As<CCodeDecl>(statements[1]);
    EXPECT_EQ(body.kind, ECodeKind::PackageBody);
    EXPECT_EQ(body.name.parts, (Strings{"hr", "pay"}));
    EXPECT_EQ(body.text.rfind("CREATE OR REPLACE PACKAGE BODY hr.pay AS", 0), 0u);
    EXPECT_EQ(body.text.substr(body.text.size() - 8), "END pay;");
    EXPECT_EQ(statements[1].line, 5);
}

TEST(ViewsAndCode, TriggersKnowTheirKindAndTable) {
    const CCodeDecl before = Declared<CCodeDecl>(
        "CREATE OR REPLACE TRIGGER hr.trg_b BEFORE UPDATE OF salary ON hr.emp\n"
        "REFERENCING NEW AS n FOR EACH ROW\n"
        "BEGIN :n.changed := SYSDATE; END;\n"
        "/\n",
        "oracle");
    EXPECT_EQ(before.kind, ECodeKind::Trigger);
    EXPECT_EQ(before.name.parts, (Strings{"hr", "trg_b"}));
    EXPECT_EQ(before.triggerKind, ETriggerKind::Before);
    EXPECT_EQ(before.table.parts, (Strings{"hr", "emp"}));

    const CCodeDecl after =
        Declared<CCodeDecl>("CREATE TRIGGER trg_a ON dbo.orders AFTER INSERT, UPDATE AS\nBEGIN SELECT 1 END\nGO\n",
                            "sqlserver");
    EXPECT_EQ(after.triggerKind, ETriggerKind::After);
    EXPECT_EQ(after.table.parts, (Strings{"dbo", "orders"}));

    const CCodeDecl forInsert =
        Declared<CCodeDecl>("CREATE TRIGGER trg_f ON orders FOR INSERT AS\nSELECT 1\nGO\n", "sqlserver");
    EXPECT_EQ(forInsert.triggerKind, ETriggerKind::After);
    EXPECT_EQ(forInsert.table.parts, (Strings{"orders"}));

    const CCodeDecl instead = Declared<CCodeDecl>(
        "CREATE TRIGGER trg_i ON v_orders INSTEAD OF DELETE AS\nBEGIN SELECT 1 END\nGO\n", "sqlserver");
    EXPECT_EQ(instead.triggerKind, ETriggerKind::InsteadOf);
    EXPECT_EQ(instead.table.parts, (Strings{"v_orders"}));

    const CCodeDecl db2 = Declared<CCodeDecl>(
        "CREATE TRIGGER trg_n NO CASCADE BEFORE INSERT ON app.items REFERENCING NEW AS n\n"
        "FOR EACH ROW MODE DB2SQL SET n.created = CURRENT TIMESTAMP;",
        "db2");
    EXPECT_EQ(db2.triggerKind, ETriggerKind::Before);
    EXPECT_EQ(db2.table.parts, (Strings{"app", "items"}));
}

// ---------------------------------------------------------------------------
// Storage objects, defaults, rules, types, bindings and comments

TEST(StorageObjects, EachKindWithItsNameDatabaseAndText) {
    const std::vector<CStatementDecl> statements = Parse(
        "CREATE STOGROUP SG1 VOLUMES ('*') VCAT CAT1;\n"
        "CREATE DATABASE DB1 STOGROUP SG1 BUFFERPOOL BP1;\n"
        "CREATE TABLESPACE TS1 IN DB1 USING STOGROUP SG1 PRIQTY 720;\n"
        "CREATE BUFFERPOOL BP8 SIZE 1000 PAGESIZE 8K;\n"
        "CREATE LOB TABLESPACE LTS1 IN DB1;\n"
        "CREATE TABLESPACE TS2;\n",
        "db2zos");
    ASSERT_EQ(statements.size(), 6u);
    struct Expected {
        EStorageObjectKind kind;
        const char* name;
        const char* database;
    };
    const Expected expected[] = {{EStorageObjectKind::StorageGroup, "SG1", ""},
                                 {EStorageObjectKind::Database, "DB1", ""},
                                 {EStorageObjectKind::Tablespace, "TS1", "DB1"},
                                 {EStorageObjectKind::BufferPool, "BP8", ""},
                                 {EStorageObjectKind::Tablespace, "LTS1", "DB1"},
                                 {EStorageObjectKind::Tablespace, "TS2", ""}};
    for (std::size_t i = 0; i < 6; ++i) {
        const CStorageObjectDecl object = As<CStorageObjectDecl>(statements[i]);
        EXPECT_EQ(object.kind, expected[i].kind) << i;
        EXPECT_EQ(object.name, expected[i].name) << i;
        EXPECT_EQ(object.database, expected[i].database) << i;
    }
    EXPECT_EQ(As<CStorageObjectDecl>(statements[0]).text, "CREATE STOGROUP SG1 VOLUMES ('*') VCAT CAT1");
    EXPECT_EQ(statements[1].kind, "CREATE DATABASE");
    EXPECT_EQ(statements[2].kind, "CREATE TABLESPACE");
}

TEST(DefaultsAndRules, KeepTheirNameAndTheTextAfterAs) {
    const std::vector<CStatementDecl> statements = Parse(
        "CREATE DEFAULT dbo.df_zero AS 0\n"
        "GO\n"
        "CREATE RULE r_range AS @value BETWEEN 1 AND 10\n"
        "GO\n",
        "sqlserver");
    ASSERT_EQ(statements.size(), 2u);
    EXPECT_EQ(statements[0].kind, "CREATE DEFAULT");
    const CDefaultOrRuleDecl zero = As<CDefaultOrRuleDecl>(statements[0]);
    EXPECT_EQ(zero.name, "df_zero");
    EXPECT_EQ(zero.text, "0");
    EXPECT_FALSE(zero.rule);
    EXPECT_EQ(statements[1].kind, "CREATE RULE");
    const CDefaultOrRuleDecl range = As<CDefaultOrRuleDecl>(statements[1]);
    EXPECT_EQ(range.name, "r_range");
    EXPECT_EQ(range.text, "@value BETWEEN 1 AND 10");
    EXPECT_TRUE(range.rule);
}

TEST(UserTypes, FromOrAsABaseTypeWithoutItsBrackets) {
    const CUserTypeDecl tsql = Declared<CUserTypeDecl>("CREATE TYPE dbo.ssn FROM varchar(11) NOT NULL", "sqlserver");
    EXPECT_EQ(tsql.name, "ssn");
    EXPECT_EQ(tsql.base, "varchar(11)");

    const CUserTypeDecl bracketed = Declared<CUserTypeDecl>("CREATE TYPE [dbo].[flag] FROM [tinyint] NULL", "sqlserver");
    EXPECT_EQ(bracketed.name, "flag");
    EXPECT_EQ(bracketed.base, "tinyint");

    const CUserTypeDecl db2 = Declared<CUserTypeDecl>("CREATE DISTINCT TYPE money AS DECIMAL(9, 2) WITH COMPARISONS;");
    EXPECT_EQ(db2.name, "money");
    EXPECT_EQ(db2.base, "DECIMAL(9, 2)");

    const CUserTypeDecl twoWords = Declared<CUserTypeDecl>("CREATE TYPE ratio AS DOUBLE PRECISION;");
    EXPECT_EQ(twoWords.base, "DOUBLE PRECISION");
}

TEST(UserTypes, ATableTypeIsNoDatatype) {
    const CStatementDecl statement = One("CREATE TYPE dbo.lines AS TABLE (id INT, qty INT)", "sqlserver");
    EXPECT_TRUE(std::holds_alternative<std::monostate>(statement.declaration));
    EXPECT_EQ(statement.kind, "CREATE TYPE");
}

TEST(UserTypes, AnObjectTypeListsItsAttributesAsColumns) {
    const CStatementDecl statement =
        One("CREATE OR REPLACE TYPE address_t AS OBJECT (street VARCHAR2(40), zip NUMBER(5) NOT NULL);", "oracle");
    EXPECT_EQ(statement.kind, "CREATE TYPE");
    const CObjectTypeDecl type = As<CObjectTypeDecl>(statement);
    EXPECT_EQ(type.name, "address_t");
    EXPECT_EQ(Names(type.attributes), (Strings{"street", "zip"}));
    const auto& street = std::get<CColumnDecl>(type.attributes[0]);
    EXPECT_EQ(street.datatype, "VARCHAR2");
    EXPECT_EQ(street.width, 40);
    EXPECT_EQ(std::get<CColumnDecl>(type.attributes[1]).nullOption, 0);
}

TEST(SystemProcedures, AddTypeWithPositionalAndNamedArguments) {
    const CStatementDecl positional = One("EXEC sp_addtype ssn, 'varchar(11)', 'NOT NULL'", "sqlserver");
    EXPECT_EQ(positional.kind, "EXECUTE SP_ADDTYPE");
    const CUserTypeDecl type = As<CUserTypeDecl>(positional);
    EXPECT_EQ(type.name, "ssn");
    EXPECT_EQ(type.base, "varchar(11)");

    const CUserTypeDecl named = Declared<CUserTypeDecl>(
        "EXEC dbo.sp_addtype @typename = N'phone', @phystype = N'varchar(20)', @nulltype = N'NULL'", "sqlserver");
    EXPECT_EQ(named.name, "N'phone'");  // names are handed on as written; the model strips their decorations
    EXPECT_EQ(named.base, "varchar(20)");

    const CUserTypeDecl withoutExec = Declared<CUserTypeDecl>("sp_addtype birthday, datetime, 'NULL'", "sqlserver");
    EXPECT_EQ(withoutExec.name, "birthday");
    EXPECT_EQ(withoutExec.base, "datetime");
}

TEST(SystemProcedures, BindRuleAndDefaultName) {
    const std::vector<CStatementDecl> statements = Parse(
        "EXEC sp_bindrule r_range, 'dbo.items.qty'\n"
        "EXECUTE sp_bindefault @defname = N'df_zero', @objname = N'[dbo].[qty_t]'\n",
        "sqlserver");
    ASSERT_EQ(statements.size(), 2u);
    const CBindingDecl rule = As<CBindingDecl>(statements[0]);
    EXPECT_TRUE(rule.rule);
    EXPECT_EQ(rule.object, "r_range");
    EXPECT_EQ(rule.target, "'dbo.items.qty'");
    EXPECT_EQ(statements[1].kind, "EXECUTE SP_BINDEFAULT");
    const CBindingDecl fallback = As<CBindingDecl>(statements[1]);
    EXPECT_FALSE(fallback.rule);
    EXPECT_EQ(fallback.object, "N'df_zero'");
    EXPECT_EQ(fallback.target, "N'[dbo].[qty_t]'");
}

TEST(SystemProcedures, OtherProceduresDeclareNothing) {
    const CStatementDecl other = One("EXEC sp_addlogin 'bob', 'secret'", "sqlserver");
    EXPECT_EQ(other.kind, "EXECUTE SP_ADDLOGIN");
    EXPECT_TRUE(std::holds_alternative<std::monostate>(other.declaration));

    const CStatementDecl tooFew = One("EXEC sp_addtype lonely", "sqlserver");
    EXPECT_TRUE(std::holds_alternative<std::monostate>(tooFew.declaration));
}

TEST(Comments, OnATableAndOnAColumn) {
    const std::vector<CStatementDecl> statements = Parse(
        "COMMENT ON TABLE hr.emp IS 'People we pay';\n"
        "COMMENT ON COLUMN hr.emp.salary IS 'Monthly, in the employee''s currency';\n"
        "COMMENT ON COLUMN emp.bonus IS 'Yearly';\n");
    ASSERT_EQ(statements.size(), 3u);
    EXPECT_EQ(statements[0].kind, "COMMENT ON");
    const CCommentDecl table = As<CCommentDecl>(statements[0]);
    EXPECT_EQ(table.table.parts, (Strings{"hr", "emp"}));
    EXPECT_EQ(table.column, "");
    EXPECT_EQ(table.text, "People we pay");
    const CCommentDecl column = As<CCommentDecl>(statements[1]);
    EXPECT_EQ(column.table.parts, (Strings{"hr", "emp"}));
    EXPECT_EQ(column.column, "salary");
    EXPECT_EQ(column.text, "Monthly, in the employee's currency");
    const CCommentDecl unqualified = As<CCommentDecl>(statements[2]);
    EXPECT_EQ(unqualified.table.parts, (Strings{"emp"}));
    EXPECT_EQ(unqualified.column, "bonus");
}

// ---------------------------------------------------------------------------
// Line commands and statements the model has no place for

TEST(LineCommands, CurrentSqlIdNamesTheDefaultOwner) {
    const std::vector<CStatementDecl> statements = Parse(
        "SET CURRENT SQLID = 'Prod';\n"
        "SET CURRENT SQLID = prod2;\n"
        "SET SCHEMA test\n"
        "SET CURRENT SCHEMA \"Mixed\"\n"
        "CREATE TABLE t (id INT);\n",
        "db2zos");
    ASSERT_EQ(statements.size(), 5u);
    EXPECT_EQ(As<CSqlIdDecl>(statements[0]).id, "Prod");
    EXPECT_EQ(As<CSqlIdDecl>(statements[1]).id, "PROD2");
    EXPECT_EQ(As<CSqlIdDecl>(statements[2]).id, "TEST");
    EXPECT_EQ(As<CSqlIdDecl>(statements[3]).id, "Mixed");
    EXPECT_EQ(statements[0].kind, "SET");
    EXPECT_EQ(statements[4].line, 5);
    EXPECT_TRUE(std::holds_alternative<CTableDecl>(statements[4].declaration));
}

TEST(LineCommands, OtherClientCommandsGiveOnlyTheirKind) {
    const std::vector<CStatementDecl> statements = Parse(
        "SET ECHO ON\n"
        "CONNECT scott/tiger@orcl\n"
        "SPOOL create.log\n"
        "CREATE TABLE t (id NUMBER);\n"
        "SPOOL OFF\n",
        "oracle");
    ASSERT_EQ(statements.size(), 5u);
    const Strings kinds = {"SET", "CONNECT", "SPOOL", "CREATE TABLE", "SPOOL"};
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        EXPECT_EQ(statements[i].kind, kinds[i]) << i;
        EXPECT_EQ(statements[i].line, static_cast<int>(i) + 1) << i;
        const bool isTable = std::holds_alternative<CTableDecl>(statements[i].declaration);
        EXPECT_EQ(isTable, i == 3) << i;
        if (!isTable) {
            EXPECT_TRUE(std::holds_alternative<std::monostate>(statements[i].declaration)) << i;
        }
    }
}

TEST(SkippedStatements, GiveTheirKindAndFirstLineButNoDeclaration) {
    const std::vector<CStatementDecl> statements = Parse(
        "-- set up\n"
        "\n"
        "GRANT SELECT\n"
        "  ON emp TO clerk;\n"
        "DROP SEQUENCE old_s;\n"
        "CREATE SEQUENCE s1;\n"
        "/* done */ COMMIT;\n");
    ASSERT_EQ(statements.size(), 4u);
    const Strings kinds = {"GRANT", "DROP SEQUENCE", "CREATE SEQUENCE", "COMMIT"};
    const std::vector<int> lines = {3, 5, 6, 7};
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        EXPECT_EQ(statements[i].kind, kinds[i]) << i;
        EXPECT_EQ(statements[i].line, lines[i]) << i;
        EXPECT_TRUE(std::holds_alternative<std::monostate>(statements[i].declaration)) << i;
        EXPECT_TRUE(statements[i].warnings.empty()) << i;
    }
}

// ---------------------------------------------------------------------------
// How a script is cut into statements

TEST(Terminators, TransactSqlWithoutGoOrSemicolonsGivesOneDeclarationPerStatement) {
    const std::vector<CStatementDecl> statements = Parse(
        "CREATE TABLE a (id int NOT NULL)\n"
        "CREATE TABLE b (id int,\n"
        "  a_id int)\n"
        "CREATE INDEX ix_b ON b (a_id)\n"
        "ALTER TABLE b ADD CONSTRAINT fk_b FOREIGN KEY (a_id) REFERENCES a (id)\n",
        "sqlserver");
    ASSERT_EQ(statements.size(), 4u);
    EXPECT_EQ(As<CTableDecl>(statements[0]).name.Name(), "a");
    EXPECT_EQ(Names(As<CTableDecl>(statements[1]).elements), (Strings{"id", "a_id"}));
    EXPECT_EQ(As<CIndexDecl>(statements[2]).table.Name(), "b");
    EXPECT_EQ(As<CAlterDecl>(statements[3]).items.size(), 1u);
    EXPECT_EQ(statements[3].line, 5);
}

TEST(Terminators, TransactSqlStatementsEndWhereTheNextStartsEvenWhenSomeHaveSemicolons) {
    const std::vector<CStatementDecl> statements = Parse(
        "CREATE TABLE a (id int);\n"
        "CREATE TABLE b (id int)\n"
        "CREATE TABLE c (id int)\n",
        "sqlserver");
    ASSERT_EQ(statements.size(), 3u);
    EXPECT_EQ(As<CTableDecl>(statements[1]).name.Name(), "b");
    EXPECT_EQ(As<CTableDecl>(statements[2]).name.Name(), "c");
    EXPECT_TRUE(As<CTableDecl>(statements[1]).storageSpace.empty());
}

TEST(Terminators, Db2ScriptEndingStatementsWithAt) {
    const std::vector<CStatementDecl> statements = Parse(
        "CREATE TABLE app.items (id INT NOT NULL, qty INT)@\n"
        "CREATE TRIGGER app.trg AFTER INSERT ON app.items\n"
        "FOR EACH ROW\n"
        "BEGIN ATOMIC\n"
        "  UPDATE app.stats SET n = n + 1;\n"
        "  UPDATE app.stats SET m = m + 1;\n"
        "END@\n"
        "CREATE INDEX app.ix_qty ON app.items (qty)@\n",
        "db2");
    ASSERT_EQ(statements.size(), 3u);
    EXPECT_EQ(Names(As<CTableDecl>(statements[0]).elements), (Strings{"id", "qty"}));
    const CCodeDecl trigger = As<CCodeDecl>(statements[1]);
    EXPECT_EQ(trigger.table.parts, (Strings{"app", "items"}));
    EXPECT_EQ(trigger.text,
              "CREATE TRIGGER app.trg AFTER INSERT ON app.items\nFOR EACH ROW\nBEGIN ATOMIC\n"
              "  UPDATE app.stats SET n = n + 1;\n  UPDATE app.stats SET m = m + 1;\nEND");
    EXPECT_EQ(statements[1].line, 2);
    EXPECT_EQ(As<CIndexDecl>(statements[2]).columns, (Strings{"qty"}));
    EXPECT_EQ(statements[2].line, 8);
}

TEST(Terminators, AnAnnouncedTerminatorHoldsFromItsLine) {
    const std::vector<CStatementDecl> statements = Parse(
        "CREATE TABLE t (id INT);\n"
        "--#SET TERMINATOR @\n"
        "CREATE PROCEDURE p () BEGIN DECLARE x INT; SET x = 1; END@\n"
        "--#SET TERMINATOR ;\n"
        "CREATE INDEX ix ON t (id);\n",
        "db2");
    ASSERT_EQ(statements.size(), 3u);
    EXPECT_EQ(As<CCodeDecl>(statements[1]).text, "CREATE PROCEDURE p () BEGIN DECLARE x INT; SET x = 1; END");
    EXPECT_EQ(As<CIndexDecl>(statements[2]).name, "ix");
}

}  // namespace
