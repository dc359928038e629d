// CNameSpaceMgr: the model's name space, the texts that name-space strings
// refer to, each under a number of its own (1, 2, 3, …). A text is entered
// once; entering it again gives back its number.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "framework/VrnExport.h"
#include "framework/AfxString.h"

class CVrnFile;

class VRN_EXPORT CNameSpaceMgr {
public:
    explicit CNameSpaceMgr(CVrnFile* file) : m_pFile(file) {}
    virtual ~CNameSpaceMgr() = default;
    CNameSpaceMgr(const CNameSpaceMgr&) = delete;
    CNameSpaceMgr& operator=(const CNameSpaceMgr&) = delete;

    // `textCount` and `hashSize` size the manager for a new model (0 for an
    // opened one); with `openedFile` nonzero the texts of the opened file are
    // read and continued. Returns 1.
    int Init(unsigned textCount, unsigned hashSize, int reserved1, int openedFile, int reserved2);
    // The text stored under `id`; empty when there is none.
    void GetStringFromNameSpace(CString& text, long id) const;
    // The number of `text`, entering it when it is new.
    std::int32_t EnterString(const char* text);
    // Writes the name space into the file's NameSpace table.
    void Save(CVrnFile* file, int reserved1, int reserved2);

    unsigned GetInitTextCount() const { return m_initTextCount; }
    unsigned GetInitHashSize() const { return m_initHashSize; }
    int GetInitOpenedFlag() const { return m_initOpenedFlag; }

private:
    CVrnFile* m_pFile;
    std::vector<std::string> m_texts;  // number n is at index n - 1
    std::unordered_map<std::string, std::int32_t> m_ids;
    unsigned m_initTextCount = 0;
    unsigned m_initHashSize = 0;
    int m_initOpenedFlag = 0;
};
