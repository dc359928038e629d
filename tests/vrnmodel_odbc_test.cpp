// Live databases through ODBC, as a user imports them. The SQLite ODBC
// driver reads a database file that the native SQLite import reads too: the
// two models are compared, and what differs is listed here with the reason.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "CommandLineTest.h"
#include "ConnectionString.h"
#include "ImportedModel.h"
#include "MariaDbServer.h"
#include "OdbcCatalog.h"
#include "PostgresServer.h"

namespace {

constexpr auto npos = std::string::npos;

// A dozen tables: composite keys, a self reference, indexes with descending
// columns, unique constraints, defaults, a check and a view. (MariaDB ignores
// a REFERENCES clause on a column: the catalog each test compares with has
// what the server kept.)
const std::string kTables = R"(
CREATE TABLE region (region_id integer NOT NULL PRIMARY KEY, name varchar(40) NOT NULL UNIQUE);
CREATE TABLE country (country_code char(2) NOT NULL PRIMARY KEY, region_id integer REFERENCES region (region_id),
  name varchar(60) NOT NULL DEFAULT 'unknown');
CREATE TABLE department (dept_id integer NOT NULL PRIMARY KEY, head_id integer, name varchar(40) NOT NULL);
CREATE TABLE employee (emp_id integer NOT NULL PRIMARY KEY, manager_id integer, dept_id integer,
  name varchar(80) NOT NULL, salary numeric(10,2) DEFAULT 0 CHECK (salary >= 0), hired date,
  FOREIGN KEY (manager_id) REFERENCES employee (emp_id), FOREIGN KEY (dept_id) REFERENCES department (dept_id));
CREATE TABLE project (dept_id integer NOT NULL, project_no integer NOT NULL, title varchar(100),
  budget numeric(12,2), PRIMARY KEY (dept_id, project_no), FOREIGN KEY (dept_id) REFERENCES department (dept_id));
CREATE TABLE assignment (dept_id integer NOT NULL, project_no integer NOT NULL, emp_id integer NOT NULL,
  hours real DEFAULT 0, PRIMARY KEY (dept_id, project_no, emp_id),
  FOREIGN KEY (emp_id) REFERENCES employee (emp_id) ON DELETE CASCADE,
  CONSTRAINT fk_assignment_project FOREIGN KEY (dept_id, project_no) REFERENCES project (dept_id, project_no)
  ON DELETE CASCADE ON UPDATE CASCADE);
CREATE TABLE customer (customer_id integer NOT NULL PRIMARY KEY, name varchar(80) NOT NULL, country_code char(2),
  created timestamp DEFAULT CURRENT_TIMESTAMP, FOREIGN KEY (country_code) REFERENCES country (country_code));
CREATE TABLE orders (order_id integer NOT NULL PRIMARY KEY, customer_id integer NOT NULL, ordered date NOT NULL,
  status char(1) DEFAULT 'N', FOREIGN KEY (customer_id) REFERENCES customer (customer_id));
CREATE TABLE product (product_id integer NOT NULL PRIMARY KEY, name varchar(80) NOT NULL, price numeric(9,2));
CREATE TABLE order_line (order_id integer NOT NULL, line_no integer NOT NULL, product_id integer NOT NULL,
  quantity integer NOT NULL DEFAULT 1, PRIMARY KEY (order_id, line_no),
  FOREIGN KEY (order_id) REFERENCES orders (order_id), FOREIGN KEY (product_id) REFERENCES product (product_id));
CREATE TABLE price_history (product_id integer NOT NULL, valid_from date NOT NULL, price numeric(9,2) NOT NULL,
  PRIMARY KEY (product_id, valid_from), FOREIGN KEY (product_id) REFERENCES product (product_id));
CREATE TABLE note (note_id integer NOT NULL PRIMARY KEY, body text, author_id integer,
  FOREIGN KEY (author_id) REFERENCES employee (emp_id));
CREATE INDEX ix_employee_name ON employee (name, hired DESC);
CREATE INDEX ix_orders_recent ON orders (ordered DESC, customer_id);
CREATE UNIQUE INDEX ux_product_name ON product (name);
CREATE VIEW big_orders AS SELECT order_id, customer_id FROM orders WHERE status = 'B';
)";
// The key that closes the cycle employee -> department -> employee: a server
// adds it once both tables are there; SQLite, which adds no constraint to a
// table it has made, takes it in the department's own statement.
const std::string kCycle =
    "ALTER TABLE department ADD CONSTRAINT fk_department_head FOREIGN KEY (head_id) REFERENCES employee (emp_id);\n";
