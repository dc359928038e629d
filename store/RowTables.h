// The row tables of the model file, as data: one entry per output class, with
// the row type the builder's factory knows it by, the table it writes, and how
// to make one. This is the only place that pairs row types with classes.
#pragma once

#include <cstddef>

class CNSOutputBase;
class CRowFieldVisitor;

namespace vrn {

struct CRowTableInfo {
    int rowType;
    const char* tableName;
    // Lists the table's columns by walking a default-constructed row.
    void (*describe)(CRowFieldVisitor& columns);
    // A new row of the output class, with no model file yet.
    CNSOutputBase* (*make)();
};

extern const CRowTableInfo kRowTables[];
extern const std::size_t kRowTableCount;

// The entry of a row type, or null.
const CRowTableInfo* FindRowTable(int rowType);

}  // namespace vrn
