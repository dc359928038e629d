// The row base classes: one per table of the model file, named after it
// (CEntityBase is table Entity). Each holds the row's numeric and name-space
// fields in row order and lists them under their column names; the text fields
// that an output class adds after its base are listed by that output class.
//
// Fields that no builder operation sets keep their constructor value (0 or
// empty); they are columns all the same, named by their place (nN / tN).
#pragma once

#include <cstdint>
#include <tuple>

#include "framework/VrnExport.h"
#include "store/DbObjectBase.h"

// The eleven storage parameter slots of a table or index storage row.
constexpr int kStorageParamCount = 11;

VRN_EXPORT void ListStorageParams(CRowFieldVisitor& v, const std::int32_t (&params)[kStorageParamCount]);

class VRN_EXPORT CVersionBase : public CRowBaseT<CVersionBase> {
public:
    std::uint32_t m_versionNo = 0;
    std::uint32_t m_n2 = 0;
    CVrnString m_product;

    auto RowKey() const { return std::make_tuple(m_versionNo); }
    void ListFields(CRowFieldVisitor& v) const {
        v.Int("version_no", m_versionNo);
        v.Int("n2", m_n2);
        v.NameSpaceText("product", m_product);
    }
};

class VRN_EXPORT CDiagramBase : public CRowBaseT<CDiagramBase> {
public:
    std::uint32_t m_diagramNo = 0;
    std::uint32_t m_n2 = 0;
    std::uint32_t m_versionNo = 0;
    CVrnDateTime m_created;
    CVrnDateTime m_modified;

    auto RowKey() const { return std::make_tuple(m_diagramNo); }
    void ListFields(CRowFieldVisitor& v) const {
        v.Int("diagram_no", m_diagramNo);
        v.Int("n2", m_n2);
        v.Int("version_no", m_versionNo);
        v.DateTime("created", m_created);
        v.DateTime("modified", m_modified);
    }
};

class VRN_EXPORT CModelBase : public CRowBaseT<CModelBase> {
public:
    std::uint32_t m_diagramNo = 0;
    std::uint32_t m_modelNo = 0;
    std::uint32_t m_n3 = 0;
    std::uint32_t m_n4 = 0;
    std::uint32_t m_n5 = 0;

    VRN_TECH_KEY(m_modelNo)
    auto RowKey() const { return std::make_tuple(m_diagramNo, m_modelNo); }
    void ListFields(CRowFieldVisitor& v) const {
        v.Int("diagram_no", m_diagramNo);
        v.Int("model_no", m_modelNo);
        v.Int("n3", m_n3);
        v.Int("n4", m_n4);
        v.Int("n5", m_n5);
    }
};

class VRN_EXPORT CEntityBase : public CRowBaseT<CEntityBase> {
public:
    std::uint32_t m_diagramNo = 0;
    std::uint32_t m_modelNo = 0;
    std::uint32_t m_entityKey = 0;
    std::uint32_t m_tableKey = 0;  // the entity key copy
    std::uint32_t m_modelNoCopy = 0;

    VRN_TECH_KEY(m_entityKey)
    auto RowKey() const { return std::make_tuple(m_entityKey); }
    void ListFields(CRowFieldVisitor& v) const {
        v.Int("diagram_no", m_diagramNo);
        v.Int("model_no", m_modelNo);
        v.Int("entity_key", m_entityKey);
        v.Int("table_key", m_tableKey);
        v.Int("model_no_copy", m_modelNoCopy);
    }
};

class VRN_EXPORT CTableStorageBase : public CRowBaseT<CTableStorageBase> {
public:
    std::uint32_t m_diagramNo = 0;
    std::uint32_t m_modelNo = 0;
    std::uint32_t m_entityKey = 0;
    std::uint32_t m_n4 = 0;
    std::uint32_t m_tableKey = 0;
    CVrnString m_storageSpace;
    std::int32_t m_params[kStorageParamCount] = {};

    VRN_TECH_KEY(m_tableKey)
    auto RowKey() const { return std::make_tuple(m_entityKey); }
    void ListFields(CRowFieldVisitor& v) const {
        v.Int("diagram_no", m_diagramNo);
        v.Int("model_no", m_modelNo);
        v.Int("entity_key", m_entityKey);
        v.Int("n4", m_n4);
        v.Int("table_key", m_tableKey);
        v.NameSpaceText("storage_space", m_storageSpace);
        ListStorageParams(v, m_params);
    }
};

