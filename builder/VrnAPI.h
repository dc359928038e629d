// CVrnAPI: the model builder, the one object through which a client describes
// a physical data model and writes it into a model file.
//
// REQUIRES the calling order: construct (or CreateObject), Initialize once,
// add and describe objects, SaveToFile once, destroy. Nothing checks the order;
// where a wrong order would reach a missing model file or manager, the call
// does nothing and returns 0 or null instead.
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

class VRN_EXPORT CVrnAPI : public CCmdTarget {
    DECLARE_DYNCREATE(CVrnAPI)

public:
    CVrnAPI();
    ~CVrnAPI() override;
    CVrnAPI(const CVrnAPI&) = delete;
    CVrnAPI& operator=(const CVrnAPI&) = delete;

    // Makes the model file and managers for platform `dbType`: a new model when
    // `path` is null, else a continuation of the model file at `path`.
    // 1 on success; 0 when that file cannot be opened (the model file then
    // stays, with its reason in GetVrnFile()->GetLastError(), and no managers
    // are made).
    int Initialize(int dbType, const char* path);
    // Completes and writes the model to `path`. Always 1; whether the file was
    // written is told by GetVrnFile()->GetLastError() being empty.
    int SaveToFile(const char* path);

    void SetModelId(unsigned long modelId) { m_modelId = static_cast<std::uint32_t>(modelId); }

    int GetDbType() const { return m_dbType; }
    CVrnFile* GetVrnFile() const { return m_pVrnFile.get(); }
    CNameSpaceMgr* GetNameSpaceMgr() const { return m_pNameSpaceMgr.get(); }
    CGuidMgr* GetGuidMgr() const { return m_pGuidMgr.get(); }
    CPropertyMgr* GetPropertyMgr() const { return m_pPropertyMgr.get(); }
    CTypedPtrList<CPtrList, CNSOutputPackage*>& GetPackageList() { return m_packageList; }

    // Entities and attributes. Identifiers are 0 when nothing was found or made.
    // `owner` may be null; a null name counts as an empty one.
    unsigned long AddEntity(const char* name, const char* owner, unsigned long reserved, int isView);
    // The entity of that name (upper-cased); an owner is matched exactly
    // against the first entity of the name, else through the name+owner key.
    unsigned long FindEntity(const char* name, const char* owner, unsigned long reserved);
    int IsEntityView(unsigned long entityId);
    CVrnApiEntity* GetEntityPtr(unsigned long entityId);
    int SetEntityProperty(unsigned long entityId, int code, long value);
    int SetEntityStringProperty(unsigned long entityId, int code, const char* text);
    // The null option that suits the target platform: 0 on the Sybase and
    // newer SQL Server platforms, 1 elsewhere.
    int GetNullableDefault();
    unsigned long AddAttribute(unsigned long entityId, const char* name, const char* datatype, long width,
                               long scale, int nullOption, unsigned long sequence);
    unsigned long FindAttribute(unsigned long entityId, const char* name);
    // Does not check that the attribute belongs to the entity: see the notes
    // at its definition.
    int DeleteAttribute(unsigned long entityId, unsigned long attributeId);
    int SetAttributeProperty(unsigned long attributeId, int code, long value);
    int SetAttributeStringProperty(unsigned long attributeId, int code, const char* text);

    // Primary keys and indexes. Each looks its entity or index up first and
    // answers 0 (null for texts) when it is unknown.
    const char* AddPrimaryKey(unsigned long entityId, const char* name);
    unsigned long GetPrimaryKeyIndexId(unsigned long entityId);
    int AddPrimaryKeyColumn(unsigned long entityId, const char* columnName, unsigned long sequence);
    unsigned long AddIndex(unsigned long entityId, const char* name);
    int AddIndexColumn(unsigned long indexId, const char* columnName, unsigned long sequence, int descending);
    int SetIndexProperty(unsigned long indexId, int code, long value);
    int SetIndexStringProperty(unsigned long indexId, int code, const char* text);

