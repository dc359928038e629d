/// @file
/// The model builder, CVrnAPI.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <tuple>
#include <vector>

#include "framework/VrnExport.h"
#include "builder/HostTexts.h"
#include "catalog/NameOwnerIndex.h"
#include "framework/AfxColl.h"
#include "framework/AfxObject.h"
#include "framework/AfxString.h"
#include "store/GuidMgr.h"
#include "store/IdentityMgr.h"
#include "store/NSOutput.h"
#include "store/NameSpaceMgr.h"
#include "store/PropertyMgr.h"
#include "store/VrnFile.h"

class CVrnApiEntity;
class CVrnApiAttribute;
class CVrnApiIndex;
class CVrnApiForeignKey;
namespace vrn {
class CMigrationMap;
}  // namespace vrn

/// CVrnAPI: the model builder, the one object through which a client describes
/// a physical data model and writes it into a model file.
///
/// REQUIRES the calling order: construct (or CreateObject), Initialize once,
/// add and describe objects (entities, then their attributes, then primary
/// keys and indexes, then foreign keys), ResolveForeignKeyConstraints once,
/// SaveToFile once, destroy. Nothing checks the order;
/// where a wrong order would reach a missing model file or manager, the call
/// does nothing and returns 0 or null instead.
///
/// Objects are addressed by the identifiers the Add calls return; an
/// identifier of 0 means nothing was found or made, and a call given an
/// unknown identifier answers 0 (null for texts and pointers). Names and
/// owners may be null, which counts as empty. The builder owns everything it
/// makes; the pointers it hands out stay valid until it is destroyed, or
/// until DeleteAttribute deletes the attribute they point to.
/// The class is dynamically creatable: CRuntimeClass::FromName("CVrnAPI")
/// finds its record, whose CreateObject makes one with `new`.
///
/// docs/library.md in the source tree is the guide to calling it, with a
/// worked example for every kind of object; docs/library-reference.md lists
/// the platform codes, datatype names, property codes of the Set...Property
/// calls and host texts in full.
class VRN_EXPORT CVrnAPI : public CCmdTarget {
    DECLARE_DYNCREATE(CVrnAPI)

public:
    /// A builder with no model yet: call Initialize before anything else.
    CVrnAPI();
    /// Deletes the model file in memory, the managers and every object the builder made.
    ~CVrnAPI() override;
    CVrnAPI(const CVrnAPI&) = delete;
    CVrnAPI& operator=(const CVrnAPI&) = delete;

    /// Makes the model file and managers for platform `dbType`: a new model when
    /// `path` is null, else a continuation of the model file at `path`.
    /// 1 on success; 0 when that file cannot be opened (the model file then
    /// stays, with its reason in GetVrnFile()->GetLastError(), and no managers
    /// are made).
    int Initialize(int dbType, const char* path);
    /// Completes and writes the model to `path`. 1 once the builder has a model
    /// file and managers, even when the save failed: the file was written when
    /// GetVrnFile()->GetLastError() is empty afterwards. 0, with nothing written,
    /// before a successful Initialize. Save once per builder: a second save, to
    /// any path, writes the first save's rows again beside the new ones.
    int SaveToFile(const char* path);

    /// Sets the model number that new rows carry; 0 (the default) gives 1.
    void SetModelId(unsigned long modelId) { m_modelId = static_cast<std::uint32_t>(modelId); }

    /// The platform code given to Initialize (see kPlatforms); 0 before it.
    int GetDbType() const { return m_dbType; }
    /// The model file, owned by the builder; null before Initialize. After a
    /// save, its GetLastError() tells whether the file was written.
    CVrnFile* GetVrnFile() const { return m_pVrnFile.get(); }
    /// The name-space manager, owned by the builder; null before a successful Initialize.
    CNameSpaceMgr* GetNameSpaceMgr() const { return m_pNameSpaceMgr.get(); }
    /// The object type manager, owned by the builder; null before a successful Initialize.
    CGuidMgr* GetGuidMgr() const { return m_pGuidMgr.get(); }
    /// The property manager, which keeps physical options and partitions; owned
    /// by the builder, null before a successful Initialize.
    CPropertyMgr* GetPropertyMgr() const { return m_pPropertyMgr.get(); }
    /// The package rows, owned by the builder, in order of adding.
    CTypedPtrList<CPtrList, CNSOutputPackage*>& GetPackageList() { return m_packageList; }

