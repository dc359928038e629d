#include "store/NSOutput.h"

#include "store/VrnFile.h"

IMPLEMENT_DYNAMIC(CNSOutputBase, CObject)

template <class Row>
void CNSOutputBase::WriteRow(const Row& row) const {
    if (!m_pVrnFile) return;  // made before the model file existed: there is nowhere to write
    m_pVrnFile->WriteRecord(Row::kTableName, m_pNameSpaceMgr,
                            [&row](CRowFieldVisitor& fields) { row.ListFields(fields); });
}

void CNSOutputVersion::OutputRow() { WriteRow(*this); }
void CNSOutputDiagram::OutputRow() { WriteRow(*this); }
void CNSOutputModel::OutputRow() { WriteRow(*this); }
void CNSOutputEntity::OutputRow() { WriteRow(*this); }
void CNSOutputTableStorage::OutputRow() { WriteRow(*this); }
void CNSOutputAttribute::OutputRow(int /*variant*/) { WriteRow(*this); }
void CNSOutputPrimaryKey::OutputRow() { WriteRow(*this); }
void CNSOutputIndexes::OutputRow() { WriteRow(*this); }
void CNSOutputIndexColumn::OutputRow() { WriteRow(*this); }
void CNSOutputIndexStorage::OutputRow() { WriteRow(*this); }
void CNSOutputForeignKey::OutputRow() { WriteRow(*this); }
void CNSOutputForeignKeyColumn::OutputRow() { WriteRow(*this); }
void CNSOutputCheckConstraints::OutputRow() { WriteRow(*this); }
void CNSOutputDefaults::OutputRow() { WriteRow(*this); }
void CNSOutputRules::OutputRow() { WriteRow(*this); }
void CNSOutputUserDatatype::OutputRow() { WriteRow(*this); }
void CNSOutputTrigger::OutputRow() { WriteRow(*this); }
void CNSOutputProc::OutputRow() { WriteRow(*this); }
void CNSOutputPackage::OutputRow() { WriteRow(*this); }
void CNSOutputReferencedObject::OutputRow() { WriteRow(*this); }
void CNSOutputStorageObj::OutputRow() { WriteRow(*this); }

void CNSOutputDiagram::ListFields(CRowFieldVisitor& v) const {
    CDiagramBase::ListFields(v);
    v.Text("name", m_name);
    v.Text("t2", m_t2);
    v.Text("t3", m_t3);
    v.Text("format_version", m_formatVersion);
    v.Text("product", m_product);
    v.Text("file_path", m_filePath);
    v.Text("t7", m_t7);
    v.Text("display_level", m_displayLevel);
}

void CNSOutputEntity::ListFields(CRowFieldVisitor& v) const {
    CEntityBase::ListFields(v);
    v.Text("t1", m_t1);
    v.Text("owner", m_owner);
    v.Text("entity_name", m_entityName);
    v.Text("table_name", m_tableName);
    v.Text("definition", m_definition);
    v.Text("t6", m_t6);
    v.Text("t7", m_t7);
}

void CNSOutputAttribute::ListFields(CRowFieldVisitor& v) const {
    CAttributeBase::ListFields(v);
    v.Text("attribute_name", m_attributeName);
    v.Text("column_name", m_columnName);
    v.Text("role_name", m_roleName);
    v.Text("datatype", m_datatype);
    v.Text("user_datatype", m_userDatatype);
    v.Text("check_constraint", m_checkConstraint);
    v.Text("default_text", m_defaultText);
    v.Text("text10", m_text10);
    v.Text("definition", m_definition);
    v.Text("role_name_copy", m_roleNameCopy);
}

void CNSOutputIndexes::ListFields(CRowFieldVisitor& v) const {
    CIndexesBase::ListFields(v);
    v.Text("index_name", m_indexName);
    v.Text("is_unique", m_isUnique);
    v.Text("cluster_flag", m_clusterFlag);
    v.Text("t4", m_t4);
    v.Text("t5", m_t5);
    v.Text("t6", m_t6);
    v.Text("t7", m_t7);
    v.Text("t8", m_t8);
}

void CNSOutputForeignKey::ListFields(CRowFieldVisitor& v) const {
    static const char* const kColumns[kTextCount] = {"relationship_type", "name", "t3",  "t4",  "t5",  "t6",
                                                     "t7",                "t8",   "t9",  "t10", "t11", "t12",
                                                     "t13",               "t14",  "t15", "t16", "t17"};
    CForeignKeyBase::ListFields(v);
    for (int i = 0; i < kTextCount; ++i) v.Text(kColumns[i], m_texts[i]);
}

void CNSOutputUserDatatype::ListFields(CRowFieldVisitor& v) const {
    CUserDatatypeBase::ListFields(v);
    v.Text("name", m_name);
    v.Text("datatype", m_datatype);
    v.Text("t3", m_t3);
    v.Text("t4", m_t4);
}

void CNSOutputTrigger::ListFields(CRowFieldVisitor& v) const {
    CDbTriggerBase::ListFields(v);
    v.Text("owner", m_owner);
    v.Text("name", m_name);
    v.Text("t3", m_t3);
    v.Text("sql_text", m_sqlText);
    v.Int("trailing", m_trailing);
}

void CNSOutputProc::ListFields(CRowFieldVisitor& v) const {
    CProcBase::ListFields(v);
    v.Text("owner", m_owner);
    v.Text("name", m_name);
    v.Text("t3", m_t3);
    v.Text("sql_text", m_sqlText);
}

void CNSOutputPackage::ListFields(CRowFieldVisitor& v) const {
    CDbPackageBase::ListFields(v);
    v.Text("owner", m_owner);
    v.Text("name", m_name);
    v.Text("t3", m_t3);
    v.Text("header_text", m_headerText);
    v.Text("body_text", m_bodyText);
}

void CNSOutputStorageObj::ListFields(CRowFieldVisitor& v) const {
    CStorage_ObjectBase::ListFields(v);
    v.Text("owner", m_owner);
    v.Text("name", m_name);
    v.Text("t3", m_t3);
    v.Text("sql_text", m_sqlText);
}
