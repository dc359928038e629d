#include "keys/MigrationMap.h"

namespace vrn {

void CMigrationMap::Enter(std::uint32_t childEntityKey, std::uint32_t childAttributeNo,
                          std::uint32_t parentEntityKey, std::uint32_t parentAttributeNo, std::uint32_t foreignKey,
                          int nonIdentifying, int alternateKey) {
    const auto inserted = m_records.try_emplace(Key(childEntityKey, childAttributeNo));
    CMigrationRecord& record = inserted.first->second;
    if (inserted.second) {
        record = CMigrationRecord{parentEntityKey, parentAttributeNo, foreignKey, nonIdentifying, 0, alternateKey};
        return;
    }
    if (record.nonIdentifying) {
        // A non-identifying migration gives way to any later one; an
        // identifying newcomer also marks the conflict.
        record.parentEntityKey = parentEntityKey;
        record.parentAttributeNo = parentAttributeNo;
        record.foreignKey = foreignKey;
        if (!nonIdentifying) record.conflict = 1;
    } else if (nonIdentifying) {
        // The first identifying migration stays; a non-identifying one only marks the conflict.
        record.conflict = 1;
    }
}

const CMigrationRecord* CMigrationMap::Lookup(std::uint32_t entityKey, std::uint32_t attributeNo) const {
    const auto found = m_records.find(Key(entityKey, attributeNo));
    return found == m_records.end() ? nullptr : &found->second;
}

}  // namespace vrn
