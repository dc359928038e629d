// CVrnApiAttribute: one column of an entity, and the attribute row that its
// entity writes when it is saved. The attribute owns nothing.
//
// Three numbers identify an attribute and must not be confused: its attribute
// number (its running number within the entity), its attribute identifier
// (the client's handle, from the builder's key allocator) and its sequence
// number (its column position as the client gives it).
#pragma once

#include <cstdint>

#include "framework/VrnExport.h"
#include "store/NSOutput.h"

class CVrnAPI;

class VRN_EXPORT CVrnApiAttribute : public CNSOutputAttribute {
public:
    CVrnApiAttribute() = default;
    explicit CVrnApiAttribute(CVrnAPI* owner) : m_pOwner(owner) {}
    ~CVrnApiAttribute() override = default;

    // Copies `other` into this attribute: the row fields, the texts through
    // the other's getters, and the row's references. Flags, owner, relation
    // identifier, the text of string property 10 and the second role text are
    // this attribute's own and are not copied. A null `other` copies nothing.
    void Init(CVrnApiAttribute* other);

    // The getters. With the update flag set, a text whose name-space number is
    // nonzero is first refreshed from the name space. GetColumnName is the one
    // exception, kept on purpose: it tests the column name's number but takes
    // the text of the attribute name's number.
    CString& GetName();
    const char* GetAttributeName();
    const char* GetColumnName();
    const char* GetRoleName();
    const char* GetDatatype();
    const char* GetDefaultText();
    const char* GetDefinition();
    const char* GetCheckConstraint();
    const char* GetUserDatatype();

    int GetIsPkAttribute() const { return (m_flags & kFlagPrimaryKey) ? 1 : 0; }
    void SetIsPkAttribute(int isPk) { SetFlag(kFlagPrimaryKey, isPk); }
    int GetIsUpdate() const { return (m_flags & kFlagUpdate) ? 1 : 0; }
    void SetIsUpdate(int isUpdate) { SetFlag(kFlagUpdate, isUpdate); }

    // The relation identifier (the key copy of the foreign key that owns a
    // migrated attribute, 0 for none) is the row's relation_key field, so
    // that it reaches the model file.
    std::uint32_t GetRelationId() const { return m_relationKey; }
    void SetRelationId(std::uint32_t relationId) { m_relationKey = relationId; }

    static constexpr std::uint32_t kFlagPrimaryKey = 1;  // bit 0
    static constexpr std::uint32_t kFlagUpdate = 4;      // bit 2

    std::uint32_t m_flags = 0;
    CVrnAPI* m_pOwner = nullptr;  // not owned

private:
    void SetFlag(std::uint32_t flag, int on) { m_flags = on ? (m_flags | flag) : (m_flags & ~flag); }
    // Refreshes `text` from name-space number `id` when the update flag asks for it.
    CString& Refreshed(CString& text, std::int32_t testedId, std::int32_t fetchedId);
};
