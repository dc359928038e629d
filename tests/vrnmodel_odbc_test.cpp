// Live databases through ODBC, as a user imports them. The SQLite ODBC
// driver reads a database file that the native SQLite import reads too: the
// two models are compared, and what differs is listed here with the reason.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "CommandLineTest.h"
#include "ConnectionString.h"
#include "ImportedModel.h"

namespace {

constexpr auto npos = std::string::npos;

// A dozen tables: composite keys, a self reference, a cycle, indexes with
// descending columns, unique constraints, defaults, checks and a view.
const char* const kSchema = R"(
CREATE TABLE region (region_id INTEGER NOT NULL PRIMARY KEY, name VARCHAR(40) NOT NULL UNIQUE);
CREATE TABLE country (country_code CHAR(2) NOT NULL PRIMARY KEY, region_id INTEGER REFERENCES region (region_id),
  name VARCHAR(60) NOT NULL DEFAULT 'unknown');
CREATE TABLE employee (emp_id INTEGER NOT NULL PRIMARY KEY, manager_id INTEGER REFERENCES employee (emp_id),
  dept_id INTEGER, name VARCHAR(80) NOT NULL, salary DECIMAL(10,2) DEFAULT 0 CHECK (salary >= 0),
  hired DATE);
CREATE TABLE department (dept_id INTEGER NOT NULL PRIMARY KEY, head_id INTEGER REFERENCES employee (emp_id),
  name VARCHAR(40) NOT NULL);
CREATE TABLE project (dept_id INTEGER NOT NULL REFERENCES department (dept_id), project_no INTEGER NOT NULL,
  title VARCHAR(100), budget NUMERIC(12,2), PRIMARY KEY (dept_id, project_no));
CREATE TABLE assignment (dept_id INTEGER NOT NULL, project_no INTEGER NOT NULL, emp_id INTEGER NOT NULL
  REFERENCES employee (emp_id) ON DELETE CASCADE, hours REAL DEFAULT 0, PRIMARY KEY (dept_id, project_no, emp_id),
  FOREIGN KEY (dept_id, project_no) REFERENCES project (dept_id, project_no) ON DELETE CASCADE ON UPDATE CASCADE);
CREATE TABLE customer (customer_id INTEGER NOT NULL PRIMARY KEY, name VARCHAR(80) NOT NULL,
  country_code CHAR(2) REFERENCES country (country_code), created TIMESTAMP DEFAULT CURRENT_TIMESTAMP);
CREATE TABLE orders (order_id INTEGER NOT NULL PRIMARY KEY, customer_id INTEGER NOT NULL
  REFERENCES customer (customer_id), ordered DATE NOT NULL, status CHAR(1) DEFAULT 'N');
CREATE TABLE product (product_id INTEGER NOT NULL PRIMARY KEY, name VARCHAR(80) NOT NULL, price DECIMAL(9,2));
CREATE TABLE order_line (order_id INTEGER NOT NULL REFERENCES orders (order_id), line_no INTEGER NOT NULL,
  product_id INTEGER NOT NULL REFERENCES product (product_id), quantity INTEGER NOT NULL DEFAULT 1,
  PRIMARY KEY (order_id, line_no));
CREATE TABLE price_history (product_id INTEGER NOT NULL REFERENCES product (product_id), valid_from DATE NOT NULL,
  price DECIMAL(9,2) NOT NULL, PRIMARY KEY (product_id, valid_from));
CREATE TABLE note (note_id INTEGER NOT NULL PRIMARY KEY, body TEXT, author_id INTEGER REFERENCES employee (emp_id));
CREATE INDEX ix_employee_name ON employee (name, hired DESC);
CREATE INDEX ix_orders_recent ON orders (ordered DESC, customer_id);
CREATE UNIQUE INDEX ux_product_name ON product (name);
CREATE VIEW big_orders AS SELECT order_id, customer_id FROM orders WHERE status = 'B';
)";

bool DriverInstalled(const char* name) {
    const std::string command = std::string("odbcinst -q -d -n ") + name + " > /dev/null 2>&1";
    return std::system(command.c_str()) == 0;
}

class OdbcTest : public CommandLineTest {
protected:
    void SetUp() override {
        if (!DriverInstalled("SQLite3"))
            GTEST_SKIP() << "the SQLite ODBC driver (Debian libsqliteodbc) is not registered with unixODBC";
        m_database = m_dir.File("company.db");
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open(m_database.c_str(), &db), SQLITE_OK);
        char* error = nullptr;
        ASSERT_EQ(sqlite3_exec(db, kSchema, nullptr, nullptr, &error), SQLITE_OK) << (error ? error : "");
        sqlite3_close(db);
    }
    std::string Connection() const { return "odbc:Driver=SQLite3;Database=" + m_database; }

    std::string m_database;
};