    // Foreign keys. A foreign key whose parent entity is unknown waits in the
    // pending list (it has an identifier, but is not addressable by it) until
    // relationship resolution finds its parent.
    unsigned long AddForeignKey(unsigned long parentEntityId, unsigned long childEntityId, const char* name,
                                const char* parentEntityName, const char* parentEntityOwner);
    // Enters an existing foreign key in the identifier map, nothing else.
    void AddForeignKey(CVrnApiForeignKey* foreignKey);
    // A pair by column names; a null parent name takes the parent's next
    // primary key column.
    int AddForeignKeyColumnPair(unsigned long foreignKeyId, const char* parentColumn, const char* childColumn,
                                unsigned long sequence);
    // A pair by attribute numbers, declared identifying or not.
    void AddForeignKeyColumnPair(unsigned long foreignKeyId, unsigned long parentAttributeNo,
                                 unsigned long childAttributeNo, int identifying, unsigned long sequence);
    const char* GetForeignKeyName(unsigned long foreignKeyId);
    // Referential actions: 77/78/79 on delete cascade/restrict/set null, 80/81
    // on update cascade/restrict; a value of 0 changes nothing.
    int SetForeignKeyProperty(unsigned long foreignKeyId, int code, long value);

    // Attaches pending foreign keys to parents found by name and adds their
    // column pairs, appending a message to `messages` for every problem.
    // True when at least one foreign key is addressable afterwards.
    bool ResolveForeignKeyConstraints(CStringList& messages);

    // Defaults, rules and user datatypes, each numbered by its place in its
    // own list. The third argument of AddDefault and AddRule is ignored.
    unsigned long AddDefault(const char* name, const char* text, const char* reserved);
    unsigned long FindDefault(const char* name);
    unsigned long AddRule(const char* name, const char* text, const char* reserved);
    unsigned long FindRule(const char* name);
    // 0 when the base type of `datatype` has no datatype code.
    unsigned long AddUserType(const char* name, const char* datatype);
    unsigned long FindUserType(const char* name);

    // Binding of defaults and rules, by names as catalogs spell them. The
    // target is a column (table.column, owner.table.column) or a user
    // datatype. Answers the entity's identifier for a column, the user
    // datatype's for a datatype, 0 when nothing was bound.
    unsigned long BindRule(const char* ruleName, const char* target);
    unsigned long BindDefault(const char* defaultName, const char* target);

    // A table or column check constraint, numbered per entity. An unknown
    // entity or column adds nothing. The last argument is ignored.
    void AddCheckConstraint(const char* name, const char* text, unsigned long entityId, const char* columnName,
                            unsigned long reserved);

    // Code objects. A null or empty owner in a find matches any owner.
    unsigned long AddTrigger(const char* name, const char* owner, const char* text, int kind,
                             unsigned long parentValue);
    unsigned long FindTrigger(const char* name, const char* owner, unsigned long& parentValue);
    void SetTriggerInvalid(unsigned long triggerId);
    unsigned long AddProcedure(const char* name, const char* owner, const char* text, int kind);
    unsigned long FindProcedure(const char* name, const char* owner);
    void SetProcInvalid(unsigned long procedureId);
    // Specification and body of one package merge into one row.
    unsigned long AddPackage(const char* name, const char* owner, const char* text, bool isBody);
    // A package with no owner of its own is found under any owner.
    CNSOutputPackage* FindPackage(const char* name, const char* owner);
    // 0 when the meta table number is unknown.
    unsigned long AddReferencedObject(unsigned long value1, unsigned long value2, unsigned long value3,
                                      unsigned long value4, int metaTableNo);
    unsigned long FindReferencedObject(unsigned long value1, unsigned long value2, unsigned long value3,
                                       unsigned long value4, int metaTableNo);

    // Partitions, kept by the property manager, and storage objects.
    unsigned long AddTablePartition(unsigned long entityId, const char* name);
    unsigned long AddIndexPartition(unsigned long indexId, const char* name);
    int AddTablePartitionColumn(unsigned long entityId, const char* columnName, int sequence);
    int AddIndexPartitionColumn(unsigned long indexId, const char* columnName, int sequence);
    int SetPartitionProperty(unsigned long partitionId, int code, long value);
    int SetPartitionStringProperty(unsigned long partitionId, int code, const char* text);
    // Always 0: the storage object's identifier is not handed out.
    unsigned long AddStorageObject(const char* name, const char* owner, const char* text, int kind);

