// Partitions of tables and indexes, kept by the property manager, their
// columns and physical properties; and storage objects.
#include "builder/VrnAPI.h"
#include "entity/VrnApiEntity.h"
#include "keys/VrnApiIndex.h"

namespace {

// Partition columns are stored as property 7 with value 12 and the column's
// attribute number as text.
constexpr int kPartitionColumnProperty = 7;
constexpr int kPartitionColumnValue = 12;

// Numeric partition properties. Where a table or index keeps a storage
// parameter in a slot of its storage row, a partition hands the same code's
// value to the property manager.
struct CPartitionProperty {
    int code;
    int propertyNo;
    int valueIfNonzero;
    int valueIfZero;
    bool decimalText;  // the value as decimal text; otherwise no text
};

constexpr CPartitionProperty kPartitionProperties[] = {
    {16, 10, 15, 15, true}, {17, 11, 16, 16, true}, {18, 20, 27, 27, true}, {19, 21, 28, 28, true},
    {20, 12, 17, 17, true}, {21, 13, 18, 18, true}, {22, 15, 20, 20, true}, {23, 16, 21, 21, true},
    {24, 14, 19, 19, true}, {25, 22, 29, 29, true}, {26, 23, 30, 30, true}, {28, 3, 7, 6, false},
};

// Buffer pools of a partition. DEFAULT is value 14 here, unlike tables and
// indexes (31): that is the number partitions are stored with.
struct CBufferPool {
    const char* keyword;
    int valueNo;
};
constexpr CBufferPool kPartitionBufferPools[] = {{"DEFAULT", 14}, {"KEEP", 32}, {"RECYCLE", 33}};

}  // namespace

unsigned long CVrnAPI::AddTablePartition(unsigned long entityId, const char* name) {
    CVrnApiEntity* entity = GetEntityPtr(entityId);
    if (!entity || !m_pPropertyMgr) return 0;
    unsigned long partitionId = 0;
    if (!m_pPropertyMgr->InsertTablePartition(entityId, partitionId, name, 0)) return 0;
    entity->SetIsPartitioned(1);
    return partitionId;
}

unsigned long CVrnAPI::AddIndexPartition(unsigned long indexId, const char* name) {
    CVrnApiIndex* index = FindIndex(indexId);
    if (!index || !m_pPropertyMgr) return 0;
    // The sequence advances even when the property manager refuses the partition.
    const int sequence = index->NextPartitonSequenceNo();
    unsigned long partitionId = 0;
    if (!m_pPropertyMgr->InsertIndexPartition(indexId, partitionId, name, static_cast<unsigned long>(sequence)))
        return 0;
    return partitionId;
}

int CVrnAPI::AddTablePartitionColumn(unsigned long entityId, const char* columnName, int sequence) {
    CVrnApiEntity* entity = GetEntityPtr(entityId);
    if (!entity || !m_pPropertyMgr) return 0;
    const unsigned long attributeNo = entity->FindAttribute(columnName, 1);
    if (attributeNo == 0) return 0;
    if (sequence == 0) sequence = entity->m_nextPartitionColumnNo++;
    return m_pPropertyMgr->InsertTableProperty(entityId, kPartitionColumnProperty, kPartitionColumnValue,
                                               CString::FromInt(static_cast<long>(attributeNo)), sequence);
}

int CVrnAPI::AddIndexPartitionColumn(unsigned long indexId, const char* columnName, int sequence) {
    CVrnApiIndex* index = FindIndex(indexId);
    CVrnApiEntity* entity = index ? GetEntityPtr(index->m_entityKey) : nullptr;
    if (!entity || !m_pPropertyMgr) return 0;
    const unsigned long attributeNo = entity->FindAttribute(columnName, 1);
    if (attributeNo == 0) return 0;
    // No automatic numbering here: a sequence of 0 is stored as 0.
    return m_pPropertyMgr->InsertIndexProperty(indexId, kPartitionColumnProperty, kPartitionColumnValue,
                                               CString::FromInt(static_cast<long>(attributeNo)), sequence);
}

int CVrnAPI::SetPartitionProperty(unsigned long partitionId, int code, long value) {
    if (!m_pPropertyMgr) return 0;
    for (const CPartitionProperty& entry : kPartitionProperties) {
        if (entry.code != code) continue;
        const CString decimal = CString::FromInt(static_cast<std::int32_t>(value));
        return m_pPropertyMgr->InsertPartitionProperty(partitionId, entry.propertyNo,
                                                       value != 0 ? entry.valueIfNonzero : entry.valueIfZero,
                                                       entry.decimalText ? decimal.GetString() : nullptr, 0);
    }
    return 0;
}

int CVrnAPI::SetPartitionStringProperty(unsigned long partitionId, int code, const char* text) {
    if (!m_pPropertyMgr) return 0;
    const CString value(text);
    auto store = [&](int propertyNo, int valueNo, const char* propertyText) {
        return m_pPropertyMgr->InsertPartitionProperty(partitionId, propertyNo, valueNo, propertyText, 0);
    };
    auto isValueText = [&](int valueNo) {
        return value.CompareNoCase(m_pPropertyMgr->GetPropertyValueString(valueNo)) == 0;
    };
    switch (code) {
        case 15:
            return store(9, 14, value);
        case 54:
            return store(8, 13, value);
        case 27:
            for (const CBufferPool& pool : kPartitionBufferPools)
                if (value == pool.keyword) return store(24, pool.valueNo, nullptr);
            return 0;
        case 47:
            return store(50, isValueText(66) ? 66 : 65, nullptr);
        case 53:
            if (isValueText(55)) return store(53, 55, nullptr);
            if (isValueText(57)) return store(53, 57, nullptr);
            return 0;
        default:
            return 0;
    }
}

unsigned long CVrnAPI::AddStorageObject(const char* name, const char* owner, const char* text, int kind) {
    const std::uint32_t key = static_cast<std::uint32_t>(AllocKey(EKeyClass::StorageObject));
    if (key == 0) return 0;  // no key before a successful Initialize: nothing is added
    auto* row = MakeRow<CNSOutputStorageObj>();
    row->m_objectKey = key;
    row->m_fixedNo = 1;
    row->m_kind = kind;
    if (owner) row->m_owner = owner;
    row->m_name = name;
    row->m_sqlText = text;
    m_storageObjectList.AddTail(row);
    // The identifier stays in the row; clients are never handed it.
    return 0;
}
