// A scratch file of one fuzz process, for targets whose code under test
// reads or writes files by path. Named by the process, so that parallel
// fuzzers and tests never share one; removed when the process ends.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <string>

class CFuzzScratchFile {
public:
    explicit CFuzzScratchFile(const char* what)
        : m_path("/tmp/vrn-fuzz-" + std::string(what) + "-" + std::to_string(::getpid()) + ".vrn") {}
    ~CFuzzScratchFile() { std::remove(m_path.c_str()); }
    const std::string& Path() const { return m_path; }
    // The file holding exactly `size` bytes of `data`; false when it cannot be written.
    bool Write(const void* data, std::size_t size) const {
        std::FILE* out = std::fopen(m_path.c_str(), "wb");
        if (!out) return false;
        const bool written = std::fwrite(data, 1, size, out) == size;
        return std::fclose(out) == 0 && written;
    }

private:
    std::string m_path;
};
