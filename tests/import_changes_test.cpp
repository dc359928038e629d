// Scripts that drop and change what they created: the model is the end
// state a server would hold after running them, in every dialect's forms.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ImportedModel.h"

namespace {

const auto Platform = PlatformCode;

// The names of `items`, joined by commas.
template <class Items>
std::string Names(const Items& items) {
    std::string names;
    for (const auto& item : items) names += (names.empty() ? "" : ",") + item.name;
    return names;
}
std::string ColumnNames(const CModel& model, const std::string& table) {
    const CModelTable* found = FindTable(model, table);
    return found ? Names(found->columns) : "";
}
std::string IndexNames(const CModel& model, const std::string& table) {
    const CModelTable* found = FindTable(model, table);
    return found ? Names(found->indexes) : "";
}
std::string ForeignKeyNames(const CModel& model) { return Names(model.foreignKeys); }

class ImportChangesTest : public ::testing::Test {
protected:
    CImported Import(const char* platform, const std::vector<std::string>& scripts) {
        CImported imported = ImportScripts(Platform(platform), scripts, m_dir);
        const CImportReport& report = imported.report;
        EXPECT_EQ(report.statements, report.applied + report.SkippedTotal()) << "every statement is counted once";
        return imported;
    }
    CScratchDir m_dir;
};

const char* const kOrders =
    "CREATE TABLE customer (id NUMBER(10) NOT NULL, name VARCHAR2(40), CONSTRAINT pk_customer PRIMARY KEY (id));\n"
    "CREATE TABLE orders (id NUMBER(10) NOT NULL, customer_id NUMBER(10), note VARCHAR2(100) DEFAULT 'none',\n"
    "  qty NUMBER(5) CONSTRAINT ck_qty CHECK (qty > 0), CONSTRAINT pk_orders PRIMARY KEY (id));\n"
    "CREATE INDEX ix_orders_note ON orders (note);\n"
    "CREATE INDEX ix_orders_customer ON orders (customer_id, id);\n"
    "ALTER TABLE orders ADD CONSTRAINT fk_orders_customer FOREIGN KEY (customer_id) REFERENCES customer (id);\n"
    "COMMENT ON COLUMN orders.note IS 'free text';\n";

TEST_F(ImportChangesTest, ATableDroppedAndCreatedAgainIsTheSecondTable) {
    const CImported imported = Import("oracle", {std::string("DROP TABLE orders CASCADE CONSTRAINTS;\n") + kOrders +
                                                 "DROP TABLE orders CASCADE CONSTRAINTS;\n"
                                                 "CREATE TABLE orders (id NUMBER(10), total NUMBER(12,2));\n"});
    EXPECT_EQ(ColumnNames(imported.model, "orders"), "id,total");
    EXPECT_EQ(IndexNames(imported.model, "orders"), "");  // its indexes went with it
    EXPECT_EQ(ForeignKeyNames(imported.model), "");
    EXPECT_TRUE(imported.report.warnings.empty()) << imported.report.warnings.front();
    EXPECT_EQ(imported.model.tables.size(), 2u);
}

TEST_F(ImportChangesTest, DroppingAParentTakesTheForeignKeysToItOnlyWithCascade) {
    const CImported kept = Import("sqlserver", {std::string(kOrders) + "DROP TABLE customer\n"
                                                "CREATE TABLE customer (id INT NOT NULL PRIMARY KEY)\n"});
    EXPECT_EQ(ForeignKeyNames(kept.model), "fk_orders_customer");
    ASSERT_EQ(kept.model.foreignKeys.size(), 1u);
    EXPECT_GE(kept.model.foreignKeys.at(0).parentTable, 0) << "the key refers to the customer table created again";

    const CImported cascaded = Import("oracle", {std::string(kOrders) + "DROP TABLE customer CASCADE CONSTRAINTS;\n"});
    EXPECT_EQ(ForeignKeyNames(cascaded.model), "");
    EXPECT_TRUE(cascaded.report.messages.empty()) << "no key is left waiting for a parent: " << cascaded.report.messages.front();
    EXPECT_EQ(ColumnNames(cascaded.model, "orders"), "id,customer_id,note,qty");
}

TEST_F(ImportChangesTest, ADroppedColumnTakesItsIndexesKeysAndComment) {
    const CImported imported = Import("oracle", {std::string(kOrders) + "ALTER TABLE orders DROP COLUMN note;\n"
                                                 "ALTER TABLE orders DROP (customer_id);\n"});
    EXPECT_EQ(ColumnNames(imported.model, "orders"), "id,qty");
    EXPECT_EQ(IndexNames(imported.model, "orders"), "pk_orders");
    EXPECT_EQ(ForeignKeyNames(imported.model), "");
    ASSERT_EQ(imported.model.checks.size(), 1u) << "the check of a column that stays, stays";
}

TEST_F(ImportChangesTest, ColumnChangesInEachDialectReachTheModel) {
    const struct {
        const char* platform;
        const char* create;
        const char* change;
        const char* datatype;
        int width, scale;
        bool nullable;
        const char* defaultText;
    } cases[] = {
        {"sqlserver", "CREATE TABLE t (c VARCHAR(10) NULL DEFAULT 'x')",
         "ALTER TABLE t ALTER COLUMN c VARCHAR(30) NOT NULL", "VAR", 30, 0, false, "'x'"},
        {"oracle", "CREATE TABLE t (c NUMBER(5) DEFAULT 1);", "ALTER TABLE t MODIFY (c NUMBER(9,2) NOT NULL);", "NUM", 9,
         2, false, "1"},
        {"oracle", "CREATE TABLE t (c NUMBER(5) DEFAULT 1 NOT NULL);", "ALTER TABLE t MODIFY c NULL DEFAULT NULL;",
         "NUM", 5, 0, true, ""},
        {"db2", "CREATE TABLE t (c VARCHAR(10) NOT NULL);",
         "ALTER TABLE t ALTER COLUMN c SET DATA TYPE VARCHAR(20) ALTER COLUMN c DROP NOT NULL "
         "ALTER COLUMN c SET DEFAULT 'y';",
         "VAR", 20, 0, true, "'y'"},
        {"db2", "CREATE TABLE t (c INTEGER WITH DEFAULT 0);", "ALTER TABLE t ALTER COLUMN c DROP DEFAULT;", "INT", 10,
         0, true, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.platform) + ": " + c.change);
        const std::string terminator = std::string(c.platform) == "sqlserver" ? "\nGO\n" : "\n";
        const CImported imported = Import(c.platform, {c.create + terminator + c.change + terminator});
        const CModelColumn* column = FindColumn(imported.model, "t", "c");
        ASSERT_NE(column, nullptr);
        EXPECT_EQ(column->datatype, c.datatype);
        EXPECT_EQ(column->width, c.width);
        EXPECT_EQ(column->scale, c.scale);
        EXPECT_EQ(column->nullable, c.nullable);
        EXPECT_EQ(column->defaultText, c.defaultText);
    }
}

