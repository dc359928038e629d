#include "OdbcConnection.h"

#include "ConnectionString.h"

#include <termios.h>
#include <unistd.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <iostream>

namespace {

// A line read from the terminal with echo off; false when there is no terminal.
bool AskPassword(std::string& password) {
    if (!isatty(STDIN_FILENO)) return false;
    termios saved {};
    if (tcgetattr(STDIN_FILENO, &saved) != 0) return false;
    termios quiet = saved;
    quiet.c_lflag &= static_cast<tcflag_t>(~ECHO);
    std::fprintf(stderr, "Password: ");
    std::fflush(stderr);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    const bool read = static_cast<bool>(std::getline(std::cin, password));
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &saved);
    std::fprintf(stderr, "\n");
    return read;
}


}  // namespace

COdbcRows::~COdbcRows() {
    if (m_statement != SQL_NULL_HSTMT) SQLFreeHandle(SQL_HANDLE_STMT, m_statement);
}

COdbcRows::COdbcRows(COdbcRows&& other) noexcept
    : m_statement(other.m_statement), m_error(std::move(other.m_error)) {
    other.m_statement = SQL_NULL_HSTMT;
}

bool COdbcRows::Next() {
    const SQLRETURN rc = SQLFetch(m_statement);
    if (rc == SQL_SUCCESS || rc == SQL_SUCCESS_WITH_INFO) return true;
    if (rc != SQL_NO_DATA) m_error = COdbcConnection::Diagnostics(SQL_HANDLE_STMT, m_statement);
    return false;
}

std::string COdbcRows::Text(int column) {
    std::string text;
    char buffer[4096];
    for (;;) {
        SQLLEN length = 0;
        const SQLRETURN rc = SQLGetData(m_statement, static_cast<SQLUSMALLINT>(column), SQL_C_CHAR, buffer,
                                        sizeof buffer, &length);
        if (rc == SQL_NO_DATA || length == SQL_NULL_DATA || (rc != SQL_SUCCESS && rc != SQL_SUCCESS_WITH_INFO))
            return text;
        // A long value comes in parts, each but the last filling the buffer less its terminating zero.
        const bool more = rc == SQL_SUCCESS_WITH_INFO && (length == SQL_NO_TOTAL || length >= SQLLEN(sizeof buffer));
        text.append(buffer, more ? sizeof buffer - 1 : static_cast<std::size_t>(length));
        if (!more) return text;
    }
}

bool COdbcRows::IsNull(int column) {
    char buffer[1];
    SQLLEN length = 0;
    const SQLRETURN rc = SQLGetData(m_statement, static_cast<SQLUSMALLINT>(column), SQL_C_CHAR, buffer, 0, &length);
    return (rc == SQL_SUCCESS || rc == SQL_SUCCESS_WITH_INFO) && length == SQL_NULL_DATA;
}

long COdbcRows::Number(int column, long fallback) {
    SQLBIGINT value = 0;
    SQLLEN length = 0;
    const SQLRETURN rc = SQLGetData(m_statement, static_cast<SQLUSMALLINT>(column), SQL_C_SBIGINT, &value,
                                    sizeof value, &length);
    if ((rc != SQL_SUCCESS && rc != SQL_SUCCESS_WITH_INFO) || length == SQL_NULL_DATA) return fallback;
    return static_cast<long>(value);
}

COdbcConnection::COdbcConnection() {
    if (SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &m_environment) != SQL_SUCCESS) {
        m_environment = SQL_NULL_HENV;
        m_error = "the ODBC driver manager cannot start";
        return;
    }
    SQLSetEnvAttr(m_environment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
}

COdbcConnection::~COdbcConnection() {
    if (m_connected) SQLDisconnect(m_connection);
    if (m_connection != SQL_NULL_HDBC) SQLFreeHandle(SQL_HANDLE_DBC, m_connection);
    if (m_environment != SQL_NULL_HENV) SQLFreeHandle(SQL_HANDLE_ENV, m_environment);
}

std::string COdbcConnection::Diagnostics(SQLSMALLINT type, SQLHANDLE handle) {
    std::string text;
    for (SQLSMALLINT record = 1;; ++record) {
        SQLCHAR state[6] = {};
        SQLCHAR message[1024] = {};
        SQLINTEGER native = 0;
        SQLSMALLINT length = 0;
        const SQLRETURN rc = SQLGetDiagRec(type, handle, record, state, &native, message, sizeof message, &length);
        if (rc != SQL_SUCCESS && rc != SQL_SUCCESS_WITH_INFO) break;
        if (!text.empty()) text += "; ";
        text += "[" + std::string(reinterpret_cast<char*>(state)) + "] " + reinterpret_cast<char*>(message);
    }
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) text.pop_back();
    return text.empty() ? std::string("no reason given") : text;
}

