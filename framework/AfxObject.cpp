#include "framework/AfxObject.h"

#include <cstring>
#include <mutex>
#include <string>
#include <unordered_map>

namespace {

struct ClassRegistry {
    std::mutex lock;
    std::unordered_map<std::string, const CRuntimeClass*> byName;
};

// Function-local so that records registered from other translation units'
// static initialisers always find it constructed.
ClassRegistry& Registry() {
    static ClassRegistry registry;
    return registry;
}

}  // namespace

const CRuntimeClass CObject::classCObject = {"CObject", nullptr, nullptr};
const CRuntimeClass CCmdTarget::classCCmdTarget = {"CCmdTarget", nullptr, &CObject::classCObject};

AFX_CLASSINIT::AFX_CLASSINIT(const CRuntimeClass* record) {
    ClassRegistry& registry = Registry();
    std::lock_guard<std::mutex> guard(registry.lock);
    registry.byName[record->m_lpszClassName] = record;
}

const CRuntimeClass* CRuntimeClass::FromName(const char* className) {
    if (!className) return nullptr;
    ClassRegistry& registry = Registry();
    std::lock_guard<std::mutex> guard(registry.lock);
    const auto found = registry.byName.find(className);
    return found == registry.byName.end() ? nullptr : found->second;
}

bool CRuntimeClass::IsDerivedFrom(const CRuntimeClass* base) const {
    for (const CRuntimeClass* record = this; record; record = record->m_pBaseClass)
        if (record == base) return true;
    return false;
}

const CRuntimeClass* CObject::GetRuntimeClass() const { return &classCObject; }

bool CObject::IsKindOf(const CRuntimeClass* record) const { return GetRuntimeClass()->IsDerivedFrom(record); }

const CRuntimeClass* CCmdTarget::GetRuntimeClass() const { return &classCCmdTarget; }

const AFX_MSGMAP* CCmdTarget::GetMessageMap() const {
    static const AFX_MSGMAP emptyMap = {nullptr, 0};
    return &emptyMap;
}
