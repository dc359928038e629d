// A connection to a database server through the ODBC driver manager
// (unixODBC): the handles, owned; the connection string, with the password
// added from VRN_ODBC_PASSWORD or asked for on a terminal and never shown;
// what the driver says of the server; and statements whose rows are read
// column by column. Every failure is kept as a readable reason, with the
// driver's own diagnostics. Only the client links ODBC, never the library.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <memory>
#include <string>
#include <vector>

// One statement handle of a connection; rows are fetched one at a time and
// their columns read as text or numbers (1-based, as ODBC counts them).
class COdbcRows {
public:
    ~COdbcRows();
    COdbcRows(const COdbcRows&) = delete;
    COdbcRows& operator=(const COdbcRows&) = delete;
    COdbcRows(COdbcRows&& other) noexcept;

    bool Next();
    std::string Text(int column);
    bool IsNull(int column);
    long Number(int column, long fallback = 0);
    // Why Next stopped early, or empty when the rows simply ended.
    const std::string& Error() const { return m_error; }

private:
    friend class COdbcConnection;
    explicit COdbcRows(SQLHSTMT statement) : m_statement(statement) {}

    SQLHSTMT m_statement = SQL_NULL_HSTMT;
    std::string m_error;
};

class COdbcConnection {
public:
    COdbcConnection();
    ~COdbcConnection();
    COdbcConnection(const COdbcConnection&) = delete;
    COdbcConnection& operator=(const COdbcConnection&) = delete;

    // Connects with `connection` ("DSN=...;UID=..." or "Driver=...;Server=..."),
    // with the password of VRN_ODBC_PASSWORD added when the string has none;
    // when the server refuses the login and standard input is a terminal,
    // asks for one without echoing it. False with the reason.
    bool Connect(const std::string& connection);
    const std::string& Error() const { return m_error; }

    // SQLGetInfo texts: SQL_DBMS_NAME, SQL_DBMS_VER, SQL_DRIVER_NAME.
    std::string Info(SQLUSMALLINT what);
    // SQLGetInfo bit masks and numbers: SQL_SCHEMA_USAGE, ...
    SQLUINTEGER InfoNumber(SQLUSMALLINT what);

    // Servers without schemas (MariaDB, MySQL) keep their databases as
    // catalogs: the catalog functions then take a schema as the catalog.
    void UseCatalogsAsSchemas(bool use) { m_catalogsAsSchemas = use; }
    bool CatalogsAsSchemas() const { return m_catalogsAsSchemas; }

    // A query of the server's own, or one of the catalog functions; null
    // with Error() set when it cannot run.
    std::unique_ptr<COdbcRows> Query(const std::string& sql);
    std::unique_ptr<COdbcRows> Tables(const std::string& schemaPattern, const std::string& tablePattern,
                                      const std::string& types);
    std::unique_ptr<COdbcRows> Columns(const std::string& schemaPattern, const std::string& tablePattern);
    std::unique_ptr<COdbcRows> PrimaryKeys(const std::string& schema, const std::string& table);
    std::unique_ptr<COdbcRows> Statistics(const std::string& schema, const std::string& table);
    std::unique_ptr<COdbcRows> ForeignKeys(const std::string& schema, const std::string& table);
    std::unique_ptr<COdbcRows> Procedures(const std::string& schemaPattern);
    // How many catalog functions and queries ran: the reading's cost does
    // not grow with the number of tables where a server family is known.
    int Calls() const { return m_calls; }

    // The diagnostics ODBC keeps for a handle: "[SQLSTATE] message; ...".
    static std::string Diagnostics(SQLSMALLINT type, SQLHANDLE handle);
    // The SQLSTATE of the first diagnostic of a handle.
    static std::string State(SQLSMALLINT type, SQLHANDLE handle);

private:
    std::unique_ptr<COdbcRows> Statement(const char* what);
    bool TryConnect(const std::string& connection, std::string& state);

    SQLHENV m_environment = SQL_NULL_HENV;
    SQLHDBC m_connection = SQL_NULL_HDBC;
    bool m_connected = false;
    bool m_catalogsAsSchemas = false;
    int m_calls = 0;
    std::string m_error;
};
