// The model builder's operations on foreign keys: declaring them (with or
// without a known parent), their column pairs by name or by number, their
// referential actions, and invalidation.
#include <cstdint>

#include "builder/VrnAPI.h"
#include "entity/VrnApiAttribute.h"
#include "entity/VrnApiEntity.h"
#include "keys/VrnApiForeignKey.h"
#include "keys/VrnApiIndex.h"

namespace {

// Referential action codes: which text field they set, to which letter.
struct CReferentialAction {
    int code;
    int field;
    const char* letter;
};

constexpr CReferentialAction kReferentialActions[] = {
    {77, CVrnApiForeignKey::kDeleteAction, "C"}, {78, CVrnApiForeignKey::kDeleteAction, "R"},
    {79, CVrnApiForeignKey::kDeleteAction, "S"}, {80, CVrnApiForeignKey::kUpdateAction, "C"},
    {81, CVrnApiForeignKey::kUpdateAction, "R"},
};

std::uint32_t AsKey(unsigned long id) { return id > UINT32_MAX ? 0 : static_cast<std::uint32_t>(id); }

// A nullable child column makes the relationship optional on both sides; it
// never becomes mandatory again.
void NoteNullableChild(CVrnApiForeignKey& foreignKey, const CVrnApiAttribute& child) {
    if (child.m_nullOption == 0) return;
    foreignKey.Text(CVrnApiForeignKey::kParentOptionality) = "O";
    foreignKey.Text(CVrnApiForeignKey::kChildOptionality) = "O";
}

}  // namespace

CVrnApiForeignKey* CVrnAPI::FindAnyForeignKey(unsigned long foreignKeyId) const {
    if (CVrnApiForeignKey* known = m_foreignKeyMap.Find(foreignKeyId)) return known;
    return m_pendingForeignKeyMap.Find(foreignKeyId);
}

unsigned long CVrnAPI::AddForeignKey(unsigned long parentEntityId, unsigned long childEntityId, const char* name,
                                     const char* parentEntityName, const char* parentEntityOwner) {
    const CVrnApiEntity* parent = GetEntityPtr(parentEntityId);
    const CVrnApiEntity* child = GetEntityPtr(childEntityId);
    if (!child) return 0;
    const std::uint32_t key = static_cast<std::uint32_t>(AllocKey(EKeyClass::ForeignKey));
    if (key == 0) return 0;  // no identifier to give: nothing is added

    auto* foreignKey = MakeRow<CVrnApiForeignKey>();
    foreignKey->m_fkKey = key;
    foreignKey->m_fkKeyCopy = key;
    if (parent) foreignKey->m_parentEntityKey = parent->m_entityKey;
    foreignKey->m_childEntityKey = child->m_entityKey;
    foreignKey->m_parentEntityName = parentEntityName;
    foreignKey->m_parentEntityOwner = parentEntityOwner;
    foreignKey->m_childEntityName = child->GetName();
    foreignKey->m_diagramNo = child->m_diagramNo;
    foreignKey->m_modelNo = child->m_modelNo;
    foreignKey->Text(CVrnApiForeignKey::kName) = name;
    foreignKey->m_n13 = 0;
    foreignKey->m_n15 = 0;

    if (parent) {
        foreignKey->m_pOwnerData = m_foreignKeyList.AddTail(foreignKey);
        m_foreignKeyMap.SetAt(key, foreignKey);
    } else {
        // Owned through the pending list until resolution moves it on.
        m_pendingForeignKeyList.AddTail(foreignKey);
        m_pendingForeignKeyMap.SetAt(key, foreignKey);
    }
    return key;
}

void CVrnAPI::AddForeignKey(CVrnApiForeignKey* foreignKey) {
    if (foreignKey) m_foreignKeyMap.SetAt(foreignKey->m_fkKey, foreignKey);
}

