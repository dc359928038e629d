#include "store/AtomicFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "store/FileSystem.h"

namespace vrn {

namespace {

// The most handed to one write, so that no call is asked for more than any
// file system takes in one go.
constexpr std::size_t kWriteChunk = std::size_t(1) << 20;

// Names ".0.tmp" to ".<kLastNameAttempt>.tmp" are tried: a taken name is a
// file of another save, or one left by a save killed before its rename.
constexpr int kLastNameAttempt = 101;

// One replacement of a target. The target is touched only by the final
// rename; until then every failure goes through Abandon, which takes away
// what was made.
class CReplacement {
public:
    CReplacement(CFileSystem& fs, const std::string& target, std::string* reason)
        : m_fs(fs), m_target(target), m_reason(reason) {}

    bool Run(const CFileFiller& fill) {
        if (!Create()) return false;
        CTemporaryFile file(m_fs, m_fd);
        std::string why;
        if (!fill(file, &why)) return Abandon(why);
        if (!SyncFile() || !Name() || !CloseFile()) return false;
        if (const int error = m_fs.Rename(m_temp, m_target)) return Abandon(std::strerror(error));
        // The rename has replaced the target: the save is done, and no later
        // failure can give the old file back, so reporting one would say
        // that the target was left as it was. Syncing the directory makes
        // the rename survive a crash of the machine; where that is refused
        // (a directory that may be written but not read) it stays as durable
        // as the file system makes any rename.
        m_fs.SyncDirectory(DirectoryOf(m_target));
        return true;
    }

private:
    // A file without a name vanishes by itself if the process dies before it
    // is named. Whatever stops one being made (no support, or a reason that
    // the named file meets again and then reports), a named file is tried.
    bool Create() {
        int fd = -1;
        // An unnamed file is named through /proc/self/fd: without /proc it
        // could be written but never named.
        if (::access("/proc/self/fd", F_OK) == 0 && m_fs.CreateUnnamed(DirectoryOf(m_target), &fd) == 0) {
            m_fd = fd;
            m_unnamed = true;
        } else {
            std::string name;
            if (const int error = m_fs.CreateTemporary(TemporaryStem(m_target) + ".XXXXXX", &name, &fd))
                return Abandon(std::strerror(error));
            m_fd = fd;
            m_temp = name;
        }
        // A new file is private; the model gets the permissions of the file
        // it replaces, or those of any new file. File systems that cannot
        // store them (FAT, some network shares) refuse the change, and the
        // file keeps the private mode it was made with: saving there is
        // worth more than the permissions.
        mode_t mode = 0;
        if (m_fs.ModeOf(m_target, &mode) == 0 && S_ISREG(mode))
            mode &= 07777;
        else
            mode = m_fs.DefaultFileMode();
        m_fs.SetMode(m_fd, mode);
        return true;
    }

    bool SyncFile() {
        if (const int error = m_fs.Sync(m_fd)) return Abandon(std::strerror(error));
        return true;
    }

    // Named only for the instant before the rename. A save killed in that
    // instant leaves this complete copy behind; nothing deletes it, since no
    // other process can prove it abandoned.
    bool Name() {
        if (!m_unnamed) return true;
        const std::string stem = TemporaryStem(m_target) + "." + std::to_string(::getpid()) + ".";
        for (int attempt = 0;; ++attempt) {
            const std::string name = stem + std::to_string(attempt) + ".tmp";
            const int error = m_fs.LinkUnnamed(m_fd, name);
            if (error == 0) {
                m_temp = name;
                return true;
            }
            if (error != EEXIST || attempt >= kLastNameAttempt) return Abandon(std::strerror(error));
        }
    }

    // A failed close may have lost what was written: the file is not used.
    bool CloseFile() {
        const int error = m_fs.Close(m_fd);
        m_fd = -1;
        if (error != 0) return Abandon(std::strerror(error));
        return true;
    }

