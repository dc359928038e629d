#include "store/GuidMgr.h"

#include <algorithm>
#include <limits>

#include "store/RowTables.h"
#include "store/TableWriter.h"
#include "store/VrnFile.h"

using vrn::CStatement;
using vrn::CTableWriter;
using vrn::kRowTableCount;
using vrn::kRowTables;

int CGuidMgr::Init(unsigned typeCount, unsigned long firstAddedType) {
    m_initTypeCount = typeCount;
    m_initFirstAddedType = firstAddedType;
    m_types.clear();
    m_types.reserve(std::max<std::size_t>(typeCount, kRowTableCount));
    m_nextType = firstAddedType;
    for (std::size_t i = 0; i < kRowTableCount; ++i) m_types[kRowTables[i].tableName] = kRowTables[i].rowType;
    if (!m_pFile || !m_pFile->IsOpenedFile()) return 1;
    CStatement stmt = m_pFile->GetDb().Prepare("SELECT type_id, name FROM ObjectType");
    while (stmt.Step()) {
        const std::int64_t id = stmt.ColumnInt(0);
        if (id <= 0 || id > std::numeric_limits<int>::max()) continue;
        m_types[stmt.ColumnText(1)] = static_cast<int>(id);
        if (static_cast<unsigned long>(id) >= m_nextType) m_nextType = static_cast<unsigned long>(id) + 1;
    }
    return 1;
}

int CGuidMgr::GetObjectTypeId(CString& name) {
    if (name.IsEmpty()) return 0;
    const auto found = m_types.find(name.str());
    if (found != m_types.end()) return found->second;
    if (m_nextType > static_cast<unsigned long>(std::numeric_limits<int>::max())) return 0;
    const int id = static_cast<int>(m_nextType++);
    m_types.emplace(name.str(), id);
    return id;
}

void CGuidMgr::Save(CVrnFile* file, CGlobalIdMaps* /*idMaps*/, int /*reserved1*/, int /*reserved2*/) {
    if (!file) return;
    // An opened file may have given one type number to two names; the file
    // keeps one name per number.
    CTableWriter table(*file, "ObjectType", "type_id, name", CTableWriter::kLaterRowWins);
    for (const auto& entry : m_types) {
        table.Row().BindInt(1, entry.second);
        table.Row().BindText(2, entry.first.c_str());
        table.Add();
    }
}