    // Entities and attributes.

    /// Adds a table (`isView` 0) or a view (nonzero) and returns its
    /// identifier; 0 before a successful Initialize. An entity added without an
    /// owner gets the one set by SetDB2SqlId, if any. The third argument is ignored.
    unsigned long AddEntity(const char* name, const char* owner, unsigned long reserved, int isView);
    /// The entity of that name (upper-cased); an owner is matched exactly
    /// against the first entity of the name, else through the name+owner key.
    /// A null owner, or a first entity without one, matches that first entity.
    /// The third argument is ignored.
    unsigned long FindEntity(const char* name, const char* owner, unsigned long reserved);
    /// The entity's view flag: nonzero for a view; 0 for a table or an unknown entity.
    int IsEntityView(unsigned long entityId);
    /// The entity of that identifier, owned by the builder; null when unknown.
    CVrnApiEntity* GetEntityPtr(unsigned long entityId);
    /// CVrnApiEntity::SetProperty on the entity of that identifier; 0 when it is unknown.
    int SetEntityProperty(unsigned long entityId, int code, long value);
    /// CVrnApiEntity::SetStringProperty on the entity of that identifier; 0 when it is unknown.
    int SetEntityStringProperty(unsigned long entityId, int code, const char* text);
    /// The null option that suits the target platform: 0 on the Sybase and
    /// newer SQL Server platforms, 1 elsewhere.
    int GetNullableDefault();
    /// Adds a column to the entity and returns the attribute's identifier. The
    /// datatype is a user datatype's name (which brings its width and scale) or a
    /// datatype name as a catalog spells it (an owner qualifier such as dbo. is
    /// dropped); a width or scale of -1 means none was given, and a datatype the
    /// model does not know becomes CH(10). `nullOption` is 1 for a column that
    /// admits nulls, 0 for one that does not (see GetNullableDefault); a sequence
    /// of 0 takes the attribute number. 0 for an unknown entity or before a
    /// successful Initialize.
    unsigned long AddAttribute(unsigned long entityId, const char* name, const char* datatype, long width,
                               long scale, int nullOption, unsigned long sequence);
    /// The identifier of the entity's first attribute of that column name,
    /// compared without regard to case; 0 when none.
    unsigned long FindAttribute(unsigned long entityId, const char* name);
    /// Deletes an attribute; 1 when one was deleted. Does not check that the
    /// attribute belongs to the entity: see the notes at its definition.
    int DeleteAttribute(unsigned long entityId, unsigned long attributeId);
    /// Sets an option of the attribute by property code: width (6), scale (7),
    /// nullable (8, nonzero for nulls), and options kept by the property manager.
    /// 1 for a known code, 0 for an unknown code or attribute.
    int SetAttributeProperty(unsigned long attributeId, int code, long value);
    /// Sets a text of the attribute by property code: its name (1, attribute
    /// and column name alike), definition (2), default (9), check constraint
    /// (11), and texts kept by the property manager. 1 for a known code, 0 for
    /// an unknown code or attribute.
    int SetAttributeStringProperty(unsigned long attributeId, int code, const char* text);

    // Primary keys and indexes. Each looks its entity or index up first and
    // answers 0 (null for texts) when it is unknown.

    /// Gives the entity its primary key and returns its name: `name` itself, or
    /// "" when `name` is null (the primary key then has no name; unlike AddIndex,
    /// no name is made up). Null when the entity already has a primary key or is
    /// unknown.
    const char* AddPrimaryKey(unsigned long entityId, const char* name);
    /// The index identifier of the entity's primary key; 0 when it has none.
    unsigned long GetPrimaryKeyIndexId(unsigned long entityId);
    /// Appends the named column to the entity's primary key and makes it a key
    /// attribute that admits no nulls; a sequence of 0 takes the next one. 1 when
    /// added; 0 without a primary key or such a column.
    int AddPrimaryKeyColumn(unsigned long entityId, const char* columnName, unsigned long sequence);
    /// Adds an index to the entity and returns its identifier; a null name
    /// gives the entity name, "IX" and the index number (ITEMIX2).
    unsigned long AddIndex(unsigned long entityId, const char* name);
    /// Appends the named column to the index (also the primary key's, by its
    /// identifier), descending when `descending` is nonzero; a sequence of 0 takes
    /// the next one. 1 when added; 0 for an unknown index or column.
    int AddIndexColumn(unsigned long indexId, const char* columnName, unsigned long sequence, int descending);
    /// CVrnApiIndex::SetProperty on the index of that identifier; 0 when it is unknown.
    int SetIndexProperty(unsigned long indexId, int code, long value);
    /// CVrnApiIndex::SetStringProperty on the index of that identifier; 0 when it is unknown.
    int SetIndexStringProperty(unsigned long indexId, int code, const char* text);

