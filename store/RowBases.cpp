#include "store/RowBases.h"

void ListStorageParams(CRowFieldVisitor& v, const std::int32_t (&params)[kStorageParamCount]) {
    static const char* const kColumns[kStorageParamCount] = {"param1", "param2", "param3", "param4",
                                                             "param5", "param6", "param7", "param8",
                                                             "param9", "param10", "param11"};
    for (int slot = 0; slot < kStorageParamCount; ++slot) v.Int(kColumns[slot], params[slot]);
}

void CAttributeBase::ListFields(CRowFieldVisitor& v) const {
    v.Int("diagram_no", m_diagramNo);
    v.Int("model_no", m_modelNo);
    v.Int("entity_key", m_entityKey);
    v.Int("attribute_no", m_attributeNo);
    v.Int("attribute_id", m_attributeId);
    v.Int("table_key", m_tableKey);
    v.Int("user_datatype_id", m_userDatatypeId);
    v.Int("rule_id", m_ruleId);
    v.Int("default_id", m_defaultId);
    v.Int("attribute_name_ns", m_attributeNameNs);
    v.Int("column_name_ns", m_columnNameNs);
    v.Int("definition_ns", m_definitionNs);
    v.Int("role_name_ns", m_roleNameNs);
    v.Int("datatype_ns", m_datatypeNs);
    v.Int("null_option", m_nullOption);
    v.Int("width", m_width);
    v.Int("scale", m_scale);
    v.NameSpaceText("flag_text", m_flagText);
    v.Int("option12", m_option12);
    v.Int("option13", m_option13);
    v.Int("sequence_no", m_sequenceNo);
    v.Int("check_constraint_ns", m_checkConstraintNs);
    v.Int("default_text_ns", m_defaultTextNs);
    v.Int("attribute_name_given", m_attributeNameGiven);
    v.Int("role_name_given", m_roleNameGiven);
    v.Int("role_name_copy_given", m_roleNameCopyGiven);
    v.Int("parent_attribute_no", m_parentAttributeNo);
    v.Int("user_datatype_ns", m_userDatatypeNs);
    v.Int("constraint_flags", m_constraintFlags);
    v.Int("relation_key", m_relationKey);
    v.Int("n_copy", m_nCopy);
}

void CForeignKeyBase::ListFields(CRowFieldVisitor& v) const {
    v.Int("diagram_no", m_diagramNo);
    v.Int("model_no", m_modelNo);
    v.Int("fk_key_copy", m_fkKeyCopy);
    v.Int("fk_key", m_fkKey);
    v.Int("n5", m_n5);
    v.Int("n6", m_n6);
    v.Int("parent_entity_key", m_parentEntityKey);
    v.Int("child_entity_key", m_childEntityKey);
    v.Int("referenced_key", m_referencedKey);
    v.Int("n10", m_n10);
    v.Int("n11", m_n11);
    v.Int("n12", m_n12);
    v.Int("n13", m_n13);
    v.Int("n14", m_n14);
    v.Int("n15", m_n15);
}

void CForeignKeyColumnBase::ListFields(CRowFieldVisitor& v) const {
    v.Int("column_key", m_columnKey);
    v.Int("diagram_no", m_diagramNo);
    v.Int("model_no", m_modelNo);
    v.Int("fk_key_copy", m_fkKeyCopy);
    v.Int("fk_key", m_fkKey);
    v.Int("sequence_no", m_sequenceNo);
    v.Int("parent_entity_key", m_parentEntityKey);
    v.Int("parent_attribute_no", m_parentAttributeNo);
    v.Int("child_entity_key", m_childEntityKey);
    v.Int("child_attribute_no", m_childAttributeNo);
    v.Int("origin_entity_key", m_originEntityKey);
    v.Int("origin_attribute_no", m_originAttributeNo);
}
