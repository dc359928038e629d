/// @file
/// The index class of the model builder, CVrnApiIndex, for primary keys and indexes.
#pragma once

#include <cstdint>

#include "framework/VrnExport.h"
#include "framework/AfxColl.h"
#include "store/NSOutput.h"

class CVrnAPI;

/// CVrnApiIndex: a primary key or index of an entity, and the index row that
/// its entity writes. The primary key is simply the index in the entity's
/// primary-key slot, with key type "P". An index owns its column rows and its
/// storage row.
class VRN_EXPORT CVrnApiIndex : public CNSOutputIndexes {
public:
    // Key type texts of the index row.
    static const char* const KEYTYPE_PK;   ///< "P": the primary key
    static const char* const KEYTYPE_ALT;  ///< "A": an alternate key (a unique index)
    static const char* const KEYTYPE_INV;  ///< "I": an inversion entry (any other index)

    /// No owner and no storage row; not used by the builder. Such an index takes no
    /// columns (AddColumn adds nothing), its storage properties answer 0, and Save
    /// writes nothing, though it answers 1.
    CVrnApiIndex() = default;
    /// Makes the storage row through the owner's row factory, with every
    /// storage parameter slot "not given" (-1).
    explicit CVrnApiIndex(CVrnAPI* owner);
    ~CVrnApiIndex() override;
    CVrnApiIndex(const CVrnApiIndex&) = delete;
    CVrnApiIndex& operator=(const CVrnApiIndex&) = delete;

    /// Appends a column for attribute number `attributeNo`; a sequence of 0
    /// becomes the column count plus 1. Duplicates are not checked.
    void AddColumn(std::uint32_t attributeNo, std::uint32_t sequence, int descending);
    /// The position of the first column row, for GetNextIndexColumn; null when the index has no column.
    POSITION StartEnumIndexColumns() const { return m_columnList.GetHeadPosition(); }
    /// REQUIRES: `position` is not null.
    CNSOutputIndexColumn* GetNextIndexColumn(POSITION& position) { return m_columnList.GetNext(position); }
    /// The number of column rows.
    int GetColumnCount() const { return m_columnList.GetCount(); }
    /// True when the columns carry exactly these attribute numbers, in this order.
    bool HasColumns(const CList<std::uint32_t, std::uint32_t>& attributeNos) const;
    /// The attribute numbers of the columns, in order.
    void GetColumnNumbers(CList<std::uint32_t, std::uint32_t>& attributeNos) const;

    /// The index name; "" when it has none.
    const char* GetIndexName() const { return m_indexName; }
    /// The unique flag of the index row, by reference: "Y" for a unique index, "N" or "" otherwise.
    CString& GetIsUnique() { return m_isUnique; }
    /// The next partition sequence of this index: 1, 2, 3, …
    int NextPartitonSequenceNo() { return ++m_partitionSeq; }

    /// Writes the column rows, the storage row and the index row. An index that
    /// is not the primary key becomes "A" when its unique flag is exactly "Y",
    /// else "I". Always 1.
    int Save();

    /// Physical and catalog options by property code: storage parameter slots,
    /// yes/no flags of the index row (unique among them), clustering, and options
    /// kept by the property manager. 1 when taken, and for REVERSE on a platform
    /// without reverse key indexes, which is not stored; 0 for an unknown code or
    /// when the storage row or the property manager it needs is missing.
    int SetProperty(int code, std::int32_t value);
    /// Text options by property code: the storage space (15), a size (52), catalog
    /// texts and yes/no answers kept by the property manager. 1 when taken (an
    /// answer other than the one a code asks for stores nothing); 0 for an unknown
    /// code, or when the storage row or the property manager it needs is missing.
    int SetStringProperty(int code, const char* text);

    CVrnAPI* m_pOwner = nullptr;  ///< not owned
    /// Owning: the column rows in order of adding.
    CTypedPtrList<CPtrList, CNSOutputIndexColumn*> m_columnList;
    CNSOutputIndexStorage* m_pStorage = nullptr;  ///< owned
    /// The sequence of the index's latest partition; 0 before the first.
    std::int32_t m_partitionSeq = 0;
};
