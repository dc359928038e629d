#include "SqlSource.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

namespace {

void AppendUtf8(std::string& out, unsigned code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (code >> 18));
        out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

bool DecodeUtf16(const std::string& bytes, std::size_t start, bool bigEndian, std::string& out, std::string& error) {
    if ((bytes.size() - start) % 2 != 0) {
        error = "UTF-16 text with an odd number of bytes";
        return false;
    }
    auto unit = [&](std::size_t at) {
        const unsigned char a = static_cast<unsigned char>(bytes[at]);
        const unsigned char b = static_cast<unsigned char>(bytes[at + 1]);
        return bigEndian ? unsigned(a << 8 | b) : unsigned(b << 8 | a);
    };
    for (std::size_t at = start; at < bytes.size(); at += 2) {
        unsigned code = unit(at);
        if (code >= 0xD800 && code <= 0xDBFF) {
            if (at + 3 >= bytes.size() || unit(at + 2) < 0xDC00 || unit(at + 2) > 0xDFFF) {
                error = "UTF-16 text with a broken surrogate pair";
                return false;
            }
            code = 0x10000 + ((code - 0xD800) << 10) + (unit(at + 2) - 0xDC00);
            at += 2;
        } else if (code >= 0xDC00 && code <= 0xDFFF) {
            error = "UTF-16 text with a broken surrogate pair";
            return false;
        }
        AppendUtf8(out, code);
    }
    return true;
}

}  // namespace

bool DecodeSourceText(const std::string& bytes, std::string& text, std::string& error, bool detectUtf16) {
    std::string decoded;
    if (detectUtf16 && bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) == 0xFF && static_cast<unsigned char>(bytes[1]) == 0xFE) {
        if (!DecodeUtf16(bytes, 2, false, decoded, error)) return false;
    } else if (detectUtf16 && bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) == 0xFE &&
               static_cast<unsigned char>(bytes[1]) == 0xFF) {
        if (!DecodeUtf16(bytes, 2, true, decoded, error)) return false;
    } else if (bytes.compare(0, 3, "\xEF\xBB\xBF") == 0) {
        decoded = bytes.substr(3);
    } else {
        decoded = bytes;
    }
    text.clear();
    text.reserve(decoded.size());
    for (std::size_t i = 0; i < decoded.size(); ++i) {
        if (decoded[i] == '\r') {
            text += '\n';
            if (i + 1 < decoded.size() && decoded[i + 1] == '\n') ++i;
        } else {
            text += decoded[i];
        }
    }
    return true;
}

bool ReadSourceText(const std::string& path, std::string& text, std::string& error, bool detectUtf16) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = "cannot read '" + path + "': " + std::strerror(errno);
        return false;
    }
    std::ostringstream bytes;
    bytes << in.rdbuf();
    if (!DecodeSourceText(bytes.str(), text, error, detectUtf16)) {
        error = "cannot read '" + path + "': " + error;
        return false;
    }
    return true;
}