std::string SqliteTables() {
    std::string tables = kTables;
    const std::string head = " head_id integer,";
    tables.replace(tables.find(head), head.size(), " head_id integer REFERENCES employee (emp_id),");
    return tables;
}

bool DriverInstalled(const char* name) {
    const std::string command = std::string("odbcinst -q -d -n '") + name + "' > /dev/null 2>&1";
    return std::system(command.c_str()) == 0;
}

class OdbcTest : public CommandLineTest {
protected:
    void SetUp() override {
        if (!DriverInstalled("SQLite3"))
            GTEST_SKIP() << "the SQLite ODBC driver (Debian libsqliteodbc) is not registered with unixODBC";
        m_database = m_dir.File("company.db");
        ASSERT_EQ(RunInSqlite({SqliteTables()}, m_database), "");
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

TEST(ServerPlatforms, TheDriversNameAndVersionGiveThePlatformCode) {
    const struct {
        const char* name;
        const char* version;
        const char* platform;  // a platform name, or "" for none of the table
    } cases[] = {
        {"Microsoft SQL Server", "15.00.2000", "sqlserver"},
        {"Adaptive Server Enterprise", "16.0", "sybase"},
        {"Oracle", "07.03.0000", "oracle7"},
        {"Oracle", "08.01.0007", "oracle8"},
        {"Oracle", "19.00.0000", "oracle"},
        {"DB2/LINUXX8664", "11.05.0800", "db2"},
        {"DB2/NT64", "11.01.0000", "db2"},
        {"DB2", "DSN12015", "db2zos"},
        {"DB2/400 SQL", "07.04.0000", "as400"},
        {"PostgreSQL", "15.0.18", ""},
        {"MariaDB", "10.11.000019", ""},
        {"SQLite", "3.40.1", ""},
    };
    for (const auto& c : cases) {
        const int expected = *c.platform ? PlatformCode(c.platform) : 0;
        EXPECT_EQ(PlatformOfServer(c.name, c.version), expected) << c.name << " " << c.version;
    }
    EXPECT_EQ(PlatformOfServer("Informix", "12.10"), 6);  // Informix ONLINE, the table's only Informix with a name
}

TEST_F(OdbcTest, TheSqliteDriverGivesTheModelOfTheNativeImport) {
    const std::string viaOdbc = m_dir.File("odbc.vrn"), native = m_dir.File("native.vrn");
    ASSERT_EQ(Run("import '" + Connection() + "' -o " + viaOdbc), 0) << Err();
    EXPECT_NE(Out().find("a live database, SQLite "), npos) << Out();
    EXPECT_NE(Out().find("12 tables"), npos) << Out();
    ASSERT_EQ(Run("import " + m_database + " -o " + native), 0) << Err();

    const CModel odbc = ReadModel(viaOdbc), sqlite = ReadModel(native);
    ASSERT_EQ(odbc.tables.size(), sqlite.tables.size());
    std::vector<std::string> differences;
    for (const CModelChange& change : CompareModels(sqlite, odbc)) differences.push_back(change.Describe());
    // What the portable ODBC path does not carry, each for its reason:
    // - the SQLite driver gives a text default without its quotes (ODBC
    //   asks for them);
    // - it gives every index column as ascending;
    // - it gives no foreign key a name;
    // - no catalog function of ODBC lists check constraints.
    // (The texts of views differ too, but a model file's reader keeps none.)
    const std::vector<std::string> expected = {
        "table country column name: default 'unknown' -> unknown",
        "table employee index ix_employee_name: columns name, hired DESC -> name, hired",
        "check constraint (salary >= 0) of employee column salary dropped",
        "foreign key fk_assignment_project of assignment: name fk_assignment_project -> (none)",
        "table orders column status: default 'N' -> N",
        "table orders index ix_orders_recent: columns ordered DESC, customer_id -> ordered, customer_id",
    };
    EXPECT_EQ(differences, expected);
}

TEST_F(OdbcTest, SchemasAndTablesNarrowTheReadingAndNothingMatchingIsAnError) {
    const std::string model = m_dir.File("orders.vrn");
    ASSERT_EQ(Run("import '" + Connection() + "' --tables 'order%' -o " + model), 0) << Err();
    std::vector<std::string> names;
    for (const CModelTable& table : ReadModel(model).tables) names.push_back(table.name);
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

const std::string kPostgresSchema = "CREATE SCHEMA sales;\nSET search_path = sales;\n" + kTables + kCycle + R"(
CREATE FUNCTION order_total(p_order integer) RETURNS numeric LANGUAGE sql AS $$ SELECT 0::numeric $$;
CREATE PROCEDURE close_order(p_order integer) LANGUAGE sql
  AS $$ UPDATE sales.orders SET status = 'C' WHERE order_id = p_order $$;
)";
const std::string kMariaDbSchema = "CREATE DATABASE sales;\nUSE sales;\n" + kTables + kCycle + R"(
CREATE FUNCTION order_total(p_order integer) RETURNS decimal(10,2) RETURN 0;
CREATE PROCEDURE close_order(p_order integer) UPDATE orders SET status = 'C' WHERE order_id = p_order;
)";

// A test of a server that it starts itself; skipped where the server's
// ODBC driver or programs are missing.
template <class Server>
class ServerTest : public CommandLineTest {
protected:
    void SetUp() override {
        if (!DriverInstalled(Server::kDriver))
            GTEST_SKIP() << "the ODBC driver " << Server::kDriver << " is not registered with unixODBC";
        std::string why;
        if (!m_server.Start(why)) GTEST_SKIP() << "no server could be started here: " << why;
    }
    // The model imported from `connection`, with the summary checked.
    CModel ImportSales(const std::string& connection, const std::string& options, const std::string& product) {
        const std::string model = m_dir.File("sales.vrn");
        EXPECT_EQ(Run("import 'odbc:" + connection + "'" + options + " -o " + model), 0) << Err() << Out();
        EXPECT_NE(Out().find("a live database, " + product + " "), npos) << Out();
        return ReadModel(model);
    }
    Server m_server;
};

struct CPostgres : CPostgresServer {
    static constexpr const char* kDriver = "PostgreSQL Unicode";
};
struct CMariaDb : CMariaDbServer {
    static constexpr const char* kDriver = "MariaDB Unicode";
};
using PostgresTest = ServerTest<CPostgres>;
using MariaDbTest = ServerTest<CMariaDb>;

// A client's output as sorted lines, its columns split by | (psql) or by
// tabs (mariadb), written with | here.
std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = text.find('\n', at);
        lines.push_back(text.substr(at, end == npos ? npos : end - at));
        at = end == npos ? text.size() : end + 1;
    }
    for (std::string& line : lines)
        for (char& ch : line)
            if (ch == '\t') ch = '|';
    std::sort(lines.begin(), lines.end());
    return lines;
}

