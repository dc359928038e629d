// CFileSystem: the file operations an atomic save is made of, behind an
// interface so that a test can make any one of them fail the way a full
// disk, a failing device or an unusual file system makes it fail.
//
// Every operation answers 0 on success or the errno value of its failure; none
// throws, and none retries: whether an error is worth another try is the
// caller's decision. Files are open descriptors of the real file system.
// Default() is that file system, through the POSIX calls of the same names.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace vrn {

class CFileSystem {
public:
    CFileSystem() = default;
    virtual ~CFileSystem();
    CFileSystem(const CFileSystem&) = delete;
    CFileSystem& operator=(const CFileSystem&) = delete;

    // The real file system. It holds no state and lives as long as the process.
    static CFileSystem& Default();

    // Makes a file without a name in `directory`, open for reading and
    // writing with mode 0600, and sets *fd. Closing it before LinkUnnamed
    // discards it. A file system without such files answers EOPNOTSUPP, an
    // older kernel EISDIR.
    virtual int CreateUnnamed(const std::string& directory, int* fd) = 0;
    // Makes a new file, open for reading and writing with mode 0600, whose
    // name is `nameTemplate` with its last six characters ("XXXXXX") replaced
    // so that the name was not taken, and sets *name and *fd.
    virtual int CreateTemporary(const std::string& nameTemplate, std::string* name, int* fd) = 0;
    // Gives the unnamed file open as `fd` the name `name`: EEXIST when taken.
    virtual int LinkUnnamed(int fd, const std::string& name) = 0;
    // Sets the permission bits of the file open as `fd`.
    virtual int SetMode(int fd, mode_t mode) = 0;
    // Writes at most `size` bytes at `data` at byte `offset` of the file in
    // one call and sets *written to how many it wrote, which may be fewer.
    // EINTR when a signal came first.
    virtual int Write(int fd, const void* data, std::size_t size, std::uint64_t offset, std::size_t* written) = 0;
    // Reads at most `size` bytes at byte `offset` into `data` in one call and
    // sets *read to how many it read: 0 at the end of the file.
    virtual int Read(int fd, void* data, std::size_t size, std::uint64_t offset, std::size_t* read) = 0;
    // Returns once what was written to `fd` is on the device.
    virtual int Sync(int fd) = 0;
    // Releases `fd` whatever the answer; an error means that what was written
    // may not have reached the file.
    virtual int Close(int fd) = 0;
    // Replaces `to`, if it exists, with `from` in one step.
    virtual int Rename(const std::string& from, const std::string& to) = 0;
    virtual int Remove(const std::string& name) = 0;
    // Returns once the entries of `directory` (a rename in it) are on the device.
    virtual int SyncDirectory(const std::string& directory) = 0;
    // Sets *mode to the type and permission bits (st_mode) of what `path`
    // names, following links.
    virtual int ModeOf(const std::string& path, mode_t* mode) = 0;
    // The permissions this process gives a new file: 0666 less its umask.
    virtual mode_t DefaultFileMode() = 0;
};

}  // namespace vrn
