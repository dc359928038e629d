// The output classes: one per row table. Each derives first from CNSOutputBase,
// which ties the row to the model file and managers it is written through, and
// second from its row base. OutputRow writes the row's current values as one
// record; it keeps nothing that points into the row, so the caller may delete
// the row right afterwards.
//
// Ownership: whoever makes an output row owns it until it hands it to an
// owning container; rows are deleted through their virtual destructor.
#pragma once

#include "framework/VrnExport.h"
#include "framework/AfxObject.h"
#include "store/Codes.h"
#include "store/RowBases.h"

class CVrnFile;
class CNameSpaceMgr;
class CGuidMgr;

class VRN_EXPORT CNSOutputBase : public CObject {
    DECLARE_DYNAMIC(CNSOutputBase)
public:
    CNSOutputBase() = default;
    ~CNSOutputBase() override = default;

    // Set by the row factory; null on rows made before the model file exists,
    // whose OutputRow then writes nothing.
    CVrnFile* m_pVrnFile = nullptr;
    CNameSpaceMgr* m_pNameSpaceMgr = nullptr;
    CGuidMgr* m_pGuidMgr = nullptr;

protected:
    template <class Row>
    void WriteRow(const Row& row) const;
};

class VRN_EXPORT CNSOutputVersion : public CNSOutputBase, public CVersionBase {
public:
    static constexpr const char* kTableName = "Version";
    static constexpr ERowType kRowType = ERowType::Version;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const { CVersionBase::ListFields(v); }
};

class VRN_EXPORT CNSOutputDiagram : public CNSOutputBase, public CDiagramBase {
public:
    static constexpr const char* kTableName = "Diagram";
    static constexpr ERowType kRowType = ERowType::Diagram;
    CString m_name, m_t2, m_t3, m_formatVersion, m_product, m_filePath, m_t7, m_displayLevel;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const;
};

class VRN_EXPORT CNSOutputModel : public CNSOutputBase, public CModelBase {
public:
    static constexpr const char* kTableName = "Model";
    static constexpr ERowType kRowType = ERowType::Model;
    CString m_name;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const {
        CModelBase::ListFields(v);
        v.Text("name", m_name);
    }
};

class VRN_EXPORT CNSOutputEntity : public CNSOutputBase, public CEntityBase {
public:
    static constexpr const char* kTableName = "Entity";
    static constexpr ERowType kRowType = ERowType::Entity;
    CString m_t1, m_owner, m_entityName, m_tableName, m_definition, m_t6, m_t7;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const;
};

class VRN_EXPORT CNSOutputTableStorage : public CNSOutputBase, public CTableStorageBase {
public:
    static constexpr const char* kTableName = "TableStorage";
    static constexpr ERowType kRowType = ERowType::TableStorage;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const { CTableStorageBase::ListFields(v); }
};

class VRN_EXPORT CNSOutputAttribute : public CNSOutputBase, public CAttributeBase {
public:
    static constexpr const char* kTableName = "Attribute";
    static constexpr ERowType kRowType = ERowType::Attribute;
    CString m_attributeName, m_columnName, m_roleName, m_datatype, m_userDatatype, m_checkConstraint,
        m_defaultText, m_text10, m_definition, m_roleNameCopy;
    // The argument selects an output variant of the store; the builder always passes 0.
    void OutputRow(int variant);
    void ListFields(CRowFieldVisitor& v) const;
};

class VRN_EXPORT CNSOutputPrimaryKey : public CNSOutputBase, public CPrimaryKeyBase {
public:
    static constexpr const char* kTableName = "PrimaryKey";
    static constexpr ERowType kRowType = ERowType::PrimaryKey;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const { CPrimaryKeyBase::ListFields(v); }
};

class VRN_EXPORT CNSOutputIndexes : public CNSOutputBase, public CIndexesBase {
public:
    static constexpr const char* kTableName = "Indexes";
    static constexpr ERowType kRowType = ERowType::Index;
    CString m_indexName, m_isUnique, m_clusterFlag, m_t4, m_t5, m_t6, m_t7, m_t8;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const;
};

class VRN_EXPORT CNSOutputIndexColumn : public CNSOutputBase, public CIndexColumnBase {
public:
    static constexpr const char* kTableName = "IndexColumn";
    static constexpr ERowType kRowType = ERowType::IndexColumn;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const { CIndexColumnBase::ListFields(v); }
};