// A model's tables, keys, foreign keys and other indexes, as sorted lines in
// the form the catalog queries of each server give them.
struct CCatalogLines {
    std::vector<std::string> tables;       // table|columns
    std::vector<std::string> keys;         // table|column,column
    std::vector<std::string> foreignKeys;  // child|parent|delete action
    std::vector<std::string> indexes;      // table|index|column,column DESC
};
CCatalogLines LinesOf(const CModel& model) {
    CCatalogLines lines;
    for (const CModelTable& table : model.tables) {
        lines.tables.push_back(table.name + "|" + std::to_string(table.columns.size()));
        for (std::size_t i = 0; i < table.indexes.size(); ++i) {
            const bool key = static_cast<int>(i) == table.primaryKey;
            std::string columns;
            for (const CModelIndexColumn& column : table.indexes[i].columns)
                columns += (columns.empty() ? "" : ",") + column.name + (column.descending && !key ? " DESC" : "");
            if (key)
                lines.keys.push_back(table.name + "|" + columns);
            else
                lines.indexes.push_back(table.name + "|" + table.indexes[i].name + "|" + columns);
        }
    }
    for (const CModelForeignKey& key : model.foreignKeys) {
        EXPECT_GE(key.parentTable, 0);
        if (key.parentTable < 0) continue;
        const char* action = key.onDelete == 'C' ? "CASCADE" : key.onDelete == 'S' ? "SET NULL"
                           : key.onDelete == 'R' ? "RESTRICT" : "NO ACTION";
        lines.foreignKeys.push_back(model.tables[static_cast<std::size_t>(key.childTable)].name + "|" +
                                    model.tables[static_cast<std::size_t>(key.parentTable)].name + "|" + action);
    }
    for (std::vector<std::string>* kind : {&lines.tables, &lines.keys, &lines.foreignKeys, &lines.indexes})
        std::sort(kind->begin(), kind->end());
    return lines;
}

