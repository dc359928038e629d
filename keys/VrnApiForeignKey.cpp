#include "keys/VrnApiForeignKey.h"

#include "builder/VrnAPI.h"

CVrnApiForeignKey::CVrnApiForeignKey(CVrnAPI* owner) : m_pOwner(owner) {
    // Initial texts by field: 1 type, 2 name, 3-7 flags, 8-11 unused, 12-17 actions.
    static const char* const kInitialTexts[kTextCount] = {"I", "",  "P", "P", "O", "M", "M", "",  "",
                                                          "",  "",  "N", "N", "N", "N", "N", "N"};
    for (int i = 0; i < kTextCount; ++i) m_texts[i] = kInitialTexts[i];
}

CVrnApiForeignKey::~CVrnApiForeignKey() {
    DeleteAllFromHead(m_columnList);
}

int CVrnApiForeignKey::AddForeignKeyColumnPair(std::uint32_t parentAttributeNo, std::uint32_t childAttributeNo,
                                               std::uint32_t sequence) {
    if (!m_pOwner) return 0;  // a foreign key without a builder cannot make rows
    auto* column = m_pOwner->MakeRow<CNSOutputForeignKeyColumn>();
    column->m_columnKey = static_cast<std::uint32_t>(m_pOwner->AllocKey(EKeyClass::ForeignKeyColumnPair));
    column->m_diagramNo = m_diagramNo;
    column->m_modelNo = m_modelNo;
    column->m_fkKeyCopy = m_fkKeyCopy;
    column->m_fkKey = m_fkKey;
    column->m_sequenceNo = sequence != 0 ? sequence : static_cast<std::uint32_t>(m_nextColumnSeq++);
    column->m_parentEntityKey = m_parentEntityKey;
    column->m_parentAttributeNo = parentAttributeNo;
    column->m_childEntityKey = m_childEntityKey;
    column->m_childAttributeNo = childAttributeNo;
    // The origin starts as the parent; relationship resolution traces it further.
    column->m_originEntityKey = m_parentEntityKey;
    column->m_originAttributeNo = parentAttributeNo;
    AddForeignKeyColumnPair(column);
    return 1;
}

void CVrnApiForeignKey::AddForeignKeyColumnPair(CNSOutputForeignKeyColumn* column) {
    if (!column) return;
    CForeignKeyColumnBase* row = column;
    row->m_pOwnerData = m_columnList.AddTail(row);
}

int CVrnApiForeignKey::Save() {
    for (POSITION pos = m_columnList.GetHeadPosition(); pos;)
        if (auto* column = dynamic_cast<CNSOutputForeignKeyColumn*>(m_columnList.GetNext(pos))) column->OutputRow();
    OutputRow();
    return 1;
}
