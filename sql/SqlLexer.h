// Tokens of an SQL script, in the union of the dialects the client reads:
// words, "quoted" / [bracketed] / `backquoted` identifiers, 'strings' and
// N'national strings', numbers and single-character symbols. Comments
// (-- to line end, /* ... */) are dropped. Every token keeps its line and its
// place in the text, so statements can be cut out of the source verbatim.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

enum class CTokenKind { Word, QuotedIdent, String, Number, Symbol };

struct CToken {
    CTokenKind kind = CTokenKind::Symbol;
    std::string text;  // identifiers and strings without their quotes
    std::size_t begin = 0;  // byte range in the source text
    std::size_t end = 0;
    int line = 0;
    bool firstOnLine = false;
    bool lastOnLine = false;

    bool IsWord(const char* word) const;  // an unquoted word, any letter case
    bool IsSymbol(char symbol) const { return kind == CTokenKind::Symbol && text.size() == 1 && text[0] == symbol; }
    bool IsName() const { return kind == CTokenKind::Word || kind == CTokenKind::QuotedIdent; }
};

// Reads the tokens of a text one at a time, so that a script's statements
// can be cut without holding the tokens of the whole script. The text must
// outlive the lexer.
class CLexer {
public:
    explicit CLexer(const std::string& text) : m_text(text) {}
    // The next token; false at the end of the text.
    bool Next(CToken& token);

private:
    // Reads one token after the current one, to know whether that one ends its line.
    bool Read(CToken& token);

    const std::string& m_text;
    std::size_t m_at = 0;
    int m_line = 1;
    int m_lastLine = 0;
    CToken m_ahead;
    bool m_haveAhead = false;
    bool m_started = false;
};

std::vector<CToken> Tokenize(const std::string& text);

// `text` with its ASCII letters in upper case, as words are compared.
std::string UpperAscii(std::string text);

// A number as scripts write sizes: 10, 64K, 1M, 2G, the unit standing for
// `kilo`, `kilo` * 1024 or `kilo` * 1024 * 1024 of the number's units; held
// at 2^31 - 1.
long SizeWithUnit(const std::string& text, double kilo);
