/// @file
/// The entity class of the model builder, CVrnApiEntity, for tables and views.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "framework/VrnExport.h"
#include "framework/AfxColl.h"
#include "store/NSOutput.h"

class CVrnAPI;
class CVrnApiAttribute;
class CVrnApiIndex;
class CPropertyMgr;

/// CVrnApiEntity: one table or view of the model. It is an entity row in its
/// own right and the owner of everything that belongs to the table: its
/// attributes, its primary key, its indexes and its table storage row.
class VRN_EXPORT CVrnApiEntity : public CNSOutputEntity {
public:
    /// Not used by the builder: no owner and no table storage row; such an
    /// entity must not be saved or given properties.
    CVrnApiEntity();
    /// The builder's constructor: makes the table storage row through the
    /// owner's row factory, with every storage parameter slot "not given" (-1).
    explicit CVrnApiEntity(CVrnAPI* owner);
    /// Deletes the attributes, the primary key, the indexes and the table storage row it owns.
    ~CVrnApiEntity() override;
    CVrnApiEntity(const CVrnApiEntity&) = delete;
    CVrnApiEntity& operator=(const CVrnApiEntity&) = delete;

    /// Writes the entity's rows in this order: attributes, the primary key index
    /// and primary key rows (only when some attribute is a key attribute), the
    /// other indexes, the table storage row, the entity row. A view writes
    /// nothing. Always 1.
    ///
    /// On the DB2 platforms a unique index with the primary key's columns first
    /// takes the primary key's place. When string property 56 named a column,
    /// its sequence number is stored as table property 19 before the entity row.
    int Save();

    /// The entity's (table) name; "" when it has none.
    const char* GetName() const { return m_tableName; }
    /// The owner (schema), by reference; "" for none.
    CString& GetOwner() { return m_owner; }
    /// Nonzero for a view, which Save does not write.
    int GetIsView() const { return m_isView; }
    /// Makes the entity a view (nonzero) or a table (0).
    void SetIsView(int isView) { m_isView = isView; }
    /// Whether a view is valid: 1 unless set otherwise; the library only keeps it.
    int GetIsValidView() const { return m_isValidView; }
    /// Sets whether a view is valid; the library only keeps it.
    void SetIsValidView(int isValidView) { m_isValidView = isValidView; }
    /// Nonzero once a table partition was added (CVrnAPI::AddTablePartition).
    int GetIsPartitioned() const { return m_isPartitioned; }
    /// Sets the partitioned flag.
    void SetIsPartitioned(int isPartitioned) { m_isPartitioned = isPartitioned; }
    /// A view's SQL text; "" when none was set. Not written into the model file.
    CString GetViewSQL() const { return m_viewSQL; }
    /// Keeps a view's SQL text.
    void SetViewSQL(const CString& sql) { m_viewSQL = sql; }
    /// The primary key, owned by the entity; null when it has none.
    CVrnApiIndex* GetPrimaryKeyIndexObj() const { return m_pPrimaryKey; }
    /// The attributes, owned by the entity, in order of adding.
    CTypedPtrList<CPtrList, CVrnApiAttribute*>& GetAttrPtrList() { return m_attrList; }

    // Attributes.

    /// Makes, numbers, types and appends an attribute, owned by the entity, and
    /// returns it; the builder gives it its identifier (see CVrnAPI::AddAttribute
    /// for the arguments). The first argument is unused. Null only when the
    /// entity has no owner to make rows with.
    CVrnApiAttribute* AddAttribute(unsigned long unused, const char* name, const char* datatype, long width,
                                   long scale, int nullOption, unsigned long sequence);
    /// Takes over an existing attribute, which the entity owns from then on (an
    /// attribute number of 0 gets the next one). A null attribute does nothing.
    void AddAttribute(CVrnApiAttribute* attribute);
    /// The first attribute whose name equals `name` ignoring case: its number
    /// when `wantNumber` is nonzero, else its identifier; 0 when none.
    unsigned long FindAttribute(const char* name, int wantNumber);
    /// The first attribute whose sequence number is `sequence`: its number when `wantNumber` is nonzero, else its
    /// identifier; 0 when none.
    unsigned long FindAttrBySequence(unsigned long sequence, int wantNumber);
    /// The attribute of that attribute number, owned by the entity; null when none.
    CVrnApiAttribute* GetAttribute(unsigned long attributeNo) const;
    /// Deletes the attribute mapped under `attribute`'s number (not necessarily
    /// `attribute` itself); 1 when one was deleted. Nothing is renumbered.
    int DeleteAttribute(CVrnApiAttribute* attribute);