    // Foreign keys.

    /// Adds a foreign key of the child entity and returns its identifier; 0 for
    /// an unknown child. A foreign key whose parent entity is unknown waits in
    /// the pending list until ResolveForeignKeyConstraints finds the parent by
    /// `parentEntityName`: until then only AddForeignKeyColumnPair by names and
    /// SetForeignKeyProperty reach it by its identifier.
    unsigned long AddForeignKey(unsigned long parentEntityId, unsigned long childEntityId, const char* name,
                                const char* parentEntityName, const char* parentEntityOwner);
    /// Enters an existing foreign key in the identifier map, nothing else.
    void AddForeignKey(CVrnApiForeignKey* foreignKey);
    /// A pair by column names; a null parent name takes the parent's next
    /// primary key column. 1 when added, and for a pending foreign key, whose
    /// names are kept for resolution; 0 for an unknown foreign key or column. A
    /// parent column that is not found or not a key attribute makes the foreign
    /// key invalid; a child column outside the child's primary key makes it
    /// non-identifying.
    int AddForeignKeyColumnPair(unsigned long foreignKeyId, const char* parentColumn, const char* childColumn,
                                unsigned long sequence);
    /// A pair by attribute numbers, declared identifying or not. Does nothing
    /// for an unknown or pending foreign key or an unknown child attribute.
    void AddForeignKeyColumnPair(unsigned long foreignKeyId, unsigned long parentAttributeNo,
                                 unsigned long childAttributeNo, int identifying, unsigned long sequence);
    /// The foreign key's name, owned by it; null for an unknown or pending foreign key.
    const char* GetForeignKeyName(unsigned long foreignKeyId);
    /// Referential actions: 77/78/79 on delete cascade/restrict/set null, 80/81
    /// on update cascade/restrict; a value of 0 changes nothing. 1 for any code
    /// once the foreign key (pending or not) is found; 0 when it is unknown.
    int SetForeignKeyProperty(unsigned long foreignKeyId, int code, long value);

    /// Attaches pending foreign keys to parents found by name and adds their
    /// column pairs, appending a message to `messages` for every problem.
    /// True when at least one foreign key is addressable afterwards. Call it
    /// once, after every entity is added: a second call attaches the same
    /// foreign keys again, and the file then holds them twice.
    bool ResolveForeignKeyConstraints(CStringList& messages);

    // Defaults, rules and user datatypes, each numbered by its place in its
    // own list: 1, 2, 3, ... Names are found without regard to ASCII case, the
    // first of a name winning.

    /// Adds a default and returns its identifier. The third argument is ignored.
    unsigned long AddDefault(const char* name, const char* text, const char* reserved);
    /// The identifier of the first default of that name; 0 when none.
    unsigned long FindDefault(const char* name);
    /// Adds a rule and returns its identifier. The third argument is ignored.
    unsigned long AddRule(const char* name, const char* text, const char* reserved);
    /// The identifier of the first rule of that name; 0 when none.
    unsigned long FindRule(const char* name);
    /// Adds a user datatype for `datatype` (a base type, optionally with its
    /// length and scale in parentheses, as in DECIMAL(10,2)) and returns its
    /// identifier; 0 when the base type of `datatype` has no datatype code.
    unsigned long AddUserType(const char* name, const char* datatype);
    /// The identifier of the first user datatype of that name; 0 when none.
    unsigned long FindUserType(const char* name);

