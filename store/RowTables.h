// The row tables of the model file, as data: one entry per output class, with
// the row type the builder's factory knows it by and the table it writes.
#pragma once

#include <cstddef>

class CRowFieldVisitor;

struct CRowTableInfo {
    int rowType;
    const char* tableName;
    // Lists the table's columns by walking a default-constructed row.
    void (*describe)(CRowFieldVisitor& columns);
};

extern const CRowTableInfo kRowTables[];
extern const std::size_t kRowTableCount;

// The entry of a row type, or null.
const CRowTableInfo* FindRowTable(int rowType);
