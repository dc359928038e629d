// Writes the fuzzers' dictionary for SQL inputs to standard output: every
// word of the dialect tables, and the marks that cut and quote a script.
// libFuzzer splices these into inputs, which is how its mutations come to
// build statements the parser recognises rather than noise.
#include <cstdio>
#include <string>

#include "Dialect.h"

namespace {

void PrintEntry(const std::string& text) {
    std::string line = "\"";
    for (const char ch : text) {
        const unsigned char byte = static_cast<unsigned char>(ch);
        if (ch == '"' || ch == '\\') {
            line += '\\';
            line += ch;
        } else if (byte < 0x20 || byte >= 0x7f) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\x%02X", byte);
            line += escaped;
        } else {
            line += ch;
        }
    }
    std::printf("%s\"\n", line.c_str());
}

}  // namespace

int main() {
    for (const std::string& word : DialectKeywords()) PrintEntry(word);
    static const char* const kMarks[] = {"\nGO\n", "\n/\n", "\n~\n", ";", "--#SET TERMINATOR @\n", "/*", "*/", "--",
                                         "N'", "''", "[", "]", "`", "\"", "(", ")", ",", ".", "&$DBSCH.", "\xEF\xBB\xBF",
                                         "\xFF\xFE", "@@", "#", "1E+5", "64K", "\r\n"};
    for (const char* mark : kMarks) PrintEntry(mark);
    return 0;
}
