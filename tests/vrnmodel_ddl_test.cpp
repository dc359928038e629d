// Models written back as DDL: the exact script for one small model per
// family, and the round trip (script -> model -> DDL -> model) that compares
// the two models object by object, on every sample and across platforms. A
// generic script is executed by SQLite itself.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <VrnIntf.h>
#include <VrnReader.h>

#include "CommandLineTest.h"
#include "DdlImporter.h"
#include "ImportedModel.h"
#include "DdlWriter.h"
#include "ModelFileReader.h"
#include "SqliteImporter.h"

namespace {

constexpr auto npos = std::string::npos;
const auto Platform = PlatformCode;
const auto Changes = Described;

std::string Upper(std::string text) {
    for (char& ch : text) ch = AfxToUpperAscii(ch);
    return text;
}

// The model written as DDL for `platform` (0: generic SQL).
CDdlScript DdlFor(const CModel& model, int platform) {
    CDdlOptions options;
    options.platform = platform;
    return WriteDdl(model, options);
}

class DdlTest : public ::testing::Test {
protected:
    // The model of `scripts` imported for `platform`, saved and read back.
    CModel Import(int platform, const std::vector<std::string>& scripts) {
        CImported imported = ImportScripts(platform, scripts, m_dir);
        m_skipped = imported.report.skipped;
        return std::move(imported.model);
    }
    CModel Saved(CVrnAPI& builder) { return SaveAndRead(builder, m_dir.File("model" + std::to_string(m_saved++) + ".vrn")); }
    // The model's DDL for `platform` imported again for that platform.
    CModel RoundTrip(const CModel& model, int platform, CDdlScript* written = nullptr) {
        const CDdlScript script = DdlFor(model, platform);
        if (written) *written = script;
        return Import(platform, {script.text});
    }