std::string COdbcConnection::State(SQLSMALLINT type, SQLHANDLE handle) {
    SQLCHAR state[6] = {};
    SQLCHAR message[8] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    SQLGetDiagRec(type, handle, 1, state, &native, message, sizeof message, &length);
    return reinterpret_cast<char*>(state);
}

bool COdbcConnection::TryConnect(const std::string& connection, std::string& state) {
    if (m_connection == SQL_NULL_HDBC && SQLAllocHandle(SQL_HANDLE_DBC, m_environment, &m_connection) != SQL_SUCCESS) {
        m_connection = SQL_NULL_HDBC;
        m_error = "the ODBC driver manager cannot make a connection";
        return false;
    }
    SQLSetConnectAttr(m_connection, SQL_ATTR_LOGIN_TIMEOUT, reinterpret_cast<SQLPOINTER>(15), 0);
    SQLCHAR out[1024] = {};
    SQLSMALLINT length = 0;
    const SQLRETURN rc = SQLDriverConnect(m_connection, nullptr,
                                          reinterpret_cast<SQLCHAR*>(const_cast<char*>(connection.c_str())), SQL_NTS,
                                          out, sizeof out, &length, SQL_DRIVER_NOPROMPT);
    if (rc == SQL_SUCCESS || rc == SQL_SUCCESS_WITH_INFO) {
        m_connected = true;
        return true;
    }
    state = State(SQL_HANDLE_DBC, m_connection);
    m_error = "cannot connect with " + MaskedConnection(connection) + ": " + Diagnostics(SQL_HANDLE_DBC, m_connection);
    return false;
}

bool COdbcConnection::Connect(const std::string& connection) {
    if (m_environment == SQL_NULL_HENV) return false;
    std::string full = connection;
    const char* password = std::getenv("VRN_ODBC_PASSWORD");
    if (!HasPassword(full) && password && *password) full = WithValue(full, "PWD", password);
    std::string state;
    if (TryConnect(full, state)) return true;
    // 28000: the server refused the login. Ask once, on a terminal.
    std::string asked;
    if (state != "28000" || HasPassword(full) || !AskPassword(asked)) return false;
    return TryConnect(WithValue(full, "PWD", asked), state);
}

std::string COdbcConnection::Info(SQLUSMALLINT what) {
    SQLCHAR value[256] = {};
    SQLSMALLINT length = 0;
    if (SQLGetInfo(m_connection, what, value, sizeof value, &length) != SQL_SUCCESS) return std::string();
    return reinterpret_cast<char*>(value);
}

SQLUINTEGER COdbcConnection::InfoNumber(SQLUSMALLINT what) {
    SQLUINTEGER value = 0;
    SQLSMALLINT length = 0;
    if (SQLGetInfo(m_connection, what, &value, sizeof value, &length) != SQL_SUCCESS) return 0;
    return value;
}

std::unique_ptr<COdbcRows> COdbcConnection::Statement(const char* what) {
    SQLHSTMT statement = SQL_NULL_HSTMT;
    if (!m_connected || SQLAllocHandle(SQL_HANDLE_STMT, m_connection, &statement) != SQL_SUCCESS) {
        m_error = std::string("cannot ") + what + ": no statement can be made on the connection";
        return nullptr;
    }
    ++m_calls;
    return std::unique_ptr<COdbcRows>(new COdbcRows(statement));
}

namespace {

// A catalog function's argument: null for "any", as the functions take it.
SQLCHAR* Argument(const std::string& text) {
    return text.empty() ? nullptr : reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.c_str()));
}

SQLSMALLINT Length(const std::string& text) { return text.empty() ? 0 : SQL_NTS; }

// A schema as the catalog functions take it: as the schema, or as the
// catalog on a server whose databases are catalogs.
struct CScope {
    CScope(bool catalogs, const std::string& schema) {
        (catalogs ? catalog : this->schema) = Argument(schema);
        (catalogs ? catalogLength : schemaLength) = Length(schema);
    }
    SQLCHAR* catalog = nullptr;
    SQLSMALLINT catalogLength = 0;
    SQLCHAR* schema = nullptr;
    SQLSMALLINT schemaLength = 0;
};

// The rows of a statement that ran, or null with the reason.
std::unique_ptr<COdbcRows> Ran(std::unique_ptr<COdbcRows> rows, SQLRETURN rc, SQLHSTMT statement, const char* what,
                               std::string& error) {
    if (rc == SQL_SUCCESS || rc == SQL_SUCCESS_WITH_INFO) return rows;
    error = std::string("cannot ") + what + ": " + COdbcConnection::Diagnostics(SQL_HANDLE_STMT, statement);
    return nullptr;
}

}  // namespace

