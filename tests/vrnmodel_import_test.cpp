// The client's imports, checked in the saved model file: the public sample
// scripts, small scripts for each dialect feature, SQLite databases, and the
// command line itself.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

#include "CommandLineTest.h"
#include "DdlImporter.h"
#include "ModelFileReader.h"
#include "SqlSource.h"
#include "SqliteImporter.h"
#include "TestBuilder.h"

namespace {

const std::string kSamples = VRN_SAMPLES_DIR;

class ImportTest : public ::testing::Test {
protected:
    // Imports the sources into a new model for `platform` and saves it.
    CModelFileReader& Import(int platform, const std::vector<std::string>& paths) {
        CVrnAPI builder;
        EXPECT_EQ(builder.Initialize(platform, nullptr), 1);
        CDdlImporter importer(builder, m_report);
        for (const std::string& path : paths) {
            if (IsSqliteFile(path)) {
                std::string error;
                EXPECT_TRUE(ImportSqliteDatabase(path, importer, error)) << error;
                continue;
            }
            std::string text, error;
            EXPECT_TRUE(ReadSourceText(path, text, error)) << error;
            importer.ImportScript(path, text);
        }
        importer.Finish();
        const std::string model = m_dir.File("model.vrn");
        builder.SaveToFile(model.c_str());
        EXPECT_STREQ(builder.GetVrnFile()->GetLastError(), "");
        m_reader = std::make_unique<CModelFileReader>(model);
        return *m_reader;
    }
    CModelFileReader& ImportText(int platform, const std::string& script) {
        const std::string path = m_dir.File("script.sql");
        WriteBytes(path, script);
        return Import(platform, {path});
    }
    std::vector<std::string> Samples(const std::string& prefix) {
        std::vector<std::string> paths;
        for (const auto& entry : std::filesystem::directory_iterator(kSamples))
            if (entry.path().filename().string().rfind(prefix, 0) == 0) paths.push_back(entry.path().string());
        std::sort(paths.begin(), paths.end());
        EXPECT_FALSE(paths.empty()) << "no sample named " << prefix << "* in " << kSamples;
        return paths;
    }
    std::string Scalar(const std::string& sql) { return m_reader->Scalar(sql); }