    bool Abandon(const std::string& why) {
        if (m_fd >= 0) m_fs.Close(m_fd);  // an unnamed file goes with its descriptor
        m_fd = -1;
        *m_reason = "cannot save '" + m_target + "': " + why;
        if (!m_temp.empty()) {
            if (const int error = m_fs.Remove(m_temp))
                *m_reason += "; its temporary file '" + m_temp + "' could not be removed: " + std::strerror(error);
        }
        return false;
    }

    CFileSystem& m_fs;
    const std::string& m_target;
    std::string* m_reason;
    int m_fd = -1;
    bool m_unnamed = false;
    std::string m_temp;  // the temporary file's name, once it has one
};

}  // namespace

bool WriteFileAtomically(CFileSystem& fs, const std::string& path, const CFileFiller& fill, std::string* reason) {
    // A link is followed: the file it names is replaced, the link stays. A
    // device or a pipe is never replaced by a file.
    std::string target;
    if (!FollowLinks(path, target)) {
        *reason = "cannot save '" + path + "': " + std::strerror(ELOOP);
        return false;
    }
    struct stat existing {};
    if (::stat(target.c_str(), &existing) == 0 && !S_ISREG(existing.st_mode) && !S_ISDIR(existing.st_mode)) {
        *reason = "cannot save '" + path + "': it is a device, a pipe or a socket, not a file";
        return false;
    }
    CReplacement replacement(fs, target, reason);
    if (!replacement.Run(fill)) return false;
    reason->clear();
    return true;
}

bool WriteFileAtomically(CFileSystem& fs, const std::string& target, const void* data, std::size_t size,
                         std::string* reason) {
    const auto writeAll = [data, size](CTemporaryFile& file, std::string* why) {
        if (file.WriteAt(data, size, 0)) return true;
        *why = file.Error();
        return false;
    };
    return WriteFileAtomically(fs, target, writeAll, reason);
}

bool CTemporaryFile::WriteAt(const void* data, std::size_t size, std::uint64_t offset) {
    const char* bytes = static_cast<const char*>(data);
    for (std::size_t done = 0; done < size;) {
        std::size_t written = 0;
        const int error = m_fs.Write(m_fd, bytes + done, std::min(size - done, kWriteChunk), offset + done, &written);
        if (error == EINTR) continue;
        if (error != 0) return Fail(std::strerror(error));
        if (written == 0) return Fail("nothing could be written");
        done += written;
    }
    return true;
}

bool CTemporaryFile::ReadAt(void* data, std::size_t size, std::uint64_t offset, std::size_t* read) {
    char* bytes = static_cast<char*>(data);
    *read = 0;
    while (*read < size) {
        std::size_t got = 0;
        const int error = m_fs.Read(m_fd, bytes + *read, size - *read, offset + *read, &got);
        if (error == EINTR) continue;
        if (error != 0) return Fail(std::strerror(error));
        if (got == 0) break;  // the end of the file
        *read += got;
    }
    return true;
}

bool CTemporaryFile::Fail(const std::string& why) {
    m_error = why;
    return false;
}

bool FollowLinks(const std::string& path, std::string& target) {
    target = path;
    for (int depth = 0; depth < 40; ++depth) {
        struct stat link {};
        if (::lstat(target.c_str(), &link) != 0 || !S_ISLNK(link.st_mode)) return true;
        std::string named(static_cast<std::size_t>(link.st_size) + 256, '\0');
        const ssize_t length = ::readlink(target.c_str(), &named[0], named.size());
        if (length <= 0 || static_cast<std::size_t>(length) >= named.size()) return true;
        named.resize(static_cast<std::size_t>(length));
        target = named[0] == '/' ? named : DirectoryOf(target) + "/" + named;
    }
    return false;
}

std::string DirectoryOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string TemporaryStem(const std::string& target) {
    const std::size_t slash = target.find_last_of('/');
    std::string name = slash == std::string::npos ? target : target.substr(slash + 1);
    if (name.size() > 64) {
        std::size_t cut = 64;
        while (cut > 0 && (static_cast<unsigned char>(name[cut]) & 0xC0) == 0x80) --cut;  // not inside a UTF-8 letter
        name.resize(cut);
    }
    return (slash == std::string::npos ? std::string() : target.substr(0, slash + 1)) + name;
}

}  // namespace vrn
