#include "framework/AfxString.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <mutex>
#include <unordered_map>

namespace {

// The host string table. The host fills it once at start-up; lookups are rare
// (a handful per save), so one mutex-guarded map is plenty.
struct ResourceTable {
    std::mutex lock;
    std::unordered_map<unsigned, std::string> texts;
};

ResourceTable& Resources() {
    static ResourceTable table;
    return table;
}

}  // namespace

char AfxToUpperAscii(char ch) { return (ch >= 'a' && ch <= 'z') ? static_cast<char>(ch - 'a' + 'A') : ch; }

int AfxCompareNoCase(const char* a, const char* b) {
    a = a ? a : "";
    b = b ? b : "";
    for (;; ++a, ++b) {
        const unsigned char ca = static_cast<unsigned char>(AfxToUpperAscii(*a));
        const unsigned char cb = static_cast<unsigned char>(AfxToUpperAscii(*b));
        if (ca != cb) return ca < cb ? -1 : 1;
        if (ca == 0) return 0;
    }
}

std::int32_t AfxLeadingNumber(const char* text) {
    if (!text) return 0;
    while (*text == ' ' || (*text >= '\t' && *text <= '\r')) ++text;
    bool negative = false;
    if (*text == '+' || *text == '-') negative = *text++ == '-';
    // Accumulate no further than one past the 32-bit range, then clamp.
    constexpr std::int64_t kLimit = std::int64_t(std::numeric_limits<std::int32_t>::max()) + 1;
    std::int64_t value = 0;
    for (; *text >= '0' && *text <= '9'; ++text) value = std::min(kLimit, value * 10 + (*text - '0'));
    if (negative) return static_cast<std::int32_t>(-value);
    return static_cast<std::int32_t>(std::min(value, kLimit - 1));
}

CString::CString(const char* text, int length) {
    if (text && length > 0) m_text.assign(text, static_cast<std::size_t>(length));
}

char CString::GetAt(int index) const {
    if (index < 0 || index >= GetLength()) return '\0';
    return m_text[static_cast<std::size_t>(index)];
}

CString& CString::operator=(const char* text) {
    m_text = text ? text : "";
    return *this;
}

CString& CString::operator+=(const char* text) {
    if (text) m_text += text;
    return *this;
}

CString& CString::operator+=(char ch) {
    m_text += ch;
    return *this;
}

int CString::Compare(const char* other) const {
    const int result = m_text.compare(other ? other : "");
    return result < 0 ? -1 : (result > 0 ? 1 : 0);
}

int CString::CompareNoCase(const char* other) const { return AfxCompareNoCase(m_text.c_str(), other); }

void CString::MakeUpper() {
    for (char& ch : m_text) ch = AfxToUpperAscii(ch);
}

void CString::MakeLower() {
    for (char& ch : m_text)
        if (ch >= 'A' && ch <= 'Z') ch = static_cast<char>(ch - 'A' + 'a');
}

int CString::Find(char ch, int start) const {
    if (start < 0 || start > GetLength()) return -1;
    const std::size_t at = m_text.find(ch, static_cast<std::size_t>(start));
    return at == std::string::npos ? -1 : static_cast<int>(at);
}

int CString::Find(const char* sub, int start) const {
    if (!sub || start < 0 || start > GetLength()) return -1;
    const std::size_t at = m_text.find(sub, static_cast<std::size_t>(start));
    return at == std::string::npos ? -1 : static_cast<int>(at);
}

CString CString::Left(int count) const {
    if (count <= 0) return CString();
    return CString(m_text.substr(0, static_cast<std::size_t>(count)));
}

CString CString::Mid(int first) const { return Mid(first, GetLength()); }

CString CString::Mid(int first, int count) const {
    if (first < 0) first = 0;
    if (first >= GetLength() || count <= 0) return CString();
    return CString(m_text.substr(static_cast<std::size_t>(first), static_cast<std::size_t>(count)));
}

void CString::TrimLeft(char ch) {
    const std::size_t first = m_text.find_first_not_of(ch);
    m_text.erase(0, first == std::string::npos ? m_text.size() : first);
}

void CString::TrimRight(char ch) {
    const std::size_t last = m_text.find_last_not_of(ch);
    m_text.erase(last == std::string::npos ? 0 : last + 1);
}

void CString::TrimLeft() {
    const std::size_t first = m_text.find_first_not_of(" \t\r\n");
    m_text.erase(0, first == std::string::npos ? m_text.size() : first);
}

void CString::TrimRight() {
    const std::size_t last = m_text.find_last_not_of(" \t\r\n");
    m_text.erase(last == std::string::npos ? 0 : last + 1);
}

bool CString::LoadString(unsigned id) {
    ResourceTable& table = Resources();
    std::lock_guard<std::mutex> guard(table.lock);
    const auto found = table.texts.find(id);
    if (found == table.texts.end()) {
        m_text.clear();
        return false;
    }
    m_text = found->second;
    return true;
}

CString CString::FromInt(long value) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%ld", value);
    return CString(buffer);
}

void AfxSetResourceString(unsigned id, const char* text) {
    ResourceTable& table = Resources();
    std::lock_guard<std::mutex> guard(table.lock);
    if (text)
        table.texts[id] = text;
    else
        table.texts.erase(id);
}

CString AfxFormatMessage(const char* format, const char* arg1, const char* arg2, const char* arg3) {
    const char* const args[3] = {arg1, arg2, arg3};
    std::string out;
    for (const char* p = format ? format : ""; *p; ++p) {
        if (p[0] == '%' && p[1] >= '1' && p[1] <= '3') {
            const char* arg = args[p[1] - '1'];
            if (arg) out += arg;
            ++p;
        } else {
            out += *p;
        }
    }
    return CString(out);
}

void AfxFormatString1(CString& out, unsigned id, const char* arg1) {
    CString format;
    format.LoadString(id);
    out = AfxFormatMessage(format, arg1);
}

void AfxFormatString2(CString& out, unsigned id, const char* arg1, const char* arg2) {
    CString format;
    format.LoadString(id);
    out = AfxFormatMessage(format, arg1, arg2);
}

void AfxFormatString3(CString& out, unsigned id, const char* arg1, const char* arg2, const char* arg3) {
    CString format;
    format.LoadString(id);
    out = AfxFormatMessage(format, arg1, arg2, arg3);
}
