// The model builder's operations on entities and attributes: naming and
// finding entities, handing out entity and attribute identifiers, and the
// attribute property codes.
#include <cstdint>

#include "builder/Platforms.h"
#include "builder/OptionTables.h"
#include "builder/VrnAPI.h"
#include "entity/VrnApiAttribute.h"
#include "entity/VrnApiEntity.h"

using vrn::COptionProperty;
using vrn::FindOption;

namespace {

CString UpperCased(const char* text) {
    CString key(text);
    key.MakeUpper();
    return key;
}

// Attribute property codes that only reach the property manager.
struct CAttributeProperty {
    int code;
    COptionProperty property;
};

// Codes 95 and 96 are alternatives of one option (property 71).
constexpr CAttributeProperty kAttributeProperties[] = {
    {82, {34, 45, 45, false}}, {83, {41, 52, 52, false}}, {84, {48, 63, 62, false}}, {85, {49, 64, 64, true}},
    {91, {3, 7, 7, false}},    {92, {36, 47, 47, false}}, {94, {70, 90, 90, false}}, {95, {71, 91, 91, false}},
    {96, {71, 92, 92, false}}, {97, {72, 93, 93, false}},
};

// Attribute string codes that reach the property manager with the text.
struct CAttributeTextProperty {
    int code;
    int propertyNo;
    int valueNo;
};

constexpr CAttributeTextProperty kAttributeTextProperties[] = {
    {86, 62, 78}, {87, 76, 97}, {88, 63, 79}, {89, 64, 80}, {90, 65, 81}, {93, 69, 89},
};

}  // namespace

unsigned long CVrnAPI::AddEntity(const char* name, const char* owner, unsigned long /*reserved*/, int isView) {
    // Without a key (no successful Initialize, or the key space used up) nothing is added.
    const std::uint32_t key = static_cast<std::uint32_t>(AllocKey(EKeyClass::Entity));
    if (key == 0) return 0;
    auto* entity = MakeRow<CVrnApiEntity>();
    entity->m_entityName = name;
    entity->m_tableName = entity->m_entityName;  // one shared text
    entity->m_isView = isView;
    if (owner)
        entity->m_owner = owner;
    else if (const char* sqlId = GetDB2SqlId())
        entity->m_owner = sqlId;
    entity->m_diagramNo = 1;
    entity->m_modelNo = CurrentModelNo();
    entity->m_pOwnerData = m_entityList.AddTail(entity);

    // The first entity of a name stays the one found by name alone; the
    // name+owner key (ITEM and SALES give ITEMSALES) goes to the latest.
    const CString nameKey = UpperCased(name);
    if (!m_entityNameMap.Find(nameKey)) m_entityNameMap.SetAt(nameKey, entity);
    if (owner) m_entityNameMap.SetAt(UpperCased(CString(name) + owner), entity);

    entity->m_entityKey = key;
    entity->m_tableKey = key;
    entity->m_modelNoCopy = entity->m_modelNo;
    m_entityMap.SetAt(key, entity);
    return key;
}

unsigned long CVrnAPI::FindEntity(const char* name, const char* owner, unsigned long /*reserved*/) {
    const CVrnApiEntity* first = m_entityNameMap.Find(UpperCased(name));
    if (!first) return 0;
    if (!owner || first->m_owner.IsEmpty() || first->m_owner == owner) return first->m_entityKey;
    const CVrnApiEntity* qualified = m_entityNameMap.Find(UpperCased(CString(name) + owner));
    return qualified ? qualified->m_entityKey : 0;
}

CVrnApiEntity* CVrnAPI::GetEntityPtr(unsigned long entityId) {
    return m_entityMap.Find(entityId);
}

int CVrnAPI::IsEntityView(unsigned long entityId) {
    const CVrnApiEntity* entity = GetEntityPtr(entityId);
    return entity ? entity->m_isView : 0;
}

int CVrnAPI::SetEntityProperty(unsigned long entityId, int code, long value) {
    CVrnApiEntity* entity = GetEntityPtr(entityId);
    return entity ? entity->SetProperty(code, value) : 0;
}

int CVrnAPI::SetEntityStringProperty(unsigned long entityId, int code, const char* text) {
    CVrnApiEntity* entity = GetEntityPtr(entityId);
    return entity ? entity->SetStringProperty(code, text) : 0;
}

int CVrnAPI::GetNullableDefault() { return PlatformIsNullableByDefault(m_dbType) ? 1 : 0; }

