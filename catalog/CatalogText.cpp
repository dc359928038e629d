#include "catalog/CatalogText.h"

namespace vrn {

CString StripNPrefixRun(const CString& text) {
    int run = 0;
    while (text.GetAt(run) == 'N' || text.GetAt(run) == '\'') ++run;
    return text.Mid(run);
}

CString StripCatalogQuotes(const char* text) {
    CString name(text);
    name.TrimRight('\'');
    name.TrimLeft('\'');
    name.TrimRight('"');
    name.TrimLeft('"');
    if (name.GetAt(0) == 'N' && name.GetAt(1) == '\'') name = StripNPrefixRun(name);
    return name;
}

CString StripQuotesAndNPrefix(const char* text) {
    CString name(text);
    name.TrimRight('\'');
    name.TrimLeft('\'');
    return StripNPrefixRun(name);
}

CString StripBrackets(const CString& text) {
    CString stripped(text);
    stripped.TrimLeft('[');
    stripped.TrimRight(']');
    return stripped;
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

CDatatypeText ParseDatatypeText(const CString& text) {
    CDatatypeText parsed;
    const int open = text.Find('(');
    parsed.baseType = TrimCatalogSpace(open > 0 ? text.Left(open) : text);
    if (open > 0) {
        const CString inside = text.Mid(open + 1);
        parsed.length = AfxLeadingNumber(inside);
        if (parsed.length == 0) parsed.length = -1;
        const int comma = inside.Find(',');
        if (comma > 0) parsed.scale = AfxLeadingNumber(inside.Mid(comma + 1));
    }
    return parsed;
}

}  // namespace vrn
