#include "store/EnhMetaTableTbl.h"

#include "store/RowTables.h"
#include "store/TableWriter.h"
#include "store/VrnFile.h"

using vrn::CTableWriter;
using vrn::FindRowTable;
using vrn::kRowTableCount;
using vrn::kRowTables;

unsigned long CEnhMetaTableTbl::GetTechKey(int metaTableNo) const {
    return FindRowTable(metaTableNo) ? kTechKeyBase + static_cast<unsigned long>(metaTableNo) : 0;
}

void CEnhMetaTableTbl::Save(CVrnFile* file) const {
    if (!file) return;
    CTableWriter table(*file, "MetaTable", "meta_table_no, tech_key, table_name");
    for (std::size_t i = 0; i < kRowTableCount; ++i) {
        table.Row().BindInt(1, kRowTables[i].rowType);
        table.Row().BindInt(2, static_cast<std::int64_t>(GetTechKey(kRowTables[i].rowType)));
        table.Row().BindText(3, kRowTables[i].tableName);
        table.Add();
    }
}