    // Platforms and datatype names.
    // The model's datatype code for a bare datatype name (no length, no
    // blanks), compared without regard to case; null when the name is unknown.
    const char* GetORVDatatype(const char* datatypeName) const;
    // The owner given to entities added without one; null or "" clears it.
    void SetDB2SqlId(const char* sqlId);
    // Null when no id is set; otherwise valid until the next SetDB2SqlId.
    const char* GetDB2SqlId() const;

protected:
    void** GetDTHandle() { return m_dtHandle; }
    // Completes the relationships before a save: types, alternate key
    // references, cycles, owners, origins, role names and copies of attributes
    // that several relationships migrate. With `writeRows` nonzero the
    // attribute rows it changes are written at once.
    void UpdateRelationships(int writeRows);
    // Every valid foreign key is identifying unless a child column is not in
    // the child's primary key.
    void FixupRelationshipTypes();
    // An invalid foreign key whose parent columns are exactly a unique index
    // of the parent becomes valid, referencing that index.
    void FixupAKRelationships();
    // BindRule with `isRule` 1, BindDefault with 0.
    unsigned long BindObject(const char* objectName, const char* target, int isRule);
    // The steps of SaveToFile after relationship resolution: every row and the
    // managers' tables into the model in memory; then the file itself is
    // written by the model file's Save. Benchmarks time them one by one.
    void WriteModel(const char* path);
    bool IsReadyToSave() const;
    // Marks the foreign key invalid; nothing is removed.
    void DeleteForeignKey(unsigned long foreignKeyId);
    // The user datatype row of that identifier, or null.
    CNSOutputUserDatatype* FindUserType(unsigned long userDatatypeId);
    // Makes a new row object of `rowType`, tied to this builder's model file
    // and managers. The caller owns the result (delete it, or hand it to an
    // owning list). Null for a row type the factory does not know.
    CNSOutputBase* RowObjectClassFactory(int rowType);
    // RowObjectClassFactory for the row type of `Row`, typed: a call site
    // cannot ask for one class and cast to another.
    template <class Row>
    Row* MakeRow() {
        return static_cast<Row*>(RowObjectClassFactory(static_cast<int>(Row::kRowType)));
    }

    // The model number that new rows carry: the one set, or 1 when none was.
    std::uint32_t CurrentModelNo() const { return m_modelId != 0 ? m_modelId : 1; }
    // A new key of `keyClass` from the model file's key allocator; 0 before a
    // successful Initialize.
    unsigned long AllocKey(EKeyClass keyClass);
    // `name` as a text, sharing the buffer of an equal name given recently
    // (see m_recentNames); null gives the empty text.
    CString ShareName(const char* name);

    friend class CVrnApiEntity;
    friend class CVrnApiIndex;
    friend class CVrnApiForeignKey;

private:
    // Managers replaced by a repeated Initialize. Rows made before it still
    // point at them, so they live on until the builder is destroyed.
    struct CRetiredManagers {
        std::unique_ptr<CNameSpaceMgr> nameSpace;
        std::unique_ptr<CGuidMgr> objectTypes;
        std::unique_ptr<CPropertyMgr> properties;
        std::unique_ptr<CVrnFile> file;
    };

