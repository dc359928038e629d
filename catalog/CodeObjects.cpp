// Code objects: triggers, procedures and packages, found by name and owner,
// and referenced objects, found by their values.
#include "builder/VrnAPI.h"

namespace {

bool NoOwner(const char* owner) { return !owner || !*owner; }

}  // namespace

unsigned long CVrnAPI::AddTrigger(const char* name, const char* owner, const char* text, int kind,
                                  unsigned long parentValue) {
    const std::uint32_t key = static_cast<std::uint32_t>(AllocKey(EKeyClass::Trigger));
    if (key == 0) return 0;  // no key before a successful Initialize: nothing is added
    auto* row = MakeRow<CNSOutputTrigger>();
    row->m_triggerKey = key;
    row->m_name = name;
    row->m_owner = owner;
    row->m_sqlText = text;
    row->m_kind = kind;
    row->m_parentValue = static_cast<std::uint32_t>(parentValue);
    m_triggerList.AddTail(row);
    m_triggerIndex.Add(name, owner, row);
    m_triggerMap.SetAt(key, row);
    return key;
}

unsigned long CVrnAPI::FindTrigger(const char* name, const char* owner, unsigned long& parentValue) {
    const CNSOutputTrigger* row =
        NoOwner(owner) ? m_triggerIndex.FindByName(name).row : m_triggerIndex.FindByNameAndOwner(name, owner).row;
    parentValue = row ? row->m_parentValue : 0;
    return row ? row->m_triggerKey : 0;
}

void CVrnAPI::SetTriggerInvalid(unsigned long triggerId) {
    if (CNSOutputTrigger* row = m_triggerMap.Find(triggerId))
        row->m_isInvalid = 1;
}

unsigned long CVrnAPI::AddProcedure(const char* name, const char* owner, const char* text, int kind) {
    const std::uint32_t key = static_cast<std::uint32_t>(AllocKey(EKeyClass::Procedure));
    if (key == 0) return 0;
    auto* row = MakeRow<CNSOutputProc>();
    row->m_procKey = key;
    row->m_name = name;
    row->m_owner = owner;
    row->m_sqlText = text;
    row->m_kind = kind;
    row->m_fixedNo = 1;
    m_procedureList.AddTail(row);
    m_procedureIndex.Add(name, owner, row);
    m_procedureMap.SetAt(key, row);
    return key;
}

unsigned long CVrnAPI::FindProcedure(const char* name, const char* owner) {
    const CNSOutputProc* row =
        NoOwner(owner) ? m_procedureIndex.FindByName(name).row : m_procedureIndex.FindByNameAndOwner(name, owner).row;
    return row ? row->m_procKey : 0;
}

void CVrnAPI::SetProcInvalid(unsigned long procedureId) {
    if (CNSOutputProc* row = m_procedureMap.Find(procedureId))
        row->m_isInvalid = 1;
}

CNSOutputPackage* CVrnAPI::FindPackage(const char* name, const char* owner) {
    if (NoOwner(owner)) return m_packageIndex.FindByName(name).row;
    // Catalogs list package bodies without an owner, so a package that has
    // none matches any owner; the earlier of the two candidates wins.
    const auto sameOwner = m_packageIndex.FindByNameAndOwner(name, owner);
    const auto ownerless = m_packageIndex.FindByNameAndOwner(name, "");
    if (!ownerless.row) return sameOwner.row;
    if (!sameOwner.row) return ownerless.row;
    return ownerless.order < sameOwner.order ? ownerless.row : sameOwner.row;
}

unsigned long CVrnAPI::AddPackage(const char* name, const char* owner, const char* text, bool isBody) {
    if (CNSOutputPackage* existing = FindPackage(name, owner)) {
        (isBody ? existing->m_bodyText : existing->m_headerText) = text;
        return existing->m_packageKey;
    }
    const std::uint32_t key = static_cast<std::uint32_t>(AllocKey(EKeyClass::Package));
    if (key == 0) return 0;
    auto* row = MakeRow<CNSOutputPackage>();
    row->m_packageKey = key;
    row->m_name = name;
    row->m_owner = owner;
    row->m_fixedNo = 1;
    (isBody ? row->m_bodyText : row->m_headerText) = text;
    m_packageList.AddTail(row);
    m_packageIndex.Add(name, owner, row);
    return key;
}

unsigned long CVrnAPI::AddReferencedObject(unsigned long value1, unsigned long value2, unsigned long value3,
                                           unsigned long value4, int metaTableNo) {
    const unsigned long metaKey = m_pPropertyMgr ? m_pPropertyMgr->m_pMetaTableTbl->GetTechKey(metaTableNo) : 0;
    if (metaKey == 0) return 0;
    const std::uint32_t key = static_cast<std::uint32_t>(AllocKey(EKeyClass::ReferencedObject));
    if (key == 0) return 0;
    auto* row = MakeRow<CNSOutputReferencedObject>();
    row->m_objectKey = key;
    row->m_value1 = static_cast<std::uint32_t>(value1);
    row->m_value2 = static_cast<std::uint32_t>(value2);
    row->m_value3 = static_cast<std::uint32_t>(value3);
    row->m_value4 = static_cast<std::uint32_t>(value4);
    row->m_metaTableKey = static_cast<std::uint32_t>(metaKey);
    m_referencedObjectList.AddTail(row);
    m_referencedObjectIndex.emplace(
        std::make_tuple(static_cast<std::uint32_t>(value1), static_cast<std::uint32_t>(value2),
                        static_cast<std::uint32_t>(value3), static_cast<std::uint32_t>(value4), row->m_metaTableKey),
        row);
    return key;
}

unsigned long CVrnAPI::FindReferencedObject(unsigned long value1, unsigned long value2, unsigned long value3,
                                            unsigned long value4, int metaTableNo) {
    const unsigned long metaKey = m_pPropertyMgr ? m_pPropertyMgr->m_pMetaTableTbl->GetTechKey(metaTableNo) : 0;
    if (metaKey == 0) return 0;
    const auto found = m_referencedObjectIndex.find(
        std::make_tuple(static_cast<std::uint32_t>(value1), static_cast<std::uint32_t>(value2),
                        static_cast<std::uint32_t>(value3), static_cast<std::uint32_t>(value4),
                        static_cast<std::uint32_t>(metaKey)));
    return found == m_referencedObjectIndex.end() ? 0 : found->second->m_objectKey;
}
