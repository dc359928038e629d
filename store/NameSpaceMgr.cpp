#include "store/NameSpaceMgr.h"

#include "store/TableWriter.h"
#include "store/VrnFile.h"

using vrn::CStatement;
using vrn::CTableWriter;

int CNameSpaceMgr::Init(unsigned textCount, unsigned hashSize, int /*reserved1*/, int openedFile,
                        int /*reserved2*/) {
    m_initTextCount = textCount;
    m_initHashSize = hashSize;
    m_initOpenedFlag = openedFile;
    m_texts.clear();
    m_ids.clear();
    m_texts.reserve(textCount);
    m_ids.reserve(hashSize);
    if (!openedFile || !m_pFile) return 1;
    // Numbers are dense from 1 in files this library writes; a gap is kept as
    // an empty text so that every stored number still reads its own text.
    CStatement stmt = m_pFile->GetDb().Prepare("SELECT ns_id, text FROM NameSpace WHERE ns_id > 0 ORDER BY ns_id");
    while (stmt.Step()) {
        const std::int64_t id = stmt.ColumnInt(0);
        if (id > INT32_MAX) break;
        m_texts.resize(static_cast<std::size_t>(id));
        m_texts.back() = stmt.ColumnText(1);
        m_ids.emplace(m_texts.back(), static_cast<std::int32_t>(id));
    }
    return 1;
}

void CNameSpaceMgr::GetStringFromNameSpace(CString& text, long id) const {
    if (id <= 0 || static_cast<std::size_t>(id) > m_texts.size())
        text.Empty();
    else
        text = m_texts[static_cast<std::size_t>(id) - 1];
}

std::int32_t CNameSpaceMgr::EnterString(const char* text) {
    const std::string key(text ? text : "");
    const auto found = m_ids.find(key);
    if (found != m_ids.end()) return found->second;
    if (m_texts.size() >= static_cast<std::size_t>(INT32_MAX)) return 0;
    m_texts.push_back(key);
    const auto id = static_cast<std::int32_t>(m_texts.size());
    m_ids.emplace(key, id);
    return id;
}

void CNameSpaceMgr::Save(CVrnFile* file, int /*reserved1*/, int /*reserved2*/) {
    if (!file) return;
    CTableWriter table(*file, "NameSpace", "ns_id, text");
    for (std::size_t i = 0; i < m_texts.size(); ++i) {
        table.Row().BindInt(1, static_cast<std::int64_t>(i + 1));
        table.Row().BindText(2, m_texts[i].c_str());
        table.Add();
    }
}
