// Reading a model file for the report and the diagram: the file opened
// read-only, and the rows of a query as texts.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

struct CSqliteCloser {
    void operator()(sqlite3* db) const { sqlite3_close(db); }
};
using CModelDatabase = std::unique_ptr<sqlite3, CSqliteCloser>;

// `path` as a name that SQLite takes for a plain file: this SQLite reads
// names that start with "file:" as URIs, where '?', '#' and '%' mean more.
std::string SqliteFileName(const std::string& path);

// The model file at `path`, opened read-only; null when it is not a model
// file (no FileInfo saying so), with `error` set.
CModelDatabase OpenModelFile(const std::string& path, std::string& error);

// Every row of `sql`: column names and their texts ("" for NULL).
struct CQueryRows {
    std::vector<std::string> columns;
    std::vector<std::vector<std::string>> rows;
};
CQueryRows QueryRows(sqlite3* db, const std::string& sql);