    CScratchDir m_dir;
    CImportReport m_report;
    std::unique_ptr<CModelFileReader> m_reader;
};

// Rows of each kind that a sample (or set of samples) must yield.
struct CSampleCase {
    const char* prefix;
    int platform;
    int tables, columns, primaryKeys, otherIndexes, foreignKeys, checks, userTypes, triggers, procedures, packages,
        partitions, storageObjects, bindings;
};

TEST_F(ImportTest, EverySampleYieldsWhatItDeclares) {
    const CSampleCase cases[] = {
        {"mssql_instpubs", 41, 11, 64, 9, 7, 10, 6, 3, 1, 4, 0, 0, 1, 0},
        {"flowable_mssql", 41, 62, 844, 62, 154, 59, 0, 0, 0, 0, 0, 0, 0, 0},
        {"sybase_ase", 54, 7, 19, 5, 0, 2, 0, 2, 0, 6, 0, 0, 0, 2},
        {"mssql_obevo_ssms", 41, 2, 14, 2, 1, 0, 0, 1, 1, 0, 0, 0, 0, 4},
        {"oracle_legacy_hr", 47, 7, 35, 7, 18, 10, 2, 0, 2, 1, 0, 0, 0, 0},
        {"oracle_legacy_sh", 47, 8, 85, 6, 18, 8, 0, 0, 0, 0, 0, 132, 0, 0},
        {"oracle_legacy_qs", 47, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0},
        {"db2luw_SAMPLE", 44, 57, 232, 17, 16, 12, 1, 0, 2, 7, 0, 0, 0, 0},
        {"db2zos_genevaers", 46, 43, 797, 43, 60, 62, 1, 0, 0, 1, 0, 0, 51, 0},
    };
    for (const CSampleCase& c : cases) {
        SCOPED_TRACE(c.prefix);
        m_report = CImportReport();
        Import(c.platform, Samples(c.prefix));
        EXPECT_EQ(m_reader->Count("Entity"), c.tables);
        EXPECT_EQ(m_reader->Count("Attribute"), c.columns);
        EXPECT_EQ(Scalar("SELECT count(*) FROM Indexes WHERE key_type = 'P'"), std::to_string(c.primaryKeys));
        EXPECT_EQ(Scalar("SELECT count(*) FROM Indexes WHERE key_type <> 'P'"), std::to_string(c.otherIndexes));
        EXPECT_EQ(m_reader->Count("ForeignKey"), c.foreignKeys);
        EXPECT_EQ(m_reader->Count("CheckConstraints"), c.checks);
        EXPECT_EQ(m_reader->Count("UserDatatype"), c.userTypes);
        EXPECT_EQ(m_reader->Count("DbTrigger"), c.triggers);
        EXPECT_EQ(m_reader->Count("Proc"), c.procedures);
        EXPECT_EQ(m_reader->Count("DbPackage"), c.packages);
        EXPECT_EQ(m_reader->Count("Partition"), c.partitions);
        EXPECT_EQ(m_reader->Count("Storage_Object"), c.storageObjects);
        EXPECT_EQ(Scalar("SELECT (SELECT count(*) FROM Attribute WHERE rule_id <> 0 OR default_id <> 0) + "
                         "(SELECT count(*) FROM UserDatatype WHERE rule_id <> 0 OR default_id <> 0)"),
                  std::to_string(c.bindings));
        // Every statement read is applied or skipped, and each skipped one has its place.
        for (const auto& [kind, count] : m_report.skipped)
            EXPECT_EQ(m_report.skippedAt.at(kind).size(), static_cast<std::size_t>(count)) << kind;
        EXPECT_GT(m_report.applied, 0);
        EXPECT_EQ(m_report.statements, m_report.applied + m_report.SkippedTotal());
    }
}

// What the model has no place for is counted by its kind with its place,
// client commands included; what fails inside a statement that is applied
// is a warning with the statement's line.
TEST_F(ImportTest, EveryStatementIsAppliedOrSkippedWithItsPlace) {
    const std::string script =
        "SET ECHO OFF\n"
        "SPOOL create.log\n"
        "CREATE TABLE t (a NUMBER(10) PRIMARY KEY, a NUMBER(10));\n"
        "GRANT SELECT ON t TO public;\n"
        "ALTER TABLE t DROP COLUMN b;\n"
        "CREATE INDEX ix_lower ON t (lower(a));\n"
        "ALTER TABLE nowhere ADD CONSTRAINT fk FOREIGN KEY (a) REFERENCES t (a);\n"
        "COMMENT ON COLUMN t.missing IS 'no such column';\n"
        "CREATE SEQUENCE s;\n"
        "SPOOL OFF\n";
    ImportText(47, script);
    const std::string place = m_dir.File("script.sql") + ":";
    EXPECT_EQ(m_report.statements, 10);
    EXPECT_EQ(m_report.applied, 1);  // the table
    const std::map<std::string, std::vector<std::string>> expected = {
        {"SET", {place + "1"}},
        {"SPOOL", {place + "2", place + "10"}},
        {"GRANT", {place + "4"}},
        {"ALTER TABLE", {place + "5", place + "7"}},
        {"CREATE INDEX", {place + "6"}},
        {"COMMENT ON", {place + "8"}},
        {"CREATE SEQUENCE", {place + "9"}},
    };
    EXPECT_EQ(m_report.skippedAt, expected);
    // Drops and changes are applied as they are read; the rest when the model is built.
    const std::vector<std::string> warnings = {
        place + "5: ALTER TABLE t: column b not dropped: no statement before declares it",
        place + "3: column a appears twice in its table: the second is skipped",
        place + "6: index ix_lower on t skipped: it indexes the expression lower(a), and a model keeps indexes on "
                "columns only",
        place + "8: comment on column missing, which t does not have, skipped",
        place + "7: ALTER TABLE of unknown table nowhere skipped",
    };
    EXPECT_EQ(m_report.warnings, warnings);
    EXPECT_EQ(m_reader->Count("Attribute"), 1);
}

// Four times the script gives four times everything: statements are cut
// and applied one at a time, and nothing is lost or counted twice at scale.
TEST_F(ImportTest, FourTimesTheScriptGivesFourTimesTheCounts) {
    auto script = [](int tables) {
        std::string text;
        for (int t = 0; t < tables; ++t) {
            const std::string name = "t" + std::to_string(t);
            text += "CREATE TABLE " + name + " (id INT NOT NULL, parent_id INT, note VARCHAR(20),\n"
                    "  CONSTRAINT pk_" + name + " PRIMARY KEY (id));\n"
                    "CREATE INDEX ix_" + name + " ON " + name + " (note);\n"
                    "ALTER TABLE " + name + " ADD CONSTRAINT fk_" + name + " FOREIGN KEY (parent_id) REFERENCES " +
                    name + " (id);\nGRANT SELECT ON " + name + " TO public;\n";
        }
        return text;
    };
    ImportText(47, script(50));
    const CImportReport small = m_report;
    const int smallColumns = m_reader->Count("Attribute"), smallKeys = m_reader->Count("ForeignKey");
    m_report = CImportReport();
    ImportText(47, script(200));
    EXPECT_EQ(m_report.statements, 4 * small.statements);
    EXPECT_EQ(m_report.applied, 4 * small.applied);
    EXPECT_EQ(m_report.skipped.at("GRANT"), 4 * small.skipped.at("GRANT"));
    EXPECT_EQ(m_report.imported, (std::map<std::string, int>{{"tables", 200}, {"columns", 600}, {"primary keys", 200},
                                                             {"indexes", 200}, {"foreign keys", 200}}));
    EXPECT_EQ(m_reader->Count("Attribute"), 4 * smallColumns);
    EXPECT_EQ(m_reader->Count("ForeignKey"), 4 * smallKeys);
    EXPECT_TRUE(m_report.warnings.empty());
}

// A type the platform has no datatype code for is kept as CHAR(10): the
// model cannot say what it was, so the import does.
TEST_F(ImportTest, ATypeWithoutADatatypeCodeIsSaidToBeKeptAsChar) {
    ImportText(44, "CREATE TABLE docs (id INTEGER, body XML, note app.shortnote, size DECIMAL(9,2));\n");
    EXPECT_EQ(m_reader->Column("SELECT datatype || ' ' || width FROM Attribute ORDER BY attribute_no"),
              (std::vector<std::string>{"INT 10", "CH 10", "CH 10", "DC 9"}));
    const std::string place = m_dir.File("script.sql") + ":1: ";
    EXPECT_EQ(m_report.warnings,
              (std::vector<std::string>{
                  place + "column body: type XML has no datatype code on this platform; the model keeps it as CHAR(10)",
                  place + "column note: type shortnote has no datatype code on this platform; the model keeps it "
                          "as CHAR(10)"}));
}

TEST_F(ImportTest, ScriptsOfTheDb2CommandLineWithTheirOwnTerminator) {
    CModelFileReader& reader = ImportText(44,
                                          "--#SET TERMINATOR @\n"
                                          "CREATE TABLE ORDERS (ID INT NOT NULL, PRIMARY KEY (ID))@\n"
                                          "CREATE PROCEDURE CLOSE_ALL() LANGUAGE SQL\nBEGIN\n  DECLARE N INT;\n"
                                          "  SET N = 0;\nEND@\n"
                                          "CREATE TABLE LINES (ORDER_ID INT NOT NULL)@\n");
    EXPECT_EQ(reader.Column("SELECT entity_name FROM Entity ORDER BY row_seq"),
              (std::vector<std::string>{"ORDERS", "LINES"}));
    EXPECT_EQ(reader.Scalar("SELECT sql_text FROM Proc"),
              "CREATE PROCEDURE CLOSE_ALL() LANGUAGE SQL\nBEGIN\n  DECLARE N INT;\n  SET N = 0;\nEND");
}

TEST_F(ImportTest, TablesLikeAnotherTakeItsColumns) {
    CModelFileReader& reader = ImportText(44,
                                          "CREATE TABLE APP.ORDERS (ID INTEGER NOT NULL, NOTE VARCHAR(40), "
                                          "AMOUNT DECIMAL(9,2));\n"
                                          "CREATE TABLE APP.ORDERS_HISTORY LIKE APP.ORDERS;\n"
                                          "CREATE TABLE APP.MY_TABLES LIKE SYSCAT.TABLES;\n");
    EXPECT_EQ(reader.Column("SELECT column_name || ' ' || datatype || ' ' || width || ' ' || scale || ' ' || "
                            "null_option FROM Attribute a JOIN Entity e ON e.entity_key = a.entity_key WHERE "
                            "e.entity_name = 'ORDERS_HISTORY' ORDER BY a.row_seq"),
              (std::vector<std::string>{"ID INT 10 0 0", "NOTE VAR 40 0 1", "AMOUNT DC 9 2 1"}));
    EXPECT_EQ(reader.Count("Entity"), 3);
    EXPECT_EQ(reader.Scalar("SELECT count(*) FROM Attribute a JOIN Entity e ON e.entity_key = a.entity_key WHERE "
                            "e.entity_name = 'MY_TABLES'"),
              "0");
    ASSERT_EQ(m_report.warnings.size(), 1u);
    EXPECT_NE(m_report.warnings.at(0).find("like TABLES, which the model does not hold"), std::string::npos)
        << m_report.warnings.at(0);
}

TEST_F(ImportTest, OracleObjectTablesTakeTheirTypesAttributes) {
    CModelFileReader& reader = ImportText(47,
                                          "CREATE OR REPLACE TYPE address_t AS OBJECT (\n"
                                          "  street VARCHAR2(40),\n  city VARCHAR2(30),\n  zip NUMBER(5)\n);\n/\n"
                                          "CREATE TABLE addresses OF address_t (\n"
                                          "  CONSTRAINT pk_addresses PRIMARY KEY (street, zip)\n) TABLESPACE users;\n"
                                          "CREATE TABLE strays OF missing_t;\n");
    EXPECT_EQ(reader.Column("SELECT column_name || ' ' || datatype || ' ' || width FROM Attribute a JOIN Entity e ON "
                            "e.entity_key = a.entity_key WHERE e.entity_name = 'addresses' ORDER BY a.row_seq"),
              (std::vector<std::string>{"street VAR 40", "city VAR 30", "zip NUM 5"}));
    EXPECT_EQ(reader.Column("SELECT a.column_name FROM PrimaryKey p JOIN Attribute a ON a.entity_key = p.entity_key "
                            "AND a.attribute_no = p.attribute_no ORDER BY p.row_seq"),
              (std::vector<std::string>{"street", "zip"}));
    EXPECT_EQ(reader.Scalar("SELECT storage_space FROM TableStorage t JOIN Entity e ON e.entity_key = t.entity_key "
                            "WHERE e.entity_name = 'addresses'"),
              "users");
    EXPECT_EQ(reader.Count("Entity"), 2);  // strays, without columns
    ASSERT_EQ(m_report.warnings.size(), 1u);
    EXPECT_NE(m_report.warnings.at(0).find("object type missing_t, which the script does not create"),
              std::string::npos)
        << m_report.warnings.at(0);
}

// What particular samples hold, as the saved model keeps it: a query of the
// model file and its answer, per sample.
TEST_F(ImportTest, SamplesKeepTheirTypesBindingsPartitionsAndStorage) {
    using Answers = std::vector<std::pair<std::string, std::string>>;
    const std::string sales = "(SELECT entity_key FROM Entity WHERE entity_name = 'sales')";
    const struct {
        const char* prefix;
        int platform;
        Answers answers;
    } samples[] = {
        {"mssql_instpubs", 41, Answers{
             {"SELECT datatype || ' ' || width || ' ' || user_datatype_id FROM Attribute WHERE column_name = 'au_id' "
              "AND entity_key = (SELECT entity_key FROM Entity WHERE entity_name = 'authors')", "VAR 11 1"},
             {"SELECT name || ' ' || datatype || ' ' || length FROM UserDatatype WHERE user_datatype_id = 3",
              "empid CH 9"},
             {"SELECT count(*) FROM ForeignKey f JOIN Entity p ON p.entity_key = f.parent_entity_key "
              "WHERE p.entity_name = 'titles'", "3"},
             {"SELECT name FROM DbTrigger", "employee_insupd"}}},
        // Sybase's rules and defaults are bound.
        {"sybase_ase", 54, Answers{
             {"SELECT count(*) FROM Rules", "2"},
             {"SELECT name FROM Defaults", "DateDefault"},
             {"SELECT group_concat(name) FROM UserDatatype", "MyType,MyType2"}}},
        {"oracle_legacy_sh", 47, Answers{
             {"SELECT count(*) FROM Partition WHERE owner_kind = 'table' AND owner_key = " + sales, "16"},
             {"SELECT param5 FROM TableStorage WHERE entity_key = " + sales, "5"},  // PCTFREE 5
             {"SELECT value_no FROM Property WHERE owner_kind = 'table' AND property_no = 3 AND owner_key = " + sales,
              "6"},  // NOLOGGING
             {"SELECT text FROM Property WHERE owner_kind = 'table' AND property_no = 7 AND owner_key = " + sales,
              "3"},  // partitioned by time_id, the third column
             {"SELECT instr(text, 'TO_DATE(''01-JAN-1996''') > 0 FROM Property WHERE owner_kind = 'partition' "
              "AND property_no = 8 LIMIT 1", "1"}}},
        // A DB2 for z/OS schema across files.
        {"db2zos_genevaers", 46, Answers{
             {"SELECT count(*) FROM Storage_Object WHERE kind = 1", "1"},   // the storage group
             {"SELECT count(*) FROM Storage_Object WHERE kind = 2", "1"},   // the database
             {"SELECT count(*) FROM Storage_Object WHERE kind = 3", "49"},  // tablespaces
             {"SELECT owner FROM Entity WHERE entity_name = 'CODETABLE'", "DBSCH"},
             {"SELECT storage_space FROM TableStorage t JOIN Entity e ON e.entity_key = t.entity_key "
              "WHERE e.entity_name = 'CODETABLE'", "DBNAME.CODETABL"},
             // Every one of its 60 indexes names its storage group.
             {"SELECT count(DISTINCT owner_key) FROM Property WHERE owner_kind = 'index' AND property_no = 5", "60"}}},
    };
    for (const auto& sample : samples) {
        SCOPED_TRACE(sample.prefix);
        Import(sample.platform, Samples(sample.prefix));
        for (const auto& [query, answer] : sample.answers) EXPECT_EQ(Scalar(query), answer) << query;
    }
}

TEST_F(ImportTest, TsqlFeaturesReachTheModel) {
    CModelFileReader& reader = ImportText(41,
        "EXEC sp_addtype N'Flag', N'tinyint', N'not null'\nGO\n"
        "CREATE DEFAULT df_zero AS 0\nGO\nCREATE RULE r_flag AS @v IN (0, 1)\nGO\n"
        "CREATE TABLE [dbo].[Orders] (\n [Id] [int] IDENTITY(1,1) NOT NULL,\n [Qty] [int] NULL,\n"
        " [Total] AS ([Qty] * 2),\n [Done] [dbo].[Flag] NOT NULL,\n"
        " CONSTRAINT [PK_Orders] PRIMARY KEY CLUSTERED ([Id] ASC)\n) ON [PRIMARY]\nGO\n"
        "ALTER TABLE [dbo].[Orders] ADD CONSTRAINT [DF_Qty] DEFAULT ((1)) FOR [Qty]\nGO\n"
        "EXEC sp_bindefault 'df_zero', 'Orders.Qty'\nEXEC sp_bindrule N'[dbo].[r_flag]', N'[Flag]'\nGO\n"
        "GRANT SELECT ON Orders TO public\nGO\n");
    EXPECT_EQ(reader.Column("SELECT column_name FROM Attribute ORDER BY attribute_no"),
              (std::vector<std::string>{"Id", "Qty", "Done"}));  // the computed column is skipped
    EXPECT_EQ(reader.Scalar("SELECT default_text || '|' || default_id FROM Attribute WHERE column_name = 'Qty'"),
              "((1))|1");
    EXPECT_EQ(reader.Scalar("SELECT rule_id FROM UserDatatype WHERE name = 'Flag'"), "1");
    EXPECT_EQ(reader.Scalar("SELECT cluster_flag FROM Indexes"), "C");
    EXPECT_EQ(reader.Scalar("SELECT storage_space FROM TableStorage"), "PRIMARY");
    EXPECT_EQ(reader.Scalar("SELECT property_no FROM Property WHERE owner_kind = 'attribute'"), "34");  // identity
    EXPECT_EQ(m_report.skipped.at("GRANT"), 1);
    EXPECT_EQ(m_report.warnings.size(), 1u);  // the computed column
}

TEST_F(ImportTest, OracleStorageAndForeignKeysToLaterTables) {
    CModelFileReader& reader = ImportText(47,
        "CREATE TABLE emp (id NUMBER(6) PRIMARY KEY, dept_id NUMBER(4) REFERENCES dept ON DELETE CASCADE)\n"
        " TABLESPACE users PCTFREE 10 STORAGE (INITIAL 64K NEXT 1M MAXEXTENTS UNLIMITED BUFFER_POOL KEEP);\n"
        "CREATE TABLE dept (id NUMBER(4), CONSTRAINT dept_pk PRIMARY KEY (id));\n"
        "CREATE TABLE audit_log (dept_id NUMBER(4) REFERENCES missing_table (id));\n"
        "COMMENT ON TABLE emp IS 'Employees';\nCOMMENT ON COLUMN emp.id IS 'Key';\n");
    EXPECT_EQ(reader.Scalar("SELECT t14 FROM ForeignKey"), "C");
    EXPECT_EQ(reader.Scalar("SELECT name FROM Entity e JOIN ForeignKey f ON f.parent_entity_key = e.entity_key"),
              "");  // the foreign key is unnamed ...
    EXPECT_EQ(reader.Scalar("SELECT entity_name FROM Entity e JOIN ForeignKey f ON f.parent_entity_key = e.entity_key"),
              "dept");  // ... and found its parent declared after it
    EXPECT_EQ(reader.Scalar("SELECT storage_space || ' ' || param3 || ' ' || param4 || ' ' || param5 || ' ' || param8 "
                            "FROM TableStorage t JOIN Entity e ON e.entity_key = t.entity_key WHERE entity_name = 'emp'"),
              "users 64 1024 10 2147483647");
    EXPECT_EQ(reader.Scalar("SELECT value_no FROM Property WHERE property_no = 24"), "32");  // KEEP
    EXPECT_EQ(reader.Scalar("SELECT definition FROM Entity WHERE entity_name = 'emp'"), "Employees");
    EXPECT_EQ(reader.Scalar("SELECT definition FROM Attribute WHERE column_name = 'id' AND attribute_no = 1 LIMIT 1"),
              "Key");
    EXPECT_EQ(m_report.messages.size(), 2u);  // the missing parent and the foreign key left out
}

TEST_F(ImportTest, SqliteVirtualTablesGeneratedColumnsAndIndexesTheModelCannotHold) {
    const std::string db = m_dir.File("app.db");
    ExecOnFile(db, "CREATE TABLE notes (id INTEGER PRIMARY KEY, body TEXT, words INTEGER GENERATED ALWAYS AS "
                   "(length(body) - length(replace(body, ' ', '')) + 1) STORED, archived INTEGER);"
                   "CREATE VIRTUAL TABLE notes_search USING fts5(body);"
                   "CREATE INDEX notes_lower ON notes (lower(body));"
                   "CREATE INDEX notes_live ON notes (id) WHERE archived = 0;");
    CModelFileReader& reader = Import(0, {db});
    // The virtual table and its shadow tables are not tables of the model.
    EXPECT_EQ(reader.Column("SELECT entity_name FROM Entity"), std::vector<std::string>{"notes"});
    // The generated column keeps its expression.
    EXPECT_EQ(reader.Scalar("SELECT p.text FROM Property p JOIN Attribute a ON a.attribute_id = p.owner_key AND "
                            "p.owner_kind = 'attribute' WHERE a.column_name = 'words'"),
              "length(body) - length(replace(body, ' ', '')) + 1");
    // No index without columns; the partial index keeps its column, not its condition.
    EXPECT_EQ(reader.Column("SELECT index_name FROM Indexes WHERE key_type <> 'P' ORDER BY row_seq"),
              std::vector<std::string>{"notes_live"});
    std::string warnings;
    for (const std::string& warning : m_report.warnings) warnings += warning + "\n";
    EXPECT_NE(warnings.find("virtual table notes_search and its 5 shadow tables skipped"), std::string::npos) << warnings;
    EXPECT_NE(warnings.find("generated column words: kept with its expression"), std::string::npos) << warnings;
    EXPECT_NE(warnings.find("index notes_lower on notes skipped: it indexes the expression lower(body)"),
              std::string::npos)
        << warnings;
    EXPECT_NE(warnings.find("index notes_live: its condition (WHERE archived = 0) is not kept"), std::string::npos)
        << warnings;
}

TEST_F(ImportTest, SqliteDatabasesAreReadFromTheirCatalog) {
    const std::string database = m_dir.File("shop.db");
    ExecOnFile(database,
               "CREATE TABLE customer (id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL DEFAULT 'x', "
               "email VARCHAR(80) UNIQUE CHECK (email LIKE '%@%'));"
               "CREATE TABLE orders (id INTEGER PRIMARY KEY, customer_id INTEGER NOT NULL REFERENCES customer(id) "
               "ON DELETE CASCADE, total DECIMAL(10,2));"
               "CREATE INDEX orders_by_customer ON orders (customer_id DESC);"
               "CREATE VIEW big_orders AS SELECT * FROM orders WHERE total > 100;"
               "CREATE TRIGGER orders_check BEFORE INSERT ON orders BEGIN SELECT 1; SELECT 2; END;");
    CModelFileReader& reader = Import(0, {database});
    EXPECT_EQ(reader.Column("SELECT entity_name FROM Entity ORDER BY row_seq"),
              (std::vector<std::string>{"customer", "orders"}));
    EXPECT_EQ(reader.Scalar("SELECT datatype || ' ' || width || ' ' || scale FROM Attribute WHERE column_name = 'total'"),
              "DC 10 2");
    EXPECT_EQ(reader.Scalar("SELECT default_text FROM Attribute WHERE column_name = 'name'"), "'x'");
    EXPECT_EQ(reader.Scalar("SELECT text FROM CheckConstraints"), "email LIKE '%@%'");
    EXPECT_EQ(reader.Scalar("SELECT sort_order FROM IndexColumn c JOIN Indexes i ON i.index_key = c.index_key WHERE "
                            "i.index_name = 'orders_by_customer'"),
              "D");
    EXPECT_EQ(reader.Scalar("SELECT t14 FROM ForeignKey"), "C");
    EXPECT_EQ(reader.Scalar("SELECT kind || ' ' || name FROM DbTrigger"), "1 orders_check");
}

TEST_F(CommandLineTest, ImportsAScriptAndShowsTheModel) {
    WriteBytes(m_dir.File("s.sql"), "create table t (a int primary key, b varchar(10));\ninsert into t values (1, 'x');\n");
    const std::string model = m_dir.File("m.vrn");
    ASSERT_EQ(Run("import " + m_dir.File("s.sql") + " -o " + model + " --platform sqlserver"), 0) << Err();
    EXPECT_NE(Out().find("The model holds:\n  1 table\n  2 columns\n  1 primary key\n"), std::string::npos) << Out();
    EXPECT_NE(Out().find("1 INSERT"), std::string::npos) << Out();
    EXPECT_NE(Out().find("2 statements (1 applied, 1 skipped) in "), std::string::npos) << Out();
    ASSERT_EQ(Run("import " + m_dir.File("s.sql") + " -o " + model + " --platform sqlserver --verbose"), 0) << Err();
    EXPECT_NE(Out().find("1 INSERT at " + m_dir.File("s.sql") + ":2\n"), std::string::npos) << Out();
    ASSERT_EQ(Run("show " + model), 0) << Err();
    EXPECT_NE(Out().find("Table t"), std::string::npos) << Out();
    EXPECT_NE(Out().find("b  varchar(10)  NOT NULL"), std::string::npos) << Out();  // SQL Server 2000: NOT NULL unless said
}

TEST_F(CommandLineTest, FailsOnlyForUnreadableInputNothingImportedOrAnUnwrittenModel) {
    WriteBytes(m_dir.File("empty.sql"), "GRANT SELECT ON t TO u;\n");
    WriteBytes(m_dir.File("ok.sql"), "create table t (a int);\n");
    EXPECT_EQ(Run("import /no/such.sql -o " + m_dir.File("m.vrn")), 1);
    EXPECT_NE(Err().find("/no/such.sql"), std::string::npos);
    EXPECT_EQ(Run("import " + m_dir.File("empty.sql") + " -o " + m_dir.File("m.vrn")), 1);
    EXPECT_NE(Err().find("nothing could be imported"), std::string::npos);
    EXPECT_EQ(Run("import " + m_dir.File("ok.sql") + " -o " + m_dir.File("no/dir/m.vrn")), 1);
    EXPECT_NE(Err().find("not saved"), std::string::npos);
    // Usage errors, with status 2, are vrnmodel_cli_test's.
}

TEST_F(CommandLineTest, OptionsReachTheModel) {
    WriteBytes(m_dir.File("s.sql"), "create table &$SCH..t (a int);\ncreate table u (b int);\n");
    const std::string model = m_dir.File("m.vrn");
    ASSERT_EQ(Run("import " + m_dir.File("s.sql") + " -o " + model +
                  " --platform 41 --sql-id ADMIN --model-id 7 --define SCH=SALES --encoding utf-8"),
              0)
        << Err();
    CModelFileReader reader(model);
    EXPECT_EQ(reader.Column("SELECT owner || '.' || entity_name || ':' || model_no FROM Entity ORDER BY row_seq"),
              (std::vector<std::string>{"SALES.t:7", "ADMIN.u:7"}));
    EXPECT_EQ(Run("import " + m_dir.File("s.sql") + " -o " + model + " --encoding latin1"), 2);
    EXPECT_EQ(Run("import " + m_dir.File("s.sql") + " -o " + model + " --model-id zero"), 2);
}

TEST_F(CommandLineTest, GuessesThePlatformFromTheScript) {
    const std::pair<const char*, const char*> cases[] = {
        {"create table t (a int)\nGO\n", "(41), guessed"},
        {"create table t (a varchar2(10));\n", "(47), guessed"},
        {"SET CURRENT SQLID='ADM';\ncreate table t (a int) in db.ts;\n", "(46), guessed"},
        {"create table t (a int) organize by row;\n", "(44), guessed"},
        {"create table t (a int);\n", "(0), guessed"},
    };
    for (const auto& [script, platform] : cases) {
        WriteBytes(m_dir.File("s.sql"), script);
        ASSERT_EQ(Run("import " + m_dir.File("s.sql") + " -o " + m_dir.File("m.vrn")), 0) << Err();
        EXPECT_NE(Out().find(platform), std::string::npos) << script << " gave " << Out();
    }
}

TEST_F(CommandLineTest, ContinuesAnExistingModel) {
    WriteBytes(m_dir.File("a.sql"), "create table a (x int);\n");
    WriteBytes(m_dir.File("b.sql"), "create table b (y int);\n");
    const std::string first = m_dir.File("first.vrn");
    ASSERT_EQ(Run("import " + m_dir.File("a.sql") + " -o " + first), 0) << Err();
    ASSERT_EQ(Run("import " + m_dir.File("b.sql") + " --continue " + first + " -o " + m_dir.File("both.vrn")), 0)
        << Err();
    CModelFileReader reader(m_dir.File("both.vrn"));
    EXPECT_EQ(reader.Column("SELECT entity_name || ':' || entity_key FROM Entity ORDER BY row_seq"),
              (std::vector<std::string>{"a:1", "b:2"}));
}

}  // namespace
