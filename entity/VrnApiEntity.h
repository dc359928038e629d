// CVrnApiEntity: one table or view of the model. It is an entity row in its
// own right and the owner of everything that belongs to the table: its
// attributes, its primary key, its indexes and its table storage row.
#pragma once

#include <cstdint>

#include "framework/AfxColl.h"
#include "store/NSOutput.h"

class CVrnAPI;
class CVrnApiAttribute;
class CVrnApiIndex;

class CVrnApiEntity : public CNSOutputEntity {
public:
    // Not used by the builder: no owner and no table storage row; such an
    // entity must not be saved or given properties.
    CVrnApiEntity();
    // The builder's constructor: makes the table storage row through the
    // owner's row factory, with every storage parameter slot "not given" (-1).
    explicit CVrnApiEntity(CVrnAPI* owner);
    ~CVrnApiEntity() override;
    CVrnApiEntity(const CVrnApiEntity&) = delete;
    CVrnApiEntity& operator=(const CVrnApiEntity&) = delete;

    static constexpr int kPropertyValueHandleCount = 8;

    std::int32_t m_spareCounter = 1;
    std::int32_t m_nextCheckConstraintNo = 1;
    std::int32_t m_nextPartitionColumnNo = 1;
    CVrnAPI* m_pOwner = nullptr;  // not owned
    // Owning: the attributes in order of adding.
    CTypedPtrList<CPtrList, CVrnApiAttribute*> m_attrList;
    // Attribute number to attribute; not owning.
    CMapIdToPtr<CVrnApiAttribute> m_attrMap;
    std::uint32_t m_nextAttributeNo = 1;
    CVrnApiIndex* m_pPrimaryKey = nullptr;  // owned
    // Owning: the other indexes in order of adding.
    CTypedPtrList<CPtrList, CVrnApiIndex*> m_indexList;
    std::int32_t m_nextIndexNo = 1;
    CNSOutputTableStorage* m_pTableStorage = nullptr;  // owned
    std::int32_t m_isView = 0;
    std::int32_t m_isValidView = 1;
    CString m_viewSQL;
    CString m_propertyColumnName;
    std::int32_t m_isPartitioned = 0;
    std::uint32_t m_propertyValueHandles[kPropertyValueHandleCount] = {};
};
