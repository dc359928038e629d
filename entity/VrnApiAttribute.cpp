#include "entity/VrnApiAttribute.h"

#include "store/NameSpaceMgr.h"

CString& CVrnApiAttribute::Refreshed(CString& text, std::int32_t testedId, std::int32_t fetchedId) {
    if (GetIsUpdate() && testedId != 0 && m_pNameSpaceMgr) m_pNameSpaceMgr->GetStringFromNameSpace(text, fetchedId);
    return text;
}

CString& CVrnApiAttribute::GetName() { return Refreshed(m_columnName, m_columnNameNs, m_columnNameNs); }
const char* CVrnApiAttribute::GetAttributeName() {
    return Refreshed(m_attributeName, m_attributeNameNs, m_attributeNameNs);
}
const char* CVrnApiAttribute::GetColumnName() { return Refreshed(m_columnName, m_columnNameNs, m_attributeNameNs); }
const char* CVrnApiAttribute::GetRoleName() { return Refreshed(m_roleName, m_roleNameNs, m_roleNameNs); }
const char* CVrnApiAttribute::GetDatatype() { return Refreshed(m_datatype, m_datatypeNs, m_datatypeNs); }
const char* CVrnApiAttribute::GetDefaultText() {
    return Refreshed(m_defaultText, m_defaultTextNs, m_defaultTextNs);
}
const char* CVrnApiAttribute::GetDefinition() { return Refreshed(m_definition, m_definitionNs, m_definitionNs); }
const char* CVrnApiAttribute::GetCheckConstraint() {
    return Refreshed(m_checkConstraint, m_checkConstraintNs, m_checkConstraintNs);
}
const char* CVrnApiAttribute::GetUserDatatype() {
    return Refreshed(m_userDatatype, m_userDatatypeNs, m_userDatatypeNs);
}

void CVrnApiAttribute::Init(CVrnApiAttribute* other) {
    if (!other) return;  // nothing to copy from
    // The relation identifier lives in the row; it stays this attribute's own.
    const std::uint32_t relationId = m_relationKey;
    CAttributeBase::Copy(other);
    m_relationKey = relationId;
    m_attributeName = other->GetAttributeName();
    m_columnName = other->GetName();
    m_roleName = other->GetRoleName();
    m_checkConstraint = other->GetCheckConstraint();
    m_datatype = other->GetDatatype();
    m_defaultText = other->GetDefaultText();
    m_definition = other->GetDefinition();
    m_userDatatype = other->GetUserDatatype();
    m_pVrnFile = other->m_pVrnFile;
    m_pNameSpaceMgr = other->m_pNameSpaceMgr;
    m_pGuidMgr = other->m_pGuidMgr;
}