// What ODBC's functions do not give, read from each server's own catalog:
// the check of a column, and the function and procedure with their texts.
void ExpectChecksAndCode(const CModel& model, const std::string& procedureText) {
    ASSERT_EQ(model.checks.size(), 1u);
    EXPECT_EQ(model.checks.at(0).column, "salary");
    std::string text = model.checks.at(0).text;  // MariaDB quotes the name with backquotes
    text.erase(std::remove(text.begin(), text.end(), '`'), text.end());
    EXPECT_NE(text.find("salary >="), npos) << model.checks.at(0).text;
    std::vector<std::string> code;
    for (const CModelCode& procedure : model.procedures) {
        code.push_back(procedure.name);
        if (procedure.name == "close_order") {
            EXPECT_NE(procedure.text.find(procedureText), npos) << procedure.text;
        }
    }
    std::sort(code.begin(), code.end());
    EXPECT_EQ(code, (std::vector<std::string>{"close_order", "order_total"}));
}

// The number of catalog calls the import's summary gives; -1 for none.
int CatalogCalls(const std::string& summary) {
    const std::size_t at = summary.find(" catalog calls)");
    const std::size_t from = summary.rfind('(', at);
    return at == npos || from == npos ? -1 : std::atoi(summary.c_str() + from + 1);
}

TEST_F(PostgresTest, AServersSchemaComesInAsItsCatalogHasIt) {
    m_server.Sql(kPostgresSchema);
    ASSERT_TRUE(m_server.LastSqlSucceeded()) << m_server.Sql(kPostgresSchema);
    const CModel read = ImportSales(m_server.Connection(), " --schema sales", "PostgreSQL");
    const CCatalogLines lines = LinesOf(read);
    EXPECT_EQ(lines.tables,
              Lines(m_server.Sql("SELECT c.table_name, count(*) FROM information_schema.columns c JOIN "
                                 "information_schema.tables t USING (table_schema, table_name) WHERE "
                                 "t.table_schema = 'sales' AND t.table_type = 'BASE TABLE' GROUP BY 1;")));
    EXPECT_EQ(lines.keys,
              Lines(m_server.Sql("SELECT tc.table_name, string_agg(k.column_name, ',' ORDER BY "
                                 "k.ordinal_position) FROM information_schema.table_constraints tc JOIN "
                                 "information_schema.key_column_usage k USING (constraint_schema, "
                                 "constraint_name) WHERE tc.constraint_type = 'PRIMARY KEY' AND tc.table_schema = "
                                 "'sales' GROUP BY 1;")));
    EXPECT_EQ(lines.foreignKeys,
              Lines(m_server.Sql("SELECT c.relname, p.relname, CASE confdeltype WHEN 'c' THEN 'CASCADE' WHEN 'n' "
                                 "THEN 'SET NULL' WHEN 'r' THEN 'RESTRICT' ELSE 'NO ACTION' END FROM "
                                 "pg_constraint JOIN pg_class c ON c.oid = conrelid JOIN pg_class p ON p.oid = "
                                 "confrelid WHERE contype = 'f' AND connamespace = 'sales'::regnamespace;")));
    EXPECT_EQ(lines.indexes,
              Lines(m_server.Sql("SELECT t.relname, i.relname, string_agg(a.attname || CASE WHEN x.indoption[k.n "
                                 "- 1] & 1 = 1 THEN ' DESC' ELSE '' END, ',' ORDER BY k.n) FROM pg_index x JOIN "
                                 "pg_class i ON i.oid = x.indexrelid JOIN pg_class t ON t.oid = x.indrelid CROSS "
                                 "JOIN LATERAL unnest(x.indkey) WITH ORDINALITY AS k(attnum, n) JOIN pg_attribute "
                                 "a ON a.attrelid = x.indrelid AND a.attnum = k.attnum WHERE NOT x.indisprimary "
                                 "AND i.relnamespace = 'sales'::regnamespace GROUP BY 1, 2;")));
    ExpectChecksAndCode(read, "UPDATE sales.orders");
    // A column's type, nullability and default.
    const CModelColumn* name = FindColumn(read, "country", "name");
    ASSERT_NE(name, nullptr);
    EXPECT_EQ(name->width, 60);
    EXPECT_FALSE(name->nullable);
    EXPECT_NE(name->defaultText.find("'unknown'"), npos) << name->defaultText;
}