class VRN_EXPORT CAttributeBase : public CRowBaseT<CAttributeBase> {
public:
    std::uint32_t m_diagramNo = 0;
    std::uint32_t m_modelNo = 0;
    std::uint32_t m_entityKey = 0;
    std::uint32_t m_attributeNo = 0;
    std::uint32_t m_attributeId = 0;
    std::uint32_t m_tableKey = 0;
    std::uint32_t m_userDatatypeId = 0;
    std::uint32_t m_ruleId = 0;
    std::uint32_t m_defaultId = 0;
    std::int32_t m_attributeNameNs = 0;
    std::int32_t m_columnNameNs = 0;
    std::int32_t m_definitionNs = 0;
    std::int32_t m_roleNameNs = 0;
    std::int32_t m_datatypeNs = 0;
    std::int32_t m_nullOption = 0;
    std::int32_t m_width = 0;
    std::int32_t m_scale = 0;
    CVrnString m_flagText;
    std::int32_t m_option12 = 0;
    std::int32_t m_option13 = 0;
    std::uint32_t m_sequenceNo = 0;
    std::int32_t m_checkConstraintNs = 0;
    std::int32_t m_defaultTextNs = 0;
    std::int32_t m_attributeNameGiven = 0;
    std::int32_t m_roleNameGiven = 0;
    std::int32_t m_roleNameCopyGiven = 0;
    std::uint32_t m_parentAttributeNo = 0;
    std::int32_t m_userDatatypeNs = 0;
    std::uint32_t m_constraintFlags = 0;
    std::uint32_t m_relationKey = 0;  // the key copy of the foreign key that owns a migrated attribute
    std::uint32_t m_nCopy = 0;

    VRN_TECH_KEY(m_attributeId)
    auto RowKey() const { return std::make_tuple(m_entityKey, m_attributeNo); }
    void ListFields(CRowFieldVisitor& v) const;
};

class VRN_EXPORT CPrimaryKeyBase : public CRowBaseT<CPrimaryKeyBase> {
public:
    std::uint32_t m_diagramNo = 0;
    std::uint32_t m_modelNo = 0;
    std::uint32_t m_entityKey = 0;
    std::uint32_t m_attributeNo = 0;
    std::uint32_t m_n5 = 0;
    std::uint32_t m_attributeId = 0;
    std::uint32_t m_sequenceNo = 0;

    VRN_TECH_KEY(m_entityKey)
    auto RowKey() const { return std::make_tuple(m_entityKey, m_attributeNo); }
    void ListFields(CRowFieldVisitor& v) const {
        v.Int("diagram_no", m_diagramNo);
        v.Int("model_no", m_modelNo);
        v.Int("entity_key", m_entityKey);
        v.Int("attribute_no", m_attributeNo);
        v.Int("n5", m_n5);
        v.Int("attribute_id", m_attributeId);
        v.Int("sequence_no", m_sequenceNo);
    }
};

class VRN_EXPORT CIndexesBase : public CRowBaseT<CIndexesBase> {
public:
    std::uint32_t m_diagramNo = 0;
    std::uint32_t m_modelNo = 0;
    std::uint32_t m_entityKey = 0;
    std::uint32_t m_indexNo = 0;
    std::uint32_t m_indexKey = 0;
    std::uint32_t m_tableKey = 0;
    CVrnString m_keyType;

    VRN_TECH_KEY(m_indexKey)
    auto RowKey() const { return std::make_tuple(m_entityKey, m_indexNo); }
    void ListFields(CRowFieldVisitor& v) const {
        v.Int("diagram_no", m_diagramNo);
        v.Int("model_no", m_modelNo);
        v.Int("entity_key", m_entityKey);
        v.Int("index_no", m_indexNo);
        v.Int("index_key", m_indexKey);
        v.Int("table_key", m_tableKey);
        v.NameSpaceText("key_type", m_keyType);
    }
};

class VRN_EXPORT CIndexColumnBase : public CRowBaseT<CIndexColumnBase> {
public:
    std::uint32_t m_diagramNo = 0;
    std::uint32_t m_modelNo = 0;
    std::uint32_t m_entityKey = 0;
    std::uint32_t m_indexNo = 0;
    std::uint32_t m_attributeNo = 0;
    std::uint32_t m_n6 = 0;
    std::uint32_t m_n7 = 0;
    std::uint32_t m_indexKey = 0;
    std::uint32_t m_sequenceNo = 0;
    CVrnString m_sortOrder;

