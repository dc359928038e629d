// Relationship resolution: completing the declared foreign keys before the
// model is written.
//
// Words used here: a foreign key migrates a parent attribute into a child
// attribute (one column pair). The migration map keeps, per child attribute,
// the migration that counts. The origin of an attribute is where a chain of
// migrations finally starts: following identifying migrations upward, and a
// non-identifying one only as the very first step.
#include <unordered_map>

#include "builder/VrnAPI.h"
#include "entity/VrnApiAttribute.h"
#include "entity/VrnApiEntity.h"
#include "keys/MigrationMap.h"
#include "keys/VrnApiForeignKey.h"
#include "keys/VrnApiIndex.h"

using vrn::CMigrationMap;
using vrn::CMigrationRecord;

namespace {

// Marks of the entities an origin trace has passed through.
constexpr int kMarkIdentifying = 0;
constexpr int kMarkNonIdentifying = 1;
constexpr int kMarkStart = 3;

bool IsIdentifying(CVrnApiForeignKey& foreignKey) { return CString(foreignKey.GetRelationshipType()) == "I"; }

// Gives a migrated attribute the child's column name as role name when it
// differs from the parent's column name, and flags both role names.
void NameRoleWhenRenamed(CVrnApiAttribute& target, CVrnApiAttribute* parent, const char* childColumn) {
    if (!parent) return;
    const CString parentColumn = parent->GetName();
    const CString targetColumn = target.GetName();
    if (parentColumn.IsEmpty() || targetColumn.IsEmpty() || parentColumn == targetColumn) return;
    target.m_roleName = childColumn;
    target.m_roleNameCopy = childColumn;
    target.m_roleNameGiven = 1;
    target.m_roleNameCopyGiven = 1;
}

// Gives `target` the origin's attribute name when it is spelled differently
// (or stored under another name-space number). True when it changed.
bool TakeOriginName(CVrnApiAttribute& target, CVrnApiAttribute* origin) {
    if (!origin) return false;
    const bool otherNumber = target.m_attributeNameNs != 0 && target.m_attributeNameNs != origin->m_attributeNameNs;
    const CString originName = origin->GetAttributeName();
    if (!otherNumber && originName.CompareNoCase(target.GetAttributeName()) == 0) return false;
    target.m_attributeName = originName;
    return true;
}

// A migrated attribute's role name (and its copy) is its own column name.
void TakeColumnNameAsRole(CVrnApiAttribute& attribute) {
    attribute.m_roleName = attribute.GetName();
    attribute.m_roleNameCopy = attribute.GetName();
}

}  // namespace

// Stores the origin in the pair's third pair of fields and answers the
// origin's attribute, or null when it does not exist.
CVrnApiAttribute* CVrnAPI::RecordOrigin(CForeignKeyColumnBase& column, const COrigin& origin) {
    column.m_originEntityKey = origin.entityKey;
    column.m_originAttributeNo = origin.attributeNo;
    const CVrnApiEntity* entity = GetEntityPtr(origin.entityKey);
    return entity ? entity->GetAttribute(origin.attributeNo) : nullptr;
}

bool CVrnAPI::ResolveForeignKeyConstraints(CStringList& messages) {
    for (POSITION pos = m_pendingForeignKeyList.GetHeadPosition(); pos;) {
        CVrnApiForeignKey* foreignKey = m_pendingForeignKeyList.GetNext(pos);
        if (!foreignKey) continue;
        const CString name = foreignKey->GetName();
        const CString childName = foreignKey->GetChildEntityName();
        const CString parentName = foreignKey->GetParentEntityName();
        const std::uint32_t key = foreignKey->m_fkKey;

        // Found by name alone: the owner the foreign key names is not used.
        CVrnApiEntity* parent = GetEntityPtr(FindEntity(parentName, nullptr, 0));
        if (!parent) {
            CString message;
            AfxFormatString1(message, kHostTextParentNotFound, parentName);
            messages.AddTail(message);
            if (name == "UNKNOWN" || name.IsEmpty())
                AfxFormatString1(message, kHostTextUnnamedKeyNotAdded, nullptr);
            else
                AfxFormatString1(message, kHostTextForeignKeyNotAdded, name);
            messages.AddTail(message);
            continue;
        }

        foreignKey->m_parentEntityKey = parent->m_entityKey;
        foreignKey->m_pOwnerData = m_foreignKeyList.AddTail(foreignKey);
        m_foreignKeyMap.SetAt(key, foreignKey);
        while (!foreignKey->m_parentColumnNames.IsEmpty()) {
            const CString parentColumn = foreignKey->m_parentColumnNames.RemoveHead();
            const CString childColumn = foreignKey->m_childColumnNames.RemoveHead();
            // An empty parent column takes the parent's next primary key column.
            const int added = AddForeignKeyColumnPair(key, parentColumn.IsEmpty() ? nullptr : parentColumn.GetString(),
                                                      childColumn, 0);
            if (!added) {
                CString message;
                AfxFormatString3(message, kHostTextColumnPairNotAdded, name, parentName, childName);
                messages.AddTail(message);
            }
        }
    }
    return m_foreignKeyMap.GetCount() > 0;
}

