// Fuzz target: the dialect layer's lexer and statement splitter on arbitrary
// bytes, and the quoting of names and texts, which must read back as what
// was quoted. The first byte chooses T-SQL splitting and the dialect.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Dialect.h"
#include "FuzzCheck.h"
#include "SqlLexer.h"
#include "SqlScript.h"

namespace {

// Every token lies inside the text, after the one before it, on a line
// no earlier than that one's.
void CheckTokens(const std::vector<CToken>& tokens, const std::string& text) {
    std::size_t after = 0;
    int line = 1;
    for (const CToken& token : tokens) {
        FUZZ_CHECK(token.begin >= after && token.begin < token.end && token.end <= text.size());
        FUZZ_CHECK(token.line >= line);
        after = token.end;
        line = token.line;
    }
}

// A name quoted by a dialect, or a text written as a literal, is one token
// that reads back as exactly what was written.
void CheckReadsBackAlone(const std::string& written, const std::string& expected, bool isName) {
    const std::vector<CToken> tokens = Tokenize(written);
    FUZZ_CHECK(tokens.size() == 1);
    FUZZ_CHECK(isName ? tokens[0].IsName() : tokens[0].kind == CTokenKind::String);
    FUZZ_CHECK(tokens[0].text == expected);
}

// A name can be read back only when it is one: text, no line break inside
// (a script's names never hold one), no NUL.
bool CanBeName(const std::string& name) {
    if (name.empty()) return false;
    for (const char ch : name)
        if (ch == '\0' || ch == '\n' || ch == '\r') return false;
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const bool transactSql = (data[0] & 1) != 0;
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);

    CheckTokens(Tokenize(text), text);
    ForEachStatement(text, transactSql, [](const CSqlStatement& statement, const std::string& source) {
        CheckTokens(statement.tokens, source);
        FUZZ_CHECK(statement.line >= 1);
    });
    std::vector<std::string> unresolved;
    PrepareScriptText(text, {{"DBSCH", "S"}}, unresolved);

    // The first line of the input is a name and a text to quote.
    const std::string name = text.substr(0, text.find('\n'));
    const CDialect dialect = DialectOfPlatform((data[0] >> 1) % 60, false);
    if (CanBeName(name)) CheckReadsBackAlone(dialect.Quote(name), name, true);
    CheckReadsBackAlone(CDialect::Literal(name), name, false);
    return 0;
}
