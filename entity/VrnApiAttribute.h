// CVrnApiAttribute: one column of an entity, and the attribute row that its
// entity writes when it is saved. The attribute owns nothing.
#pragma once

#include <cstdint>

#include "store/NSOutput.h"

class CVrnAPI;

class CVrnApiAttribute : public CNSOutputAttribute {
public:
    CVrnApiAttribute() = default;
    explicit CVrnApiAttribute(CVrnAPI* owner) : m_pOwner(owner) {}
    ~CVrnApiAttribute() override = default;

    // The relation identifier (the key copy of the foreign key that owns a
    // migrated attribute, 0 for none) is the row's relation_key field, so
    // that it reaches the model file.
    std::uint32_t GetRelationId() const { return m_relationKey; }
    void SetRelationId(std::uint32_t relationId) { m_relationKey = relationId; }

    static constexpr std::uint32_t kFlagPrimaryKey = 1;  // bit 0
    static constexpr std::uint32_t kFlagUpdate = 4;      // bit 2

    std::uint32_t m_flags = 0;
    CVrnAPI* m_pOwner = nullptr;  // not owned
};
