// The row factory of the model builder: every row object of the model is made
// here, so that each is tied to the builder's model file and managers.
#include "builder/VrnAPI.h"
#include "entity/VrnApiAttribute.h"
#include "entity/VrnApiEntity.h"
#include "keys/VrnApiForeignKey.h"
#include "keys/VrnApiIndex.h"

namespace {

template <class Row>
CNSOutputBase* MakeRow(CVrnAPI*) {
    return new Row;
}

// The library's own object classes remember the builder that made them.
template <class Object>
CNSOutputBase* MakeOwnedObject(CVrnAPI* owner) {
    return new Object(owner);
}

struct CRowMaker {
    int rowType;
    CNSOutputBase* (*make)(CVrnAPI* owner);
};

// The 21 row types the factory knows; the numbering is sparse and is not the
// numbering of key classes.
const CRowMaker kRowMakers[] = {
    {12, &MakeOwnedObject<CVrnApiAttribute>},
    {14, &MakeRow<CNSOutputCheckConstraints>},
    {23, &MakeRow<CNSOutputTrigger>},
    {24, &MakeRow<CNSOutputPackage>},
    {26, &MakeRow<CNSOutputDefaults>},
    {29, &MakeRow<CNSOutputDiagram>},
    {40, &MakeOwnedObject<CVrnApiEntity>},
    {46, &MakeOwnedObject<CVrnApiForeignKey>},
    {47, &MakeRow<CNSOutputForeignKeyColumn>},
    {53, &MakeRow<CNSOutputIndexColumn>},
    {54, &MakeOwnedObject<CVrnApiIndex>},
    {55, &MakeRow<CNSOutputIndexStorage>},
    {65, &MakeRow<CNSOutputModel>},
    {75, &MakeRow<CNSOutputPrimaryKey>},
    {76, &MakeRow<CNSOutputProc>},
    {82, &MakeRow<CNSOutputReferencedObject>},
    {86, &MakeRow<CNSOutputRules>},
    {89, &MakeRow<CNSOutputStorageObj>},
    {100, &MakeRow<CNSOutputTableStorage>},
    {104, &MakeRow<CNSOutputUserDatatype>},
    {110, &MakeRow<CNSOutputVersion>},
};

}  // namespace

CNSOutputBase* CVrnAPI::RowObjectClassFactory(int rowType) {
    for (const CRowMaker& maker : kRowMakers) {
        if (maker.rowType != rowType) continue;
        CNSOutputBase* row = maker.make(this);
        // Set after the object's own constructor ran; null before Initialize.
        row->m_pVrnFile = m_pVrnFile;
        row->m_pNameSpaceMgr = m_pNameSpaceMgr;
        row->m_pGuidMgr = m_pGuidMgr;
        return row;
    }
    // An unknown row type makes nothing; callers get null rather than a fault.
    return nullptr;
}
