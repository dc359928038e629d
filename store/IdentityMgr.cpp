#include "store/IdentityMgr.h"

#include <algorithm>
#include <limits>

#include "store/VrnFile.h"

int CIdentityMgr::Init() {
    m_lastKeys.clear();
    if (!m_pFile || !m_pFile->IsOpenedFile()) return 1;
    CStatement stmt = m_pFile->GetDb().Prepare("SELECT key_class, last_key FROM KeyAllocator");
    while (stmt.Step()) {
        // A stored value beyond the 32-bit key space counts as a used-up class.
        const std::int64_t last = std::min<std::int64_t>(stmt.ColumnInt(1), std::numeric_limits<std::uint32_t>::max());
        if (last > 0) m_lastKeys[static_cast<int>(stmt.ColumnInt(0))] = static_cast<std::uint32_t>(last);
    }
    return 1;
}

unsigned long CIdentityMgr::AllocKeyValue(int keyClass) {
    std::uint32_t& last = m_lastKeys[keyClass];
    if (last == std::numeric_limits<std::uint32_t>::max()) return 0;
    return ++last;
}

void CIdentityMgr::Save(CVrnFile* file) {
    if (!file) return;
    CStoreDb& db = file->GetDb();
    db.EnsureTransaction();
    db.Exec("DELETE FROM KeyAllocator");
    CStatement insert = db.Prepare("INSERT INTO KeyAllocator (key_class, last_key) VALUES (?1, ?2)");
    for (const auto& entry : m_lastKeys) {
        if (entry.second == 0) continue;
        insert.BindInt(1, entry.first);
        insert.BindInt(2, entry.second);
        insert.Run();
        insert.Reset();
    }
}
