#include "store/IdentityMgr.h"

#include <algorithm>
#include <limits>

#include "store/TableWriter.h"
#include "store/VrnFile.h"

using vrn::CStatement;
using vrn::CTableWriter;

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
    CTableWriter table(*file, "KeyAllocator", "key_class, last_key");
    for (const auto& entry : m_lastKeys) {
        if (entry.second == 0) continue;
        table.Row().BindInt(1, entry.first);
        table.Row().BindInt(2, entry.second);
        table.Add();
    }
}
