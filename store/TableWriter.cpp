#include "store/TableWriter.h"

#include <algorithm>

#include "store/VrnFile.h"

namespace vrn {

CTableWriter::CTableWriter(CVrnFile& file, const char* table, const char* columns, EDuplicates duplicates)
    : m_file(file), m_table(table) {
    CStoreDb& db = file.GetDb();
    db.EnsureTransaction();
    if (!db.Exec("DELETE FROM " + QuoteIdentifier(m_table)))
        file.NoteWriteFailure("cannot empty table " + m_table + ": " + db.LastError());
    const std::string list(columns);
    const auto count = std::count(list.begin(), list.end(), ',') + 1;
    std::string sql = std::string(duplicates == kLaterRowWins ? "INSERT OR REPLACE" : "INSERT") + " INTO " +
                      QuoteIdentifier(m_table) + " (" + list + ") VALUES (?1";
    for (long i = 2; i <= count; ++i) sql += ", ?" + std::to_string(i);
    m_insert = db.Prepare(sql + ")");
    if (!m_insert.IsValid()) file.NoteWriteFailure("cannot write table " + m_table + ": " + db.LastError());
}

void CTableWriter::Add() {
    if (!m_insert.IsValid()) return;  // already noted when it was prepared
    if (!m_insert.Run())
        m_file.NoteWriteFailure("cannot write a row of table " + m_table + ": " + m_file.GetDb().ConnectionError());
    m_insert.Reset();
}

}  // namespace vrn
