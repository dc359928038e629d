// The catalog reader of the examples, run as a user runs it, against the
// client's own import of the same SQLite databases: the two models, read back
// with the model reader, must say the same thing. Where they cannot, the
// difference is excluded by name, with the reason, and checked to be there.
// Then the reader's answers to bad arguments, files that are no database,
// and saves that fail.
#include <VrnReader.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "CommandLineTest.h"
#include "ModelFileReader.h"
#include "SavedModel.h"

namespace {

constexpr auto npos = std::string::npos;

// A database of keys in every shape the reader handles: composite primary
// keys (one WITHOUT ROWID), a foreign key to a table created after its child,
// one to a missing table, one over two columns, one naming no parent column,
// one to a unique column of a table without a primary key; descending index
// columns, a unique index and a unique constraint, AUTOINCREMENT, defaults
// (one an expression), types with width and scale, and a view.
const char* const kKeysSchema = R"sql(
CREATE TABLE line (
    order_no INTEGER NOT NULL,
    line_no  SMALLINT NOT NULL,
    sku      VARCHAR(40) NOT NULL,
    price    DECIMAL(10, 2) DEFAULT 0,
    discount NUMERIC(5,3),
    note     CHARACTER VARYING(200) DEFAULT 'none',
    PRIMARY KEY (order_no, line_no),
    FOREIGN KEY (order_no) REFERENCES orders ON DELETE CASCADE,
    FOREIGN KEY (sku) REFERENCES product (sku) ON UPDATE CASCADE
);
CREATE TABLE orders (
    order_no  INTEGER PRIMARY KEY AUTOINCREMENT,
    customer  VARCHAR(80) NOT NULL,
    placed    TIMESTAMP DEFAULT (datetime('now')),
    warehouse INTEGER REFERENCES warehouse (id)
);
CREATE TABLE product (
    sku    VARCHAR(40) NOT NULL UNIQUE,
    title  VARCHAR(200),
    weight DOUBLE PRECISION,
    stock  INT UNSIGNED DEFAULT -1,
    added  DATE DEFAULT CURRENT_DATE
);
CREATE TABLE shipment (
    order_no   INTEGER,
    line_no    SMALLINT,
    shipped_on DATE,
    PRIMARY KEY (order_no, line_no, shipped_on),
    FOREIGN KEY (order_no, line_no) REFERENCES line (order_no, line_no) ON DELETE RESTRICT
) WITHOUT ROWID;
CREATE INDEX line_by_price ON line (price DESC, sku);
CREATE UNIQUE INDEX product_title ON product (title);
CREATE VIEW expensive AS SELECT * FROM line WHERE price > 100;
)sql";

// What the catalog's pragmas do not tell: a foreign key's name, the
// expression of an index, the condition of a partial one. Also a reference to
// the table itself, its name in another case, and a column without a type.
const char* const kNamesSchema = R"sql(
CREATE TABLE employee (
    id        INTEGER PRIMARY KEY,
    boss      INTEGER REFERENCES Employee,
    dept_code CHAR(4),
    name,
    CONSTRAINT works_in FOREIGN KEY (dept_code) REFERENCES dept (code) ON DELETE SET NULL
);
CREATE TABLE dept (code CHAR(4) PRIMARY KEY, title TEXT NOT NULL);
CREATE INDEX employee_by_lower_name ON employee (lower(name));
CREATE INDEX employee_in_dept ON employee (dept_code) WHERE dept_code IS NOT NULL;
)sql";

using Strings = std::vector<std::string>;

// The reader leaves out CHECK constraints and triggers: SQLite keeps them
// only in the text of their CREATE statements, which the reader does not
// parse. Models are compared without them; the tests that exclude them check
// that the importer did read them, so that the exclusion hides something real.
CCompareOptions WithoutChecksAndCode() {
    CCompareOptions options;
    options.checks = false;
    options.code = false;
    return options;
}

