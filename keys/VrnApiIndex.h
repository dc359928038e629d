// CVrnApiIndex: a primary key or index of an entity, and the index row that
// its entity writes. An index owns its column rows and its storage row.
#pragma once

#include <cstdint>

#include "framework/AfxColl.h"
#include "store/NSOutput.h"

class CVrnAPI;

class CVrnApiIndex : public CNSOutputIndexes {
public:
    // Key type texts of the index row.
    static const char* const KEYTYPE_PK;   // "P": the primary key
    static const char* const KEYTYPE_ALT;  // "A": an alternate key
    static const char* const KEYTYPE_INV;  // "I": an inversion entry

    // No owner and no storage row.
    CVrnApiIndex() = default;
    // Makes the storage row through the owner's row factory, with every
    // storage parameter slot "not given" (-1).
    explicit CVrnApiIndex(CVrnAPI* owner);
    ~CVrnApiIndex() override;
    CVrnApiIndex(const CVrnApiIndex&) = delete;
    CVrnApiIndex& operator=(const CVrnApiIndex&) = delete;

    CVrnAPI* m_pOwner = nullptr;  // not owned
    // Owning: the column rows in order of adding.
    CTypedPtrList<CPtrList, CNSOutputIndexColumn*> m_columnList;
    CNSOutputIndexStorage* m_pStorage = nullptr;  // owned
    std::int32_t m_partitionSeq = 0;
};