TEST_F(ImportChangesTest, ConstraintsAndIndexesAreDroppedByName) {
    const CImported oracle = Import("oracle", {std::string(kOrders) + "ALTER TABLE orders DROP CONSTRAINT fk_orders_customer;\n"
                                               "ALTER TABLE orders DROP CONSTRAINT CK_QTY;\n"
                                               "ALTER TABLE orders DROP PRIMARY KEY;\n"
                                               "DROP INDEX ix_orders_note;\n"});
    EXPECT_EQ(ForeignKeyNames(oracle.model), "");
    EXPECT_TRUE(oracle.model.checks.empty());
    EXPECT_EQ(IndexNames(oracle.model, "orders"), "ix_orders_customer");

    // T-SQL names an index by its table, in either order.
    const CImported tsql = Import("sqlserver", {"CREATE TABLE dbo.t (a INT, b INT)\nGO\n"
                                                "CREATE INDEX ix_a ON dbo.t (a)\nGO\nCREATE INDEX ix_b ON dbo.t (b)\nGO\n"
                                                "CREATE TABLE dbo.u (a INT)\nGO\nCREATE INDEX ix_a ON dbo.u (a)\nGO\n"
                                                "DROP INDEX ix_a ON dbo.t\nGO\nDROP INDEX t.ix_b\nGO\n"});
    EXPECT_EQ(IndexNames(tsql.model, "t"), "");
    EXPECT_EQ(IndexNames(tsql.model, "u"), "ix_a");
}

