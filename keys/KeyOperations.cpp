// The model builder's operations on primary keys and indexes, by identifier.
#include <cstdint>

#include "builder/VrnAPI.h"
#include "entity/VrnApiEntity.h"
#include "keys/VrnApiIndex.h"

CVrnApiIndex* CVrnAPI::FindIndex(unsigned long indexId) const {
    return m_indexMap.Find(indexId);
}

const char* CVrnAPI::AddPrimaryKey(unsigned long entityId, const char* name) {
    CVrnApiEntity* entity = GetEntityPtr(entityId);
    if (!entity) return nullptr;
    const char* result = entity->AddPrimaryKey(name);
    // The maps take the entity's primary key even when a second one was
    // refused: the existing one is entered again.
    if (CVrnApiIndex* key = entity->GetPrimaryKeyIndexObj()) {
        m_indexMap.SetAt(key->m_indexKey, key);
        m_indexNameMap.SetAt(key->GetIndexName(), key);
    }
    return result;
}

unsigned long CVrnAPI::GetPrimaryKeyIndexId(unsigned long entityId) {
    const CVrnApiEntity* entity = GetEntityPtr(entityId);
    return entity ? entity->GetPrimaryKeyIndexId() : 0;
}

int CVrnAPI::AddPrimaryKeyColumn(unsigned long entityId, const char* columnName, unsigned long sequence) {
    CVrnApiEntity* entity = GetEntityPtr(entityId);
    return entity ? entity->AddPrimaryKeyColumn(columnName, static_cast<std::uint32_t>(sequence)) : 0;
}

unsigned long CVrnAPI::AddIndex(unsigned long entityId, const char* name) {
    CVrnApiEntity* entity = GetEntityPtr(entityId);
    if (!entity) return 0;
    CVrnApiIndex* index = entity->AddIndex(name);
    if (!index) return 0;
    index->m_indexKey = static_cast<std::uint32_t>(AllocKey(EKeyClass::Index));
    m_indexMap.SetAt(index->m_indexKey, index);
    m_indexNameMap.SetAt(index->GetIndexName(), index);
    return index->m_indexKey;
}

int CVrnAPI::AddIndexColumn(unsigned long indexId, const char* columnName, unsigned long sequence, int descending) {
    CVrnApiIndex* index = FindIndex(indexId);
    if (!index) return 0;
    CVrnApiEntity* entity = GetEntityPtr(index->m_entityKey);
    if (!entity) return 0;
    const unsigned long attributeNo = entity->FindAttribute(columnName, 1);
    if (attributeNo == 0) return 0;
    index->AddColumn(static_cast<std::uint32_t>(attributeNo), static_cast<std::uint32_t>(sequence), descending);
    return 1;
}

int CVrnAPI::SetIndexProperty(unsigned long indexId, int code, long value) {
    CVrnApiIndex* index = FindIndex(indexId);
    return index ? index->SetProperty(code, static_cast<std::int32_t>(value)) : 0;
}

int CVrnAPI::SetIndexStringProperty(unsigned long indexId, int code, const char* text) {
    CVrnApiIndex* index = FindIndex(indexId);
    return index ? index->SetStringProperty(code, text) : 0;
}