std::unique_ptr<COdbcRows> COdbcConnection::Query(const std::string& sql) {
    std::unique_ptr<COdbcRows> rows = Statement("run a query");
    if (!rows) return nullptr;
    const SQLHSTMT statement = rows->m_statement;
    const SQLRETURN rc = SQLExecDirect(statement, reinterpret_cast<SQLCHAR*>(const_cast<char*>(sql.c_str())), SQL_NTS);
    return Ran(std::move(rows), rc, statement, "read the server's catalog", m_error);
}

std::unique_ptr<COdbcRows> COdbcConnection::Tables(const std::string& schemaPattern, const std::string& tablePattern,
                                                   const std::string& types) {
    std::unique_ptr<COdbcRows> rows = Statement("list tables");
    if (!rows) return nullptr;
    const SQLHSTMT statement = rows->m_statement;
    const CScope scope(m_catalogsAsSchemas, schemaPattern);
    const SQLRETURN rc = SQLTables(statement, scope.catalog, scope.catalogLength, scope.schema, scope.schemaLength,
                                   Argument(tablePattern), Length(tablePattern), Argument(types), Length(types));
    return Ran(std::move(rows), rc, statement, "list tables", m_error);
}

std::unique_ptr<COdbcRows> COdbcConnection::Columns(const std::string& schemaPattern, const std::string& tablePattern) {
    std::unique_ptr<COdbcRows> rows = Statement("list columns");
    if (!rows) return nullptr;
    const SQLHSTMT statement = rows->m_statement;
    const CScope scope(m_catalogsAsSchemas, schemaPattern);
    const SQLRETURN rc = SQLColumns(statement, scope.catalog, scope.catalogLength, scope.schema, scope.schemaLength,
                                    Argument(tablePattern), Length(tablePattern), nullptr, 0);
    return Ran(std::move(rows), rc, statement, "list columns", m_error);
}

std::unique_ptr<COdbcRows> COdbcConnection::PrimaryKeys(const std::string& schema, const std::string& table) {
    std::unique_ptr<COdbcRows> rows = Statement("read primary keys");
    if (!rows) return nullptr;
    const SQLHSTMT statement = rows->m_statement;
    const CScope scope(m_catalogsAsSchemas, schema);
    const SQLRETURN rc = SQLPrimaryKeys(statement, scope.catalog, scope.catalogLength, scope.schema, scope.schemaLength,
                                        Argument(table), Length(table));
    return Ran(std::move(rows), rc, statement, "read primary keys", m_error);
}

std::unique_ptr<COdbcRows> COdbcConnection::Statistics(const std::string& schema, const std::string& table) {
    std::unique_ptr<COdbcRows> rows = Statement("read indexes");
    if (!rows) return nullptr;
    const SQLHSTMT statement = rows->m_statement;
    const CScope scope(m_catalogsAsSchemas, schema);
    const SQLRETURN rc = SQLStatistics(statement, scope.catalog, scope.catalogLength, scope.schema, scope.schemaLength,
                                       Argument(table), Length(table), SQL_INDEX_ALL, SQL_QUICK);
    return Ran(std::move(rows), rc, statement, "read indexes", m_error);
}

std::unique_ptr<COdbcRows> COdbcConnection::ForeignKeys(const std::string& schema, const std::string& table) {
    std::unique_ptr<COdbcRows> rows = Statement("read foreign keys");
    if (!rows) return nullptr;
    const SQLHSTMT statement = rows->m_statement;
    // The keys of `table` as the child: its own foreign keys.
    const CScope scope(m_catalogsAsSchemas, schema);
    const SQLRETURN rc = SQLForeignKeys(statement, nullptr, 0, nullptr, 0, nullptr, 0, scope.catalog,
                                        scope.catalogLength, scope.schema, scope.schemaLength, Argument(table),
                                        Length(table));
    return Ran(std::move(rows), rc, statement, "read foreign keys", m_error);
}

std::unique_ptr<COdbcRows> COdbcConnection::Procedures(const std::string& schemaPattern) {
    std::unique_ptr<COdbcRows> rows = Statement("list procedures");
    if (!rows) return nullptr;
    const SQLHSTMT statement = rows->m_statement;
    const CScope scope(m_catalogsAsSchemas, schemaPattern);
    const SQLRETURN rc =
        SQLProcedures(statement, scope.catalog, scope.catalogLength, scope.schema, scope.schemaLength, nullptr, 0);
    return Ran(std::move(rows), rc, statement, "list procedures", m_error);
}