    VRN_TECH_KEY(m_indexKey)
    auto RowKey() const { return std::make_tuple(m_indexKey, m_sequenceNo, m_attributeNo); }
    void ListFields(CRowFieldVisitor& v) const {
        v.Int("diagram_no", m_diagramNo);
        v.Int("model_no", m_modelNo);
        v.Int("entity_key", m_entityKey);
        v.Int("index_no", m_indexNo);
        v.Int("attribute_no", m_attributeNo);
        v.Int("n6", m_n6);
        v.Int("n7", m_n7);
        v.Int("index_key", m_indexKey);
        v.Int("sequence_no", m_sequenceNo);
        v.NameSpaceText("sort_order", m_sortOrder);
    }
};

class VRN_EXPORT CIndexStorageBase : public CRowBaseT<CIndexStorageBase> {
public:
    std::uint32_t m_diagramNo = 0;
    std::uint32_t m_modelNo = 0;
    std::uint32_t m_entityKey = 0;
    std::uint32_t m_indexNo = 0;
    std::uint32_t m_n5 = 0;
    std::uint32_t m_indexKey = 0;
    CVrnString m_storageSpace;
    std::int32_t m_params[kStorageParamCount] = {};

    VRN_TECH_KEY(m_indexKey)
    auto RowKey() const { return std::make_tuple(m_entityKey, m_indexNo); }
    void ListFields(CRowFieldVisitor& v) const {
        v.Int("diagram_no", m_diagramNo);
        v.Int("model_no", m_modelNo);
        v.Int("entity_key", m_entityKey);
        v.Int("index_no", m_indexNo);
        v.Int("n5", m_n5);
        v.Int("index_key", m_indexKey);
        v.NameSpaceText("storage_space", m_storageSpace);
        ListStorageParams(v, m_params);
    }
};

class VRN_EXPORT CForeignKeyBase : public CRowBaseT<CForeignKeyBase> {
public:
    std::uint32_t m_diagramNo = 0;
    std::uint32_t m_modelNo = 0;
    std::uint32_t m_fkKeyCopy = 0;
    std::uint32_t m_fkKey = 0;
    std::uint32_t m_n5 = 0;
    std::uint32_t m_n6 = 0;
    std::uint32_t m_parentEntityKey = 0;
    std::uint32_t m_childEntityKey = 0;
    std::uint32_t m_referencedKey = 0;
    std::uint32_t m_n10 = 0;
    std::uint32_t m_n11 = 0;
    std::uint32_t m_n12 = 0;
    std::uint32_t m_n13 = 0;
    std::uint32_t m_n14 = 0;
    std::uint32_t m_n15 = 0;

    VRN_TECH_KEY(m_fkKey)
    auto RowKey() const { return std::make_tuple(m_fkKey); }
    void ListFields(CRowFieldVisitor& v) const;
};

class VRN_EXPORT CForeignKeyColumnBase : public CRowBaseT<CForeignKeyColumnBase> {
public:
    std::uint32_t m_columnKey = 0;
    std::uint32_t m_diagramNo = 0;
    std::uint32_t m_modelNo = 0;
    std::uint32_t m_fkKeyCopy = 0;
    std::uint32_t m_fkKey = 0;
    std::uint32_t m_sequenceNo = 0;
    std::uint32_t m_parentEntityKey = 0;
    std::uint32_t m_parentAttributeNo = 0;
    std::uint32_t m_childEntityKey = 0;
    std::uint32_t m_childAttributeNo = 0;
    std::uint32_t m_originEntityKey = 0;
    std::uint32_t m_originAttributeNo = 0;

    VRN_TECH_KEY(m_columnKey)
    auto RowKey() const { return std::make_tuple(m_columnKey); }
    void ListFields(CRowFieldVisitor& v) const;
};

class VRN_EXPORT CCheckConstraintsBase : public CRowBaseT<CCheckConstraintsBase> {
public:
    std::uint32_t m_diagramNo = 0;
    std::uint32_t m_modelNo = 0;
    std::uint32_t m_entityKey = 0;
    std::uint32_t m_constraintNo = 0;
    std::uint32_t m_constraintKey = 0;
    std::uint32_t m_tableKey = 0;
    std::uint32_t m_attributeId = 0;
    std::uint32_t m_attributeNo = 0;

    VRN_TECH_KEY(m_constraintKey)
    auto RowKey() const { return std::make_tuple(m_constraintKey); }
    void ListFields(CRowFieldVisitor& v) const {
        v.Int("diagram_no", m_diagramNo);
        v.Int("model_no", m_modelNo);
        v.Int("entity_key", m_entityKey);
        v.Int("constraint_no", m_constraintNo);
        v.Int("constraint_key", m_constraintKey);
        v.Int("table_key", m_tableKey);
        v.Int("attribute_id", m_attributeId);
        v.Int("attribute_no", m_attributeNo);
    }
};

