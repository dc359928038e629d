/// @file
/// CVrnFile: the model file. The model is built in SQLite's temporary database
/// (every row table and manager table, in a bounded cache that spills to a
/// private temporary file) and written to its target only by Save, as one
/// atomic replacement of the target file.
///
/// Open loads an existing model file into memory so that the managers, when
/// initialised for an opened file, continue its name space, object types, keys
/// and properties. Open refuses anything that is not a model file this library
/// can read, and never changes or deletes a file. Save never leaves a partial
/// file behind, and refuses a model of which any row or table failed to be
/// written. Both keep a readable reason for their last failure in GetLastError().
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "framework/VrnExport.h"

class CIdentityMgr;
class CNameSpaceMgr;
class CRowFieldVisitor;

namespace vrn {
class CStoreDb;
}  // namespace vrn

/// The model file: the model in memory while it is built, loaded by Open and written by Save (see the file
/// comment). CVrnAPI makes and owns one; a client reaches it through CVrnAPI::GetVrnFile to read the reason
/// of a failed save.
class VRN_EXPORT CVrnFile {
public:
    /// The newest file format this library writes and reads. Version 2 named
    /// the package header column header_text (spec_text in version 1);
    /// version 1 files are still read.
    static constexpr int kFormatVersion = 2;
    /// The format name every model file carries in its FileInfo table; Open refuses a file with another.
    static constexpr const char* kFormatName = "vrn-model";

    /// An empty model in memory; should it not be created, GetLastError() says why.
    CVrnFile();
    /// Discards the model in memory; files written by Save stay.
    virtual ~CVrnFile();
    CVrnFile(const CVrnFile&) = delete;
    CVrnFile& operator=(const CVrnFile&) = delete;

    /// Nonzero when `path` is a model file and was loaded; 0 (with a reason)
    /// otherwise, and the model in memory stays empty.
    int Open(const char* path);
    /// Nonzero when `path` is a model file that Open would load, checked as
    /// Open checks it but not loaded; 0 with the reason Open would give. For
    /// readers that read the file themselves.
    int Check(const char* path);
    /// Writes the whole model to `path` atomically: a temporary file beside it,
    /// then a rename. Nonzero on success; on failure 0 with a reason, an existing
    /// file at `path` untouched and no temporary file left. `flags` is reserved (0).
    /// Fails without touching `path` once any write into the model has failed.
    int Save(const char* path, int flags);

    /// What a file whose first bytes are `head` (up to 64 of them) is, for
    /// messages: "an SQLite database", "a PNG image", "a text file", ...
    static const char* DescribeContent(const std::string& head);

    /// The key allocator; owned by the file.
    CIdentityMgr* GetIdentityMgr() const { return m_pIdentityMgr.get(); }
    /// The target platform code of the model, written by Save into FileInfo
    /// as "platform" so that readers know for which platform it was built.
    void SetPlatform(int code) {
        m_platform = code;
        m_hasPlatform = true;
    }
    /// The reason of the last failure of Open, Check or Save; empty when none has failed since the last
    /// success of one of them (or when none was called). The constructor sets it when it could not create
    /// the model in memory.
    const char* GetLastError() const { return m_lastError.c_str(); }
    /// True once Open has loaded a file.
    bool IsOpenedFile() const { return m_bOpened; }

    /// For the store's own managers and rows: the model in memory.
    vrn::CStoreDb& GetDb() { return *m_pDb; }
    /// Appends one record to `table`; `listFields` lists the row's fields in
    /// order. Name-space texts are entered through `nameSpace` when it is given.
    void WriteRecord(const char* table, CNameSpaceMgr* nameSpace,
                     const std::function<void(CRowFieldVisitor&)>& listFields);
    /// Keeps the first failure to write into the model. It is never cleared:
    /// the model in memory lacks what failed, so every later Save refuses it.
    void NoteWriteFailure(const std::string& what);
    /// Empty while every write into the model has succeeded.
    const std::string& GetWriteFailure() const { return m_writeFailure; }

private:
    struct CInsert;
    struct CInsertCache;

    bool CreateSchema();
    /// The file at `path` attached as "src" once it passes every check; left detached otherwise.
    bool Attach(const char* path);
    bool CheckAttached(const std::string& path);
    /// The attached file's rows copied into the model in memory.
    bool CopyAttached(const std::string& path);
    bool Fail(const std::string& reason);
    CInsert* InsertFor(const char* table);

    std::unique_ptr<vrn::CStoreDb> m_pDb;
    std::unique_ptr<CIdentityMgr> m_pIdentityMgr;
    std::unique_ptr<CInsertCache> m_pInserts;
    std::int64_t m_nextRowSeq = 1;
    bool m_bOpened = false;
    bool m_hasPlatform = false;
    int m_platform = 0;
    std::string m_lastError;
    std::string m_writeFailure;
};
