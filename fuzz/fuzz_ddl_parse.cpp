// Fuzz target: the DDL reader alone (decoding, splitting into statements,
// tokens, declarations) on arbitrary script bytes, for a platform chosen by
// the first byte. No builder and no model, so the time goes to the parser.
#include <cstddef>
#include <cstdint>
#include <string>

#include "DdlParser.h"
#include "Dialect.h"
#include "SqlSource.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    std::string text, error;
    if (!DecodeSourceText(std::string(reinterpret_cast<const char*>(data) + 1, size - 1), text, error)) return 0;
    ParseScript(text, DialectOfPlatform(data[0] % 60, (data[0] & 0x80) != 0));
    return 0;
}
