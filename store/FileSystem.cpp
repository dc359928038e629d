#include "store/FileSystem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace vrn {

CFileSystem::~CFileSystem() = default;

namespace {

// errno after a call that reported failure. A call that failed without
// setting it still failed: it must not read as success.
int LastErrno() { return errno != 0 ? errno : EIO; }

class CPosixFileSystem final : public CFileSystem {
public:
    int CreateUnnamed(const std::string& directory, int* fd) override {
#ifdef O_TMPFILE
        const int opened = ::open(directory.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
        if (opened < 0) return LastErrno();
        *fd = opened;
        return 0;
#else
        (void)directory;
        (void)fd;
        return EOPNOTSUPP;
#endif
    }

    int CreateTemporary(const std::string& nameTemplate, std::string* name, int* fd) override {
        std::string chosen = nameTemplate;
        const int opened = ::mkstemp(&chosen[0]);
        if (opened < 0) return LastErrno();
        *name = chosen;
        *fd = opened;
        return 0;
    }

    int LinkUnnamed(int fd, const std::string& name) override {
        // The descriptor's entry under /proc names the file that has no name
        // of its own; linking without that would need CAP_DAC_READ_SEARCH.
        const std::string self = "/proc/self/fd/" + std::to_string(fd);
        if (::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) != 0) return LastErrno();
        return 0;
    }

    int SetMode(int fd, mode_t mode) override { return ::fchmod(fd, mode) == 0 ? 0 : LastErrno(); }

    int Write(int fd, const void* data, std::size_t size, std::uint64_t offset, std::size_t* written) override {
        const ssize_t n = ::pwrite(fd, data, size, static_cast<off_t>(offset));
        if (n < 0) return LastErrno();
        *written = static_cast<std::size_t>(n);
        return 0;
    }

    int Read(int fd, void* data, std::size_t size, std::uint64_t offset, std::size_t* read) override {
        const ssize_t n = ::pread(fd, data, size, static_cast<off_t>(offset));
        if (n < 0) return LastErrno();
        *read = static_cast<std::size_t>(n);
        return 0;
    }

    int Sync(int fd) override { return ::fsync(fd) == 0 ? 0 : LastErrno(); }

    int Close(int fd) override { return ::close(fd) == 0 ? 0 : LastErrno(); }

    int Rename(const std::string& from, const std::string& to) override {
        return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : LastErrno();
    }

    int Remove(const std::string& name) override { return ::unlink(name.c_str()) == 0 ? 0 : LastErrno(); }

    int SyncDirectory(const std::string& directory) override {
        const int fd = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (fd < 0) return LastErrno();
        const int error = ::fsync(fd) == 0 ? 0 : LastErrno();
        ::close(fd);
        return error;
    }

    int ModeOf(const std::string& path, mode_t* mode) override {
        struct stat info {};
        if (::stat(path.c_str(), &info) != 0) return LastErrno();
        *mode = info.st_mode;
        return 0;
    }

    mode_t DefaultFileMode() override {
        // The umask can only be read by setting it; it is put back at once.
        const mode_t mask = ::umask(0);
        ::umask(mask);
        return 0666 & ~mask;
    }
};

}  // namespace

CFileSystem& CFileSystem::Default() {
    static CPosixFileSystem* const fileSystem = new CPosixFileSystem;  // never destroyed: usable during exit
    return *fileSystem;
}

}  // namespace vrn
