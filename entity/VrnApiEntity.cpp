#include "entity/VrnApiEntity.h"

#include "builder/VrnAPI.h"
#include "entity/VrnApiAttribute.h"
#include "keys/VrnApiIndex.h"

CVrnApiEntity::CVrnApiEntity() = default;

CVrnApiEntity::CVrnApiEntity(CVrnAPI* owner) : m_pOwner(owner) {
    if (!owner) return;  // no builder, no factory: the entity stays without a storage row
    m_pTableStorage = static_cast<CNSOutputTableStorage*>(owner->RowObjectClassFactory(100));
    if (m_pTableStorage)
        for (i32& slot : m_pTableStorage->m_params) slot = -1;
}

CVrnApiEntity::~CVrnApiEntity() {
    while (!m_attrList.IsEmpty()) delete m_attrList.RemoveHead();
    while (!m_indexList.IsEmpty()) delete m_indexList.RemoveHead();
    delete m_pPrimaryKey;
    delete m_pTableStorage;
}