int CVrnAPI::AddForeignKeyColumnPair(unsigned long foreignKeyId, const char* parentColumn, const char* childColumn,
                                     unsigned long sequence) {
    CVrnApiForeignKey* foreignKey = m_foreignKeyMap.Find(foreignKeyId);
    if (!foreignKey) {
        // A foreign key still waiting for its parent keeps the names for resolution.
        CVrnApiForeignKey* pending = m_pendingForeignKeyMap.Find(foreignKeyId);
        if (!pending) return 0;
        pending->m_parentColumnNames.AddTail(parentColumn);
        pending->m_childColumnNames.AddTail(childColumn);
        return 1;
    }
    CVrnApiEntity* parent = GetEntityPtr(foreignKey->m_parentEntityKey);
    if (!parent) return 0;

    unsigned long parentNo = 0;
    if (parentColumn) {
        parentNo = parent->FindAttribute(parentColumn, 1);
        if (parentNo == 0) {
            foreignKey->SetValid(0);
            return 0;
        }
    } else if (CVrnApiIndex* primaryKey = parent->GetPrimaryKeyIndexObj()) {
        // No parent column named: walk the parent's primary key columns, from
        // the first again after the last.
        if (!foreignKey->m_pkColumnPosition) foreignKey->m_pkColumnPosition = primaryKey->StartEnumIndexColumns();
        if (foreignKey->m_pkColumnPosition)
            parentNo = primaryKey->GetNextIndexColumn(foreignKey->m_pkColumnPosition)->m_attributeNo;
    }
    const CVrnApiAttribute* parentAttribute = parent->GetAttribute(parentNo);
    if (!parentAttribute) return 0;
    if (!parentAttribute->GetIsPkAttribute()) foreignKey->SetValid(0);

    CVrnApiEntity* child = GetEntityPtr(foreignKey->m_childEntityKey);
    const unsigned long childNo = child ? child->FindAttribute(childColumn, 1) : 0;
    const CVrnApiAttribute* childAttribute = child ? child->GetAttribute(childNo) : nullptr;
    if (!childAttribute) return 0;
    if (!childAttribute->GetIsPkAttribute()) foreignKey->Text(CVrnApiForeignKey::kRelationshipType) = "N";
    NoteNullableChild(*foreignKey, *childAttribute);
    return foreignKey->AddForeignKeyColumnPair(static_cast<std::uint32_t>(parentNo),
                                               static_cast<std::uint32_t>(childNo),
                                               static_cast<std::uint32_t>(sequence));
}

void CVrnAPI::AddForeignKeyColumnPair(unsigned long foreignKeyId, unsigned long parentAttributeNo,
                                      unsigned long childAttributeNo, int identifying, unsigned long sequence) {
    // The caller vouches for the foreign key and the child attribute; an
    // unknown one makes the call do nothing rather than fault.
    CVrnApiForeignKey* foreignKey = m_foreignKeyMap.Find(foreignKeyId);
    const CVrnApiEntity* child = foreignKey ? GetEntityPtr(foreignKey->m_childEntityKey) : nullptr;
    const CVrnApiAttribute* childAttribute = child ? child->GetAttribute(childAttributeNo) : nullptr;
    if (!childAttribute) return;
    foreignKey->Text(CVrnApiForeignKey::kRelationshipType) = identifying ? "I" : "N";
    NoteNullableChild(*foreignKey, *childAttribute);
    foreignKey->AddForeignKeyColumnPair(AsKey(parentAttributeNo), AsKey(childAttributeNo),
                                        static_cast<std::uint32_t>(sequence));
}

const char* CVrnAPI::GetForeignKeyName(unsigned long foreignKeyId) {
    CVrnApiForeignKey* foreignKey = m_foreignKeyMap.Find(foreignKeyId);
    return foreignKey ? foreignKey->GetName() : nullptr;
}

int CVrnAPI::SetForeignKeyProperty(unsigned long foreignKeyId, int code, long value) {
    CVrnApiForeignKey* foreignKey = FindAnyForeignKey(foreignKeyId);
    if (!foreignKey) return 0;
    if (value == 0) return 1;  // the codes are switches: 0 clears nothing
    for (const CReferentialAction& action : kReferentialActions)
        if (action.code == code) foreignKey->Text(action.field) = action.letter;
    return 1;
}

void CVrnAPI::DeleteForeignKey(unsigned long foreignKeyId) {
    if (CVrnApiForeignKey* foreignKey = m_foreignKeyMap.Find(foreignKeyId)) foreignKey->SetValid(0);
}