class CatalogReaderTest : public CommandLineTest {
protected:
    // The exit status of the reader with `arguments`; what it printed goes
    // to ReaderOut and ReaderErr.
    int RunReader(const std::string& arguments) {
        const std::string command = std::string(CATALOG_READER_PATH) + " " + arguments + " > " +
                                    m_printed.File("out.txt") + " 2> " + m_printed.File("err.txt");
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    std::string ReaderOut() { return ReadBytes(m_printed.File("out.txt")); }
    std::string ReaderErr() { return ReadBytes(m_printed.File("err.txt")); }

    std::string MakeDatabase(const std::string& name, const std::string& schema) {
        const std::string path = m_dir.File(name);
        ExecOnFile(path, schema);
        return path;
    }
    // The reader's model and the importer's of one database, read back.
    void ReadBoth(const std::string& database, CModel& reader, CModel& imported) {
        const std::string readerModel = m_dir.File("reader.vrn"), importedModel = m_dir.File("imported.vrn");
        ASSERT_EQ(RunReader(database + " " + readerModel), 0) << ReaderErr();
        ASSERT_EQ(Run("import " + database + " -o " + importedModel), 0) << Err();
        std::string error;
        ASSERT_TRUE(ReadModelFile(readerModel, reader, error)) << error;
        ASSERT_TRUE(ReadModelFile(importedModel, imported, error)) << error;
    }

    CScratchDir m_printed;  // what the reader printed, apart from the test's files
};

TEST_F(CatalogReaderTest, BundledExampleMatchesTheImportApartFromChecksAndTriggers) {
    CModel reader, imported;
    ASSERT_NO_FATAL_FAILURE(ReadBoth(std::string(VRN_BINARY_DIR) + "/examples/example.db", reader, imported));
    ASSERT_EQ(reader.tables.size(), 4u);  // the view is described, not stored
    EXPECT_EQ(reader.platform, 0);
    EXPECT_EQ(reader.foreignKeys.size(), 3u);
    EXPECT_EQ(ChangeLines(CompareModels(imported, reader, WithoutChecksAndCode())), Strings());
    // The excluded difference, exactly: the importer's three checks and its trigger.
    EXPECT_EQ(ChangeLines(CompareModels(imported, reader)),
              (Strings{"Dropped|check constraint (email LIKE '%@%') of customer column email|||",
                       "Dropped|check constraint (price >= 0) of product column price|||",
                       "Dropped|check constraint (quantity > 0) of order_line column quantity|||",
                       "Dropped|trigger order_line_positive|||"}));
}

TEST_F(CatalogReaderTest, KeysOfEveryShapeMatchTheImport) {
    CModel reader, imported;
    ASSERT_NO_FATAL_FAILURE(ReadBoth(MakeDatabase("keys.db", kKeysSchema), reader, imported));
    EXPECT_EQ(ChangeLines(CompareModels(imported, reader, WithoutChecksAndCode())), Strings());
    EXPECT_EQ(ChangeLines(CompareModels(imported, reader)), Strings());  // this database has no checks or triggers

    // The models agree, and hold what the database declares: not two empty models.
    ASSERT_EQ(reader.tables.size(), 4u);
    const CModelTable* line = FindTable(reader, "line");
    ASSERT_NE(line, nullptr);
    ASSERT_GE(line->primaryKey, 0);
    EXPECT_EQ(line->indexes[line->primaryKey].columns.size(), 2u);
    EXPECT_EQ(line->columns.at(3).datatype, "DC");  // price DECIMAL(10, 2)
    EXPECT_EQ(line->columns.at(3).width, 10);
    EXPECT_EQ(line->columns.at(3).scale, 2);
    EXPECT_EQ(line->foreignKeys.size(), 2u);  // one of them to orders, created after line
    bool descending = false;
    for (const CModelIndex& index : line->indexes)
        if (index.name == "line_by_price")
            descending = index.columns.at(0).descending && !index.columns.at(1).descending;
    EXPECT_TRUE(descending);
    const CModelTable* orders = FindTable(reader, "orders");
    ASSERT_NE(orders, nullptr);
    EXPECT_TRUE(orders->columns.at(0).identity);
    EXPECT_EQ(orders->columns.at(2).defaultText, "(datetime('now'))");
    // Three of the four foreign keys: the one to the missing table waits
    // for its parent, which resolution does not find; it drops the key and says so.
    EXPECT_EQ(reader.foreignKeys.size(), 3u);
    EXPECT_EQ(orders->foreignKeys.size(), 0u);
    const std::string err = ReaderErr();
    EXPECT_NE(err.find("Parent table warehouse was not found."), npos) << err;
    EXPECT_NE(err.find("A foreign key without a name was not added."), npos) << err;
}

TEST_F(CatalogReaderTest, NamesThePragmasDoNotGiveAreTheOnlyDifference) {
    CModel reader, imported;
    ASSERT_NO_FATAL_FAILURE(ReadBoth(MakeDatabase("names.db", kNamesSchema), reader, imported));
    // SQLite's catalog names no constraint, so the reader's foreign keys are
    // unnamed. Key and index names are not compared (the builder makes them
    // up), foreign key names are: this is the one difference.
    EXPECT_EQ(ChangeLines(CompareModels(imported, reader)),
              Strings{"Changed|foreign key works_in of employee|name|works_in|"});
    const CModelTable* employee = FindTable(reader, "employee");
    ASSERT_NE(employee, nullptr);
    EXPECT_EQ(employee->foreignKeys.size(), 2u);
    // Both keep the partial index whole and skip the one on an expression; the reader says so.
    EXPECT_EQ(employee->indexes.size(), 2u);  // the primary key and employee_in_dept
    const std::string err = ReaderErr();
    EXPECT_NE(err.find("employee_by_lower_name"), npos) << err;
    EXPECT_NE(err.find("employee_in_dept"), npos) << err;
}

TEST_F(CatalogReaderTest, TheDatabaseIsLeftAsItWas) {
    const std::string database = MakeDatabase("keys.db", kKeysSchema);
    const std::string before = ReadBytes(database);
    ASSERT_EQ(RunReader(database + " " + m_dir.File("model.vrn")), 0) << ReaderErr();
    EXPECT_EQ(ReadBytes(database), before);
    EXPECT_EQ(m_dir.Entries(), (Strings{"keys.db", "model.vrn"}));  // no journal left behind
    EXPECT_NE(ReaderOut().find("model.vrn"), npos);
    // A model that would replace the database is refused.
    EXPECT_EQ(RunReader(database + " " + database), 1);
    EXPECT_NE(ReaderErr().find("would replace the database"), npos) << ReaderErr();
    EXPECT_EQ(ReadBytes(database), before);
}

TEST_F(CatalogReaderTest, BadArgumentsAreAUsageError) {
    EXPECT_EQ(RunReader(""), 2);
    EXPECT_NE(ReaderErr().find("usage: sqlite_catalog_reader DATABASE MODEL"), npos) << ReaderErr();
    EXPECT_EQ(RunReader(m_dir.File("only-one.db")), 2);
    EXPECT_EQ(RunReader("a b c"), 2);
    EXPECT_TRUE(m_dir.Entries().empty());
}

TEST_F(CatalogReaderTest, WhatIsNoDatabaseIsRefusedWithoutAModel) {
    const std::string model = m_dir.File("model.vrn");
    EXPECT_EQ(RunReader(m_dir.File("missing.db") + " " + model), 1);
    EXPECT_NE(ReaderErr().find("cannot open " + m_dir.File("missing.db")), npos) << ReaderErr();
    WriteBytes(m_dir.File("notes.txt"), "CREATE TABLE t (a INT);\nThese are notes, not a database.\n");
    EXPECT_EQ(RunReader(m_dir.File("notes.txt") + " " + model), 1);
    EXPECT_NE(ReaderErr().find("file is not a database"), npos) << ReaderErr();
    WriteBytes(m_dir.File("empty.db"), "");
    EXPECT_EQ(RunReader(m_dir.File("empty.db") + " " + model), 1);
    EXPECT_NE(ReaderErr().find("holds no tables or views"), npos) << ReaderErr();
    EXPECT_EQ(m_dir.Entries(), (Strings{"empty.db", "notes.txt"}));
}

TEST_F(CatalogReaderTest, AFailedSaveExitsNonzeroAndLeavesNoFile) {
    const std::string database = MakeDatabase("keys.db", kKeysSchema);
    EXPECT_EQ(RunReader(database + " " + m_dir.File("missing/model.vrn")), 1);
    EXPECT_NE(ReaderErr().find("the model was not saved: "), npos) << ReaderErr();
    EXPECT_EQ(m_dir.Entries(), Strings{"keys.db"});
    // A directory where the model should go: the save fails, and leaves nothing in it or beside it.
    const std::string target = m_dir.File("models");
    ASSERT_TRUE(std::filesystem::create_directory(target));
    EXPECT_EQ(RunReader(database + " " + target), 1);
    EXPECT_NE(ReaderErr().find("the model was not saved: "), npos) << ReaderErr();
    EXPECT_EQ(m_dir.Entries(), (Strings{"keys.db", "models"}));
    EXPECT_TRUE(std::filesystem::is_empty(target));
}

}  // namespace
