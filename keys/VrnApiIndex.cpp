#include "keys/VrnApiIndex.h"

#include "builder/VrnAPI.h"

const char* const CVrnApiIndex::KEYTYPE_PK = "P";
const char* const CVrnApiIndex::KEYTYPE_ALT = "A";
const char* const CVrnApiIndex::KEYTYPE_INV = "I";

CVrnApiIndex::CVrnApiIndex(CVrnAPI* owner) : m_pOwner(owner) {
    if (!owner) return;  // no builder, no factory: the index stays without a storage row
    m_pStorage = static_cast<CNSOutputIndexStorage*>(owner->RowObjectClassFactory(55));
    if (m_pStorage)
        for (i32& slot : m_pStorage->m_params) slot = -1;
}

CVrnApiIndex::~CVrnApiIndex() {
    while (!m_columnList.IsEmpty()) delete m_columnList.RemoveHead();
    delete m_pStorage;
}