    // Keys and indexes. The primary key and the indexes share one running
    // index number.

    /// Makes the primary key, owned by the entity, and returns its name: `name`
    /// itself, or "" for a null name. Null when the entity already has a
    /// primary key or has no owner to make rows with.
    const char* AddPrimaryKey(const char* name);
    /// Makes and appends an index, owned by the entity, and returns it; the
    /// builder gives it its key. A null name becomes the entity name, "IX" and
    /// the index number (ITEMIX2). Null only when the entity has no owner.
    CVrnApiIndex* AddIndex(const char* name);
    /// Marks the named attribute as a key attribute (not null) and appends it
    /// to the primary key; 0 without a primary key or such an attribute.
    int AddPrimaryKeyColumn(const char* attributeName, std::uint32_t sequence);
    /// The index key of the primary key; 0 when the entity has none.
    std::uint32_t GetPrimaryKeyIndexId() const;
    /// The index key of the first unique index over exactly these attribute
    /// numbers, in this order; 0 when none.
    std::uint32_t HasAKWithColumnList(const CList<std::uint32_t, std::uint32_t>& attributeNos) const;

    /// Physical options by property code: a storage slot, an entity text, or a
    /// table or overflow segment property. 0 for an unknown code.
    int SetProperty(int code, long value);
    /// Text options by property code: the definition (2), the storage space (15), the column whose sequence number Save
    /// stores as a table property (56), and texts kept by the property manager. 1 when taken; 0 for an unknown code, or
    /// when the storage row or the property manager it needs is missing.
    int SetStringProperty(int code, const char* text);

    /// The number of slots of m_propertyValueHandles.
    static constexpr int kPropertyValueHandleCount = 8;

    /// Not used by the library.
    std::int32_t m_spareCounter = 1;
    /// The number the entity's next check constraint takes: 1, 2, 3, ...
    std::int32_t m_nextCheckConstraintNo = 1;
    /// The sequence the next table partition column added with sequence 0 takes.
    std::int32_t m_nextPartitionColumnNo = 1;
    CVrnAPI* m_pOwner = nullptr;  ///< not owned
    /// Owning: the attributes in order of adding.
    CTypedPtrList<CPtrList, CVrnApiAttribute*> m_attrList;
    /// Attribute number to attribute; not owning.
    CMapIdToPtr<CVrnApiAttribute> m_attrMap;
    /// The attribute number the next attribute takes: 1, 2, 3, ...
    std::uint32_t m_nextAttributeNo = 1;
    CVrnApiIndex* m_pPrimaryKey = nullptr;  ///< owned
    /// Owning: the other indexes in order of adding.
    CTypedPtrList<CPtrList, CVrnApiIndex*> m_indexList;
    /// The index number the next primary key or index takes.
    std::int32_t m_nextIndexNo = 1;
    CNSOutputTableStorage* m_pTableStorage = nullptr;  ///< owned
    /// Nonzero for a view (see GetIsView).
    std::int32_t m_isView = 0;
    /// See GetIsValidView.
    std::int32_t m_isValidView = 1;
    /// See GetViewSQL.
    CString m_viewSQL;
    /// The column named by string property 56; "" for none.
    CString m_propertyColumnName;
    /// See GetIsPartitioned.
    std::int32_t m_isPartitioned = 0;
    /// Value numbers of some table properties as the property manager stored them, read back after each such
    /// SetProperty; 0 until set.
    std::uint32_t m_propertyValueHandles[kPropertyValueHandleCount] = {};
    /// Primary key objects displaced by consolidation. The builder's index maps
    /// may still point at them, so they live until the entity goes.
    std::vector<std::unique_ptr<CVrnApiIndex>> m_displacedIndexes;

    /// @cond PROTECTED
protected:
    /// Takes the first unique index with the primary key's columns out of the
    /// index list and returns it; null when none matches.
    CVrnApiIndex* FindIndexMatchingPK();

private:
    /// On the DB2 platforms a primary key and a unique index over the same
    /// columns are one object: the index takes the primary key's place.
    void ConsolidatePrimaryKey();
    /// Numbers a new attribute and ties it to this entity's keys.
    void Adopt(CVrnApiAttribute* attribute, std::uint32_t attributeNo);
    /// Appends to the list and enters the attribute in the map under its number.
    void Append(CVrnApiAttribute* attribute);
    void WritePrimaryKeyRows();
    void ReadBackHandle(CPropertyMgr& properties, int propertyNo, int handle);
    /// @endcond
};