TEST_F(ImportChangesTest, CodeDroppedAndCreatedAgainKeepsTheNewText) {
    const CImported imported = Import("sqlserver", {"CREATE PROCEDURE dbo.p AS SELECT 1\nGO\n"
                                                    "CREATE VIEW v AS SELECT 1 AS one\nGO\n"
                                                    "DROP PROCEDURE dbo.p\nGO\nDROP VIEW v\nGO\n"
                                                    "CREATE PROCEDURE dbo.p AS SELECT 2\nGO\n"});
    ASSERT_EQ(imported.model.procedures.size(), 1u);
    EXPECT_NE(imported.model.procedures.at(0).text.find("SELECT 2"), std::string::npos);
    EXPECT_EQ(FindTable(imported.model, "v"), nullptr);
}

TEST_F(ImportChangesTest, RenamesCarryKeysIndexesAndForeignKeysAlong) {
    const CImported imported = Import("oracle", {std::string(kOrders) + "ALTER TABLE customer RENAME TO client;\n"
                                                 "ALTER TABLE client RENAME COLUMN id TO client_id;\n"
                                                 "ALTER TABLE orders RENAME COLUMN customer_id TO client_id;\n"});
    EXPECT_EQ(FindTable(imported.model, "customer"), nullptr);
    EXPECT_EQ(ColumnNames(imported.model, "client"), "client_id,name");
    ASSERT_EQ(imported.model.foreignKeys.size(), 1u);
    const CModelForeignKey& key = imported.model.foreignKeys.at(0);
    ASSERT_GE(key.parentTable, 0);
    EXPECT_EQ(imported.model.tables[static_cast<std::size_t>(key.parentTable)].name, "client");
    ASSERT_EQ(key.pairs.size(), 1u);
    EXPECT_EQ(key.pairs.at(0).parentColumn, "client_id");
    EXPECT_EQ(key.pairs.at(0).childColumn, "client_id");
    const CModelTable* orders = FindTable(imported.model, "orders");
    ASSERT_NE(orders, nullptr);
    ASSERT_EQ(orders->indexes.size(), 3u);
    EXPECT_EQ(orders->indexes.at(2).columns.at(0).name, "client_id");
}

TEST_F(ImportChangesTest, AMigrationInASecondSourceChangesTheFirst) {
    const CImported imported = Import("oracle", {kOrders, "ALTER TABLE orders ADD (shipped DATE);\n"
                                                          "ALTER TABLE orders DROP COLUMN note;\n"
                                                          "DROP INDEX ix_orders_customer;\n"});
    EXPECT_EQ(ColumnNames(imported.model, "orders"), "id,customer_id,qty,shipped");
    EXPECT_EQ(IndexNames(imported.model, "orders"), "pk_orders");
}

TEST_F(ImportChangesTest, WhatNoStatementDeclaredIsNotChangedAndSaid) {
    const CImported imported = Import("oracle", {"DROP TABLE nowhere;\nDROP INDEX nothing;\n"
                                                 "CREATE TABLE t (a NUMBER);\n"
                                                 "ALTER TABLE t DROP COLUMN b;\nALTER TABLE u MODIFY (a NULL);\n"});
    EXPECT_EQ(ColumnNames(imported.model, "t"), "a");
    EXPECT_EQ(imported.report.applied, 3);  // the drops of what is not there yet, and the table
    ASSERT_EQ(imported.report.warnings.size(), 2u);
    EXPECT_NE(imported.report.warnings.at(0).find("script1.sql:4: ALTER TABLE t: column b not dropped"),
              std::string::npos)
        << imported.report.warnings.at(0);
    EXPECT_NE(imported.report.warnings.at(1).find("script1.sql:5: ALTER TABLE u: column a not changed"),
              std::string::npos)
        << imported.report.warnings.at(1);
}

TEST_F(ImportChangesTest, ATableOfTheModelBeingContinuedIsNotDroppedByAScript) {
    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(Platform("oracle"), nullptr), 1);
    ASSERT_NE(builder.AddEntity("KEPT", nullptr, 0, 0), 0u);
    CImportReport report;
    CDdlImporter importer(builder, report);
    importer.ImportScript("drop.sql", "DROP TABLE kept;\n");
    importer.Finish();
    EXPECT_NE(builder.FindEntity("KEPT", nullptr, 0), 0u);
    ASSERT_EQ(report.warnings.size(), 1u);
    EXPECT_NE(report.warnings.at(0).find("is in the model being continued"), std::string::npos)
        << report.warnings.at(0);
    EXPECT_EQ(report.skipped["DROP TABLE"], 1);
}

}  // namespace