class VRN_EXPORT CDefaultsBase : public CRowBaseT<CDefaultsBase> {
public:
    std::uint32_t m_defaultId = 0;

    auto RowKey() const { return std::make_tuple(m_defaultId); }
    void ListFields(CRowFieldVisitor& v) const { v.Int("default_id", m_defaultId); }
};

class VRN_EXPORT CRulesBase : public CRowBaseT<CRulesBase> {
public:
    std::uint32_t m_ruleId = 0;

    auto RowKey() const { return std::make_tuple(m_ruleId); }
    void ListFields(CRowFieldVisitor& v) const { v.Int("rule_id", m_ruleId); }
};

class VRN_EXPORT CUserDatatypeBase : public CRowBaseT<CUserDatatypeBase> {
public:
    std::uint32_t m_userDatatypeId = 0;
    std::int32_t m_length = 0;
    std::int32_t m_scale = 0;
    std::uint32_t m_defaultId = 0;
    std::uint32_t m_ruleId = 0;

    auto RowKey() const { return std::make_tuple(m_userDatatypeId); }
    void ListFields(CRowFieldVisitor& v) const {
        v.Int("user_datatype_id", m_userDatatypeId);
        v.Int("length", m_length);
        v.Int("scale", m_scale);
        v.Int("default_id", m_defaultId);
        v.Int("rule_id", m_ruleId);
    }
};

class VRN_EXPORT CDbTriggerBase : public CRowBaseT<CDbTriggerBase> {
public:
    std::uint32_t m_triggerKey = 0;
    std::uint32_t m_parentValue = 0;
    std::int32_t m_isInvalid = 0;
    std::int32_t m_kind = 0;

    VRN_TECH_KEY(m_triggerKey)
    auto RowKey() const { return std::make_tuple(m_triggerKey); }
    void ListFields(CRowFieldVisitor& v) const {
        v.Int("trigger_key", m_triggerKey);
        v.Int("parent_value", m_parentValue);
        v.Int("is_invalid", m_isInvalid);
        v.Int("kind", m_kind);
    }
};

class VRN_EXPORT CProcBase : public CRowBaseT<CProcBase> {
public:
    std::uint32_t m_procKey = 0;
    std::uint32_t m_fixedNo = 0;
    std::int32_t m_kind = 0;
    std::int32_t m_isInvalid = 0;

    VRN_TECH_KEY(m_procKey)
    auto RowKey() const { return std::make_tuple(m_procKey); }
    void ListFields(CRowFieldVisitor& v) const {
        v.Int("proc_key", m_procKey);
        v.Int("fixed_no", m_fixedNo);
        v.Int("kind", m_kind);
        v.Int("is_invalid", m_isInvalid);
    }
};

class VRN_EXPORT CDbPackageBase : public CRowBaseT<CDbPackageBase> {
public:
    std::uint32_t m_packageKey = 0;
    std::uint32_t m_fixedNo = 0;

    VRN_TECH_KEY(m_packageKey)
    auto RowKey() const { return std::make_tuple(m_packageKey); }
    void ListFields(CRowFieldVisitor& v) const {
        v.Int("package_key", m_packageKey);
        v.Int("fixed_no", m_fixedNo);
    }
};

class VRN_EXPORT CReferenced_ObjectBase : public CRowBaseT<CReferenced_ObjectBase> {
public:
    std::uint32_t m_objectKey = 0;
    std::uint32_t m_value1 = 0;
    std::uint32_t m_value2 = 0;
    std::uint32_t m_value3 = 0;
    std::uint32_t m_metaTableKey = 0;
    std::uint32_t m_value4 = 0;

    VRN_TECH_KEY(m_objectKey)
    auto RowKey() const { return std::make_tuple(m_objectKey); }
    void ListFields(CRowFieldVisitor& v) const {
        v.Int("object_key", m_objectKey);
        v.Int("value1", m_value1);
        v.Int("value2", m_value2);
        v.Int("value3", m_value3);
        v.Int("meta_table_key", m_metaTableKey);
        v.Int("value4", m_value4);
    }
};

class VRN_EXPORT CStorage_ObjectBase : public CRowBaseT<CStorage_ObjectBase> {
public:
    std::uint32_t m_objectKey = 0;
    std::uint32_t m_fixedNo = 0;
    std::int32_t m_kind = 0;

    VRN_TECH_KEY(m_objectKey)
    auto RowKey() const { return std::make_tuple(m_objectKey); }
    void ListFields(CRowFieldVisitor& v) const {
        v.Int("object_key", m_objectKey);
        v.Int("fixed_no", m_fixedNo);
        v.Int("kind", m_kind);
    }
};
