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
    if (text && length > 0) Assign(text, static_cast<std::size_t>(length));
}

void CString::Assign(const char* text, std::size_t length) {
    CData* data = nullptr;
    if (text && length > 0) {
        data = static_cast<CData*>(::operator new(sizeof(CData) + length));
        new (&data->refs) std::atomic<int>(1);
        data->length = static_cast<int>(length);
        std::memcpy(data->text, text, length);
        data->text[length] = '\0';
    }
    Release();
    m_pData = data;
}

void CString::Release() {
    if (m_pData && m_pData->refs.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        m_pData->refs.~atomic<int>();
        ::operator delete(m_pData);
    }
    m_pData = nullptr;
}

CString& CString::operator=(const CString& other) noexcept {
    if (m_pData != other.m_pData) {
        other.AddRef();
        Release();
        m_pData = other.m_pData;
    }
    return *this;
}

CString& CString::operator=(CString&& other) noexcept {
    if (this != &other) {
        Release();
        m_pData = other.m_pData;
        other.m_pData = nullptr;
    }
    return *this;
}

bool CString::Equals(const char* text, std::size_t length) const {
    return static_cast<std::size_t>(GetLength()) == length && std::memcmp(GetString(), text, length) == 0;
}

char CString::GetAt(int index) const {
    if (index < 0 || index >= GetLength()) return '\0';
    return m_pData->text[index];
}

CString& CString::operator=(const char* text) {
    Assign(text, text ? std::strlen(text) : 0);
    return *this;
}

CString& CString::operator+=(const char* text) {
    if (text && *text) *this = CString(str() + text);
    return *this;
}

CString& CString::operator+=(char ch) {
    *this = CString(str() + ch);
    return *this;
}

int CString::Compare(const char* other) const {
    const int result = std::strcmp(GetString(), other ? other : "");
    return result < 0 ? -1 : (result > 0 ? 1 : 0);
}

int CString::CompareNoCase(const char* other) const { return AfxCompareNoCase(GetString(), other); }

void CString::MakeUpper() {
    std::string text = str();
    for (char& ch : text) ch = AfxToUpperAscii(ch);
    *this = CString(text);
}

void CString::MakeLower() {
    std::string text = str();
    for (char& ch : text)
        if (ch >= 'A' && ch <= 'Z') ch = static_cast<char>(ch - 'A' + 'a');
    *this = CString(text);
}

int CString::Find(char ch, int start) const {
    if (start < 0 || start > GetLength()) return -1;
    const char* found = static_cast<const char*>(
        std::memchr(GetString() + start, ch, static_cast<std::size_t>(GetLength() - start)));
    return found ? static_cast<int>(found - GetString()) : -1;
}

int CString::Find(const char* sub, int start) const {
    if (!sub || start < 0 || start > GetLength()) return -1;
    const char* found = std::strstr(GetString() + start, sub);
    return found ? static_cast<int>(found - GetString()) : -1;
}

CString CString::Left(int count) const {
    if (count <= 0) return CString();
    return CString(GetString(), std::min(count, GetLength()));
}

CString CString::Mid(int first) const { return Mid(first, GetLength()); }

CString CString::Mid(int first, int count) const {
    if (first < 0) first = 0;
    if (first >= GetLength() || count <= 0) return CString();
    return CString(GetString() + first, std::min(count, GetLength() - first));
}

void CString::TrimLeft(char ch) {
    int first = 0;
    while (first < GetLength() && m_pData->text[first] == ch) ++first;
    if (first > 0) *this = Mid(first);
}

void CString::TrimRight(char ch) {
    int last = GetLength();
    while (last > 0 && m_pData->text[last - 1] == ch) --last;
    if (last < GetLength()) *this = Left(last);
}

namespace {

bool IsBlank(char ch) { return ch == ' ' || ch == '\t' || ch == '\r' || ch == '\n'; }

}  // namespace

void CString::TrimLeft() {
    int first = 0;
    while (first < GetLength() && IsBlank(m_pData->text[first])) ++first;
    if (first > 0) *this = Mid(first);
}

void CString::TrimRight() {
    int last = GetLength();
    while (last > 0 && IsBlank(m_pData->text[last - 1])) --last;
    if (last < GetLength()) *this = Left(last);
}

bool CString::LoadString(unsigned id) {
    ResourceTable& table = Resources();
    std::lock_guard<std::mutex> guard(table.lock);
    const auto found = table.texts.find(id);
    if (found == table.texts.end()) {
        Empty();
        return false;
    }
    *this = CString(found->second);
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
