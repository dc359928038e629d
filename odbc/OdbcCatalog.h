// A live database's catalog read through ODBC into the same declarations a
// DDL script gives (sql/DdlDecl.h), so that the importer builds the model
// exactly as it builds one from a script: tables with their columns and
// primary keys, views, indexes, foreign keys and procedures.
//
// Tables and columns come in one catalog call each for the whole schema.
// The portable path then asks for the keys, indexes and foreign keys of each
// table, as ODBC's functions take one table at a time.
#pragma once

#include <string>
#include <vector>

#include "DdlDecl.h"
#include "OdbcConnection.h"
#include "OdbcSource.h"

// What the driver says of the server, and the platform code it gives.
struct COdbcServer {
    std::string name;     // SQL_DBMS_NAME
    std::string version;  // SQL_DBMS_VER
    std::string driver;   // SQL_DRIVER_NAME
    int platform = 0;     // of the platform table; 0 for a server it does not number
};

COdbcServer DescribeServer(COdbcConnection& connection);

// The platform code of a server from its DBMS name and version: SQL Server,
// Sybase ASE, Oracle (7, 8 and later), DB2 for LUW, z/OS and i, Informix.
int PlatformOfServer(const std::string& name, const std::string& version);

struct COdbcCatalog {
    std::vector<CStatementDecl> statements;  // in the order they are applied
    std::vector<std::string> warnings;       // what could not be read, and went on without
};

// Reads the catalog; false with the reason when even the tables cannot be
// listed. What is read later and fails (a table's keys, say) is a warning.
bool ReadOdbcCatalog(COdbcConnection& connection, const COdbcServer& server, const COdbcOptions& options,
                     COdbcCatalog& catalog, std::string& error);
