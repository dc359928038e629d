// How catalog names and datatype texts arrive, and how they are taken apart:
// names as scripts spell them ('name', "name", N'name'), and datatype texts
// such as decimal(10, 2).
#pragma once

#include <cstdint>

#include "framework/AfxString.h"

namespace vrn {

// Removes the decorations of a quoted catalog name: every trailing, then
// every leading apostrophe; every trailing, then every leading double quote;
// then, when the text starts with N followed by an apostrophe, the whole
// leading run of N and apostrophe characters (so N'Nation becomes ation).
CString StripCatalogQuotes(const char* text);

// Removes every trailing, then every leading apostrophe, then the whole
// leading run of N and apostrophe characters, whether or not the text starts
// with N' (a name such as NoneDefault loses its N too).
CString StripQuotesAndNPrefix(const char* text);

// Removes the whole leading run of N and apostrophe characters.
CString StripNPrefixRun(const CString& text);

// Removes every leading "[" and every trailing "]".
CString StripBrackets(const CString& text);

// White space as catalogs and scripts use it: space, tab, CR, LF, VT, FF.
bool IsCatalogSpace(char ch);
CString TrimCatalogSpace(const CString& text);

struct CDatatypeText {
    CString baseType;  // the text before the first "(" (the whole text when none, or at 0), trimmed
    std::int32_t length = -1;  // the first number in the parentheses; -1 when absent or 0
    std::int32_t scale = -1;   // the number after the first comma; -1 when absent
};

CDatatypeText ParseDatatypeText(const CString& text);

}  // namespace vrn