class VRN_EXPORT CNSOutputIndexStorage : public CNSOutputBase, public CIndexStorageBase {
public:
    static constexpr const char* kTableName = "IndexStorage";
    static constexpr ERowType kRowType = ERowType::IndexStorage;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const { CIndexStorageBase::ListFields(v); }
};

class VRN_EXPORT CNSOutputForeignKey : public CNSOutputBase, public CForeignKeyBase {
public:
    static constexpr const char* kTableName = "ForeignKey";
    static constexpr ERowType kRowType = ERowType::ForeignKey;
    static constexpr int kTextCount = 17;
    // Text 1 is the relationship type, text 2 the name; the rest are flags and
    // referential actions (columns t3 … t17).
    CString m_texts[kTextCount];
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const;
};

class VRN_EXPORT CNSOutputForeignKeyColumn : public CNSOutputBase, public CForeignKeyColumnBase {
public:
    static constexpr const char* kTableName = "ForeignKeyColumn";
    static constexpr ERowType kRowType = ERowType::ForeignKeyColumn;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const { CForeignKeyColumnBase::ListFields(v); }
};

class VRN_EXPORT CNSOutputCheckConstraints : public CNSOutputBase, public CCheckConstraintsBase {
public:
    static constexpr const char* kTableName = "CheckConstraints";
    static constexpr ERowType kRowType = ERowType::CheckConstraint;
    CString m_name, m_text;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const {
        CCheckConstraintsBase::ListFields(v);
        v.Text("name", m_name);
        v.Text("text", m_text);
    }
};

class VRN_EXPORT CNSOutputDefaults : public CNSOutputBase, public CDefaultsBase {
public:
    static constexpr const char* kTableName = "Defaults";
    static constexpr ERowType kRowType = ERowType::Default;
    CString m_name, m_text;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const {
        CDefaultsBase::ListFields(v);
        v.Text("name", m_name);
        v.Text("text", m_text);
    }
};

class VRN_EXPORT CNSOutputRules : public CNSOutputBase, public CRulesBase {
public:
    static constexpr const char* kTableName = "Rules";
    static constexpr ERowType kRowType = ERowType::Rule;
    CString m_name, m_text;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const {
        CRulesBase::ListFields(v);
        v.Text("name", m_name);
        v.Text("text", m_text);
    }
};

class VRN_EXPORT CNSOutputUserDatatype : public CNSOutputBase, public CUserDatatypeBase {
public:
    static constexpr const char* kTableName = "UserDatatype";
    static constexpr ERowType kRowType = ERowType::UserDatatype;
    CString m_name, m_datatype, m_t3, m_t4;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const;
};

class VRN_EXPORT CNSOutputTrigger : public CNSOutputBase, public CDbTriggerBase {
public:
    static constexpr const char* kTableName = "DbTrigger";
    static constexpr ERowType kRowType = ERowType::Trigger;
    CString m_owner, m_name, m_t3, m_sqlText;
    std::int32_t m_trailing = 1;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const;
};

class VRN_EXPORT CNSOutputProc : public CNSOutputBase, public CProcBase {
public:
    static constexpr const char* kTableName = "Proc";
    static constexpr ERowType kRowType = ERowType::Procedure;
    CString m_owner, m_name, m_t3, m_sqlText;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const;
};

class VRN_EXPORT CNSOutputPackage : public CNSOutputBase, public CDbPackageBase {
public:
    static constexpr const char* kTableName = "DbPackage";
    static constexpr ERowType kRowType = ERowType::Package;
    CString m_owner, m_name, m_t3, m_headerText, m_bodyText;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const;
};

class VRN_EXPORT CNSOutputReferencedObject : public CNSOutputBase, public CReferenced_ObjectBase {
public:
    static constexpr const char* kTableName = "Referenced_Object";
    static constexpr ERowType kRowType = ERowType::ReferencedObject;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const { CReferenced_ObjectBase::ListFields(v); }
};

class VRN_EXPORT CNSOutputStorageObj : public CNSOutputBase, public CStorage_ObjectBase {
public:
    static constexpr const char* kTableName = "Storage_Object";
    static constexpr ERowType kRowType = ERowType::StorageObject;
    CString m_owner, m_name, m_t3, m_sqlText;
    void OutputRow();
    void ListFields(CRowFieldVisitor& v) const;
};
