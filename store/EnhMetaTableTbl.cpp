#include "store/EnhMetaTableTbl.h"

#include "store/RowTables.h"
#include "store/VrnFile.h"

unsigned long CEnhMetaTableTbl::GetTechKey(int metaTableNo) const {
    return FindRowTable(metaTableNo) ? kTechKeyBase + static_cast<unsigned long>(metaTableNo) : 0;
}

void CEnhMetaTableTbl::Save(CVrnFile* file) const {
    if (!file) return;
    CStoreDb& db = file->GetDb();
    db.EnsureTransaction();
    db.Exec("DELETE FROM MetaTable");
    CStatement insert = db.Prepare("INSERT INTO MetaTable (meta_table_no, tech_key, table_name) VALUES (?1, ?2, ?3)");
    for (std::size_t i = 0; i < kRowTableCount; ++i) {
        insert.BindInt(1, kRowTables[i].rowType);
        insert.BindInt(2, static_cast<std::int64_t>(GetTechKey(kRowTables[i].rowType)));
        insert.BindText(3, kRowTables[i].tableName);
        insert.Run();
        insert.Reset();
    }
}
