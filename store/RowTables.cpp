#include "store/RowTables.h"

#include "store/NSOutput.h"

namespace vrn {

namespace {

template <class Row>
void Describe(CRowFieldVisitor& columns) {
    Row().ListFields(columns);
}

template <class Row>
CNSOutputBase* Make() {
    return new Row;
}

template <class Row>
constexpr CRowTableInfo Entry() {
    return {static_cast<int>(Row::kRowType), Row::kTableName, &Describe<Row>, &Make<Row>};
}

}  // namespace

// Ordered by row type.
const CRowTableInfo kRowTables[] = {
    Entry<CNSOutputAttribute>(),       Entry<CNSOutputCheckConstraints>(), Entry<CNSOutputTrigger>(),
    Entry<CNSOutputPackage>(),         Entry<CNSOutputDefaults>(),         Entry<CNSOutputDiagram>(),
    Entry<CNSOutputEntity>(),          Entry<CNSOutputForeignKey>(),       Entry<CNSOutputForeignKeyColumn>(),
    Entry<CNSOutputIndexColumn>(),     Entry<CNSOutputIndexes>(),          Entry<CNSOutputIndexStorage>(),
    Entry<CNSOutputModel>(),           Entry<CNSOutputPrimaryKey>(),       Entry<CNSOutputProc>(),
    Entry<CNSOutputReferencedObject>(), Entry<CNSOutputRules>(),           Entry<CNSOutputStorageObj>(),
    Entry<CNSOutputTableStorage>(),    Entry<CNSOutputUserDatatype>(),     Entry<CNSOutputVersion>(),
};

const std::size_t kRowTableCount = sizeof kRowTables / sizeof kRowTables[0];

const CRowTableInfo* FindRowTable(int rowType) {
    for (const CRowTableInfo& table : kRowTables)
        if (table.rowType == rowType) return &table;
    return nullptr;
}

}  // namespace vrn
