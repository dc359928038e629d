/// @file
/// The foreign key class of the model builder, CVrnApiForeignKey.
#pragma once

#include <cstdint>

#include "framework/VrnExport.h"
#include "framework/AfxColl.h"
#include "store/NSOutput.h"

class CVrnAPI;

/// CVrnApiForeignKey: a relationship from a parent entity to a child entity,
/// carried by pairs of attributes (parent attribute, child attribute), and the
/// relationship row of the model file. It owns its column pair rows.
class VRN_EXPORT CVrnApiForeignKey : public CNSOutputForeignKey {
public:
    /// A foreign key of no builder: the initial texts below, but it cannot make column pairs.
    CVrnApiForeignKey() : CVrnApiForeignKey(nullptr) {}
    /// A foreign key of the builder `owner` (not owned), which makes its pair rows
    /// and their keys. Gives the relationship row its initial texts: identifying ("I"), the
    /// flags "P", "P", "O", mandatory on both sides ("M") and no referential
    /// actions ("N").
    explicit CVrnApiForeignKey(CVrnAPI* owner);
    /// Deletes the column pair rows it owns.
    ~CVrnApiForeignKey() override;
    CVrnApiForeignKey(const CVrnApiForeignKey&) = delete;
    CVrnApiForeignKey& operator=(const CVrnApiForeignKey&) = delete;

    /// Text fields by their number in the row (1 to 17).
    enum : int {
        kRelationshipType = 1,
        kName = 2,
        kParentOptionality = 6,
        kChildOptionality = 7,
        kUpdateAction = 13,
        kDeleteAction = 14,
    };
    /// The text field `field` of the relationship row, by reference. REQUIRES: `field` is in 1 to 17.
    CString& Text(int field) { return m_texts[field - 1]; }

    /// Appends a pair; a sequence of 0 takes the next automatic one (1, 2, …),
    /// a given one does not advance it. 0 only without a builder to make rows.
    int AddForeignKeyColumnPair(std::uint32_t parentAttributeNo, std::uint32_t childAttributeNo,
                                std::uint32_t sequence);
    /// Takes over an existing pair row; nothing else is set.
    void AddForeignKeyColumnPair(CNSOutputForeignKeyColumn* column);
    /// Writes the pair rows in order, then the relationship row. Always 1.
    int Save();

    /// 1 while the foreign key is valid, 0 once marked invalid: a parent column not
    /// found or not in the parent's primary key, or the builder's DeleteForeignKey.
    /// Relationship resolution makes it valid again when a unique index of the
    /// parent has exactly its parent columns. An invalid foreign key is not saved.
    int IsValid() const { return m_valid; }
    /// Marks the foreign key valid (nonzero) or invalid (0).
    void SetValid(int valid) { m_valid = valid; }
    /// The foreign key's name (text field 2); "" when it has none.
    const char* GetName() { return Text(kName); }
    /// The relationship type (text field 1): "I" identifying, "N" non-identifying.
    const char* GetRelationshipType() { return Text(kRelationshipType); }
    /// The parent entity's name as the client gave it; "" when none was given.
    const char* GetParentEntityName() const { return m_parentEntityName; }
    /// Sets the parent entity's name; null gives "".
    void SetParentEntityName(const char* name) { m_parentEntityName = name; }
    /// The parent entity's owner as the client gave it; "" when none was given.
    CString GetParentEntityOwner() const { return m_parentEntityOwner; }
    /// Sets the parent entity's owner; null gives "".
    void SetParentEntityOwner(const char* owner) { m_parentEntityOwner = owner; }
    /// The child entity's name.
    const char* GetChildEntityName() const { return m_childEntityName; }
    /// Sets the child entity's name; null gives "".
    void SetChildEntityName(const char* name) { m_childEntityName = name; }
    /// The column pair rows, owned by the foreign key, in order of adding.
    CTypedPtrList<CPtrList, CForeignKeyColumnBase*>& GetForeignKeyColumnBaseList() { return m_columnList; }

    CVrnAPI* m_pOwner = nullptr;  ///< not owned
    /// Owning: the column pair rows in order of adding.
    CTypedPtrList<CPtrList, CForeignKeyColumnBase*> m_columnList;
    /// The sequence the next pair added with sequence 0 takes.
    std::int32_t m_nextColumnSeq = 1;
    /// 1 valid, 0 invalid (see IsValid).
    std::int32_t m_valid = 1;
    /// The parent entity's name as the client gave it.
    CString m_parentEntityName;
    /// The parent entity's owner as the client gave it.
    CString m_parentEntityOwner;
    /// The child entity's name.
    CString m_childEntityName;
    /// While the parent is unknown: the parent column names of the pairs added by name, in order, for relationship
    /// resolution; "" takes the parent's next primary key column.
    CStringList m_parentColumnNames;
    /// While the parent is unknown: the child column names of those pairs, in the same order.
    CStringList m_childColumnNames;
    /// Where in the parent's primary key column list the next unnamed pair
    /// takes its parent column; null at creation and after the last column.
    POSITION m_pkColumnPosition = nullptr;
};