    /// Binds a rule to a target, by names as catalogs spell them. The
    /// target is a column (table.column, owner.table.column) or a user
    /// datatype. Answers the entity's identifier for a column, the user
    /// datatype's for a datatype, 0 when nothing was bound.
    unsigned long BindRule(const char* ruleName, const char* target);
    /// Binds a default to a target, as BindRule binds a rule.
    unsigned long BindDefault(const char* defaultName, const char* target);

    /// A table or column check constraint, numbered per entity. An unknown
    /// entity or column adds nothing. The last argument is ignored.
    void AddCheckConstraint(const char* name, const char* text, unsigned long entityId, const char* columnName,
                            unsigned long reserved);

    // Code objects. A null or empty owner in a find matches any owner; names
    // and owners are compared without regard to ASCII case, the first match
    // in order of adding winning.

    /// Adds a trigger and returns its identifier; `kind` is 1 before, 2 after, 3
    /// instead of; `parentValue` is kept for FindTrigger. 0 before a successful
    /// Initialize.
    unsigned long AddTrigger(const char* name, const char* owner, const char* text, int kind,
                             unsigned long parentValue);
    /// The identifier of the first trigger of that name and owner, with its
    /// parent value in `parentValue`; 0 (and a parent value of 0) when none.
    unsigned long FindTrigger(const char* name, const char* owner, unsigned long& parentValue);
    /// Marks the trigger invalid; an unknown identifier changes nothing.
    void SetTriggerInvalid(unsigned long triggerId);
    /// Adds a procedure (`kind` 1) or function (2) and returns its identifier; 0
    /// before a successful Initialize.
    unsigned long AddProcedure(const char* name, const char* owner, const char* text, int kind);
    /// The identifier of the first procedure of that name and owner; 0 when none.
    unsigned long FindProcedure(const char* name, const char* owner);
    /// Marks the procedure invalid; an unknown identifier changes nothing.
    void SetProcInvalid(unsigned long procedureId);
    /// The header and the body of one package merge into one row.
    unsigned long AddPackage(const char* name, const char* owner, const char* text, bool isBody);
    /// A package with no owner of its own is found under any owner.
    CNSOutputPackage* FindPackage(const char* name, const char* owner);
    /// 0 when the meta table number is unknown.
    unsigned long AddReferencedObject(unsigned long value1, unsigned long value2, unsigned long value3,
                                      unsigned long value4, int metaTableNo);
    /// The identifier of the first referenced object with these values and meta
    /// table; 0 when none or the meta table number is unknown.
    unsigned long FindReferencedObject(unsigned long value1, unsigned long value2, unsigned long value3,
                                       unsigned long value4, int metaTableNo);

    // Partitions, kept by the property manager, and storage objects.

    /// Adds a partition to the entity, marks the entity partitioned, and
    /// returns the partition's identifier; 0 for an unknown entity or before a
    /// successful Initialize.
    unsigned long AddTablePartition(unsigned long entityId, const char* name);
    /// Adds a partition to the index and returns its identifier; 0 for an
    /// unknown index or before a successful Initialize.
    unsigned long AddIndexPartition(unsigned long indexId, const char* name);
    /// Appends the named column to the entity's partitioning columns; a sequence
    /// of 0 takes the next one. Nonzero when stored; 0 for an unknown entity or column.
    int AddTablePartitionColumn(unsigned long entityId, const char* columnName, int sequence);
    /// Appends the named column to the index's partitioning columns; a sequence
    /// of 0 is stored as 0 (no automatic numbering here). Nonzero when stored; 0
    /// for an unknown index or column.
    int AddIndexPartitionColumn(unsigned long indexId, const char* columnName, int sequence);
    /// Sets a numeric option of the partition by property code. Nonzero when
    /// stored; 0 for an unknown code or before a successful Initialize.
    int SetPartitionProperty(unsigned long partitionId, int code, long value);
    /// Sets a text option of the partition by property code. Nonzero when
    /// stored; 0 for an unknown code, a text the code does not accept, or before
    /// a successful Initialize.
    int SetPartitionStringProperty(unsigned long partitionId, int code, const char* text);
    /// Adds a storage object (`kind` 1 storage group, 2 database, 3 table
    /// space, 4 buffer pool). Always 0: the storage object's identifier is not
    /// handed out.
    unsigned long AddStorageObject(const char* name, const char* owner, const char* text, int kind);

    // Platforms and datatype names.

