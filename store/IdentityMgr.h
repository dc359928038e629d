// CIdentityMgr: the key allocator of a model file. Each key class is its own
// key space; a key is never handed out twice within its class in one model
// file, also across an Open: an opened file continues after the last key it
// stored for each class.
#pragma once

#include <cstdint>
#include <map>

#include "framework/VrnExport.h"

class CVrnFile;

class VRN_EXPORT CIdentityMgr {
public:
    explicit CIdentityMgr(CVrnFile* file) : m_pFile(file) {}
    virtual ~CIdentityMgr() = default;
    CIdentityMgr(const CIdentityMgr&) = delete;
    CIdentityMgr& operator=(const CIdentityMgr&) = delete;

    // Reads the last keys of an opened file; for a new model every class starts
    // empty. Returns 1.
    int Init();
    // A new nonzero key of `keyClass`; 0 when the class's 32-bit key space is
    // used up (the key is then not handed out, so nothing can be overwritten).
    unsigned long AllocKeyValue(int keyClass);
    // Stores the last key of every class in the file's KeyAllocator table.
    void Save(CVrnFile* file);

private:
    CVrnFile* m_pFile;
    std::map<int, std::uint32_t> m_lastKeys;
};
