/// @file
/// CString: the host framework's 8-bit string, as the exported signatures use it.
/// A pointer-sized value type whose copies share their text; it never hands out
/// a null pointer, and every operation that takes a const char* treats null as
/// the empty text.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "framework/VrnExport.h"

/// The library's 8-bit string (see the file comment): copies share one immutable buffer, and a change
/// gives the changed object a buffer of its own.
class VRN_EXPORT CString {
public:
    /// The empty text.
    CString() = default;
    /// A copy of `text`; null gives the empty text.
    CString(const char* text) { Assign(text, text ? std::strlen(text) : 0); }  // NOLINT: implicit, as in the host framework
    /// A copy of `text`, embedded zero bytes included.
    CString(const std::string& text) { Assign(text.data(), text.size()); }   // NOLINT
    /// A copy of the first `length` bytes of `text`; a null text or a length of 0 or less gives the empty text.
    CString(const char* text, int length);
    /// Shares `other`'s text; nothing is copied.
    CString(const CString& other) noexcept : m_pData(other.m_pData) { AddRef(); }
    /// Takes `other`'s text, leaving `other` empty.
    CString(CString&& other) noexcept : m_pData(other.m_pData) { other.m_pData = nullptr; }
    /// Releases the text; the last copy to go frees it.
    ~CString() { Release(); }
    /// Shares `other`'s text.
    CString& operator=(const CString& other) noexcept;
    /// Takes `other`'s text, leaving `other` empty.
    CString& operator=(CString&& other) noexcept;

    /// The length in bytes, 0 for the empty text.
    int GetLength() const { return m_pData ? m_pData->length : 0; }
    /// True for the empty text.
    bool IsEmpty() const { return m_pData == nullptr; }
    /// Makes the text empty.
    void Empty() { Release(); }
    /// The text, as GetString gives it: never null.
    operator const char*() const { return GetString(); }  // NOLINT: the host's implicit conversion
    /// The zero-terminated text, "" when empty; valid while this object (or a copy sharing its text) holds it
    /// unchanged.
    const char* GetString() const { return m_pData ? m_pData->text : ""; }
    /// The text as a std::string.
    std::string str() const { return std::string(GetString(), static_cast<std::size_t>(GetLength())); }
    /// The byte at `index`; '\0' for an index outside the text.
    char GetAt(int index) const;

    /// Replaces the text with a copy of `text`; null gives the empty text.
    CString& operator=(const char* text);
    /// Appends `text`; null or "" changes nothing.
    CString& operator+=(const char* text);
    /// Appends one byte.
    CString& operator+=(char ch);
    /// The two texts joined.
    friend CString operator+(const CString& a, const CString& b) { return CString(a.str() + b.str()); }
    /// True when the texts are equal byte for byte, letter case included.
    friend bool operator==(const CString& a, const CString& b) { return a.Equals(b.GetString(), b.GetLength()); }
    /// True when the texts differ.
    friend bool operator!=(const CString& a, const CString& b) { return !(a == b); }
    /// True when `a` equals `b`; a null `b` equals the empty text.
    friend bool operator==(const CString& a, const char* b) { return a.Equals(b ? b : "", b ? std::strlen(b) : 0); }
    /// True when `a` differs from `b`.
    friend bool operator!=(const CString& a, const char* b) { return !(a == b); }

    /// -1, 0 or 1 as the text sorts before, equal to or after `other`, byte by byte (strcmp); null counts as "".
    int Compare(const char* other) const;
    /// Folds ASCII letters only: catalog names are compared this way whatever the locale.
    /// Compare without regard to the case of ASCII letters.
    int CompareNoCase(const char* other) const;
    /// Upper-cases the ASCII letters; other bytes stay.
    void MakeUpper();
    /// Lower-cases the ASCII letters; other bytes stay.
    void MakeLower();
    /// The position of the first `ch` at or after `start`; -1 when there is none or `start` is outside 0 to
    /// GetLength().
    int Find(char ch, int start = 0) const;
    /// The position of the first occurrence of `sub` at or after `start`; -1 when there is none, `sub` is null or
    /// `start` is outside 0 to GetLength().
    int Find(const char* sub, int start = 0) const;
    /// The first `count` bytes (all of them when `count` is longer); empty for a count of 0 or less.
    CString Left(int count) const;
    /// The text from position `first` on (a negative `first` counts as 0); empty when `first` is past the end.
    CString Mid(int first) const;
    /// At most `count` bytes from position `first` on (a negative `first` counts as 0); empty when `first` is past the
    /// end or `count` is 0 or less.
    CString Mid(int first, int count) const;
    /// Removes every leading `ch`.
    void TrimLeft(char ch);
    /// Removes every trailing `ch`.
    void TrimRight(char ch);
    /// Removes leading blanks: spaces, tabs, carriage returns and line feeds.
    void TrimLeft();
    /// Removes trailing blanks: spaces, tabs, carriage returns and line feeds.
    void TrimRight();

    /// Loads text number `id` from the host string table; an unregistered number gives "".
    /// Returns true when the host had registered the number.
    bool LoadString(unsigned id);

    /// `value` in decimal digits, with a minus sign when negative.
    static CString FromInt(long value);

private:
    /// One pointer: null for the empty text, else a shared, immutable buffer.
    /// Copies share the buffer (a model holds the same name in several
    /// fields); a change makes a buffer of its own.
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

/// Registers (or replaces) text number `id` of the host string table. A null text
/// removes the entry, so that the number loads as empty again.
VRN_EXPORT void AfxSetResourceString(unsigned id, const char* text);

/// Message formatting in the host's style: `%1`, `%2`, `%3` in the format are
/// replaced by the arguments; every other character, `%` included, is copied as is.
/// The format is data, never a printf format, so a host-supplied text cannot crash
/// the library. Null arguments count as empty texts, a null format as "".
/// Not exported from the shared library: a client formats host texts with
/// AfxFormatString1, AfxFormatString2 and AfxFormatString3.
CString AfxFormatMessage(const char* format, const char* arg1 = nullptr, const char* arg2 = nullptr,
                         const char* arg3 = nullptr);
/// Sets `out` to host text `id` (see AfxSetResourceString) with `%1` replaced by `arg1`, as
/// AfxFormatMessage does; an unregistered `id` gives "".
VRN_EXPORT void AfxFormatString1(CString& out, unsigned id, const char* arg1);
/// AfxFormatString1 with two arguments, `%1` and `%2`.
VRN_EXPORT void AfxFormatString2(CString& out, unsigned id, const char* arg1, const char* arg2);
/// AfxFormatString1 with three arguments, `%1`, `%2` and `%3`.
VRN_EXPORT void AfxFormatString3(CString& out, unsigned id, const char* arg1, const char* arg2, const char* arg3);

/// The leading decimal number of `text` as atoi reads it (leading white space
/// and a sign allowed, 0 when there are no digits), clamped to the 32-bit
/// range instead of overflowing.
VRN_EXPORT std::int32_t AfxLeadingNumber(const char* text);

/// ASCII-only case helpers shared by the name lookups of the whole library: `ch` upper-cased when it is an
/// ASCII letter, else `ch` itself.
VRN_EXPORT char AfxToUpperAscii(char ch);
/// -1, 0 or 1 as `a` sorts before, equal to or after `b` once ASCII letters are upper-cased; null counts
/// as "".
VRN_EXPORT int AfxCompareNoCase(const char* a, const char* b);