// The catalog is read in bulk: more tables, the same number of calls.
TEST_F(PostgresTest, CatalogCallsDoNotGrowWithTheTables) {
    const auto calls = [&](int tables) {
        std::string sql = "DROP SCHEMA IF EXISTS wide CASCADE; CREATE SCHEMA wide;\n";
        for (int t = 0; t < tables; ++t) {
            const std::string name = "wide.t" + std::to_string(t);
            sql += "CREATE TABLE " + name + " (id integer PRIMARY KEY, parent_id integer" +
                   (t ? " REFERENCES wide.t" + std::to_string(t - 1) : std::string()) + ", note varchar(20));\n";
            sql += "CREATE INDEX ix_" + std::to_string(t) + " ON " + name + " (note DESC);\n";
        }
        m_server.Sql(sql);
        EXPECT_TRUE(m_server.LastSqlSucceeded());
        EXPECT_EQ(Run("import 'odbc:" + m_server.Connection() + "' --schema wide -o " + m_dir.File("wide.vrn")), 0)
            << Err();
        return CatalogCalls(Out());
    };
    const int few = calls(5), many = calls(40);
    EXPECT_GT(few, 0) << Out();
    EXPECT_EQ(few, many) << Out();
    EXPECT_EQ(Out().find("could not be read"), npos) << Out();
}

TEST_F(PostgresTest, MissingSchemasRefusedLoginsAndAbsentServersAreSaidAndNoModelIsWritten) {
    const std::string model = m_dir.File("none.vrn");
    EXPECT_EQ(Run("import 'odbc:" + m_server.Connection() + "' --schema nowhere -o " + model), 1);
    EXPECT_NE(Err().find("no table or view in the schemas asked for"), npos) << Err();
    EXPECT_FALSE(std::filesystem::exists(model));
    // A refused login says so.
    EXPECT_EQ(Run("import 'odbc:Driver=PostgreSQL Unicode;Server=127.0.0.1;Port=" + std::to_string(m_server.Port()) +
                  ";Database=postgres;UID=nobody_here' -o " + model),
              1);
    EXPECT_NE(Err().find("cannot connect"), npos) << Err();
    // So does a server that is not there.
    EXPECT_EQ(Run("import 'odbc:Driver=PostgreSQL Unicode;Server=127.0.0.1;Port=" +
                  std::to_string(CServerProcess::FreePort()) +
                  ";Database=postgres;UID=vrn' -o " + model),
              1);
    EXPECT_NE(Err().find("cannot connect"), npos) << Err();
    EXPECT_FALSE(std::filesystem::exists(model));
}

