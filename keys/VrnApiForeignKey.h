// CVrnApiForeignKey: a relationship from a parent entity to a child entity,
// carried by pairs of attributes (parent attribute, child attribute), and the
// relationship row of the model file. It owns its column pair rows.
#pragma once

#include <cstdint>

#include "framework/VrnExport.h"
#include "framework/AfxColl.h"
#include "store/NSOutput.h"

class CVrnAPI;

class VRN_EXPORT CVrnApiForeignKey : public CNSOutputForeignKey {
public:
    CVrnApiForeignKey() : CVrnApiForeignKey(nullptr) {}
    // Gives the relationship row its initial texts: identifying ("I"), the
    // flags "P", "P", "O", mandatory on both sides ("M") and no referential
    // actions ("N").
    explicit CVrnApiForeignKey(CVrnAPI* owner);
    ~CVrnApiForeignKey() override;
    CVrnApiForeignKey(const CVrnApiForeignKey&) = delete;
    CVrnApiForeignKey& operator=(const CVrnApiForeignKey&) = delete;

    // Text fields by their number in the row (1 to 17).
    enum : int {
        kRelationshipType = 1,
        kName = 2,
        kParentOptionality = 6,
        kChildOptionality = 7,
        kUpdateAction = 13,
        kDeleteAction = 14,
    };
    CString& Text(int field) { return m_texts[field - 1]; }

    // Appends a pair; a sequence of 0 takes the next automatic one (1, 2, …),
    // a given one does not advance it. 0 only without a builder to make rows.
    int AddForeignKeyColumnPair(std::uint32_t parentAttributeNo, std::uint32_t childAttributeNo,
                                std::uint32_t sequence);
    // Takes over an existing pair row; nothing else is set.
    void AddForeignKeyColumnPair(CNSOutputForeignKeyColumn* column);
    // Writes the pair rows in order, then the relationship row. Always 1.
    int Save();

    int IsValid() const { return m_valid; }
    void SetValid(int valid) { m_valid = valid; }
    const char* GetName() { return Text(kName); }
    const char* GetRelationshipType() { return Text(kRelationshipType); }
    const char* GetParentEntityName() const { return m_parentEntityName; }
    void SetParentEntityName(const char* name) { m_parentEntityName = name; }
    CString GetParentEntityOwner() const { return m_parentEntityOwner; }
    void SetParentEntityOwner(const char* owner) { m_parentEntityOwner = owner; }
    const char* GetChildEntityName() const { return m_childEntityName; }
    void SetChildEntityName(const char* name) { m_childEntityName = name; }
    CTypedPtrList<CPtrList, CForeignKeyColumnBase*>& GetForeignKeyColumnBaseList() { return m_columnList; }

    CVrnAPI* m_pOwner = nullptr;  // not owned
    // Owning: the column pair rows in order of adding.
    CTypedPtrList<CPtrList, CForeignKeyColumnBase*> m_columnList;
    std::int32_t m_nextColumnSeq = 1;
    std::int32_t m_valid = 1;
    CString m_parentEntityName;
    CString m_parentEntityOwner;
    CString m_childEntityName;
    CStringList m_parentColumnNames;
    CStringList m_childColumnNames;
    // Where in the parent's primary key column list the next unnamed pair
    // takes its parent column; null at creation and after the last column.
    POSITION m_pkColumnPosition = nullptr;
};
