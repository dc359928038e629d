// Writing a file whole or not at all: readers of the target see either the
// file it was or the complete new one, never a mixture, whatever fails and
// whenever the process dies.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace vrn {

class CFileSystem;

// Replaces `target` (or creates it) with the `size` bytes at `data`. They are
// written to a file without a name in the target's directory (or, where the
// file system has none, to a named temporary file "<stem>.XXXXXX" beside the
// target), synced, given the permissions of the file they replace or of any
// new file, named "<stem>.<pid>.<n>.tmp" when unnamed, and renamed over the
// target; then the directory is synced. <stem> is TemporaryStem(target).
//
// True once the rename has happened; a failure to sync the directory after it
// does not undo that, so it is not reported. Otherwise false, with *reason
// "cannot save '<target>': <why>", the target exactly as it was, and no file
// left that this call made (a temporary file that could not be removed is
// named in *reason). A process killed between naming and renaming leaves a
// complete "<stem>.<pid>.<n>.tmp" behind.
bool WriteFileAtomically(CFileSystem& fs, const std::string& target, const void* data, std::size_t size,
                         std::string* reason);

// The temporary file that becomes the target, as the writer of its content
// sees it. A failed call keeps its reason in Error().
class CTemporaryFile {
public:
    CTemporaryFile(CFileSystem& fs, int fd) : m_fs(fs), m_fd(fd) {}

    // Writes all `size` bytes at byte `offset`, going on after short and
    // interrupted writes.
    bool WriteAt(const void* data, std::size_t size, std::uint64_t offset);
    // Reads `size` bytes at byte `offset`, or fewer (*read) at the end of the file.
    bool ReadAt(void* data, std::size_t size, std::uint64_t offset, std::size_t* read);
    const std::string& Error() const { return m_error; }

private:
    bool Fail(const std::string& why);

    CFileSystem& m_fs;
    int m_fd;
    std::string m_error;
};

// Writes the whole content into `file`: true when it is all there; else
// false with *why.
using CFileFiller = std::function<bool(CTemporaryFile& file, std::string* why)>;

// As above, for content that is written in pieces and at the offsets its
// writer chooses (a database copied page by page): the same temporary file,
// filled by `fill`, synced and renamed over the target the same way. When
// `fill` fails, *reason is "cannot save '<target>': <why>".
bool WriteFileAtomically(CFileSystem& fs, const std::string& target, const CFileFiller& fill, std::string* reason);

// The directory part of `path`: "." for a bare name, "/" for a name in the root.
std::string DirectoryOf(const std::string& path);

// The file that `path` names once its symbolic links are followed (the path
// itself when it is none, or names nothing yet); false for a loop of links.
bool FollowLinks(const std::string& path, std::string& target);

// The start of a temporary file's name in the target's directory: the
// target's path with its file name cut to at most 64 bytes on a character
// boundary, so that what a suffix adds never goes past the file system's limit
// on a name (255 bytes) however long the target's name is.
std::string TemporaryStem(const std::string& target);

}  // namespace vrn