    CScratchDir m_dir;
    std::map<std::string, int> m_skipped;  // of the last import, by kind
    int m_saved = 0;
};

// A model holds what its script said; a few things it keeps in a form that
// reads back differently, and those are named here, per kind.
void AlignWhatTheModelCannotCarryBack(CModel& model) {
    for (CModelTable& table : model.tables)
        for (CModelColumn& column : table.columns)
            // A type without a datatype code is kept as CHAR(10) with no scale
            // (-1); written back as CHAR(10), it reads back with scale 0.
            if (column.scale < 0) column.scale = 0;
}

// Oracle's unsized NUMBER (width 0) is written without a precision, and
// reads back with the precision the reading platform gives such a number.
void AlignUnsizedNumbers(const CModel& from, CModel& to) {
    for (const CModelTable& table : from.tables)
        for (const CModelColumn& column : table.columns) {
            if (column.width != 0) continue;
            for (CModelTable& other : to.tables)
                for (CModelColumn& same : other.columns)
                    if (AfxCompareNoCase(other.name.c_str(), table.name.c_str()) == 0 &&
                        AfxCompareNoCase(same.name.c_str(), column.name.c_str()) == 0)
                        same.width = 0;
        }
}

// One small model per family, imported from its script and written back as
// DDL in its own dialect: the exact script, and nothing said left out.
TEST_F(DdlTest, TheScriptOfASmallModelOfEachFamily) {
    const struct {
        const char* platform;
        const char* script;
        const char* expected;
    } cases[] = {
        {"sqlserver",
         "EXEC sp_addtype Flag, 'tinyint'\nGO\n"
         "CREATE DEFAULT df_zero AS 0\nGO\nCREATE RULE r_flag AS @v IN (0, 1)\nGO\n"
         "CREATE TABLE [dbo].[Order Lines] ([Id] int IDENTITY NOT NULL, [Qty] int NULL DEFAULT 1,\n"
         " [Done] Flag NOT NULL, [select] varchar(10) NULL CHECK ([select] <> ''),\n"
         " CONSTRAINT PK_OL PRIMARY KEY CLUSTERED (Id)) ON [DATA]\nGO\n"
         "CREATE INDEX IX_Qty ON [dbo].[Order Lines] (Qty DESC)\nGO\n"
         "CREATE TABLE dbo.Orders (Id int NOT NULL PRIMARY KEY, LineId int NULL\n"
         " REFERENCES dbo.[Order Lines] (Id) ON DELETE CASCADE)\nGO\n"
         "EXEC sp_bindefault 'df_zero', 'Order Lines.Qty'\nEXEC sp_bindrule r_flag, Flag\nGO\n"
         "CREATE PROCEDURE dbo.touch AS UPDATE dbo.Orders SET Id = Id\nGO\n",
         "-- Model for Microsoft SQL Server 2000 (T-SQL), written by vrnmodel\n"
         "EXEC sp_addtype 'Flag', 'tinyint'\nGO\n"
         "CREATE DEFAULT df_zero AS 0\nGO\n"
         "CREATE RULE r_flag AS @v IN (0, 1)\nGO\n"
         "EXEC sp_bindrule 'r_flag', 'Flag'\nGO\n"
         "CREATE TABLE dbo.[Order Lines] (\n"
         "  Id int IDENTITY NOT NULL,\n"
         "  Qty int DEFAULT 1 NULL,\n"
         "  Done Flag NOT NULL,\n"
         "  [select] varchar(10) NULL CHECK ([select] <> ''),\n"
         "  CONSTRAINT PK_OL PRIMARY KEY CLUSTERED (Id)\n"
         ") ON DATA\nGO\n"
         "CREATE TABLE dbo.Orders (\n"
         "  Id int NOT NULL,\n"
         "  LineId int NULL,\n"
         "  PRIMARY KEY NONCLUSTERED (Id)\n"
         ")\nGO\n"
         "CREATE NONCLUSTERED INDEX IX_Qty ON dbo.[Order Lines] (Qty DESC)\nGO\n"
         "EXEC sp_bindefault 'df_zero', 'dbo.Order Lines.Qty'\nGO\n"
         "ALTER TABLE dbo.Orders ADD FOREIGN KEY (LineId) REFERENCES dbo.[Order Lines] (Id) ON DELETE CASCADE\nGO\n"
         "CREATE PROCEDURE dbo.touch AS UPDATE dbo.Orders SET Id = Id\nGO\n"},
        {"oracle",
         "CREATE TABLE hr.jobs (job_id VARCHAR2(10) NOT NULL, title VARCHAR2(35), min_salary NUMBER(6),\n"
         " CONSTRAINT job_id_pk PRIMARY KEY (job_id))\n"
         " PCTFREE 10 NOLOGGING TABLESPACE users STORAGE (INITIAL 64K MAXEXTENTS UNLIMITED)\n"
         " PARTITION BY RANGE (min_salary) (PARTITION low VALUES LESS THAN (1000) TABLESPACE ts1,\n"
         "  PARTITION high VALUES LESS THAN (MAXVALUE));\n"
         "CREATE INDEX hr.job_title_ix ON hr.jobs (title) REVERSE LOCAL;\n"
         "CREATE TABLE hr.\"Job History\" (job_id VARCHAR2(10), note VARCHAR2(20));\n"
         "ALTER TABLE hr.\"Job History\" ADD CONSTRAINT jh_job_fk FOREIGN KEY (job_id) REFERENCES hr.jobs\n"
         " ON DELETE SET NULL;\n"
         "COMMENT ON TABLE hr.jobs IS 'Jobs, and what''s paid';\n",
         "-- Model for Oracle 9i (Oracle), written by vrnmodel\n"
         "SET DEFINE OFF\n"
         "CREATE TABLE hr.jobs (\n"
         "  job_id VARCHAR2(10) NOT NULL,\n"
         "  title VARCHAR2(35),\n"
         "  min_salary NUMBER(6),\n"
         "  CONSTRAINT job_id_pk PRIMARY KEY (job_id)\n"
         ") TABLESPACE users PCTFREE 10 NOLOGGING STORAGE (INITIAL 64K MAXEXTENTS UNLIMITED)"
         " PARTITION BY RANGE (min_salary) (PARTITION low VALUES LESS THAN (1000) TABLESPACE ts1,"
         " PARTITION high VALUES LESS THAN (MAXVALUE));\n"
         "CREATE TABLE hr.\"Job History\" (\n"
         "  job_id VARCHAR2(10),\n"
         "  note VARCHAR2(20)\n"
         ");\n"
         "CREATE INDEX job_title_ix ON hr.jobs (title) REVERSE LOCAL (PARTITION low, PARTITION high);\n"
         "COMMENT ON TABLE hr.jobs IS 'Jobs, and what''s paid';\n"
         "ALTER TABLE hr.\"Job History\" ADD CONSTRAINT jh_job_fk FOREIGN KEY (job_id) REFERENCES hr.jobs (job_id)"
         " ON DELETE SET NULL;\n"},
        {"db2zos",
         "CREATE STOGROUP SG1 VOLUMES ('*') VCAT CAT1;\n"
         "CREATE DATABASE DB1 STOGROUP SG1;\n"
         "CREATE TABLESPACE TS1 IN DB1 USING STOGROUP SG1;\n"
         "CREATE TABLE APP.ORDERS (ID INTEGER NOT NULL GENERATED ALWAYS AS IDENTITY, DOC CLOB(1M),\n"
         " CODE CHAR(8) FOR BIT DATA, PRIMARY KEY (ID)) IN DB1.TS1;\n"
         "CREATE UNIQUE INDEX APP.ORDERS_IX ON APP.ORDERS (CODE ASC) USING STOGROUP SG1 PRIQTY 48 SECQTY 720\n"
         " CLUSTER BUFFERPOOL BP1 CLOSE YES;\n"
         "--#SET TERMINATOR @\n"
         "CREATE PROCEDURE APP.PURGE() LANGUAGE SQL\nBEGIN\n  DELETE FROM APP.ORDERS;\nEND@\n",
         "-- Model for IBM DB2 UDB for OS/390 7.x (DB2 z/OS), written by vrnmodel\n"
         "CREATE STOGROUP SG1 VOLUMES ('*') VCAT CAT1;\n"
         "CREATE DATABASE DB1 STOGROUP SG1;\n"
         "CREATE TABLESPACE TS1 IN DB1 USING STOGROUP SG1;\n"
         "CREATE TABLE APP.ORDERS (\n"
         "  ID INTEGER GENERATED ALWAYS AS IDENTITY NOT NULL,\n"
         "  DOC CLOB(1048576),\n"
         "  CODE CHAR(8) FOR BIT DATA,\n"
         "  PRIMARY KEY (ID)\n"
         ") IN DB1.TS1;\n"
         "CREATE UNIQUE INDEX ORDERS_IX ON APP.ORDERS (CODE) CLUSTER PRIQTY 48 SECQTY 720 USING STOGROUP SG1"
         " BUFFERPOOL BP1 CLOSE YES;\n"
         "--#SET TERMINATOR @\n"
         "CREATE PROCEDURE APP.PURGE() LANGUAGE SQL\nBEGIN\n  DELETE FROM APP.ORDERS;\nEND\n@\n"
         "--#SET TERMINATOR ;\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.platform);
        const CDdlScript script = WriteDdl(Import(Platform(c.platform), {c.script}), CDdlOptions());
        EXPECT_EQ(script.text, c.expected);
        EXPECT_TRUE(script.warnings.empty());
    }
}

TEST_F(DdlTest, NamesThatNeedQuotingAreQuotedAsEachDialectQuotes) {
    CDialect tsql = DialectOfPlatform(Platform("sqlserver"), false);
    CDialect oracle = DialectOfPlatform(Platform("oracle"), false);
    CDialect generic = DialectOfPlatform(0, false);
    EXPECT_EQ(tsql.Quote("Orders"), "Orders");
    EXPECT_EQ(tsql.Quote("Order Lines"), "[Order Lines]");
    EXPECT_EQ(tsql.Quote("a]b"), "[a]]b]");
    EXPECT_EQ(tsql.Quote("order"), "[order]");
    EXPECT_EQ(tsql.Quote("1st"), "[1st]");
    EXPECT_EQ(oracle.Quote("Orders"), "\"Orders\"");  // folded to ORDERS unquoted
    EXPECT_EQ(oracle.Quote("ORDERS"), "ORDERS");
    EXPECT_EQ(oracle.Quote("orders"), "orders");
    EXPECT_EQ(oracle.Quote("say \"hi\""), "\"say \"\"hi\"\"\"");
    EXPECT_EQ(generic.Quote("Orders"), "Orders");
    EXPECT_EQ(generic.Quote("group"), "\"group\"");
    EXPECT_EQ(oracle.Qualified("CRAIG   ", "T"), "CRAIG.T");
    EXPECT_EQ(CDialect::Literal("it's"), "'it''s'");
}

TEST_F(DdlTest, HostileNamesAndTextsKeepTheScriptWhole) {
    for (const char* platform : {"sqlserver", "oracle", "db2"}) {
        SCOPED_TRACE(platform);
        const int code = Platform(platform);
        CVrnAPI builder;
        ASSERT_EQ(builder.Initialize(code, nullptr), 1);
        const unsigned long table = builder.AddEntity("we;ird \"name] GO", "dbo", 0, 0);
        builder.AddAttribute(table, "select", "INTEGER", -1, -1, 0, 0);
        builder.AddAttribute(table, "it's", "VARCHAR", 10, -1, 1, 0);
        builder.AddPrimaryKey(table, "pk ; x");
        builder.AddPrimaryKeyColumn(table, "select", 0);
        builder.SetEntityStringProperty(table, 2, "a comment; with 'quotes'\nGO\n/");
        builder.AddProcedure("p", "dbo", "CREATE PROCEDURE p AS\nGO\n/\nSELECT 1 @", 1);
        builder.AddCheckConstraint("ck", "\"select\" > 0\nGO\n/\n@", table, nullptr, 0);
        const CModel model = Saved(builder);
        CDdlScript script;
        const CModel back = RoundTrip(model, code, &script);
        CCompareOptions options;
        options.code = options.checks = false;  // their texts cannot be written whole, and that is said
        EXPECT_EQ(Changes(CompareModels(model, back, options)), "") << script.text;
        ASSERT_EQ(back.tables.size(), 1u);
        EXPECT_EQ(back.tables.at(0).name, "we;ird \"name] GO");
        EXPECT_NE(script.text.find("-- left out: procedure p"), npos) << script.text;
        EXPECT_NE(script.text.find("-- left out: check ck of we;ird"), npos) << script.text;
        EXPECT_TRUE(back.procedures.empty());
        EXPECT_TRUE(back.checks.empty());
    }
}

// Models built through the builder, as a catalog reader builds them, come
// back from their own DDL with every kind the family writes: physical
// options by property code, partitions, bindings, checks and actions.
TEST_F(DdlTest, ModelsBuiltThroughTheBuilderComeBackFromTheirOwnScript) {
    // Property codes of the builder.
    constexpr int kDefinition = 2, kStorageSpace = 15, kInitial = 16, kPctFree = 22, kLogging = 28, kIdentity = 82;
    constexpr int kUnique = 34, kCluster = 40, kStorageGroup = 31, kBufferPool = 27, kClose = 49, kPartitionLimit = 54;
    constexpr int kOnDeleteCascade = 77;
    for (const char* platform : {"sqlserver", "oracle", "db2zos", "db2"}) {
        SCOPED_TRACE(platform);
        const int code = Platform(platform);
        CVrnAPI builder;
        ASSERT_EQ(builder.Initialize(code, nullptr), 1);
        const bool tsql = code == Platform("sqlserver");
        if (tsql) {
            builder.AddUserType("Flag", "tinyint");
            builder.AddDefault("df_zero", "0", nullptr);
            builder.AddRule("r_flag", "@v IN (0, 1)", nullptr);
            builder.BindRule("r_flag", "Flag");
        }
        const unsigned long orders = builder.AddEntity("ORDERS", "APP", 0, 0);
        const unsigned long id = builder.AddAttribute(orders, "ID", "INTEGER", -1, -1, 0, 0);
        builder.SetAttributeProperty(id, kIdentity, 0);
        builder.AddAttribute(orders, "PLACED", "DATE", -1, -1, 0, 0);
        builder.AddAttribute(orders, "QTY", tsql ? "Flag" : "SMALLINT", -1, -1, 1, 0);
        builder.AddAttribute(orders, "NOTE", "VARCHAR", 40, -1, 1, 0);
        builder.AddPrimaryKey(orders, "PK_ORDERS");
        builder.AddPrimaryKeyColumn(orders, "ID", 0);
        builder.AddCheckConstraint("CK_QTY", "QTY >= 0", orders, "QTY", 0);
        builder.AddCheckConstraint(nullptr, "PLACED IS NOT NULL OR NOTE IS NULL", orders, nullptr, 0);
        if (tsql) builder.BindDefault("df_zero", "ORDERS.QTY");
        if (code == Platform("oracle")) {
            builder.SetEntityStringProperty(orders, kStorageSpace, "USERS");
            builder.SetEntityProperty(orders, kPctFree, 20);
            builder.SetEntityProperty(orders, kInitial, 128);
            builder.SetEntityProperty(orders, kLogging, 0);
            builder.SetEntityStringProperty(orders, kDefinition, "Orders as placed");
            builder.AddTablePartitionColumn(orders, "PLACED", 0);
            const unsigned long early = builder.AddTablePartition(orders, "P_EARLY");
            builder.SetPartitionStringProperty(early, kPartitionLimit, "DATE '2020-01-01'");
            builder.SetPartitionProperty(early, kPctFree, 5);
            const unsigned long late = builder.AddTablePartition(orders, "P_LATE");
            builder.SetPartitionStringProperty(late, kPartitionLimit, "MAXVALUE");
        }
        const unsigned long index = builder.AddIndex(orders, "IX_PLACED");
        builder.AddIndexColumn(index, "PLACED", 0, 1);
        builder.SetIndexProperty(index, kUnique, 0);
        if (code == Platform("db2zos")) {
            builder.SetIndexStringProperty(index, kStorageGroup, "SG1");
            builder.SetIndexProperty(index, kInitial, 720);
            builder.SetIndexStringProperty(index, kBufferPool, "BP2");
            builder.SetIndexStringProperty(index, kClose, "YES");
            builder.SetIndexProperty(index, kCluster, 1);
        }
        const unsigned long lines = builder.AddEntity("ORDER_LINES", "APP", 0, 0);
        builder.AddAttribute(lines, "ORDER_ID", "INTEGER", -1, -1, 0, 0);
        builder.AddAttribute(lines, "LINE_NO", "SMALLINT", -1, -1, 0, 0);
        builder.AddPrimaryKey(lines, "PK_LINES");
        builder.AddPrimaryKeyColumn(lines, "ORDER_ID", 0);
        builder.AddPrimaryKeyColumn(lines, "LINE_NO", 0);
        const unsigned long key = builder.AddForeignKey(orders, lines, "FK_LINES", "ORDERS", "APP");
        builder.AddForeignKeyColumnPair(key, "ID", "ORDER_ID", 0);
        builder.SetForeignKeyProperty(key, kOnDeleteCascade, 1);
        const CModel model = Saved(builder);
        CDdlScript script;
        const CModel back = RoundTrip(model, code, &script);
        EXPECT_EQ(Changes(CompareModels(model, back)), "") << script.text;
        EXPECT_TRUE(script.warnings.empty()) << script.warnings.front();
        EXPECT_EQ(back.tables.size(), 2u);
        // What the family writes is there to compare.
        EXPECT_EQ(back.foreignKeys.size(), 1u);
        EXPECT_EQ(back.checks.size(), 2u);
        if (tsql) {
            EXPECT_EQ(back.rules.size() + back.defaults.size() + back.userDatatypes.size(), 3u);
        }
        if (code == Platform("oracle")) {
            EXPECT_EQ(back.partitions.size(), 2u);
            EXPECT_EQ(back.tables.at(0).properties.size(), 2u);  // logging and the partition column
            EXPECT_EQ(back.tables.at(0).definition, "Orders as placed");
        }
        if (code == Platform("db2zos")) {
            EXPECT_EQ(back.tables.at(0).indexes.back().properties.size(), 3u);  // storage group, buffer pool, close
        }
    }
}

// Same platform: every sample's model comes back from its own DDL.
TEST_F(DdlTest, EverySampleComesBackFromItsOwnScript) {
    for (const CSample& sample : AllSamples()) {
        SCOPED_TRACE(sample.prefix);
        const int platform = Platform(sample.platform);
        CModel model = Import(platform, SampleTexts(sample.prefix));
        CDdlScript script;
        CModel back = RoundTrip(model, platform, &script);
        AlignWhatTheModelCannotCarryBack(model);
        AlignWhatTheModelCannotCarryBack(back);
        EXPECT_EQ(Changes(CompareModels(model, back)), "");
        EXPECT_EQ(back.tables.size(), model.tables.size());
    }
}

// The generic script of every sample is executed by SQLite, and the
// database it makes is imported: tables, columns, keys and foreign keys come
// back. SQLite keeps no owners, and the script's own comments say what it
// renamed or left out, so owners are set aside and only those kinds compared.
TEST_F(DdlTest, SqliteExecutesTheGenericScriptOfEverySample) {
    for (const CSample& sample : AllSamples()) {
        if (std::string(sample.prefix) == "oracle_legacy_qs") continue;  // a package, no table
        SCOPED_TRACE(sample.prefix);
        CModel model = Import(Platform(sample.platform), SampleTexts(sample.prefix));
        const CDdlScript script = DdlFor(model, 0);
        const std::string database = m_dir.File(std::string(sample.prefix) + ".db");
        EXPECT_EQ(RunInSqlite({script.text}, database), "");

        CVrnAPI builder;
        ASSERT_EQ(builder.Initialize(0, nullptr), 1);
        CImportReport report;
        CDdlImporter importer(builder, report);
        std::string readError;
        ASSERT_TRUE(ImportSqliteDatabase(database, importer, readError)) << readError;
        importer.Finish();
        const CModel back = Saved(builder);
        // Names SQLite cannot tell apart are renamed (the next test shows
        // how): the tables that hold them, and foreign keys to them, are set
        // aside here.
        std::map<std::string, int> names;
        for (const CModelTable& table : model.tables) ++names[Upper(table.name)];
        std::set<std::string> setAside, referencing;
        for (const CModelTable& table : model.tables) {
            std::set<std::string> columns;
            bool clash = names[Upper(table.name)] > 1;
            for (const CModelColumn& column : table.columns) clash = !columns.insert(Upper(column.name)).second || clash;
            if (clash) setAside.insert(Upper(table.name));
        }
        for (const CModelForeignKey& key : model.foreignKeys)
            if (key.parentTable >= 0 && key.childTable >= 0 &&
                setAside.count(Upper(model.tables[static_cast<std::size_t>(key.parentTable)].name)))
                referencing.insert(Upper(model.tables[static_cast<std::size_t>(key.childTable)].name));
        EXPECT_EQ(setAside.size(), std::string(sample.prefix) == "db2luw_SAMPLE" ? 8u : 0u);
        auto setAsideChange = [&](const CModelChange& change) {
            std::string table = change.table.empty() ? change.object.substr(change.object.find(' ') + 1) : change.table;
            table = Upper(table.substr(table.find('.') == std::string::npos ? 0 : table.find('.') + 1));
            const bool renamed = change.change == EModelChange::Added && names.count(table) == 0;
            return renamed || setAside.count(table) ||
                   (referencing.count(table) && change.object.rfind("foreign key", 0) == 0);
        };
        for (CModelTable& table : model.tables) table.owner.clear();
        CModel read = back;
        AlignWhatTheModelCannotCarryBack(model);
        AlignWhatTheModelCannotCarryBack(read);
        CCompareOptions compared;
        compared.checks = compared.userDatatypes = compared.code = compared.partitions = compared.storage =
            compared.storageObjects = false;
        std::string changes;
        // Generic SQL takes constant defaults only, and has no identity, no
        // user datatypes (columns take the base type) and no clustering; the
        // script says what it left out.
        const std::set<std::string> unsaid = {"default",  "identity",   "user datatype",
                                              "clustered", "bound rule", "bound default"};
        AlignUnsizedNumbers(model, read);
        // A type written without a length takes the width each platform gives such types.
        for (CModel* each : {&model, &read})
            for (CModelTable& table : each->tables)
                for (CModelColumn& column : table.columns) {
                    const CTypeNameRow* type = FindTypeName(column.datatype);
                    const CTypeSpelling& generic = type->spellings[static_cast<int>(ETypeDialect::Generic)];
                    if (generic.arguments == ETypeArguments::None && std::string(generic.name).find("LOB") == npos)
                        column.width = 0;
                }
        for (const CModelChange& change : CompareModels(model, read, compared))
            if (!unsaid.count(change.field) && !setAsideChange(change)) changes += change.Describe() + "\n";
        EXPECT_EQ(changes, "");
    }
}

// SQLite keeps tables and indexes in one name space, without owners, and
// takes column names without regard to case: what would clash is renamed,
// and the script says so.
TEST_F(DdlTest, GenericNamesThatWouldClashInSqliteAreRenamedAndSaid) {
    const CModel model = Import(Platform("db2"), {
        "CREATE TABLE A.T (\"ID\" INTEGER NOT NULL, \"id\" INTEGER, PRIMARY KEY (\"ID\"));\n"
        "CREATE TABLE B.T (X INTEGER);\n"
        "CREATE INDEX A.T ON A.T (\"ID\" DESC);\n"
        "CREATE TABLE sqlite_stat9 (Y INTEGER);\n"});
    const CDdlScript script = DdlFor(model, 0);
    EXPECT_EQ(script.text,
              "-- Model for generic SQL, written by vrnmodel\n"
              "-- left out: the owners of 2 tables (generic SQL names tables alone)\n"
              "-- left out: the name T of B.T, written B_T (another table has it, or SQLite keeps it for itself)\n"
              "-- left out: the name sqlite_stat9 of sqlite_stat9, written T_sqlite_stat9 (another table has it, or SQLite "
              "keeps it for itself)\n"
              "-- left out: the name T of an index of T, written T_T (a table or another index has it)\n"
              "-- left out: the name id of a column of T, written id_2 (another column differs from it in letter case only)\n"
              "CREATE TABLE T (\n"
              "  ID INTEGER NOT NULL,\n"
              "  id_2 INTEGER,\n"
              "  PRIMARY KEY (ID)\n"
              ");\n"
              "CREATE TABLE B_T (\n"
              "  X INTEGER\n"
              ");\n"
              "CREATE TABLE T_sqlite_stat9 (\n"
              "  Y INTEGER\n"
              ");\n"
              "CREATE INDEX T_T ON T (ID DESC);\n");
    EXPECT_EQ(script.warnings,
              (std::vector<std::string>{"names of columns left out (1): another column differs from it in letter case only",
                                        "names of indexes left out (1): a table or another index has it",
                                        "names of tables left out (2): another table has it, or SQLite keeps it for itself",
                                        "owners of tables left out (2): generic SQL names tables alone"}));
    EXPECT_EQ(RunInSqlite({script.text}), "");
}

// Across platforms: a T-SQL model written for Oracle, that one for DB2, and
// that one for T-SQL again keeps its tables, columns, keys, indexes and
// foreign keys. Types are kept by datatype code except where Oracle has no
// type of its own: its platform keeps integers as NUMBER, datetime as DATE
// and money as NUMBER(19,4), and those stay as Oracle made them.
TEST_F(DdlTest, TransactSqlThroughOracleAndDb2ComesBack) {
    for (const char* prefix : {"mssql_instpubs", "flowable_mssql"}) {
        SCOPED_TRACE(prefix);
        CModel model = Import(Platform("sqlserver"), SampleTexts(prefix));
        CModel oracle = RoundTrip(model, Platform("oracle"));
        CModel db2 = RoundTrip(oracle, Platform("db2"));
        CModel back = RoundTrip(db2, Platform("sqlserver"));
        for (CModel* each : {&model, &oracle, &back}) AlignWhatTheModelCannotCarryBack(*each);
        AlignUnsizedNumbers(oracle, back);
        CCompareOptions compared;
        compared.checks = compared.userDatatypes = compared.code = compared.partitions = compared.storage =
            compared.storageObjects = false;
        const std::set<std::string> typeFields = {"datatype", "width", "scale"};
        // Oracle and DB2 cluster no primary key and know no user datatypes of T-SQL's kind.
        const std::set<std::string> unsaid = {"clustered", "user datatype"};
        std::string structure, types;
        for (const CModelChange& change : CompareModels(model, back, compared))
            if (!typeFields.count(change.field) && !unsaid.count(change.field)) structure += change.Describe() + "\n";
        for (const CModelChange& change : CompareModels(oracle, back, compared))
            if (typeFields.count(change.field)) types += change.Describe() + "\n";
        EXPECT_EQ(structure, "");
        EXPECT_EQ(types, "");
        EXPECT_EQ(back.tables.size(), model.tables.size());
    }
}

// The command as a user runs it: the script on standard output or in a file,
// what was left out on standard error, and clear refusals.
TEST_F(CommandLineTest, DdlWritesTheScriptAndSaysWhatItLeftOut) {
    WriteBytes(m_dir.File("s.sql"),
               "CREATE TABLE orders (id INT NOT NULL PRIMARY KEY, note VARCHAR(20) NULL)\nGO\n"
               "CREATE TABLE lines (id INT NOT NULL, order_id INT NULL REFERENCES orders (id))\nGO\n"
               "CREATE RULE r_positive AS @v > 0\nGO\n"
               "CREATE PROCEDURE touch AS SELECT 1\nGO\n");
    const std::string model = m_dir.File("m.vrn");
    ASSERT_EQ(Run("import " + m_dir.File("s.sql") + " -o " + model + " --platform sqlserver"), 0) << Err();

    ASSERT_EQ(Run("ddl " + model), 0) << Err();
    EXPECT_NE(Out().find("CREATE TABLE orders (\n  id int NOT NULL,\n"), npos) << Out();
    EXPECT_NE(Out().find("\nGO\n"), npos) << Out();
    EXPECT_EQ(Err(), "");

    ASSERT_EQ(Run("ddl " + model + " --platform oracle -o " + m_dir.File("o.sql")), 0) << Err();
    EXPECT_EQ(Out(), "");
    const std::string oracle = ReadBytes(m_dir.File("o.sql"));
    EXPECT_NE(oracle.find("CREATE TABLE orders (\n  id INTEGER NOT NULL,\n  note VARCHAR2(20),\n"), npos) << oracle;
    EXPECT_NE(oracle.find("-- left out: rule r_positive (T-SQL only)\n"), npos) << oracle;
    EXPECT_NE(oracle.find("-- left out: procedure touch (written in T-SQL)\n"), npos) << oracle;
    EXPECT_EQ(Err(), "vrnmodel: warning: procedures left out (1): written in T-SQL\n"
                     "vrnmodel: warning: rules left out (1): T-SQL only\n");

    ASSERT_EQ(Run("ddl " + model + " --tables 'ORD*' --no-code"), 0) << Err();
    EXPECT_NE(Out().find("CREATE TABLE orders"), npos) << Out();
    EXPECT_EQ(Out().find("CREATE TABLE lines"), npos) << Out();
    EXPECT_EQ(Out().find("PROCEDURE"), npos) << Out();

    EXPECT_EQ(Run("ddl " + model + " --tables 'nothing*'"), 1);
    EXPECT_NE(Err().find("no table of '" + model + "' matches --tables nothing*"), npos) << Err();
    EXPECT_EQ(Run("ddl " + model + " --platform nowhere"), 2);
    EXPECT_EQ(Run("ddl " + model + " -o " + model), 1);  // never over its input
    EXPECT_EQ(Run("ddl " + m_dir.File("s.sql")), 1);     // a script is no model
    EXPECT_EQ(Run("ddl"), 2);
}

// What a user's names and texts hold never becomes SQL of its own: a line
// break in a name or a default that a comment line carries, a DB2 storage
// space with a semicolon, a T-SQL type named like a reserved word.
TEST_F(DdlTest, NamesAndTextsInCommentsAndClausesStayInside) {
    const CModel model = Import(Platform("oracle"), {
        "CREATE TABLE \"a\nDROP TABLE victim;\n--\" (id NUMBER(10) NOT NULL, d NUMBER DEFAULT (1 +\n2));\n"
        "COMMENT ON TABLE \"a\nDROP TABLE victim;\n--\" IS 'hello';\n"});
    for (const char* platform : {"sqlserver", "oracle"}) {
        CDdlScript script;
        const CModel back = RoundTrip(model, Platform(platform), &script);
        ASSERT_EQ(back.tables.size(), 1u) << script.text;
        EXPECT_EQ(back.tables.at(0).name, "a\nDROP TABLE victim;\n--");
        EXPECT_EQ(m_skipped.count("DROP"), 0u) << platform << ":\n" << script.text;
    }
    EXPECT_EQ(RunInSqlite({"CREATE TABLE victim (x)", DdlFor(model, 0).text, "SELECT * FROM victim"}), "");

    const CModel db2 = Import(Platform("db2"), {"CREATE TABLE t (a INTEGER) IN \"ts;DROP TABLE victim\";\n"});
    CDdlScript script;
    const CModel back = RoundTrip(db2, Platform("db2"), &script);
    EXPECT_NE(script.text.find(") IN \"ts;DROP TABLE victim\";\n"), npos) << script.text;
    EXPECT_EQ(Changes(CompareModels(db2, back)), "");

    const CModel tsql = Import(Platform("sqlserver"), {
        "EXEC sp_addtype 'Level', 'varchar(20)'\nGO\nCREATE TABLE notes (id int NOT NULL, body Level NULL)\nGO\n"});
    const CModel tsqlBack = RoundTrip(tsql, Platform("sqlserver"), &script);
    EXPECT_EQ(Changes(CompareModels(tsql, tsqlBack)), "") << script.text;
}

// DB2 keeps a primary key's physical options on the unique index the key
// is built on: they are written there, and come back on the key.
TEST_F(DdlTest, Db2PrimaryKeysKeepTheirIndexOptions) {
    const CModel model = Import(Platform("db2zos"), {
        "CREATE TABLE OWN1.T1 (ID INTEGER NOT NULL, PRIMARY KEY (ID)) IN DB1.TS1;\n"
        "CREATE UNIQUE INDEX OWN1.IX1 ON OWN1.T1 (ID) USING STOGROUP SG1 PRIQTY 48 SECQTY 48 CLUSTER BUFFERPOOL BP2\n"
        " GBPCACHE CHANGED COPY YES DEFINE NO PCTFREE 10;\n"});
    ASSERT_EQ(model.tables.size(), 1u);
    ASSERT_EQ(model.tables.at(0).indexes.size(), 1u);
    EXPECT_EQ(model.tables.at(0).indexes.at(0).properties.size(), 5u);
    CDdlScript script;
    const CModel back = RoundTrip(model, Platform("db2zos"), &script);
    EXPECT_EQ(Changes(CompareModels(model, back)), "") << script.text;
    EXPECT_NE(script.text.find("  PRIMARY KEY (ID)\n"), npos) << script.text;
    EXPECT_NE(script.text.find("CREATE UNIQUE INDEX IX1 ON OWN1.T1 (ID) CLUSTER PRIQTY 48"), npos) << script.text;
}

// A check of one column belongs to that column alone, even where another
// differs from it in letter case only; a table without columns is no
// statement any SQL takes.
TEST_F(DdlTest, ChecksGoWithTheirOwnColumnAndEmptyTablesAreSaid) {
    const CModel model = Import(Platform("sqlserver"), {
        "CREATE TABLE t ([a] int NULL CONSTRAINT ck_a CHECK (a > 0), [A] int NULL)\nGO\nCREATE TABLE e ()\nGO\n"});
    CDdlScript script;
    const CModel back = RoundTrip(model, Platform("sqlserver"), &script);
    EXPECT_EQ(back.checks.size(), 1u) << script.text;
    EXPECT_NE(script.text.find("-- left out: table e (no SQL creates a table without columns)\n"), npos) << script.text;
    EXPECT_EQ(script.warnings,
              (std::vector<std::string>{"tables without columns left out (1): no SQL creates a table without columns"}));
}

// Types are written so that they read back to their datatype code: T-SQL's
// float is FLT and DBL alike, Oracle has no REAL of its own name, and T-SQL
// writes its largest lengths as max.
TEST_F(DdlTest, TypesReadBackToTheirCodes) {
    const CModel model = Import(Platform("sqlserver"), {
        "CREATE TABLE t (a real NULL, b float NULL, c double precision NULL, d varchar(max) NULL,\n"
        " e nvarchar(max) NULL, f varchar(20) NULL)\nGO\n"});
    for (const char* platform : {"sqlserver", "oracle", "db2", "sqlite"}) {
        SCOPED_TRACE(platform);
        CDdlScript script;
        const CModel back = RoundTrip(model, Platform(platform), &script);
        ASSERT_EQ(back.tables.size(), 1u) << script.text;
        std::vector<std::string> codes;
        for (const CModelColumn& column : back.tables.at(0).columns) codes.push_back(column.datatype);
        EXPECT_EQ(codes, (std::vector<std::string>{"SFL", "FLT", "DBL", "VAR", "VAN", "VAR"})) << script.text;
    }
    const std::string tsql = WriteDdl(model, CDdlOptions()).text;
    EXPECT_NE(tsql.find("  d varchar(max) NULL,\n  e nvarchar(max) NULL,"), npos) << tsql;
    EXPECT_NE(tsql.find("  c DOUBLE PRECISION NULL,"), npos) << tsql;
    // A type DB2 has no name for is written as DB2 writes its nearest, never by T-SQL's name.
    const CModel money = Import(Platform("sqlserver"), {"CREATE TABLE m (a money NULL, b bit NULL, c uniqueidentifier NULL)\nGO\n"});
    const std::string db2 = DdlFor(money, Platform("db2")).text;
    EXPECT_NE(db2.find("  a DECIMAL(19,4),\n  b SMALLINT,\n  c CHAR(16) FOR BIT DATA\n"), npos) << db2;
}

// Conditions and defaults read in one dialect are written with the quoted
// names and strings of another; their functions stay as written.
TEST_F(DdlTest, ExpressionsTakeTheTargetsQuotesAndStrings) {
    const CModel model = Import(Platform("sqlserver"), {
        "CREATE TABLE [t] ([code] [nvarchar](5) NOT NULL CONSTRAINT [CK_code] CHECK ([code] IN (N'A', N'it''s')),\n"
        " [note] varchar(10) NULL DEFAULT (N'none'))\nGO\n"});
    const std::string generic = DdlFor(model, 0).text;
    EXPECT_NE(generic.find("  code NVARCHAR(5) NOT NULL CONSTRAINT CK_code CHECK (code IN ('A', 'it''s')),\n"), npos)
        << generic;
    EXPECT_NE(generic.find("  note VARCHAR(10) DEFAULT ('none')\n"), npos) << generic;
    EXPECT_EQ(RunInSqlite({generic, "INSERT INTO t (code) VALUES ('it''s')"}), "");
    EXPECT_NE(RunInSqlite({generic, "INSERT INTO t (code) VALUES ('B')"}), "");  // the check holds
    // Written for its own family, a text stays exactly as the model holds it.
    EXPECT_NE(WriteDdl(model, CDdlOptions()).text.find("CHECK ([code] IN (N'A', N'it''s'))"), npos);
}

// A file can name a column a key, an index or a foreign key does not find
// (another program wrote it, or it was damaged): such an object is left out
// and said, never written with an empty column.
TEST_F(DdlTest, KeysNamingColumnsTheModelLacksAreSaid) {
    CModel model = Import(Platform("sqlserver"), {
        "CREATE TABLE p (id int NOT NULL PRIMARY KEY)\nGO\n"
        "CREATE TABLE c (id int NOT NULL PRIMARY KEY, p_id int NULL REFERENCES p (id))\nGO\n"
        "CREATE INDEX ix_c ON c (p_id)\nGO\n"});
    ASSERT_EQ(model.tables.size(), 2u);
    model.tables.at(0).indexes.at(0).columns.at(0).name.clear();
    model.tables.at(1).indexes.back().columns.at(0).name.clear();
    model.foreignKeys.at(0).pairs.at(0).childColumn.clear();
    for (const int platform : {Platform("sqlserver"), 0}) {
        const CDdlScript script = DdlFor(model, platform);
        EXPECT_EQ(script.text.find("()"), npos) << script.text;
        EXPECT_EQ(script.text.find("\"\""), npos) << script.text;
        EXPECT_NE(script.text.find("-- left out: primary key"), npos) << script.text;
        EXPECT_NE(script.text.find("-- left out: index ix_c of c (it names a column the model does not hold)"), npos)
            << script.text;
        EXPECT_NE(script.text.find("-- left out: foreign key"), npos) << script.text;
    }
}

}  // namespace
