// Entity properties: every property code of a table has exactly one
// destination, a storage parameter slot of the table storage row, a text of
// the entity, or a property of the table or of its overflow segment kept by
// the property manager.
//
// Codes 16 to 26 describe the table's eleven storage parameters (nine slots,
// then table properties 22 and 23); codes 58 to 68 are the same eleven, in
// the same order, for the overflow segment; keep the two sets in step.
#include "builder/OptionTables.h"
#include "builder/VrnAPI.h"
#include "entity/VrnApiEntity.h"

using vrn::CBufferPool;
using vrn::COptionProperty;
using vrn::FindBufferPool;
using vrn::FindOption;

namespace {

enum class CTarget {
    Slot,      // a storage parameter slot of the table storage row
    Table,     // a table property
    Overflow,  // an overflow segment property
};

constexpr int kNoHandle = -1;

struct CIntegerProperty {
    int code;
    CTarget target;
    int slot;            // Slot: 1 to 11
    COptionProperty property;  // Table / Overflow
    int handle;                // property value handle the table property is read back into
};

// Slots of codes 16 to 24 deliberately do not follow code order. Code 33's
// value numbers run the other way round from 28, 29 and 30.
constexpr CIntegerProperty kIntegerProperties[] = {
    // code, target, slot, {property, value if nonzero, value if zero, decimal text}, handle
    {16, CTarget::Slot, 3, {0, 0, 0, false}, kNoHandle},
    {17, CTarget::Slot, 4, {0, 0, 0, false}, kNoHandle},
    {18, CTarget::Slot, 10, {0, 0, 0, false}, kNoHandle},
    {19, CTarget::Slot, 11, {0, 0, 0, false}, kNoHandle},
    {20, CTarget::Slot, 7, {0, 0, 0, false}, kNoHandle},
    {21, CTarget::Slot, 8, {0, 0, 0, false}, kNoHandle},
    {22, CTarget::Slot, 5, {0, 0, 0, false}, kNoHandle},
    {23, CTarget::Slot, 6, {0, 0, 0, false}, kNoHandle},
    {24, CTarget::Slot, 9, {0, 0, 0, false}, kNoHandle},
    {25, CTarget::Table, 0, {22, 29, 29, true}, 0},
    {26, CTarget::Table, 0, {23, 30, 30, true}, 1},
    {28, CTarget::Table, 0, {3, 7, 6, false}, 3},
    {29, CTarget::Table, 0, {17, 24, 22, false}, kNoHandle},
    {30, CTarget::Table, 0, {4, 9, 8, false}, 4},
    {33, CTarget::Table, 0, {25, 34, 35, false}, 2},
    {55, CTarget::Table, 0, {18, 25, 25, true}, kNoHandle},
    {58, CTarget::Overflow, 0, {10, 15, 15, true}, kNoHandle},
    {59, CTarget::Overflow, 0, {11, 16, 16, true}, kNoHandle},
    {60, CTarget::Overflow, 0, {20, 27, 27, true}, kNoHandle},
    {61, CTarget::Overflow, 0, {21, 28, 28, true}, kNoHandle},
    {62, CTarget::Overflow, 0, {12, 17, 17, true}, kNoHandle},
    {63, CTarget::Overflow, 0, {13, 18, 18, true}, kNoHandle},
    {64, CTarget::Overflow, 0, {15, 20, 20, true}, kNoHandle},
    {65, CTarget::Overflow, 0, {16, 21, 21, true}, kNoHandle},
    {66, CTarget::Overflow, 0, {14, 19, 19, true}, kNoHandle},
    {67, CTarget::Overflow, 0, {22, 29, 29, true}, kNoHandle},
    {68, CTarget::Overflow, 0, {23, 30, 30, true}, kNoHandle},
    {70, CTarget::Overflow, 0, {3, 7, 6, false}, kNoHandle},
    {73, CTarget::Table, 0, {29, 39, 39, false}, kNoHandle},
    {76, CTarget::Table, 0, {58, 74, 74, false}, kNoHandle},
};

enum class CTextTarget {
    Definition,      // row string 5 of the entity
    StorageSpace,    // the storage space name of the table storage row
    PropertyColumn,  // the column whose sequence number Save stores as table property 19
    BufferPool,      // DEFAULT / KEEP / RECYCLE as the value number of property 24
    Table,           // a table property with the text
    Overflow,        // an overflow segment property with the text
};

struct CStringProperty {
    int code;
    CTextTarget target;
    bool overflow;  // BufferPool: stored for the overflow segment
    int propertyNo;
    int valueNo;
    int handle;
};

constexpr CStringProperty kStringProperties[] = {
    {2, CTextTarget::Definition, false, 0, 0, kNoHandle},
    {15, CTextTarget::StorageSpace, false, 0, 0, kNoHandle},
    {27, CTextTarget::BufferPool, false, 24, 0, 5},
    {31, CTextTarget::Table, false, 5, 10, 6},
    {32, CTextTarget::Table, false, 6, 11, 7},
    {56, CTextTarget::PropertyColumn, false, 0, 0, kNoHandle},
    {57, CTextTarget::Overflow, true, 9, 14, kNoHandle},
    {69, CTextTarget::BufferPool, true, 24, 0, kNoHandle},
    {71, CTextTarget::Table, false, 31, 42, kNoHandle},
    {72, CTextTarget::Table, false, 30, 41, kNoHandle},
    {74, CTextTarget::Table, false, 56, 72, kNoHandle},
    {75, CTextTarget::Table, false, 57, 73, kNoHandle},
};

// A storage space named part by part in double quotes ("DB1"."TS1") becomes
// one quoted name ("DB1.TS1"): only the quotes next to the first dot go.
CString NormaliseStorageSpace(const CString& text) {
    const int dot = text.Find('.');
    if (dot <= 0) return text;
    CString first = text.Left(dot);
    CString second = text.Mid(dot + 1);
    first.TrimRight('"');
    second.TrimLeft('"');
    return first + "." + second;
}

}  // namespace