// A login the server refuses without a password: the password comes from
// VRN_ODBC_PASSWORD, or is asked for on a terminal without being echoed;
// it is shown nowhere and written nowhere.
TEST_F(MariaDbTest, APasswordComesFromTheEnvironmentOrAQuietPrompt) {
    m_server.Sql("CREATE DATABASE shop; CREATE TABLE shop.item (id integer PRIMARY KEY);"
                 "CREATE USER 'reader'@'%' IDENTIFIED BY 'Sw0rdfish'; GRANT SELECT ON shop.* TO 'reader'@'%';");
    ASSERT_TRUE(m_server.LastSqlSucceeded());
    std::string connection = m_server.Connection("shop");
    connection.replace(connection.find("UID=root"), 8, "UID=reader");
    const std::string model = m_dir.File("shop.vrn"), summary = m_dir.File("summary.txt");

    EXPECT_EQ(Shell("vrnmodel import 'odbc:" + connection + "' -o " + model + " < /dev/null > " + summary), 1);
    EXPECT_NE(Err().find("cannot connect"), npos) << Err();

    ASSERT_EQ(Shell("VRN_ODBC_PASSWORD=Sw0rdfish vrnmodel import 'odbc:" + connection + "' -o " + model + " > " +
                    summary),
              0)
        << Err();
    EXPECT_NE(ReadBytes(summary).find("1 table"), npos) << ReadBytes(summary);

    // On a terminal (script(1) gives the program one), the password is asked
    // for and not echoed; it is typed once the prompt shows, as a person would.
    std::filesystem::remove(model);
    const std::string session = m_dir.File("session.txt");
    const std::string typing = "for i in $(seq 200); do grep -q 'Password: ' " + session +
                               " 2>/dev/null && break; sleep 0.1; done; printf 'Sw0rdfish\\n'";
    ASSERT_EQ(Shell("(" + typing + ") | script -qefc \"vrnmodel import 'odbc:" + connection + "' -o " + model +
                    "\" " + session + " > /dev/null"),
              0)
        << ReadBytes(session);
    const std::string typed = ReadBytes(session);
    EXPECT_NE(typed.find("Password: "), npos) << typed;
    EXPECT_NE(typed.find("1 table"), npos) << typed;
    for (const std::string& shown : {typed, ReadBytes(summary), ReadBytes(model)})
        EXPECT_EQ(shown.find("Sw0rdfish"), npos);
}

TEST_F(MariaDbTest, AServersDatabaseComesInAsItsCatalogHasIt) {
    m_server.Sql(kMariaDbSchema);
    ASSERT_TRUE(m_server.LastSqlSucceeded()) << m_server.Sql("SELECT 1");
    const CModel read = ImportSales(m_server.Connection("sales"), "", "MariaDB");
    for (const CModelTable& table : read.tables) EXPECT_EQ(table.owner, "sales");
    const CCatalogLines lines = LinesOf(read);
    EXPECT_EQ(lines.tables.size(), 12u);
    EXPECT_EQ(lines.foreignKeys.size(), 13u);
    EXPECT_EQ(lines.tables,
              Lines(m_server.Sql("SELECT c.TABLE_NAME, COUNT(*) FROM information_schema.COLUMNS c JOIN "
                                 "information_schema.TABLES t USING (TABLE_SCHEMA, TABLE_NAME) WHERE "
                                 "t.TABLE_SCHEMA = 'sales' AND t.TABLE_TYPE = 'BASE TABLE' GROUP BY 1;")));
    EXPECT_EQ(lines.keys,
              Lines(m_server.Sql("SELECT TABLE_NAME, GROUP_CONCAT(COLUMN_NAME ORDER BY ORDINAL_POSITION) FROM "
                                 "information_schema.KEY_COLUMN_USAGE WHERE TABLE_SCHEMA = 'sales' AND "
                                 "CONSTRAINT_NAME = 'PRIMARY' GROUP BY 1;")));
    EXPECT_EQ(lines.foreignKeys,
              Lines(m_server.Sql("SELECT TABLE_NAME, REFERENCED_TABLE_NAME, DELETE_RULE FROM "
                                 "information_schema.REFERENTIAL_CONSTRAINTS WHERE CONSTRAINT_SCHEMA = 'sales';")));
    EXPECT_EQ(lines.indexes,
              Lines(m_server.Sql("SELECT TABLE_NAME, INDEX_NAME, GROUP_CONCAT(CONCAT(COLUMN_NAME, IF(COLLATION = "
                                 "'D', ' DESC', '')) ORDER BY SEQ_IN_INDEX) FROM information_schema.STATISTICS "
                                 "WHERE TABLE_SCHEMA = 'sales' AND INDEX_NAME <> 'PRIMARY' GROUP BY TABLE_NAME, "
                                 "INDEX_NAME;")));
    ExpectChecksAndCode(read, "UPDATE orders");
    // Read from information_schema in bulk: a few calls whatever the tables.
    EXPECT_EQ(Out().find("could not be read"), npos) << Out();
    const int calls = CatalogCalls(Out());
    EXPECT_GT(calls, 0) << Out();
    EXPECT_LE(calls, 10) << Out();
}

}  // namespace
