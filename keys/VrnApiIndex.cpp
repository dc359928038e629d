#include "keys/VrnApiIndex.h"

#include "builder/VrnAPI.h"

const char* const CVrnApiIndex::KEYTYPE_PK = "P";
const char* const CVrnApiIndex::KEYTYPE_ALT = "A";
const char* const CVrnApiIndex::KEYTYPE_INV = "I";

CVrnApiIndex::CVrnApiIndex(CVrnAPI* owner) : m_pOwner(owner) {
    if (!owner) return;  // no builder, no factory: the index stays without a storage row
    m_pStorage = owner->MakeRow<CNSOutputIndexStorage>();
    for (std::int32_t& slot : m_pStorage->m_params) slot = -1;
}

CVrnApiIndex::~CVrnApiIndex() {
    DeleteAllFromHead(m_columnList);
    delete m_pStorage;
}

void CVrnApiIndex::AddColumn(std::uint32_t attributeNo, std::uint32_t sequence, int descending) {
    if (!m_pOwner) return;  // an index without a builder cannot make rows
    auto* column = m_pOwner->MakeRow<CNSOutputIndexColumn>();
    column->m_diagramNo = m_diagramNo;
    column->m_modelNo = m_modelNo;
    column->m_entityKey = m_entityKey;
    column->m_indexNo = m_indexNo;
    column->m_attributeNo = attributeNo;
    column->m_indexKey = static_cast<std::uint32_t>(GetTechKey());
    column->m_sequenceNo = sequence != 0 ? sequence : static_cast<std::uint32_t>(GetColumnCount() + 1);
    column->m_sortOrder.Set(0, descending ? "D" : "A");
    m_columnList.AddTail(column);
}

bool CVrnApiIndex::HasColumns(const CList<std::uint32_t, std::uint32_t>& attributeNos) const {
    if (GetColumnCount() != attributeNos.GetCount()) return false;
    POSITION wanted = attributeNos.GetHeadPosition();
    for (POSITION column = m_columnList.GetHeadPosition(); column && wanted;)
        if (m_columnList.GetNext(column)->m_attributeNo != attributeNos.GetNext(wanted)) return false;
    return true;
}

void CVrnApiIndex::GetColumnNumbers(CList<std::uint32_t, std::uint32_t>& attributeNos) const {
    for (POSITION column = m_columnList.GetHeadPosition(); column;)
        attributeNos.AddTail(m_columnList.GetNext(column)->m_attributeNo);
}

int CVrnApiIndex::Save() {
    for (POSITION pos = m_columnList.GetHeadPosition(); pos;) m_columnList.GetNext(pos)->OutputRow();
    if (m_keyType.m_text != KEYTYPE_PK) m_keyType.Set(0, m_isUnique == "Y" ? KEYTYPE_ALT : KEYTYPE_INV);
    if (m_pStorage) {
        m_pStorage->m_diagramNo = m_diagramNo;
        m_pStorage->m_modelNo = m_modelNo;
        m_pStorage->m_entityKey = m_entityKey;
        m_pStorage->m_indexNo = m_indexNo;
        m_pStorage->m_indexKey = m_indexKey;
        m_pStorage->OutputRow();
    }
    OutputRow();
    return 1;
}