// The manager's value number for the property just stored, kept in a handle;
// its result does not change the setter's.
void CVrnApiEntity::ReadBackHandle(CPropertyMgr& properties, int propertyNo, int handle) {
    if (handle == kNoHandle) return;
    CString scratch;
    unsigned long value = 0;
    properties.GetTablePropertyValue(m_tableKey, propertyNo, scratch, value);
    m_propertyValueHandles[handle] = static_cast<std::uint32_t>(value);
}

int CVrnApiEntity::SetProperty(int code, long value) {
    const CIntegerProperty* entry = FindOption(kIntegerProperties, code);
    if (!entry) return 0;
    if (entry->target == CTarget::Slot) {
        if (!m_pTableStorage) return 0;  // an entity without a builder has no storage row
        m_pTableStorage->m_params[entry->slot - 1] = static_cast<std::int32_t>(value);
        return 1;
    }
    CPropertyMgr* properties = m_pOwner ? m_pOwner->GetPropertyMgr() : nullptr;
    if (!properties) return 0;  // no property manager before a successful Initialize
    CString digits;
    const int propertyNo = entry->property.propertyNo;
    const int valueNo = entry->property.ValueNo(value);
    const char* text = entry->property.Text(value, digits);
    if (entry->target == CTarget::Overflow)
        return properties->InsertOverflowSegmentProperty(m_tableKey, propertyNo, valueNo, text, 0);
    const int result = properties->InsertTableProperty(m_tableKey, propertyNo, valueNo, text, 0);
    ReadBackHandle(*properties, propertyNo, entry->handle);
    return result;
}

int CVrnApiEntity::SetStringProperty(int code, const char* text) {
    const CStringProperty* entry = FindOption(kStringProperties, code);
    if (!entry) return 0;
    switch (entry->target) {
        case CTextTarget::Definition:
            m_definition = text;
            return 1;
        case CTextTarget::StorageSpace:
            if (!m_pTableStorage) return 0;  // an entity without a builder has no storage row
            m_pTableStorage->m_storageSpace.Set(0, NormaliseStorageSpace(CString(text)));
            return 1;
        case CTextTarget::PropertyColumn:
            m_propertyColumnName = text;
            return 1;
        default:
            break;
    }

    CPropertyMgr* properties = m_pOwner ? m_pOwner->GetPropertyMgr() : nullptr;
    if (!properties) return 0;  // no property manager before a successful Initialize
    int valueNo = entry->valueNo;
    const char* propertyText = text;
    if (entry->target == CTextTarget::BufferPool) {
        const CBufferPool* pool = FindBufferPool(CString(text));
        if (!pool) return 0;
        valueNo = pool->valueNo;
        propertyText = nullptr;
    }
    const int result = entry->overflow
                           ? properties->InsertOverflowSegmentProperty(m_tableKey, entry->propertyNo, valueNo,
                                                                       propertyText, 0)
                           : properties->InsertTableProperty(m_tableKey, entry->propertyNo, valueNo, propertyText, 0);
    ReadBackHandle(*properties, entry->propertyNo, entry->handle);
    return result;
}
