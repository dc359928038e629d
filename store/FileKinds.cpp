// What a file is, from its first bytes: so that a refusal can say "it is a
// PNG image" rather than only what it is not.
#include <cstring>
#include <string>

#include "store/VrnFile.h"

namespace {

struct CFileKind {
    const char* magic;
    std::size_t length;
    const char* kind;
};

// Kinds people hand to a model tool by mistake, by their leading bytes.
const CFileKind kFileKinds[] = {
    {"SQLite format 3\0", 16, "an SQLite database"},
    {"\x89PNG\r\n\x1A\n", 8, "a PNG image"},
    {"\xFF\xD8\xFF", 3, "a JPEG image"},
    {"GIF8", 4, "a GIF image"},
    {"%PDF", 4, "a PDF document"},
    {"PK\x03\x04", 4, "a ZIP archive (or an office document)"},
    {"\x1F\x8B", 2, "a gzip archive"},
    {"BZh", 3, "a bzip2 archive"},
    {"\xFD" "7zXZ\0", 6, "an xz archive"},
    {"7z\xBC\xAF\x27\x1C", 6, "a 7-Zip archive"},
    {"\x7F" "ELF", 4, "a program (ELF)"},
    {"\xFF\xFE", 2, "a UTF-16 text file"},
    {"\xFE\xFF", 2, "a UTF-16 text file"},
};

}  // namespace

const char* CVrnFile::DescribeContent(const std::string& head) {
    if (head.empty()) return "an empty file";
    for (const CFileKind& kind : kFileKinds)
        if (head.size() >= kind.length && std::memcmp(head.data(), kind.magic, kind.length) == 0) return kind.kind;
    // Text has no NUL bytes and few other control characters.
    std::size_t control = 0;
    for (unsigned char ch : head) {
        if (ch == 0) return "binary data of an unknown kind";
        if (ch < 0x20 && ch != '\n' && ch != '\r' && ch != '\t' && ch != '\f') ++control;
    }
    return control * 10 > head.size() ? "binary data of an unknown kind" : "a text file";
}