    void WriteModelRows(const char* path);
    CVrnApiIndex* FindIndex(unsigned long indexId) const;
    // A foreign key of the identifier map, else of the pending list; or null.
    CVrnApiForeignKey* FindAnyForeignKey(unsigned long foreignKeyId) const;
    // Relationship resolution, in its passes.
    struct COrigin {
        std::uint32_t entityKey;
        std::uint32_t attributeNo;
    };
    COrigin TraceOrigin(std::uint32_t entityKey, std::uint32_t attributeNo);
    CVrnApiAttribute* RecordOrigin(CForeignKeyColumnBase& column, const COrigin& origin);
    void AssignOwners(int writeRows);
    void CopySharedAttributes(int writeRows);

protected:
    // The model's containers, open to subclasses (tools and tests that
    // inspect a model before it is saved).
    int m_bFlag;
    void** m_dtHandle = nullptr;
    int m_dbType;
    // Owning: every entity, in order of adding; saved in this order.
    CTypedPtrList<CPtrList, CVrnApiEntity*> m_entityList;
    // Upper-cased name, and upper-cased name + upper-cased owner, to entity.
    CMapStringToPtr<CVrnApiEntity> m_entityNameMap;
    CMapIdToPtr<CVrnApiEntity> m_entityMap;
    CMapIdToPtr<CVrnApiAttribute> m_attributeMap;
    // Owning: foreign keys whose parent is known, in order of adding.
    CTypedPtrList<CPtrList, CVrnApiForeignKey*> m_foreignKeyList;
    // Not owning: foreign keys added before their parent entity was known.
    CTypedPtrList<CPtrList, CVrnApiForeignKey*> m_pendingForeignKeyList;
    CMapIdToPtr<CVrnApiForeignKey> m_foreignKeyMap;
    // Lookup of the pending list by foreign key key; not owning.
    CMapIdToPtr<CVrnApiForeignKey> m_pendingForeignKeyMap;
    CMapStringToPtr<void> m_spareNameMap;
    CMapIdToPtr<CVrnApiIndex> m_indexMap;
    CMapStringToPtr<CVrnApiIndex> m_indexNameMap;
    // Owned; made by Initialize.
    std::unique_ptr<CVrnFile> m_pVrnFile;
    std::unique_ptr<CNameSpaceMgr> m_pNameSpaceMgr;
    std::unique_ptr<CGuidMgr> m_pGuidMgr;
    std::unique_ptr<CPropertyMgr> m_pPropertyMgr;
    // The nine catalog lists, each owning its rows, each in order of adding;
    // SaveToFile writes them in this order.
    CTypedPtrList<CPtrList, CNSOutputCheckConstraints*> m_checkConstraintList;
    CTypedPtrList<CPtrList, CNSOutputDefaults*> m_defaultList;
    CTypedPtrList<CPtrList, CNSOutputRules*> m_ruleList;
    CTypedPtrList<CPtrList, CNSOutputUserDatatype*> m_userDatatypeList;
    CTypedPtrList<CPtrList, CNSOutputTrigger*> m_triggerList;
    CTypedPtrList<CPtrList, CNSOutputProc*> m_procedureList;
    CTypedPtrList<CPtrList, CNSOutputPackage*> m_packageList;
    CTypedPtrList<CPtrList, CNSOutputReferencedObject*> m_referencedObjectList;
    CTypedPtrList<CPtrList, CNSOutputStorageObj*> m_storageObjectList;
    // The migration map of the latest UpdateRelationships; owned.
    std::unique_ptr<vrn::CMigrationMap> m_pMigrationMap;
    std::uint32_t m_modelId;
    CString m_db2SqlId;
    std::vector<CRetiredManagers> m_retiredManagers;
    // Catalogs repeat column names from table to table (ID, NAME,
    // CREATED_AT), and every attribute holds its name: a name met again
    // shares the earlier one's buffer. The cache is direct-mapped by the
    // name's hash, and a name that misses takes its slot, so its memory stays
    // fixed whatever the catalog; all-distinct names cost a hash and a compare.
    std::vector<CString> m_recentNames;
    // Lookups over the lists above, not owning: the first row of a name wins.
    CFirstMatchNameIndex<CNSOutputDefaults> m_defaultIndex;
    CFirstMatchNameIndex<CNSOutputRules> m_ruleIndex;
    CFirstMatchNameIndex<CNSOutputUserDatatype> m_userDatatypeIndex;
    // User datatype n is at index n - 1.
    std::vector<CNSOutputUserDatatype*> m_userDatatypeById;
    vrn::CNameOwnerIndex<CNSOutputTrigger> m_triggerIndex;
    vrn::CNameOwnerIndex<CNSOutputProc> m_procedureIndex;
    vrn::CNameOwnerIndex<CNSOutputPackage> m_packageIndex;
    CMapIdToPtr<CNSOutputTrigger> m_triggerMap;
    CMapIdToPtr<CNSOutputProc> m_procedureMap;
    // The first referenced object of (value 1, value 2, value 3, value 4, meta table key).
    std::map<std::tuple<std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t>,
             CNSOutputReferencedObject*>
        m_referencedObjectIndex;
};