void CVrnAPI::FixupRelationshipTypes() {
    for (POSITION pos = m_foreignKeyList.GetHeadPosition(); pos;) {
        CVrnApiForeignKey* foreignKey = m_foreignKeyList.GetNext(pos);
        if (!foreignKey->IsValid()) continue;
        foreignKey->Text(CVrnApiForeignKey::kRelationshipType) = "I";
        const CVrnApiEntity* child = GetEntityPtr(foreignKey->m_childEntityKey);
        for (POSITION pair = foreignKey->m_columnList.GetHeadPosition(); pair && child;) {
            const CVrnApiAttribute* attribute = child->GetAttribute(foreignKey->m_columnList.GetNext(pair)->m_childAttributeNo);
            if (attribute && !attribute->GetIsPkAttribute())
                foreignKey->Text(CVrnApiForeignKey::kRelationshipType) = "N";
        }
    }
}

void CVrnAPI::FixupAKRelationships() {
    for (POSITION pos = m_foreignKeyList.GetHeadPosition(); pos;) {
        CVrnApiForeignKey* foreignKey = m_foreignKeyList.GetNext(pos);
        if (foreignKey->IsValid()) continue;
        const CVrnApiEntity* parent = GetEntityPtr(foreignKey->m_parentEntityKey);
        if (!parent) continue;
        CList<std::uint32_t, std::uint32_t> parentColumns;
        for (POSITION pair = foreignKey->m_columnList.GetHeadPosition(); pair;)
            parentColumns.AddTail(foreignKey->m_columnList.GetNext(pair)->m_parentAttributeNo);
        if (const std::uint32_t alternateKey = parent->HasAKWithColumnList(parentColumns)) {
            foreignKey->SetValid(1);
            foreignKey->m_referencedKey = alternateKey;
        }
    }
}

// Follows migrations upward from (entityKey, attributeNo). A cycle of only
// identifying relationships is broken by making the foreign key at which the
// trace closes it invalid; a cycle with a non-identifying link is left alone.
// Entities are compared, not attributes: coming back to an entity through
// another attribute closes a cycle too.
CVrnAPI::COrigin CVrnAPI::TraceOrigin(std::uint32_t entityKey, std::uint32_t attributeNo) {
    COrigin current{entityKey, attributeNo};
    std::unordered_map<std::uint32_t, int> marks{{entityKey, kMarkStart}};
    // Counts entries, not entities: a self reference re-enters the start entity.
    int visited = 1;
    for (;;) {
        const CMigrationRecord* record = m_pMigrationMap->Lookup(current.entityKey, current.attributeNo);
        if (!record) return current;
        // A plain non-identifying migration is followed only as the first step.
        const bool plainNonIdentifying = record->nonIdentifying && !record->conflict && !record->alternateKey;
        if (plainNonIdentifying && visited > 1) return current;

        current = COrigin{record->parentEntityKey, record->parentAttributeNo};
        const auto seen = marks.find(current.entityKey);
        // A non-identifying relationship of the start entity to itself is a
        // step, not a cycle.
        const bool selfReference = record->nonIdentifying && !record->alternateKey && visited == 1;
        if (seen == marks.end() || selfReference) {
            marks[current.entityKey] = record->nonIdentifying ? kMarkNonIdentifying : kMarkIdentifying;
            ++visited;
            continue;
        }

        if (seen->second == kMarkStart) seen->second = record->nonIdentifying ? kMarkNonIdentifying : kMarkIdentifying;
        for (const auto& entry : marks)
            if (entry.second == kMarkNonIdentifying) return current;
        const CMigrationRecord* closing = m_pMigrationMap->Lookup(current.entityKey, current.attributeNo);
        DeleteForeignKey((closing ? closing : record)->foreignKey);
        return current;
    }
}

