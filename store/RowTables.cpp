#include "store/RowTables.h"

#include "store/NSOutput.h"

namespace {

template <class Row>
void Describe(CRowFieldVisitor& columns) {
    Row().ListFields(columns);
}

}  // namespace

// Ordered by row type.
const CRowTableInfo kRowTables[] = {
    {12, CNSOutputAttribute::kTableName, &Describe<CNSOutputAttribute>},
    {14, CNSOutputCheckConstraints::kTableName, &Describe<CNSOutputCheckConstraints>},
    {23, CNSOutputTrigger::kTableName, &Describe<CNSOutputTrigger>},
    {24, CNSOutputPackage::kTableName, &Describe<CNSOutputPackage>},
    {26, CNSOutputDefaults::kTableName, &Describe<CNSOutputDefaults>},
    {29, CNSOutputDiagram::kTableName, &Describe<CNSOutputDiagram>},
    {40, CNSOutputEntity::kTableName, &Describe<CNSOutputEntity>},
    {46, CNSOutputForeignKey::kTableName, &Describe<CNSOutputForeignKey>},
    {47, CNSOutputForeignKeyColumn::kTableName, &Describe<CNSOutputForeignKeyColumn>},
    {53, CNSOutputIndexColumn::kTableName, &Describe<CNSOutputIndexColumn>},
    {54, CNSOutputIndexes::kTableName, &Describe<CNSOutputIndexes>},
    {55, CNSOutputIndexStorage::kTableName, &Describe<CNSOutputIndexStorage>},
    {65, CNSOutputModel::kTableName, &Describe<CNSOutputModel>},
    {75, CNSOutputPrimaryKey::kTableName, &Describe<CNSOutputPrimaryKey>},
    {76, CNSOutputProc::kTableName, &Describe<CNSOutputProc>},
    {82, CNSOutputReferencedObject::kTableName, &Describe<CNSOutputReferencedObject>},
    {86, CNSOutputRules::kTableName, &Describe<CNSOutputRules>},
    {89, CNSOutputStorageObj::kTableName, &Describe<CNSOutputStorageObj>},
    {100, CNSOutputTableStorage::kTableName, &Describe<CNSOutputTableStorage>},
    {104, CNSOutputUserDatatype::kTableName, &Describe<CNSOutputUserDatatype>},
    {110, CNSOutputVersion::kTableName, &Describe<CNSOutputVersion>},
};

const std::size_t kRowTableCount = sizeof kRowTables / sizeof kRowTables[0];

const CRowTableInfo* FindRowTable(int rowType) {
    for (const CRowTableInfo& table : kRowTables)
        if (table.rowType == rowType) return &table;
    return nullptr;
}
