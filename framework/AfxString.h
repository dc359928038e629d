// CString: the host framework's 8-bit string, as the exported signatures use it.
// A pointer-sized value type whose copies share their text; it never hands out
// a null pointer, and every operation that takes a const char* treats null as
// the empty text.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "framework/VrnExport.h"

class VRN_EXPORT CString {
public:
    CString() = default;
    CString(const char* text) { Assign(text, text ? std::strlen(text) : 0); }  // NOLINT: implicit, as in the host framework
    CString(const std::string& text) { Assign(text.data(), text.size()); }   // NOLINT
    CString(const char* text, int length);
    CString(const CString& other) noexcept : m_pData(other.m_pData) { AddRef(); }
    CString(CString&& other) noexcept : m_pData(other.m_pData) { other.m_pData = nullptr; }
    ~CString() { Release(); }
    CString& operator=(const CString& other) noexcept;
    CString& operator=(CString&& other) noexcept;

    int GetLength() const { return m_pData ? m_pData->length : 0; }
    bool IsEmpty() const { return m_pData == nullptr; }
    void Empty() { Release(); }
    operator const char*() const { return GetString(); }  // NOLINT: the host's implicit conversion
    const char* GetString() const { return m_pData ? m_pData->text : ""; }
    std::string str() const { return std::string(GetString(), static_cast<std::size_t>(GetLength())); }
    char GetAt(int index) const;

    CString& operator=(const char* text);
    CString& operator+=(const char* text);
    CString& operator+=(char ch);
    friend CString operator+(const CString& a, const CString& b) { return CString(a.str() + b.str()); }
    friend bool operator==(const CString& a, const CString& b) { return a.Equals(b.GetString(), b.GetLength()); }
    friend bool operator!=(const CString& a, const CString& b) { return !(a == b); }
    friend bool operator==(const CString& a, const char* b) { return a.Equals(b ? b : "", b ? std::strlen(b) : 0); }
    friend bool operator!=(const CString& a, const char* b) { return !(a == b); }

    int Compare(const char* other) const;
    // Folds ASCII letters only: catalog names are compared this way whatever the locale.
    int CompareNoCase(const char* other) const;
    void MakeUpper();
    void MakeLower();
    int Find(char ch, int start = 0) const;
    int Find(const char* sub, int start = 0) const;
    CString Left(int count) const;
    CString Mid(int first) const;
    CString Mid(int first, int count) const;
    void TrimLeft(char ch);
    void TrimRight(char ch);
    void TrimLeft();
    void TrimRight();

    // Loads text number `id` from the host string table; an unregistered number gives "".
    // Returns true when the host had registered the number.
    bool LoadString(unsigned id);

    static CString FromInt(long value);

private:
    // One pointer: null for the empty text, else a shared, immutable buffer.
    // Copies share the buffer (a model holds the same name in several
    // fields); a change makes a buffer of its own.
    struct CData {
        std::atomic<int> refs;
        int length;
        char text[1];
    };

    void Assign(const char* text, std::size_t length);
    bool Equals(const char* text, std::size_t length) const;
    void AddRef() const {
        if (m_pData) m_pData->refs.fetch_add(1, std::memory_order_relaxed);
    }
    void Release();

    CData* m_pData = nullptr;
};

// Registers (or replaces) text number `id` of the host string table. A null text
// removes the entry, so that the number loads as empty again.
VRN_EXPORT void AfxSetResourceString(unsigned id, const char* text);

// Message formatting in the host's style: "%1", "%2", "%3" in the format are
// replaced by the arguments; every other character, '%' included, is copied as is.
// The format is data, never a printf format, so a host-supplied text cannot crash
// the library. Null arguments count as empty texts.
CString AfxFormatMessage(const char* format, const char* arg1 = nullptr, const char* arg2 = nullptr,
                         const char* arg3 = nullptr);
VRN_EXPORT void AfxFormatString1(CString& out, unsigned id, const char* arg1);
VRN_EXPORT void AfxFormatString2(CString& out, unsigned id, const char* arg1, const char* arg2);
VRN_EXPORT void AfxFormatString3(CString& out, unsigned id, const char* arg1, const char* arg2, const char* arg3);

// The leading decimal number of `text` as atoi reads it (leading white space
// and a sign allowed, 0 when there are no digits), clamped to the 32-bit
// range instead of overflowing.
VRN_EXPORT std::int32_t AfxLeadingNumber(const char* text);

// ASCII-only case helpers shared by the name lookups of the whole library.
VRN_EXPORT char AfxToUpperAscii(char ch);
VRN_EXPORT int AfxCompareNoCase(const char* a, const char* b);
