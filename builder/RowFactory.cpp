// The row factory of the model builder: every row object of the model is made
// here, so that each is tied to the builder's model file and managers. Which
// row types exist, and their classes, is the store's row table.
#include "builder/VrnAPI.h"
#include "entity/VrnApiAttribute.h"
#include "entity/VrnApiEntity.h"
#include "keys/VrnApiForeignKey.h"
#include "keys/VrnApiIndex.h"
#include "store/RowTables.h"

using vrn::CRowTableInfo;
using vrn::FindRowTable;

namespace {

// The library's own object classes stand in for four output classes, and
// remember the builder that made them.
CNSOutputBase* MakeOwnObject(ERowType rowType, CVrnAPI* owner) {
    switch (rowType) {
        case ERowType::Attribute: return new CVrnApiAttribute(owner);
        case ERowType::Entity: return new CVrnApiEntity(owner);
        case ERowType::ForeignKey: return new CVrnApiForeignKey(owner);
        case ERowType::Index: return new CVrnApiIndex(owner);
        default: return nullptr;
    }
}

}  // namespace

CNSOutputBase* CVrnAPI::RowObjectClassFactory(int rowType) {
    // An unknown row type makes nothing; callers get null rather than a fault.
    const CRowTableInfo* table = FindRowTable(rowType);
    if (!table) return nullptr;
    CNSOutputBase* row = MakeOwnObject(static_cast<ERowType>(rowType), this);
    if (!row) row = table->make();
    // Set after the object's own constructor ran; null before Initialize.
    row->m_pVrnFile = m_pVrnFile.get();
    row->m_pNameSpaceMgr = m_pNameSpaceMgr.get();
    row->m_pGuidMgr = m_pGuidMgr.get();
    return row;
}
