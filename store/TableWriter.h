// CTableWriter: writes the whole content of one of the managers' tables into
// the model held in memory. Every failed statement is noted in the model file,
// which then refuses to save: a table written only in part must never reach
// the disk as if it were complete.
#pragma once

#include <string>

#include "store/StoreDb.h"

class CVrnFile;

namespace vrn {

class CTableWriter {
public:
    // What a row whose primary key is already written does: fail (and so
    // fail the save), or replace the earlier row.
    enum EDuplicates { kDuplicateFails, kLaterRowWins };

    // Empties `table` (the rows of an opened file, or of an earlier save) and
    // prepares its insert; `columns` lists the columns that each row gives,
    // separated by commas.
    CTableWriter(CVrnFile& file, const char* table, const char* columns, EDuplicates duplicates = kDuplicateFails);
    CTableWriter(const CTableWriter&) = delete;
    CTableWriter& operator=(const CTableWriter&) = delete;

    // The statement whose parameters 1..n are the next row's columns, in order.
    CStatement& Row() { return m_insert; }
    // Inserts the row bound to Row(); the bindings are cleared afterwards.
    void Add();

private:
    CVrnFile& m_file;
    std::string m_table;
    CStatement m_insert;
};

}  // namespace vrn
