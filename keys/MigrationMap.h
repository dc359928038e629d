// The migration map of relationship resolution: for every child attribute
// that a foreign key migrates, where it comes from and through which
// relationship. One record per (child entity key, child attribute number).
#pragma once

#include <cstdint>
#include <unordered_map>

namespace vrn {

struct CMigrationRecord {
    std::uint32_t parentEntityKey = 0;
    std::uint32_t parentAttributeNo = 0;
    std::uint32_t foreignKey = 0;  // the key copy of the foreign key that migrates the attribute
    int nonIdentifying = 0;        // 1 when that foreign key is not exactly "I"
    int conflict = 0;              // 1 when identifying and non-identifying foreign keys both migrate it
    int alternateKey = 0;          // 1 when that foreign key references an alternate key
};

class CMigrationMap {
public:
    // Records a migration. A second migration of the same attribute replaces
    // the first only when the first is non-identifying (the last such wins);
    // identifying and non-identifying together mark a conflict. The alternate
    // key field of a record is never changed once made.
    void Enter(std::uint32_t childEntityKey, std::uint32_t childAttributeNo, std::uint32_t parentEntityKey,
               std::uint32_t parentAttributeNo, std::uint32_t foreignKey, int nonIdentifying, int alternateKey);
    // The record of the attribute, or null.
    const CMigrationRecord* Lookup(std::uint32_t entityKey, std::uint32_t attributeNo) const;

private:
    static std::uint64_t Key(std::uint32_t entityKey, std::uint32_t attributeNo) {
        return (std::uint64_t(entityKey) << 32) | attributeNo;
    }

    std::unordered_map<std::uint64_t, CMigrationRecord> m_records;
};

}  // namespace vrn
