// Importing the catalog of an SQLite database: tables, views, columns with
// their declared types, primary keys, unique constraints and indexes, foreign
// keys, CHECK constraints, column defaults and triggers.
#pragma once

#include <string>

class CDdlImporter;

// True when the file starts with the SQLite header.
bool IsSqliteFile(const std::string& path);

// Reads the database at `path` read-only: its stored CREATE statements are
// the catalog's own definitions, read as one script through `ddl`.
bool ImportSqliteDatabase(const std::string& path, CDdlImporter& ddl, std::string& error);