void CVrnAPI::UpdateRelationships(int writeRows) {
    FixupRelationshipTypes();
    FixupAKRelationships();
    if (m_pGuidMgr) {
        CString attributeType("Attribute");
        m_pGuidMgr->GetObjectTypeId(attributeType);
    }

    m_pMigrationMap = std::make_unique<CMigrationMap>();
    for (POSITION pos = m_foreignKeyList.GetHeadPosition(); pos;) {
        CVrnApiForeignKey* foreignKey = m_foreignKeyList.GetNext(pos);
        if (!foreignKey->IsValid()) continue;
        const int nonIdentifying = IsIdentifying(*foreignKey) ? 0 : 1;
        const int alternateKey = foreignKey->m_referencedKey != 0 ? 1 : 0;
        for (POSITION pair = foreignKey->m_columnList.GetHeadPosition(); pair;) {
            const CForeignKeyColumnBase* column = foreignKey->m_columnList.GetNext(pair);
            m_pMigrationMap->Enter(foreignKey->m_childEntityKey, column->m_childAttributeNo,
                                   foreignKey->m_parentEntityKey, column->m_parentAttributeNo,
                                   foreignKey->m_fkKeyCopy, nonIdentifying, alternateKey);
        }
    }
    AssignOwners(writeRows);
    CopySharedAttributes(writeRows);
}

// Every child attribute belongs to the first foreign key that migrates it,
// takes its origin's name and records the origin in the pair.
void CVrnAPI::AssignOwners(int writeRows) {
    for (POSITION pos = m_foreignKeyList.GetHeadPosition(); pos;) {
        CVrnApiForeignKey* foreignKey = m_foreignKeyList.GetNext(pos);
        if (!foreignKey->IsValid()) continue;
        CVrnApiEntity* parent = GetEntityPtr(foreignKey->m_parentEntityKey);
        CVrnApiEntity* child = GetEntityPtr(foreignKey->m_childEntityKey);
        for (POSITION pair = foreignKey->m_columnList.GetHeadPosition(); pair;) {
            CForeignKeyColumnBase* column = foreignKey->m_columnList.GetNext(pair);
            const COrigin origin = TraceOrigin(foreignKey->m_childEntityKey, column->m_childAttributeNo);
            if (!foreignKey->IsValid()) continue;  // the trace broke a cycle here

            bool self = origin.entityKey == foreignKey->m_childEntityKey &&
                        origin.attributeNo == column->m_childAttributeNo;
            if (!self && CString(foreignKey->GetRelationshipType()) == "N") {
                const CMigrationRecord* record =
                    m_pMigrationMap->Lookup(foreignKey->m_childEntityKey, column->m_childAttributeNo);
                self = record && record->conflict;
            }
            CVrnApiAttribute* attribute = child ? child->GetAttribute(column->m_childAttributeNo) : nullptr;
            if (!attribute || attribute->GetRelationId() != 0 || self) continue;

            attribute->SetRelationId(foreignKey->m_fkKeyCopy);
            NameRoleWhenRenamed(*attribute, parent ? parent->GetAttribute(column->m_parentAttributeNo) : nullptr,
                                attribute->GetName());
            CVrnApiAttribute* originAttribute = RecordOrigin(*column, origin);
            TakeColumnNameAsRole(*attribute);
            if (TakeOriginName(*attribute, originAttribute) && writeRows)
                attribute->OutputRow(attribute->GetIsUpdate());
        }
    }
}

// A child attribute that belongs to another relationship is not shared: the
// pair is pointed at a copy of it, added to the child entity.
void CVrnAPI::CopySharedAttributes(int writeRows) {
    for (POSITION pos = m_foreignKeyList.GetHeadPosition(); pos;) {
        CVrnApiForeignKey* foreignKey = m_foreignKeyList.GetNext(pos);
        if (!foreignKey->IsValid()) continue;
        CVrnApiEntity* parent = GetEntityPtr(foreignKey->m_parentEntityKey);
        CVrnApiEntity* child = GetEntityPtr(foreignKey->m_childEntityKey);
        for (POSITION pair = foreignKey->m_columnList.GetHeadPosition(); pair && child;) {
            CForeignKeyColumnBase* column = foreignKey->m_columnList.GetNext(pair);
            CVrnApiAttribute* shared = child->GetAttribute(column->m_childAttributeNo);
            if (!shared || shared->GetRelationId() == foreignKey->m_fkKeyCopy) continue;

            auto* copy = MakeRow<CVrnApiAttribute>();
            copy->Init(shared);
            copy->m_attributeNo = 0;
            copy->m_attributeId = 0;
            copy->m_nCopy = 0;
            child->AddAttribute(copy);
            NameRoleWhenRenamed(*copy, parent ? parent->GetAttribute(column->m_parentAttributeNo) : nullptr,
                                shared->GetName());
            copy->m_parentAttributeNo = shared->m_attributeNo;
            column->m_childAttributeNo = copy->m_attributeNo;

            CVrnApiAttribute* originAttribute =
                RecordOrigin(*column, TraceOrigin(foreignKey->m_parentEntityKey, column->m_parentAttributeNo));
            TakeColumnNameAsRole(*shared);
            TakeOriginName(*copy, originAttribute);
            if (writeRows) copy->OutputRow(0);
        }
    }
}
