// Test helpers: read a saved model file back with plain SQLite, as any reader
// of the format would, and make scratch directories that clean up after
// themselves.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

using CRowValues = std::map<std::string, std::string>;

class CModelFileReader {
public:
    explicit CModelFileReader(const std::string& path);
    ~CModelFileReader();
    CModelFileReader(const CModelFileReader&) = delete;
    CModelFileReader& operator=(const CModelFileReader&) = delete;

    bool IsOpen() const { return m_db != nullptr; }
    // Every row of `table` in output order (by row_seq where the table has it),
    // each as column name -> text ("NULL" for SQL NULL).
    std::vector<CRowValues> Rows(const std::string& table, const std::string& orderBy = "") const;
    // Every row that `sql` selects, each as column name -> text.
    std::vector<CRowValues> Query(const std::string& sql) const;
    std::int64_t Count(const std::string& table) const;
    // The first column of the first row of `sql`, as text; "" when none.
    std::string Scalar(const std::string& sql) const;
    std::vector<std::string> Column(const std::string& sql) const;

private:
    sqlite3* m_db = nullptr;
};

// A fresh directory under the system's temporary directory, removed with
// everything in it when the object goes.
class CScratchDir {
public:
    CScratchDir();
    ~CScratchDir();
    CScratchDir(const CScratchDir&) = delete;
    CScratchDir& operator=(const CScratchDir&) = delete;

    const std::string& Path() const { return m_path; }
    std::string File(const std::string& name) const { return m_path + "/" + name; }
    // The names of the entries in the directory, sorted.
    std::vector<std::string> Entries() const;

private:
    std::string m_path;
};

void WriteBytes(const std::string& path, const std::string& bytes);
std::string ReadBytes(const std::string& path);
// Runs SQL on a file directly, for making damaged or foreign files.
void ExecOnFile(const std::string& path, const std::string& sql);
