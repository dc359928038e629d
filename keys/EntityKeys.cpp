// The entity's primary key and indexes: creating them, their columns, the
// alternate key lookup, and the merging of a primary key with a unique index
// on the DB2 platforms at save time.
#include "builder/Platforms.h"
#include "builder/VrnAPI.h"
#include "entity/VrnApiAttribute.h"
#include "entity/VrnApiEntity.h"
#include "keys/VrnApiIndex.h"

const char* CVrnApiEntity::AddPrimaryKey(const char* name) {
    if (m_pPrimaryKey || !m_pOwner) return nullptr;  // one primary key per entity
    auto* key = m_pOwner->MakeRow<CVrnApiIndex>();
    m_pPrimaryKey = key;
    key->m_indexKey = static_cast<std::uint32_t>(m_pOwner->AllocKey(EKeyClass::Index));
    key->m_diagramNo = m_diagramNo;
    key->m_modelNo = m_modelNo;
    key->m_entityKey = m_entityKey;
    key->m_indexNo = static_cast<std::uint32_t>(m_nextIndexNo++);
    key->m_indexName = name;
    key->m_keyType.Set(0, CVrnApiIndex::KEYTYPE_PK);
    key->m_isUnique = "Y";
    return name ? name : key->GetIndexName();
}

CVrnApiIndex* CVrnApiEntity::AddIndex(const char* name) {
    if (!m_pOwner) return nullptr;  // an entity without a builder cannot make rows
    CString indexName(name);
    if (!name) indexName = CString(GetName()) + "IX" + CString::FromInt(m_nextIndexNo);
    auto* index = m_pOwner->MakeRow<CVrnApiIndex>();
    index->m_diagramNo = m_diagramNo;
    index->m_modelNo = m_modelNo;
    index->m_entityKey = m_entityKey;
    index->m_indexNo = static_cast<std::uint32_t>(m_nextIndexNo++);
    index->m_tableKey = m_tableKey;
    index->m_indexName = indexName;
    m_indexList.AddTail(index);
    return index;
}

int CVrnApiEntity::AddPrimaryKeyColumn(const char* attributeName, std::uint32_t sequence) {
    if (!m_pPrimaryKey) return 0;
    CVrnApiAttribute* attribute = GetAttribute(FindAttribute(attributeName, 1));
    if (!attribute) return 0;
    attribute->SetIsPkAttribute(1);
    attribute->m_nullOption = 0;
    m_pPrimaryKey->AddColumn(attribute->m_attributeNo, sequence, 0);
    return 1;
}

std::uint32_t CVrnApiEntity::GetPrimaryKeyIndexId() const { return m_pPrimaryKey ? m_pPrimaryKey->m_indexKey : 0; }

CVrnApiIndex* CVrnApiEntity::FindIndexMatchingPK() {
    if (!m_pPrimaryKey) return nullptr;
    CList<std::uint32_t, std::uint32_t> keyColumns;
    m_pPrimaryKey->GetColumnNumbers(keyColumns);
    for (POSITION pos = m_indexList.GetHeadPosition(); pos;) {
        const POSITION at = pos;
        CVrnApiIndex* index = m_indexList.GetNext(pos);
        if (index->m_isUnique == "Y" && index->HasColumns(keyColumns)) {
            m_indexList.RemoveAt(at);
            return index;
        }
    }
    return nullptr;
}

void CVrnApiEntity::ConsolidatePrimaryKey() {
    const int platform = m_pOwner ? m_pOwner->GetDbType() : 0;
    if (!m_pPrimaryKey || !PlatformHasRule(platform, kRuleConsolidatePrimaryKey)) return;
    const CString keyName = m_pPrimaryKey->m_indexName;
    if (!keyName.IsEmpty() && PlatformHasRule(platform, kRuleKeepNamedPrimaryKey)) return;
    CVrnApiIndex* match = FindIndexMatchingPK();
    if (!match) return;
    m_displacedIndexes.emplace_back(m_pPrimaryKey);
    m_pPrimaryKey = match;
    match->m_keyType.Set(0, CVrnApiIndex::KEYTYPE_PK);
    // A named key reaches here only where named keys are not kept as declared
    // (DB2 UDB): the index that stands in for it takes the key's name.
    if (!keyName.IsEmpty()) match->m_indexName = keyName;
}

std::uint32_t CVrnApiEntity::HasAKWithColumnList(const CList<std::uint32_t, std::uint32_t>& attributeNos) const {
    for (POSITION pos = m_indexList.GetHeadPosition(); pos;) {
        const CVrnApiIndex* index = m_indexList.GetNext(pos);
        if (index->m_isUnique == "Y" && index->HasColumns(attributeNos)) return index->m_indexKey;
    }
    return 0;
}
