#include "entity/VrnApiEntity.h"

#include <memory>

#include "builder/VrnAPI.h"
#include "entity/VrnApiAttribute.h"
#include "keys/VrnApiIndex.h"

CVrnApiEntity::CVrnApiEntity() = default;

CVrnApiEntity::CVrnApiEntity(CVrnAPI* owner) : m_pOwner(owner) {
    if (!owner) return;  // no builder, no factory: the entity stays without a storage row
    m_pTableStorage = owner->MakeRow<CNSOutputTableStorage>();
    for (std::int32_t& slot : m_pTableStorage->m_params) slot = -1;
}

CVrnApiEntity::~CVrnApiEntity() {
    DeleteAllFromHead(m_attrList);
    DeleteAllFromHead(m_indexList);
    delete m_pPrimaryKey;
    delete m_pTableStorage;
}

int CVrnApiEntity::Save() {
    if (m_isView) return 1;  // a view is described, never stored

    bool anyPrimaryKeyAttribute = false;
    for (POSITION pos = m_attrList.GetHeadPosition(); pos;) {
        CVrnApiAttribute* attribute = m_attrList.GetNext(pos);
        attribute->OutputRow(0);
        anyPrimaryKeyAttribute = anyPrimaryKeyAttribute || attribute->GetIsPkAttribute();
    }
    if (anyPrimaryKeyAttribute) {
        ConsolidatePrimaryKey();
        // Key attributes marked without a primary key object: their rows are
        // still written, there is just no key index to write with them.
        if (m_pPrimaryKey) m_pPrimaryKey->Save();
        WritePrimaryKeyRows();
    }
    for (POSITION pos = m_indexList.GetHeadPosition(); pos;) m_indexList.GetNext(pos)->Save();

    if (m_pTableStorage) {
        m_pTableStorage->m_diagramNo = m_diagramNo;
        m_pTableStorage->m_modelNo = m_modelNo;
        m_pTableStorage->m_entityKey = m_entityKey;
        m_pTableStorage->m_tableKey = m_tableKey;
        m_pTableStorage->OutputRow();
    }

    if (!m_propertyColumnName.IsEmpty() && m_pOwner && m_pOwner->GetPropertyMgr()) {
        const unsigned long attributeNo = FindAttribute(m_propertyColumnName, 1);
        if (const CVrnApiAttribute* attribute = attributeNo ? GetAttribute(attributeNo) : nullptr)
            m_pOwner->GetPropertyMgr()->InsertTableProperty(
                m_tableKey, 19, 26, CString::FromInt(static_cast<long>(attribute->m_sequenceNo)), 0);
    }

    OutputRow();
    return 1;
}

// One primary key row per attribute marked as a key attribute, in attribute
// list order (not key column order), each with the attribute's own numbers.
void CVrnApiEntity::WritePrimaryKeyRows() {
    if (!m_pOwner) return;
    std::unique_ptr<CNSOutputPrimaryKey> row(m_pOwner->MakeRow<CNSOutputPrimaryKey>());
    row->m_diagramNo = m_diagramNo;
    row->m_modelNo = m_modelNo;
    row->m_entityKey = m_entityKey;
    for (POSITION pos = m_attrList.GetHeadPosition(); pos;) {
        const CVrnApiAttribute* attribute = m_attrList.GetNext(pos);
        if (!attribute->GetIsPkAttribute()) continue;
        row->m_attributeNo = attribute->m_attributeNo;
        row->m_attributeId = attribute->m_attributeId;
        row->m_sequenceNo = attribute->m_sequenceNo;
        row->OutputRow();
    }
}
