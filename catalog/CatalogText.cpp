#include "catalog/CatalogText.h"

#include <cstdint>
#include <limits>

CString StripCatalogQuotes(const char* text) {
    CString name(text);
    name.TrimRight('\'');
    name.TrimLeft('\'');
    name.TrimRight('"');
    name.TrimLeft('"');
    if (name.GetAt(0) == 'N' && name.GetAt(1) == '\'') {
        int run = 0;
        while (name.GetAt(run) == 'N' || name.GetAt(run) == '\'') ++run;
        name = name.Mid(run);
    }
    return name;
}

bool IsCatalogSpace(char ch) {
    return ch == ' ' || ch == '\t' || ch == '\r' || ch == '\n' || ch == '\v' || ch == '\f';
}

CString TrimCatalogSpace(const CString& text) {
    int first = 0;
    int last = text.GetLength();
    while (first < last && IsCatalogSpace(text.GetAt(first))) ++first;
    while (last > first && IsCatalogSpace(text.GetAt(last - 1))) --last;
    return text.Mid(first, last - first);
}

std::int32_t LeadingNumber(const char* text) {
    if (!text) return 0;
    while (IsCatalogSpace(*text)) ++text;
    bool negative = false;
    if (*text == '+' || *text == '-') negative = *text++ == '-';
    std::int64_t value = 0;
    constexpr std::int64_t kLimit = std::int64_t(std::numeric_limits<std::int32_t>::max()) + 1;
    for (; *text >= '0' && *text <= '9'; ++text)
        if (value < kLimit) value = value * 10 + (*text - '0');
    if (value > kLimit) value = kLimit;
    if (negative) return static_cast<std::int32_t>(-value);
    return static_cast<std::int32_t>(value >= kLimit ? kLimit - 1 : value);
}

CDatatypeText ParseDatatypeText(const CString& text) {
    CDatatypeText parsed;
    const int open = text.Find('(');
    parsed.baseType = TrimCatalogSpace(open > 0 ? text.Left(open) : text);
    if (open > 0) {
        const CString inside = text.Mid(open + 1);
        parsed.length = LeadingNumber(inside);
        if (parsed.length == 0) parsed.length = -1;
        const int comma = inside.Find(',');
        if (comma > 0) parsed.scale = LeadingNumber(inside.Mid(comma + 1));
    }
    return parsed;
}
