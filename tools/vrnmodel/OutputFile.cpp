#include "OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>


namespace {

// Writes everything or says why not.
bool WriteAll(int fd, const std::string& bytes, std::string& error) {
    for (std::size_t written = 0; written < bytes.size();) {
        const ssize_t n = ::write(fd, bytes.data() + written, bytes.size() - written);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            error = n < 0 ? std::strerror(errno) : "nothing could be written";
            return false;
        }
        written += static_cast<std::size_t>(n);
    }
    return true;
}

std::string DirectoryOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// The permissions of the file being replaced, or those of any new file.
mode_t ModeFor(const std::string& target) {
    struct stat existing {};
    if (::stat(target.c_str(), &existing) == 0 && S_ISREG(existing.st_mode)) return existing.st_mode & 07777;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

// The number N of a name of this process's open descriptor N
// ("/proc/self/fd/N", "/dev/fd/N"), or -1.
int DescriptorNamed(const std::string& path) {
    for (const char* prefix : {"/proc/self/fd/", "/dev/fd/"}) {
        const std::size_t length = std::strlen(prefix);
        if (path.compare(0, length, prefix) != 0 || path.size() == length) continue;
        int fd = 0;
        for (std::size_t i = length; i < path.size(); ++i) {
            if (path[i] < '0' || path[i] > '9' || fd > 100000) return -1;
            fd = fd * 10 + (path[i] - '0');
        }
        return fd;
    }
    return -1;
}

// Where an output goes once its links are followed: the file they name (to
// be replaced or made, the links staying), or one of this process's open
// descriptors (/dev/stdout is /proc/self/fd/1), which is written to as it
// is. False for a loop of links.
bool FollowOutput(const std::string& path, std::string& target, int& descriptor) {
    target = path;
    for (int depth = 0; depth < 40; ++depth) {
        descriptor = DescriptorNamed(target);
        if (descriptor >= 0) return true;
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

}  // namespace

bool CheckOutputIsNoInput(const std::string& output, const std::vector<std::string>& inputs, std::string& error) {
    struct stat out {};
    if (output == kStandardOutput || ::stat(output.c_str(), &out) != 0) return true;
    for (const std::string& input : inputs) {
        struct stat in {};
        if (::stat(input.c_str(), &in) == 0 && in.st_dev == out.st_dev && in.st_ino == out.st_ino) {
            error = "the output '" + output + "' is the input '" + input +
                    "': writing it would destroy the input; name another output file";
            return false;
        }
    }
    return true;
}

bool WriteOutput(const std::string& path, const std::string& bytes, std::string& error) {
    std::string reason;
    if (path == kStandardOutput) {
        if (WriteAll(STDOUT_FILENO, bytes, reason)) return true;
        error = "cannot write to standard output: " + reason;
        return false;
    }
    std::string target;
    int descriptor = -1;
    if (!FollowOutput(path, target, descriptor)) {
        error = "cannot write '" + path + "': " + std::strerror(ELOOP);
        return false;
    }
    if (descriptor >= 0) {
        // Written where the descriptor points (standard output appending to
        // a log stays appending), never replaced.
        if (WriteAll(descriptor, bytes, reason)) return true;
        error = "cannot write '" + path + "': " + reason;
        return false;
    }
    struct stat existing {};
    if (::stat(target.c_str(), &existing) == 0 && !S_ISREG(existing.st_mode)) {
        if (S_ISDIR(existing.st_mode)) {
            error = "cannot write '" + path + "': it is a directory";
            return false;
        }
        // A device or a pipe (/dev/stdout, a named pipe) is written to, never replaced.
        const int fd = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
        const bool done = fd >= 0 && WriteAll(fd, bytes, reason);
        if (fd < 0) reason = std::strerror(errno);
        if (fd >= 0) ::close(fd);
        if (!done) error = "cannot write '" + path + "': " + reason;
        return done;
    }
    // A short name in the target's directory, whatever the target's length.
    std::string temp = DirectoryOf(target) + "/.vrnmodel-XXXXXX";
    const int fd = ::mkstemp(&temp[0]);
    if (fd < 0) {
        error = "cannot write '" + path + "': " + std::strerror(errno);
        return false;
    }
    bool done = true;
    if (::fchmod(fd, ModeFor(target)) != 0) {
        reason = std::strerror(errno);
        done = false;
    }
    done = done && WriteAll(fd, bytes, reason);
    if (done && ::fsync(fd) != 0) {
        reason = std::strerror(errno);
        done = false;
    }
    if (::close(fd) != 0 && done) {
        reason = std::strerror(errno);
        done = false;
    }
    if (done && ::rename(temp.c_str(), target.c_str()) != 0) {
        reason = std::strerror(errno);
        done = false;
    }
    if (!done) {
        ::unlink(temp.c_str());
        error = "cannot write '" + path + "': " + reason;
    }
    return done;
}