unsigned long CVrnAPI::AddAttribute(unsigned long entityId, const char* name, const char* datatype, long width,
                                    long scale, int nullOption, unsigned long sequence) {
    CVrnApiEntity* entity = GetEntityPtr(entityId);
    if (!entity) return 0;
    const std::uint32_t key = static_cast<std::uint32_t>(AllocKey(EKeyClass::Attribute));
    if (key == 0) return 0;  // no identifier to give: nothing is added
    CVrnApiAttribute* attribute = entity->AddAttribute(entityId, name, datatype, width, scale, nullOption, sequence);
    if (!attribute) return 0;
    attribute->m_attributeId = key;
    m_attributeMap.SetAt(key, attribute);
    attribute->m_tableKey = entity->m_tableKey;
    return key;
}

unsigned long CVrnAPI::FindAttribute(unsigned long entityId, const char* name) {
    CVrnApiEntity* entity = GetEntityPtr(entityId);
    return entity ? entity->FindAttribute(name, 0) : 0;
}

// The attribute is looked up by identifier and removed from the identifier
// map, but deleted through `entityId`'s entity by its attribute number: an
// attribute of another entity leaves the map while that entity's attribute
// of the same number, if any, is the one deleted. Callers pass matching pairs.
// Whichever attribute is deleted, its identifier leaves the map as well, so
// that no identifier ever reaches a deleted attribute.
int CVrnAPI::DeleteAttribute(unsigned long entityId, unsigned long attributeId) {
    CVrnApiEntity* entity = GetEntityPtr(entityId);
    if (!entity) return 0;
    CVrnApiAttribute* attribute = m_attributeMap.Find(attributeId);
    if (!attribute) return 0;
    m_attributeMap.RemoveKey(attributeId);
    CVrnApiAttribute* deleted = entity->GetAttribute(attribute->m_attributeNo);
    if (deleted && deleted != attribute && m_attributeMap.Find(deleted->m_attributeId) == deleted)
        m_attributeMap.RemoveKey(deleted->m_attributeId);
    return entity->DeleteAttribute(attribute);
}

int CVrnAPI::SetAttributeProperty(unsigned long attributeId, int code, long value) {
    CVrnApiAttribute* attribute = m_attributeMap.Find(attributeId);
    if (!attribute) return 0;
    switch (code) {
        case 6:
            attribute->m_width = static_cast<std::int32_t>(value);
            return 1;
        case 7:
            attribute->m_scale = static_cast<std::int32_t>(value);
            return 1;
        case 8:
            attribute->m_nullOption = value != 0 ? 1 : 0;
            return 1;
        case 12:
            attribute->m_option12 = static_cast<std::int32_t>(value);
            return 1;
        case 13:
            attribute->m_option13 = static_cast<std::int32_t>(value);
            return 1;
        case 14:
            if (value != 0) attribute->m_flagText.Set(0, "Y");
            return 1;
        default:
            break;
    }
    const CAttributeProperty* entry = FindOption(kAttributeProperties, code);
    if (!entry) return 0;
    // Known codes answer 1 whatever the property manager makes of them.
    if (m_pPropertyMgr) {
        CString digits;
        m_pPropertyMgr->InsertAttributeProperty(attribute->m_attributeId, entry->property.propertyNo,
                                                entry->property.ValueNo(value), entry->property.Text(value, digits), 0);
    }
    return 1;
}

int CVrnAPI::SetAttributeStringProperty(unsigned long attributeId, int code, const char* text) {
    CVrnApiAttribute* attribute = m_attributeMap.Find(attributeId);
    if (!attribute) return 0;
    switch (code) {
        case 1:
            // The maps do not hold attribute names, so the new name is found at once.
            attribute->m_attributeName = text;
            attribute->m_columnName = text;
            attribute->m_attributeNameGiven = 1;
            return 1;
        case 2:
            attribute->m_definition = text;
            return 1;
        case 5:
            return 1;
        case 9:
            attribute->m_defaultText = text;
            return 1;
        case 10:
            attribute->m_text10 = text;
            return 1;
        case 11:
            attribute->m_checkConstraint = text;
            return 1;
        default:
            break;
    }
    const CAttributeTextProperty* entry = FindOption(kAttributeTextProperties, code);
    if (!entry) return 0;
    if (m_pPropertyMgr)
        m_pPropertyMgr->InsertAttributeProperty(attribute->m_attributeId, entry->propertyNo, entry->valueNo, text, 0);
    return 1;
}
