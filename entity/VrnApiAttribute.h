/// @file
/// The attribute class of the model builder, CVrnApiAttribute.
#pragma once

#include <cstdint>

#include "framework/VrnExport.h"
#include "store/NSOutput.h"

class CVrnAPI;

/// CVrnApiAttribute: one column of an entity, and the attribute row that its
/// entity writes when it is saved. The attribute owns nothing.
///
/// Three numbers identify an attribute and must not be confused: its attribute
/// number (its running number within the entity), its attribute identifier
/// (the client's handle, from the builder's key allocator) and its sequence
/// number (its column position as the client gives it).
class VRN_EXPORT CVrnApiAttribute : public CNSOutputAttribute {
public:
    /// An attribute tied to no builder (m_pOwner null); the builder makes its attributes with the other constructor.
    CVrnApiAttribute() = default;
    /// An attribute of the builder `owner` (not owned), as the builder's row factory makes one.
    explicit CVrnApiAttribute(CVrnAPI* owner) : m_pOwner(owner) {}
    /// The attribute owns nothing of its own to free.
    ~CVrnApiAttribute() override = default;

    /// Copies `other` into this attribute: the row fields, the texts through
    /// the other's getters, and the row's references. Flags, owner, relation
    /// identifier, the text of string property 10 and the second role text are
    /// this attribute's own and are not copied. A null `other` copies nothing.
    void Init(CVrnApiAttribute* other);

    /// The column name, by reference: an assignment through it renames the column.
    ///
    /// This and the getters below: with the update flag set, a text whose name-space number is
    /// nonzero is first refreshed from the name space. GetColumnName is the one
    /// exception, kept on purpose: it tests the column name's number but takes
    /// the text of the attribute name's number.
    CString& GetName();
    /// The attribute name.
    const char* GetAttributeName();
    /// The column name (see above for the number it refreshes from).
    const char* GetColumnName();
    /// The role name of a migrated attribute; "" when it has none.
    const char* GetRoleName();
    /// The model's datatype code ("VAR", "NUM", ...).
    const char* GetDatatype();
    /// The default value's text; "" for none.
    const char* GetDefaultText();
    /// The definition, the descriptive text set as string property 2; "" for none.
    const char* GetDefinition();
    /// The column check constraint's text; "" for none.
    const char* GetCheckConstraint();
    /// The name of the attribute's user datatype; "" for none.
    const char* GetUserDatatype();

    /// 1 when the attribute is a key attribute (in its entity's primary key), else 0.
    int GetIsPkAttribute() const { return (m_flags & kFlagPrimaryKey) ? 1 : 0; }
    /// Marks the attribute as a key attribute (nonzero) or not (0).
    void SetIsPkAttribute(int isPk) { SetFlag(kFlagPrimaryKey, isPk); }
    /// 1 when the getters refresh texts from the name space, else 0.
    int GetIsUpdate() const { return (m_flags & kFlagUpdate) ? 1 : 0; }
    /// Turns the getters' refresh from the name space on (nonzero) or off (0).
    void SetIsUpdate(int isUpdate) { SetFlag(kFlagUpdate, isUpdate); }

    /// The relation identifier (the key copy of the foreign key that owns a
    /// migrated attribute, 0 for none) is the row's relation_key field, so
    /// that it reaches the model file.
    std::uint32_t GetRelationId() const { return m_relationKey; }
    /// Sets the relation identifier (see GetRelationId).
    void SetRelationId(std::uint32_t relationId) { m_relationKey = relationId; }

    static constexpr std::uint32_t kFlagPrimaryKey = 1;  ///< bit 0 of m_flags: a key attribute
    static constexpr std::uint32_t kFlagUpdate = 4;      ///< bit 2 of m_flags: getters refresh from the name space

    /// The flags kFlagPrimaryKey and kFlagUpdate; other bits are unused.
    std::uint32_t m_flags = 0;
    CVrnAPI* m_pOwner = nullptr;  ///< not owned

private:
    void SetFlag(std::uint32_t flag, int on) { m_flags = on ? (m_flags | flag) : (m_flags & ~flag); }
    /// Refreshes `text` from name-space number `id` when the update flag asks for it.
    CString& Refreshed(CString& text, std::int32_t testedId, std::int32_t fetchedId);
};
