// CVrnApiForeignKey: a relationship from a parent entity to a child entity,
// and the relationship row of the model file. It owns its column pair rows.
#pragma once

#include <cstdint>

#include "framework/AfxColl.h"
#include "store/NSOutput.h"

class CVrnAPI;

class CVrnApiForeignKey : public CNSOutputForeignKey {
public:
    CVrnApiForeignKey() : CVrnApiForeignKey(nullptr) {}
    // Gives the relationship row its initial texts: identifying ("I"), the
    // flags "P", "P", "O", mandatory on both sides ("M") and no referential
    // actions ("N").
    explicit CVrnApiForeignKey(CVrnAPI* owner);
    ~CVrnApiForeignKey() override;
    CVrnApiForeignKey(const CVrnApiForeignKey&) = delete;
    CVrnApiForeignKey& operator=(const CVrnApiForeignKey&) = delete;

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
    // takes its parent column; null at creation.
    POSITION m_pkColumnPosition = nullptr;
};
