// Partitions of tables and indexes, kept by the property manager, their
// columns and physical properties; and storage objects.
#include "builder/OptionTables.h"
#include "builder/VrnAPI.h"
#include "entity/VrnApiEntity.h"
#include "keys/VrnApiIndex.h"

using vrn::CBufferPool;
using vrn::COptionProperty;
using vrn::FindBufferPool;
using vrn::FindOption;
using vrn::kBufferPoolProperty;

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
    COptionProperty property;
};

constexpr CPartitionProperty kPartitionProperties[] = {
    {16, {10, 15, 15, true}}, {17, {11, 16, 16, true}}, {18, {20, 27, 27, true}}, {19, {21, 28, 28, true}},
    {20, {12, 17, 17, true}}, {21, {13, 18, 18, true}}, {22, {15, 20, 20, true}}, {23, {16, 21, 21, true}},
    {24, {14, 19, 19, true}}, {25, {22, 29, 29, true}}, {26, {23, 30, 30, true}}, {28, {3, 7, 6, false}},
};

// Text partition properties, by how the text becomes the stored value.
enum class ETextValue {
    Text,         // value `valueNo`, with the text
    BufferPool,   // the buffer pool of that keyword, without text; other texts are refused
    ValueOrElse,  // `valueNo` when the text is that value's own text (any case), else `otherValueNo`
    OneOfTwo,     // `valueNo` or `otherValueNo`, whichever's own text it is (any case); else refused
};

struct CPartitionTextProperty {
    int code;
    int propertyNo;
    ETextValue kind;
    int valueNo;
    int otherValueNo;
};

constexpr CPartitionTextProperty kPartitionTextProperties[] = {
    {15, 9, ETextValue::Text, 14, 0},           // storage space
    {27, kBufferPoolProperty, ETextValue::BufferPool, 0, 0},
    {47, 50, ETextValue::ValueOrElse, 66, 65},  // TRACKMOD NO, else TRACKMOD YES
    {53, 53, ETextValue::OneOfTwo, 55, 57},     // group buffer pool caching: ALL or NONE
    {54, 8, ETextValue::Text, 13, 0},
};

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
    const CPartitionProperty* entry = FindOption(kPartitionProperties, code);
    if (!entry) return 0;
    CString digits;
    return m_pPropertyMgr->InsertPartitionProperty(partitionId, entry->property.propertyNo,
                                                   entry->property.ValueNo(value), entry->property.Text(value, digits), 0);
}

int CVrnAPI::SetPartitionStringProperty(unsigned long partitionId, int code, const char* text) {
    if (!m_pPropertyMgr) return 0;
    const CPartitionTextProperty* entry = FindOption(kPartitionTextProperties, code);
    if (!entry) return 0;
    const CString value(text);
    auto isValueText = [&](int valueNo) {
        return value.CompareNoCase(m_pPropertyMgr->GetPropertyValueString(valueNo)) == 0;
    };
    int valueNo = entry->valueNo;
    const char* propertyText = nullptr;
    switch (entry->kind) {
        case ETextValue::Text:
            propertyText = value;
            break;
        case ETextValue::BufferPool: {
            const CBufferPool* pool = FindBufferPool(value);
            if (!pool) return 0;
            valueNo = pool->partitionValueNo;
            break;
        }
        case ETextValue::ValueOrElse:
            if (!isValueText(entry->valueNo)) valueNo = entry->otherValueNo;
            break;
        case ETextValue::OneOfTwo:
            if (isValueText(entry->otherValueNo)) valueNo = entry->otherValueNo;
            else if (!isValueText(entry->valueNo)) return 0;
            break;
    }
    return m_pPropertyMgr->InsertPartitionProperty(partitionId, entry->propertyNo, valueNo, propertyText, 0);
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