    /// The model's datatype code for a bare datatype name (no length, no
    /// blanks), compared without regard to case; null when the name is unknown.
    const char* GetORVDatatype(const char* datatypeName) const;
    /// The owner given to entities added without one; null or "" clears it.
    void SetDB2SqlId(const char* sqlId);
    /// Null when no id is set; otherwise valid until the next SetDB2SqlId.
    const char* GetDB2SqlId() const;

    /// @cond PROTECTED
protected:
    void** GetDTHandle() { return m_dtHandle; }
    /// Completes the relationships before a save: types, alternate key
    /// references, cycles, owners, origins, role names and copies of attributes
    /// that several relationships migrate. With `writeRows` nonzero the
    /// attribute rows it changes are written at once.
    void UpdateRelationships(int writeRows);
    /// Every valid foreign key is identifying unless a child column is not in
    /// the child's primary key.
    void FixupRelationshipTypes();
    /// An invalid foreign key whose parent columns are exactly a unique index
    /// of the parent becomes valid, referencing that index.
    void FixupAKRelationships();
    /// BindRule with `isRule` 1, BindDefault with 0.
    unsigned long BindObject(const char* objectName, const char* target, int isRule);
    /// The steps of SaveToFile after relationship resolution: every row and the
    /// managers' tables into the model in memory; then the file itself is
    /// written by the model file's Save. Benchmarks time them one by one.
    void WriteModel(const char* path);
    bool IsReadyToSave() const;
    /// Marks the foreign key invalid; nothing is removed.
    void DeleteForeignKey(unsigned long foreignKeyId);
    /// The user datatype row of that identifier, or null.
    CNSOutputUserDatatype* FindUserType(unsigned long userDatatypeId);
    /// Makes a new row object of `rowType`, tied to this builder's model file
    /// and managers. The caller owns the result (delete it, or hand it to an
    /// owning list). Null for a row type the factory does not know.
    CNSOutputBase* RowObjectClassFactory(int rowType);
    /// RowObjectClassFactory for the row type of `Row`, typed: a call site
    /// cannot ask for one class and cast to another.
    template <class Row>
    Row* MakeRow() {
        return static_cast<Row*>(RowObjectClassFactory(static_cast<int>(Row::kRowType)));
    }

    /// The model number that new rows carry: the one set, or 1 when none was.
    std::uint32_t CurrentModelNo() const { return m_modelId != 0 ? m_modelId : 1; }
    /// A new key of `keyClass` from the model file's key allocator; 0 before a
    /// successful Initialize.
    unsigned long AllocKey(EKeyClass keyClass);
    /// `name` as a text, sharing the buffer of an equal name given recently
    /// (see m_recentNames); null gives the empty text.
    CString ShareName(const char* name);

    friend class CVrnApiEntity;
    friend class CVrnApiIndex;
    friend class CVrnApiForeignKey;

private:
    /// Managers replaced by a repeated Initialize. Rows made before it still
    /// point at them, so they live on until the builder is destroyed.
    struct CRetiredManagers {
        std::unique_ptr<CNameSpaceMgr> nameSpace;
        std::unique_ptr<CGuidMgr> objectTypes;
        std::unique_ptr<CPropertyMgr> properties;
        std::unique_ptr<CVrnFile> file;
    };

