// Index properties: every property code of an index has exactly one
// destination, a storage parameter slot or the storage space of its storage
// row, a text field of the index row, or a property of the index kept by the
// property manager. The codes share their numbers with the entity and
// partition codes, so a client has one vocabulary for physical options.
#include <algorithm>
#include <cstdint>
#include <limits>

#include "builder/OptionTables.h"
#include "builder/Platforms.h"
#include "builder/VrnAPI.h"
#include "keys/VrnApiIndex.h"

using vrn::CBufferPool;
using vrn::COptionProperty;
using vrn::FindBufferPool;
using vrn::FindOption;
using vrn::kBufferPoolProperty;
using vrn::kNamedBufferPoolValue;

namespace {

enum class CTarget {
    Slot,      // a storage parameter slot of the storage row
    Property,  // a property of the index
    YesNo,     // a text field of the index row: "Y" for nonzero, else "N"
    Cluster,   // the cluster flag: "C" for nonzero, else "N"
};

enum class CTextField { Unique, Field5, Field7 };

struct CIntegerProperty {
    int code;
    CTarget target;
    int slot;            // Slot: 1 to 11
    COptionProperty property;  // Property
    CTextField field;    // YesNo
    bool reverseKeyOnly;  // stored only where the platform has reverse key indexes
};

// Codes 27, 28, 29, 31, 32 and 42 are string codes here and are refused.
constexpr CIntegerProperty kIntegerProperties[] = {
    {16, CTarget::Slot, 3, {0, 0, 0, false}, CTextField::Unique, false},
    {17, CTarget::Slot, 4, {0, 0, 0, false}, CTextField::Unique, false},
    {18, CTarget::Slot, 10, {0, 0, 0, false}, CTextField::Unique, false},
    {19, CTarget::Slot, 11, {0, 0, 0, false}, CTextField::Unique, false},
    {20, CTarget::Slot, 7, {0, 0, 0, false}, CTextField::Unique, false},
    {21, CTarget::Slot, 8, {0, 0, 0, false}, CTextField::Unique, false},
    {22, CTarget::Slot, 5, {0, 0, 0, false}, CTextField::Unique, false},
    {23, CTarget::Slot, 6, {0, 0, 0, false}, CTextField::Unique, false},
    {24, CTarget::Slot, 9, {0, 0, 0, false}, CTextField::Unique, false},
    {25, CTarget::Property, 0, {22, 29, 29, true}, CTextField::Unique, false},
    {26, CTarget::Property, 0, {23, 30, 30, true}, CTextField::Unique, false},
    {30, CTarget::Property, 0, {4, 9, 8, false}, CTextField::Unique, false},
    {33, CTarget::Property, 0, {25, 34, 35, false}, CTextField::Unique, false},
    {34, CTarget::YesNo, 0, {0, 0, 0, false}, CTextField::Unique, false},
    {35, CTarget::Property, 0, {1, 3, 2, false}, CTextField::Unique, false},
    {36, CTarget::YesNo, 0, {0, 0, 0, false}, CTextField::Field7, false},
    {37, CTarget::Property, 0, {2, 5, 4, false}, CTextField::Unique, false},
    {38, CTarget::Property, 0, {0, 0, 0, false}, CTextField::Unique, true},
    {39, CTarget::YesNo, 0, {0, 0, 0, false}, CTextField::Field5, false},
    {40, CTarget::Cluster, 0, {0, 0, 0, false}, CTextField::Unique, false},
    {41, CTarget::Slot, 1, {0, 0, 0, false}, CTextField::Unique, false},
    {43, CTarget::Slot, 2, {0, 0, 0, false}, CTextField::Unique, false},
    {44, CTarget::Property, 0, {59, 75, 75, false}, CTextField::Unique, false},
    {45, CTarget::Property, 0, {74, 95, 95, false}, CTextField::Unique, false},
    {46, CTarget::Property, 0, {75, 96, 96, false}, CTextField::Unique, false},
};

// String codes that pass the caller's text to the property manager as given
// (null stays null), and the yes/no switches that store a property only for
// one answer.
struct CTextProperty {
    int code;
    int propertyNo;
    int valueNo;
    const char* answer;  // null: store always, with the text; else only when the text is this word (any case)
};

constexpr CTextProperty kTextProperties[] = {
    {31, 5, 10, nullptr}, {32, 6, 11, nullptr}, {47, 1, 2, nullptr},  {48, 60, 76, "YES"},
    {49, 44, 58, "YES"},  {50, 46, 60, "YES"},  {51, 45, 59, "NO"},
};



// A size such as 10M or 2G: the leading number times 1024 for M or 1048576
// for G (G wins when both letters appear); other unit letters are ignored.
// Too large a size is held at the largest slot value rather than overflowing.
std::int32_t ParseSize(CString text) {
    text.MakeUpper();
    const std::int64_t multiplier = text.Find('G') >= 0 ? 1048576 : (text.Find('M') >= 0 ? 1024 : 1);
    const std::int64_t size = std::int64_t(AfxLeadingNumber(text)) * multiplier;
    return static_cast<std::int32_t>(std::min<std::int64_t>(size, std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

int CVrnApiIndex::SetProperty(int code, std::int32_t value) {
    const CIntegerProperty* entry = FindOption(kIntegerProperties, code);
    if (!entry) return 0;
    switch (entry->target) {
        case CTarget::Slot:
            if (!m_pStorage) return 0;  // an index without a builder has no storage row
            m_pStorage->m_params[entry->slot - 1] = value;
            return 1;
        case CTarget::YesNo: {
            CString& field = entry->field == CTextField::Unique ? m_isUnique
                             : entry->field == CTextField::Field5 ? m_t5
                                                                  : m_t7;
            field = value != 0 ? "Y" : "N";
            return 1;
        }
        case CTarget::Cluster:
            m_clusterFlag = value != 0 ? "C" : "N";
            return 1;
        case CTarget::Property:
            break;
    }
    if (!m_pOwner) return 0;  // no builder: no platform and no property manager
    if (entry->reverseKeyOnly && !PlatformHasRule(m_pOwner->GetDbType(), kRuleReverseKeyIndexes)) return 1;
    CPropertyMgr* properties = m_pOwner->GetPropertyMgr();
    if (!properties) return 0;
    CString digits;
    return properties->InsertIndexProperty(m_indexKey, entry->property.propertyNo, entry->property.ValueNo(value),
                                           entry->property.Text(value, digits), 0);
}

int CVrnApiIndex::SetStringProperty(int code, const char* text) {
    const CString value(text);  // for the codes that read the text, null is empty
    switch (code) {
        case 15:
            if (!m_pStorage) return 0;  // an index without a builder has no storage row
            m_pStorage->m_storageSpace.Set(0, value);
            return 1;
        case 42:
            m_t6 = value;
            return 1;
        case 52: {
            const std::int32_t size = ParseSize(value);
            if (size > 0 && m_pStorage) m_pStorage->m_params[1] = size;
            return 1;
        }
        default:
            break;
    }
    const CTextProperty* textEntry = FindOption(kTextProperties, code);
    if (!textEntry && code != 27 && code != 53) return 0;

    CPropertyMgr* properties = m_pOwner ? m_pOwner->GetPropertyMgr() : nullptr;
    if (textEntry) {
        if (textEntry->answer) {
            if (value.CompareNoCase(textEntry->answer) != 0) return 1;
            return properties ? properties->InsertIndexProperty(m_indexKey, textEntry->propertyNo,
                                                                textEntry->valueNo, nullptr, 0)
                              : 0;
        }
        return properties ? properties->InsertIndexProperty(m_indexKey, textEntry->propertyNo, textEntry->valueNo,
                                                            text, 0)
                          : 0;
    }
    if (!properties) return 0;  // no property manager before a successful Initialize

    if (code == 53) {
        // Group buffer pool caching: ALL, NONE, or anything else (CHANGED).
        CString upper(value);
        upper.MakeUpper();
        const int valueNo = upper.GetAt(0) == 'A' ? 55 : (upper.GetAt(0) == 'N' ? 57 : 56);
        return properties->InsertIndexProperty(m_indexKey, 43, valueNo, nullptr, 0);
    }

    // Code 27, the buffer pool: the three keywords exactly; on DB2 for OS/390
    // any other named pool is kept as the default pool with its name.
    if (const CBufferPool* pool = FindBufferPool(value))
        return properties->InsertIndexProperty(m_indexKey, kBufferPoolProperty, pool->valueNo, nullptr, 0);
    if (value.IsEmpty() || !PlatformHasRule(m_pOwner->GetDbType(), kRuleAnyBufferPoolName)) return 0;
    return properties->InsertIndexProperty(m_indexKey, kBufferPoolProperty, kNamedBufferPoolValue, value, 0);
}
