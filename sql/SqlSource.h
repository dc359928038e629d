// Reading a script as text: UTF-8 (with or without BOM) or UTF-16 with BOM,
// any line ends; the result is UTF-8 with "\n" line ends. With `detectUtf16`
// false the bytes are taken as UTF-8 whatever they start with.
#pragma once

#include <string>

// False (with a reason) when the file cannot be read or decoded.
bool ReadSourceText(const std::string& path, std::string& text, std::string& error, bool detectUtf16 = true);

// Decodes bytes as described above; a UTF-16 text with an odd byte count or
// a broken surrogate pair is refused.
bool DecodeSourceText(const std::string& bytes, std::string& text, std::string& error, bool detectUtf16 = true);