    void WriteModelRows(const char* path);
    CVrnApiIndex* FindIndex(unsigned long indexId) const;
    /// A foreign key of the identifier map, else of the pending list; or null.
    CVrnApiForeignKey* FindAnyForeignKey(unsigned long foreignKeyId) const;
    /// Relationship resolution, in its passes.
    struct COrigin {
        std::uint32_t entityKey;
        std::uint32_t attributeNo;
    };
    COrigin TraceOrigin(std::uint32_t entityKey, std::uint32_t attributeNo);
    CVrnApiAttribute* RecordOrigin(CForeignKeyColumnBase& column, const COrigin& origin);
    void AssignOwners(int writeRows);
    void CopySharedAttributes(int writeRows);

protected:
    /// The model's containers, open to subclasses (tools and tests that
    /// inspect a model before it is saved).
    int m_bFlag;
    void** m_dtHandle = nullptr;
    int m_dbType;
    /// Owning: every entity, in order of adding; saved in this order.
    CTypedPtrList<CPtrList, CVrnApiEntity*> m_entityList;
    /// Upper-cased name, and upper-cased name + upper-cased owner, to entity.
    CMapStringToPtr<CVrnApiEntity> m_entityNameMap;
    CMapIdToPtr<CVrnApiEntity> m_entityMap;
    CMapIdToPtr<CVrnApiAttribute> m_attributeMap;
    /// Owning: foreign keys whose parent is known, in order of adding.
    CTypedPtrList<CPtrList, CVrnApiForeignKey*> m_foreignKeyList;
    /// Not owning: foreign keys added before their parent entity was known.
    CTypedPtrList<CPtrList, CVrnApiForeignKey*> m_pendingForeignKeyList;
    CMapIdToPtr<CVrnApiForeignKey> m_foreignKeyMap;
    /// Lookup of the pending list by foreign key key; not owning.
    CMapIdToPtr<CVrnApiForeignKey> m_pendingForeignKeyMap;
    CMapStringToPtr<void> m_spareNameMap;
    CMapIdToPtr<CVrnApiIndex> m_indexMap;
    CMapStringToPtr<CVrnApiIndex> m_indexNameMap;
    /// Owned; made by Initialize.
    std::unique_ptr<CVrnFile> m_pVrnFile;
    std::unique_ptr<CNameSpaceMgr> m_pNameSpaceMgr;
    std::unique_ptr<CGuidMgr> m_pGuidMgr;
    std::unique_ptr<CPropertyMgr> m_pPropertyMgr;
    /// The nine catalog lists, each owning its rows, each in order of adding;
    /// SaveToFile writes them in this order.
    CTypedPtrList<CPtrList, CNSOutputCheckConstraints*> m_checkConstraintList;
    CTypedPtrList<CPtrList, CNSOutputDefaults*> m_defaultList;
    CTypedPtrList<CPtrList, CNSOutputRules*> m_ruleList;
    CTypedPtrList<CPtrList, CNSOutputUserDatatype*> m_userDatatypeList;
    CTypedPtrList<CPtrList, CNSOutputTrigger*> m_triggerList;
    CTypedPtrList<CPtrList, CNSOutputProc*> m_procedureList;
    CTypedPtrList<CPtrList, CNSOutputPackage*> m_packageList;
    CTypedPtrList<CPtrList, CNSOutputReferencedObject*> m_referencedObjectList;
    CTypedPtrList<CPtrList, CNSOutputStorageObj*> m_storageObjectList;
    /// The migration map of the latest UpdateRelationships; owned.
    std::unique_ptr<vrn::CMigrationMap> m_pMigrationMap;
    std::uint32_t m_modelId;
    CString m_db2SqlId;
    std::vector<CRetiredManagers> m_retiredManagers;
    /// Catalogs repeat column names from table to table (ID, NAME,
    /// CREATED_AT), and every attribute holds its name: a name met again
    /// shares the earlier one's buffer. The cache is direct-mapped by the
    /// name's hash, and a name that misses takes its slot, so its memory stays
    /// fixed whatever the catalog; all-distinct names cost a hash and a compare.
    std::vector<CString> m_recentNames;
    /// Lookups over the lists above, not owning: the first row of a name wins.
    CFirstMatchNameIndex<CNSOutputDefaults> m_defaultIndex;
    CFirstMatchNameIndex<CNSOutputRules> m_ruleIndex;
    CFirstMatchNameIndex<CNSOutputUserDatatype> m_userDatatypeIndex;
    /// User datatype n is at index n - 1.
    std::vector<CNSOutputUserDatatype*> m_userDatatypeById;
    vrn::CNameOwnerIndex<CNSOutputTrigger> m_triggerIndex;
    vrn::CNameOwnerIndex<CNSOutputProc> m_procedureIndex;
    vrn::CNameOwnerIndex<CNSOutputPackage> m_packageIndex;
    CMapIdToPtr<CNSOutputTrigger> m_triggerMap;
    CMapIdToPtr<CNSOutputProc> m_procedureMap;
    /// The first referenced object of (value 1, value 2, value 3, value 4, meta table key).
    std::map<std::tuple<std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t>,
             CNSOutputReferencedObject*>
        m_referencedObjectIndex;
    /// @endcond
};