TEST(ConnectionStrings, PasswordsAreAddedBracedAndNeverShown) {
    EXPECT_TRUE(HasPassword("DSN=x;pwd=secret"));
    EXPECT_TRUE(HasPassword("DSN=x; Password=secret"));
    EXPECT_FALSE(HasPassword("DSN=x;UID=pwd"));
    EXPECT_EQ(WithValue("DSN=x", "PWD", "plain"), "DSN=x;PWD=plain");
    EXPECT_EQ(WithValue("DSN=x;", "PWD", "a;b}c"), "DSN=x;PWD={a;b}}c}");
    EXPECT_EQ(MaskedConnection("DSN=x;PWD=secret;UID=u"), "DSN=x;PWD=***;UID=u");
    EXPECT_EQ(MaskedConnection("odbc:Driver=d;password={a;b}}c};UID=u"), "odbc:Driver=d;password=***;UID=u");
    EXPECT_EQ(MaskedConnection("DSN=x"), "DSN=x");
}

TEST_F(OdbcTest, TheSqliteDriverGivesTheModelOfTheNativeImport) {
    const std::string viaOdbc = m_dir.File("odbc.vrn"), native = m_dir.File("native.vrn");
    ASSERT_EQ(Run("import '" + Connection() + "' -o " + viaOdbc), 0) << Err();
    EXPECT_NE(Out().find("a live database, SQLite "), npos) << Out();
    EXPECT_NE(Out().find("12 tables"), npos) << Out();
    ASSERT_EQ(Run("import " + m_database + " -o " + native), 0) << Err();

    CModel odbc, sqlite;
    std::string error;
    ASSERT_TRUE(ReadModelFile(viaOdbc, odbc, error)) << error;
    ASSERT_TRUE(ReadModelFile(native, sqlite, error)) << error;
    ASSERT_EQ(odbc.tables.size(), sqlite.tables.size());
    std::vector<std::string> differences;
    for (const CModelChange& change : CompareModels(sqlite, odbc)) differences.push_back(change.Describe());
    // What the portable ODBC path does not carry, each for its reason:
    // - the SQLite driver gives a text default without its quotes (ODBC
    //   asks for them);
    // - it gives every index column as ascending;
    // - no catalog function of ODBC lists check constraints.
    // (The texts of views differ too, but a model file's reader keeps none.)
    const std::vector<std::string> expected = {
        "table country column name: default 'unknown' -> unknown",
        "table employee index ix_employee_name: columns name, hired DESC -> name, hired",
        "check constraint (salary >= 0) of employee column salary dropped",
        "table orders column status: default 'N' -> N",
        "table orders index ix_orders_recent: columns ordered DESC, customer_id -> ordered, customer_id",
    };
    EXPECT_EQ(differences, expected);
}

TEST_F(OdbcTest, SchemasAndTablesNarrowTheReadingAndNothingMatchingIsAnError) {
    const std::string model = m_dir.File("orders.vrn");
    ASSERT_EQ(Run("import '" + Connection() + "' --tables 'order%' -o " + model), 0) << Err();
    CModel read;
    std::string error;
    ASSERT_TRUE(ReadModelFile(model, read, error)) << error;
    std::vector<std::string> names;
    for (const CModelTable& table : read.tables) names.push_back(table.name);
    EXPECT_EQ(names, (std::vector<std::string>{"orders", "order_line"}));

    EXPECT_EQ(Run("import '" + Connection() + "' --tables 'nothing%' -o " + m_dir.File("none.vrn")), 1);
    EXPECT_NE(Err().find("no table or view"), npos) << Err();
    EXPECT_FALSE(std::filesystem::exists(m_dir.File("none.vrn")));
}

TEST_F(OdbcTest, AMissingDriverIsSaidAndThePasswordIsNeverShown) {
    const std::string model = m_dir.File("never.vrn");
    EXPECT_EQ(Run("import 'odbc:Driver=NoSuchDriver;Server=localhost;PWD=hunter2' -o " + model), 1);
    EXPECT_NE(Err().find("cannot connect"), npos) << Err();
    EXPECT_EQ(Err().find("hunter2"), npos) << Err();
    EXPECT_FALSE(std::filesystem::exists(model));

    // A password from the environment reaches the driver but not the summary or the model.
    ASSERT_EQ(Shell("VRN_ODBC_PASSWORD=hunter2 vrnmodel import '" + Connection() + ";UID=me' -o " + model +
                    " > " + m_dir.File("summary.txt")),
              0)
        << Err();
    EXPECT_EQ(ReadBytes(m_dir.File("summary.txt")).find("hunter2"), npos);
    EXPECT_EQ(ReadBytes(model).find("hunter2"), npos);
}

}  // namespace
