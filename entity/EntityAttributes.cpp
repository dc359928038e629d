// The entity's attributes: adding one from a client's column description
// (with the datatype resolved through user datatypes first and the model's
// datatype names second), taking over an existing one, finding, deleting.
#include <cstring>
#include <string>
#include <unordered_map>

#include "builder/Platforms.h"
#include "builder/VrnAPI.h"
#include "entity/VrnApiAttribute.h"
#include "entity/VrnApiEntity.h"

namespace {

bool EqualsAnyNoCase(const char* text, std::initializer_list<const char*> words) {
    for (const char* word : words)
        if (AfxCompareNoCase(text, word) == 0) return true;
    return false;
}

bool EqualsAny(const char* text, std::initializer_list<const char*> words) {
    for (const char* word : words)
        if (std::strcmp(text, word) == 0) return true;
    return false;
}

// The datatype code given when a client's datatype text names nothing known.
constexpr const char* kDefaultDatatype = "CH";
constexpr std::int32_t kDefaultWidth = 10;

// The datatype codes are a handful of constant texts: every attribute shares
// one copy of its code instead of holding its own. The table is made once and
// only read afterwards, so builders on several threads may share it.
CString SharedDatatypeCode(const char* code) {
    static const std::unordered_map<std::string, CString> codes = [] {
        std::unordered_map<std::string, CString> map;
        for (int i = 0; i < kDatatypeCodeCount; ++i) map.emplace(kDatatypeCodes[i], CString(kDatatypeCodes[i]));
        return map;
    }();
    const auto found = codes.find(code);
    return found == codes.end() ? CString(code) : found->second;
}

}  // namespace

void CVrnApiEntity::Adopt(CVrnApiAttribute* attribute, std::uint32_t attributeNo) {
    attribute->m_attributeNo = attributeNo;
    attribute->m_entityKey = m_entityKey;
    attribute->m_diagramNo = m_diagramNo;
    attribute->m_modelNo = m_modelNo;
}

void CVrnApiEntity::Append(CVrnApiAttribute* attribute) {
    attribute->m_pOwnerData = m_attrList.AddTail(attribute);
    m_attrMap.SetAt(attribute->m_attributeNo, attribute);
}

CVrnApiAttribute* CVrnApiEntity::AddAttribute(unsigned long /*unused*/, const char* name, const char* datatype,
                                              long width, long scale, int nullOption, unsigned long sequence) {
    if (!m_pOwner) return nullptr;  // an entity without a builder cannot make rows
    auto* attribute = m_pOwner->MakeRow<CVrnApiAttribute>();

    // The type name as the catalog spells it, owner qualifier dropped (dbo.money is money).
    CString typeName(datatype);
    const char* lastDot = std::strrchr(typeName, '.');
    if (lastDot && lastDot != typeName.GetString()) typeName = CString(lastDot + 1);

    const char* mapped = nullptr;
    const CNSOutputUserDatatype* userType = nullptr;
    if (datatype) {
        const unsigned long userTypeId = m_pOwner->FindUserType(typeName.GetString());
        userType = userTypeId ? m_pOwner->FindUserType(userTypeId) : nullptr;
        if (userType) {
            mapped = userType->m_datatype;
            attribute->m_datatype = userType->m_datatype;
            attribute->m_width = userType->m_length;
            attribute->m_scale = userType->m_scale;
            attribute->m_userDatatypeId = userType->m_userDatatypeId;
        } else {
            mapped = m_pOwner->GetORVDatatype(typeName);
        }
    }

    const std::uint32_t attributeNo = m_nextAttributeNo++;
    Adopt(attribute, attributeNo);
    attribute->m_sequenceNo = sequence != 0 ? static_cast<std::uint32_t>(sequence) : attributeNo;

    if (!mapped || !*mapped) {
        // Unknown or missing datatype: the default type; the client's width and scale are ignored.
        attribute->m_datatype = SharedDatatypeCode(kDefaultDatatype);
        attribute->m_width = kDefaultWidth;
        attribute->m_scale = -1;
    } else if (!userType) {
        // Width -1 is the client's "no width given".
        long w = width;
        long s = scale;
        const int platform = m_pOwner->GetDbType();
        if (PlatformHasRule(platform, kRuleOracleTypes)) {
            // Oracle keeps integers and unsized decimals as NUMBER without precision.
            if (EqualsAnyNoCase(typeName, {"INT", "SMALLINT", "INTEGER"}) ||
                (EqualsAnyNoCase(typeName, {"DECIMAL", "NUMBER", "NUMERIC"}) && w == -1)) {
                mapped = "NUM";
                w = 0;
                s = 0;
            }
        } else if (PlatformHasRule(platform, kRuleUnsizedNumberIsZero) && std::strcmp(mapped, "NUM") == 0 && w == -1) {
            w = 0;
            s = 0;
        }
        if (EqualsAny(mapped, {"CH", "VAR", "CHN", "VAN"}) && w == -1) w = 1;
        attribute->m_datatype = SharedDatatypeCode(mapped);
        attribute->m_width = static_cast<std::int32_t>(w >= 0 ? w : kDefaultWidth);
        attribute->m_scale = static_cast<std::int32_t>(s >= 0 ? s : 0);
    }

    if (name) {
        attribute->m_attributeName = m_pOwner->ShareName(name);
        attribute->m_columnName = attribute->m_attributeName;  // one shared text
        attribute->m_attributeNameGiven = 1;
    }
    attribute->m_nullOption = nullOption;
    Append(attribute);
    return attribute;
}

void CVrnApiEntity::AddAttribute(CVrnApiAttribute* attribute) {
    if (!attribute) return;  // nothing to take over
    if (attribute->m_attributeNo == 0)
        Adopt(attribute, m_nextAttributeNo++);
    else if (attribute->m_attributeNo >= m_nextAttributeNo)
        m_nextAttributeNo = attribute->m_attributeNo + 1;
    Append(attribute);
}

unsigned long CVrnApiEntity::FindAttribute(const char* name, int wantNumber) {
    for (POSITION pos = m_attrList.GetHeadPosition(); pos;) {
        CVrnApiAttribute* attribute = m_attrList.GetNext(pos);
        if (attribute->GetName().CompareNoCase(name) == 0)
            return wantNumber ? attribute->m_attributeNo : attribute->m_attributeId;
    }
    return 0;
}

unsigned long CVrnApiEntity::FindAttrBySequence(unsigned long sequence, int wantNumber) {
    for (POSITION pos = m_attrList.GetHeadPosition(); pos;) {
        const CVrnApiAttribute* attribute = m_attrList.GetNext(pos);
        if (attribute->m_sequenceNo == sequence)
            return wantNumber ? attribute->m_attributeNo : attribute->m_attributeId;
    }
    return 0;
}

CVrnApiAttribute* CVrnApiEntity::GetAttribute(unsigned long attributeNo) const {
    return m_attrMap.Find(attributeNo);
}

int CVrnApiEntity::DeleteAttribute(CVrnApiAttribute* attribute) {
    if (!attribute) return 0;
    CVrnApiAttribute* mapped = m_attrMap.Find(attribute->m_attributeNo);
    if (!mapped) return 0;
    m_attrList.RemoveAt(static_cast<POSITION>(mapped->m_pOwnerData));
    m_attrMap.RemoveKey(mapped->m_attributeNo);
    delete mapped;
    return 1;
}
