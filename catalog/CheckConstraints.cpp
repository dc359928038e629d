// Check constraints: table and column conditions, numbered per entity.
#include "builder/VrnAPI.h"
#include "entity/VrnApiAttribute.h"
#include "entity/VrnApiEntity.h"

namespace {

// The constraint flag an attribute carries when a check constraint is added
// to it while its values are already constrained (by a user datatype or a
// bound rule).
constexpr std::uint32_t kConstrainedFlag = 8;

}  // namespace

void CVrnAPI::AddCheckConstraint(const char* name, const char* text, unsigned long entityId, const char* columnName,
                                 unsigned long /*reserved*/) {
    // An unknown entity or column is refused before anything is numbered or added.
    CVrnApiEntity* entity = GetEntityPtr(entityId);
    if (!entity) return;
    CVrnApiAttribute* attribute = nullptr;
    if (columnName) {
        const unsigned long attributeId = FindAttribute(entityId, columnName);
        attribute = attributeId ? m_attributeMap.Find(static_cast<std::uint32_t>(attributeId)) : nullptr;
        if (!attribute) return;
    }
    const std::uint32_t key = static_cast<std::uint32_t>(AllocKey(EKeyClass::CheckConstraint));
    if (key == 0) return;

    auto* row = MakeRow<CNSOutputCheckConstraints>();
    if (name) row->m_name = name;
    row->m_text = text;
    row->m_diagramNo = 1;
    row->m_modelNo = CurrentModelNo();
    row->m_entityKey = entity->m_entityKey;
    row->m_tableKey = entity->m_entityKey;
    row->m_constraintNo = static_cast<std::uint32_t>(entity->m_nextCheckConstraintNo++);
    row->m_constraintKey = key;
    if (attribute) {
        row->m_attributeId = attribute->m_attributeId;
        row->m_attributeNo = attribute->m_attributeNo;
        if (attribute->m_userDatatypeId != 0 || attribute->m_ruleId != 0)
            attribute->m_constraintFlags |= kConstrainedFlag;
    }
    m_checkConstraintList.AddTail(row);
}
