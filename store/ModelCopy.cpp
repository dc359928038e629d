#include "store/ModelCopy.h"

#include <sqlite3.h>

#include <cstring>
#include <mutex>

#include "store/AtomicFile.h"

namespace vrn {

namespace {

constexpr const char* kVfsName = "vrn-save-copy";

// The file that the copy's connection opens: the save's temporary file. The
// copy runs with no journal (the temporary file only matters once complete),
// so this is the one file the connection ever opens.
struct CCopyFile {
    sqlite3_file base;  // first: SQLite sees a CCopyFile as an sqlite3_file
    CTemporaryFile* file;
    sqlite3_int64 size;
};

// The save's temporary file for the connection that this thread opens next.
thread_local CTemporaryFile* t_openingFile = nullptr;

CCopyFile* Of(sqlite3_file* file) { return reinterpret_cast<CCopyFile*>(file); }

int Close(sqlite3_file*) { return SQLITE_OK; }

int Read(sqlite3_file* file, void* data, int amount, sqlite3_int64 offset) {
    std::size_t read = 0;
    if (!Of(file)->file->ReadAt(data, static_cast<std::size_t>(amount), static_cast<std::uint64_t>(offset), &read))
        return SQLITE_IOERR_READ;
    if (read == static_cast<std::size_t>(amount)) return SQLITE_OK;
    // SQLite asks for the missing part to be zeros.
    std::memset(static_cast<char*>(data) + read, 0, static_cast<std::size_t>(amount) - read);
    return SQLITE_IOERR_SHORT_READ;
}

int Write(sqlite3_file* file, const void* data, int amount, sqlite3_int64 offset) {
    CCopyFile* copy = Of(file);
    if (!copy->file->WriteAt(data, static_cast<std::size_t>(amount), static_cast<std::uint64_t>(offset)))
        return SQLITE_IOERR_WRITE;
    if (offset + amount > copy->size) copy->size = offset + amount;
    return SQLITE_OK;
}

// A fresh file only grows; the copy never has more pages than the model.
int Truncate(sqlite3_file* file, sqlite3_int64 size) {
    return size >= Of(file)->size ? SQLITE_OK : SQLITE_IOERR_TRUNCATE;
}

// The save syncs the whole file once it is complete.
int Sync(sqlite3_file*, int) { return SQLITE_OK; }

int FileSize(sqlite3_file* file, sqlite3_int64* size) {
    *size = Of(file)->size;
    return SQLITE_OK;
}

// Nobody else knows the file: no locks to take.
int Lock(sqlite3_file*, int) { return SQLITE_OK; }
int Unlock(sqlite3_file*, int) { return SQLITE_OK; }
int CheckReservedLock(sqlite3_file*, int* reserved) {
    *reserved = 0;
    return SQLITE_OK;
}

int FileControl(sqlite3_file*, int, void*) { return SQLITE_NOTFOUND; }
int SectorSize(sqlite3_file*) { return 4096; }
int DeviceCharacteristics(sqlite3_file*) { return 0; }

const sqlite3_io_methods kCopyFileMethods = {
    1,  // iVersion
    Close, Read, Write, Truncate, Sync, FileSize, Lock, Unlock, CheckReservedLock, FileControl, SectorSize,
    DeviceCharacteristics,
    nullptr, nullptr, nullptr, nullptr,  // version 2 and 3: no shared memory, no memory mapping
    nullptr, nullptr,
};

sqlite3_vfs* DefaultVfs() { return sqlite3_vfs_find(nullptr); }

int Open(sqlite3_vfs*, const char*, sqlite3_file* file, int flags, int* outFlags) {
    // Only the database itself: a journal or temporary file here is a fault.
    file->pMethods = nullptr;
    if (!(flags & SQLITE_OPEN_MAIN_DB) || !t_openingFile) return SQLITE_CANTOPEN;
    CCopyFile* copy = Of(file);
    copy->file = t_openingFile;
    copy->size = 0;
    copy->base.pMethods = &kCopyFileMethods;
    if (outFlags) *outFlags = flags;
    return SQLITE_OK;
}

int Delete(sqlite3_vfs*, const char*, int) { return SQLITE_OK; }

// No other file exists beside the copy (no journal to roll back).
int Access(sqlite3_vfs*, const char*, int, int* result) {
    *result = 0;
    return SQLITE_OK;
}

int FullPathname(sqlite3_vfs*, const char* name, int size, char* out) {
    sqlite3_snprintf(size, out, "%s", name);
    return SQLITE_OK;
}

int Randomness(sqlite3_vfs*, int size, char* out) { return DefaultVfs()->xRandomness(DefaultVfs(), size, out); }
int Sleep(sqlite3_vfs*, int microseconds) { return DefaultVfs()->xSleep(DefaultVfs(), microseconds); }
int CurrentTime(sqlite3_vfs*, double* now) { return DefaultVfs()->xCurrentTime(DefaultVfs(), now); }
int GetLastError(sqlite3_vfs*, int, char*) { return 0; }

void RegisterCopyVfs() {
    static sqlite3_vfs vfs = {
        1,                              // iVersion
        static_cast<int>(sizeof(CCopyFile)),
        512,                            // mxPathname
        nullptr,                        // pNext
        kVfsName,
        nullptr,                        // pAppData
        Open, Delete, Access, FullPathname,
        nullptr, nullptr, nullptr, nullptr,  // no extensions are loaded through it
        Randomness, Sleep, CurrentTime, GetLastError,
        nullptr, nullptr, nullptr, nullptr,  // version 2 and 3
    };
    static std::once_flag registered;
    std::call_once(registered, [] { sqlite3_vfs_register(&vfs, 0); });
}

}  // namespace

bool CopyDatabase(sqlite3* source, CTemporaryFile& file, std::string* why) {
    RegisterCopyVfs();
    sqlite3* copy = nullptr;
    t_openingFile = &file;
    int rc = sqlite3_open_v2("model", &copy, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX,
                             kVfsName);
    t_openingFile = nullptr;
    if (rc == SQLITE_OK) rc = sqlite3_exec(copy, "PRAGMA journal_mode = OFF", nullptr, nullptr, nullptr);
    if (rc == SQLITE_OK) {
        sqlite3_backup* backup = sqlite3_backup_init(copy, "main", source, "main");
        if (backup) sqlite3_backup_step(backup, -1);  // every page in one step
        rc = backup ? sqlite3_backup_finish(backup) : sqlite3_errcode(copy);
    }
    if (rc != SQLITE_OK) {
        if (!file.Error().empty())
            *why = file.Error();
        else
            *why = copy ? sqlite3_errmsg(copy) : sqlite3_errstr(rc);
    }
    sqlite3_close(copy);
    return rc == SQLITE_OK;
}

}  // namespace vrn
