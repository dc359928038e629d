// Option tables: the property codes of entities, attributes, indexes and
// partitions are each a table of rows, one per code. What a code does is its
// own table's business; this module gives the tables their shared parts: how
// a numeric option is stored with the property manager, the one lookup of a
// code, and the buffer pools that tables, indexes and partitions all name.
#pragma once

#include <cstddef>
#include <cstdint>

#include "framework/AfxString.h"

namespace vrn {

// A numeric option as the property manager stores it: a property number, the
// value number for a nonzero and for a zero value, and whether the value
// itself goes along as its decimal text.
struct COptionProperty {
    int propertyNo;
    int valueIfNonzero;
    int valueIfZero;
    bool decimalText;

    int ValueNo(long value) const { return value != 0 ? valueIfNonzero : valueIfZero; }
    // The property text for `value`: its decimal digits (kept in `digits`), or null.
    const char* Text(long value, CString& digits) const {
        if (!decimalText) return nullptr;
        digits = CString::FromInt(static_cast<std::int32_t>(value));
        return digits.GetString();
    }
};

// The row of `code` in an option table (rows with an int member `code`), or null.
template <class Row, std::size_t N>
const Row* FindOption(const Row (&table)[N], int code) {
    for (const Row& row : table)
        if (row.code == code) return &row;
    return nullptr;
}

// The buffer pool property, and its value numbers by keyword.
constexpr int kBufferPoolProperty = 24;
struct CBufferPool {
    const char* keyword;
    int valueNo;           // of a table or an index
    int partitionValueNo;  // of a partition: DEFAULT is stored as 14 there
};
// The pool of `keyword`, compared exactly (a lower-case keep is no pool), or null.
const CBufferPool* FindBufferPool(const CString& keyword);
// A pool of another name, where the platform allows any (DB2 for OS/390), is
// stored as the default pool with the name as its text.
constexpr int kNamedBufferPoolValue = 31;

}  // namespace vrn
